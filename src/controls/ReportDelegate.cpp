// SPDX-License-Identifier: Apache-2.0
#include "controls/ReportDelegate.h"

#include "controls/ReportView.h"

#include <QApplication>
#include <QHelpEvent>
#include <QPainter>
#include <QTextLayout>
#include <QToolTip>

namespace clivara {

namespace {

ReportTone toneOf(const QModelIndex &index)
{
    return ReportTone(index.data(ToneRole).toInt());
}

// Above and below a cell's text, in pixels: what stands below a row is closer together.
int verticalPadding(const QModelIndex &index)
{
    return index.parent().isValid() ? 1 : 4;
}

// Between the colours of text and paper, still well readable.
QColor quietColour(const QPalette &palette)
{
    const QColor text = palette.color(QPalette::Text);
    const QColor paper = palette.color(QPalette::Base);
    const auto mix = [](int ink, int ground) { return (ink * 65 + ground * 35) / 100; };
    return QColor(mix(text.red(), paper.red()), mix(text.green(), paper.green()),
                  mix(text.blue(), paper.blue()));
}

// As much of a text as may stand in so many lines of that width: long texts are not laid out in full.
QString beginningOf(const QString &text, const QFontMetrics &metrics, int width, int lines)
{
    const int narrowest = std::max(metrics.averageCharWidth() / 3, 1);
    QString beginning = text.left((width / narrowest + 1) * (lines + 1));
    // One character for each line break, of whatever kind, so that positions in the text stay.
    return beginning.replace(u'\r', u' ').replace(u'\n', QChar::LineSeparator);
}

// Breaks the text into lines and gives their number, at most `most`; `complete` tells whether that is all of
// it.
int breakLines(QTextLayout &layout, int width, int most, bool &complete)
{
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    int lines = 0;
    layout.beginLayout();
    int end = 0;
    while (lines < most) {
        QTextLine line = layout.createLine();
        if (!line.isValid())
            break;
        line.setLineWidth(width);
        end = line.textStart() + line.textLength();
        ++lines;
    }
    complete = end >= layout.text().size();
    layout.endLayout();
    return std::max(lines, 1);
}

} // namespace

ReportDelegate::ReportDelegate(ReportView &view)
    : QStyledItemDelegate(&view)
    , m_view(view)
{
}

QFont ReportDelegate::fontOf(const QModelIndex &index) const
{
    QFont font = m_view.font();
    font.setBold(toneOf(index) == ReportTone::Strong);
    return font;
}

int ReportDelegate::textWidth(const QModelIndex &index) const
{
    int width = m_view.columnWidth(index.column()) - 2 * horizontalPadding;
    if (index.column() == 0) {
        int depth = m_view.rootIsDecorated() ? 1 : 0;
        for (QModelIndex parent = index.parent(); parent.isValid(); parent = parent.parent())
            ++depth;
        width -= depth * m_view.indentation();
    }
    return std::max(width, 1);
}

void ReportDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                           const QModelIndex &index) const
{
    QStyleOptionViewItem panel = option;
    panel.text.clear();
    m_view.style()->drawPrimitive(QStyle::PE_PanelItemViewItem, &panel, painter, &m_view);

    const bool selected = option.state & QStyle::State_Selected;
    const int vertical = verticalPadding(index);
    QRect area = option.rect.adjusted(horizontalPadding, vertical, -horizontalPadding, -vertical);
    painter->save();
    painter->setClipRect(option.rect);
    if (const auto icon = index.data(Qt::DecorationRole).value<QIcon>(); !icon.isNull()) {
        const QSize size = m_view.iconSize();
        const int line = QFontMetrics(m_view.font()).height();
        const QRect place({area.left(), area.top() + (line - size.height()) / 2}, size);
        icon.paint(painter, place, Qt::AlignCenter,
                   selected && m_view.hasFocus() ? QIcon::Selected : QIcon::Normal);
        area.setLeft(place.right() + 1 + horizontalPadding);
    }
    drawLines(*painter, area, index, selected);
    painter->restore();
}

