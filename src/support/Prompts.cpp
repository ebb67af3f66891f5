// SPDX-License-Identifier: Apache-2.0
#include "support/Prompts.h"

namespace clivara {

void Prompts::warn(const QString &text)
{
    ask({QStringLiteral("Attenzione!"), text, PromptIcon::Warning, {PromptButton::Ok}, PromptButton::Ok});
}

bool Prompts::confirm(const QString &question)
{
    return ask({QStringLiteral("Attenzione!"),
                question,
                PromptIcon::Question,
                {PromptButton::Yes, PromptButton::No},
                PromptButton::No})
           == PromptButton::Yes;
}

QString promptButtonName(PromptButton button)
{
    switch (button) {
    case PromptButton::Ok:
        return QStringLiteral("Ok");
    case PromptButton::Cancel:
        return QStringLiteral("Cancel");
    case PromptButton::Yes:
        return QStringLiteral("Yes");
    case PromptButton::No:
        return QStringLiteral("No");
    }
    return {};
}

QString promptIconName(PromptIcon icon)
{
    switch (icon) {
    case PromptIcon::None:
        return QStringLiteral("none");
    case PromptIcon::Information:
        return QStringLiteral("information");
    case PromptIcon::Warning:
        return QStringLiteral("warning");
    case PromptIcon::Question:
        return QStringLiteral("question");
    case PromptIcon::Critical:
        return QStringLiteral("critical");
    }
    return {};
}

} // namespace clivara
