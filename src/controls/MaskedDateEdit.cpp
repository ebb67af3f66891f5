// SPDX-License-Identifier: Apache-2.0
#include "controls/MaskedDateEdit.h"

#include <QKeyEvent>
#include <QStyle>
#include <QStyleOptionFrame>

namespace clivara {

namespace {

// What people write between day, month and year.
bool isSeparator(const QKeyEvent &event)
{
    static const QString separators = QStringLiteral("/-., ");
    return event.text().size() == 1 && separators.contains(event.text())
           && !(event.modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier));
}

bool isByPerson(const QFocusEvent &event)
{
    return event.reason() != Qt::PopupFocusReason && event.reason() != Qt::ActiveWindowFocusReason;
}

} // namespace

MaskedDateEdit::MaskedDateEdit(QWidget *parent)
    : QLineEdit(parent)
{
    setSeparator(QLatin1Char('/'));
}

void MaskedDateEdit::setSeparator(QChar separator)
{
    m_separator = separator;
    setInputMask(QStringLiteral("99/99/9999;_").replace(u'/', separator));
}

QString MaskedDateEdit::dateText() const
{
    QStringList parts = text().split(m_separator);
    if (parts.join(QString()).trimmed().isEmpty())
        return {};
    for (int i = 0; i < 2 && i < parts.size(); ++i) {
        if (parts[i].size() == 1)
            parts[i].prepend(QLatin1Char('0'));
    }
    return parts.join(m_separator);
}

void MaskedDateEdit::setDateText(const QString &text)
{
    setText(text);
    setCursorPosition(0);
}

QSize MaskedDateEdit::sizeHint() const
{
    QStyleOptionFrame option;
    initStyleOption(&option);
    const QSize base = QLineEdit::sizeHint();
    const int text = fontMetrics().horizontalAdvance(QStringLiteral("88/88/8888"));
    const QSize whole = style()->sizeFromContents(
        QStyle::CT_LineEdit, &option, {text + fontMetrics().averageCharWidth() * 2, base.height()}, this);
    return {whole.width(), base.height()};
}

void MaskedDateEdit::focusInEvent(QFocusEvent *event)
{
    QLineEdit::focusInEvent(event);
    if (isByPerson(*event))
        emit entered();
}

void MaskedDateEdit::focusOutEvent(QFocusEvent *event)
{
    QLineEdit::focusOutEvent(event);
    // A menu, a message box or another window does not end the typing; nor does the form when it goes away.
    if (!isByPerson(*event) || !isVisible())
        return;
    emit committed();
    emit left();
}

void MaskedDateEdit::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        emit committed();
    if (isSeparator(*event)) {
        // Only the mask's own one leads on to the next part; another would be passed over, and the next
        // part's digits would go into this one.
        QKeyEvent own(event->type(), event->key(), event->modifiers(), QString(m_separator));
        QLineEdit::keyPressEvent(&own);
        return;
    }
    QLineEdit::keyPressEvent(event);
}

void MaskedDateEdit::mouseReleaseEvent(QMouseEvent *event)
{
    QLineEdit::mouseReleaseEvent(event);
    if (isEmptyDate())
        setCursorPosition(0);
}

} // namespace clivara
