// SPDX-License-Identifier: Apache-2.0
#include "controls/ChooserButton.h"

#include <QKeyEvent>
#include <QStyleOptionButton>
#include <QStylePainter>

namespace clivara {

namespace {

constexpr int gap = 8;
const auto more = QStringLiteral("…");

} // namespace

ChooserButton::ChooserButton(QWidget *parent)
    : QPushButton(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAutoDefault(false);
}

void ChooserButton::setCode(const QString &code)
{
    m_code = code;
    setAccessibleDescription(code);
    update();
}

void ChooserButton::setPlaceholder(const QString &text)
{
    m_placeholder = text;
    update();
}

void ChooserButton::setValue(const QString &value)
{
    setText(QString(value).replace(u'&', QStringLiteral("&&")));
}

QString ChooserButton::value() const
{
    return text().replace(QStringLiteral("&&"), QStringLiteral("&"));
}

QSize ChooserButton::sizeHint() const
{
    return {fontMetrics().averageCharWidth() * 40, QPushButton::sizeHint().height()};
}

QSize ChooserButton::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * 16, QPushButton::sizeHint().height()};
}

void ChooserButton::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    option.text.clear();
    painter.drawControl(QStyle::CE_PushButton, option);

    QRect area = rect().adjusted(gap, 0, -gap, 0);
    const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
    const auto colour = [&](QPalette::ColorRole role) { return palette().color(group, role); };
    painter.setPen(colour(QPalette::PlaceholderText));
    painter.drawText(area, Qt::AlignRight | Qt::AlignVCenter, more);
    area.adjust(0, 0, -fontMetrics().horizontalAdvance(more) - gap, 0);

    const QString shown = value();
    if (shown.isEmpty() && m_code.isEmpty()) {
        painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter,
                         fontMetrics().elidedText(m_placeholder, Qt::ElideRight, area.width()));
        return;
    }
    painter.setPen(colour(QPalette::ButtonText));
    if (!m_code.isEmpty()) {
        QFont bold = font();
        bold.setBold(true);
        painter.setFont(bold);
        painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter, m_code);
        area.adjust(QFontMetrics(bold).horizontalAdvance(m_code) + gap, 0, 0, 0);
        painter.setFont(font());
    }
    painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(shown, Qt::ElideRight, area.width()));
}

void ChooserButton::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QPushButton::keyPressEvent(event);
}

bool ChooserButton::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip)
        setToolTip(fontMetrics().horizontalAdvance(value()) > width() - 4 * gap ? value() : QString());
    return QPushButton::event(event);
}

} // namespace clivara
