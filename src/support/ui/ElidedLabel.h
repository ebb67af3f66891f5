// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QLabel>

namespace clivara {

// One line of text that gives way when there is no room: it is elided at its end, and the tool tip has all of
// it.
class ElidedLabel : public QLabel {
    Q_OBJECT

public:
    using QLabel::QLabel;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;
};

} // namespace clivara
