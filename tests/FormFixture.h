// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ChartFixture.h"
#include "FormDriver.h"

namespace clivara {

// A chart whose forms are driven by their controls.
template <typename Chart = ChartFixture>
class FormFixture : public Chart, protected FormDriver {
protected:
    // What is to be done after the current change of focus.
    static void settle() { QCoreApplication::processEvents(); }

    // Presses a button that brings up one box; the box as "title|text|icon".
    std::string boxOf(const QString &button, PromptButton answer = PromptButton::Ok)
    {
        const auto before = this->prompts.boxes.size();
        this->prompts.queue(answer);
        control(button)->setFocus(Qt::MouseFocusReason);
        click(button);
        settle();
        EXPECT_EQ(this->prompts.boxes.size(), before + 1);
        return this->prompts.last().toStdString();
    }
};

} // namespace clivara
