// SPDX-License-Identifier: Apache-2.0
#include "dao/RecordsetPrivate.h"

#include <limits>

namespace dao {
namespace {

int hiddenColumns(const Translation &translation)
{
    int count = 0;
    for (const RowSource &source : translation.sources)
        count += source.identityColumn >= 0 ? 1 : 0;
    return count;
}

Error noCurrentRecord()
{
    return Error(NoCurrentRecord, QStringLiteral("Nessun record corrente"));
}

} // namespace

Recordset::Private::Private(std::shared_ptr<Session> session_, std::shared_ptr<const TableSet> tables_,
                            Translation translation_, QVariantList parameterValues_, RowsWanted wanted)
    : session(std::move(session_))
    , tables(std::move(tables_))
    , translation(std::move(translation_))
    , parameterValues(std::move(parameterValues_))
    , rowsWanted(wanted)
    , rows(session, int(translation.columns.size()) + hiddenColumns(translation))
{
    rows.start({{translation.sql, parameterValues}}, wanted);
}

void Recordset::Private::requireOpen() const
{
    if (!open)
        throw Error(InvalidOperation, QStringLiteral("Il recordset è stato chiuso"));
}

void Recordset::Private::requireRow()
{
    requireOpen();
    if (standing == Standing::Deleted)
        throw Error(RecordDeleted, QStringLiteral("Il record è stato eliminato"));
    if (standing == Standing::NoMatch || position < 0 || !rows.has(position))
        throw noCurrentRecord();
    visited = std::max(visited, position + 1);
}

bool Recordset::Private::moveTo(int row)
{
    leaveEdit();
    standing = Standing::OnRow;
    const bool found = row >= 0 && rows.has(row);
    position = found ? row : row < 0 ? -1 : rows.size();
    if (found)
        visited = std::max(visited, row + 1);
    return found;
}

// The rows from the beginning, in the order of the index.
void Recordset::Private::restart()
{
    rows.start(type == RecordsetType::Table ? orderedQueries()
                                            : QList<NativeQuery>{{translation.sql, parameterValues}},
               rowsWanted);
    partial = false;
    position = 0;
    visited = 0;
    standing = Standing::OnRow;
}

Recordset::Recordset(std::unique_ptr<Private> p)
    : d(std::move(p))
{
}

Recordset::~Recordset() = default;

QString Recordset::Name() const
{
    return d->name.left(256);
}

RecordsetType Recordset::Type() const
{
    return d->type;
}

bool Recordset::Updatable() const
{
    return d->updatable;
}

bool Recordset::Bof() const
{
    d->requireOpen();
    return d->position < 0 || !d->rows.has(0);
}

bool Recordset::Eof() const
{
    d->requireOpen();
    if (d->standing != Standing::OnRow)
        return d->standing == Standing::NoMatch;
    if (d->position < 0)
        return !d->rows.has(0);
    return !d->rows.has(d->position);
}

int Recordset::RecordCount() const
{
    d->requireOpen();
    if (d->type == RecordsetType::Table) {
        const auto count = d->session->select(QStringLiteral("SELECT count(*) FROM ")
                                              + d->translation.sources.first().table->nativeName);
        return count->next() ? count->value(0).toInt() : 0;
    }
    if (d->visited == 0 && d->rows.has(0))
        d->visited = 1;
    return d->visited;
}

void Recordset::MoveFirst()
{
    d->requireOpen();
    if (d->partial)
        d->restart();
    if (!d->moveTo(0))
        throw noCurrentRecord();
}

void Recordset::MoveLast()
{
    d->requireOpen();
    const int count = d->rows.readAll();
    if (count == 0)
        throw noCurrentRecord();
    d->moveTo(count - 1);
}

void Recordset::MoveNext()
{
    d->requireOpen();
    if (d->standing == Standing::Deleted) { // the next row has taken the place of the deleted one
        d->moveTo(d->position);
        return;
    }
    if (d->standing == Standing::NoMatch || (d->position >= 0 && !d->rows.has(d->position))
        || (d->position < 0 && !d->rows.has(0)))
        throw noCurrentRecord();
    d->moveTo(d->position + 1);
}

void Recordset::MovePrevious()
{
    d->requireOpen();
    if (d->standing == Standing::NoMatch || d->position < 0 || !d->rows.has(0))
        throw noCurrentRecord();
    if (d->partial && d->position == 0 && d->standing == Standing::OnRow) {
        // Rows before a row found by Seek have not been read: read all and stand on the same row again.
        const int identity = d->translation.sources.first().identityColumn;
        const QVariant current = d->cell(identity);
        d->restart();
        int row = 0;
        while (d->rows.has(row) && d->rows.cell(row, identity) != current)
            ++row;
        d->position = row;
    }
    d->moveTo(d->position - 1);
}

dao::Field Recordset::Fields(const QString &name)
{
    const int column = d->columnOf(name);
    if (column < 0)
        throw Error(ItemNotFound, QStringLiteral("Elemento non trovato in questo insieme: '%1'").arg(name));
    return dao::Field(*this, column);
}

dao::Field Recordset::Fields(int position)
{
    if (position < 0 || position >= FieldCount())
        throw Error(ItemNotFound, QStringLiteral("Elemento non trovato in questo insieme: %1").arg(position));
    return dao::Field(*this, position);
}

int Recordset::FieldCount() const
{
    return int(d->translation.columns.size());
}

EditMode Recordset::editMode() const
{
    return d->mode;
}

bool Recordset::isInTransaction() const
{
    return d->session->isInTransaction();
}

qint64 Recordset::LastAutoNumber() const
{
    return d->lastAutoNumber;
}

void Recordset::Edit()
{
    d->edit();
}

void Recordset::AddNew()
{
    d->requireUpdatable();
    d->leaveEdit();
    d->mode = EditMode::Add;
}

void Recordset::Update()
{
    d->update();
}

void Recordset::CancelUpdate()
{
    d->requireOpen();
    d->leaveEdit();
}

void Recordset::Delete()
{
    d->deleteRow();
}

QString Recordset::Index() const
{
    return d->index;
}

void Recordset::setIndex(const QString &name)
{
    d->requireOpen();
    if (d->type != RecordsetType::Table)
        throw Error(InvalidOperation, QStringLiteral("Operazione non valida per questo tipo di recordset"));
    const IndexInfo *found = d->translation.sources.first().table->index(name);
    if (!name.isEmpty() && !found)
        throw Error(NotAnIndex, QStringLiteral("'%1' non è un indice della tabella").arg(name));
    d->leaveEdit();
    d->index = found ? found->name : QString();
    d->restart();
}

void Recordset::Seek(const QString &op, const QVariant &key1, const QVariant &key2, const QVariant &key3)
{
    QVariantList keys{key1};
    if (key2.isValid() || key3.isValid())
        keys.append(key2);
    if (key3.isValid())
        keys.append(key3);
    d->seek(op, keys);
}

bool Recordset::NoMatch() const
{
    return d->noMatch;
}

void Recordset::Close()
{
    d->requireOpen();
    d->leaveEdit();
    d->rows.stop();
    d->open = false;
}

} // namespace dao
