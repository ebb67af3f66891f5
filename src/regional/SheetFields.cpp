// SPDX-License-Identifier: Apache-2.0
#include "regional/SheetFields.h"

#include "controls/ChoiceBox.h"
#include "controls/DateCheck.h"
#include "controls/MaskedDateEdit.h"
#include "controls/MyDateControl.h"
#include "controls/NumericEdit.h"
#include "values/JetValues.h"

#include <QFocusEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QTimer>
#include <algorithm>

namespace clivara {

namespace {

constexpr int spacing = 8;
constexpr int captionCharacters = 38; // a longer caption takes two lines
constexpr int headingRows = 2; // that the frame of a group takes, when the columns are balanced

QString controlName(const SheetField &field)
{
    switch (field.kind) {
    case SheetFieldKind::List:
        return QStringLiteral("cmb") + field.name;
    case SheetFieldKind::Text:
        return QStringLiteral("txt") + field.name;
    case SheetFieldKind::Number:
        return QStringLiteral("me_") + field.name;
    case SheetFieldKind::Date:
        return QStringLiteral("dt") + field.name;
    case SheetFieldKind::Total:
    case SheetFieldKind::Band:
    case SheetFieldKind::Kept:
    case SheetFieldKind::Copy:
    case SheetFieldKind::Mark:
        break;
    }
    return QStringLiteral("lbl") + field.name;
}

const MaskedDateEdit *dateEdit(const QWidget *control)
{
    return control->findChild<const MaskedDateEdit *>(QStringLiteral("dtEdit"));
}

// Selects the whole text of a field that the mouse has entered; the click itself first sets its cursor. The keyboard
// selects it anyway.
void Seleziona_Testo(QLineEdit *edit)
{
    QTimer::singleShot(0, edit, [edit] {
        if (edit->hasFocus())
            edit->selectAll();
    });
}

// "99.9" for the pattern "00.0": the highest number of a field.
QString highestNumber(const SheetField &field)
{
    return QString(field.pattern).replace(u'0', u'9').replace(u',', u'.');
}

} // namespace

SheetFields::SheetFields(const SheetLayout &layout, const Clock &clock, QWidget *parent)
    : QWidget(parent)
    , m_layout(layout)
    , m_clock(clock)
    , m_controls(layout.fields.size(), nullptr)
    , m_shown(layout)
{
    connect(this, &SheetFields::edited, this, &SheetFields::showOrigins);
    auto *const grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, spacing, 0);
    grid->setHorizontalSpacing(2 * spacing);
    grid->setVerticalSpacing(spacing);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
    auto *const left = new QVBoxLayout, *const right = new QVBoxLayout;
    grid->addLayout(left, 0, 0);
    grid->addLayout(right, 0, 1);

    const auto rowsOf = [&](const QString &group) {
        return headingRows
               + std::count_if(layout.fields.begin(), layout.fields.end(), [&](const SheetField &field) {
                     return field.group == group && isShown(field.kind);
                 });
    };
    qsizetype all = 0, placed = 0;
    for (const QString &group : layout.groups.mid(0, layout.groups.size() - 1))
        all += rowsOf(group);
    for (const QString &group : layout.groups) {
        auto *const box = new QGroupBox(group, this);
        addGroup(group, box);
        if (group == layout.groups.last()) {
            grid->addWidget(box, 1, 0, 1, 2);
        } else {
            // A group goes where more of it is in the column's half.
            (2 * placed + rowsOf(group) <= all ? left : right)->addWidget(box);
            placed += rowsOf(group);
        }
    }
    for (QVBoxLayout *const column : {left, right}) {
        column->setSpacing(spacing);
        column->addStretch(1);
    }
}

void SheetFields::addGroup(const QString &group, QWidget *box)
{
    auto *const grid = new QGridLayout(box);
    grid->setHorizontalSpacing(spacing);
    grid->setVerticalSpacing(spacing / 2);
    grid->setColumnStretch(1, 1);
    int row = 0;
    for (int i = 0; i < m_layout.fields.size(); ++i) {
        if (m_layout.fields[i].group == group && isShown(m_layout.fields[i].kind))
            addField(i, grid, row++);
    }
}

