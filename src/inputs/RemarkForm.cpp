// SPDX-License-Identifier: Apache-2.0
#include "inputs/RemarkForm.h"

#include <QEvent>
#include <QLabel>
#include <QLayout>
#include <QScreen>
#include <QStyle>

namespace clivara {

void setForeColour(QLabel *label, QColor colour)
{
    QPalette palette = label->palette();
    palette.setColor(QPalette::Active, QPalette::WindowText, colour);
    palette.setColor(QPalette::Inactive, QPalette::WindowText, colour);
    label->setPalette(palette);
}

void makeQuiet(QLabel *label)
{
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * 0.9);
    label->setFont(font);
    setForeColour(label, QColor(0x55, 0x55, 0x55));
}

void RemarkForm::showRemarks(QLabel *label, const QStringList &lines)
{
    QString text;
    for (const QString &line : lines)
        text += (text.isEmpty() ? QStringLiteral("⚠ ") : QStringLiteral("\n⚠ ")) + line;
    label->setVisible(!text.isEmpty());
    m_mayGrow = m_mayGrow || text != label->text();
    label->setText(text);
}

void RemarkForm::shrink()
{
    if (m_grownBy > 0)
        resize(width(), height() - std::exchange(m_grownBy, 0));
}

void RemarkForm::growForRemarks()
{
    const int frame = style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, this);
    const int needed = layout()->hasHeightForWidth() ? layout()->totalMinimumHeightForWidth(width())
                                                     : layout()->totalMinimumSize().height();
    if (const int wanted = std::min(needed, screen()->availableSize().height() - frame); wanted > height()) {
        const int before = height();
        resize(width(), wanted);
        m_grownBy += height() - before;
    }
}

bool RemarkForm::event(QEvent *event)
{
    const bool isHandled = SectionForm::event(event);
    if (event->type() == QEvent::Resize && event->spontaneous())
        m_mayGrow = false;
    if (m_mayGrow && isVisible() && (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Show))
        growForRemarks();
    return isHandled;
}

} // namespace clivara
