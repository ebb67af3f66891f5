// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QPushButton>

namespace clivara {

// A field whose value is chosen in another window: shows the value from the left, elided at its end when
// there is no room, and opens that window when it is pressed, also by Enter. text() is the whole value.
class ChooserButton : public QPushButton {
    Q_OBJECT

public:
    explicit ChooserButton(QWidget *parent = nullptr);

    // A short text in bold before the value: its code.
    void setCode(const QString &code);
    // What stands there, quiet, while there is no value.
    void setPlaceholder(const QString &text);
    // The value; an ampersand is an ampersand.
    void setValue(const QString &value);
    QString value() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool event(QEvent *event) override;

private:
    QString m_code;
    QString m_placeholder;
};

} // namespace clivara