void ReportDelegate::drawLines(QPainter &painter, const QRect &area, const QModelIndex &index,
                               bool selected) const
{
    if (area.width() <= 0)
        return;
    const QString text = index.data().toString();
    const QPalette palette = m_view.rowPalette();
    const QColor quiet = selected ? palette.color(QPalette::HighlightedText) : quietColour(palette);
    const QColor colour = selected                             ? palette.color(QPalette::HighlightedText)
                          : toneOf(index) == ReportTone::Quiet ? quiet
                                                               : palette.color(QPalette::Text);
    const QFont font = fontOf(index);
    const QFontMetrics metrics(font);
    painter.setFont(font);
    painter.setPen(colour);
    if (text.isEmpty()) {
        QFont slanted = font;
        slanted.setItalic(true);
        painter.setFont(slanted);
        painter.setPen(quiet);
        painter.drawText(
            area, Qt::AlignLeft | Qt::AlignTop,
            QFontMetrics(slanted).elidedText(index.data(HintRole).toString(), Qt::ElideRight, area.width()));
        return;
    }
    if (index.column() != m_view.textColumn()) {
        painter.drawText(area, Qt::AlignLeft | Qt::AlignTop,
                         metrics.elidedText(text, Qt::ElideRight, area.width()));
        return;
    }

    const QString shown = beginningOf(text, metrics, area.width(), m_view.textLines());
    QTextLayout layout(shown, font);
    QList<QTextLayout::FormatRange> formats;
    if (const int label = index.data(LabelRole).toInt(); label > 0) {
        QTextCharFormat format;
        format.setForeground(quiet);
        formats.append({0, label, format});
    }
    if (const QVariant value = index.data(ValueRole); value.isValid()) {
        QTextCharFormat format;
        format.setFontWeight(QFont::DemiBold);
        formats.append({value.toInt(), int(shown.size()) - value.toInt(), format});
    }
    layout.setFormats(formats);
    bool complete = false;
    const int lines = breakLines(layout, area.width(), m_view.textLines(), complete);
    for (int i = 0; i < lines; ++i) {
        const QTextLine line = layout.lineAt(i);
        const QPoint place(area.left(), area.top() + i * metrics.height());
        if (i + 1 < lines || complete) {
            line.draw(&painter, QPointF(place) - line.position());
            continue;
        }
        const QString rest = shown.mid(line.textStart()).simplified();
        painter.drawText(QRect(place, QSize(area.width(), metrics.height())), Qt::AlignLeft | Qt::AlignTop,
                         metrics.elidedText(rest + u'…', Qt::ElideRight, area.width()));
    }
}

QSize ReportDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &index) const
{
    const QFont font = fontOf(index);
    const QFontMetrics metrics(font);
    const QString text = index.data().toString();
    int lines = 1;
    if (index.column() == m_view.textColumn() && m_view.textLines() > 1) {
        const int width = textWidth(index);
        QTextLayout layout(beginningOf(text, metrics, width, m_view.textLines()), font);
        bool complete = false;
        lines = breakLines(layout, width, m_view.textLines(), complete);
    }
    return {metrics.horizontalAdvance(text.left(500)) + 2 * horizontalPadding,
            lines * metrics.height() + 2 * verticalPadding(index)};
}

bool ReportDelegate::helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &,
                               const QModelIndex &index)
{
    if (event->type() != QEvent::ToolTip)
        return false;
    const QString text = index.data().toString();
    bool whole = false;
    if (!text.isEmpty()) {
        const QFont font = fontOf(index);
        const QFontMetrics metrics(font);
        if (index.column() == m_view.textColumn()) {
            const int width = textWidth(index);
            QTextLayout layout(beginningOf(text, metrics, width, m_view.textLines()), font);
            breakLines(layout, width, m_view.textLines(), whole);
        } else {
            whole = metrics.horizontalAdvance(text) <= textWidth(index);
        }
    }
    QString tip = index.data(Qt::ToolTipRole).toString();
    if (tip.isEmpty() && !whole)
        tip = text;
    QToolTip::showText(event->globalPos(), wholeTextTip(tip), view);
    return true;
}

} // namespace clivara
