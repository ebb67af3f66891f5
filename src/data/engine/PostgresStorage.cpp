// SPDX-License-Identifier: Apache-2.0
#include "data/engine/PostgresDialect.h"

#include "data/engine/PostgresConnection.h"
#include "data/engine/PostgresFunctions.h"
#include "data/engine/SqliteFunctions.h"
#include "values/JetValues.h"

#include <QCryptographicHash>
#include <QSqlError>
#include <QUuid>
#include <array>
#include <libpq-fe.h>

namespace dao {
namespace {

namespace jet = clivara::jet;

// Index names are a table's own in the language but a schema's own on the server.
constexpr QChar nameSeparator = u'$';
constexpr QLatin1String primaryMark("$pk");
// The longest name that the server keeps, in bytes.
constexpr qsizetype longestName = 63;

// Locks of the whole practice, by numbers that nothing else uses there: one that each transaction holds, and one
// that everybody who has the practice open shares.
const QString writeLock = QStringLiteral("pg_advisory_xact_lock(1869769079, 1)");
const QString useLock = QStringLiteral("1869769079, 2");

constexpr int lowestServer = 150000;

// The types of the schema "jet" are found without its name.
struct DeclaredType {
    FieldType type;
    QLatin1String name;
};
constexpr std::array declaredTypes{
    DeclaredType{FieldType::Boolean, QLatin1String("boolean")},
    DeclaredType{FieldType::Byte, QLatin1String("byte")},
    DeclaredType{FieldType::Integer, QLatin1String("smallint")},
    DeclaredType{FieldType::Long, QLatin1String("integer")},
    DeclaredType{FieldType::AutoNumber, QLatin1String("integer")},
    DeclaredType{FieldType::Currency, QLatin1String("numeric(19,4)")},
    DeclaredType{FieldType::Single, QLatin1String("real")},
    DeclaredType{FieldType::Double, QLatin1String("double precision")},
    DeclaredType{FieldType::Date, QLatin1String("timestamp(0) without time zone")},
    DeclaredType{FieldType::Memo, QLatin1String("memo")},
    DeclaredType{FieldType::Guid, QLatin1String("guid")},
    DeclaredType{FieldType::Binary, QLatin1String("bytea")},
};

PostgresResult run(const SqlDialect &dialect, const QSqlDatabase &connection, const QString &sql,
                   const QVariantList &values = {})
{
    return PostgresConnection(dialect, connection).run(sql, values);
}

QString quoted(const QString &name)
{
    return u'"' + QString(name).replace(u'"', QStringLiteral("\"\"")) + u'"';
}

QString literal(const QString &text)
{
    return u'\'' + QString(text).replace(u'\'', QStringLiteral("''")) + u'\'';
}

QString qualified(const QString &schema, const QString &name)
{
    return quoted(schema) + u'.' + quoted(name);
}

// The name of an index on the server; one that would be cut there ends with a sum of itself instead.
QString indexName(const QString &table, const IndexInfo &index)
{
    const QString name =
        table + nameSeparator + index.name + (index.primary ? QString(primaryMark) : QString());
    if (name.toUtf8().size() <= longestName)
        return name;
    const QByteArray sum = QCryptographicHash::hash(name.toUtf8(), QCryptographicHash::Sha1).toHex().left(12);
    QString start = name;
    while (start.toUtf8().size() > longestName - 1 - sum.size())
        start.chop(1);
    return start + u'~' + QString::fromLatin1(sum);
}

ColumnInfo declaredColumn(const QString &name, const QString &type, bool isNumbered, bool required)
{
    ColumnInfo column{name, FieldType::Unknown, 0, required};
    for (const DeclaredType &declared : declaredTypes) {
        if (declared.name == type && (declared.type == FieldType::AutoNumber) == isNumbered)
            column.type = declared.type;
    }
    const QLatin1String text("text_");
    if (type.startsWith(text)) {
        column.type = FieldType::Text;
        column.size = type.mid(text.size()).toInt();
    }
    if (column.type == FieldType::Boolean || column.type == FieldType::AutoNumber)
        column.required = false;
    return column;
}

QVariantList rowOf(NativeCursor &rows, int columns)
{
    QVariantList values;
    for (int i = 0; i < columns; ++i)
        values.append(rows.value(i));
    return values;
}

QString noSuchDatabase()
{
    return QStringLiteral("il server non ha questo database");
}

// Why a connection cannot be opened, in one line. The driver tells it in words only.
QString connectionFailure(const QString &text)
{
    const auto says = [&](const char *words) { return text.contains(QLatin1String(words)); };
    if (says("authentication failed") || says("no password supplied"))
        return QStringLiteral("il nome o la password non sono quelli di un utente del server");
    if (says("database \"") && says("does not exist"))
        return noSuchDatabase();
    if (says("role \"") && says("does not exist"))
        return QStringLiteral("il server non conosce questo utente");
    if (says("could not translate host name") || says("Connection refused") || says("timeout expired")
        || says("No route to host") || says("No such file or directory"))
        return QStringLiteral("a questo indirizzo non risponde nessun server");
    return text.section(u'\n', 0, 0);
}

// Whether the server and the database are such as the practice needs.
void requireSuitable(const SqlDialect &dialect, const QSqlDatabase &connection, const QString &name)
{
    PostgresCursor row(run(dialect, connection,
                           QStringLiteral("SELECT current_setting('server_version_num')::int, "
                                          "pg_encoding_to_char(encoding), datlocprovider = 'i', "
                                          "current_setting('server_version') "
                                          "FROM pg_database WHERE datname = current_database()")));
    row.next();
    if (row.value(0).toInt() < lowestServer)
        throw Error(NotADatabase,
                    QStringLiteral("Il server del database '%1' è PostgreSQL %2: occorre la versione 15")
                        .arg(name, row.value(3).toString()));
    if (row.value(1).toString() != u"UTF8" || !row.value(2).toBool())
        throw Error(NotADatabase,
                    QStringLiteral("Il database '%1' non ha la codifica UTF8 e le regole ICU che occorrono")
                        .arg(name));
}

class PostgresInsert final : public NativeInsert {
public:
    PostgresInsert(const SqlDialect &dialect, const QSqlDatabase &connection, const QString &sql,
                   const QList<ColumnInfo> &columns)
        : m_dialect(dialect)
        , m_connection(dialect, connection)
        , m_sql(sql)
        , m_columns(columns)
    {
    }
    void add(const QVariantList &values) override
    {
        QVariantList native;
        for (int i = 0; i < values.size(); ++i)
            native.append(m_dialect.toNative(values[i], m_columns[i].type));
        m_connection.run(m_sql, native);
    }

private:
    const SqlDialect &m_dialect;
    PostgresConnection m_connection;
    QString m_sql;
    QList<ColumnInfo> m_columns;
};

// A connection of its own that holds the lock which all others share.
class PostgresExclusiveUse final : public ExclusiveUse {
public:
    PostgresExclusiveUse(const SqlDialect &dialect, const QString &name)
        : m_connection(QUuid::createUuid().toString())
    {
        const PostgresAddress address = PostgresAddress::parse(name);
        QSqlDatabase connection = QSqlDatabase::addDatabase(dialect.driverName(), m_connection);
        try {
            openPostgres(dialect, connection, address, {}, address.database);
            PostgresCursor taken(
                run(dialect, connection, QStringLiteral("SELECT pg_try_advisory_lock(%1)").arg(useLock)));
            if (!taken.next() || !taken.value(0).toBool())
                throw Error(
                    Locked,
                    QStringLiteral("Il database '%1' è in uso da un altro utente").arg(address.name()));
        } catch (const Error &) {
            connection = QSqlDatabase();
            QSqlDatabase::removeDatabase(m_connection);
            throw;
        }
    }
    ~PostgresExclusiveUse() override
    {
        QSqlDatabase::database(m_connection, false).close();
        QSqlDatabase::removeDatabase(m_connection);
    }
    void aboutToMove() override { }
    PostgresExclusiveUse(const PostgresExclusiveUse &) = delete;
    PostgresExclusiveUse &operator=(const PostgresExclusiveUse &) = delete;

private:
    QString m_connection;
};

} // namespace

void openPostgres(const SqlDialect &dialect, QSqlDatabase &connection, const PostgresAddress &address,
                  const Account &account, const QString &database)
{
    QStringList options{QStringLiteral("connect_timeout=3"), QStringLiteral("tcp_user_timeout=10000"),
                        QStringLiteral("keepalives_idle=10"), QStringLiteral("keepalives_interval=5"),
                        QStringLiteral("application_name=orvale")};
    bool hasMode = qEnvironmentVariableIsSet("PGSSLMODE");
    for (const auto &[key, value] : address.options) {
        hasMode = hasMode || key == u"sslmode";
        options.append(key + u'=' + value);
    }
    if (!hasMode)
        options.append(QStringLiteral("sslmode=prefer"));
    connection.setHostName(address.host);
    if (address.port > 0)
        connection.setPort(address.port);
    connection.setDatabaseName(database);
    const bool ownUser = !address.user.isEmpty();
    connection.setUserName(ownUser ? address.user : account.user);
    connection.setPassword(!address.password.isEmpty()                ? address.password
                           : !ownUser || address.user == account.user ? account.password
                                                                      : QString());
    connection.setConnectOptions(options.join(u';'));
    if (!connection.open()) {
        const QString text = connection.lastError().databaseText().trimmed();
        const QString reason = connectionFailure(text);
        throw Error(CannotFindFile,
                    QStringLiteral("Impossibile aprire il database '%1': %2").arg(address.name(), reason),
                    reason == noSuchDatabase() ? missingDatabaseMark : QString());
    }
    run(dialect, connection, postgresSessionSettings());
}

QString PostgresDialect::columnDeclaration(const ColumnInfo &column) const
{
    QString text = identifier(column.name) + u' ';
    if (column.type == FieldType::Text) {
        text += QStringLiteral("text_%1").arg(column.size > 0 ? column.size : 255);
    } else {
        const auto declared =
            std::find_if(declaredTypes.begin(), declaredTypes.end(),
                         [&](const DeclaredType &type) { return type.type == column.type; });
        if (declared == declaredTypes.end())
            throw Error(SyntaxError, QStringLiteral("Tipo del campo non valido: '%1'").arg(column.name));
        text += declared->name;
    }
    if (column.type == FieldType::AutoNumber)
        return text + QStringLiteral(" NOT NULL GENERATED BY DEFAULT AS IDENTITY UNIQUE");
    if (column.type == FieldType::Boolean)
        return text + QStringLiteral(" NOT NULL DEFAULT false");
    if (column.required)
        text += QStringLiteral(" NOT NULL");
    return text;
}

QStringList PostgresDialect::hiddenColumns() const
{
    return {QStringLiteral("engine_row bigint GENERATED BY DEFAULT AS IDENTITY PRIMARY KEY")};
}

QString PostgresDialect::rowNumberDeclaration() const
{
    return QStringLiteral("integer GENERATED BY DEFAULT AS IDENTITY PRIMARY KEY");
}

QStringList PostgresDialect::completeTable(const QString &nativeName, const QList<ColumnInfo> &columns) const
{
    QStringList statements;
    for (const ColumnInfo &column : columns) {
        if (column.type != FieldType::AutoNumber)
            continue;
        // New numbers go on above those that rows are given.
        statements.append(
            QStringLiteral("DO $do$ DECLARE numbers text := pg_get_serial_sequence(%1, %2); BEGIN "
                           "EXECUTE format('CREATE TRIGGER engine_numbers AFTER INSERT ON %3 FOR EACH ROW "
                           "WHEN (NEW.%4 > coalesce(pg_sequence_last_value(%L::regclass), 0)) "
                           "EXECUTE FUNCTION jet.keep_number(%L)', numbers, %2); END $do$")
                .arg(literal(nativeName), literal(column.name),
                     QString(nativeName)
                         .replace(u'%', QStringLiteral("%%"))
                         .replace(u'\'', QStringLiteral("''")),
                     identifier(column.name)
                         .replace(u'%', QStringLiteral("%%"))
                         .replace(u'\'', QStringLiteral("''"))));
    }
    return statements;
}

QString PostgresDialect::requireColumn(const QString &nativeName, const QString &column) const
{
    return QStringLiteral("ALTER TABLE %1 ALTER COLUMN %2 SET NOT NULL").arg(nativeName, identifier(column));
}

QVariant PostgresDialect::fromNative(const QVariant &value, FieldType type) const
{
    if (!value.isValid() || value.isNull())
        return {};
    switch (type) {
    case FieldType::Boolean:
        return value.typeId() == QMetaType::Bool ? value.toBool() : value.toDouble() != 0;
    case FieldType::Byte:
    case FieldType::Integer:
    case FieldType::Long:
    case FieldType::AutoNumber:
        return value.toInt();
    case FieldType::Currency:
    case FieldType::Single:
    case FieldType::Double:
        return value.toDouble();
    case FieldType::Date: {
        const QDateTime date = jet::dateFromStored(value.toString());
        return date.isValid() ? QVariant(date) : QVariant();
    }
    case FieldType::Text:
    case FieldType::Memo:
    case FieldType::Guid:
        return value.toString();
    case FieldType::Binary:
        return value.toByteArray();
    case FieldType::Null:
    case FieldType::Unknown:
        break;
    }
    if (value.typeId() != QMetaType::LongLong)
        return value;
    const qint64 number = value.toLongLong();
    return number == qint32(number) ? QVariant(int(number)) : QVariant(double(number));
}

QVariant PostgresDialect::toNative(const QVariant &value, FieldType type) const
{
    if (!value.isValid() || value.isNull())
        return {};
    switch (type) {
    case FieldType::Date:
        return jet::storedDate(value.toDateTime());
    case FieldType::Text:
    case FieldType::Memo:
    case FieldType::Guid: {
        const QString text = value.toString();
        return text.isNull() ? QStringLiteral("") : text;
    }
    default:
        return value;
    }
}

QString PostgresDialect::driverName() const
{
    return QStringLiteral("QPSQL");
}

void PostgresDialect::openConnection(QSqlDatabase &connection, const QString &name,
                                     const Account &account) const
{
    const PostgresAddress address = PostgresAddress::parse(name);
    openPostgres(*this, connection, address, account, address.database);
    requireSuitable(*this, connection, address.name());
    // Somebody who has the practice for himself alone is waited for as shortly as for any lock.
    run(*this, connection, QStringLiteral("SELECT pg_advisory_lock_shared(%1)").arg(useLock));
}

QString PostgresDialect::fullName(const QString &name) const
{
    return PostgresAddress::parse(name).name();
}

QString PostgresDialect::sameName(const QString &name) const
{
    return fullName(name);
}

QString PostgresDialect::attach(QSqlDatabase &connection, const QString &name, const QString &, bool) const
{
    const PostgresAddress address = PostgresAddress::parse(name);
    if (address.database != connection.databaseName() || address.host != connection.hostName())
        throw Error(CannotFindFile,
                    QStringLiteral("Il database '%1' non è quello aperto").arg(address.name()));
    PostgresCursor found(run(*this, connection,
                             QStringLiteral("SELECT obj_description(to_regnamespace('jet'), 'pg_namespace') "
                                            "FROM pg_namespace WHERE nspname = ?"),
                             {address.schema}));
    if (!found.next())
        throw Error(CannotFindFile,
                    QStringLiteral("Impossibile trovare il database '%1'").arg(address.name()));
    const QString version = found.value(0).toString();
    if (version.section(u' ', 1).toInt() > postgresDefinitionsVersion)
        throw Error(NotADatabase,
                    QStringLiteral("Il database '%1' è di una versione più recente del programma")
                        .arg(address.name()));
    return address.schema;
}

void PostgresDialect::detach(QSqlDatabase &, const QString &) const { }

void PostgresDialect::createDatabase(QSqlDatabase &connection, const QString &name) const
{
    const PostgresAddress address = PostgresAddress::parse(name);
    if (address.schema.isEmpty())
        throw Error(CannotFindFile, QStringLiteral("Manca il nome del database in '%1'").arg(address.name()));
    // Two programs that begin at once wait for one another.
    begin(connection);
    try {
        PostgresCursor found(run(*this, connection,
                                 QStringLiteral("SELECT to_regnamespace(quote_ident(?)) IS NOT NULL, "
                                                "obj_description(to_regnamespace('jet'), 'pg_namespace')"),
                                 {address.schema}));
        found.next();
        if (found.value(0).toBool())
            throw Error(TableExists, QStringLiteral("Il database '%1' esiste già").arg(address.name()));
        if (found.value(1).toString().section(u' ', 1).toInt() < postgresDefinitionsVersion) {
            for (const QString &statement : postgresDefinitions())
                run(*this, connection, statement);
        }
        run(*this, connection, QStringLiteral("CREATE SCHEMA ") + quoted(address.schema));
        control(connection, QStringLiteral("COMMIT"));
    } catch (const Error &) {
        if (inTransaction(connection))
            control(connection, QStringLiteral("ROLLBACK"));
        throw;
    }
}

QStringList PostgresDialect::tables(QSqlDatabase &connection, const QString &schema) const
{
    PostgresCursor rows(run(*this, connection,
                            QStringLiteral("SELECT relname FROM pg_class WHERE relkind = 'r' "
                                           "AND relnamespace = to_regnamespace(?) ORDER BY oid"),
                            {quoted(schema)}));
    QStringList names;
    while (rows.next())
        names.append(rows.value(0).toString());
    return names;
}

TableInfo PostgresDialect::describe(QSqlDatabase &connection, const QString &schema,
                                    const QString &table) const
{
    TableInfo info;
    info.name = table;
    info.nativeName = qualified(schema, table);
    // Columns first, then the indexes with their fields.
    PostgresCursor rows(run(
        *this, connection,
        QStringLiteral(
            "SELECT 0, attname, format_type(atttypid, atttypmod), attidentity <> '', attnotnull, attnum::int "
            "FROM pg_attribute WHERE attrelid = to_regclass(?) AND attnum > 0 AND NOT attisdropped "
            "AND attname <> 'engine_row' "
            "UNION ALL "
            "SELECT i.indexrelid::int8, a.attname, coalesce(obj_description(i.indexrelid, 'pg_class'), "
            "c.relname), "
            "i.indisunique, true, k.place::int "
            "FROM pg_index i JOIN pg_class c ON c.oid = i.indexrelid "
            "CROSS JOIN unnest(i.indkey::int2[]) WITH ORDINALITY AS k(number, place) "
            "JOIN pg_attribute a ON a.attrelid = i.indrelid AND a.attnum = k.number "
            "WHERE i.indrelid = to_regclass(?) "
            "AND NOT EXISTS (SELECT 1 FROM pg_constraint WHERE conindid = i.indexrelid) "
            "ORDER BY 1, 6"),
        {info.nativeName, info.nativeName}));
    qlonglong index = 0;
    while (rows.next()) {
        const QVariantList row = rowOf(rows, 5);
        if (row[0].toLongLong() == 0) {
            info.columns.append(
                declaredColumn(row[1].toString(), row[2].toString(), row[3].toBool(), row[4].toBool()));
            continue;
        }
        if (row[0].toLongLong() != index) {
            index = row[0].toLongLong();
            IndexInfo next;
            next.name = row[2].toString();
            next.unique = row[3].toBool();
            if (next.name.startsWith(table + nameSeparator, Qt::CaseInsensitive))
                next.name.remove(0, table.size() + 1);
            if (next.name.endsWith(primaryMark)) {
                next.name.chop(primaryMark.size());
                next.primary = true;
            }
            info.indexes.append(next);
        }
        info.indexes.last().fields.append(row[1].toString());
    }
    if (info.columns.isEmpty())
        throw Error(ObjectNotFound, QStringLiteral("Tabella o query inesistente: '%1'").arg(table));
    return info;
}

QString PostgresDialect::createIndex(const QString &schema, const QString &table,
                                     const IndexInfo &index) const
{
    QStringList fields;
    for (const QString &field : index.fields)
        fields.append(quoted(field) + QStringLiteral(" NULLS FIRST"));
    const QString name = indexName(table, index);
    const QString whole =
        table + nameSeparator + index.name + (index.primary ? QString(primaryMark) : QString());
    const QString sql =
        QStringLiteral("CREATE %1 %2 ON %3 (%4)")
            .arg(index.unique || index.primary ? QStringLiteral("UNIQUE INDEX") : QStringLiteral("INDEX"),
                 quoted(name), qualified(schema, table), fields.join(QStringLiteral(", ")));
    return name == whole ? sql
                         : sql
                               + QStringLiteral("; COMMENT ON INDEX %1 IS %2")
                                     .arg(qualified(schema, name), literal(whole));
}

QString PostgresDialect::dropIndex(const QString &schema, const QString &table, const IndexInfo &index) const
{
    return QStringLiteral("DROP INDEX ") + qualified(schema, indexName(table, index));
}

int PostgresDialect::execute(QSqlDatabase &connection, const QString &sql, const QVariantList &values) const
{
    return PostgresConnection::affected(run(*this, connection, sql, values).get());
}

qint64 PostgresDialect::insertRow(QSqlDatabase &connection, const QString &sql, const QVariantList &values,
                                  const QString &autoNumber) const
{
    if (autoNumber.isEmpty()) {
        execute(connection, sql, values);
        return 0;
    }
    PostgresCursor row(
        run(*this, connection, sql + QStringLiteral(" RETURNING ") + quoted(autoNumber), values));
    return row.next() ? row.value(0).toLongLong() : 0;
}

void PostgresDialect::begin(QSqlDatabase &connection) const
{
    // Takes the practice's write lock at once: a number that is the highest plus one stays the next one until
    // the transaction has written it.
    PostgresConnection native(*this, connection);
    try {
        native.control(QStringLiteral("BEGIN; SELECT ") + writeLock);
    } catch (const Error &) {
        if (native.inTransaction())
            native.control(QStringLiteral("ROLLBACK"));
        throw;
    }
}

void PostgresDialect::control(QSqlDatabase &connection, const QString &sql) const
{
    PostgresConnection(*this, connection).control(sql);
}

bool PostgresDialect::inTransaction(QSqlDatabase &connection) const
{
    return PostgresConnection(*this, connection).inTransaction();
}

qint64 PostgresDialect::definitionVersion(QSqlDatabase &connection, const QString &schema) const
{
    PostgresCursor row(
        run(*this, connection,
            QStringLiteral(
                "SELECT hashtextextended(string_agg(concat_ws(' ', c.oid, c.relname, a.attname, a.atttypid, "
                "a.attnotnull), ',' ORDER BY c.oid, a.attnum), 0) "
                "FROM pg_class c LEFT JOIN pg_attribute a ON a.attrelid = c.oid AND a.attnum > 0 "
                "WHERE c.relnamespace = to_regnamespace(?) AND c.relkind IN ('r', 'i')"),
            {quoted(schema)}));
    return row.next() ? row.value(0).toLongLong() : 0;
}

void PostgresDialect::setLastAutoNumber(QSqlDatabase &connection, const QString &schema, const QString &table,
                                        qint64 number) const
{
    const TableInfo info = describe(connection, schema, table);
    for (const ColumnInfo &column : info.columns) {
        if (column.type == FieldType::AutoNumber)
            run(*this, connection,
                QStringLiteral("SELECT setval(pg_get_serial_sequence(?, ?), greatest(max(%1), ?, 1)) FROM %2")
                    .arg(quoted(column.name), info.nativeName),
                {info.nativeName, column.name, number});
    }
}

void PostgresDialect::beginLoad(QSqlDatabase &connection, const QString &) const
{
    run(*this, connection, QStringLiteral("SET synchronous_commit = off; SET statement_timeout = 0"));
}

void PostgresDialect::endLoad(QSqlDatabase &connection, const QString &) const
{
    run(*this, connection, QStringLiteral("RESET synchronous_commit; ") + postgresSessionSettings());
}

std::unique_ptr<ExclusiveUse> PostgresDialect::useExclusively(const QString &name) const
{
    return std::make_unique<PostgresExclusiveUse>(*this, name);
}

std::unique_ptr<NativeCursor> PostgresDialect::openCursor(QSqlDatabase &connection, const QString &sql,
                                                          const QVariantList &values) const
{
    return std::make_unique<PostgresCursor>(run(*this, connection, sql, values));
}

std::unique_ptr<NativeInsert> PostgresDialect::openInsert(QSqlDatabase &connection, const QString &sql,
                                                          const QList<ColumnInfo> &columns) const
{
    return std::make_unique<PostgresInsert>(*this, connection, sql, columns);
}

const IndexInfo *PostgresDialect::brokenIndex(const Error &error, const TableInfo &table) const
{
    // The server names the index: "duplicate key value violates unique constraint "name"".
    for (const IndexInfo &index : table.indexes) {
        if ((index.unique || index.primary) && error.text().endsWith(quoted(indexName(table.name, index))))
            return &index;
    }
    return nullptr;
}

int PostgresDialect::errorNumber(const QSqlError &error) const
{
    if (const auto function = functionError(error.databaseText()))
        return function->first;
    const QString state = error.nativeErrorCode();
    static const std::pair<QLatin1String, int> numbers[] = {
        {QLatin1String("23505"), DuplicateKey},     {QLatin1String("23502"), FieldRequired},
        {QLatin1String("55P03"), Locked},           {QLatin1String("40P01"), Locked},
        {QLatin1String("40001"), Locked},           {QLatin1String("57014"), Locked},
        {QLatin1String("25006"), ReadOnly},         {QLatin1String("42501"), ReadOnly},
        {QLatin1String("22003"), Overflow},         {QLatin1String("22012"), DivisionByZero},
        {QLatin1String("42P01"), ObjectNotFound},   {QLatin1String("3F000"), ObjectNotFound},
        {QLatin1String("42703"), TooFewParameters}, {QLatin1String("42P07"), TableExists},
        {QLatin1String("54000"), RecordTooLarge},   {QLatin1String("53100"), DiskFull},
        {QLatin1String("58030"), DiskError},        {QLatin1String("XX001"), Corrupt},
        {QLatin1String("XX002"), Corrupt},
    };
    for (const auto &[code, number] : numbers) {
        if (state == code)
            return number;
    }
    if (state.startsWith(QLatin1String("08")) || state.startsWith(QLatin1String("57P")))
        return ConnectionLost;
    return Failed;
}

QString PostgresDialect::errorText(const QSqlError &error) const
{
    const auto function = functionError(error.databaseText());
    return function ? function->second : error.databaseText();
}

} // namespace dao
