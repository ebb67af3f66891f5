// SPDX-License-Identifier: Apache-2.0
#include "regional/SheetData.h"

#include "regional/SheetDates.h"
#include "values/JetValues.h"

#include <algorithm>

namespace clivara {

namespace {

bool isDigits(QStringView text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

bool hasPoints(const SheetField &field)
{
    return std::any_of(field.entries.begin(), field.entries.end(),
                       [](const SheetEntry &entry) { return entry.points.has_value(); });
}

std::optional<QString> packedNumber(const SheetField &field, const QString &value)
{
    const auto number = jet::numberFromText(QString(value).replace(u',', u'.'));
    if (!number || *number < 0)
        return std::nullopt;
    QString pattern = field.pattern;
    const qsizetype separator = std::max(pattern.indexOf(u'.'), pattern.indexOf(u','));
    const QString decimals = separator < 0 ? QString() : u'.' + pattern.mid(separator + 1);
    QString text = jet::formatNumber(*number, u'0' + decimals);
    if (text.size() > field.width)
        return std::nullopt;
    if (pattern.contains(u','))
        text.replace(u'.', u',');
    return text.rightJustified(field.width, u'0');
}

// "07.2" to "7.2", "07,2" to "7.2"; empty for a field without a value. Nothing when the piece is no such number.
std::optional<QString> unpackedNumber(const SheetField &field, const QString &piece)
{
    if (piece == field.blank || piece.trimmed().isEmpty())
        return QString();
    for (qsizetype i = 0; i < piece.size(); ++i) {
        const bool isDigit = piece.at(i) >= u'0' && piece.at(i) <= u'9';
        if (field.pattern.at(i) == u'0' ? !isDigit : piece.at(i) != field.pattern.at(i))
            return std::nullopt;
    }
    return jet::numberText(jet::leadingNumber(QString(piece).replace(u',', u'.')));
}

std::optional<QString> unpackedDate(const QString &piece)
{
    if (piece.trimmed().isEmpty() || piece.count(u'0') == piece.size())
        return QString();
    if (!isDigits(piece) || !StrDatawoBars2Data(piece).isValid())
        return std::nullopt;
    return StrData2wBars(piece);
}

std::optional<QString> unpackedField(const SheetField &field, const QString &piece)
{
    switch (field.kind) {
    case SheetFieldKind::List:
    case SheetFieldKind::Band:
        if (!isDigits(piece) || piece.toInt() >= field.entries.size())
            return std::nullopt;
        return piece;
    case SheetFieldKind::Number:
        return unpackedNumber(field, piece);
    case SheetFieldKind::Date:
        return unpackedDate(piece);
    case SheetFieldKind::Total:
        return isDigits(piece) ? std::optional(QString::number(piece.toInt())) : std::nullopt;
    case SheetFieldKind::Text: {
        qsizetype end = piece.size();
        while (end > 0 && piece.at(end - 1) == u' ')
            --end;
        return piece.left(end);
    }
    case SheetFieldKind::Copy: // compared with its number when all are read
    case SheetFieldKind::Mark:
        return QString();
    case SheetFieldKind::Kept:
        break;
    }
    return piece;
}

// The piece of a copy: its number's value, or empty where that does not fit.
QString packedCopy(const SheetField &copy, const SheetData &data)
{
    const QString value = data.value(copy.source.arguments.value(0));
    return value.isEmpty() ? copy.blank : packedNumber(copy, value).value_or(copy.blank);
}

ReadSheet notA(const SheetField &field, const QString &piece)
{
    return {std::nullopt, QStringLiteral("«%1» al carattere %2 non è un valore di «%3»")
                              .arg(piece, QString::number(field.position), field.caption)};
}

// The value of an empty field.
QString emptyValue(const SheetField &field)
{
    return *unpackedField(field, field.blank);
}

int totalOf(const SheetData &data, const QString &group)
{
    int total = 0;
    const SheetLayout &layout = data.layout();
    for (int i = 0; i < layout.fields.size(); ++i) {
        const SheetField &field = layout.fields[i];
        if (field.kind == SheetFieldKind::List && (group == QLatin1String("*") || field.group == group))
            total += field.entries.value(data.value(i).toInt()).points.value_or(0);
    }
    return total;
}

// The last entry that the total reaches; the first one, without points, while something is not assessed.
int bandOf(const SheetField &field, int total, bool complete)
{
    int band = 0;
    for (int i = 0; complete && i < field.entries.size(); ++i) {
        if (field.entries[i].points && total >= *field.entries[i].points)
            band = i;
    }
    return band;
}

} // namespace

SheetData::SheetData(const SheetLayout &layout)
    : m_layout(&layout)
{
    for (const SheetField &field : layout.fields)
        m_values.append(emptyValue(field));
}

QString SheetData::value(const QString &name) const
{
    const int field = m_layout->indexOf(name);
    return field < 0 ? QString() : m_values[field];
}

int SheetData::entry(const QString &name) const
{
    return value(name).toInt();
}

double SheetData::number(const QString &name) const
{
    return jet::leadingNumber(value(name).replace(u',', u'.'));
}

std::optional<QString> packedField(const SheetField &field, const QString &value)
{
    switch (field.kind) {
    case SheetFieldKind::List:
    case SheetFieldKind::Band:
        return value.isEmpty() ? field.blank : value;
    case SheetFieldKind::Number:
        return value.trimmed().isEmpty() ? field.blank : packedNumber(field, value);
    case SheetFieldKind::Date: {
        if (value.isEmpty())
            return field.blank;
        const QString piece = StrData2woBars(value);
        if (piece.size() != field.width || StrData2wBars(piece) != value
            || !StrDatawoBars2Data(piece).isValid())
            return std::nullopt;
        return piece;
    }
    case SheetFieldKind::Total:
        return value.rightJustified(field.width, u'0');
    case SheetFieldKind::Text:
        return value.leftJustified(field.width, u' ', true);
    case SheetFieldKind::Mark:
        return field.blank;
    case SheetFieldKind::Copy:
    case SheetFieldKind::Kept:
        break;
    }
    return value;
}

std::optional<QString> fittedValue(const SheetField &field, const QString &value)
{
    const auto piece = packedField(field, value);
    return piece ? unpackedField(field, *piece) : std::nullopt;
}

QString CreaStringaDati(const SheetData &data)
{
    const SheetLayout &layout = data.layout();
    QString text(layout.length, u' ');
    for (int i = 0; i < layout.fields.size(); ++i) {
        const SheetField &field = layout.fields[i];
        text.replace(field.position - 1, field.width,
                     field.kind == SheetFieldKind::Copy
                         ? packedCopy(field, data)
                         : packedField(field, data.value(i)).value_or(field.blank));
    }
    return text;
}

ReadSheet readSheetString(const SheetLayout &layout, const QString &stored, SheetAuthor author)
{
    if (stored.isEmpty())
        return {std::nullopt, QStringLiteral("i dati mancano")};
    const bool isEarlier = layout.earlierLength > 0 && stored.size() == layout.earlierLength;
    if (stored.size() != layout.length && !isEarlier)
        return {
            std::nullopt,
            QStringLiteral("i dati hanno %1 caratteri invece di %2").arg(stored.size()).arg(layout.length)};
    SheetData data(layout);
    for (int i = 0; i < layout.fields.size(); ++i) {
        const SheetField &field = layout.fields[i];
        if (field.position > stored.size())
            continue;
        const QString piece = stored.mid(field.position - 1, field.width);
        const auto value = unpackedField(field, piece);
        if (!value || (field.kind == SheetFieldKind::Mark && piece != field.blank))
            return notA(field, piece);
        data.setValue(i, *value);
    }
    for (const SheetField &field : layout.fields) {
        if (field.kind != SheetFieldKind::Copy)
            continue;
        const QString piece = stored.mid(field.position - 1, field.width);
        const int number = layout.indexOf(field.source.arguments.value(0));
        const auto value = unpackedNumber(field, piece);
        if (!value)
            return notA(field, piece);
        if (isEarlier)
            data.setValue(number, *value);
        else if (packedCopy(field, data) != piece) // another program has written one of the two
            return notA(field, piece);
    }
    if (isEarlier && author == SheetAuthor::Marked)
        return {std::nullopt, QStringLiteral("il segno di questo programma manca"), true};
    return {data, {}};
}

void AggiornaTotali(SheetData &data)
{
    const SheetLayout &layout = data.layout();
    for (int i = 0; i < layout.fields.size(); ++i) {
        if (layout.fields[i].kind == SheetFieldKind::Total)
            data.setValue(i, QString::number(totalOf(data, layout.fields[i].source.arguments.value(0))));
    }
    const bool complete = unassessedItems(data) == 0;
    for (int i = 0; i < layout.fields.size(); ++i) {
        const SheetField &field = layout.fields[i];
        if (field.kind == SheetFieldKind::Band) {
            const int total = data.value(field.source.arguments.value(0)).toInt();
            data.setValue(i, QString::number(bandOf(field, total, complete)));
        }
    }
}

int unassessedItems(const SheetData &data)
{
    int count = 0;
    const SheetLayout &layout = data.layout();
    for (int i = 0; i < layout.fields.size(); ++i) {
        const SheetField &field = layout.fields[i];
        if (field.kind == SheetFieldKind::List && hasPoints(field)
            && !field.entries.value(data.value(i).toInt()).points)
            ++count;
    }
    return count;
}

QString shownValue(const SheetData &data, int field)
{
    const SheetField &described = data.layout().fields[field];
    const bool isChoice = described.kind == SheetFieldKind::List || described.kind == SheetFieldKind::Band;
    return isChoice ? described.entries.value(data.value(field).toInt()).text : data.value(field);
}

} // namespace clivara
