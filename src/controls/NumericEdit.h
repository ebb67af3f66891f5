// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QLineEdit>

namespace clivara {

// A field for a number: digits, one decimal point and a minus at the front can be typed; a typed comma
// becomes a point at once. Nothing else can be typed or pasted; a pasted number may have blanks around it and
// a unit after it, which are left out. What the program itself sets with setText() is shown as it is.
class NumericEdit : public QLineEdit {
    Q_OBJECT

public:
    explicit NumericEdit(QWidget *parent = nullptr);

    // Shows any text. (QLineEdit's own setText would judge it like a typed one.)
    void setText(const QString &text);
    // The number that the text begins with; 0 when it begins with none.
    double number() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

private:
    class Filter;
    Filter *m_filter;
    QString m_shown; // the text before the current change
};

} // namespace clivara
