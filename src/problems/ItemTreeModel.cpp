// SPDX-License-Identifier: Apache-2.0
#include "problems/ItemTreeModel.h"

#include "controls/ReportIcons.h"
#include "controls/ReportView.h"

namespace clivara {

namespace {

// An index's internal id: 0 for an item's own row, else its item's row and 1.
constexpr quintptr ofItem = 0;

const auto outcome = QStringLiteral("Esito: ");
const auto labelEnd = QStringLiteral(": ");

} // namespace

ItemTreeModel::ItemTreeModel(Third third, QObject *parent)
    : QAbstractItemModel(parent)
    , m_third(third)
    , m_visit(reportIcon(ReportIcon::Visit))
    , m_drug(reportIcon(ReportIcon::Drug))
    , m_test(reportIcon(ReportIcon::Test))
{
}

void ItemTreeModel::setItems(QList<ItemRow> items)
{
    beginResetModel();
    m_items = std::move(items);
    endResetModel();
}

const ItemRow *ItemTreeModel::item(const QModelIndex &index) const
{
    if (!index.isValid())
        return nullptr;
    const auto row = index.internalId() == ofItem ? index.row() : qsizetype(index.internalId()) - 1;
    return row < m_items.size() ? &m_items.at(row) : nullptr;
}

QModelIndex ItemTreeModel::find(ItemRow::Kind kind, qint32 key) const
{
    const auto found = std::find_if(m_items.begin(), m_items.end(), [&](const ItemRow &item) {
        return item.kind == kind && item.key == key;
    });
    return found == m_items.end() ? QModelIndex() : index(int(found - m_items.begin()), 0);
}

QModelIndex ItemTreeModel::first(ItemRow::Kind kind) const
{
    const auto found = std::find_if(m_items.begin(), m_items.end(),
                                    [kind](const ItemRow &item) { return item.kind == kind; });
    return found == m_items.end() ? QModelIndex() : index(int(found - m_items.begin()), 0);
}

int ItemTreeModel::count(ItemRow::Kind kind) const
{
    return int(std::count_if(m_items.begin(), m_items.end(),
                             [kind](const ItemRow &item) { return item.kind == kind; }));
}

QModelIndex ItemTreeModel::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, parent.isValid() ? quintptr(parent.row()) + 1 : ofItem);
}

QModelIndex ItemTreeModel::parent(const QModelIndex &index) const
{
    if (!index.isValid() || index.internalId() == ofItem)
        return {};
    return createIndex(int(index.internalId()) - 1, 0, ofItem);
}

int ItemTreeModel::rowCount(const QModelIndex &parent) const
{
    if (!parent.isValid())
        return int(m_items.size());
    if (parent.internalId() != ofItem || parent.column() != 0 || parent.row() >= m_items.size())
        return 0;
    return int(m_items.at(parent.row()).lines.size());
}

int ItemTreeModel::columnCount(const QModelIndex &) const
{
    return ColumnCount;
}

bool ItemTreeModel::hasChildren(const QModelIndex &parent) const
{
    return rowCount(parent) > 0;
}

QVariant ItemTreeModel::data(const QModelIndex &index, int role) const
{
    const ItemRow *const found = item(index);
    if (!found)
        return {};
    if (index.internalId() == ofItem)
        return itemData(*found, index.column(), role);
    if (index.row() >= found->lines.size())
        return {};
    return lineData(*found, found->lines.at(index.row()), index.column(), role);
}

QVariant ItemTreeModel::itemData(const ItemRow &item, int column, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        switch (column) {
        case Date:
            return item.date;
        case Description:
            return item.description;
        case Type:
            return m_third == Third::Kind ? itemKindName(item.kind) : item.problemCode;
        case CodPre:
            return item.key;
        case Minsan:
            return item.minsan;
        default:
            return {};
        }
    case Qt::DecorationRole:
        if (column != Date)
            return {};
        return item.kind == ItemRow::Kind::Visit  ? m_visit
               : item.kind == ItemRow::Kind::Drug ? m_drug
                                                  : m_test;
    case ToneRole:
        return int(column == Type ? ReportTone::Quiet : ReportTone::Strong);
    default:
        return {};
    }
}

QVariant ItemTreeModel::lineData(const ItemRow &item, const ItemRow::Line &line, int column, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return column == Date ? line.date : column == Description ? line.text : QString();
    case LabelRole: {
        // The name of a text; of a test all that stands before its result.
        const QString end = item.kind == ItemRow::Kind::Test ? outcome : labelEnd;
        const qsizetype at = column == Description ? line.text.indexOf(end) : -1;
        return at < 0 ? 0 : int(at + end.size());
    }
    case ValueRole:
        if (item.kind == ItemRow::Kind::Test && column == Description) {
            if (const qsizetype at = line.text.indexOf(outcome); at >= 0)
                return int(at + outcome.size());
        }
        return {};
    case ToneRole:
        return int(column == Date ? ReportTone::Quiet : ReportTone::Plain);
    default:
        return {};
    }
}

QVariant ItemTreeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Date:
        return QStringLiteral("DATA");
    case Description:
        return QStringLiteral("DESCRIZIONE");
    case Type:
        return m_third == Third::Kind ? QStringLiteral("TIPO") : QStringLiteral("Problema");
    case CodPre:
        return QStringLiteral("cod_pre");
    case Minsan:
        return QStringLiteral("minsan");
    default:
        return {};
    }
}

} // namespace clivara
