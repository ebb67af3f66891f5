// SPDX-License-Identifier: Apache-2.0
#include "dao/ActionWriter.h"

#include "dao/FromWriter.h"
#include "dao/SelectWriter.h"
#include "jetsql/SqlErrors.h"

namespace dao::sql {
namespace {

const TableInfo &knownTable(const Context &context, QStringView name)
{
    const TableInfo *table = context.catalog.table(name);
    if (table == nullptr)
        throwUnknownTable(name);
    return *table;
}

int knownColumn(const TableInfo &table, QStringView name)
{
    const int column = table.columnIndex(name);
    if (column < 0)
        throwError(UnknownFieldName, QStringLiteral("Il campo non fa parte della tabella"), name);
    return column;
}

[[noreturn]] void throwDuplicate(QStringView field)
{
    throwError(DuplicateDestination, QStringLiteral("Il campo riceve più di un valore"), field);
}

bool isOneTable(const std::vector<FromPtr> &from)
{
    return from.size() == 1 && !from[0]->isJoin() && !from[0]->derived;
}

} // namespace

Translation ActionWriter::insert(const Statement &statement)
{
    const TableInfo &table = knownTable(m_context, statement.table);
    QList<int> columns;
    for (const QStringView field : statement.fields) {
        const int column = knownColumn(table, field);
        if (columns.contains(column))
            throwDuplicate(field);
        columns.append(column);
    }
    if (statement.fields.empty() && !statement.select) {
        for (int i = 0; i < table.columns.size(); ++i)
            columns.append(i);
    }
    const QString rows = statement.select ? insertedSelect(statement, columns, table)
                                          : insertedValues(statement, columns, table);
    QString sql = QStringLiteral("INSERT INTO ") + table.nativeName + QStringLiteral(" (");
    for (qsizetype i = 0; i < columns.size(); ++i) {
        if (i > 0)
            sql += QStringLiteral(", ");
        sql += m_context.dialect.identifier(table.columns[columns[i]].name);
    }
    Translation translation;
    translation.kind = StatementKind::Insert;
    translation.sql = sql + QStringLiteral(") ") + rows;
    translation.target = &table;
    return translation;
}

QString ActionWriter::insertedValues(const Statement &statement, const QList<int> &columns,
                                     const TableInfo &table)
{
    if (statement.values.size() != size_t(columns.size()))
        throwFieldCount(statement.values.back()->place);
    const Scope scope(m_context.dialect);
    ExpressionWriter expressions(m_context, scope);
    const Conversions &convert = expressions.conversions();
    QString sql = QStringLiteral("VALUES (");
    for (qsizetype i = 0; i < columns.size(); ++i) {
        const Expression &value = *statement.values[size_t(i)];
        if (i > 0)
            sql += QStringLiteral(", ");
        sql +=
            convert.sql(convert.assigned(expressions.write(value), table.columns[columns[i]], value.place));
    }
    return sql + u')';
}

QString ActionWriter::insertedSelect(const Statement &statement, QList<int> &columns, const TableInfo &table)
{
    SelectWriter::Options options;
    options.named = true;
    const SelectResult rows = SelectWriter(m_context, nullptr, options).write(*statement.select);
    // Without a list of fields the names of the SELECT's columns say where they go.
    if (statement.fields.empty()) {
        for (const ResultColumn &column : rows.columns) {
            const QStringView name(column.name);
            columns.append(knownColumn(table, name.mid(name.lastIndexOf(u'.') + 1)));
            if (columns.indexOf(columns.last()) + 1 < columns.size())
                throwDuplicate(statement.select->place);
        }
    }
    if (columns.size() != rows.columns.size())
        throwFieldCount(statement.select->place);
    const Conversions convert(m_context.dialect);
    const QString alias = m_context.dialect.identifier(QStringLiteral("rows"));
    QString sql = QStringLiteral("SELECT ");
    for (qsizetype i = 0; i < columns.size(); ++i) {
        const ResultColumn &column = rows.columns[i];
        Operand value = sqlOperand(alias + u'.' + m_context.dialect.identifier(column.name), column.type);
        value.size = column.size;
        if (i > 0)
            sql += QStringLiteral(", ");
        sql += convert.sql(convert.assigned(value, table.columns[columns[i]], statement.select->place));
    }
    return sql + QStringLiteral(" FROM (") + rows.sql + QStringLiteral(") AS ") + alias;
}

Translation ActionWriter::update(const Statement &statement)
{
    Scope scope(m_context.dialect);
    FromWriter from(m_context, scope);
    from.addTables(statement.from);
    ExpressionWriter expressions(m_context, scope);
    const Conversions &convert = expressions.conversions();
    const QString joins = from.write(statement.from, expressions);

    int target = -1;
    QStringList fields;
    QStringList values;
    for (const Assignment &assignment : statement.assignments) {
        const Scope::Found found = scope.find(assignment.qualifier, assignment.field);
        if (found.entry == nullptr)
            throwUnknownField(assignment.field);
        if (found.entry->derived || (target >= 0 && target != found.table))
            throwUnsupported(assignment.field);
        target = found.table;
        const ColumnInfo &column = found.entry->table->columns[found.column];
        fields.append(m_context.dialect.identifier(column.name));
        if (fields.indexOf(fields.last()) + 1 < fields.size())
            throwDuplicate(assignment.field);
        values.append(convert.sql(
            convert.assigned(expressions.write(*assignment.value), column, assignment.value->place)));
    }
    const QString where = statement.where
                              ? QStringLiteral(" WHERE ") + expressions.writeCondition(*statement.where)
                              : QString();
    const ScopeTable &table = scope.tables()[size_t(target)];
    const Dialect &dialect = m_context.dialect;
    QStringList sets;
    Translation translation;
    translation.kind = StatementKind::Update;
    translation.target = table.table;
    if (isOneTable(statement.from)) {
        for (qsizetype i = 0; i < fields.size(); ++i)
            sets.append(fields[i] + QStringLiteral(" = ") + values[i]);
        translation.sql = QStringLiteral("UPDATE ") + joins + QStringLiteral(" SET ")
                          + sets.join(QStringLiteral(", ")) + where;
        return translation;
    }
    // Over a join: the joined rows say which row of the table gets which values.
    const QString written = dialect.identifier(QStringLiteral("written"));
    const QString joined = dialect.identifier(QStringLiteral("joined"));
    const QString row = dialect.identifier(QStringLiteral("row"));
    QStringList selected = {dialect.rowIdentity(table.quotedAlias) + QStringLiteral(" AS ") + row};
    for (qsizetype i = 0; i < fields.size(); ++i) {
        const QString name = dialect.identifier(QStringLiteral("value%1").arg(i));
        selected.append(values[i] + QStringLiteral(" AS ") + name);
        sets.append(fields[i] + QStringLiteral(" = ") + joined + u'.' + name);
    }
    translation.sql = QStringLiteral("UPDATE ") + table.table->nativeName + QStringLiteral(" AS ") + written
                      + QStringLiteral(" SET ") + sets.join(QStringLiteral(", "))
                      + QStringLiteral(" FROM (SELECT ") + selected.join(QStringLiteral(", "))
                      + QStringLiteral(" FROM ") + joins + where + QStringLiteral(") AS ") + joined
                      + QStringLiteral(" WHERE ") + dialect.rowIdentity(written) + QStringLiteral(" = ")
                      + joined + u'.' + row;
    return translation;
}

Translation ActionWriter::remove(const Statement &statement)
{
    Scope scope(m_context.dialect);
    FromWriter from(m_context, scope);
    from.addTables(statement.from);
    ExpressionWriter expressions(m_context, scope);
    const QString joins = from.write(statement.from, expressions);
    const QString where = statement.where
                              ? QStringLiteral(" WHERE ") + expressions.writeCondition(*statement.where)
                              : QString();
    const bool one = isOneTable(statement.from);
    const int target = statement.table.isEmpty() ? 0 : scope.tableIndex(statement.table);
    if (target < 0)
        throwUnknownTable(statement.table);
    const ScopeTable &table = scope.tables()[size_t(target)];
    if (table.derived || (statement.table.isEmpty() && !one))
        throwUnsupported(statement.from.front()->table);
    Translation translation;
    translation.kind = StatementKind::Delete;
    translation.target = table.table;
    if (one) {
        translation.sql = QStringLiteral("DELETE FROM ") + joins + where;
        return translation;
    }
    const QString deleted = m_context.dialect.identifier(QStringLiteral("deleted"));
    translation.sql = QStringLiteral("DELETE FROM ") + table.table->nativeName + QStringLiteral(" AS ")
                      + deleted + QStringLiteral(" WHERE ") + m_context.dialect.rowIdentity(deleted)
                      + QStringLiteral(" IN (SELECT ") + m_context.dialect.rowIdentity(table.quotedAlias)
                      + QStringLiteral(" FROM ") + joins + where + u')';
    return translation;
}

} // namespace dao::sql
