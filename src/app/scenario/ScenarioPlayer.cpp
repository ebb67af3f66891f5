// SPDX-License-Identifier: Apache-2.0
#include "app/scenario/ScenarioPlayer.h"

#include "app/practice/Practice.h"
#include "app/scenario/ControlAccess.h"
#include "app/scenario/ControlReading.h"
#include "app/scenario/Extraction.h"
#include "app/scenario/ScenarioReports.h"
#include "app/session/CurrentPatient.h"
#include "chart/WorkingState.h"
#include "data/PatientHeaderLoader.h"
#include "host/Class3.h"
#include "jetsql/Error.h"
#include "regional/ModEstrazDati.h"
#include "support/Log.h"
#include "support/ui/ChartForm.h"

#include <QApplication>
#include <QDir>
#include <QPixmap>

namespace orvale {

using clivara::ChartForm;

namespace {

clivara::PromptButton promptButton(const QString &name)
{
    using clivara::PromptButton;
    for (const PromptButton button : {PromptButton::Yes, PromptButton::No, PromptButton::Cancel}) {
        if (clivara::promptButtonName(button) == name)
            return button;
    }
    return PromptButton::Ok;
}

} // namespace

ScenarioPlayer::ScenarioPlayer(Practice &practice, Output output)
    : m_practice(practice)
    , m_output(std::move(output))
{
    prepareSettings(m_settings, practice);
    practice.engine().setNow([this] { return m_clock.local(); });
    m_timer.setSingleShot(true);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { step(); });
}

ScenarioPlayer::~ScenarioPlayer()
{
    m_practice.engine().setNow({});
}

ScenarioPlayer::Status ScenarioPlayer::run(const QList<ScenarioLine> &lines)
{
    m_lines = lines;
    m_timer.start();
    m_loop.exec();
    return m_status;
}

// One command per turn of the event loop, so that the forms lay out, paint and answer in between. The timer
// is armed before the command: one that opens a form returns only when the form has closed, and the commands
// after it come from the form's own event loop.
void ScenarioPlayer::step()
{
    if (m_finished)
        return;
    if (!mayGoOn()) {
        m_timer.start();
        return;
    }
    if (m_next == m_lines.size()) {
        finish();
        return;
    }
    const ScenarioLine &line = m_lines.at(m_next++);
    m_running.append({&line, QApplication::activeModalWidget()});
    m_timer.start();
    try {
        perform(line);
        if (!m_prompts.failure().isEmpty())
            stop(line, m_prompts.failure());
    } catch (const UserError &error) {
        stop(line, error.text());
    } catch (const dao::Error &error) {
        stop(line, error.text().simplified());
    } catch (const std::exception &error) {
        stop(line, QString::fromLocal8Bit(error.what()).simplified());
    }
    m_running.removeLast();
}

// While a command has not returned, the next one waits until a form has opened on top of the one that the
// command found. A form that has just closed is not used again before its own loop is left.
bool ScenarioPlayer::mayGoOn()
{
    if (m_running.isEmpty())
        return true;
    const Running &blocked = m_running.last();
    if (!m_prompts.failure().isEmpty()) {
        stop(*blocked.line, m_prompts.failure());
        return false;
    }
    QWidget *active = QApplication::activeModalWidget();
    const bool isForeign = active && !qobject_cast<ChartForm *>(active);
    if (isForeign || (QApplication::activePopupWidget() && active == blocked.form)) {
        stop(*blocked.line, QStringLiteral("si è aperta una finestra che non è una maschera"));
        return false;
    }
    return active && active != blocked.form && active->isVisible();
}

void ScenarioPlayer::stop(const ScenarioLine &line, const QString &reason)
{
    if (m_finished)
        return;
    m_status = Stopped;
    m_output.error(QStringLiteral("riga %1: %2").arg(line.number).arg(reason));
    finish();
}

void ScenarioPlayer::finish()
{
    m_finished = true;
    m_timer.stop();
    while (QWidget *popup = QApplication::activePopupWidget())
        popup->hide();
    while (QWidget *window = QApplication::activeModalWidget()) {
        if (auto *form = qobject_cast<ChartForm *>(window))
            form->abandon();
        else
            window->hide();
    }
    m_loop.quit();
}

void ScenarioPlayer::perform(const ScenarioLine &line)
{
    if (performOnForm(line) || performOnControl(line))
        return;
    switch (line.command) {
    case ScenarioCommand::Today:
        m_clock.fix(line.date);
        break;
    case ScenarioCommand::Setting:
        m_settings.write(line.name, line.text);
        break;
    case ScenarioCommand::Get:
        print(settingReport(line.name, m_settings.read(line.name)));
        break;
    case ScenarioCommand::Patient:
        selectPatient(line.count);
        break;
    case ScenarioCommand::Action:
        act(line);
        break;
    case ScenarioCommand::Answer:
        m_prompts.queueAnswer(promptButton(line.name));
        break;
    case ScenarioCommand::Boxes:
        print(boxesReport(m_prompts.takeBoxes()));
        break;
    case ScenarioCommand::Header:
        loadHeader();
        print(headerReport(m_header));
        break;
    case ScenarioCommand::Sql:
        print(queryReport(database(line.name), line.text));
        break;
    case ScenarioCommand::Exec: {
        dao::Database &target = database(line.name);
        target.Execute(line.text);
        print(JsonLine().add(QStringLiteral("affected"), target.RecordsAffected()));
        break;
    }
    default: { // Extract
        clivara::Log unstarted(m_clock);
        print(extractionReport(clivara::ModEstrazDati(*m_practice.environment().clinical, unstarted),
                               line.name, line.text));
    }
    }
}

