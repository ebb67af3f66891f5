// SPDX-License-Identifier: Apache-2.0
#include "app/window/PatientListModel.h"

#include "support/PatientHeader.h"

#include <QFont>

namespace orvale {

PatientListModel::PatientListModel(const PatientIndex &index, QObject *parent)
    : QAbstractTableModel(parent)
    , m_index(index)
{
}

void PatientListModel::setRows(std::vector<int> rows, QDate today)
{
    beginResetModel();
    m_rows = std::move(rows);
    m_today = today;
    endResetModel();
}

qint32 PatientListModel::codeAt(int row) const
{
    return row >= 0 && row < rowCount() ? m_index.at(m_rows[static_cast<std::size_t>(row)]).code : -1;
}

int PatientListModel::rowOf(qint32 code) const
{
    const auto found = std::find(m_rows.begin(), m_rows.end(), m_index.rowOf(code));
    return found == m_rows.end() ? -1 : static_cast<int>(found - m_rows.begin());
}

int PatientListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int PatientListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant PatientListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    if (role == Qt::TextAlignmentRole && (index.column() == Age || index.column() == Code))
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    const int place = m_rows[static_cast<std::size_t>(index.row())];
    const bool isNamesake = m_index.hasNamesake(place);
    if (role == Qt::FontRole && index.column() == Birth && isNamesake) {
        QFont bold;
        bold.setBold(true);
        return bold;
    }
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole && role != Qt::AccessibleTextRole)
        return {};

    const PatientEntry patient = m_index.at(place);
    const QString name = (patient.surname + u' ' + patient.name).trimmed();
    if (role == Qt::ToolTipRole) {
        QStringList lines{name};
        if (!patient.fiscalCode.isEmpty())
            lines << patient.fiscalCode;
        if (isNamesake)
            lines << QStringLiteral(
                "Omonimo: un altro paziente ha lo stesso cognome e nome. Controllare la data di "
                "nascita.");
        return lines.join(u'\n');
    }
    const bool isRead = role == Qt::AccessibleTextRole; // by a screen reader
    switch (index.column()) {
    case Name:
        return isRead && isNamesake ? name + QStringLiteral(", omonimo") : name;
    case Birth: {
        const QString birth = patient.birthDate.isValid()
                                  ? patient.birthDate.toString(QStringLiteral("dd/MM/yyyy"))
                              : isNamesake ? QStringLiteral("senza data")
                                           : QString();
        if (!isNamesake)
            return birth;
        return isRead ? birth + QStringLiteral(", omonimo: controllare la data di nascita")
                      : namesakeSign() + birth;
    }
    case Age: {
        const int age = clivara::exactAge(patient.birthDate, m_today);
        return age < 0 ? QString() : QString::number(age);
    }
    case Sex:
        return patient.sex;
    case Code:
        return QString::number(patient.code);
    }
    return {};
}

QVariant PatientListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return QVariant::fromValue((section == Age || section == Code ? Qt::AlignRight : Qt::AlignLeft)
                                   | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Name:
        return QStringLiteral("Paziente");
    case Birth:
        return QStringLiteral("Nascita");
    case Age:
        return QStringLiteral("Età");
    case Sex:
        return QStringLiteral("S");
    case Code:
        return QStringLiteral("Codice");
    }
    return {};
}

} // namespace orvale
