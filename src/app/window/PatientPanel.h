// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/patients/PatientSummary.h"

#include <QStackedWidget>
#include <memory>

namespace Ui {
class PatientPanel;
}

namespace orvale {

// The patient at a glance. Shows what it is given; reads nothing.
class PatientPanel final : public QStackedWidget {
    Q_OBJECT

public:
    explicit PatientPanel(QWidget *parent = nullptr);
    ~PatientPanel() override;

    // No patient: an invitation to pick one.
    void clear();
    // The whole patient; ages are told for `today`.
    void showPatient(const PatientSummary &summary, QDate today);
    // Parts of the patient already shown.
    void showRegistry(const PatientRegistry &patient, QDate today);
    void showProblems(const QList<ProblemLine> &problems);
    void showVisits(const QList<VisitLine> &visits);
    void showLaboratory(const QList<LaboratoryLine> &lines, const BloodPressure &pressure);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void showAllergies(const clivara::Allergies &allergies);

    std::unique_ptr<Ui::PatientPanel> m_ui;
};

} // namespace orvale
