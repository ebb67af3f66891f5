// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "evaluations/CardiovascularRecords.h"
#include "evaluations/EvaluationForm.h"

class QCheckBox;

namespace Ui {
class RischioCardioInputs;
}

namespace clivara {

// The ten-year probability of a first major cardiovascular event, and the band of the risk chart. Hands back
// {"pctRischio", risk}, 0 when nothing was computed since the form was opened.
class Rischio_Cardio final : public EvaluationForm {
    Q_OBJECT

public:
    explicit Rischio_Cardio(WorkingState &state);
    ~Rischio_Cardio() override;

protected:
    void propose() override;
    void compute() override;
    QString withoutSex() const override;
    QString withoutBirth() const override;
    QString ageBand(int age) const override;
    QString inputRemark(const NumericEdit *edit) const override;
    QList<HistoryRow> history() override;
    bool showSaved(const QDateTime &when) override;
    const StoredEvaluation &storedAs() const override { return storedCardiovascular(); }
    WriteResult save(const QDateTime &when, bool isNew, EvaluationVersions &versions) override;
    void afterSave() override;
    void load() override;
    void unloading() override;

private:
    // An input of the equation as a whole number; empty, after the message, outside its range.
    std::optional<int> inRange(NumericEdit *edit, WholeRange range, const QString &message);
    void proposeBox(QCheckBox *box, QLabel *source, Condition (*read)(dao::Database &, qint32));
    bool wantsToContinueAtThisAge();
    // The chart's line; empty outside its ages. Its band 0 cannot be saved.
    QString chartLine();
    void showRisk(const std::optional<double> &risk, const QString &chart);

    std::unique_ptr<Ui::RischioCardioInputs> m_inputs;
    CardiovascularEvaluation m_computed;
    double m_risk = 0; // last computed, for the host
};

} // namespace clivara
