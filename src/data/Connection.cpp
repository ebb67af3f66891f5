// SPDX-License-Identifier: Apache-2.0
#include "data/Connection.h"

#include "dao/Engines.h"
#include "support/Seams.h"
#include "support/SettingsStore.h"
#include "values/JetValues.h"

#include <QDir>
#include <QFileInfo>

namespace clivara {

namespace {

constexpr QLatin1String linkPrefix(";DATABASE=");

QString inFolder(const QString &folder, const QString &file)
{
    return folder + QDir::separator() + file;
}

// The extension of the practice's files, the point included.
QString practiceExtension(const HostEnvironment &environment)
{
    if (!environment.clinical)
        throw dao::Error(dao::InvalidOperation, QStringLiteral("Archivio clinico non disponibile"));
    // With a practice on a server these are files of the workstation.
    if (environment.clinical->kind() == dao::StorageKind::Server)
        return QStringLiteral(".sqlite");
    const QString suffix = QFileInfo(environment.clinical->Name()).suffix();
    return suffix.isEmpty() ? QString() : QLatin1Char('.') + suffix;
}

// The full path of the database that the source letter stands for; empty for any other letter.
QString sourcePath(const HostEnvironment &environment, const QString &letter)
{
    const dao::Database *source = letter == QLatin1String("D")   ? environment.clinical.get()
                                  : letter == QLatin1String("S") ? environment.codes.get()
                                  : letter == QLatin1String("T") ? environment.third.get()
                                                                 : nullptr;
    return source ? source->Name() : QString();
}

// Whether a linked table's connect text names that database. Whole paths are compared: the path of a mirrored
// copy contains that of the original.
bool leadsTo(const QString &connect, const QString &database)
{
    const QString linked =
        connect.startsWith(linkPrefix, Qt::CaseInsensitive) ? connect.mid(linkPrefix.size()) : QString();
    return dao::isSameDatabase(linked, database);
}

// Empties the entries whose table is linked to the source already.
void skipLinkedTables(dao::Database &local, const QString &source, QStringList &list)
{
    dao::TableDefs tables = local.TableDefs();
    for (int i = 0; i < tables.Count(); ++i) {
        const dao::TableDef table = tables[i];
        const QString connect = table.Connect();
        if (connect.isEmpty())
            continue; // its own
        const auto entry = std::find_if(list.begin() + 1, list.end(), [&](const QString &name) {
            return jet::sameText(name, table.Name());
        });
        if (entry == list.end())
            continue;
        const bool isRight = !source.isEmpty() && leadsTo(connect, source);
        if (isRight)
            tables.Release(table.Name()); // another program may have linked it meanwhile
        // A letter that stands for no database changes no link.
        if (isRight || source.isEmpty())
            entry->clear();
    }
}

void linkTable(dao::Database &local, const QString &source, const QString &name)
{
    dao::TableDefs tables = local.TableDefs();
    if (tables.contains(name)) {
        dao::TableDef table = tables[name];
        table.setConnect(linkPrefix + source);
        table.RefreshLink();
        return;
    }
    dao::TableDef table = local.CreateTableDef(name);
    table.setConnect(linkPrefix + source);
    table.setSourceTableName(name);
    tables.Append(table);
    tables.Refresh();
}

} // namespace

QString workgroupFileName()
{
    return QStringLiteral("KORAL.MDW");
}

void prepareEngine(dao::DBEngine &engine, const HostEnvironment &environment, Middleware &middleware)
{
    try {
        engine.setSystemDB(inFolder(environment.programFolder, workgroupFileName()));
        engine.setDefaultUser(middleware.account(QStringLiteral("U")));
        engine.setDefaultPassword(middleware.account(QStringLiteral("P")));
    } catch (const std::exception &) {
        // A database that needs the account fails when it is opened.
    }
}

bool tableExists(dao::Database &database, const QString &name)
{
    return database.TableDefs().contains(name);
}

void AttachTables(const HostEnvironment &environment, QStringList &list)
{
    if (list.isEmpty() || !environment.local)
        return;
    int position = 1;
    try {
        const QString source = sourcePath(environment, list[0]);
        skipLinkedTables(*environment.local, source, list);
        for (; position < list.size(); ++position) {
            if (!list[position].isEmpty())
                linkTable(*environment.local, source, list[position]);
        }
    } catch (const dao::Error &) {
        // The form fails on its own query, also where an older link leads to another database, whose rows are
        // those of other patients.
        for (; position < list.size(); ++position) {
            if (!list[position].isEmpty())
                environment.local->TableDefs().Withhold(list[position]);
        }
    }
}

std::shared_ptr<dao::Database> openWorkDatabase(dao::DBEngine &engine, const HostEnvironment &environment,
                                                const SettingsStore &settings)
{
    return engine.OpenDatabase(inFolder(settings.text(QStringLiteral("Orvale_Work")),
                                        QStringLiteral("ORV_WORK") + practiceExtension(environment)));
}

std::shared_ptr<dao::Database> openUsersDatabase(dao::DBEngine &engine, const HostEnvironment &environment)
{
    return engine.OpenDatabase(
        inFolder(environment.dataFolder, QStringLiteral("Utenti") + practiceExtension(environment)));
}

} // namespace clivara
