// SPDX-License-Identifier: Apache-2.0
#include "data/engine/Catalog.h"

namespace dao {
namespace {

constexpr QChar nameSeparator = u'$';
constexpr QLatin1String primaryMark("$pk");

} // namespace

QString nativeIndexName(const QString &table, const IndexInfo &index)
{
    return table + nameSeparator + index.name + (index.primary ? QString(primaryMark) : QString());
}

IndexInfo indexOfNativeName(const QString &table, const QString &nativeName)
{
    IndexInfo index;
    index.name = nativeName;
    if (index.name.startsWith(table + nameSeparator, Qt::CaseInsensitive))
        index.name.remove(0, table.size() + 1);
    if (index.name.endsWith(primaryMark)) {
        index.name.chop(primaryMark.size());
        index.primary = true;
    }
    return index;
}

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
