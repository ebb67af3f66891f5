// SPDX-License-Identifier: Apache-2.0
#include "controls/MemoEdit.h"

#include <QTextDocument>

namespace clivara {

namespace {

constexpr int usualLines = 6;
constexpr int fewestLines = 3;
constexpr int averageCharacters = 48;
constexpr qreal margin = 6;

} // namespace

MemoEdit::MemoEdit(QWidget *parent)
    : QPlainTextEdit(parent)
{
    setTabChangesFocus(true);
    document()->setDocumentMargin(margin);
    // On screens with a scale such as 125 % the viewport would cover the frame's right and lower edge.
    setViewportMargins(0, 0, 1, 1);
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
}

void MemoEdit::setStoredText(const QString &text)
{
    m_stored = text;
    setPlainText(text);
    document()->setModified(false);
}

QString MemoEdit::storedText() const
{
    if (!document()->isModified())
        return m_stored;
    // The raw text: the plain one would have made blanks of the non-breaking ones.
    QString text = document()->toRawText();
    text.replace(QChar::ParagraphSeparator, u'\n');
    text.replace(QChar::LineSeparator, u'\n');
    return text.replace(u'\n', QStringLiteral("\r\n"));
}

QSize MemoEdit::sizeForLines(int lines) const
{
    const int frame = 2 * frameWidth() + int(2 * margin);
    return {fontMetrics().averageCharWidth() * averageCharacters + frame,
            fontMetrics().lineSpacing() * lines + frame};
}

QSize MemoEdit::sizeHint() const
{
    return sizeForLines(usualLines);
}

QSize MemoEdit::minimumSizeHint() const
{
    return {sizeForLines(fewestLines).width() / 2, sizeForLines(fewestLines).height()};
}

} // namespace clivara
