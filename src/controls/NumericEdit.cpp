// SPDX-License-Identifier: Apache-2.0
#include "controls/NumericEdit.h"

#include "values/JetValues.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QPainter>
#include <QRegularExpression>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QToolTip>
#include <QValidator>

namespace clivara {

namespace {

constexpr int longestNumber = 12; // characters
constexpr int shownCharacters = 9; // the field's width
constexpr QColor markColour(192, 0, 0);
constexpr int markWidth = 2; // of the frame
constexpr int signGap = 4; // between the frame, the sign and the text

bool isNumber(const QString &text)
{
    static const QRegularExpression number(QStringLiteral("^-?([0-9]+\\.?[0-9]*|\\.[0-9]+)$"));
    return text.size() <= longestNumber && number.match(text).hasMatch();
}

// The text as the field shows it: of a number the comma is a point, and the unit behind it is left out.
// Blanks stay while somebody is typing: "1 4" must not become 14.
QString asShown(const QString &text, const QString &unit)
{
    QString number = text.trimmed();
    const bool hasUnit = !unit.isEmpty() && number.endsWith(unit, Qt::CaseInsensitive);
    if (hasUnit)
        number = number.chopped(unit.size()).trimmed();
    const bool hasComma = number.contains(u',');
    number.replace(u',', u'.');
    return (hasUnit || hasComma) && isNumber(number) ? number : text;
}

} // namespace

// Writes a number as the field shows it, before it is seen. Refuses nothing.
class NumericEdit::Filter final : public QValidator {
public:
    explicit Filter(NumericEdit *edit)
        : QValidator(edit)
        , m_edit(edit)
    {
    }

    State validate(QString &input, int &position) const override
    {
        if (open)
            return Acceptable;
        const QString shown = asShown(input, m_edit->m_unit);
        if (shown.size() != input.size()) // else a comma was replaced, and the cursor stays behind it
            position = int(shown.size());
        input = shown;
        return Acceptable;
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
    // Comes before every other receiver of the signal, who may ask for the number.
    connect(this, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_isSet = m_filter->open;
        judge(text);
    });
}

void NumericEdit::setText(const QString &text)
{
    m_filter->open = true;
    QLineEdit::setText(text);
    m_filter->open = false;
    m_isSet = true; // also when it is the text that was there
    judge(text);
}

double NumericEdit::number() const
{
    return isRefused() ? 0 : jet::leadingNumber(text());
}

bool NumericEdit::isRefused() const
{
    return m_isMarked && !m_isSet;
}

QString NumericEdit::refusal() const
{
    return QStringLiteral("«%1» non è un numero").arg(text().trimmed());
}

void NumericEdit::judge(const QString &text)
{
    const bool isMarked = !text.trimmed().isEmpty() && !isNumber(text.trimmed());
    const QString description = isMarked ? QStringLiteral("Attenzione: ") + refusal() : QString();
    if (isMarked == m_isMarked && description == accessibleDescription())
        return;
    m_isMarked = isMarked;
    const int sign = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    setTextMargins(isMarked ? sign + signGap : 0, 0, 0, 0);
    setAccessibleDescription(description);
    QAccessibleEvent changed(this, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&changed);
    update();
}

bool NumericEdit::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip || !m_isMarked)
        return QLineEdit::event(event);
    QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), refusal(), this);
    return true;
}

void NumericEdit::paintEvent(QPaintEvent *event)
{
    QLineEdit::paintEvent(event);
    if (!m_isMarked)
        return;
    QPainter painter(this);
    painter.setPen(QPen(markColour, markWidth));
    painter.drawRect(
        QRectF(rect()).adjusted(markWidth / 2.0, markWidth / 2.0, -markWidth / 2.0, -markWidth / 2.0));
    const int sign = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    const QIcon warning = style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, this);
    warning.paint(&painter, signGap, (height() - sign) / 2, sign, sign);
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
