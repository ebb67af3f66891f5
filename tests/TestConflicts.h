// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/FormOpener.h"
#include "chart/WorkingState.h"

#include <gtest/gtest.h>

namespace clivara {

// What the doctor is told of a conflict: the sentence, and a line "caption|mine|theirs" for each value that
// differs.
inline std::string toldOf(WorkingState &state)
{
    QStringList told{conflictSentence(state, state.conflict)};
    for (const ConflictField &field : std::as_const(state.conflict.fields)) {
        if (field.mine != field.stored)
            told.append(field.caption + u'|' + field.mine + u'|' + field.stored);
    }
    return told.join(u'\n').toStdString();
}

// Stands in for the form of conflicts: each one needs a choice queued before it, and each choice a conflict.
class TestConflicts final : public FormOpener {
public:
    explicit TestConflicts(WorkingState &state)
        : m_state(state)
    {
        state.forms = this;
    }
    ~TestConflicts() override
    {
        EXPECT_TRUE(m_choices.isEmpty()) << m_choices.size() << " conflicts did not come";
    }

    void queue(ConflictChoice choice) { m_choices.append(choice); }
    std::string told; // of the last one

    bool showForm(const QString &name) override
    {
        EXPECT_EQ(name, "Conflitto");
        told = toldOf(m_state);
        if (m_choices.isEmpty()) {
            ADD_FAILURE() << "unexpected conflict: " << told;
            return true;
        }
        m_state.conflict.choice = m_choices.takeFirst();
        return true;
    }

private:
    WorkingState &m_state;
    QList<ConflictChoice> m_choices;
};

} // namespace clivara
