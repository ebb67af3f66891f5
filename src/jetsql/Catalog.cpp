// SPDX-License-Identifier: Apache-2.0
#include "jetsql/Catalog.h"

namespace dao {
namespace {

constexpr QChar nameSeparator = u'$';
constexpr QLatin1String primaryMark("$pk");

} // namespace

namespace sql {

TypeClass classOf(FieldType type)
{
    switch (type) {
    case FieldType::Boolean:
        return TypeClass::Boolean;
    case FieldType::Byte:
    case FieldType::Integer:
    case FieldType::Long:
    case FieldType::AutoNumber:
    case FieldType::Currency:
    case FieldType::Single:
    case FieldType::Double:
        return TypeClass::Number;
    case FieldType::Date:
        return TypeClass::Date;
    case FieldType::Text:
    case FieldType::Memo:
    case FieldType::Guid:
        return TypeClass::Text;
    case FieldType::Binary:
        return TypeClass::Binary;
    case FieldType::Null:
    case FieldType::Unknown:
        break;
    }
    return TypeClass::Null;
}

} // namespace sql

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
