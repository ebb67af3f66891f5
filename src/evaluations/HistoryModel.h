// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "evaluations/EvaluationRecords.h"

#include <QAbstractTableModel>

namespace clivara {

// The saved evaluations of a patient, newest first: date and value.
class HistoryModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    // `alignment` of the values and of their heading: numbers stand at the right.
    HistoryModel(const QString &valueHeading, Qt::AlignmentFlag alignment, QObject *parent);

    void setRows(const QList<HistoryRow> &rows);
    const HistoryRow &at(int row) const { return m_rows.at(row); }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    int alignmentOf(int column) const;

    const QString m_valueHeading;
    const Qt::AlignmentFlag m_alignment;
    QList<HistoryRow> m_rows;
};

} // namespace clivara
