// SPDX-License-Identifier: Apache-2.0
#include "jetsql/Binder.h"

#include "jetsql/FromBinder.h"
#include "jetsql/SelectBinder.h"
#include "jetsql/SqlErrors.h"

namespace dao::sql {
namespace {

const TableInfo &knownTable(const BindContext &context, QStringView name)
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

void addColumn(QList<int> &columns, int column, QStringView place)
{
    if (columns.contains(column))
        throwError(DuplicateDestination, QStringLiteral("Il campo riceve più di un valore"), place);
    columns.append(column);
}

// INSERT: a value written to a field is converted to the field's type.
class InsertBinder {
public:
    explicit InsertBinder(const BindContext &context)
        : m_context(context)
    {
    }

    void bind(const Statement &statement, BoundStatement &bound) const
    {
        const TableInfo &table = knownTable(m_context, statement.table);
        bound.target = &table;
        for (const QStringView field : statement.fields)
            addColumn(bound.columns, knownColumn(table, field), field);
        if (statement.select)
            selected(*statement.select, table, bound);
        else
            values(statement, table, bound);
    }

private:
    void values(const Statement &statement, const TableInfo &table, BoundStatement &bound) const
    {
        if (statement.fields.empty()) {
            for (int i = 0; i < table.columns.size(); ++i)
                bound.columns.append(i);
        }
        if (statement.values.size() != size_t(bound.columns.size()))
            throwFieldCount(statement.values.back()->place);
        const Scope scope;
        ExpressionBinder expressions(m_context, scope);
        for (qsizetype i = 0; i < bound.columns.size(); ++i) {
            const Expression &value = *statement.values[size_t(i)];
            bound.values.push_back(
                assigned(expressions.bind(value), table.columns[bound.columns[i]], value.place));
        }
    }

    void selected(const Select &select, const TableInfo &table, BoundStatement &bound) const
    {
        auto rows = std::make_shared<const BoundSelect>(SelectBinder(m_context, nullptr).bind(select));
        // Without a list of fields the names of the SELECT's columns say where they go.
        if (bound.columns.isEmpty()) {
            for (const ResultColumn &column : rows->columns) {
                const QStringView name(column.name);
                addColumn(bound.columns, knownColumn(table, name.mid(name.lastIndexOf(u'.') + 1)),
                          select.place);
            }
        }
        if (bound.columns.size() != rows->columns.size())
            throwFieldCount(select.place);
        Scope scope;
        auto from = std::make_unique<BoundFrom>();
        from->table = scope.addDerived(std::move(rows), u"rows");
        for (int i = 0; i < bound.columns.size(); ++i)
            bound.values.push_back(
                assigned(fieldOf(from->table, i, {}), table.columns[bound.columns[i]], select.place));
        bound.rows.from.push_back(std::move(from));
        bound.rows.tables = scope.tables();
    }

    const BindContext &m_context;
};

// UPDATE and DELETE: rows of one table, found by what stands in FROM and WHERE.
class ChangeBinder {
public:
    ChangeBinder(const BindContext &context, const Statement &statement, BoundStatement &bound)
        : m_statement(statement)
        , m_bound(bound)
        , m_expressions(context, m_scope)
    {
        bound.rows.from = FromBinder(context, m_scope).bind(statement.from, m_expressions);
    }

    void update()
    {
        for (const Assignment &assignment : m_statement.assignments) {
            const Scope::Found found = m_scope.find(assignment.qualifier, assignment.field);
            if (found.table == nullptr)
                throwUnknownField(assignment.field);
            if (m_bound.written != nullptr && m_bound.written != found.table)
                throwUnsupported(assignment.field);
            write(found.table, assignment.field);
            addColumn(m_bound.columns, found.column, assignment.field);
            m_bound.values.push_back(assigned(m_expressions.bind(*assignment.value),
                                              found.table->info->columns[found.column],
                                              assignment.value->place));
        }
        finish();
    }

    void remove()
    {
        const QStringView place = m_statement.from.front()->table;
        if (!m_statement.table.isEmpty()) {
            const BoundTable *table = m_scope.table(m_statement.table);
            if (table == nullptr)
                throwUnknownTable(m_statement.table);
            write(table, place);
        } else if (m_bound.rows.from.size() > 1 || m_bound.rows.from.front()->isJoin()) {
            throwUnsupported(place);
        } else {
            write(m_scope.tables().front().get(), place);
        }
        finish();
    }

private:
    void write(const BoundTable *table, QStringView place)
    {
        if (table->derived)
            throwUnsupported(place);
        m_bound.written = table;
        m_bound.target = table->info.get();
    }

    void finish()
    {
        if (m_statement.where)
            m_bound.rows.where = m_expressions.bindCondition(*m_statement.where);
        m_bound.rows.tables = m_scope.tables();
    }

    const Statement &m_statement;
    BoundStatement &m_bound;
    Scope m_scope;
    ExpressionBinder m_expressions;
};

} // namespace

BoundStatement bind(const Statement &statement, const Catalog &catalog, const ParameterTypes &parameters,
                    const std::function<QDateTime()> &now)
{
    GivenParameters given(parameters);
    const BindContext context{catalog, now, given};
    BoundStatement bound;
    bound.kind = statement.kind;
    switch (statement.kind) {
    case StatementKind::Select:
        bound.select = SelectBinder(context, nullptr).bindWithIdentities(*statement.select);
        break;
    case StatementKind::Insert:
        InsertBinder(context).bind(statement, bound);
        break;
    case StatementKind::Update:
        ChangeBinder(context, statement, bound).update();
        break;
    case StatementKind::Delete:
        ChangeBinder(context, statement, bound).remove();
        break;
    default:
        bound.definition = statement.definition;
        break;
    }
    given.requireUse();
    return bound;
}

} // namespace dao::sql