bool ScenarioPlayer::performOnForm(const ScenarioLine &line)
{
    switch (line.command) {
    case ScenarioCommand::Form:
        print(formReport(activeForm()));
        return true;
    case ScenarioCommand::Key:
        pressKey(neededForm(), line.name);
        return true;
    case ScenarioCommand::Close:
        neededForm().close();
        return true;
    case ScenarioCommand::Shot:
        savePicture(line.name);
        return true;
    default:
        return false;
    }
}

bool ScenarioPlayer::performOnControl(const ScenarioLine &line)
{
    const auto control = [&]() -> QWidget & { return findControl(neededForm(), line.name); };
    switch (line.command) {
    case ScenarioCommand::Type:
        typeText(control(), line.text);
        return true;
    case ScenarioCommand::Choose:
        chooseEntry(control(), line.text);
        return true;
    case ScenarioCommand::Check:
    case ScenarioCommand::Uncheck:
        setChecked(control(), line.command == ScenarioCommand::Check);
        return true;
    case ScenarioCommand::Click:
        clickControl(neededForm(), line.name);
        return true;
    case ScenarioCommand::Select:
        selectRow(control(), line.count);
        return true;
    case ScenarioCommand::DoubleClick:
        doubleClickRow(control(), line.count);
        return true;
    case ScenarioCommand::Show:
        print(controlReport(line.name, control()));
        return true;
    case ScenarioCommand::Rows:
        print(rowsReport(line.name, control()));
        return true;
    case ScenarioCommand::Expect:
        expectText(line, shownText(control()));
        return true;
    default:
        return false;
    }
}

void ScenarioPlayer::selectPatient(int code)
{
    if (code == -1)
        deselectPatient(m_settings);
    else if (!orvale::selectPatient(m_settings, *m_practice.environment().clinical, code))
        throw UserError(QStringLiteral("l'archivio non ha il paziente %1").arg(code));
}

void ScenarioPlayer::act(const ScenarioLine &line)
{
    if (activeForm())
        throw UserError(QStringLiteral("la maschera %1 è ancora aperta").arg(activeForm()->objectName()));
    loadHeader();
    QVariant parameter = line.parameter;
    chart().Action(static_cast<qint16>(line.count), parameter);
}

void ScenarioPlayer::expectText(const ScenarioLine &line, const QString &shown)
{
    if (shown == line.text)
        return;
    m_status = Failed;
    m_output.error(QStringLiteral("riga %1: %2: atteso \"%3\", mostrato \"%4\"")
                       .arg(QString::number(line.number), line.name, line.text, shown));
}

void ScenarioPlayer::savePicture(const QString &name)
{
    ChartForm &form = neededForm();
    const QDir folder(m_output.pictures);
    const QString path = folder.filePath(name + QStringLiteral(".png"));
    // The screen of a run without a display is smaller than any real one.
    const QSize shown = form.size();
    form.resize(shown.expandedTo(form.sizeHint()));
    QPixmap picture;
    // Lists lay out their rows, and show or hide their scroll bars, only while they are painted.
    for (int i = 0; i < 2; ++i) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        picture = form.grab();
    }
    form.resize(shown);
    if (!folder.mkpath(QStringLiteral(".")) || !picture.save(path))
        throw UserError(QStringLiteral("l'immagine %1 non si può scrivere").arg(path));
}

void ScenarioPlayer::print(const JsonLine &line) const
{
    m_output.result(line.text());
}

void ScenarioPlayer::loadHeader()
{
    clivara::loadPatientHeader(m_header, m_settings, *m_practice.environment().clinical, m_clock);
}

ChartForm *ScenarioPlayer::activeForm() const
{
    return qobject_cast<ChartForm *>(QApplication::activeModalWidget());
}

ChartForm &ScenarioPlayer::neededForm() const
{
    ChartForm *form = activeForm();
    if (!form)
        throw UserError(QStringLiteral("nessuna maschera è aperta"));
    return *form;
}

dao::Database &ScenarioPlayer::database(const QString &name) const
{
    const clivara::HostEnvironment &environment = m_practice.environment();
    const QHash<QString, dao::Database *> databases{
        {QStringLiteral("clinical"), environment.clinical.get()},
        {QStringLiteral("codes"), environment.codes.get()},
        {QStringLiteral("third"), environment.third.get()},
        {QStringLiteral("doctors"), environment.doctors.get()},
        {QStringLiteral("local"), environment.local.get()},
        {QStringLiteral("events"), environment.events.get()},
    };
    return *databases.value(name);
}

// The chart decides when it is created whether it writes its trace: settings before the first action count.
clivara::Class3 &ScenarioPlayer::chart()
{
    if (!m_chart) {
        m_chart = std::make_unique<clivara::Class3>(
            clivara::Services{m_settings, m_clock, m_prompts, m_pauses, m_guids, m_middleware});
        m_chart->InitDbConn(m_practice.environment());
    }
    return *m_chart;
}

} // namespace orvale
