// SPDX-License-Identifier: Apache-2.0
#include "dao/FieldValue.h"

#include "jetsql/Error.h"
#include "values/JetValues.h"

#include <QUuid>
#include <cmath>
#include <limits>

namespace dao {
namespace {

namespace jet = clivara::jet;

[[noreturn]] void throwConversion(const ColumnInfo &column)
{
    throw Error(ConversionError,
                QStringLiteral("Errore di conversione dei dati nel campo '%1'").arg(column.name));
}

[[noreturn]] void throwOverflow(const ColumnInfo &column)
{
    throw Error(Overflow, QStringLiteral("Valore troppo grande per il campo '%1'").arg(column.name));
}

bool isDate(const QVariant &value)
{
    return value.typeId() == QMetaType::QDateTime || value.typeId() == QMetaType::QDate
           || value.typeId() == QMetaType::QTime;
}

bool isTextValue(const QVariant &value)
{
    return value.typeId() == QMetaType::QString || value.typeId() == QMetaType::QChar;
}

QDateTime dateOf(const QVariant &value)
{
    if (value.typeId() == QMetaType::QTime)
        return jet::dateTime(jet::zeroDate().date(), value.toTime());
    if (value.typeId() == QMetaType::QDate)
        return jet::dateTime(value.toDate());
    const QDateTime date = value.toDateTime();
    return jet::dateTime(date.date(), date.time());
}

double numberOf(const QVariant &value, const ColumnInfo &column)
{
    if (value.typeId() == QMetaType::Bool)
        return value.toBool() ? -1 : 0;
    if (isDate(value))
        return jet::serialFromDate(dateOf(value));
    if (isTextValue(value)) {
        const auto number = jet::numberFromText(value.toString());
        if (!number)
            throwConversion(column);
        return *number;
    }
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    if (!isNumber || std::isnan(number))
        throwConversion(column);
    return number;
}

int wholeNumber(const QVariant &value, const ColumnInfo &column, int lowest, int highest)
{
    const auto number = jet::toLong(numberOf(value, column));
    if (!number || *number < lowest || *number > highest)
        throwOverflow(column);
    return *number;
}

// A number of four decimals, kept in 64 bits by the databases this engine stands for.
double currency(const QVariant &value, const ColumnInfo &column)
{
    const double number = numberOf(value, column);
    if (!(std::abs(number) <= 922337203685477.5807))
        throwOverflow(column);
    return jet::roundHalfToEven(number * 10000) / 10000;
}

double floating(const QVariant &value, const ColumnInfo &column)
{
    const double number = numberOf(value, column);
    if (!std::isfinite(number))
        throwOverflow(column);
    if (column.type == FieldType::Double)
        return number;
    if (std::abs(number) > double(std::numeric_limits<float>::max()))
        throwOverflow(column);
    return double(float(number));
}

bool yesNo(const QVariant &value, const ColumnInfo &column)
{
    if (isTextValue(value)) {
        const QString text = value.toString().trimmed();
        for (const char16_t *word : {u"true", u"yes", u"on"}) {
            if (text.compare(QStringView(word), Qt::CaseInsensitive) == 0)
                return true;
        }
        for (const char16_t *word : {u"false", u"no", u"off"}) {
            if (text.compare(QStringView(word), Qt::CaseInsensitive) == 0)
                return false;
        }
    }
    return numberOf(value, column) != 0;
}

QDateTime date(const QVariant &value, const ColumnInfo &column)
{
    QDateTime result;
    if (isDate(value))
        result = dateOf(value);
    else if (isTextValue(value))
        result = jet::dateFromText(value.toString()).value_or(QDateTime());
    else
        result = jet::dateFromSerial(numberOf(value, column));
    if (!result.isValid() || result.date().year() < 100 || result.date().year() > 9999)
        throwConversion(column);
    return jet::dateTime(result.date(),
                         QTime(result.time().hour(), result.time().minute(), result.time().second()));
}

QString text(const QVariant &value, const ColumnInfo &column)
{
    if (isTextValue(value))
        return value.toString();
    if (isDate(value)) {
        const QDateTime date = dateOf(value);
        return jet::formatDate(date, date.time() == QTime(0, 0) ? u"dd/mm/yyyy" : u"dd/mm/yyyy hh:nn:ss");
    }
    if (value.typeId() == QMetaType::QUuid)
        return value.toUuid().toString().toUpper();
    const double number = numberOf(value, column);
    return QString::number(number, 'g', 15);
}

QString guid(const QVariant &value, const ColumnInfo &column)
{
    const QUuid uuid =
        value.typeId() == QMetaType::QUuid ? value.toUuid() : QUuid::fromString(value.toString().trimmed());
    // The null UUID is also what a text that is none is read as.
    if (uuid.isNull() && !value.toString().contains(QLatin1String("00000000-0000-0000-0000-000000000000")))
        throwConversion(column);
    return uuid.toString().toUpper();
}

} // namespace

QVariant fieldValue(const QVariant &value, const ColumnInfo &column)
{
    const bool isNull = !value.isValid() || value.isNull() || (isDate(value) && !dateOf(value).isValid())
                        || (isTextValue(value) && value.toString().isEmpty() && column.type != FieldType::Text
                            && column.type != FieldType::Memo && column.type != FieldType::Binary);
    if (isNull)
        return column.type == FieldType::Boolean ? QVariant(false) : QVariant();
    switch (column.type) {
    case FieldType::Boolean:
        return yesNo(value, column);
    case FieldType::Byte:
        return wholeNumber(value, column, 0, 255);
    case FieldType::Integer:
        return wholeNumber(value, column, -32768, 32767);
    case FieldType::Long:
    case FieldType::AutoNumber:
        return wholeNumber(value, column, std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
    case FieldType::Currency:
        return currency(value, column);
    case FieldType::Single:
    case FieldType::Double:
        return floating(value, column);
    case FieldType::Date:
        return date(value, column);
    case FieldType::Text: {
        const QString result = text(value, column);
        if (column.size > 0 && result.size() > column.size)
            throw Error(FieldTooSmall,
                        QStringLiteral("Il campo '%1' è troppo piccolo per il testo, al massimo %2 caratteri")
                            .arg(column.name)
                            .arg(column.size));
        return result;
    }
    case FieldType::Memo:
        return text(value, column);
    case FieldType::Guid:
        return guid(value, column);
    case FieldType::Binary:
        if (value.typeId() != QMetaType::QByteArray)
            throwConversion(column);
        return value;
    case FieldType::Null:
    case FieldType::Unknown:
        break;
    }
    return value;
}

} // namespace dao
