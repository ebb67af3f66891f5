// SPDX-License-Identifier: Apache-2.0
#include "app/scenario/ControlAccess.h"

#include "app/scenario/ControlReading.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTest>
#include <QTextEdit>
#include <QTreeView>
#include <algorithm>

namespace orvale {

namespace {

// A control array's element "Button2(0)" has the object name "Button2_0".
QString objectNameOf(const QString &name)
{
    const qsizetype bracket = name.indexOf(u'(');
    if (bracket <= 0 || !name.endsWith(u')'))
        return name;
    return name.left(bracket) + u'_' + name.mid(bracket + 1, name.size() - bracket - 2);
}

void requireUsable(const QWidget &control)
{
    if (!control.isVisible())
        throw UserError(QStringLiteral("%1 non è visibile").arg(control.objectName()));
    if (!control.isEnabled())
        throw UserError(QStringLiteral("%1 è disabilitato").arg(control.objectName()));
}

// Fields take and lose the focus only in the active window.
void activate(QWidget &control)
{
    QWidget *window = control.window();
    if (!window->isActiveWindow())
        QApplication::setActiveWindow(window);
}

void sendKey(QWidget &target, Qt::Key key, const QString &text = {})
{
    const QPointer<QWidget> alive(&target);
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, Qt::NoModifier, text);
        if (alive)
            QApplication::sendEvent(alive, &event);
    }
}

// A text that nobody types is pasted: key by key, each of its keys would lay out the whole paragraph anew.
constexpr qsizetype longestTyped = 1000;

void paste(QWidget &field, const QString &text)
{
    QInputMethodEvent event;
    event.setCommitString(text);
    QApplication::sendEvent(&field, &event);
}

bool isReadOnly(const QWidget &field)
{
    return field.property("readOnly").toBool();
}

void selectAll(QWidget &field)
{
    if (const auto line = qobject_cast<QLineEdit *>(&field)) {
        line->selectAll();
    } else if (const auto plain = qobject_cast<QPlainTextEdit *>(&field)) {
        plain->selectAll();
    } else if (const auto rich = qobject_cast<QTextEdit *>(&field)) {
        rich->selectAll();
    } else if (const auto inner = field.findChild<QLineEdit *>()) {
        inner->selectAll();
    }
}

// A person leaves with Tab; a field for long texts keeps the key for itself.
void leave(QWidget &field)
{
    const QPointer<QWidget> alive(&field);
    const bool keepsTab = qobject_cast<QPlainTextEdit *>(&field) || qobject_cast<QTextEdit *>(&field);
    if (!keepsTab)
        sendKey(field, Qt::Key_Tab);
    if (alive && alive->hasFocus())
        alive->clearFocus();
}

void focusByMouse(QWidget &control)
{
    activate(control);
    if (control.focusPolicy() & Qt::ClickFocus)
        control.setFocus(Qt::MouseFocusReason);
}

// A button pressed by its mnemonic stays down for a moment before it clicks.
void waitForPressedButtons(QWidget &form)
{
    const auto isPressed = [&form] {
        const auto buttons = form.findChildren<QAbstractButton *>();
        return std::any_of(buttons.begin(), buttons.end(),
                           [](const QAbstractButton *button) { return button->isDown(); });
    };
    const QPointer<QWidget> alive(&form);
    while (alive && alive->isVisible() && isPressed())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

QAbstractItemView &viewOf(QWidget &control)
{
    requireUsable(control);
    const auto view = qobject_cast<QAbstractItemView *>(&control);
    if (!view)
        throw UserError(QStringLiteral("%1 non è un elenco").arg(control.objectName()));
    return *view;
}

// The middle of a row's first cell in the view's viewport, scrolled into sight.
QPoint bringIntoSight(QAbstractItemView &view, int row)
{
    const QList<QModelIndex> rows = displayedRows(view);
    if (row >= rows.size())
        throw UserError(QStringLiteral("%1 non ha la riga %2: ne ha %3")
                            .arg(view.objectName())
                            .arg(row)
                            .arg(rows.size()));
    const QModelIndex index = rows.at(row);
    if (const auto tree = qobject_cast<QTreeView *>(&view)) {
        for (QModelIndex parent = index.parent(); parent.isValid(); parent = parent.parent())
            tree->expand(parent);
    }
    view.scrollTo(index);
    const QRect cell = view.visualRect(index) & view.viewport()->rect();
    if (cell.isEmpty())
        throw UserError(QStringLiteral("la riga %1 di %2 non si vede").arg(row).arg(view.objectName()));
    return cell.center();
}

} // namespace

QWidget &findControl(QWidget &form, const QString &name)
{
    const QString objectName = objectNameOf(name);
    const auto children = form.findChildren<QWidget *>();
    QWidget *found = nullptr;
    int best = 0;
    for (QWidget *child : children) {
        if (child->objectName().compare(objectName, Qt::CaseInsensitive) != 0)
            continue;
        const int rank = 1 + (child->isVisible() ? 1 : 0) + (child->objectName() == objectName ? 2 : 0);
        if (rank > best) {
            best = rank;
            found = child;
        }
    }
    if (!found)
        throw UserError(QStringLiteral("la maschera %1 non ha il controllo %2").arg(form.objectName(), name));
    return *found;
}

