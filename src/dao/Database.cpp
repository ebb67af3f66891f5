// SPDX-License-Identifier: Apache-2.0
#include "dao/DatabasePrivate.h"
#include "dao/RecordsetPrivate.h"

namespace dao {

Database::Private::Private(const std::shared_ptr<Attachment> &file, const QString &path, bool isReadOnly)
    : session(file->session)
    , attachment(file)
    , catalog(std::make_shared<DatabaseCatalog>(file))
    , name(path)
    , readOnly(isReadOnly)
{
}

void Database::Private::requireOpen() const
{
    if (!open)
        throw Error(InvalidOperation, QStringLiteral("Il database è stato chiuso"));
}

void Database::Private::requireWritable() const
{
    requireOpen();
    if (readOnly)
        throw Error(ReadOnly, QStringLiteral("Impossibile aggiornare, il database è di sola lettura"));
}

Translation Database::Private::translate(const QString &sql, const BoundParameters &parameters) const
{
    const std::shared_ptr<const TableSet> tables = catalog->tables();
    const QString key = parameters.types().isEmpty() ? sql : sql + parameters.key();
    if (const Translation *known = tables->translations.object(key))
        return *known;
    const Translator translator(session->dialect(), *catalog, [this] { return session->now(); });
    try {
        Translation translation = translator.translate(sql, parameters.types());
        if (!translation.usesClock)
            tables->translations.insert(key, new Translation(translation));
        return translation;
    } catch (const Error &error) {
        throw Error(error.number(), error.text(), sql);
    }
}

QVariantList Database::Private::nativeValues(const Translation &translation,
                                             const BoundParameters &parameters) const
{
    const Dialect &dialect = session->dialect();
    return parameters.values(translation.parameters, [&dialect](const QVariant &value, FieldType type) {
        return dialect.toNative(value, type);
    });
}

// The rows of one table as they are, without a detour through the language.
Translation Database::Private::wholeTable(const TableInfo &table) const
{
    const Dialect &dialect = session->dialect();
    const QString alias = dialect.identifier(table.name);
    Translation result;
    QStringList columns;
    for (int i = 0; i < table.columns.size(); ++i) {
        const ColumnInfo &column = table.columns[i];
        columns.append(alias + u'.' + dialect.identifier(column.name));
        result.columns.append({column.name, table.name + u'.' + column.name, column.type, column.size, 0, i});
    }
    columns.append(dialect.rowIdentity(alias));
    result.sources.append({&table, table.name, int(table.columns.size())});
    result.sql = QStringLiteral("SELECT %1 FROM %2 AS %3")
                     .arg(columns.join(QStringLiteral(", ")), table.nativeName, alias);
    return result;
}

Database::Database(std::unique_ptr<Private> p)
    : d(std::move(p))
{
}

Database::~Database() = default;

QString Database::Name() const
{
    return d->name;
}

std::unique_ptr<Recordset> Database::OpenRecordset(const QString &source, RecordsetType type,
                                                   RowsWanted wanted)
{
    return OpenRecordset(Query{source, {}}, type, wanted);
}

std::unique_ptr<Recordset> Database::OpenRecordset(const Query &query, RecordsetType type, RowsWanted wanted)
{
    d->requireOpen();
    const QString &source = query.sql;
    const BoundParameters parameters(query.parameters);
    QString tableName = source.trimmed();
    if (tableName.startsWith(u'[') && tableName.endsWith(u']'))
        tableName = tableName.mid(1, tableName.size() - 2);
    auto made = d->withCurrentNames([&] {
        const TableInfo *table = d->catalog->table(tableName);
        if (!table && type == RecordsetType::Table)
            throw Error(ObjectNotFound, QStringLiteral("Tabella o query inesistente: '%1'").arg(source));
        Translation translation = table ? d->wholeTable(*table) : d->translate(source, parameters);
        if (translation.kind != StatementKind::Select)
            throw Error(InvalidOperation, QStringLiteral("L'istruzione SQL non restituisce record"), source);
        QVariantList values = d->nativeValues(translation, parameters);
        return std::make_unique<Recordset::Private>(d->session, d->catalog->tables(), std::move(translation),
                                                    std::move(values), wanted);
    });
    made->name = source;
    made->type = type;
    made->updatable = type != RecordsetType::Snapshot && !d->readOnly
                      && std::any_of(made->translation.sources.begin(), made->translation.sources.end(),
                                     [](const RowSource &table) { return table.identityColumn >= 0; });
    if (type == RecordsetType::Table)
        made->restart();
    return std::unique_ptr<Recordset>(new Recordset(std::move(made)));
}

int Database::Private::execute(const Query &query)
{
    requireWritable();
    const QString &sql = query.sql;
    const BoundParameters parameters(query.parameters);
    return withCurrentNames([&] {
        const Translation statement = translate(sql, parameters);
        switch (statement.kind) {
        case StatementKind::Select:
            throw Error(SelectNotExecuted, QStringLiteral("Una query di selezione non si può eseguire"), sql);
        case StatementKind::Insert:
        case StatementKind::Update:
        case StatementKind::Delete:
            // One native statement: done wholly or not at all.
            return session->execute(statement.sql, nativeValues(statement, parameters));
        default:
            define(statement);
            return 0;
        }
    });
}

void Database::Execute(const QString &sql)
{
    Execute(Query{sql, {}});
}

void Database::Execute(const Query &query)
{
    d->affected = 0;
    d->affected = d->execute(query);
}

QueryDef Database::CreateQueryDef(const QString &sql)
{
    d->requireOpen();
    return QueryDef(*this, sql);
}

QVariant &QueryDef::Parameters(const QString &name)
{
    for (Parameter &parameter : m_query.parameters) {
        if (parameter.name.compare(name, Qt::CaseInsensitive) == 0)
            return parameter.value;
    }
    m_query.parameters.append({name, {}});
    return m_query.parameters.last().value;
}

std::unique_ptr<Recordset> QueryDef::OpenRecordset(RecordsetType type, RowsWanted wanted) const
{
    return m_database->OpenRecordset(m_query, type, wanted);
}

void QueryDef::Execute() const
{
    m_database->Execute(m_query);
}

int Database::RecordsAffected() const
{
    return d->affected;
}

class TableDefs Database::TableDefs()
{
    d->requireOpen();
    return dao::TableDefs(*this);
}

void Database::Close()
{
    d->requireOpen();
    d->open = false;
    d->catalog.reset();
    d->attachment.reset();
}

Connection &Database::nativeConnection() const
{
    return d->session->connection();
}

StorageKind Database::kind() const
{
    return d->session->storage().kind();
}

QStringList Database::damage(Thoroughness thoroughness, int most) const
{
    d->requireOpen();
    return d->session->storage().damage(d->attachment->schema, thoroughness, most);
}

QString Database::nativeSchema() const
{
    d->requireOpen();
    return d->attachment->schema;
}

QString Database::nativeSql(const QString &sql) const
{
    d->requireOpen();
    return d->translate(sql, BoundParameters({})).sql;
}

const Catalog &Database::catalog() const
{
    d->requireOpen();
    return *d->catalog;
}

} // namespace dao