void SheetFields::addField(int index, QGridLayout *grid, int row)
{
    const SheetField &field = m_layout.fields[index];
    QWidget *const control = makeControl(index);
    control->setObjectName(controlName(field));
    control->setAccessibleName(field.caption);
    m_controls[index] = control;
    auto *const caption = new QLabel(field.caption, this);
    caption->setWordWrap(true);
    caption->setMinimumWidth(fontMetrics().averageCharWidth() * captionCharacters);
    caption->setBuddy(control);
    grid->addWidget(caption, row, 0);
    const bool isWide = field.kind == SheetFieldKind::List || field.kind == SheetFieldKind::Text;
    grid->addWidget(control, row, 1, isWide ? Qt::Alignment() : Qt::AlignLeft | Qt::AlignVCenter);
}

QWidget *SheetFields::makeControl(int index)
{
    const SheetField &field = m_layout.fields[index];
    switch (field.kind) {
    case SheetFieldKind::List: {
        auto *const list = new ChoiceBox(this);
        for (const SheetEntry &entry : field.entries)
            list->addItem(entry.text);
        list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        list->setMinimumContentsLength(14);
        connect(list, &QComboBox::currentIndexChanged, this, &SheetFields::refreshTotals);
        return list;
    }
    case SheetFieldKind::Text: {
        auto *const edit = new QLineEdit(this);
        edit->setMaxLength(field.width);
        edit->installEventFilter(this);
        connect(edit, &QLineEdit::textEdited, this, &SheetFields::edited);
        return edit;
    }
    case SheetFieldKind::Number: {
        auto *const edit = new NumericEdit(this);
        edit->setToolTip(QStringLiteral("Al massimo %1").arg(highestNumber(field)));
        edit->installEventFilter(this);
        connect(edit, &QLineEdit::textEdited, this, &SheetFields::edited);
        return edit;
    }
    case SheetFieldKind::Date: {
        auto *const date = new MyDateControl(this);
        date->setClock(m_clock);
        connect(date, &MyDateControl::changed, this, [this] {
            if (!m_showing)
                emit edited();
        });
        return date;
    }
    case SheetFieldKind::Total:
    case SheetFieldKind::Band:
    case SheetFieldKind::Kept:
    case SheetFieldKind::Copy:
    case SheetFieldKind::Mark:
        break;
    }
    auto *const label = new QLabel(this);
    QFont bold = label->font();
    bold.setBold(true);
    label->setFont(bold);
    return label;
}

void SheetFields::showData(const SheetData &sheet)
{
    m_showing = true;
    m_shown = sheet;
    for (int i = 0; i < m_controls.size(); ++i) {
        QWidget *const control = m_controls[i];
        const QString &value = sheet.value(i);
        switch (m_layout.fields[i].kind) {
        case SheetFieldKind::List:
            static_cast<ChoiceBox *>(control)->showIndex(value.toInt());
            break;
        case SheetFieldKind::Text:
            static_cast<QLineEdit *>(control)->setText(value);
            break;
        case SheetFieldKind::Number:
            static_cast<NumericEdit *>(control)->setText(value);
            break;
        case SheetFieldKind::Date: {
            auto *const date = static_cast<MyDateControl *>(control);
            if (value.isEmpty())
                date->SetEmptyValue();
            else
                date->SetTextValue(value);
            break;
        }
        case SheetFieldKind::Total:
        case SheetFieldKind::Band:
        case SheetFieldKind::Kept:
        case SheetFieldKind::Copy:
        case SheetFieldKind::Mark:
            break;
        }
    }
    m_showing = false;
    refreshTotals();
}

