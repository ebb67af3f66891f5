// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/patients/PatientIndex.h"

#include <QAbstractTableModel>

namespace orvale {

// The patients found, for the search list. Makes a row's texts only when the row is painted. The birth date
// of whoever has the name of another patient stands out, with a sign and in words for a screen reader.
class PatientListModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Name, Birth, Age, Sex, Code, ColumnCount };

    // Before the birth date of a namesake.
    static QString namesakeSign() { return QStringLiteral("⚠ "); }

    // The index must outlive the model.
    explicit PatientListModel(const PatientIndex &index, QObject *parent = nullptr);

    // The rows of the index to show, and the day for which ages are told.
    void setRows(std::vector<int> rows, QDate today);
    qint32 codeAt(int row) const;
    // -1 when the patient is not shown.
    int rowOf(qint32 code) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const PatientIndex &m_index;
    std::vector<int> m_rows;
    QDate m_today;
};

} // namespace orvale
