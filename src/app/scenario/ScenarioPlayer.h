// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/scenario/ScenarioParser.h"
#include "app/scenario/ScenarioPrompts.h"
#include "support/Clock.h"
#include "support/PatientHeader.h"
#include "support/Seams.h"
#include "support/SettingsStore.h"

#include <QEventLoop>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>

class QWidget;

namespace clivara {
class ChartForm;
class Class3;
} // namespace clivara
namespace dao {
class Database;
}

namespace orvale {

class JsonLine;
class Practice;

// The workstation's clock until the scenario fixes a date.
class ScenarioClock final : public clivara::Clock {
public:
    void fix(QDate date) { m_fixed.emplace(date); }
    QDateTime local() const override { return m_fixed ? m_fixed->local() : m_system.local(); }
    QDateTime utc() const override { return m_fixed ? m_fixed->utc() : m_system.utc(); }

private:
    clivara::SystemClock m_system;
    std::optional<clivara::FixedClock> m_fixed;
};

// Runs a scenario against the real chart on a practice, in the calling thread's event loop.
class ScenarioPlayer {
public:
    enum Status { Done = 0, Failed = 1, Stopped = 2 }; // Failed: an `expect` was not met

    struct Output {
        std::function<void(const QString &)> result; // one JSON line
        std::function<void(const QString &)> error; // "riga 3: ..."
        QString pictures; // the folder of `shot`; created when it is missing
    };

    // The practice must outlive the player. Throws dao::Error when its first doctor cannot be read.
    ScenarioPlayer(Practice &practice, Output output);
    ~ScenarioPlayer();

    // Runs the commands in order. No form of the chart is open afterwards; one that the scenario left open is
    // closed without saving. A player runs once.
    Status run(const QList<ScenarioLine> &lines);

private:
    // A command that has not returned, and the form that was active when it began. It blocks while the form
    // that it opened is shown: the commands after it run inside.
    struct Running {
        const ScenarioLine *line;
        const QWidget *form;
    };

    void step();
    bool mayGoOn();
    void perform(const ScenarioLine &line);
    bool performOnForm(const ScenarioLine &line);
    bool performOnControl(const ScenarioLine &line);
    void stop(const ScenarioLine &line, const QString &reason);
    void finish();

    void selectPatient(int code);
    void act(const ScenarioLine &line);
    void expectText(const ScenarioLine &line, const QString &shown);
    void savePicture(const QString &name);
    void print(const JsonLine &line) const;
    void loadHeader();
    clivara::ChartForm *activeForm() const;
    clivara::ChartForm &neededForm() const;
    dao::Database &database(const QString &name) const;
    clivara::Class3 &chart();

    Practice &m_practice;
    Output m_output;
    clivara::MemorySettings m_settings;
    ScenarioClock m_clock;
    ScenarioPrompts m_prompts;
    clivara::SystemPauses m_pauses;
    clivara::SystemGuids m_guids;
    clivara::SystemMiddleware m_middleware;
    clivara::PatientHeader m_header; // what the chart's header holds, loaded when the chart loads its own
    std::unique_ptr<clivara::Class3> m_chart; // from the first action on, see chart()

    QList<ScenarioLine> m_lines;
    qsizetype m_next = 0;
    QList<Running> m_running;
    QTimer m_timer;
    QEventLoop m_loop;
    Status m_status = Done;
    bool m_finished = false;
};

} // namespace orvale
