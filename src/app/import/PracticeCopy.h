// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/import/Import.h"

#include <QList>
#include <QString>
#include <functional>

namespace orvale {

// Copies a practice, in a folder or on a server, to a new one of either kind: every table with its fields,
// indexes and rows and the number after which its counter goes on, as they stand at one time. The copy is
// built aside, read again and compared value by value; one that differs is not put in its place. Tables that
// are linked into the local database are not copied: the copy is linked anew. What is proved of each table is
// returned. Throws UserError (`to` is there already, a row that cannot be written, the proof fails) or what
// `progress` throws; then nothing of the copy is left.
QList<TableProof> copyPractice(const QString &from, const QString &to,
                               const std::function<void(const ImportProgress &)> &progress = {});

} // namespace orvale
