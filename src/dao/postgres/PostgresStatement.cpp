// SPDX-License-Identifier: Apache-2.0
#include "dao/postgres/PostgresStatement.h"

#include "dao/postgres/PostgresTypes.h"
#include "jetsql/Error.h"

#include <QLocale>
#include <cctype>

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

// The "::type" that stands at that place; empty when there is none.
QByteArrayView typeAt(QByteArrayView sql, qsizetype at)
{
    if (!sql.sliced(at).startsWith("::"))
        return {};
    qsizetype end = at + 2;
    while (end < sql.size() && (std::isalnum(uchar(sql[end])) != 0 || sql[end] == '_'))
        ++end;
    return sql.sliced(at, end - at);
}

} // namespace

PostgresStatement::PostgresStatement(const QString &sql, const QVariantList &values)
{
    const QByteArray text = sql.toUtf8();
    if (values.isEmpty()) {
        m_sql = text;
        return;
    }
    m_sql.reserve(text.size() + 32);
    std::vector<std::pair<QByteArrayView, qsizetype>>
        typed; // by parameter: its type in the SQL, its value's position
    qsizetype next = 0;
    char quote = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (quote != 0)
            quote = c == quote ? 0 : quote;
        else if (c == '\'' || c == '"')
            quote = c;
        if (c != '?' || quote != 0) {
            m_sql += c;
            continue;
        }
        const qsizetype position = next++;
        const QVariant value = values.value(position);
        const QByteArrayView type = typeAt(text, i + 1);
        const auto same = std::find_if(typed.begin(), typed.end(), [&](const auto &other) {
            return !type.isEmpty() && other.first == type && values[other.second] == value
                   && values[other.second].typeId() == value.typeId();
        });
        const auto number = same - typed.begin();
        if (same == typed.end()) {
            typed.push_back({type, position});
            add(value);
        }
        m_sql += '$' + QByteArray::number(qlonglong(number) + 1);
    }
    for (size_t i = 0; i < m_bytes.size(); ++i)
        m_values.push_back(m_bytes[i].isNull() ? nullptr : m_bytes[i].constData());
}

void PostgresStatement::add(const QVariant &value)
{
    PostgresType type = UnknownType;
    QByteArray bytes;
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        break;
    case QMetaType::Bool:
        type = BoolType;
        bytes = value.toBool() ? QByteArrayLiteral("t") : QByteArrayLiteral("f");
        break;
    case QMetaType::Int:
    case QMetaType::LongLong: {
        const qint64 number = value.toLongLong();
        type = number == qint32(number) ? IntegerType : BigintType;
        bytes = QByteArray::number(number);
        break;
    }
    case QMetaType::Double:
        type = DoubleType;
        bytes = QByteArray::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
        break;
    case QMetaType::QByteArray:
        type = ByteaType;
        bytes = value.toByteArray();
        break;
    default:
        bytes = textOf(value);
    }
    if (value.isValid() && bytes.isNull())
        bytes = QByteArrayLiteral(""); // Null is another value
    m_bytes.push_back(bytes);
    m_types.push_back(type);
    m_lengths.push_back(int(bytes.size()));
    m_formats.push_back(type == ByteaType ? 1 : 0);
}

} // namespace dao
