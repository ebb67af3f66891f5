// SPDX-License-Identifier: Apache-2.0
#include "chart/VersionPane.h"

#include <QTextBlock>

namespace clivara {

namespace {

constexpr int mostLines = 9;
constexpr QRgb differentColour = 0xfffbe3a6;
constexpr QRgb currentColour = 0xfff5b84b;

} // namespace

VersionPane::VersionPane(QWidget *parent)
    : QPlainTextEdit(parent)
{
    setReadOnly(true);
    setTabChangesFocus(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void VersionPane::showVersion(const QString &text, const QList<Part> &differences)
{
    setPlainText(text);
    setPlaceholderText(QStringLiteral("(vuoto)"));
    m_differences = differences;
    mark(-1);
    updateGeometry();
}

void VersionPane::mark(qsizetype current)
{
    QList<QTextEdit::ExtraSelection> selections;
    for (qsizetype i = 0; i < m_differences.size(); ++i) {
        QTextEdit::ExtraSelection selection;
        selection.cursor = QTextCursor(document());
        selection.cursor.setPosition(int(m_differences[i].at));
        selection.cursor.setPosition(int(m_differences[i].at + m_differences[i].length),
                                     QTextCursor::KeepAnchor);
        selection.format.setBackground(QColor(i == current ? currentColour : differentColour));
        selection.format.setForeground(Qt::black);
        selection.format.setFontUnderline(true);
        selections.append(selection);
    }
    setExtraSelections(selections);
}

void VersionPane::showPart(qsizetype index)
{
    QTextCursor cursor(document());
    cursor.setPosition(int(m_differences[index].at));
    setTextCursor(cursor);
    ensureCursorVisible();
}

int VersionPane::heightForWidth(int width) const
{
    const int frame = 2 * (frameWidth() + int(document()->documentMargin()));
    const QFontMetrics metrics = fontMetrics();
    const int room = std::max(width - frame, metrics.averageCharWidth());
    int lines = 0;
    for (QTextBlock block = document()->begin(); block.isValid() && lines < mostLines; block = block.next()) {
        // As many signs as no room would hold decide it.
        const QString text = block.text().left(mostLines * room);
        const int height = metrics.boundingRect(0, 0, room, 0, Qt::TextWordWrap, text).height();
        lines += std::max(1, (height + metrics.lineSpacing() / 2) / metrics.lineSpacing());
    }
    return std::clamp(lines, 1, mostLines) * metrics.lineSpacing() + frame + 2;
}

QSize VersionPane::sizeHint() const
{
    const int width = fontMetrics().averageCharWidth() * 40;
    return {width, heightForWidth(width)};
}

QSize VersionPane::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * 16, fontMetrics().lineSpacing()};
}

} // namespace clivara
