// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "problems/ProblemRecords.h"

#include <QAbstractTableModel>
#include <QIcon>
#include <functional>

namespace clivara {

// The problems of a patient below the row of what is filed against no problem.
class ProblemListModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Icon, Date, Code, Problem, Description, ColumnCount };

    struct Row {
        qint32 id = unassociated;
        QDate start; // null when unknown
        QString code; // CodICDSospetto
        QString problem; // what it is called
        QString description; // the name of its code where that says more, and its state in words
        qint16 state = 0;
        bool closedBeforeStart = false;
        LastWrite written;
    };

    explicit ProblemListModel(QObject *parent = nullptr);

    // `nameOf` gives the name of a diagnosis code, empty when unknown.
    void setProblems(const QList<ProblemRow> &problems,
                     const std::function<QString(const QString &code)> &nameOf);
    const Row &at(int row) const { return m_rows.at(row); }
    int rowOf(qint32 id) const; // -1 when it is not there

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QList<Row> m_rows; // the first one is of no problem
    const QIcon m_open, m_closed, m_chronic, m_unspecified, m_none;
};

} // namespace clivara
