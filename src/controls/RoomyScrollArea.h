// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QScrollArea>

namespace clivara {

// As large as the widget that it holds where there is room, and scrolling where there is none.
class RoomyScrollArea final : public QScrollArea {
public:
    explicit RoomyScrollArea(QWidget *parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};

} // namespace clivara