void typeText(QWidget &control, const QString &text)
{
    requireUsable(control);
    QWidget *field = fieldOf(control);
    if (!field)
        throw UserError(QStringLiteral("in %1 non si può scrivere").arg(control.objectName()));
    requireUsable(*field);
    if (isReadOnly(*field))
        throw UserError(QStringLiteral("%1 è di sola lettura").arg(control.objectName()));

    const QPointer<QWidget> alive(field);
    activate(*field);
    field->setFocus(Qt::TabFocusReason);
    selectAll(*field);
    sendKey(*field, Qt::Key_Delete);
    if (const auto line = qobject_cast<QLineEdit *>(field))
        line->home(false);
    if (text.size() > longestTyped)
        paste(*field, text);
    const QString keys = text.size() > longestTyped ? QString() : text;
    for (qsizetype i = 0; i < keys.size(); ++i) {
        if (!alive)
            return;
        const QChar character = keys.at(i);
        if (character.isHighSurrogate()) { // no key has it: an input method enters both halves
            paste(*field, keys.mid(i++, 2));
            continue;
        }
        const bool newLine = character == u'\n';
        sendKey(*field, newLine ? Qt::Key_Return : static_cast<Qt::Key>(character.toUpper().unicode()),
                newLine ? QStringLiteral("\r") : QString(character));
    }
    if (alive)
        leave(*field);
}

void chooseEntry(QWidget &control, const QString &text)
{
    requireUsable(control);
    const ShownRows entries = shownRows(control);
    const auto entry = std::find_if(entries.rows.begin(), entries.rows.end(),
                                    [&](const QStringList &row) { return row.value(0) == text; });
    if (entry == entries.rows.end())
        throw UserError(QStringLiteral("%1 non ha la voce %2").arg(control.objectName(), text));
    const int row = static_cast<int>(entry - entries.rows.begin());
    const auto combo = qobject_cast<QComboBox *>(&control);
    if (!combo) {
        selectRow(control, row);
        return;
    }
    focusByMouse(*combo);
    const QPointer<QComboBox> alive(combo);
    combo->setCurrentIndex(row);
    // A choice by hand is announced even when it is the entry that was there before.
    if (alive)
        emit combo->activated(row);
    if (alive)
        emit combo->textActivated(text);
}

void setChecked(QWidget &control, bool checked)
{
    requireUsable(control);
    const std::optional<bool> state = shownChecked(control);
    if (!state)
        throw UserError(QStringLiteral("%1 non è una casella").arg(control.objectName()));
    if (*state == checked)
        return;
    const QPointer<QWidget> alive(&control);
    focusByMouse(control);
    if (const auto button = qobject_cast<QAbstractButton *>(&control))
        button->click();
    else if (const auto group = qobject_cast<QGroupBox *>(&control))
        group->setChecked(checked);
    if (alive && shownChecked(control) != checked)
        throw UserError(QStringLiteral("%1 non cambia stato").arg(control.objectName()));
}

void clickButton(QWidget &control)
{
    const auto button = qobject_cast<QAbstractButton *>(&control);
    if (!button)
        throw UserError(QStringLiteral("%1 non è un pulsante").arg(control.objectName()));
    requireUsable(*button);
    focusByMouse(*button);
    // Leaving the field before may have changed what can be done.
    requireUsable(*button);
    button->click();
}

void clickControl(QWidget &form, const QString &name)
{
    const auto entries = form.findChildren<QAction *>();
    const auto entry = std::find_if(entries.begin(), entries.end(), [&name](const QAction *action) {
        return action->objectName().compare(name, Qt::CaseInsensitive) == 0;
    });
    if (entry == entries.end()) {
        clickButton(findControl(form, name));
        return;
    }
    if (!(*entry)->isEnabled())
        throw UserError(QStringLiteral("%1 è disabilitato").arg(name));
    (*entry)->trigger();
}

void selectRow(QWidget &control, int row)
{
    QAbstractItemView &view = viewOf(control);
    const QPoint place = bringIntoSight(view, row);
    focusByMouse(view);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::NoModifier, place);
}

void doubleClickRow(QWidget &control, int row)
{
    QAbstractItemView &view = viewOf(control);
    const QPoint place = bringIntoSight(view, row);
    focusByMouse(view);
    const QPointer<QWidget> viewport(view.viewport());
    QTest::mouseClick(viewport, Qt::LeftButton, Qt::NoModifier, place);
    if (viewport && viewport->isVisible())
        QTest::mouseDClick(viewport, Qt::LeftButton, Qt::NoModifier, place);
    if (viewport)
        QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, place);
}

void pressKey(QWidget &form, const QString &name)
{
    const QKeyCombination keys = QKeySequence(name, QKeySequence::PortableText)[0];
    // "Enter" is the key of the main keyboard, as a person means it.
    const Qt::Key key = keys.key() == Qt::Key_Enter ? Qt::Key_Return : keys.key();
    QWidget *target = QApplication::activePopupWidget();
    if (!target) {
        activate(form);
        target = &form;
    }
    if (QWidget *focused = target->focusWidget())
        target = focused;
    const QPointer<QWidget> alive(&form);
    QTest::keyClick(target, key, keys.keyboardModifiers());
    if (alive)
        waitForPressedButtons(*alive);
}

} // namespace orvale
