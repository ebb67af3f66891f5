// SPDX-License-Identifier: Apache-2.0
#include "app/practice/Schema.h"

#include "app/practice/ResourceText.h"
#include "app/practice/UserError.h"
#include "dao/Engines.h"

#include <QDir>
#include <QRegularExpression>
#include <algorithm>

// The resource stands in a static library; naming it here keeps it in the program.
static void useSchemaResource()
{
    Q_INIT_RESOURCE(schema);
}

namespace orvale {

namespace {

using RowCounts = QMap<QString, qint64>; // by "database.table"

RowCounts countRows(const QMap<QString, std::shared_ptr<dao::Database>> &databases)
{
    RowCounts counts;
    for (auto it = databases.begin(); it != databases.end(); ++it) {
        const dao::TableDefs tables = it.value()->TableDefs();
        for (int i = 0; i < tables.Count(); ++i) {
            const dao::TableDef table = tables[i];
            if (!table.Connect().isEmpty() || table.Name().startsWith(QLatin1String("MSys")))
                continue; // a linked table is counted where it stands
            const auto rows =
                it.value()->OpenRecordset(QStringLiteral("SELECT count(*) FROM [%1]").arg(table.Name()));
            counts.insert(it.key() + u'.' + table.Name(), rows->Fields(0).Value().toLongLong());
        }
    }
    return counts;
}

} // namespace

const QList<PracticeFile> &practiceFiles()
{
    static const QList<PracticeFile> files{
        {QStringLiteral("clinical"), QStringLiteral("Orvale.sqlite")},
        {QStringLiteral("codes"), QStringLiteral("Tabelle.sqlite")},
        {QStringLiteral("third"), QStringLiteral("Terzo.sqlite")},
        {QStringLiteral("doctors"), QStringLiteral("Medici.sqlite")},
        {QStringLiteral("local"), QStringLiteral("Locale.sqlite")},
        {QStringLiteral("events"), QStringLiteral("Eventi.sqlite")},
    };
    return files;
}

bool isOnServer(const QString &practice)
{
    return dao::storageKind(practice) == dao::StorageKind::Server;
}

QString databaseName(const QString &practice, const PracticeFile &file)
{
    if (!isOnServer(practice))
        return QDir(practice).filePath(file.fileName);
    // In the making its schemas have another beginning.
    return practice + (practice.contains(u'#') ? u'_' : u'#') + file.database;
}

QStringList schemaStatements(const QString &sql)
{
    QStringList statements;
    QString statement;
    const QStringList lines = sql.split(u'\n');
    for (const QString &line : lines) {
        if (line.trimmed().startsWith(QLatin1String("--")))
            continue;
        statement += line + u'\n';
        if (line.trimmed().endsWith(u';')) {
            statement = statement.trimmed();
            statement.chop(1);
            statements.append(statement);
            statement.clear();
        }
    }
    if (!statement.trimmed().isEmpty())
        statements.append(statement.trimmed());
    return statements;
}

Schema Schema::current()
{
    useSchemaResource();
    QList<SchemaFile> files;
    const QStringList names =
        QDir(QStringLiteral(":/schema")).entryList({QStringLiteral("*.sql")}, QDir::Files, QDir::Name);
    for (const QString &name : names) {
        SchemaFile schemaFile; // "0001_clinical.sql"
        schemaFile.version = name.section(u'_', 0, 0).toInt();
        schemaFile.database = name.section(u'_', 1).section(u'.', 0, 0);
        schemaFile.sql = resourceText(QStringLiteral(":/schema/") + name);
        files.append(schemaFile);
    }
    return Schema(files);
}

Schema::Schema(QList<SchemaFile> files)
    : m_files(std::move(files))
{
    std::stable_sort(m_files.begin(), m_files.end(),
                     [](const SchemaFile &a, const SchemaFile &b) { return a.version < b.version; });
}

int Schema::version() const
{
    return m_files.isEmpty() ? 0 : m_files.last().version;
}

QStringList Schema::firstTables(const QString &database) const
{
    static const QRegularExpression createTable(QStringLiteral("^CREATE TABLE\\s+\\[?(\\w+)"),
                                                QRegularExpression::MultilineOption);
    QStringList names;
    for (const SchemaFile &file : m_files) {
        if (file.version != 1 || file.database != database)
            continue;
        auto matches = createTable.globalMatch(file.sql);
        while (matches.hasNext())
            names.append(matches.next().captured(1));
    }
    return names;
}

QList<TableKey> Schema::primaryKeys() const
{
    static const QRegularExpression primary(
        QStringLiteral("^CREATE UNIQUE INDEX \\w+ ON (\\w+) \\(([^)]*)\\) WITH PRIMARY;"),
        QRegularExpression::MultilineOption);
    QList<TableKey> keys;
    for (const SchemaFile &file : m_files) {
        auto matches = primary.globalMatch(file.sql);
        while (matches.hasNext()) {
            const QRegularExpressionMatch match = matches.next();
            keys.append({file.database, match.captured(1),
                         match.captured(2).remove(u'[').remove(u']').split(QStringLiteral(", "))});
        }
    }
    return keys;
}

void Schema::apply(dao::Workspace &workspace, const QMap<QString, std::shared_ptr<dao::Database>> &databases,
                   int fromVersion) const
{
    try {
        dao::Transaction transaction(workspace);
        const RowCounts before = countRows(databases);
        for (const SchemaFile &file : m_files) {
            if (file.version <= fromVersion)
                continue;
            const QStringList statements = schemaStatements(file.sql);
            for (const QString &statement : statements)
                databases.value(file.database)->Execute(statement);
        }
        // A version is written with its rows, so it is not counted against them.
        RowCounts after = countRows(databases);
        for (auto it = before.begin(); it != before.end(); ++it) {
            if (after.value(it.key(), -1) != it.value())
                throw UserError(
                    QStringLiteral("Aggiornamento annullato: la tabella %1 aveva %2 righe e ne avrebbe %3.")
                        .arg(it.key())
                        .arg(it.value())
                        .arg(after.value(it.key(), 0)));
        }
        writeProperty(*databases.value(QStringLiteral("clinical")), QStringLiteral("schema_version"),
                      QString::number(version()));
        transaction.commit();
    } catch (const dao::Error &error) {
        throw UserError(
            QStringLiteral("Le tabelle dell'archivio non si possono preparare: %1").arg(error.text()));
    }
}

QString readProperty(dao::Database &clinical, const QString &name)
{
    const auto row = clinical.OpenRecordset(
        {QStringLiteral("SELECT [value] FROM orvale_properties WHERE [name] = [wanted]"), {{"wanted", name}}},
        dao::RecordsetType::Snapshot);
    return row->Eof() ? QString() : row->Fields(0).text();
}

void writeProperty(dao::Database &clinical, const QString &name, const QString &value)
{
    const auto row = clinical.OpenRecordset(
        {QStringLiteral("SELECT * FROM orvale_properties WHERE [name] = [wanted]"), {{"wanted", name}}});
    if (row->Eof())
        row->AddNew();
    else
        row->Edit();
    row->Fields(QStringLiteral("name")).setValue(name);
    row->Fields(QStringLiteral("value")).setValue(value);
    row->Update();
}

} // namespace orvale
