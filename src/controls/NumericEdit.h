// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QLineEdit>

namespace clivara {

// A field for a number: digits, one decimal point and a minus at the front. A typed comma becomes a point at
// once, and the field's own unit behind the number is left out. Whatever else is typed or pasted ("140/90",
// "1.234,5") stays as it is: keys that were dropped would leave another number than the one that was meant.
// Such a text is marked by a sign, a red frame and the accessible description, and its number() is 0. What
// the program itself sets with setText() is shown as it is, and marked as well when it is not all of it a
// number.
class NumericEdit : public QLineEdit {
    Q_OBJECT

public:
    explicit NumericEdit(QWidget *parent = nullptr);

    // "mg/dl"; without one every unit behind a number makes the text no number.
    void setUnit(const QString &unit) { m_unit = unit; }
    const QString &unit() const { return m_unit; }

    // Shows any text. (QLineEdit's own setText would judge it like a typed one.)
    void setText(const QString &text);
    // 0 when the text is no number, or there is none. Of a text that the program set, and nobody has changed
    // since, the number that it begins with.
    double number() const;
    // True when somebody has written something that is no number; whoever computes or saves says so and
    // stops.
    bool isRefused() const;
    // For the doctor: "«140/90» non è un numero".
    QString refusal() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    class Filter;
    void judge(const QString &text);

    Filter *m_filter;
    QString m_unit;
    bool m_isSet = true; // by the program, and unchanged since
    bool m_isMarked = false;
};

} // namespace clivara
