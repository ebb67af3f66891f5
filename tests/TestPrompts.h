// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/Prompts.h"

#include <gtest/gtest.h>

namespace clivara {

// Message boxes of a test: each needs an answer queued before it, and each queued answer a box.
class TestPrompts final : public Prompts {
public:
    ~TestPrompts() override
    {
        EXPECT_TRUE(m_answers.isEmpty()) << m_answers.size() << " message boxes did not come";
    }

    void queue(PromptButton answer = PromptButton::Ok) { m_answers.append(answer); }

    PromptButton ask(const Prompt &prompt) override
    {
        boxes.append(prompt);
        if (m_answers.isEmpty()) {
            ADD_FAILURE() << "unexpected message box: " << prompt.text.toStdString();
            return prompt.buttons.last();
        }
        const PromptButton answer = m_answers.takeFirst();
        EXPECT_TRUE(prompt.buttons.contains(answer)) << "no such button: " << prompt.text.toStdString();
        return answer;
    }

    // The last box as "title|text|icon"; empty when there was none.
    QString last() const
    {
        if (boxes.isEmpty())
            return {};
        const Prompt &box = boxes.last();
        return box.title + u'|' + box.text + u'|' + promptIconName(box.icon);
    }

    QList<Prompt> boxes;

private:
    QList<PromptButton> m_answers;
};

} // namespace clivara
