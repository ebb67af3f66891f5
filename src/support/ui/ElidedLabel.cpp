// SPDX-License-Identifier: Apache-2.0
#include "support/ui/ElidedLabel.h"

#include <QPainter>
#include <QResizeEvent>

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

void ElidedLabel::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    setToolTip(fontMetrics().horizontalAdvance(text()) > contentsRect().width() ? text() : QString());
}

} // namespace clivara
