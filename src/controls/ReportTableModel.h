// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "controls/ReportView.h"

#include <QAbstractTableModel>
#include <QIcon>

namespace clivara {

// A report of rows without lines below them, each with the key of its record.
class ReportTableModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    struct Row {
        qint32 key = 0;
        QStringList texts; // by column
        QIcon icon; // in the first column
        QString iconText; // the icon in words
        QString tip; // of all columns
        ReportTone tone = ReportTone::Plain;
        int hintColumn = -1; // shows the hint while its text is empty; -1 for none
        QString hint;
    };

    explicit ReportTableModel(const QStringList &titles, QObject *parent = nullptr);

    void setRows(QList<Row> rows);
    // The key of an index's row; 0 for an invalid index.
    qint32 keyOf(const QModelIndex &index) const;
    int rowOf(qint32 key) const; // -1 when it is not there
    // The row with the key, or the other one; beyond the last row it is the last. Invalid without rows.
    QModelIndex nearest(qint32 key, int otherwise) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const QStringList m_titles;
    QList<Row> m_rows;
};

} // namespace clivara
