// SPDX-License-Identifier: Apache-2.0
#include "problems/ProblemListModel.h"

#include "controls/ReportIcons.h"
#include "controls/ReportView.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

const auto unassociatedText = QStringLiteral(" Elementi non associati a problemi");

QString shortDate(QDate date)
{
    return date.isValid() ? jet::formatDate(jet::dateTime(date), u"dd/mm/yy") : QString();
}

QString stateText(const ProblemRow &problem)
{
    const QString closed = shortDate(problem.closed);
    if (problem.closedBeforeStart())
        return QStringLiteral("⚠ chiuso il %1, prima dell'inizio").arg(closed);
    if (problem.state == qint16(ProblemState::Closed))
        return closed.isEmpty() ? QStringLiteral("chiuso") : QStringLiteral("chiuso il %1").arg(closed);
    return problem.state == qint16(ProblemState::Chronic) ? QStringLiteral("cronico") : QString();
}

ProblemListModel::Row rowFrom(const ProblemRow &problem,
                              const std::function<QString(const QString &code)> &nameOf)
{
    const QString name = problem.suspectedCode.isEmpty() ? QString() : nameOf(problem.suspectedCode);
    ProblemListModel::Row row;
    row.id = problem.id;
    row.start = problem.start;
    row.code = problem.suspectedCode;
    row.problem = !problem.description.isEmpty() ? problem.description
                  : !name.isEmpty()              ? name
                                                 : problem.suspectedCode;
    row.state = problem.state;
    row.closedBeforeStart = problem.closedBeforeStart();
    row.written = problem.written;
    QStringList parts{stateText(problem)};
    if (!row.problem.startsWith(name, Qt::CaseInsensitive))
        parts.append(name);
    parts.removeAll(QString());
    row.description = parts.join(QStringLiteral("  ·  "));
    return row;
}

} // namespace

ProblemListModel::ProblemListModel(QObject *parent)
    : QAbstractTableModel(parent)
    , m_rows{Row{}}
    , m_open(reportIcon(ReportIcon::OpenProblem))
    , m_closed(reportIcon(ReportIcon::ClosedProblem))
    , m_chronic(reportIcon(ReportIcon::ChronicProblem))
    , m_unspecified(reportIcon(ReportIcon::UnspecifiedProblem))
    , m_none(reportIcon(ReportIcon::NoProblem))
{
    m_rows.first().problem = unassociatedText;
}

void ProblemListModel::setProblems(const QList<ProblemRow> &problems,
                                   const std::function<QString(const QString &code)> &nameOf)
{
    QList<Row> rows{m_rows.first()};
    rows.reserve(problems.size() + 1);
    for (const ProblemRow &problem : problems)
        rows.append(rowFrom(problem, nameOf));
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

int ProblemListModel::rowOf(qint32 id) const
{
    const auto found =
        std::find_if(m_rows.begin(), m_rows.end(), [id](const Row &row) { return row.id == id; });
    return found == m_rows.end() ? -1 : int(found - m_rows.begin());
}

int ProblemListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int ProblemListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ProblemListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const Row &row = m_rows.at(index.row());
    const bool isProblem = row.id != unassociated;
    switch (role) {
    case Qt::DisplayRole:
        switch (index.column()) {
        case Date:
            return shortDate(row.start);
        case Code:
            return row.code;
        case Problem:
            return row.problem;
        case Description:
            return row.description;
        default:
            return {};
        }
    case Qt::DecorationRole:
        if (index.column() != Icon)
            return {};
        if (!isProblem)
            return m_none;
        switch (ProblemState(row.state)) {
        case ProblemState::Open:
            return m_open;
        case ProblemState::Closed:
            return m_closed;
        case ProblemState::Chronic:
            return m_chronic;
        case ProblemState::Unspecified:
            break;
        }
        return m_unspecified;
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole:
        // The icon in words.
        if (index.column() == Icon)
            return isProblem ? problemStateText(row.state) : unassociatedText.trimmed();
        return {};
    case ToneRole:
        if (index.column() == Description && row.closedBeforeStart)
            return int(ReportTone::Strong);
        return int(!isProblem || row.state == qint16(ProblemState::Closed) ? ReportTone::Quiet
                   : index.column() == Problem                             ? ReportTone::Strong
                                                                           : ReportTone::Plain);
    default:
        return {};
    }
}

QVariant ProblemListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Date:
        return QStringLiteral("DATA");
    case Code:
        return QStringLiteral("ICD-9");
    case Problem:
        return QStringLiteral("PROBLEMA");
    case Description:
        return QStringLiteral("DESCRIZIONE");
    default:
        return QString();
    }
}

} // namespace clivara
