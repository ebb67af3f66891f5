// SPDX-License-Identifier: Apache-2.0
#include "data/engine/Catalog.h"

namespace dao {

int TableInfo::columnIndex(QStringView column) const
{
    for (qsizetype i = 0; i < columns.size(); ++i) {
        const QString &candidate = columns[i].name;
        if (candidate.size() == column.size() && column.compare(candidate, Qt::CaseInsensitive) == 0)
            return int(i);
    }
    return -1;
}

const IndexInfo *TableInfo::index(QStringView wanted) const
{
    for (const IndexInfo &candidate : indexes) {
        if (wanted.compare(candidate.name, Qt::CaseInsensitive) == 0)
            return &candidate;
    }
    return nullptr;
}

} // namespace dao
