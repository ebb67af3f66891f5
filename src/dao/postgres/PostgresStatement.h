// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QVariantList>
#include <vector>

namespace dao {

// A statement and its values as libpq takes them: $1, $2... in the place of the marks '?' that stand outside
// quotes. Texts and Null have no type of their own, as literals: the place where they stand gives it to them.
class PostgresStatement {
public:
    // A value that stands twice with the same type after its mark ("?::int") is one parameter: so the server
    // sees that an expression is the one that rows are grouped by. Throws Error (ConversionError) for a text
    // that the server cannot hold.
    explicit PostgresStatement(const QString &sql, const QVariantList &values = {});
    PostgresStatement(const PostgresStatement &) = delete;
    PostgresStatement &operator=(const PostgresStatement &) = delete;

    const QByteArray &sql() const { return m_sql; }
    int count() const { return int(m_values.size()); }
    const unsigned *types() const { return m_types.data(); }
    const char *const *values() const { return m_values.data(); }
    const int *lengths() const { return m_lengths.data(); }
    const int *formats() const { return m_formats.data(); }

private:
    void add(const QVariant &value);

    QByteArray m_sql;
    std::vector<QByteArray> m_bytes;
    std::vector<unsigned> m_types; // by the server's numbers; 0 for none
    std::vector<const char *> m_values;
    std::vector<int> m_lengths, m_formats;
};

} // namespace dao
