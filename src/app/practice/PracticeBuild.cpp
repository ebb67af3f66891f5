// SPDX-License-Identifier: Apache-2.0
#include "app/practice/PracticeBuild.h"

#include "app/practice/NetworkShare.h"
#include "app/practice/PracticeProbe.h"
#include "dao/Engines.h"
#include "problems/ProblemItems.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QThread>

namespace orvale {

namespace {

constexpr int afterExchangeMs = 400; // a lock is waited for for 250

std::vector<std::unique_ptr<dao::ExclusiveUse>> takePractice(const QString &folder)
{
    probePractice(folder, Schema::current());
    std::vector<std::unique_ptr<dao::ExclusiveUse>> uses;
    for (const PracticeFile &file : practiceFiles()) {
        try {
            uses.push_back(dao::useExclusively(QDir(folder).filePath(file.fileName)));
        } catch (const dao::Error &error) {
            if (error.number() == dao::Locked)
                throw UserError(
                    QStringLiteral("L'archivio %1 è aperto: chiuderlo in tutti i programmi e riprovare.")
                        .arg(folder));
            throw UserError(
                QStringLiteral("L'archivio %1 non si può sostituire: %2").arg(folder, error.text()));
        }
    }
    return uses;
}

// A practice's folder holds its six files, what SQLite puts beside them while they are open, and the files of
// the components that work on it, all databases.
bool holdsOnlyDatabases(const QString &folder)
{
    const QFileInfoList entries =
        QDir(folder).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    return std::all_of(entries.begin(), entries.end(), [](const QFileInfo &entry) {
        return entry.isFile()
               && QDir::match({QStringLiteral("*.sqlite"), QStringLiteral("*.sqlite-wal"),
                               QStringLiteral("*.sqlite-shm"), QStringLiteral("*.sqlite-journal")},
                              entry.fileName());
    });
}

} // namespace

PracticeBuild::PracticeBuild(const QString &path, Existing existing, Tables tables)
    : m_target(practicePath(path))
    , m_given(path)
{
    if (isOnServer(m_target)) {
        if (existing == Existing::Replaced)
            throw UserError(QStringLiteral("Un archivio su un server non si sostituisce: indicare un altro "
                                           "database del server."));
        m_serverPart = std::make_unique<ServerPart>(path);
        begin(path, tables);
        return;
    }
    refuseNetworkShare(m_target);
    const QFileInfo info(m_target);
    const bool holdsSomething =
        info.isDir()
        && !QDir(m_target).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    if (info.exists() && !info.isDir())
        throw UserError(QStringLiteral("%1 esiste già e non è una cartella.").arg(m_target));
    if (holdsSomething && existing == Existing::Refused)
        throw UserError(QStringLiteral("La cartella %1 esiste già e non è vuota.").arg(m_target));
    if (holdsSomething)
        m_previous = takePractice(m_target);
    m_part = std::make_unique<PartFolder>(m_target);
    begin({}, tables);
}

void PracticeBuild::begin(const QString &given, Tables tables)
{
    m_practice.reset(new Practice(folder(), given));
    m_practice->openDatabases(true);
    const auto databases = m_practice->databases();
    for (auto it = databases.begin(); it != databases.end(); ++it)
        m_loads.emplace(it.key(), std::make_unique<dao::BulkLoad>(*it.value()));
    if (m_serverPart)
        m_loads.at(QStringLiteral("local"))->prepareLinks();
    if (tables == Tables::None)
        return;
    Schema::current().apply(m_practice->m_engine->DefaultWorkspace(), databases, 0);
    m_practice->setProperty(QStringLiteral("created"), QDateTime::currentDateTime().toString(Qt::ISODate));
}

PracticeBuild::~PracticeBuild() = default;

dao::Database &PracticeBuild::database(const QString &role)
{
    return *m_practice->databases().value(role);
}

void PracticeBuild::finish()
{
    // So that a lock at the first opening does no harm. Links within a folder go with it.
    if (m_part)
        clivara::attachProblemTables(m_practice->environment());
    for (const auto &[role, load] : m_loads)
        load->finish();
    m_loads.clear();
    m_practice.reset();
    if (m_part)
        m_part->sync();
}

void PracticeBuild::linkOnServer()
{
    try {
        Practice practice(m_target, m_given);
        practice.openDatabases(false);
        clivara::attachProblemTables(practice.environment());
    } catch (const dao::Error &) {
        // The practice is whole. Its lists link their tables when they are first opened.
    }
}

QString PracticeBuild::place(Previous previous)
{
    if (m_serverPart) {
        m_serverPart->place();
        linkOnServer();
        return {};
    }
    if (m_previous.empty()) {
        m_part->place();
        return {};
    }
    const bool keep = previous == Previous::Kept || !holdsOnlyDatabases(m_target);
    for (const auto &use : m_previous)
        use->aboutToMove();
    const QString beside = m_part->placeInstead();
    // A program that has just opened a previous file and waits for its lock would go on with the log of the
    // new file, found by its name. It gives up waiting before the lock is released.
    QThread::msleep(afterExchangeMs);
    m_previous.clear();
    if (!keep && QDir(beside).removeRecursively())
        return {};
    return beside;
}

} // namespace orvale
