// SPDX-License-Identifier: Apache-2.0
#include "Desk.h"

#include "Ledger.h"
#include "app/scenario/ControlAccess.h"
#include "app/session/CurrentPatient.h"
#include "support/ui/ChartForm.h"

#include <QApplication>
#include <QDir>
#include <QThread>
#include <QTimer>
#include <cstdio>

namespace workstations {

using orvale::clickControl;
using orvale::findControl;
using orvale::typeText;

namespace {

constexpr int betweenAttemptsMs = 300;

// What the chart asks in the course of a save that goes well.
const QStringList &questions()
{
    static const QStringList list{"Salvare le modifiche?", "Si desidera inserire l'elenco Sedi?",
                                  "Si desidera continuare?"};
    return list;
}

void type(QWidget &form, const char *control, const QString &text)
{
    typeText(findControl(form, control), text);
}

void type(QWidget &form, const char *control, int number)
{
    type(form, control, QString::number(number));
}

} // namespace

clivara::PromptButton DoctorsPrompts::ask(const clivara::Prompt &prompt)
{
    const bool isQuestion = std::any_of(questions().begin(), questions().end(),
                                        [&](const QString &known) { return prompt.text.contains(known); });
    if (!isQuestion)
        m_errors.append(prompt.text.simplified());
    return prompt.buttons.contains(clivara::PromptButton::Yes) ? clivara::PromptButton::Yes
                                                               : clivara::PromptButton::Ok;
}

Desk::Desk(const QString &practice, const QString &folder, Ledger &ledger, int patienceMs)
    : m_ledger(ledger)
    , m_patienceMs(patienceMs)
    , m_practice(
          orvale::Practice::open(practice, orvale::Schema::current(), orvale::Practice::Pages::ReadLater))
{
    QDir(folder).mkpath("logOrvale");
    m_settings.write("ORVALE_WORK", folder);
    orvale::prepareSettings(m_settings, *m_practice);
    m_log.start(m_settings, "postazione");
    m_chart = std::make_unique<clivara::Class3>(
        clivara::Services{m_settings, m_clock, m_prompts, m_pauses, m_guids, m_middleware});
    m_chart->InitDbConn(m_practice->environment());
}

bool Desk::perform(const Save &save)
{
    m_save = save;
    m_begun = m_done = false;
    QElapsedTimer trying;
    trying.start();
    for (;;) {
        m_openedMs = -1;
        fillIn();
        // Before anything is saved a form may lack what it could not read; the doctor opens it again later.
        if (const std::exception_ptr failure = std::exchange(m_failure, {});
            failure && (m_begun || trying.elapsed() >= m_patienceMs))
            std::rethrow_exception(failure);
        for (const QString &text : m_prompts.takeErrors())
            m_ledger.shown(save, text);
        if (m_begun || trying.elapsed() >= m_patienceMs)
            break;
        QThread::msleep(betweenAttemptsMs); // the form did not open, for want of a server
    }
    if (!m_begun)
        m_ledger.shown(save, "la maschera non si è aperta");
    return m_done;
}

void Desk::openSection(qint16 action, const Act &act)
{
    m_settings.write("CODICE PAZIENTE", m_save.patient);
    m_sectionTimer.start();
    actWhenOpen(nullptr, [this, act](QWidget &form) {
        m_openedMs = m_sectionTimer.elapsed();
        act(form);
    });
    m_chart->Action(action);
    ++m_opening;
}

void Desk::openFrom(QWidget &form, const QString &button, const Act &act)
{
    actWhenOpen(&form, act);
    clickControl(form, button);
    ++m_opening;
}

void Desk::actWhenOpen(QWidget *below, const Act &act)
{
    QTimer::singleShot(1, [this, below, act, opening = m_opening] {
        if (opening != m_opening)
            return;
        auto *form = qobject_cast<clivara::ChartForm *>(QApplication::activeModalWidget());
        if (!form || form == below || !form->isVisible()) {
            actWhenOpen(below, act);
            return;
        }
        ++m_opening;
        try {
            act(*form);
        } catch (...) {
            m_failure = std::current_exception();
        }
        if (form->isVisible())
            form->abandon();
    });
}

void Desk::press(QWidget &form, const QString &button)
{
    save([&form, button] { clickControl(form, button); });
}

void Desk::save(const std::function<void()> &attempt)
{
    m_ledger.begun(m_save);
    m_begun = true;
    // Whoever means to end this workstation in the middle of a save waits for this line.
    std::printf("saving %d\n", m_save.number);
    std::fflush(stdout);
    // What was shown while the form was filled in says nothing of the save.
    for (const QString &text : m_prompts.takeErrors())
        m_ledger.shown(m_save, text);
    QElapsedTimer trying;
    trying.start();
    for (;;) {
        QElapsedTimer waiting;
        waiting.start();
        attempt();
        const qint64 waited = waiting.elapsed();
        const QStringList errors = m_prompts.takeErrors();
        for (const QString &text : errors)
            m_ledger.shown(m_save, text);
        // What is shown after the save may be incomplete, and the doctor is told; the save is done.
        const bool isSaved = std::all_of(errors.begin(), errors.end(), [](const QString &text) {
            return text.contains("Quanto è mostrato può essere incompleto");
        });
        if (isSaved) {
            m_ledger.acknowledged(m_save, m_openedMs, waited);
            m_done = true;
            return;
        }
        if (trying.elapsed() >= m_patienceMs)
            return;
        QThread::msleep(betweenAttemptsMs);
    }
}

void Desk::recordEvent()
{
    const clivara::HostEnvironment &environment = m_practice->environment();
    clivara::RecordsetOperations operations(m_log, m_pauses);
    clivara::ChangeJournal journal(*environment.clinical, *environment.events, m_clock, m_log, operations);
    save([&] {
        const bool isSaved = journal.recordEvent("101", "101", "ModificaPaziente", m_save.patient, m_save.tag,
                                                 m_save.date.toString(Qt::ISODate))
                             == 0;
        if (!isSaved)
            m_prompts.warn("evento non registrato");
    });
}

void Desk::fillIn()
{
    const auto saveButton = QStringLiteral("chameleonButton1(0)");
    const QString dashed = m_save.date.toString("dd-MM-yyyy");
    const QString slashed = m_save.date.toString("dd/MM/yyyy");
    switch (m_save.kind) {
    case Kind::Visit:
        openSection(17, [&](QWidget &list) {
            openFrom(list, "bt_Visita(1)", [&](QWidget &dialog) {
                type(dialog, "MaskEdBox1", dashed);
                type(dialog, "Text1(0)", m_save.tag);
                type(dialog, "Text1(2)", m_save.text);
                press(dialog, saveButton);
            });
        });
        break;
    case Kind::Problem:
        openSection(5, [&](QWidget &list) {
            openFrom(list, "bt_Probl(1)", [&](QWidget &dialog) {
                type(dialog, "txtDescr", m_save.tag);
                type(dialog, "Text1(0)", m_save.text);
                press(dialog, saveButton);
            });
        });
        break;
    case Kind::Stay:
        openSection(19, [&](QWidget &list) {
            openFrom(list, "Btm_Ins_Dom", [&](QWidget &dialog) {
                type(dialog, "Data_Dom", slashed);
                type(dialog, "Combo1", hospitalOf(m_save));
                orvale::chooseEntry(findControl(dialog, "Combo2"), "Cardiologia");
                press(dialog, "Btm_Memorizza");
            });
        });
        break;
    case Kind::Evaluation:
        openSection(13, [&](QWidget &form) {
            type(form, "me_pas", systolicOf(m_save));
            type(form, "me_col", cholesterolOf(m_save));
            type(form, "me_hdl", 50);
            clickControl(form, "Button2(0)");
            type(form, "MaskEdBox1", slashed);
            press(form, "Button2(1)");
        });
        break;
    case Kind::Allergies:
        openSection(12, [&](QWidget &form) {
            orvale::setChecked(findControl(form, "alim(3)"), true);
            type(form, "Text1", m_save.text);
            press(form, "Uscita");
        });
        break;
    case Kind::Sheet:
        openSection(25, [&](QWidget &list) {
            orvale::setChecked(findControl(list, "optTipo(1)"), true);
            openFrom(list, "chameleonButton1(1)", [&](QWidget &sheet) {
                type(sheet, "txtNote", m_save.tag);
                press(sheet, "ctrlButt(1)");
            });
        });
        break;
    case Kind::Event:
        recordEvent();
        break;
    }
}

} // namespace workstations
