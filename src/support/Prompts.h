// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QList>
#include <QString>

namespace clivara {

enum class PromptIcon { None, Information, Warning, Question, Critical };
enum class PromptButton { Ok, Cancel, Yes, No };

// One message box as the doctor sees it.
struct Prompt {
    QString title;
    QString text;
    PromptIcon icon = PromptIcon::None;
    QList<PromptButton> buttons{PromptButton::Ok};
    PromptButton defaultButton = PromptButton::Ok;
};

// Asks the doctor. Closing the box is the answer of its Cancel button, else No, else Ok.
class Prompts {
public:
    virtual ~Prompts() = default;
    virtual PromptButton ask(const Prompt &prompt) = 0;

    // "Attenzione!" with the exclamation icon and an Ok button.
    void warn(const QString &text);
    // "Attenzione!" with the question icon, Yes and No; true for Yes, which is not the default.
    bool confirm(const QString &question);
};

// The names used by scenarios and their output: "Ok", "Yes" ... and "warning", "question" ...
QString promptButtonName(PromptButton button);
QString promptIconName(PromptIcon icon);

} // namespace clivara
