// SPDX-License-Identifier: Apache-2.0
#include "app/import/ImportPlan.h"

#include <algorithm>

namespace orvale {

namespace {

using dao::ColumnInfo;
using dao::FieldType;

constexpr int guidLength = 38;

bool isWhole(FieldType type)
{
    return type >= FieldType::Byte && type <= FieldType::Long;
}

// Every value of the one type is one of the other. Currency is kept as a double here, as the engine does.
bool holds(FieldType wide, FieldType narrow)
{
    if (wide == narrow || wide == FieldType::Double)
        return true;
    if (isWhole(wide))
        return isWhole(narrow) && narrow < wide;
    return (wide == FieldType::Currency && isWhole(narrow))
           || (wide == FieldType::Single && isWhole(narrow) && narrow != FieldType::Long);
}

QString typeText(const ColumnInfo &column)
{
    switch (column.type) {
    case FieldType::Boolean:
        return QStringLiteral("Sì/No");
    case FieldType::Byte:
        return QStringLiteral("Byte");
    case FieldType::Integer:
        return QStringLiteral("Intero");
    case FieldType::Long:
        return QStringLiteral("Intero lungo");
    case FieldType::AutoNumber:
        return QStringLiteral("Contatore");
    case FieldType::Currency:
        return QStringLiteral("Valuta");
    case FieldType::Single:
        return QStringLiteral("Precisione singola");
    case FieldType::Double:
        return QStringLiteral("Precisione doppia");
    case FieldType::Date:
        return QStringLiteral("Data/ora");
    case FieldType::Text:
        return QStringLiteral("Testo(%1)").arg(column.size);
    case FieldType::Memo:
        return QStringLiteral("Memo");
    case FieldType::Guid:
        return QStringLiteral("GUID");
    case FieldType::Binary:
        return QStringLiteral("Binario");
    case FieldType::Null:
    case FieldType::Unknown:
        break;
    }
    return QStringLiteral("?");
}

bool isSameName(const QString &a, const QString &b)
{
    return a.toCaseFolded() == b.toCaseFolded();
}

bool containsName(const QStringList &names, const QString &name)
{
    return std::any_of(names.begin(), names.end(), [&](const QString &n) { return isSameName(n, name); });
}

// As a database can keep it: a name is never empty, holds no zero character and no half of a character pair.
QString storable(const QString &name)
{
    QString text = QString::fromUtf8(name.toUtf8());
    text.replace(QChar(0), u'_');
    return text.trimmed().isEmpty() ? QStringLiteral("senza nome") : text;
}

QString freeName(const QString &name, const QStringList &taken)
{
    QString free = name;
    for (int i = 2; containsName(taken, free); ++i)
        free = QStringLiteral("%1_%2").arg(name).arg(i);
    return free;
}

QStringList namesOf(const QList<ColumnInfo> &columns)
{
    QStringList names;
    for (const ColumnInfo &column : columns)
        names.append(column.name);
    return names;
}

bool hasAutoNumber(const QList<ColumnInfo> &columns)
{
    return std::any_of(columns.begin(), columns.end(),
                       [](const ColumnInfo &column) { return column.type == FieldType::AutoNumber; });
}

// A field that the practice does not have, under a name that the table still has free.
void addUnknownField(PlannedTable &plan, const ColumnInfo &source, int position)
{
    ColumnInfo column = source;
    column.name = freeName(storable(source.name), namesOf(plan.columns));
    if (column.name != source.name)
        plan.notes.append(
            QStringLiteral("il campo «%1» si chiama «%2»").arg(storable(source.name), column.name));
    if (column.type == FieldType::AutoNumber && hasAutoNumber(plan.columns)) {
        column.type = FieldType::Long;
        plan.notes.append(
            QStringLiteral("il campo %1 non è più un contatore: la tabella ne ha già uno").arg(column.name));
    }
    plan.columns.append(column);
    plan.copied.append({column, position, false});
}

// The source's indexes that the plan does not have yet, over the fields as they are called in the practice.
void addIndexes(PlannedTable &plan, const jetfile::JetTable &source)
{
    for (const dao::IndexInfo &index : source.indexes) {
        dao::IndexInfo added = index;
        for (QString &field : added.fields) {
            const auto planned =
                std::find_if(plan.copied.begin(), plan.copied.end(), [&](const PlannedColumn &column) {
                    return isSameName(source.columns[column.source].name, field);
                });
            field = planned == plan.copied.end() ? QString() : planned->target.name;
        }
        if (added.fields.isEmpty() || added.fields.contains(QString()))
            continue;
        QStringList names;
        bool isThere = false;
        bool hasPrimary = false;
        for (const dao::IndexInfo &existing : std::as_const(plan.indexes)) {
            names.append(existing.name);
            hasPrimary |= existing.primary;
            isThere |= existing.fields == added.fields
                       && (existing.unique || existing.primary || !(added.unique || added.primary));
        }
        if (isThere)
            continue;
        if (added.primary && hasPrimary) {
            added.primary = false;
            added.unique = true;
        }
        added.name = freeName(storable(index.name), names);
        plan.indexes.append(added);
    }
}

} // namespace

std::optional<ColumnInfo> widened(const ColumnInfo &known, const ColumnInfo &source)
{
    ColumnInfo result = known;
    FieldType wide = source.type;
    if (known.type == FieldType::AutoNumber || source.type == FieldType::AutoNumber) {
        if (known.type == FieldType::AutoNumber) {
            if (isWhole(wide) || wide == FieldType::AutoNumber)
                return known;
            return std::nullopt;
        }
        if (isWhole(known.type)) {
            result.type = FieldType::AutoNumber;
            return result;
        }
        wide = FieldType::Long;
    }
    if (dao::isNumeric(known.type) && dao::isNumeric(wide)) {
        if (!holds(known.type, wide))
            result.type = holds(wide, known.type) ? wide : FieldType::Double;
        return result;
    }
    if (known.type == FieldType::Text && dao::isText(wide)) {
        if (wide == FieldType::Memo) {
            result.type = FieldType::Memo;
            result.size = 0;
        } else {
            result.size = std::max(known.size, wide == FieldType::Guid ? guidLength : source.size);
        }
        return result;
    }
    if ((known.type == FieldType::Memo && dao::isText(wide)) || known.type == wide)
        return result;
    return std::nullopt;
}

bool isReservedTable(const QString &name)
{
    for (const char16_t *prefix : {u"MSys", u"orvale_", u"sqlite_", u"engine_"}) {
        if (name.startsWith(QStringView(prefix), Qt::CaseInsensitive))
            return true;
    }
    return false;
}

PlannedTable planKnownTable(const dao::TableInfo &known, const jetfile::JetTable &source)
{
    PlannedTable plan;
    plan.name = known.name;
    plan.isKnown = true;
    plan.indexes = known.indexes;
    QList<bool> used(source.columns.size());
    for (const ColumnInfo &column : known.columns) {
        const auto found = std::find_if(source.columns.begin(), source.columns.end(),
                                        [&](const ColumnInfo &c) { return isSameName(c.name, column.name); });
        if (found == source.columns.end()) {
            plan.columns.append(column);
            plan.missingFields.append(column.name);
            continue;
        }
        const int position = int(found - source.columns.begin());
        used[position] = true;
        ColumnInfo given = *found;
        if (given.type == FieldType::AutoNumber && column.type != FieldType::AutoNumber
            && hasAutoNumber(known.columns))
            given.type = FieldType::Long; // a table has one
        const auto wider = widened(column, given);
        const ColumnInfo target = wider.value_or(column);
        if (!wider) {
            plan.notes.append(QStringLiteral("il campo %1 è %2 e non %3: i valori sono convertiti")
                                  .arg(column.name, typeText(given), typeText(column)));
        } else if (target.type != column.type || target.size != column.size) {
            plan.notes.append(QStringLiteral("il campo %1 diventa %2 da %3")
                                  .arg(column.name, typeText(target), typeText(column)));
            plan.isChanged = true;
        }
        plan.columns.append(target);
        plan.copied.append({target, position, !wider});
    }
    for (int i = 0; i < source.columns.size(); ++i) {
        if (used[i])
            continue;
        addUnknownField(plan, source.columns[i], i);
        plan.unknownFields.append(plan.columns.last().name);
        plan.isChanged = true;
    }
    const qsizetype indexes = plan.indexes.size();
    addIndexes(plan, source);
    plan.isChanged |= plan.indexes.size() > indexes;
    return plan;
}

PlannedTable planUnknownTable(const jetfile::JetTable &source, const QStringList &taken)
{
    PlannedTable plan;
    const QString stored = storable(source.name);
    plan.name = freeName(isReservedTable(stored) ? QStringLiteral("origine_") + stored : stored, taken);
    if (plan.name != source.name)
        plan.notes.append(QStringLiteral("nella sorgente si chiama «%1»").arg(stored));
    plan.isChanged = true;
    for (int i = 0; i < source.columns.size(); ++i)
        addUnknownField(plan, source.columns[i], i);
    addIndexes(plan, source);
    return plan;
}

} // namespace orvale
