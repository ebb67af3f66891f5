// SPDX-License-Identifier: Apache-2.0
#include "app/practice/FactsTable.h"

#include <QHeaderView>

#include <algorithm>

namespace orvale {

namespace {

// So much of the names is always seen, in average characters; shorter names take no more than they need.
constexpr int readableCharacters = 24;

} // namespace

FactsTable::FactsTable(QWidget *parent)
    : QTableWidget(parent)
{
    setProperty("facts", true);
    setSelectionMode(NoSelection);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollMode(ScrollPerPixel);
    setTabKeyNavigation(false);
    setShowGrid(false);
    setWordWrap(false);
    setAlternatingRowColors(true);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 12);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

void FactsTable::setTitles(const QStringList &titles, int stretched, int fullCharacters)
{
    m_fullCharacters = fullCharacters;
    m_stretched = stretched;
    setColumnCount(static_cast<int>(titles.size()));
    setHorizontalHeaderLabels(titles);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
}

void FactsTable::setRows(const QList<QList<Fact>> &rows, const QString &nothing)
{
    clearSpans();
    clearContents();
    setRowCount(rows.isEmpty() ? 1 : static_cast<int>(rows.size()));
    horizontalHeader()->setVisible(!rows.isEmpty());
    for (int row = 0; row < rows.size(); ++row) {
        for (int column = 0; column < columnCount(); ++column) {
            const Fact fact = rows.at(row).value(column, QString());
            const auto cell = new QTableWidgetItem(fact.icon, fact.text);
            cell->setToolTip(fact.meaning.isEmpty() ? fact.text : fact.text + u'\n' + fact.meaning);
            if (!fact.meaning.isEmpty())
                cell->setData(Qt::AccessibleTextRole,
                              QString(fact.text + QStringLiteral(", ") + fact.meaning));
            if (fact.isMarked) {
                QFont bold = font();
                bold.setBold(true);
                cell->setFont(bold);
            }
            setItem(row, column, cell);
        }
    }
    if (rows.isEmpty()) {
        const auto cell = new QTableWidgetItem(nothing);
        cell->setForeground(palette().placeholderText());
        setItem(0, 0, cell);
        setSpan(0, 0, 1, columnCount());
    }
    fitColumns();
    scrollToTop();
}

void FactsTable::fitColumns()
{
    const bool isEmpty = columnSpan(0, 0) > 1; // one line across all columns
    setColumnHidden(columnCount() - 1, false); // to be measured
    int others = 0;
    for (int column = 0; column < columnCount(); ++column) {
        if (column == m_stretched)
            continue;
        setColumnWidth(column, std::max(isEmpty ? 0 : sizeHintForColumn(column),
                                        horizontalHeader()->sectionSizeHint(column)));
        others += columnWidth(column);
    }
    const int readable = isEmpty ? 0
                                 : std::min(sizeHintForColumn(m_stretched),
                                            readableCharacters * fontMetrics().averageCharWidth());
    const int last = columnCount() - 1;
    const int lastWidth = columnWidth(last);
    const bool isNarrow = width() < m_fullCharacters * fontMetrics().averageCharWidth()
                          || others + readable > viewport()->width();
    const bool givesWay = m_fullCharacters > 0 && isNarrow;
    setColumnHidden(last, givesWay);
    if (givesWay)
        others -= lastWidth;
    setColumnWidth(m_stretched, std::max(viewport()->width() - others, readable));
}

void FactsTable::resizeEvent(QResizeEvent *event)
{
    QTableWidget::resizeEvent(event);
    fitColumns();
}

} // namespace orvale
