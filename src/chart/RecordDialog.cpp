// SPDX-License-Identifier: Apache-2.0
#include "chart/RecordDialog.h"

#include "chart/ErrorLog.h"
#include "chart/WorkingState.h"
#include "controls/DateCheck.h"
#include "controls/MaskedDateEdit.h"
#include "values/JetValues.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QScopeGuard>
#include <QShortcut>

namespace clivara {

namespace {

const QDate unknownDay(1980, 1, 1);

void setQuiet(MaskedDateEdit *edit, bool quiet)
{
    QPalette palette;
    if (quiet)
        palette.setColor(QPalette::Text, palette.color(QPalette::PlaceholderText));
    edit->setPalette(palette);
    edit->setToolTip(quiet ? QStringLiteral("Data non registrata: resta tale se non la si scrive")
                           : QString());
}

} // namespace

RecordDialog::RecordDialog(const QString &name, WorkingState &state, WrittenRecord &record)
    : SectionForm(name, state)
    , m_record(record)
    , m_dates(state.clock, state.prompts,
              // Saving checks the dates itself, and whoever leaves is asked for none any more.
              [this] {
                  const QWidget *const focus = QApplication::focusWidget();
                  return !isLoaded() || (focus && (focus == m_save || focus == m_exit));
              })
{
    setWindowFlag(Qt::WindowMaximizeButtonHint);
}

void RecordDialog::setButtons(QAbstractButton *save, QAbstractButton *exit)
{
    m_save = save;
    m_exit = exit;
    connect(save, &QAbstractButton::clicked, this, &RecordDialog::save);
    connect(exit, &QAbstractButton::clicked, this, &RecordDialog::reject);
    for (const auto keys : {Qt::CTRL | Qt::Key_S, Qt::CTRL | Qt::Key_Return, Qt::CTRL | Qt::Key_Enter})
        connect(new QShortcut(keys, this), &QShortcut::activated, this, &RecordDialog::save);
}

void RecordDialog::addDate(MaskedDateEdit *edit)
{
    edit->setSeparator(u'-');
    connect(edit, &QLineEdit::textEdited, edit, [edit] { setQuiet(edit, false); });
}

void RecordDialog::save()
{
    if (m_saving || !isLoaded())
        return;
    m_saving = true;
    const auto done = qScopeGuard([this] { m_saving = false; });
    const WriteResult result = saveRecord(m_state, objectName(), m_record);
    if (result == WriteResult::Done)
        written();
    if (result == WriteResult::Done || result == WriteResult::TheirsKept)
        unload();
}

void RecordDialog::refuseToOpen(const QString &text)
{
    m_state.prompts.warn(text);
    throw ToldError(dao::RecordDeleted, text);
}

void RecordDialog::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    // The default button would save a record that has only its date.
    if (isEnter && !(event->modifiers() & ~Qt::KeypadModifier))
        focusNextChild();
    else
        SectionForm::keyPressEvent(event);
}

void showStoredDate(MaskedDateEdit *edit, QDate stored)
{
    edit->setDateText(jet::dashedDate(stored.isValid() ? stored : unknownDay));
    setQuiet(edit, !stored.isValid());
}

QDate enteredDate(const MaskedDateEdit *edit, QDate stored)
{
    return edit->isModified() ? calendarDay(edit->dateText()).value_or(QDate()) : stored;
}

bool holdsNoDate(const MaskedDateEdit *edit)
{
    return edit->isModified() && !edit->isEmptyDate() && !calendarDay(edit->dateText());
}

} // namespace clivara
