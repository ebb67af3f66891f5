// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>
#include <span>

namespace clivara {

struct WorkingState;

// One row of the action table: the form that an action code opens and what is set before it is shown.
struct ActionRow {
    qint16 code;
    const char16_t *form; // the form's own name
    bool (*applies)(const QVariant &param); // null: whatever the parameter is
    void (*prepare)(WorkingState &state, const QVariant &param); // null: nothing; may throw dao::Error
};

std::span<const ActionRow> actionTable();

// The row for a code and its parameter (an invalid variant when none was given); null when nothing is opened.
const ActionRow *findAction(qint16 code, const QVariant &param);

// The forms that code 99 unloads, in that order.
QStringList unloadOrder();

} // namespace clivara
