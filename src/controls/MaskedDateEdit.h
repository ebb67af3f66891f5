// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QLineEdit>

namespace clivara {

// A field for a date typed as dd/mm/yyyy over the mask "__/__/____", or with another separator. Whichever
// separator is typed (/ - . , or a blank) leads on to the next part. It does not judge what is typed.
class MaskedDateEdit : public QLineEdit {
    Q_OBJECT

public:
    explicit MaskedDateEdit(QWidget *parent = nullptr);

    // '-' makes the mask "__-__-____". Empties the field.
    void setSeparator(QChar separator);

    // What is typed, without the mask's blanks; days and months of one digit get their zero: "1/2/24" is
    // "01/02/24". Empty when nothing is typed.
    QString dateText() const;
    // An empty text shows the mask.
    void setDateText(const QString &text);
    bool isEmptyDate() const { return dateText().isEmpty(); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

signals:
    // The field was entered, and left: by the keyboard or the mouse, not for a menu, a message box or another
    // window.
    void entered();
    void left();
    // The field was left or Enter was pressed in it, whatever it holds.
    void committed();

protected:
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    QChar m_separator;
};

} // namespace clivara
