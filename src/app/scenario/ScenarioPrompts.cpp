// SPDX-License-Identifier: Apache-2.0
#include "app/scenario/ScenarioPrompts.h"

#include <utility>

namespace orvale {

using clivara::Prompt;
using clivara::PromptButton;

namespace {

PromptButton closingAnswer(const Prompt &prompt)
{
    for (const PromptButton button : {PromptButton::Cancel, PromptButton::No}) {
        if (prompt.buttons.contains(button))
            return button;
    }
    return PromptButton::Ok;
}

} // namespace

PromptButton ScenarioPrompts::ask(const Prompt &prompt)
{
    PromptButton answer = closingAnswer(prompt);
    QString failure;
    if (m_answers.isEmpty()) {
        failure = QStringLiteral("finestra di messaggio senza risposta: %1").arg(prompt.text.simplified());
    } else if (const PromptButton queued = m_answers.dequeue(); prompt.buttons.contains(queued)) {
        answer = queued;
    } else {
        failure = QStringLiteral("la finestra di messaggio non ha il pulsante %1: %2")
                      .arg(clivara::promptButtonName(queued), prompt.text.simplified());
    }
    if (m_failure.isEmpty())
        m_failure = failure;
    m_boxes.append({prompt, answer});
    return answer;
}

QList<ScenarioPrompts::Box> ScenarioPrompts::takeBoxes()
{
    return std::exchange(m_boxes, {});
}

} // namespace orvale
