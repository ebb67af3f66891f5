// SPDX-License-Identifier: Apache-2.0
#include "dao/postgres/PostgresParameters.h"

#include "dao/postgres/PostgresTypes.h"
#include "jetsql/Error.h"

#include <QLocale>

namespace dao {
namespace {

QByteArray textOf(const QVariant &value)
{
    const QByteArray text = value.toString().toUtf8();
    if (text.contains('\0'))
        throw Error(ConversionError,
                    QStringLiteral("Il testo contiene un carattere nullo, che il server non accetta"));
    return text;
}

} // namespace

PostgresParameters::PostgresParameters(const QVariantList &values)
{
    const auto add = [this](PostgresType type, const QByteArray &bytes, bool isBinary = false) {
        m_bytes.push_back(bytes);
        m_types.push_back(type);
        m_lengths.push_back(int(bytes.size()));
        m_formats.push_back(isBinary ? 1 : 0);
    };
    for (const QVariant &value : values) {
        switch (value.typeId()) {
        case QMetaType::UnknownType:
            add(UnknownType, {});
            break;
        case QMetaType::Bool:
            add(BoolType, value.toBool() ? QByteArrayLiteral("t") : QByteArrayLiteral("f"));
            break;
        case QMetaType::Int:
        case QMetaType::LongLong: {
            const qint64 number = value.toLongLong();
            add(number == qint32(number) ? IntegerType : BigintType, QByteArray::number(number));
            break;
        }
        case QMetaType::Double:
            add(DoubleType, QByteArray::number(value.toDouble(), 'g', QLocale::FloatingPointShortest));
            break;
        case QMetaType::QByteArray:
            add(ByteaType, value.toByteArray(), true);
            break;
        default:
            add(UnknownType, textOf(value));
        }
    }
    for (qsizetype i = 0; i < values.size(); ++i)
        m_values.push_back(values[i].isValid() ? m_bytes[size_t(i)].constData() : nullptr);
}

QByteArray PostgresParameters::numbered(const QString &sql)
{
    const QByteArray text = sql.toUtf8();
    QByteArray result;
    result.reserve(text.size() + 32);
    int number = 0;
    char quote = 0;
    for (const char c : text) {
        if (quote != 0)
            quote = c == quote ? 0 : quote;
        else if (c == '\'' || c == '"')
            quote = c;
        if (c == '?' && quote == 0)
            result += '$' + QByteArray::number(++number);
        else
            result += c;
    }
    return result;
}

} // namespace dao
