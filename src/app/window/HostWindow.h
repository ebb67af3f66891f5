// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/patients/PatientIndex.h"
#include "app/patients/PatientRecords.h"
#include "app/session/HostSession.h"

#include <QHash>
#include <QMainWindow>
#include <memory>

class QAction;
class QComboBox;
class QPushButton;

namespace clivara {
class Clock;
class Prompts;
struct Section;
} // namespace clivara
namespace Ui {
class HostWindow;
}

namespace orvale {

class PatientLoader;
class PatientPanel;
class PatientSearch;

// The window of the host: patient search, the patient at a glance and the sections of the chart. A database
// error is told in a message box and leaves the window usable.
class HostWindow final : public QMainWindow {
    Q_OBJECT

public:
    // Practice and services must outlive the window; `chart` stands in for the real one. The patients are
    // read once the event loop runs. Throws dao::Error.
    HostWindow(Practice &practice, const clivara::Services &services, HostSession::Chart chart = {});
    ~HostWindow() override;

    bool isLoadingPatients() const;
    qint32 currentPatient() const { return m_session.currentPatient(); }

    // Makes the patient current and shows the patient; an unknown code is told.
    void selectPatient(qint32 code);
    // Opens a section for the current patient and acts on what it asks of the host when it has closed.
    void openSection(const clivara::Section &section);

signals:
    void patientsLoaded();
    void importAsked(); // by the doctor, from the menu

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void makeArchiveMenu();
    void makePatientMenu();
    void makeSections();
    void makeDoctorBar();
    void chooseDoctor(int index);
    void enableSections();
    void showPatients(bool loading);
    // The parts of the panel that the chart's name for a host view stands for.
    void refreshView(const QString &view);
    void refreshRegistry();
    void refreshAll();
    void showPractice();
    // Runs a task on the databases; an error is told as "Non è stato possibile " and `purpose`.
    void guarded(const QString &purpose, const std::function<void()> &task);
    void warn(const QString &text);

    Practice &m_practice;
    clivara::Clock &m_clock;
    clivara::Prompts &m_prompts;
    HostSession m_session;
    PatientRecords m_records;
    PatientIndex m_index;
    std::unique_ptr<Ui::HostWindow> m_ui;
    PatientLoader *m_loader;
    PatientSearch *m_search;
    PatientPanel *m_panel;
    QComboBox *m_doctor = nullptr; // who works here
    QPushButton *m_confirmDoctor = nullptr;
    QHash<qint16, QAction *> m_sectionActions; // by action code
};

} // namespace orvale
