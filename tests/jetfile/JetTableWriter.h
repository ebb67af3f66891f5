// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetfile/JetValueEncoder.h"

#include <QStringList>
#include <QVariantList>
#include <optional>

namespace jetfile {

enum class IndexKind { Plain, Unique, Primary, Foreign };

// Where a memo or a long binary value is put: by its length, or as told.
enum class LongForm {
    ByLength,
    Inline, // in the row behind a header of 12 bytes
    SinglePage, // in a row of a page of long values
    Chained, // over as many of these as it takes
};

// One table of a file in the making: its rows are written into the pages at once, its definition and usage
// maps when the file is. Rows are numbered from 0 in the order in which they were added.
class JetTableWriter {
public:
    enum class Kind { User, System };

    // The definition goes to a page that the caller has allocated.
    JetTableWriter(JetPages &pages, quint32 definitionPage, const QString &name,
                   const QList<JetColumn> &columns, Kind kind = Kind::User);

    const QString &name() const { return m_name; }
    quint32 definitionPage() const { return m_definitionPage; }

    // One value for each column of the present design; an invalid variant is Null (false for a Boolean).
    JetTableWriter &addRow(const QVariantList &values);
    void deleteRow(int row);
    // Leaves a pointer at the row's place and puts the row on another page, as Jet does with a row that has
    // grown.
    void moveRow(int row);
    // Deletes the pointer to a moved row alone: the row itself stays where nothing leads to it.
    void deletePointer(int row);

    // Changes of the design: rows that stand already keep their bytes.
    void dropColumn(const QString &name);
    void addColumn(const JetColumn &column);
    // A real index with one empty leaf page. A Foreign one serves a relation and shares the pages of the
    // index over the same fields if there is one.
    void index(const QString &name, const QStringList &fields, IndexKind kind = IndexKind::Plain);

    // For the long values of rows to come.
    void setLongForm(LongForm form) { m_longForm = form; }
    // What the definition says instead of the truth.
    void setDeclaredRows(int rows) { m_declaredRows = rows; }
    void setLastAutoNumber(int number) { m_lastAutoNumber = number; }

    int liveRows() const;
    // The pages of rows, for tests that damage them.
    const QList<quint32> &dataPages() const { return m_dataPages; }

    // Writes the definition, index leaves and usage maps into `pages`, a copy of the pages of this table's
    // file.
    void writeDefinition(JetPages &pages) const;

private:
    struct Column {
        JetColumn design;
        int number = 0; // counts deleted columns too
        int fixedOffset = 0;
        int variableIndex = 0; // the same
        QList<quint32> longValuePages; // chained ones and those of single values
        QList<quint32> sharedPages; // with room for further single values
    };
    struct Index {
        QString name;
        QList<int> columns; // their numbers
        IndexKind kind = IndexKind::Plain;
        int real = 0; // which of the real indexes it uses
    };
    struct Row {
        RowPlace place; // where the slot of the row itself is
        std::optional<RowPlace> moved; // where the row is now
        bool live = true;
    };

    QByteArray longValue(Column &column, const QByteArray &value);
    QByteArray encodeRow(const QVariantList &values);
    QByteArray definition(JetPages &pages) const;
    void appendColumns(ByteSink &out) const;
    void appendIndexes(ByteSink &out, JetPages &pages, QList<quint32> &mapPages) const;
    void appendName(ByteSink &out, const QString &name) const;
    int realIndexes() const;

    JetPages &m_pages;
    QString m_name;
    Kind m_kind;
    quint32 m_definitionPage;
    QList<Column> m_columns; // of the present design
    QList<Index> m_indexes;
    QList<Row> m_rows;
    QList<quint32> m_dataPages;
    int m_columnsEver = 0;
    int m_variablesEver = 0;
    int m_fixedBytes = 0;
    LongForm m_longForm = LongForm::ByLength;
    int m_highestNumber = 0;
    std::optional<int> m_declaredRows;
    std::optional<int> m_lastAutoNumber;
};

} // namespace jetfile
