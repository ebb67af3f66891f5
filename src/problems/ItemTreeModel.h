// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "problems/ProblemItems.h"

#include <QAbstractItemModel>
#include <QIcon>

namespace clivara {

// Visits, drugs and tests with their lines below them, straight over the rows that were read.
class ItemTreeModel final : public QAbstractItemModel {
    Q_OBJECT

public:
    enum Column { Date, Description, Type, CodPre, Minsan, ColumnCount };
    // What the third column shows: the kind of the row, or the code of a visit's problem.
    enum class Third { Kind, ProblemCode };

    explicit ItemTreeModel(Third third, QObject *parent = nullptr);

    void setItems(QList<ItemRow> items);
    // The row that an index is of or stands below; null for an invalid index.
    const ItemRow *item(const QModelIndex &index) const;
    // The first row of the kind with the key; an invalid index when there is none.
    QModelIndex find(ItemRow::Kind kind, qint32 key) const;
    // Where the rows of a kind begin; an invalid index when there are none.
    QModelIndex first(ItemRow::Kind kind) const;
    int count(ItemRow::Kind kind) const;

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    bool hasChildren(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QVariant itemData(const ItemRow &item, int column, int role) const;
    QVariant lineData(const ItemRow &item, const ItemRow::Line &line, int column, int role) const;

    const Third m_third;
    QList<ItemRow> m_items;
    const QIcon m_visit, m_drug, m_test;
};

} // namespace clivara
