// SPDX-License-Identifier: Apache-2.0
#include "Driver.h"

#include "Check.h"
#include "Desk.h"
#include "Ledger.h"
#include "app/demo/Demo.h"
#include "app/import/PracticeCopy.h"
#include "app/practice/DamageWatch.h"
#include "app/practice/Practice.h"
#include "app/practice/PracticeCheck.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QRandomGenerator>
#include <QTimer>
#include <algorithm>
#include <cstdio>

namespace workstations {

namespace {

constexpr int patienceMs = 60000; // of a doctor whose server is being killed
constexpr int afterAnnouncementMs = 25; // a save lasts about so long
constexpr int betweenServerKillsMs = 1500;
constexpr int longestStay = 4; // saves of a workstation that comes and goes
constexpr int longestVisitMs = 600; // of a visitor who is killed

QString ledgerPath(const Run &run, int worker)
{
    return QDir(run.folder).filePath(QStringLiteral("ledger-%1.jsonl").arg(worker));
}

void say(const QString &line)
{
    std::printf("%s\n", line.toUtf8().constData());
    std::fflush(stdout);
}

bool isServer(const QString &practice)
{
    return practice.startsWith(QLatin1String("postgresql://"));
}

// A practice with the patients that the saves are about.
void prepare(const Run &run)
{
    orvale::DemoOptions options;
    options.patients = 5;
    options.years = 1;
    options.today = QDate::currentDate();
    orvale::createDemo(run.practice, options);
    const auto practice = orvale::Practice::open(run.practice);
    dao::Database &clinical = *practice->environment().clinical;
    dao::Transaction together(*practice->environment().workspace);
    for (int i = 0; i < patientsNeeded(run.workstations, run.saves); ++i) {
        const QString key = QString::number(firstPatient + i);
        clinical.Execute(
            QStringLiteral("INSERT INTO archivio (cod_paz, cognome, nome, sesso, Data_Nasc, sOwnerUid) "
                           "VALUES (%1, 'Prova', 'Numero %1', 'M', #3/15/1966#, '{owner}')")
                .arg(key));
        clinical.Execute(QStringLiteral("INSERT INTO inf_gen (cod_paz) VALUES (%1)").arg(key));
    }
    together.commit();
}

// A running workstation, started again where it was killed.
class Workstation {
public:
    Workstation(const Run &run, int worker)
        : m_run(run)
        , m_worker(worker)
    {
    }

    void start()
    {
        QStringList arguments{"work",          m_run.practice,
                              "--folder",      m_run.folder,
                              "--processes",   QString::number(m_run.workstations),
                              "--saves",       QString::number(m_run.saves),
                              "--kill-server", QString::number(m_run.serverKills),
                              "--worker",      QString::number(m_worker),
                              "--from",        QString::number(nextSave())};
        if (m_run.comesAndGoes)
            arguments.append("--come-and-go");
        m_process.start(QCoreApplication::applicationFilePath(), arguments);
        m_process.waitForStarted();
    }

    // Whether it saves, or will. One that has gone for a while comes back.
    bool isWorking()
    {
        if (m_process.state() != QProcess::NotRunning)
            return true;
        if (!m_run.comesAndGoes || m_process.exitCode() != 0 || m_process.exitStatus() != QProcess::NormalExit
            || nextSave() >= m_run.saves)
            return false;
        start();
        return true;
    }
    // Whether a save has begun since the last call.
    bool takeAnnouncement() { return m_process.readAllStandardOutput().contains("saving"); }
    void kill()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    // What it has to say for itself when it ended badly; empty when it did well.
    QString complaint()
    {
        const QString error = QString::fromUtf8(m_process.readAllStandardError()).trimmed();
        if (m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0)
            return {};
        return QStringLiteral("la postazione %1 è finita con %2: %3")
            .arg(m_worker)
            .arg(m_process.exitCode())
            .arg(error.right(2000));
    }

private:
    int nextSave() const
    {
        const auto entries = Account::read(ledgerPath(m_run, m_worker)).entries;
        return entries.isEmpty() ? 0 : entries.last().save.number + 1;
    }

    const Run &m_run;
    const int m_worker;
    QProcess m_process;
};

// Programs that open the practice for a moment, so many at once. Some are killed while they have it open.
class Visitors {
public:
    explicit Visitors(const Run &run)
        : m_run(run)
        , m_random(run.seed + 1)
    {
        for (int i = 0; i < run.visitors; ++i)
            m_processes.push_back(std::make_unique<QProcess>());
    }

