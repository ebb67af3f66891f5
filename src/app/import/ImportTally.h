// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/import/Import.h"
#include "jetsql/Catalog.h"

#include <QVariant>
#include <optional>

namespace orvale {

// Counts and sums of the values of one field, taken the same way on both sides of an import. What a person
// can follow (sums, characters, first and last date) stands beside a checksum that does not depend on the
// order of the rows: a sum of one mixed number for each value, in which every bit and every place of a text
// counts.
class ColumnTally {
public:
    // By the field's type in the practice. Values of both sides have its kind: a whole number of the source
    // may be one of a Double, a GUID one of a Text.
    explicit ColumnTally(dao::FieldType type)
        : m_type(type)
    {
    }

    // The mixed number of the value; an invalid variant is Null.
    quint64 add(const QVariant &value);
    qint64 values() const { return m_values; } // that are not Null
    // For a person: one text, and one figure after the other with its name.
    QString sum() const;
    QList<QPair<QString, QString>> figures() const;
    bool operator==(const ColumnTally &other) const;

private:
    quint64 addText(QStringView text);
    quint64 addBytes(const QByteArray &bytes);
    quint64 addWhole(qint64 number);

    dao::FieldType m_type;
    qint64 m_values = 0;
    __extension__ __int128 m_sum = 0; // of whole numbers, ten-thousandths, seconds, characters' codes, bytes
    long double m_floatingSum = 0;
    qint64 m_units = 0; // characters of texts, bytes of binary values
    std::optional<qint64> m_least, m_most; // of dates, in seconds
    quint64 m_checksum = 0;
};

// The same for whole rows, so that values cannot have changed places between rows.
class TableTally {
public:
    explicit TableTally(const QList<dao::ColumnInfo> &columns);
    // One value per column; Value is called with the position.
    template <typename Value>
    void add(Value value)
    {
        quint64 row = 0;
        for (int i = 0; i < int(m_columns.size()); ++i)
            row = mixed(row * 31 + m_columns[size_t(i)].add(value(i)));
        m_checksum += row;
        ++m_rows;
    }

    qint64 rows() const { return m_rows; }
    quint64 checksum() const { return m_checksum; }
    const ColumnTally &column(int position) const { return m_columns[size_t(position)]; }

    static quint64 mixed(quint64 number);

private:
    std::vector<ColumnTally> m_columns;
    qint64 m_rows = 0;
    quint64 m_checksum = 0;
};

// Adds the columns to a table's proof, and to its verdict whether rows, columns and the checksums of both
// agree.
void compareColumns(TableProof &proof, const QStringList &columns, const TableTally &source,
                    const TableTally &target);

} // namespace orvale
