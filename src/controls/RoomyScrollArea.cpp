// SPDX-License-Identifier: Apache-2.0
#include "controls/RoomyScrollArea.h"

#include <QEvent>
#include <QScrollBar>

namespace clivara {

namespace {

constexpr int leastHeight = 64; // where the screen has too little room

} // namespace

RoomyScrollArea::RoomyScrollArea(QWidget *parent)
    : QScrollArea(parent)
{
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

QSize RoomyScrollArea::sizeHint() const
{
    return widget()->sizeHint();
}

QSize RoomyScrollArea::minimumSizeHint() const
{
    return {widget()->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width(),
            std::min(leastHeight, widget()->sizeHint().height())};
}

int RoomyScrollArea::heightForWidth(int width) const
{
    return widget()->hasHeightForWidth() ? widget()->heightForWidth(width) : widget()->sizeHint().height();
}

bool RoomyScrollArea::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == widget() && event->type() == QEvent::LayoutRequest)
        updateGeometry(); // the outer layout knows nothing of what is inside
    return QScrollArea::eventFilter(watched, event);
}

} // namespace clivara
