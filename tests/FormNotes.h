// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/FormCall.h"
#include "chart/FormOpener.h"
#include "chart/FormRegistry.h"

#include <QStringList>
#include <functional>

namespace clivara {

// Notes which forms a form opens, and does in their place what a test wants.
struct FormNotes : FormOpener {
    bool showForm(const QString &name, FormCall *call) override
    {
        opened.append(name);
        m_call = call;
        if (act)
            act();
        return bool(act);
    }
    const FormRegistry &registry() const override { return built; }
    // The forms since the last call.
    QString take() { return std::exchange(opened, {}).join(u' '); }

    // What the form that is being opened is asked.
    template <typename Call>
    Call &call() const
    {
        return dynamic_cast<Call &>(*m_call);
    }

    QStringList opened;
    FormRegistry built; // the forms that there are
    std::function<void()> act;

private:
    FormCall *m_call = nullptr;
};

} // namespace clivara
