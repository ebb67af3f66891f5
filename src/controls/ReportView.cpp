// SPDX-License-Identifier: Apache-2.0
#include "controls/ReportView.h"

#include "controls/ReportDelegate.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOption>
#include <QToolTip>

namespace clivara {

namespace {

constexpr int iconSide = 16;
constexpr int tipLength = 2000; // characters; more does not fit on the screen
constexpr QColor unreadColour(0xa0, 0x20, 0x20);
const auto unreadText =
    QStringLiteral("Non è stato possibile leggere questi dati.\n"
                   "Non significa che non ce ne siano: chiudere la finestra e riaprirla.");

} // namespace

ReportView::ReportView(QWidget *parent)
    : QTreeView(parent)
{
    setItemDelegate(new ReportDelegate(*this));
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setAllColumnsShowFocus(true);
    setExpandsOnDoubleClick(false);
    setIconSize({iconSide, iconSide});
    // By rows: only what is seen is measured, however many rows there are.
    setVerticalScrollMode(ScrollPerItem);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    header()->setSectionsMovable(false);
    header()->setStretchLastSection(false);
    header()->setMinimumSectionSize(8);
    header()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header()->setHighlightSections(false);
    header()->setStyleSheet(QStringLiteral("QHeaderView { background: palette(window); border: none; }"
                                           "QHeaderView::section { background: palette(window); border: none;"
                                           " border-bottom: 1px solid palette(mid); padding: 3px %1px; }")
                                .arg(ReportDelegate::horizontalPadding));
    connect(header(), &QHeaderView::sectionResized, this, &ReportView::takeDraggedWidths);
}

void ReportView::setColumns(const QList<Column> &columns)
{
    m_columns = columns;
    layOutColumns();
}

void ReportView::setTextColumn(int column, int most)
{
    m_textColumn = column;
    m_textLines = most;
}

void ReportView::setPlaceholder(const QString &text)
{
    m_placeholder = text;
}

void ReportView::setUnread(bool unread)
{
    m_unread = unread;
    setAccessibleDescription(unread ? unreadText : QString());
    viewport()->update();
}

void ReportView::layOutColumns()
{
    if (!model() || model()->columnCount() < m_columns.size())
        return;
    m_layingOut = true;
    int shares = 0;
    int left = viewport()->width();
    for (const Column &column : m_columns)
        shares += column.share;
    for (int i = 0; i < m_columns.size(); ++i) {
        const Column &column = m_columns.at(i);
        setColumnHidden(i, column.share == 0);
        if (column.share == 0 || i == m_textColumn)
            continue;
        QFont strong = font();
        strong.setBold(true);
        int least = column.sample.isEmpty() ? 0 : QFontMetrics(strong).horizontalAdvance(column.sample);
        least += 2 * ReportDelegate::horizontalPadding;
        if (i == 0)
            least += iconSide + (column.sample.isEmpty() ? 0 : ReportDelegate::horizontalPadding)
                     + (rootIsDecorated() ? 2 * indentation() : 0);
        const int width = std::max(least, viewport()->width() * column.share / std::max(shares, 1));
        setColumnWidth(i, width);
        left -= width;
    }
    // The column of the texts takes what is left, so that nothing is ever out of sight.
    setColumnWidth(m_textColumn, std::max(left, fontMetrics().averageCharWidth() * 16));
    m_layingOut = false;
    scheduleDelayedItemsLayout();
}

void ReportView::takeDraggedWidths()
{
    if (m_layingOut)
        return;
    for (int i = 0; i < m_columns.size(); ++i) {
        if (m_columns.at(i).share > 0)
            m_columns[i] = {std::max(columnWidth(i), 1), {}};
    }
    // Other widths break the texts into other lines.
    scheduleDelayedItemsLayout();
}

void ReportView::scrollTo(const QModelIndex &index, ScrollHint hint)
{
    QTreeView::scrollTo(index, hint);
    // The base class takes all rows to be as high as the last ones, and may leave a row below the edge.
    if (hint == EnsureVisible && visualRect(index).bottom() > viewport()->rect().bottom())
        QTreeView::scrollTo(index, PositionAtBottom);
}

void ReportView::keyPressEvent(QKeyEvent *event)
{
    if (!(event->modifiers() & ~Qt::KeypadModifier)) {
        switch (event->key()) {
        case Qt::Key_Insert:
            emit insertRequested();
            return;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            emit editRequested();
            return;
        case Qt::Key_Delete:
            emit deleteRequested();
            return;
        case Qt::Key_Space:
            showWholeText();
            return;
        default:
            break;
        }
    }
    QTreeView::keyPressEvent(event);
}

void ReportView::mousePressEvent(QMouseEvent *event)
{
    constexpr auto all = Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier;
    if (event->button() == Qt::LeftButton && (event->modifiers() & all) == all) {
        if (const QModelIndex row = indexAt(event->pos()); row.isValid())
            emit identifierRequested(row);
        return;
    }
    // Beside the rows nothing is selected instead: the selected row is what the commands work on.
    if (indexAt(event->pos()).isValid())
        QTreeView::mousePressEvent(event);
}

void ReportView::mouseDoubleClickEvent(QMouseEvent *event)
{
    QTreeView::mouseDoubleClickEvent(event);
    const QModelIndex row = indexAt(event->pos());
    // Beside a row's cells stands what opens and closes it.
    if (event->button() == Qt::LeftButton && row.isValid() && visualRect(row).contains(event->pos()))
        emit editRequested();
}

void ReportView::contextMenuEvent(QContextMenuEvent *event)
{
    QPoint place = event->globalPos();
    if (event->reason() == QContextMenuEvent::Keyboard) {
        const QRect row = visualRect(currentIndex()) & viewport()->rect();
        place = viewport()->mapToGlobal(row.isEmpty() ? QPoint() : row.bottomLeft());
    }
    emit menuRequested(place);
    event->accept();
}

void ReportView::resizeEvent(QResizeEvent *event)
{
    QTreeView::resizeEvent(event);
    if (event->size().width() != event->oldSize().width())
        layOutColumns();
}

void ReportView::paintEvent(QPaintEvent *event)
{
    QTreeView::paintEvent(event);
    const int rows = model() ? model()->rowCount() : 0;
    if (!m_unread && (m_placeholder.isEmpty() || rows > 0))
        return;
    QRect free = viewport()->rect();
    if (rows > 0)
        free.setTop(visualRect(model()->index(rows - 1, 0)).bottom());
    QPainter painter(viewport());
    painter.setPen(m_unread ? unreadColour : palette().color(QPalette::PlaceholderText));
    painter.drawText(free, Qt::AlignCenter | Qt::TextWordWrap, m_unread ? unreadText : m_placeholder);
}

// The base class draws a selected row's arrow in the colour of the others, which the selection hides.
void ReportView::drawBranches(QPainter *painter, const QRect &rect, const QModelIndex &index) const
{
    if (!hasFocus() || !selectionModel()->isSelected(index) || !model()->hasChildren(index)) {
        QTreeView::drawBranches(painter, rect, index);
        return;
    }
    QStyleOption arrow;
    arrow.initFrom(this);
    arrow.rect = QRect(rect.right() - indentation() + 1, rect.top(), indentation(), rect.height());
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        arrow.palette.setColor(role, palette().color(QPalette::HighlightedText));
    style()->drawPrimitive(isExpanded(index) ? QStyle::PE_IndicatorArrowDown : QStyle::PE_IndicatorArrowRight,
                           &arrow, painter, this);
}

void ReportView::drawRow(QPainter *painter, const QStyleOptionViewItem &option,
                         const QModelIndex &index) const
{
    QStyleOptionViewItem row = option;
    row.palette = rowPalette();
    QTreeView::drawRow(painter, row, index);
    if (index.parent().isValid())
        return;
    painter->setPen(palette().color(QPalette::Button));
    painter->drawLine(option.rect.topLeft(), option.rect.topRight());
}

QPalette ReportView::rowPalette() const
{
    QPalette colours = palette();
    if (!hasFocus()) {
        const QColor full = colours.color(QPalette::Highlight);
        const QColor paper = colours.color(QPalette::Base);
        const auto mix = [](int ink, int ground) { return (ink + 3 * ground) / 4; };
        colours.setColor(QPalette::Highlight,
                         QColor(mix(full.red(), paper.red()), mix(full.green(), paper.green()),
                                mix(full.blue(), paper.blue())));
        colours.setColor(QPalette::HighlightedText, colours.color(QPalette::Text));
    }
    return colours;
}

void ReportView::showWholeText()
{
    const QModelIndex text = currentIndex().siblingAtColumn(m_textColumn);
    if (!text.isValid())
        return;
    scrollTo(text);
    const QRect row = visualRect(text);
    QString tip = text.data(Qt::ToolTipRole).toString();
    if (tip.isEmpty())
        tip = text.data().toString();
    QToolTip::showText(viewport()->mapToGlobal(row.bottomLeft()), wholeTextTip(tip), this);
}

QString wholeTextTip(const QString &text)
{
    if (text.trimmed().isEmpty())
        return {};
    const QString shown =
        text.size() > tipLength ? text.left(tipLength) + QStringLiteral(" … (il testo continua)") : text;
    return QStringLiteral("<p>%1</p>").arg(shown.toHtmlEscaped().replace(u'\n', QStringLiteral("<br>")));
}

} // namespace clivara