    // Sees whoever has gone out and lets the next one in.
    void serve(QStringList &faults)
    {
        for (const auto &process : m_processes) {
            if (process->state() != QProcess::NotRunning)
                continue;
            takeFault(*process, faults);
            const int number = m_visits++;
            process->setObjectName(QString::number(number));
            process->start(
                QCoreApplication::applicationFilePath(),
                {"visit", m_run.practice, "--folder", m_run.folder, "--from", QString::number(number)});
            if (m_random.bounded(4) == 0)
                QTimer::singleShot(m_random.bounded(longestVisitMs), process.get(),
                                   [this, number, visitor = process.get()] {
                                       if (visitor->objectName() == QString::number(number)
                                           && visitor->state() != QProcess::NotRunning) {
                                           visitor->setProperty("killed", true);
                                           visitor->kill();
                                           ++m_killed;
                                       }
                                   });
        }
    }
    void waitForAll(QStringList &faults)
    {
        for (const auto &process : m_processes) {
            process->waitForFinished(60000);
            takeFault(*process, faults);
        }
    }
    int visits() const { return m_visits; }
    int killed() const { return m_killed; }

private:
    static void takeFault(QProcess &process, QStringList &faults)
    {
        if (process.program().isEmpty())
            return; // nobody has come yet
        const QString error = QString::fromUtf8(process.readAllStandardError()).trimmed();
        if (!process.property("killed").toBool()
            && (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0))
            faults.append(QStringLiteral("la visita %1 è finita con %2: %3")
                              .arg(process.objectName())
                              .arg(process.exitCode())
                              .arg(error.right(2000)));
        process.setProperty("killed", false);
    }

