// SPDX-License-Identifier: Apache-2.0
#include "controls/MyDateControl.h"

#include "controls/DatePicker.h"
#include "controls/MaskedDateEdit.h"
#include "support/Clock.h"
#include "values/JetValues.h"

#include <QHBoxLayout>
#include <QKeyEvent>

namespace clivara {

namespace {

const auto emptyMask = QStringLiteral("__/__/____");

QDate zeroDay()
{
    return jet::zeroDate().date();
}

std::optional<QDate> dayFromText(const QString &text)
{
    const auto date = jet::dateFromText(text);
    return date ? std::optional(date->date()) : std::nullopt;
}

} // namespace

MyDateControl::MyDateControl(QWidget *parent)
    : QWidget(parent)
    , m_edit(new MaskedDateEdit(this))
    , m_picker(new DatePicker(this))
{
    m_edit->setObjectName(QStringLiteral("dtEdit"));
    m_picker->setObjectName(QStringLiteral("dtPick"));
    m_picker->setDate(today());
    m_picker->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    setFocusProxy(m_edit);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAutoFillBackground(true);
    setBackColor(Qt::white);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_edit);
    layout->addWidget(m_picker);

    m_edit->installEventFilter(this);
    connect(m_edit, &QLineEdit::textChanged, this, &MyDateControl::textChanged);
    connect(m_edit, &MaskedDateEdit::committed, this, &MyDateControl::commit);
    connect(m_picker, &DatePicker::aboutToOpen, this, &MyDateControl::prepareCalendar);
    connect(m_picker, &DatePicker::dismissed, this, [this] { showDate(m_picker->date()); });
    connect(m_picker, &DatePicker::picked, this, [this](QDate date) {
        setPicker(date);
        showDate(date);
    });
}

void MyDateControl::setClock(const Clock &clock)
{
    m_clock = &clock;
    m_picker->setDate(today());
}

QDate MyDateControl::Value() const
{
    return dayFromText(m_edit->dateText()).value_or(zeroDay());
}

bool MyDateControl::isEmpty() const
{
    return m_edit->isEmptyDate();
}

QString MyDateControl::typedText() const
{
    return m_edit->displayText();
}

void MyDateControl::setValue(QDate date)
{
    SetTextValue(jet::slashedDate(date));
}

void MyDateControl::setBackColor(const QColor &colour)
{
    if (colour == m_backColor)
        return;
    m_backColor = colour;
    QPalette own = palette();
    own.setColor(QPalette::Window, colour);
    setPalette(own);
    QPalette edit = m_edit->palette();
    edit.setColor(QPalette::Base, colour);
    m_edit->setPalette(edit);
    emit backColorChanged();
}

void MyDateControl::SetTextValue(const QString &text)
{
    const auto date = dayFromText(text);
    if (!date) {
        SetEmptyValue();
    } else if (*date > zeroDay()) {
        showDate(*date);
        setPicker(*date);
    }
}

void MyDateControl::SetEmptyValue()
{
    setEditText({});
    setPicker(today());
}

QDate MyDateControl::today() const
{
    return m_clock ? m_clock->today() : QDate::currentDate();
}

void MyDateControl::commit()
{
    const auto date = dayFromText(m_edit->dateText());
    if (!date) {
        setPicker(today()); // what is typed stays
    } else if (*date > zeroDay()) {
        setPicker(*date);
        showDate(*date); // "1/2/24" is shown as the date that it was taken for
    }
}

void MyDateControl::prepareCalendar()
{
    m_edit->setFocus();
    if (m_edit->isEmptyDate())
        setPicker(today());
    else
        commit();
}

void MyDateControl::setEditText(const QString &text)
{
    if (m_edit->displayText() == (text.isEmpty() ? emptyMask : text))
        return;
    m_edit->setDateText(text);
    emit changed();
}

void MyDateControl::showDate(QDate date)
{
    setEditText(jet::slashedDate(date));
}

void MyDateControl::setPicker(QDate date)
{
    if (m_picker->date() == date)
        return;
    m_picker->setDate(date);
    emit changed();
}

bool MyDateControl::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_edit && event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        const bool altDown = key->key() == Qt::Key_Down && key->modifiers().testFlag(Qt::AltModifier);
        if (altDown || (key->key() == Qt::Key_F4 && key->modifiers() == Qt::NoModifier)) {
            m_picker->open();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

QString dateRequest(const QString &request, const MyDateControl &control)
{
    return control.isEmpty()
               ? request
               : request + QStringLiteral("\nQuella scritta, %1, è impossibile.").arg(control.typedText());
}

} // namespace clivara
