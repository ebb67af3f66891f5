// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/session/WindowSettings.h"
#include "app/session/WorkingDoctor.h"

#include <QVariant>
#include <functional>
#include <memory>
#include <optional>

namespace clivara {
class Class3;
struct Services;
} // namespace clivara

namespace orvale {

class Practice;

// What a section asks of the host when it has closed.
struct SectionOutcome {
    QString view; // the host's view to refresh, by the chart's name for it; empty for none
    std::optional<qint32> patient; // the patient to load
    QString diagnosisCode; // the problem that was chosen for the host; empty for none
    QString diagnosis;
    std::optional<double> evaluation; // the result of a calculator
    QString failure; // why it could not be opened; empty when it was
};

// A working session of the host on a practice, in one window: holds the chart, tells it patient, doctor and
// region before each section and reads its mailbox. What other windows of the user are about does not reach
// it.
class HostSession {
public:
    // Opens a section of the chart and returns when it has closed; `param` as for Class3::Action, the result
    // as that of Class3::failure. `settings` are those that the chart works with.
    using Chart = std::function<QString(qint16 action, QVariant &param, clivara::SettingsStore &settings)>;

    // No patient is current at first. Practice and services must outlive the session; `chart` stands in for
    // the real one. Throws dao::Error.
    HostSession(Practice &practice, const clivara::Services &services, Chart chart = {});
    ~HostSession();

    // False when the practice has no such patient; the current one stays. Throws dao::Error.
    bool selectPatient(qint32 code);
    qint32 currentPatient() const { return m_patient; } // -1: none

    const WorkingDoctor &doctor() const { return m_doctor; }
    // From the next section on.
    void chooseDoctor(const QString &code);

    // Opens the section for the current patient, waits until it closes and empties the mailbox.
    SectionOutcome openSection(qint16 action);

private:
    Practice &m_practice;
    WindowSettings m_settings;
    WorkingDoctor m_doctor;
    std::unique_ptr<clivara::Class3> m_class3;
    Chart m_chart;
    qint32 m_patient = -1;
};

} // namespace orvale
