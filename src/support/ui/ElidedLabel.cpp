// SPDX-License-Identifier: Apache-2.0
#include "support/ui/ElidedLabel.h"

#include <QEvent>
#include <QPainter>

namespace clivara {

QSize ElidedLabel::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * 8, QLabel::minimumSizeHint().height()};
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    const QRect area = contentsRect();
    painter.drawText(area, int(alignment()), fontMetrics().elidedText(text(), Qt::ElideRight, area.width()));
}

bool ElidedLabel::event(QEvent *event)
{
    // Computed on request: text and width may both have changed.
    if (event->type() == QEvent::ToolTip) {
        const bool elided = fontMetrics().horizontalAdvance(text()) > contentsRect().width();
        setToolTip(elided ? text() : QString());
    }
    return QLabel::event(event);
}

} // namespace clivara
