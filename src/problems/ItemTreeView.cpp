// SPDX-License-Identifier: Apache-2.0
#include "problems/ItemTreeView.h"

#include <QFocusEvent>
#include <QScrollBar>

namespace clivara {

namespace {

constexpr int linesOfText = 3;
constexpr int lineIndentation = 16; // pixels

} // namespace

ItemTreeView::ItemTreeView(QWidget *parent)
    : ReportView(parent)
{
    setIndentation(lineIndentation);
    setTextColumn(ItemTreeModel::Description, linesOfText);
}

void ItemTreeView::setThirdColumn(ItemTreeModel::Third third)
{
    m_model = new ItemTreeModel(third, this);
    setModel(m_model);
    constexpr int hidden = 0;
    setColumns(
        {{1000, QStringLiteral("00/00/00")},
         {6300, {}},
         {1000, third == ItemTreeModel::Third::Kind ? QStringLiteral("Farmaco") : QStringLiteral("Problema")},
         {hidden, {}},
         {hidden, {}}});
}

void ItemTreeView::showItems(QList<ItemRow> items, Place place)
{
    const ItemRow *const selected = selectedItem();
    const auto kind = selected ? selected->kind : ItemRow::Kind::Visit;
    const qint32 key = selected ? selected->key : 0;
    const int top = verticalScrollBar()->value();

    m_model->setItems(std::move(items));
    expandAll();
    if (place == Place::FromTheTop) {
        verticalScrollBar()->setValue(0);
        return;
    }
    verticalScrollBar()->setValue(top);
    if (const QModelIndex again = selected ? m_model->find(kind, key) : QModelIndex(); again.isValid())
        setCurrentIndex(again);
}

const ItemRow *ItemTreeView::selectedItem() const
{
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? nullptr : m_model->item(rows.first());
}

std::optional<qint32> ItemTreeView::selectedVisit() const
{
    const ItemRow *const item = selectedItem();
    if (!item || item->kind != ItemRow::Kind::Visit)
        return std::nullopt;
    return item->key;
}

bool ItemTreeView::selectVisit(qint32 id)
{
    const QModelIndex visit = m_model->find(ItemRow::Kind::Visit, id);
    if (visit.isValid())
        setCurrentIndex(visit);
    return visit.isValid();
}

void ItemTreeView::goTo(ItemRow::Kind kind)
{
    const QModelIndex row = m_model->first(kind);
    if (!row.isValid())
        return;
    setCurrentIndex(row);
    QTreeView::scrollTo(row, PositionAtTop);
    setFocus(Qt::ShortcutFocusReason);
}

void ItemTreeView::focusInEvent(QFocusEvent *event)
{
    ReportView::focusInEvent(event);
    // Who comes by the keyboard has a row at once.
    if (event->reason() != Qt::MouseFocusReason && m_model && selectionModel()->selectedRows().isEmpty()
        && m_model->rowCount() > 0)
        setCurrentIndex(currentIndex().isValid() ? currentIndex() : m_model->index(0, 0));
}

} // namespace clivara
