// SPDX-License-Identifier: Apache-2.0
#include "dao/FieldValue.h"
#include "dao/RecordsetPrivate.h"

namespace dao {
namespace {

// Comparisons of an index's leading fields with keys, as native conditions over one table. Null is a key like
// any other, below every value.
class KeyConditions {
public:
    KeyConditions(const Dialect &dialect, const RowSource &source, const IndexInfo &index,
                  const QVariantList &keys)
        : m_dialect(dialect)
    {
        for (qsizetype i = 0; i < keys.size(); ++i) {
            const ColumnInfo &column = source.table->columns[source.table->columnIndex(index.fields[i])];
            m_columns.append(column);
            const QString name = dialect.identifier(source.alias) + u'.' + dialect.identifier(column.name);
            const QVariant key = fieldValue(keys[i], column);
            // A Yes/No value is ordered as the number that it is.
            const bool yesNo = column.type == FieldType::Boolean;
            m_names.append(yesNo ? dialect.numberFromBoolean(name) : name);
            m_keys.append(yesNo ? QVariant(key.toBool() ? -1 : 0) : dialect.toNative(key, column.type));
        }
    }

    QVariantList takeValues() { return std::exchange(m_values, {}); }

    QString equal()
    {
        QStringList terms;
        for (int i = 0; i < m_keys.size(); ++i)
            terms.append(compare(i, QStringLiteral("=")));
        return terms.join(QStringLiteral(" AND "));
    }

    // Keys from `first` on are beyond (">" or "<") the given ones.
    QString beyond(const QString &op, int first = 0)
    {
        QString condition = compare(first, op);
        if (first + 1 == m_keys.size())
            return condition;
        // One after the other: the values stand in the order of their marks.
        condition += QStringLiteral(" OR (") + compare(first, QStringLiteral("="));
        condition += QStringLiteral(" AND (") + beyond(op, first + 1) + QStringLiteral("))");
        // What the first field alone tells lets the native engine use the index.
        if (first == 0)
            return compareFirst(op) + QStringLiteral(" AND (") + condition + u')';
        return condition;
    }

private:
    QString compare(int position, const QString &op)
    {
        const QString &name = m_names[position];
        if (!m_keys[position].isValid()) {
            if (op == u"=")
                return name + QStringLiteral(" IS NULL");
            return op == u">" ? name + QStringLiteral(" IS NOT NULL") : QStringLiteral("1 = 0");
        }
        m_values.append(m_keys[position]);
        QString condition = isText(m_columns[position].type)
                                ? m_dialect.compareText(name, op, QStringLiteral("?"))
                                : name + u' ' + op + QStringLiteral(" ?");
        if (op == u"<")
            condition = u'(' + condition + QStringLiteral(" OR ") + name + QStringLiteral(" IS NULL)");
        return condition;
    }

    QString compareFirst(const QString &op)
    {
        if (!m_keys.first().isValid() || op != u">")
            return QStringLiteral("1 = 1");
        m_values.prepend(m_keys.first());
        return isText(m_columns.first().type)
                   ? m_dialect.compareText(m_names.first(), QStringLiteral(">="), QStringLiteral("?"))
                   : m_names.first() + QStringLiteral(" >= ?");
    }

    const Dialect &m_dialect;
    QList<ColumnInfo> m_columns;
    QStringList m_names;
    QVariantList m_keys;
    QVariantList m_values;
};

QString orderBy(const Dialect &dialect, const RowSource &source, const IndexInfo *index, bool descending)
{
    const QString alias = dialect.identifier(source.alias);
    QStringList terms;
    for (const QString &field : index ? index->fields : QStringList()) {
        const ColumnInfo &column = source.table->columns[source.table->columnIndex(field)];
        terms.append(
            dialect.orderTerm(alias + u'.' + dialect.identifier(column.name), column.type, descending));
    }
    terms.append(dialect.orderTerm(dialect.rowIdentity(alias), FieldType::Long, descending));
    return QStringLiteral(" ORDER BY ") + terms.join(QStringLiteral(", "));
}

} // namespace

QList<NativeQuery> Recordset::Private::orderedQueries() const
{
    const RowSource &source = translation.sources.first();
    return {{translation.sql + orderBy(session->dialect(), source, source.table->index(index), false), {}}};
}

void Recordset::Private::seek(const QString &op, const QVariantList &keys)
{
    requireOpen();
    if (type != RecordsetType::Table)
        throw Error(InvalidOperation, QStringLiteral("Operazione non valida per questo tipo di recordset"));
    const RowSource &source = translation.sources.first();
    const IndexInfo *used = source.table->index(index);
    if (!used)
        throw Error(NotAnIndex, QStringLiteral("Nessun indice corrente per la ricerca"));
    if (keys.size() > used->fields.size() || !QStringList{"=", "<", "<=", ">", ">="}.contains(op))
        throw Error(InvalidArgument, QStringLiteral("Argomento non valido"));
    leaveEdit();

    const Dialect &dialect = session->dialect();
    KeyConditions conditions(dialect, source, *used, keys);
    const QString ascending = orderBy(dialect, source, used, false);
    const auto query = [&](const QString &condition, const QString &tail) {
        return NativeQuery{translation.sql + QStringLiteral(" WHERE ") + condition + tail,
                           conditions.takeValues()};
    };
    const NativeQuery equal = query(conditions.equal(), ascending);
    const NativeQuery after = query(conditions.beyond(QStringLiteral(">")), ascending);

    if (op.startsWith(u'<')) {
        // From the end backwards: the last row below the keys. The rows before it are wanted next, so all are
        // read.
        const QString descending = orderBy(dialect, source, used, true);
        QString condition = u'(' + conditions.beyond(QStringLiteral("<")) + u')';
        if (op == u"<=")
            condition += QStringLiteral(" OR (") + conditions.equal() + u')';
        const NativeQuery last = query(condition, descending + u' ' + dialect.limit(1));
        auto found = session->select(last.sql, last.values);
        noMatch = !found->next();
        const QVariant identity = noMatch ? QVariant() : found->value(source.identityColumn);
        found.reset();
        restart();
        while (!noMatch && rows.has(position) && rows.cell(position, source.identityColumn) != identity)
            ++position;
    } else {
        restart();
        rows.start(op == u"=" ? QList{equal} : op == u">" ? QList{after} : QList{equal, after});
        partial = true;
        noMatch = !rows.has(0);
        if (op == u"=" && !noMatch)
            rows.append(after); // MoveNext goes on in the index's order
    }
    standing = noMatch ? Standing::NoMatch : Standing::OnRow;
}

} // namespace dao
