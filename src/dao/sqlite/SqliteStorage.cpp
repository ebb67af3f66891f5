// SPDX-License-Identifier: Apache-2.0
#include "dao/sqlite/SqliteStorage.h"

#include "dao/sqlite/DatabaseFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

namespace dao {
namespace {

QString fileUri(const QFileInfo &file, const QString &options)
{
    return QString::fromLatin1(QUrl::fromLocalFile(file.absoluteFilePath()).toEncoded()) + u'?' + options;
}

// Looks at the file before SQLite does: SQLite would take an empty file for an empty database.
void requireDatabaseFile(const QFileInfo &file)
{
    const QString path = file.filePath();
    if (!file.exists() || !file.isFile())
        throw Error(CannotFindFile, QStringLiteral("Impossibile trovare il file '%1'").arg(path));
    constexpr QByteArrayView signature("SQLite format 3\0", 16);
    if (firstBytes(file.absoluteFilePath(), signature.size()) != signature)
        throw Error(NotADatabase, QStringLiteral("Formato di database non riconosciuto '%1'").arg(path));
}

} // namespace

QString SqliteStorage::sameName(const QString &name) const
{
    return QFileInfo(name).canonicalFilePath();
}

QString SqliteStorage::linkedName(const QString &name, const QString &holder) const
{
    // A practice is copied, moved and restored as a folder: its links stay within it.
    return QFileInfo(holder).absoluteDir().relativeFilePath(QFileInfo(name).absoluteFilePath());
}

QString SqliteStorage::nameOfLinked(const QString &linked, const QString &holder) const
{
    const QDir folder = QFileInfo(holder).absoluteDir();
    if (QDir::isRelativePath(linked))
        return QDir::cleanPath(folder.absoluteFilePath(linked));
    // Earlier versions stored the whole path, which leads to the original after a practice was copied or
    // restored.
    const QString beside = folder.absoluteFilePath(QFileInfo(linked).fileName());
    return QFileInfo::exists(beside) ? beside : linked;
}

void SqliteStorage::set(const QString &schema, const char *setting)
{
    SqliteStatement(
        m_connection.handle(),
        QStringLiteral("PRAGMA %1.%2").arg(m_dialect.identifier(schema), QString::fromLatin1(setting)))
        .run();
}

// By the file's address, so that none is created by opening it.
void SqliteStorage::attachFile(const QFileInfo &file, const QString &options, const QString &schema)
{
    SqliteStatement statement(m_connection.handle(),
                              QStringLiteral("ATTACH DATABASE ? AS ") + m_dialect.identifier(schema));
    statement.bind({fileUri(file, options)});
    statement.run();
}

QString SqliteStorage::attach(const QString &name, const QString &schema, bool readOnly)
{
    const QFileInfo file(name);
    requireDatabaseFile(file);
    if (!readOnly && SqliteFile::isOpenUnderTwoNames(file.absoluteFilePath()))
        throw Error(InvalidOperation,
                    QStringLiteral(
                        "Il file '%1' ha un secondo nome (collegamento fisso) ed è già aperto: i salvataggi "
                        "di chi lo usa con l'altro nome andrebbero persi. Farne una copia vera (cp -r) e "
                        "aprire quella.")
                        .arg(file.absoluteFilePath()));
    QString options = readOnly ? QStringLiteral("mode=ro") : QStringLiteral("mode=rw");
    // Readers of a WAL database share a file beside it. Where none can be made, nobody can be writing either.
    if (readOnly && !QFileInfo(file.absolutePath()).isWritable()
        && !QFile::exists(file.absoluteFilePath() + QStringLiteral("-wal")))
        options = QStringLiteral("immutable=1");
    attachFile(file, options, schema);
    try {
        // A saved row survives the loss of power, at the price of one flush a transaction.
        set(schema, "synchronous = FULL");
        set(schema, "cache_size = -4000");
        m_connection
            .select(QStringLiteral("SELECT count(*) FROM ")
                        + m_dialect.qualified(schema, QStringLiteral("sqlite_master")),
                    {})
            ->next();
    } catch (const Error &error) {
        detach(schema);
        throw Error(error.number(), QStringLiteral("%1: %2").arg(error.text(), name));
    }
    if (!readOnly)
        m_files.insert(schema, SqliteFile(m_connection.handle(), schema));
    return schema;
}

void SqliteStorage::requireInPlace() const
{
    for (const SqliteFile &file : std::as_const(m_files)) {
        if (!file.isInPlace())
            throw Error(DatabaseMoved,
                        QStringLiteral("Il file '%1' è stato spostato, sostituito o cancellato mentre era "
                                       "aperto")
                            .arg(file.path()));
    }
}

void SqliteStorage::detach(const QString &schema)
{
    SqliteStatement(m_connection.handle(), QStringLiteral("DETACH DATABASE ") + m_dialect.identifier(schema))
        .run();
    m_files.remove(schema);
}

void SqliteStorage::createDatabase(const QString &name)
{
    const QFileInfo file(name);
    QFile stream(file.absoluteFilePath()); // a new file, which nobody can have open
    if (!stream.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
        if (file.exists())
            throw Error(TableExists, QStringLiteral("Il database '%1' esiste già").arg(name));
        throw Error(CannotFindFile,
                    QStringLiteral("Impossibile creare il file '%1': %2").arg(name, stream.errorString()));
    }
    stream.close();
    const QString schema = QStringLiteral("new_database");
    try {
        attachFile(file, QStringLiteral("mode=rw"), schema);
        set(schema, "journal_mode = WAL");
        detach(schema);
    } catch (const Error &) {
        stream.remove();
        throw;
    }
}

QStringList SqliteStorage::damage(const QString &schema, Thoroughness thoroughness, int most) const
{
    QStringList lines;
    try {
        SqliteStatement statement(m_connection.handle(), QStringLiteral("PRAGMA %1.%2(%3)")
                                                             .arg(m_dialect.identifier(schema),
                                                                  thoroughness == Thoroughness::Pages
                                                                      ? QStringLiteral("quick_check")
                                                                      : QStringLiteral("integrity_check"))
                                                             .arg(most));
        while (statement.step())
            lines.append(statement.value(0).toString());
    } catch (const Error &error) {
        lines.append(error.text());
    }
    lines.removeAll(QStringLiteral("ok"));
    return lines;
}

QStringList SqliteStorage::tables(const QString &schema) const
{
    const auto rows =
        m_connection.select(QStringLiteral("SELECT name FROM %1 WHERE type = 'table' "
                                           "AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY rowid")
                                .arg(m_dialect.qualified(schema, QStringLiteral("sqlite_master"))),
                            {});
    QStringList names;
    while (rows->next())
        names.append(rows->value(0).toString());
    return names;
}

TableInfo SqliteStorage::describe(const QString &schema, const QString &table) const
{
    TableInfo info;
    info.name = table;
    info.nativeName = m_dialect.qualified(schema, table);
    const auto rows = m_connection.select(
        QStringLiteral("SELECT name, type, \"notnull\" FROM pragma_table_info(?, ?) ORDER BY cid"),
        {table, schema});
    while (rows->next())
        info.columns.append(SqliteDialect::declaredColumn(
            rows->value(0).toString(), rows->value(1).toString(), rows->value(2).toBool()));
    if (info.columns.isEmpty())
        throw Error(ObjectNotFound, QStringLiteral("Tabella o query inesistente: '%1'").arg(table));
    info.indexes = indexesOf(schema, table);
    return info;
}

QList<IndexInfo> SqliteStorage::indexesOf(const QString &schema, const QString &table) const
{
    QList<IndexInfo> indexes;
    const auto rows = m_connection.select(
        QStringLiteral("SELECT i.name, i.\"unique\", f.name FROM pragma_index_list(?1, ?2) AS i "
                       "CROSS JOIN pragma_index_info(i.name, ?2) AS f WHERE i.origin = 'c' "
                       "ORDER BY i.seq DESC, f.seqno"),
        {table, schema});
    QString nativeName;
    while (rows->next()) {
        if (indexes.isEmpty() || rows->value(0).toString() != nativeName) {
            nativeName = rows->value(0).toString();
            indexes.append(indexOfNativeName(table, nativeName));
            indexes.last().unique = rows->value(1).toBool();
        }
        indexes.last().fields.append(rows->value(2).toString());
    }
    return indexes;
}

qint64 SqliteStorage::definitionVersion(const QString &schema) const
{
    SqliteStatement version(m_connection.handle(),
                            QStringLiteral("PRAGMA %1.schema_version").arg(m_dialect.identifier(schema)));
    return version.step() ? version.value(0).toLongLong() : 0;
}

const IndexInfo *SqliteStorage::brokenIndex(const Error &error, const TableInfo &table) const
{
    // SQLite names the fields of the index: "UNIQUE constraint failed: table.first, table.second".
    for (const IndexInfo &index : table.indexes) {
        QStringList fields;
        for (const QString &field : index.fields)
            fields.append(table.name + u'.' + field);
        if ((index.unique || index.primary)
            && error.text().endsWith(QStringLiteral(" failed: ") + fields.join(QStringLiteral(", "))))
            return &index;
    }
    return nullptr;
}

void SqliteStorage::setLastAutoNumber(const QString &schema, const QString &table, qint64 number)
{
    // SQLite keeps the number in a table of its own, from the first row on.
    const QString sequence = m_dialect.qualified(schema, QStringLiteral("sqlite_sequence"));
    m_connection.execute(QStringLiteral("INSERT INTO %1 (name, seq) SELECT ?1, 0 WHERE NOT EXISTS "
                                        "(SELECT 1 FROM %1 WHERE name = ?1)")
                             .arg(sequence),
                         {table});
    m_connection.execute(QStringLiteral("UPDATE %1 SET seq = max(seq, ?) WHERE name = ?").arg(sequence),
                         {number, table});
}

qint64 SqliteStorage::lastAutoNumber(const QString &schema, const TableInfo &table) const
{
    // The table of numbers is there from the first table on that has one.
    const auto row =
        m_connection.select(QStringLiteral("SELECT seq FROM %1 WHERE name = ?")
                                .arg(m_dialect.qualified(schema, QStringLiteral("sqlite_sequence"))),
                            {table.name});
    return row->next() ? row->value(0).toLongLong() : 0;
}

void SqliteStorage::beginLoad(const QString &schema)
{
    m_files.remove(schema); // its log goes away, and nobody else knows the file yet
    // New pages need no journal, and one of the few old ones is quickly kept in memory.
    set(schema, "journal_mode = MEMORY");
    set(schema, "synchronous = OFF");
    set(schema, "cache_size = -8000");
    // The keys of a large index are sorted in a file rather than in memory.
    SqliteStatement(m_connection.handle(), QStringLiteral("PRAGMA temp_store = FILE")).run();
}

void SqliteStorage::endLoad(const QString &schema)
{
    set(schema, "synchronous = FULL");
    set(schema, "journal_mode = WAL");
    set(schema, "cache_size = -4000");
    SqliteStatement(m_connection.handle(), QStringLiteral("PRAGMA temp_store = MEMORY")).run();
}

} // namespace dao
