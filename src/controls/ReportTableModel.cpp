// SPDX-License-Identifier: Apache-2.0
#include "controls/ReportTableModel.h"

namespace clivara {

ReportTableModel::ReportTableModel(const QStringList &titles, QObject *parent)
    : QAbstractTableModel(parent)
    , m_titles(titles)
{
}

void ReportTableModel::setRows(QList<Row> rows)
{
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

qint32 ReportTableModel::keyOf(const QModelIndex &index) const
{
    return index.isValid() && index.row() < m_rows.size() ? m_rows.at(index.row()).key : 0;
}

int ReportTableModel::rowOf(qint32 key) const
{
    const auto found =
        std::find_if(m_rows.begin(), m_rows.end(), [key](const Row &row) { return row.key == key; });
    return found == m_rows.end() ? -1 : int(found - m_rows.begin());
}

QModelIndex ReportTableModel::nearest(qint32 key, int otherwise) const
{
    const int found = rowOf(key);
    return index(std::min(found < 0 ? otherwise : found, rowCount() - 1), 0);
}

int ReportTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int ReportTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_titles.size());
}

QVariant ReportTableModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_rows.size())
        return {};
    const Row &row = m_rows.at(index.row());
    const QString text = row.texts.value(index.column());
    const QString hint = index.column() == row.hintColumn ? row.hint : QString();
    switch (role) {
    case Qt::DisplayRole:
        return text;
    case Qt::DecorationRole:
        return index.column() == 0 && !row.icon.isNull() ? QVariant(row.icon) : QVariant();
    case Qt::ToolTipRole:
        return row.tip;
    case Qt::AccessibleTextRole:
        // In words, what is only drawn.
        if (index.column() == 0 && !row.iconText.isEmpty())
            return QStringLiteral("%1, %2").arg(text, row.iconText);
        return text.isEmpty() ? hint : text;
    case HintRole:
        return hint;
    case ToneRole:
        return int(row.tone);
    default:
        return {};
    }
}

QVariant ReportTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    return orientation == Qt::Horizontal && role == Qt::DisplayRole ? m_titles.value(section) : QVariant();
}

} // namespace clivara
