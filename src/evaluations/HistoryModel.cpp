// SPDX-License-Identifier: Apache-2.0
#include "evaluations/HistoryModel.h"

namespace clivara {

namespace {

enum Column { Date, Value, ColumnCount };

} // namespace

HistoryModel::HistoryModel(const QString &valueHeading, Qt::AlignmentFlag alignment, QObject *parent)
    : QAbstractTableModel(parent)
    , m_valueHeading(valueHeading)
    , m_alignment(alignment)
{
}

int HistoryModel::alignmentOf(int column) const
{
    return int((column == Value ? m_alignment : Qt::AlignLeft) | Qt::AlignVCenter);
}

void HistoryModel::setRows(const QList<HistoryRow> &rows)
{
    beginResetModel();
    m_rows = rows;
    endResetModel();
}

int HistoryModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int HistoryModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant HistoryModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    if (role == Qt::TextAlignmentRole)
        return alignmentOf(index.column());
    if (role != Qt::DisplayRole)
        return {};
    const HistoryRow &row = m_rows.at(index.row());
    return index.column() == Date ? row.date : row.value;
}

QVariant HistoryModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return alignmentOf(section);
    if (role != Qt::DisplayRole)
        return {};
    return section == Date ? QStringLiteral("Data") : m_valueHeading;
}

} // namespace clivara
