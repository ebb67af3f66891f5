// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/FormOpener.h"
#include "chart/FormRegistry.h"
#include "chart/RecordConflict.h"
#include "chart/WorkingState.h"

#include <gtest/gtest.h>

namespace clivara {

// What the doctor is told of a conflict: the sentence, and a line "caption|mine|theirs" for each value that differs.
inline std::string toldOf(WorkingState &state, const RecordConflict &conflict)
{
    QStringList told{conflictSentence(state, conflict)};
    for (const ConflictField &field : conflict.fields) {
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

    const FormRegistry &registry() const override { return m_registry; }
    bool showForm(const QString &name, FormCall *call) override
    {
        EXPECT_EQ(name, "Conflitto");
        auto &shown = dynamic_cast<ConflictCall &>(*call);
        told = toldOf(m_state, shown.conflict);
        if (m_choices.isEmpty()) {
            ADD_FAILURE() << "unexpected conflict: " << told;
            return true;
        }
        shown.choice = m_choices.takeFirst();
        return true;
    }

private:
    WorkingState &m_state;
    FormRegistry m_registry;
    QList<ConflictChoice> m_choices;
};

} // namespace clivara
