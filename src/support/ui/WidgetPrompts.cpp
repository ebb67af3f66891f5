// SPDX-License-Identifier: Apache-2.0
#include "support/ui/WidgetPrompts.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QScopeGuard>

namespace clivara {

namespace {

QMessageBox::Icon iconOf(PromptIcon icon)
{
    switch (icon) {
    case PromptIcon::Information:
        return QMessageBox::Information;
    case PromptIcon::Warning:
        return QMessageBox::Warning;
    case PromptIcon::Question:
        return QMessageBox::Question;
    case PromptIcon::Critical:
        return QMessageBox::Critical;
    case PromptIcon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

struct ButtonKind {
    QMessageBox::ButtonRole role;
    QString text;
};

ButtonKind kindOf(PromptButton button)
{
    switch (button) {
    case PromptButton::Yes:
        return {QMessageBox::YesRole, QStringLiteral("&Sì")};
    case PromptButton::No:
        return {QMessageBox::NoRole, QStringLiteral("&No")};
    case PromptButton::Cancel:
        return {QMessageBox::RejectRole, QStringLiteral("&Annulla")};
    case PromptButton::Ok:
        break;
    }
    return {QMessageBox::AcceptRole, QStringLiteral("&OK")};
}

PromptButton escapeOf(const QList<PromptButton> &buttons)
{
    for (const PromptButton button : {PromptButton::Cancel, PromptButton::No}) {
        if (buttons.contains(button))
            return button;
    }
    return PromptButton::Ok;
}

} // namespace

PromptButton WidgetPrompts::ask(const Prompt &prompt)
{
    QMessageBox box(QApplication::activeWindow());
    box.setWindowTitle(prompt.title);
    box.setTextFormat(Qt::PlainText);
    box.setText(prompt.text);
    box.setIcon(iconOf(prompt.icon));
    const PromptButton escape = escapeOf(prompt.buttons);
    QHash<const QAbstractButton *, PromptButton> answers;
    for (const PromptButton button : prompt.buttons) {
        const ButtonKind kind = kindOf(button);
        QPushButton *const added = box.addButton(kind.text, kind.role);
        answers.insert(added, button);
        if (button == prompt.defaultButton)
            box.setDefaultButton(added);
        if (button == escape)
            box.setEscapeButton(added);
    }
    // Whoever is asked need not wait, also while a form is being opened.
    QGuiApplication::setOverrideCursor(Qt::ArrowCursor);
    const auto answered = qScopeGuard([] { QGuiApplication::restoreOverrideCursor(); });
    box.exec();
    return answers.value(box.clickedButton(), escape);
}

} // namespace clivara
