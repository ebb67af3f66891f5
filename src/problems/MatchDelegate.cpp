// SPDX-License-Identifier: Apache-2.0
#include "problems/MatchDelegate.h"

#include "controls/ReportDelegate.h"

#include <QApplication>
#include <QPainter>
#include <QTextLayout>

namespace clivara {

namespace {

constexpr int verticalPadding = 6;

// The letter without its accent, in lower case: one for one, so that positions stay.
QChar folded(QChar c)
{
    const QString parts = c.decomposition();
    return (parts.isEmpty() ? c : parts[0]).toLower();
}

QString folded(const QString &text)
{
    QString plain = text;
    for (QChar &c : plain)
        c = folded(c);
    return plain;
}

QStringList wordsOf(const QString &text)
{
    QString words = folded(text);
    for (QChar &c : words) {
        if (!c.isLetterOrNumber() && c != u'.')
            c = u' ';
    }
    return words.split(u' ', Qt::SkipEmptyParts);
}

bool startsWord(const QString &text, qsizetype position)
{
    return position == 0 || !text[position - 1].isLetterOrNumber();
}

} // namespace

QList<Match> wordMatches(const QString &text, const QString &searched)
{
    const QString plain = folded(text);
    QStringList words = wordsOf(searched);
    // The longest first: "dia diabete" marks "diabete".
    std::sort(words.begin(), words.end(),
              [](const QString &a, const QString &b) { return a.size() > b.size(); });
    QList<Match> matches;
    for (qsizetype at = 0; at < plain.size(); ++at) {
        if (!startsWord(plain, at))
            continue;
        const auto word = std::find_if(words.begin(), words.end(), [&](const QString &candidate) {
            return QStringView(plain).mid(at).startsWith(candidate);
        });
        if (word != words.end()) {
            matches.append({at, word->size()});
            at += word->size() - 1;
        }
    }
    return matches;
}

void MatchDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const
{
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    const QWidget *const widget = item.widget;
    const QStyle *const style = widget ? widget->style() : QApplication::style();
    const QRect area =
        item.rect.adjusted(ReportDelegate::horizontalPadding, 0, -ReportDelegate::horizontalPadding, 0);
    // Bold letters are wider, so that the text may be elided a little late; the clipping sees to the rest.
    const QString text = item.fontMetrics.elidedText(item.text, Qt::ElideRight, area.width());
    item.text.clear();
    style->drawControl(QStyle::CE_ItemViewItem, &item, painter, widget);

    QList<QTextLayout::FormatRange> formats;
    for (const Match &match : wordMatches(text, m_searched)) {
        QTextLayout::FormatRange range{int(match.position), int(match.length), {}};
        range.format.setFontWeight(QFont::Bold);
        formats.append(range);
    }
    QTextLayout layout(text, item.font);
    layout.setFormats(formats);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setNumColumns(int(text.size()));
    layout.endLayout();

    const auto group = item.state & QStyle::State_Active ? QPalette::Active : QPalette::Inactive;
    const auto role = item.state & QStyle::State_Selected ? QPalette::HighlightedText : QPalette::Text;
    painter->save();
    painter->setClipRect(area);
    painter->setPen(item.palette.color(group, role));
    layout.draw(painter, QPointF(area.left(), area.top() + (area.height() - line.height()) / 2));
    painter->restore();
}

QSize MatchDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    return QStyledItemDelegate::sizeHint(option, index) + QSize(0, verticalPadding);
}

} // namespace clivara