QString SheetFields::text(int field) const
{
    const QWidget *const control = m_controls[field];
    switch (m_layout.fields[field].kind) {
    case SheetFieldKind::List:
        return QString::number(std::max(0, static_cast<const ChoiceBox *>(control)->currentIndex()));
    case SheetFieldKind::Text:
    case SheetFieldKind::Number:
        return static_cast<const QLineEdit *>(control)->text();
    case SheetFieldKind::Date: {
        const QString typed = dateEdit(control)->dateText();
        const auto day = calendarDay(typed);
        return day ? jet::slashedDate(*day) : typed;
    }
    case SheetFieldKind::Total:
    case SheetFieldKind::Band:
    case SheetFieldKind::Kept:
    case SheetFieldKind::Copy:
    case SheetFieldKind::Mark:
        break;
    }
    return m_shown.value(field);
}

std::optional<QString> SheetFields::fitted(int field) const
{
    const auto *const number = qobject_cast<const NumericEdit *>(m_controls[field]);
    return number && number->isRefused() ? std::nullopt : fittedValue(m_layout.fields[field], text(field));
}

QStringList SheetFields::texts() const
{
    QStringList texts;
    for (int i = 0; i < m_controls.size(); ++i)
        texts << text(i);
    return texts;
}

SheetData SheetFields::entered() const
{
    SheetData sheet(m_layout);
    for (int i = 0; i < m_controls.size(); ++i) {
        if (const auto value = fitted(i))
            sheet.setValue(i, *value);
    }
    AggiornaTotali(sheet);
    return sheet;
}

std::optional<SheetFields::Misfit> SheetFields::misfit() const
{
    for (int i = 0; i < m_controls.size(); ++i) {
        const SheetField &field = m_layout.fields[i];
        if (!m_controls[i] || fitted(i))
            continue;
        if (const auto *const number = qobject_cast<const NumericEdit *>(m_controls[i]);
            number && number->isRefused())
            return Misfit{m_controls[i], QStringLiteral("%1: %2.").arg(field.caption, number->refusal())};
        return Misfit{m_controls[i],
                      field.kind == SheetFieldKind::Date
                          ? QStringLiteral("%1: la data non è valida.").arg(field.caption)
                          : QStringLiteral("%1: il numero non entra nel campo (al massimo %2).")
                                .arg(field.caption, highestNumber(field))};
    }
    return std::nullopt;
}

void SheetFields::refreshTotals()
{
    if (m_showing)
        return;
    const SheetData sheet = entered();
    const int open = unassessedItems(sheet);
    for (int i = 0; i < m_controls.size(); ++i) {
        const SheetFieldKind kind = m_layout.fields[i].kind;
        if (kind == SheetFieldKind::Total || kind == SheetFieldKind::Band) {
            QString shown = shownValue(sheet, i);
            if (kind == SheetFieldKind::Band && open > 0)
                shown += open == 1 ? QStringLiteral(" (1 voce non valutata)")
                                   : QStringLiteral(" (%1 voci non valutate)").arg(open);
            static_cast<QLabel *>(m_controls[i])->setText(shown);
        }
    }
    emit edited();
}

void SheetFields::setOrigins(const QHash<int, QString> &origins)
{
    m_origins = origins;
    m_proposed = texts();
    showOrigins();
}

void SheetFields::showOrigins()
{
    for (int i = 0; i < m_controls.size(); ++i) {
        if (!m_controls[i])
            continue;
        const auto *const number = qobject_cast<const NumericEdit *>(m_controls[i]);
        const QString origin = text(i) == m_proposed.value(i) ? m_origins.value(i) : QString();
        const QString usual =
            number ? QStringLiteral("Al massimo %1").arg(highestNumber(m_layout.fields[i])) : QString();
        m_controls[i]->setToolTip(origin.isEmpty() ? usual : origin);
        if (!number || !number->isRefused()) // else it says itself what is wrong
            m_controls[i]->setAccessibleDescription(origin);
    }
}

bool SheetFields::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn
        && static_cast<QFocusEvent *>(event)->reason() == Qt::MouseFocusReason)
        Seleziona_Testo(static_cast<QLineEdit *>(watched));
    return QWidget::eventFilter(watched, event);
}

void SheetFields::focusFirst()
{
    for (QWidget *const control : m_controls) {
        if (control) {
            control->setFocus(Qt::TabFocusReason);
            return;
        }
    }
}

} // namespace clivara
