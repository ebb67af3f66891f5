// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/Dao.h"
#include "dao/DatabaseCatalog.h"
#include "dao/RowCache.h"
#include "dao/Translator.h"

namespace dao {

// Where the recordset stands when it is not on a row.
enum class Standing { OnRow, Deleted, NoMatch };

struct Recordset::Private {
    Private(std::shared_ptr<Session> session_, std::shared_ptr<const TableSet> tables_,
            Translation translation_, QVariantList parameterValues_, RowsWanted wanted);

    // --- rows
    void requireOpen() const;
    // The row must be there: NoCurrentRecord, RecordDeleted.
    void requireRow();
    bool moveTo(int row);
    void restart();
    const QVariant &cell(int column) const { return rows.cell(position, column); }

    // --- values
    int columnOf(const QString &name) const; // -1 when there is none
    QVariant value(int column);
    void setValue(int column, const QVariant &value);
    // The table's column that the field shows; null for a computed one.
    const ColumnInfo *columnInfo(int column) const;

    // --- editing
    void requireUpdatable() const;
    bool isWritable(int source) const
    {
        return source >= 0 && translation.sources[source].identityColumn >= 0;
    }
    // All columns of that table's row as they are stored now; empty when it is gone.
    QVariantList readBaseRow(int source, const QVariant &identity) const;
    // Shows a table's row as it is stored now in every cached row that stands for it.
    void showBaseRow(int source, const QVariant &identity, const QVariantList &values);
    void edit();
    void update();
    void insertRow();
    void changeRow();
    void deleteRow();
    int writtenSource() const; // of the fields that were set; -1 when none was
    void leaveEdit();

    // --- seeking
    QList<NativeQuery> orderedQueries() const;
    void seek(const QString &op, const QVariantList &keys);

    std::shared_ptr<Session> session;
    std::shared_ptr<const TableSet> tables; // keeps what the translation points to
    Translation translation;
    QVariantList parameterValues; // native, of the translation
    QString name;
    RecordsetType type = RecordsetType::Dynaset;
    RowsWanted rowsWanted;
    bool updatable = false;
    bool open = true;

    RowCache rows;
    int position = 0; // -1 before the first row, the number of rows after the last
    int visited = 0;
    Standing standing = Standing::OnRow;

    EditMode mode = EditMode::None;
    QVariantList buffer; // by field, of those set
    QList<bool> isSet;
    QList<QVariantList> original; // by table: its row when the edit began
    qint64 lastAutoNumber = 0;

    QString index;
    bool noMatch = false;
    bool partial = false; // the rows begin at the row found by Seek, not at the first
};

} // namespace dao
