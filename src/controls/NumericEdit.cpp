// SPDX-License-Identifier: Apache-2.0
#include "controls/NumericEdit.h"

#include "values/JetValues.h"

#include <QRegularExpression>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QValidator>
#include <algorithm>

namespace clivara {

namespace {

constexpr int longestNumber = 12; // characters that can be typed
constexpr int shownCharacters = 9; // the field's width

bool isNumber(const QString &text)
{
    static const QRegularExpression number(QStringLiteral("^-?[0-9]*\\.?[0-9]*$"));
    return text.size() <= longestNumber && number.match(text).hasMatch();
}

// The text without its unit: " 72,5 kg" is "72.5". A text with a second number in it stays as it is:
// "1.234,5" and "1e6" must not become another number.
QString withoutUnit(const QString &text)
{
    static const QRegularExpression unit(QStringLiteral("[^0-9.]*$"));
    QString number = text.trimmed();
    number.replace(QLatin1Char(','), QLatin1Char('.'));
    return number.remove(unit);
}

// True when `text` is what remains of `before` after one stretch of it was taken out.
bool isRemainder(const QString &text, const QString &before)
{
    if (text.size() >= before.size())
        return false;
    const auto front = std::mismatch(text.begin(), text.end(), before.begin()).first - text.begin();
    const auto back = std::mismatch(text.rbegin(), text.rend(), before.rbegin()).first - text.rbegin();
    return front + back >= text.size();
}

} // namespace

// Judges each change before it is shown. It knows the text before the change, because a text that the program
// set may be no number and must still be correctable.
class NumericEdit::Filter final : public QValidator {
public:
    explicit Filter(NumericEdit *edit)
        : QValidator(edit)
        , m_edit(edit)
    {
    }

    State validate(QString &input, int &position) const override
    {
        if (open || input == m_edit->m_shown)
            return Acceptable;
        QString number = input;
        number.replace(QLatin1Char(','), QLatin1Char('.'));
        if (isNumber(number)) {
            input = number;
            return Acceptable;
        }
        const bool pasted = input.size() > m_edit->m_shown.size() + 1;
        number = pasted ? withoutUnit(input) : number.trimmed();
        if (isNumber(number) && !(pasted && number.isEmpty())) {
            input = number;
            position = int(input.size());
            return Acceptable;
        }
        return isRemainder(input, m_edit->m_shown) ? Acceptable : Invalid;
    }

    bool open = false; // the program sets the text

private:
    NumericEdit *m_edit;
};

NumericEdit::NumericEdit(QWidget *parent)
    : QLineEdit(parent)
    , m_filter(new Filter(this))
{
    setAlignment(Qt::AlignRight);
    setInputMethodHints(Qt::ImhFormattedNumbersOnly);
    setValidator(m_filter);
    connect(this, &QLineEdit::textChanged, this, [this](const QString &text) { m_shown = text; });
}

void NumericEdit::setText(const QString &text)
{
    m_filter->open = true;
    QLineEdit::setText(text);
    m_filter->open = false;
}

double NumericEdit::number() const
{
    return jet::leadingNumber(text());
}

QSize NumericEdit::sizeHint() const
{
    QStyleOptionFrame option;
    initStyleOption(&option);
    const QSize base = QLineEdit::sizeHint();
    const int text = fontMetrics().horizontalAdvance(QString(shownCharacters, QLatin1Char('8')));
    return {style()->sizeFromContents(QStyle::CT_LineEdit, &option, {text, base.height()}, this).width(),
            base.height()};
}

} // namespace clivara
