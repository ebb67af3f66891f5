// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/practice/Practice.h"
#include "app/session/CurrentPatient.h"
#include "chart/WorkingState.h"
#include "host/Class3.h"

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QTimer>
#include <functional>
#include <stdexcept>
#include <string>

namespace bench {

class NoPrompts final : public clivara::Prompts {
public:
    clivara::PromptButton ask(const clivara::Prompt &) override
    {
        throw std::runtime_error("a message box appeared");
    }
};

// Notes the moment at which a dialog has been painted for the first time, acts in it and closes it.
class PaintWatch final : public QObject {
public:
    void start(std::function<void(QDialog &)> act)
    {
        m_act = std::move(act);
        m_nanoseconds = 0;
        m_timer.start();
        qApp->installEventFilter(this);
    }
    qint64 nanoseconds() const { return m_nanoseconds; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *dialog = qobject_cast<QDialog *>(watched);
        if (dialog && event->type() == QEvent::Paint) {
            qApp->removeEventFilter(this);
            // Runs when the paint of the whole window, children included, has gone to the screen.
            QTimer::singleShot(0, dialog, [this, dialog] {
                m_nanoseconds = m_timer.nsecsElapsed();
                if (m_act)
                    m_act(*dialog);
                dialog->close();
            });
        }
        return false;
    }

private:
    std::function<void(QDialog &)> m_act;
    QElapsedTimer m_timer;
    qint64 m_nanoseconds = 0;
};

// A host on one practice, as a workstation runs it.
struct Host {
    explicit Host(const QString &path)
        : practice(orvale::Practice::open(path))
        , chart(services)
    {
        orvale::prepareSettings(settings, *practice);
        chart.InitDbConn(practice->environment());
    }

    // Seconds from the call of the action to its painted form; `act` runs in the form after that.
    double openForm(qint16 action, int patient, std::function<void(QDialog &)> act = {})
    {
        settings.write("CODICE PAZIENTE", patient);
        watch.start(std::move(act));
        chart.Action(action);
        if (watch.nanoseconds() == 0)
            throw std::runtime_error("action " + std::to_string(action) + " painted no form");
        return double(watch.nanoseconds()) * 1e-9;
    }

    clivara::MemorySettings settings;
    clivara::SystemClock clock;
    NoPrompts prompts;
    clivara::SystemPauses pauses;
    clivara::SystemGuids guids;
    clivara::SystemMiddleware middleware;
    clivara::Services services{settings, clock, prompts, pauses, guids, middleware};
    std::unique_ptr<orvale::Practice> practice;
    clivara::Class3 chart;
    PaintWatch watch;
};

} // namespace bench
