// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/ErrorLog.h"
#include "controls/ReportView.h"
#include "jetsql/Error.h"

namespace clivara {

// The rows that `read` gives for the list. When it throws dao::Error they are none, the log has the routine's line, and the list
// says that it could not be read.
template <typename Read>
auto readList(ChartServices &services, const QString &routine, ReportView &list, Read read)
    -> decltype(read())
{
    try {
        auto rows = read();
        list.setUnread(false);
        return rows;
    } catch (const dao::Error &error) {
        logError(services, routine, error);
        list.setUnread(true);
        return {};
    }
}

// How many rows the list has, beside it; a dash when nobody knows.
inline QString countText(const ReportView &list, qsizetype rows)
{
    return list.isUnread() ? QStringLiteral("–") : QString::number(rows);
}

} // namespace clivara
