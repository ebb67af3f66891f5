// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/FormOpener.h"
#include "chart/FormRegistry.h"

#include <QStringList>
#include <functional>

namespace clivara {

// Notes which forms a form opens, and does in their place what a test wants.
struct FormNotes : FormOpener {
    bool showForm(const QString &name) override
    {
        opened.append(name);
        if (act)
            act();
        return bool(act);
    }
    const FormRegistry &registry() const override { return built; }
    // The forms since the last call.
    QString take() { return std::exchange(opened, {}).join(u' '); }

    QStringList opened;
    FormRegistry built; // the forms that there are
    std::function<void()> act;
};

} // namespace clivara
