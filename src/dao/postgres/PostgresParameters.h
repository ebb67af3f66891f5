// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QVariantList>
#include <vector>

namespace dao {

// The values of a statement as libpq takes them. Texts and Null have no type of their own, as literals: the place where
// they stand gives it to them.
class PostgresParameters {
public:
    PostgresParameters() = default;
    // Throws Error (ConversionError) for a text that the server cannot hold.
    explicit PostgresParameters(const QVariantList &values);
    PostgresParameters(const PostgresParameters &) = delete;
    PostgresParameters &operator=(const PostgresParameters &) = delete;

    int count() const { return int(m_values.size()); }
    const unsigned *types() const { return m_types.data(); }
    const char *const *values() const { return m_values.data(); }
    const int *lengths() const { return m_lengths.data(); }
    const int *formats() const { return m_formats.data(); }

    // The statement with $1, $2... in the place of the marks '?' that stand outside quotes.
    static QByteArray numbered(const QString &sql);

private:
    std::vector<QByteArray> m_bytes;
    std::vector<unsigned> m_types; // by the server's numbers; 0 for none
    std::vector<const char *> m_values;
    std::vector<int> m_lengths, m_formats;
};

} // namespace dao