    const Run &m_run;
    QRandomGenerator m_random;
    std::vector<std::unique_ptr<QProcess>> m_processes;
    int m_visits = 0, m_killed = 0;
};

void sleepAndServe(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

using Workstations = std::vector<std::unique_ptr<Workstation>>;

bool anyRunning(const Workstations &all)
{
    // Each is asked: whoever comes and goes comes back by that.
    return std::count_if(all.begin(), all.end(), [](const auto &one) { return one->isWorking(); }) > 0;
}

int killWorkstations(const Run &run, Workstations &all, QRandomGenerator &random)
{
    int killed = 0;
    while (killed < run.workstationKills && anyRunning(all)) {
        Workstation &victim = *all[std::size_t(random.bounded(run.workstations))];
        victim.takeAnnouncement();
        while (victim.isWorking() && !victim.takeAnnouncement())
            sleepAndServe(1);
        if (!victim.isWorking())
            continue;
        sleepAndServe(random.bounded(afterAnnouncementMs));
        victim.kill();
        ++killed;
        victim.start();
    }
    return killed;
}

bool controlServer(const char *command)
{
    return QProcess::execute(qEnvironmentVariable("CLIVARA_TEST_SERVER_CONTROL"), {command}) == 0;
}

int killServer(const Run &run, Workstations &all, QRandomGenerator &random, QStringList &faults)
{
    // Opening the practice is no save: nobody is patient there.
    for (const auto &workstation : all) {
        while (workstation->isWorking() && !workstation->takeAnnouncement())
            sleepAndServe(1);
    }
    int killed = 0;
    while (killed < run.serverKills && anyRunning(all)) {
        sleepAndServe(random.bounded(betweenServerKillsMs));
        if (!anyRunning(all))
            break;
        if (!controlServer("kill"))
            faults.append("il server non si è potuto fermare");
        ++killed;
        sleepAndServe(random.bounded(400));
        if (!controlServer("start")) {
            faults.append("il server non è ripartito");
            for (const auto &workstation : all)
                workstation->kill();
        }
    }
    return killed;
}

// How often the trace of a workstation speaks of another attempt.
int retriesIn(const QString &folder)
{
    int retries = 0;
    QDir logs(folder + QStringLiteral("/logOrvale"));
    for (const QFileInfo &file : logs.entryInfoList(QDir::Files)) {
        QFile log(file.filePath());
        if (log.open(QIODevice::ReadOnly))
            retries += int(log.readAll().count("TryAgain"));
    }
    return retries;
}

QString workFolder(const Run &run, int worker)
{
    return QDir(run.folder).filePath(QStringLiteral("desk-%1").arg(worker));
}

struct Waits {
    QList<qint64> ms;
    void add(qint64 wait)
    {
        if (wait >= 0)
            ms.append(wait);
    }
    QString text()
    {
        std::sort(ms.begin(), ms.end());
        if (ms.isEmpty())
            return QStringLiteral("nessuna");
        return QStringLiteral("mediana %1, 99 su 100 %2, la più lunga %3 ms")
            .arg(ms[ms.size() / 2])
            .arg(ms[ms.size() * 99 / 100])
            .arg(ms.last());
    }
    qint64 longest() const { return ms.isEmpty() ? 0 : *std::max_element(ms.begin(), ms.end()); }
};

} // namespace

int work(const Run &run, int worker, int from)
{
    Ledger ledger(ledgerPath(run, worker));
    Desk desk(run.practice, workFolder(run, worker), ledger, run.serverKills > 0 ? patienceMs : 0);
    const int stay = run.comesAndGoes ? 1 + (from * 7 + worker) % longestStay : run.saves;
    for (int number = from; number < std::min(run.saves, from + stay); ++number)
        desk.perform(makeSave(worker, number, run.saves));
    return 0;
}

int visit(const Run &run, int number)
{
    enum Act { Look, ReadPages, Watch, Check, Copy, Acts };
    const bool isOnServer = isServer(run.practice);
    switch (Act(number % Acts)) {
    case ReadPages:
        orvale::Practice::open(run.practice);
        return 0;
    case Watch: {
        const auto practice = orvale::Practice::open(run.practice, orvale::Schema::current(),
                                                     orvale::Practice::Pages::ReadLater);
        const orvale::DamageWatch watch(run.practice); // waits for its end
        return 0;
    }
    case Check: {
        const auto practice = orvale::Practice::open(run.practice);
        const auto found = orvale::checkPractice(*practice);
        for (const orvale::Finding &finding : found)
            std::fprintf(stderr, "%s\n", finding.text.toUtf8().constData());
        return found.isEmpty() ? 0 : 1;
    }
    case Copy: {
        const QString copy = QDir(run.folder).filePath(QStringLiteral("copia-%1").arg(number));
        if (!isOnServer || number % (2 * Acts) == Copy) {
            orvale::copyPractice(run.practice, copy);
            QDir(copy).removeRecursively();
        }
        return 0;
    }
    case Look:
    default:
        const auto practice = orvale::Practice::open(run.practice, orvale::Schema::current(),
                                                     orvale::Practice::Pages::ReadLater);
        const auto rows = practice->environment().clinical->OpenRecordset("SELECT * FROM VISITAPROBL");
        while (!rows->Eof())
            rows->MoveNext();
        return 0;
    }
}

int drive(const Run &run)
{
    QRandomGenerator random(run.seed);
    QDir().mkpath(run.folder);
    prepare(run);

    QElapsedTimer timer;
    timer.start();
    Workstations all;
    for (int worker = 0; worker < run.workstations; ++worker) {
        all.push_back(std::make_unique<Workstation>(run, worker));
        all.back()->start();
    }
    QStringList faults;
    Visitors visitors(run);
    QTimer door;
    QObject::connect(&door, &QTimer::timeout, [&] { visitors.serve(faults); });
    door.start(5);
    const int killed = killWorkstations(run, all, random);
    if (killed < run.workstationKills)
        faults.append(QStringLiteral("solo %1 postazioni uccise: troppo pochi salvataggi").arg(killed));
    const int serverKills = killServer(run, all, random, faults);
    if (serverKills < run.serverKills)
        faults.append(QStringLiteral("solo %1 arresti del server: troppo pochi salvataggi").arg(serverKills));
    while (anyRunning(all))
        sleepAndServe(10);
    door.stop();
    visitors.waitForAll(faults);
    const double seconds = double(timer.elapsed()) / 1000;

    QList<Account> accounts;
    Waits opened, saved;
    int begun = 0, acknowledged = 0, shown = 0, retries = 0;
    for (int worker = 0; worker < run.workstations; ++worker) {
        if (const QString complaint = all[std::size_t(worker)]->complaint(); !complaint.isEmpty())
            faults.append(complaint);
        accounts.append(Account::read(ledgerPath(run, worker)));
        const Account &account = accounts.last();
        for (const Account::Entry &entry : account.entries) {
            ++begun;
            acknowledged += entry.isAcknowledged;
            opened.add(entry.openedMs);
            saved.add(entry.savedMs);
        }
        shown += int(account.shown.size());
        // A doctor whose server is gone must be told; otherwise there is nothing to tell.
        if (run.serverKills == 0)
            faults += account.shown;
        retries += retriesIn(workFolder(run, worker));
    }
    if (begun != run.workstations * run.saves)
        faults.append(QStringLiteral("iniziati %1 salvataggi invece di %2")
                          .arg(begun)
                          .arg(run.workstations * run.saves));
    // Only a workstation that was killed leaves a save without its end.
    if (begun - acknowledged > run.workstationKills)
        faults.append(QStringLiteral("%1 salvataggi senza conferma").arg(begun - acknowledged));
    if (run.limitMs > 0 && std::max(saved.longest(), opened.longest()) > run.limitMs)
        faults.append(QStringLiteral("un'attesa supera %1 ms").arg(run.limitMs));
    faults += compare(accounts, *orvale::Practice::open(run.practice));

    say(QStringLiteral(
            "%1: %2 postazioni × %3 salvataggi in %4 s; confermati %5; postazioni uccise %6; arresti del "
            "server %7; messaggi mostrati %8; nuovi tentativi %9; visite %10, di cui %11 uccise")
            .arg(isServer(run.practice) ? QStringLiteral("server") : QStringLiteral("file"))
            .arg(run.workstations)
            .arg(run.saves)
            .arg(seconds, 0, 'f', 1)
            .arg(acknowledged)
            .arg(killed)
            .arg(serverKills)
            .arg(shown)
            .arg(retries)
            .arg(visitors.visits())
            .arg(visitors.killed()));
    say(QStringLiteral("attesa di un salvataggio: ") + saved.text());
    say(QStringLiteral("attesa di una maschera: ") + opened.text());
    for (const QString &fault : std::as_const(faults))
        say(QStringLiteral("ERRORE: ") + fault);
    return faults.isEmpty() ? 0 : 1;
}

} // namespace workstations
