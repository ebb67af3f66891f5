// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/Prompts.h"

#include <QList>
#include <QQueue>
#include <QString>

namespace orvale {

// Message boxes of a scenario: each takes the next queued answer and is remembered. A box without an answer,
// or without the button that was answered, closes (Cancel, else No, else Ok) and leaves a failure.
class ScenarioPrompts final : public clivara::Prompts {
public:
    struct Box {
        clivara::Prompt prompt;
        clivara::PromptButton answer;
    };

    clivara::PromptButton ask(const clivara::Prompt &prompt) override;

    void queueAnswer(clivara::PromptButton answer) { m_answers.enqueue(answer); }
    // The boxes since the last call.
    QList<Box> takeBoxes();
    // Why the run cannot go on; empty when every box had its answer.
    QString failure() const { return m_failure; }

private:
    QQueue<clivara::PromptButton> m_answers;
    QList<Box> m_boxes;
    QString m_failure;
};

} // namespace orvale
