// SPDX-License-Identifier: Apache-2.0
#include "host/Class3.h"

#include "chart/ErrorLog.h"
#include "chart/FormCall.h"
#include "chart/FormOpener.h"
#include "chart/HostContext.h"
#include "chart/WorkingState.h"
#include "data/Connection.h"
#include "host/AllForms.h"
#include "host/FormShelf.h"
#include "host/WaitPointer.h"
#include "support/ui/ChartForm.h"
#include "support/ui/WidgetPrompts.h"

#include <QCoreApplication>
#include <QScopeGuard>

namespace clivara {

namespace {

const auto separator = QStringLiteral("==============================");
constexpr qint16 unloadForms = 99;

QString entryOf(const char *routine)
{
    return QStringLiteral("+--- Class3.") + QLatin1String(routine);
}

QString exitOf(const char *routine)
{
    return entryOf(routine) + QStringLiteral(" end");
}

// The services of the workstation, for a host that brings none.
struct WorkstationServices {
    std::unique_ptr<SettingsStore> settings = openUserSettings();
    SystemClock clock;
    WidgetPrompts prompts;
    SystemPauses pauses;
    SystemGuids guids;
    SystemMiddleware middleware;

    Services services() { return {*settings, clock, prompts, pauses, guids, middleware}; }
};

} // namespace

struct Class3::Private : FormOpener {
    explicit Private(std::unique_ptr<WorkstationServices> own)
        : workstation(std::move(own))
        , state(workstation->services())
    {
        state.forms = this;
    }
    explicit Private(const Services &services)
        : state(services)
    {
        state.forms = this;
    }

    void initialize();
    void act(qint16 code, const QVariant &param);
    void open(const FormRegistry::Opened &opened, const QVariant &param);
    bool showBuilt(const QString &name, FormCall *call = nullptr);
    bool showForm(const QString &name, FormCall *call) override;
    const FormRegistry &registry() const override { return forms; }
    void unloadAll();
    ChartForm *form(const QString &name);

    std::unique_ptr<WorkstationServices> workstation; // null when the host brings its own
    WorkingState state;
    std::unique_ptr<dao::DBEngine> engine; // from the first InitDbConn on
    WaitPointer pointer;
    QString failure; // of the last Action
    bool hasLoaded = false; // whether the form that was opened last has been shown
    const FormRegistry forms = allForms();
    FormShelf shelf{state, forms};
};

void Class3::Private::initialize()
{
    state.log.start(state.settings, separator);
    state.log.write(entryOf("Class_Initialize"));
    state.log.write(exitOf("Class_Initialize"));
}

ChartForm *Class3::Private::form(const QString &name)
{
    // The doctor works in a visible form with the normal pointer.
    return shelf.form(name, [this](ChartForm &created) {
        QObject::connect(&created, &ChartForm::loaded, &created, [this] {
            pointer.restore();
            hasLoaded = true;
        });
    });
}

void Class3::Private::open(const FormRegistry::Opened &opened, const QVariant &param)
{
    const QString &name = opened.form->name;
    try {
        if (opened.action->prepare)
            opened.action->prepare(state, param);
        showBuilt(name);
    } catch (const std::exception &error) {
        logLine(state, name, error);
        throw;
    }
}

bool Class3::Private::showBuilt(const QString &name, FormCall *call)
{
    ChartForm *const opened = form(name);
    if (!opened) {
        state.log.write(state.componentName + QLatin1Char('.') + name
                        + QStringLiteral(": maschera non disponibile"));
        return false;
    }
    if (call)
        dynamic_cast<CalledForm &>(*opened).take(*call);
    opened->showModal();
    return true;
}

bool Class3::Private::showForm(const QString &name, FormCall *call)
{
    QString reason;
    hasLoaded = false;
    // The form that opens this one is shown already.
    const auto closed = qScopeGuard([this] { hasLoaded = true; });
    try {
        if (showBuilt(name, call))
            return true;
        reason = QStringLiteral("Questa parte della cartella non è ancora disponibile.");
    } catch (const ToldError &error) {
        logLine(state, name, error);
        return false;
    } catch (const dao::Error &error) {
        logLine(state, name, error);
        if (dao::isConnectionLost(error.number())) {
            tellUnreachable(state);
            return false;
        }
        reason = error.text();
    } catch (const std::exception &error) {
        logLine(state, name, error);
        reason = QString::fromLocal8Bit(error.what());
    }
    state.prompts.warn((hasLoaded ? QStringLiteral(
                            "Un errore ha chiuso la maschera: controllare che cosa è stato salvato.\n\n")
                                  : QStringLiteral("Non è stato possibile aprire la maschera.\n\n"))
                       + reason);
    return false;
}

void Class3::Private::unloadAll()
{
    for (const QString &name : forms.unloadOrder()) {
        if (ChartForm *const unneeded = form(name))
            unneeded->unload();
    }
}

void Class3::Private::act(qint16 code, const QVariant &param)
{
    state.log.write(entryOf("Action") + QLatin1Char(' ') + QString::number(code));
    if (code == unloadForms) {
        unloadAll();
        return;
    }
    state.unreachableTold = false;
    pointer.show();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    reloadHostContext(state);
    if (const FormRegistry::Opened opened = forms.opened(code, param); opened.form)
        open(opened, param);
    pointer.restore();
    state.log.write(QStringLiteral("+--- ") + state.componentName + QStringLiteral(".Action end"));
}

Class3::Class3()
    : d(std::make_unique<Private>(std::make_unique<WorkstationServices>()))
{
    d->initialize();
}

Class3::Class3(const Services &services)
    : d(std::make_unique<Private>(services))
{
    d->initialize();
}

Class3::~Class3()
{
    d->state.log.write(entryOf("Class_Terminate"));
    d->state.log.write(separator);
}

bool Class3::InitDbConn(const HostEnvironment &environment)
{
    d->state.log.write(entryOf("InitDbConn"));
    d->state.environment = &environment;
    if (!d->engine) {
        d->engine = std::make_unique<dao::DBEngine>();
        d->engine->setNow([&clock = d->state.clock] { return clock.local(); });
        d->state.engine = d->engine.get();
    }
    prepareEngine(*d->engine, environment, d->state.middleware);
    d->state.log.write(exitOf("InitDbConn"));
    return true;
}

qint16 Class3::Action(qint16 code)
{
    QVariant none;
    return Action(code, none);
}

qint16 Class3::Action(qint16 code, QVariant &param)
{
    d->state.result = {};
    d->failure.clear();
    try {
        d->act(code, param);
    } catch (const dao::Error &error) {
        if (dao::isConnectionLost(error.number())) {
            d->pointer.restore();
            tellUnreachable(d->state);
        } else {
            d->failure = error.text();
        }
    } catch (const std::exception &error) {
        // No error reaches the host; the missing "end" line of the log tells, and the host may ask.
        d->failure = QString::fromLocal8Bit(error.what());
    } catch (...) {
        d->failure = QStringLiteral("Errore imprevisto.");
    }
    if (d->state.result.isValid())
        param = d->state.result;
    return 0;
}

QString Class3::failure() const
{
    return d->failure;
}

bool Class3::isBuilt(qint16 code)
{
    static const FormRegistry forms = allForms();
    return forms.opens(code);
}

} // namespace clivara
