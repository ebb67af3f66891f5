// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/Dao.h"
#include "values/JetValues.h"

#include <QDate>
#include <QString>
#include <QVariant>
#include <optional>
#include <tuple>
#include <type_traits>

// The description of a record. A record is a struct whose static fields() lists, once, what of it is stored
// and edited; what reads, writes, compares and shows it walks that list:
//
//     struct Stay {
//         QDate admitted;
//         QString hospital;
//         static constexpr auto fields()
//         {
//             return std::tuple{RecordField{"data_accesso", &Stay::admitted, "Data accesso"},
//                               RecordField{"sede", &Stay::hospital, "Sede", {.most = 80, .of = "La sede"}}};
//         }
//     };
namespace clivara {

// How a column holds a value, when it is not just the value. A date column's hour, which other programs
// write, is left while its day stays.
enum class Storage {
    Plain,
    Trimmed, // read without the blanks around it
    Memo, // a text of blanks only is stored as an empty one
    NullWhenEmpty,
    KeptWhenEmpty // an empty value leaves what is stored
};

// So many characters a text may have; 0 when nobody can type too many. `of` begins the sentence that says
// so: "La sede".
struct TextLength {
    int most = 0;
    const char *of = "";
};

template <typename Record, typename Value>
struct RecordField {
    const char *column;
    Value Record::*member;
    const char *caption; // what the doctor calls it
    TextLength length = {};
    Storage storage = Storage::Plain;
    // How the doctor reads it, and when two values say the same; null for the usual way.
    QString (*text)(const std::type_identity_t<Value> &) = nullptr;
    bool (*same)(const std::type_identity_t<Value> &, const std::type_identity_t<Value> &) = nullptr;

    bool isSame(const Record &a, const Record &b) const
    {
        return same ? same(a.*member, b.*member) : a.*member == b.*member;
    }
};

// What a date column gets; Null for an invalid date.
inline QVariant dateValue(QDate date)
{
    return date.isValid() ? QVariant(jet::dateTime(date)) : QVariant();
}

// A member's value out of a column's, and the reverse. Null is the member's empty value, or 0.
template <typename Value>
Value memberValue(const QVariant &stored)
{
    if constexpr (std::is_same_v<Value, QString>)
        return stored.toString();
    else if constexpr (std::is_same_v<Value, QDate>)
        return stored.toDateTime().date();
    else if constexpr (std::is_arithmetic_v<Value>)
        return static_cast<Value>(stored.toDouble());
    else
        return stored.isValid() ? Value(memberValue<typename Value::value_type>(stored)) : Value();
}
template <typename Value>
QVariant columnValue(const Value &value)
{
    if constexpr (std::is_same_v<Value, QDate>)
        return dateValue(value);
    else if constexpr (std::is_arithmetic_v<Value> || std::is_same_v<Value, QString>)
        return value;
    else
        return value ? QVariant(*value) : QVariant();
}

template <typename Value>
bool isEmptyValue(const Value &value)
{
    if constexpr (std::is_same_v<Value, QString>)
        return value.isEmpty();
    else if constexpr (std::is_same_v<Value, QDate>)
        return !value.isValid();
    else if constexpr (std::is_arithmetic_v<Value>)
        return false;
    else
        return !value;
}

// As the doctor reads a value: "dd/mm/yyyy", "7.2", "sì".
template <typename Value>
QString usualText(const Value &value)
{
    if constexpr (std::is_same_v<Value, QString>)
        return value;
    else if constexpr (std::is_same_v<Value, QDate>)
        return jet::slashedDate(value);
    else if constexpr (std::is_same_v<Value, bool>)
        return value ? QStringLiteral("sì") : QStringLiteral("no");
    else if constexpr (std::is_arithmetic_v<Value>)
        return jet::numberText(value);
    else
        return value ? usualText(*value) : QString();
}
// "dd-mm-yyyy"
inline QString dashedDay(const QDate &day)
{
    return jet::dashedDate(day);
}

template <typename Record, typename Action>
void forEachField(Action action)
{
    std::apply([&](const auto &...field) { (action(field), ...); }, Record::fields());
}

template <typename Record, typename Value>
QString fieldText(const RecordField<Record, Value> &field, const Value &value)
{
    return field.text ? field.text(value) : usualText(value);
}

template <typename Record>
void readFields(dao::Recordset &row, Record &record)
{
    forEachField<Record>([&]<typename Value>(const RecordField<Record, Value> &field) {
        Value &value = record.*field.member;
        value = memberValue<Value>(row.Fields(QLatin1String(field.column)).Value());
        if constexpr (std::is_same_v<Value, QString>) {
            if (field.storage == Storage::Trimmed)
                value = value.trimmed();
        }
    });
}

// Sets the fields of the open edit buffer.
template <typename Record>
void writeFields(dao::Recordset &row, const Record &record)
{
    forEachField<Record>([&]<typename Value>(const RecordField<Record, Value> &field) {
        dao::Field column = row.Fields(QLatin1String(field.column));
        const Value &value = record.*field.member;
        if (field.storage == Storage::KeptWhenEmpty && isEmptyValue(value))
            return;
        if constexpr (std::is_same_v<Value, QDate>) {
            if (column.date().date() == value)
                return;
        }
        QVariant written = columnValue(value);
        if (field.storage == Storage::NullWhenEmpty && isEmptyValue(value))
            written = QVariant();
        if (field.storage == Storage::Memo && written.toString().trimmed().isEmpty())
            written = QStringLiteral("");
        column.setValue(written);
    });
}

// Whether writing would replace what was written elsewhere: a value that is stored otherwise than it was
// read and than it is to be written.
template <typename Record>
bool wouldReplace(const Record &read, const Record &mine, const Record &stored)
{
    bool replaces = false;
    forEachField<Record>([&](const auto &field) {
        replaces = replaces || (!field.isSame(stored, read) && !field.isSame(stored, mine));
    });
    return replaces;
}

// Values that were not touched here become what is stored; those that were touched stay.
template <typename Record>
void takeUntouched(Record &mine, const Record &read, const Record &stored)
{
    forEachField<Record>([&](const auto &field) {
        if (field.isSame(mine, read))
            mine.*field.member = stored.*field.member;
    });
}

// "La sede ha 81 caratteri: può averne al massimo 80."; empty when the text is not too long for its column.
template <auto member, typename Record>
QString tooLong(const Record &record)
{
    QString sentence;
    forEachField<Record>([&]<typename Value>(const RecordField<Record, Value> &field) {
        if constexpr (std::is_same_v<Value Record::*, decltype(member)>) {
            const qsizetype size = (record.*member).size();
            if (field.member == member && size > field.length.most)
                sentence = QStringLiteral("%1 ha %L2 caratteri: può averne al massimo %L3.")
                               .arg(QString::fromUtf8(field.length.of))
                               .arg(size)
                               .arg(field.length.most);
        }
    });
    return sentence;
}

} // namespace clivara
