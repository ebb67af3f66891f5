// SPDX-License-Identifier: Apache-2.0
#include "app/FactsTable.h"

#include <QHeaderView>

namespace orvale {

FactsTable::FactsTable(QWidget *parent)
    : QTableWidget(parent)
{
    setProperty("facts", true);
    setSelectionMode(NoSelection);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
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
    setColumnCount(static_cast<int>(titles.size()));
    setHorizontalHeaderLabels(titles);
    horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    horizontalHeader()->setSectionResizeMode(stretched, QHeaderView::Stretch);
}

void FactsTable::setRows(const QList<QStringList> &rows, const QString &nothing)
{
    clearSpans();
    clearContents();
    setRowCount(rows.isEmpty() ? 1 : static_cast<int>(rows.size()));
    horizontalHeader()->setVisible(!rows.isEmpty());
    for (int row = 0; row < rows.size(); ++row) {
        for (int column = 0; column < columnCount(); ++column) {
            const auto cell = new QTableWidgetItem(rows.at(row).value(column));
            cell->setToolTip(cell->text());
            setItem(row, column, cell);
        }
    }
    if (rows.isEmpty()) {
        const auto cell = new QTableWidgetItem(nothing);
        cell->setForeground(palette().placeholderText());
        setItem(0, 0, cell);
        setSpan(0, 0, 1, columnCount());
    }
    scrollToTop();
}

void FactsTable::resizeEvent(QResizeEvent *event)
{
    setColumnHidden(columnCount() - 1, width() < m_fullCharacters * fontMetrics().averageCharWidth());
    QTableWidget::resizeEvent(event);
}

} // namespace orvale
