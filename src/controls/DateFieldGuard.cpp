// SPDX-License-Identifier: Apache-2.0
#include "controls/DateFieldGuard.h"

#include "controls/DateCheck.h"
#include "controls/MaskedDateEdit.h"
#include "support/Clock.h"
#include "support/Prompts.h"
#include "values/JetValues.h"

#include <QTimer>

namespace clivara {

namespace {

void showAsTyped(MaskedDateEdit *edit, const QString &text)
{
    edit->setDateText(text);
    edit->setModified(true);
}

} // namespace

DateFieldGuard::DateFieldGuard(const Clock &clock, Prompts &prompts, std::function<bool()> mayLeave)
    : m_clock(clock)
    , m_prompts(prompts)
    , m_mayLeave(std::move(mayLeave))
{
}

void DateFieldGuard::watch(MaskedDateEdit *edit, Empty empty)
{
    connect(edit, &MaskedDateEdit::entered, this, [this, edit] { fill(edit); });
    connect(edit, &MaskedDateEdit::left, this, [this, edit, empty] { check(edit, empty); });
}

void DateFieldGuard::refuse(MaskedDateEdit *edit)
{
    m_returning = true;
    m_prompts.warn(QStringLiteral("Data non valida !"));
    // The change of focus that led here ends first.
    QTimer::singleShot(0, edit, [this, edit] {
        if (edit->isVisible()) {
            edit->setFocus();
            edit->selectAll();
        }
        m_returning = false;
    });
}

void DateFieldGuard::fill(MaskedDateEdit *edit) const
{
    if (!m_returning && edit->isEmptyDate() && !edit->isReadOnly())
        showAsTyped(edit, jet::dashedDate(m_clock.today()));
}

void DateFieldGuard::check(MaskedDateEdit *edit, Empty empty)
{
    if (m_returning || m_mayLeave() || (empty == Empty::Allowed && edit->isEmptyDate()))
        return;
    const auto day = calendarDay(edit->dateText());
    if (!day)
        refuse(edit);
    else if (edit->displayText() != jet::dashedDate(*day))
        showAsTyped(edit, jet::dashedDate(*day)); // "1-2-24" is shown as the date that it was taken for
}

} // namespace clivara
