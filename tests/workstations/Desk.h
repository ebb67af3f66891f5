// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Save.h"
#include "app/practice/Practice.h"
#include "chart/WorkingState.h"
#include "host/Class3.h"

#include <QElapsedTimer>
#include <QStringList>
#include <exception>
#include <functional>

class QWidget;

namespace workstations {

class Ledger;

// Answers Yes, else Ok, and keeps what a doctor would take for an error: every box but the chart's own
// questions.
class DoctorsPrompts final : public clivara::Prompts {
public:
    clivara::PromptButton ask(const clivara::Prompt &prompt) override;
    QStringList takeErrors() { return std::exchange(m_errors, {}); }

private:
    QStringList m_errors;
};

// A workstation: its own connection to the practice, its own chart, and a doctor who fills the forms in,
// saves and, being patient, saves again from the same form after an error.
class Desk {
public:
    // The trace of the chart goes into `folder`. An impatient doctor saves once, a patient one again for so
    // many ms.
    Desk(const QString &practice, const QString &folder, Ledger &ledger, int patienceMs);

    // False when the doctor gave up.
    bool perform(const Save &save);

private:
    using Act = std::function<void(QWidget &form)>;
    // Opens the section for the patient of the current save and acts in its form.
    void openSection(qint16 action, const Act &act);
    // Acts in the form that a button of another one opens.
    void openFrom(QWidget &form, const QString &button, const Act &act);
    void actWhenOpen(QWidget *below, const Act &act);
    // The moment of truth: a button or `close` saves. Until then nothing is begun.
    void save(const std::function<void()> &attempt);
    void press(QWidget &form, const QString &button);
    void recordEvent();
    void fillIn();

    Ledger &m_ledger;
    const int m_patienceMs;
    clivara::MemorySettings m_settings;
    clivara::SystemClock m_clock;
    DoctorsPrompts m_prompts;
    clivara::SystemPauses m_pauses;
    clivara::SystemGuids m_guids;
    clivara::SystemMiddleware m_middleware;
    std::unique_ptr<orvale::Practice> m_practice;
    clivara::Log m_log{m_clock};
    std::unique_ptr<clivara::Class3> m_chart;

    Save m_save; // the current one
    bool m_begun = false;
    bool m_done = false;
    int m_opening =
        0; // counts the forms waited for, so that one that did not open is not waited for any more
    QElapsedTimer m_sectionTimer;
    qint64 m_openedMs = -1;
    std::exception_ptr m_failure; // of an act, carried past the forms' event loops
};

} // namespace workstations
