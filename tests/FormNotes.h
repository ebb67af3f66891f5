// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/FormOpener.h"

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
    bool isBuilt(const QString &name) const override { return !absent.contains(name); }
    // The forms since the last call.
    QString take() { return std::exchange(opened, {}).join(u' '); }

    QStringList opened;
    QStringList absent; // forms that the build does not have
    std::function<void()> act;
};

} // namespace clivara
