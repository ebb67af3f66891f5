// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/practice/UserError.h"

#include <QString>

class QWidget;

// Works the controls of a form as a person does: only what is visible and enabled, with the keyboard or the
// mouse, and by the events that a person causes. Everything here throws UserError when the control is
// missing, cannot be used now or is of another kind; the text names the control.
namespace orvale {

// The control of that name: exactly, else without regard to case; a visible one before a hidden one. An
// element of a control array is "Button2(0)".
QWidget &findControl(QWidget &form, const QString &name);

// Enters the field, replaces its text by typing and leaves the field with Tab. What the field does not accept
// is not there afterwards, as for a person.
void typeText(QWidget &control, const QString &text);
// Picks the entry of a list or combo box by its text.
void chooseEntry(QWidget &control, const QString &text);
// Check boxes, options and checkable groups and buttons. Nothing happens when the state is already the wanted
// one.
void setChecked(QWidget &control, bool checked);
void clickButton(QWidget &control);
// A button, or the entry of one of the form's menus, by its name.
void clickControl(QWidget &form, const QString &name);
// Row `row` of a grid, list or tree (see displayedRows).
void selectRow(QWidget &control, int row);
void doubleClickRow(QWidget &control, int row);
// A key by its portable name ("Esc", "F2", "Ctrl+N", "Alt+C") to the widget with the focus, or to the form
// when none has it. Shortcuts and mnemonics work.
void pressKey(QWidget &form, const QString &name);

} // namespace orvale
