// SPDX-License-Identifier: Apache-2.0
#include "dao/postgres/PostgresHandle.h"

#include "dao/native/NativeErrors.h"

#include <QByteArray>
#include <libpq-fe.h>
#include <vector>

namespace dao {
namespace {

// The options as two lists that end with a null.
class OptionLists {
public:
    explicit OptionLists(const PostgresOptions &options)
    {
        for (const auto &[key, value] : options) {
            m_texts.push_back(key.toUtf8());
            m_texts.push_back(value.toUtf8());
        }
        for (size_t i = 0; i < m_texts.size(); i += 2) {
            m_keys.push_back(m_texts[i].constData());
            m_values.push_back(m_texts[i + 1].constData());
        }
        m_keys.push_back(nullptr);
        m_values.push_back(nullptr);
    }
    const char *const *keys() const { return m_keys.data(); }
    const char *const *values() const { return m_values.data(); }

private:
    std::vector<QByteArray> m_texts;
    std::vector<const char *> m_keys, m_values;
};

int errorNumber(const QString &state)
{
    static const std::pair<QLatin1String, int> numbers[] = {
        {QLatin1String("23505"), DuplicateKey},     {QLatin1String("23502"), FieldRequired},
        {QLatin1String("55P03"), Locked},           {QLatin1String("40P01"), Locked},
        {QLatin1String("40001"), Locked},           {QLatin1String("57014"), Locked},
        {QLatin1String("25006"), ReadOnly},         {QLatin1String("42501"), NoPermission},
        {QLatin1String("22003"), Overflow},         {QLatin1String("22012"), DivisionByZero},
        {QLatin1String("42P01"), ObjectNotFound},   {QLatin1String("3F000"), ObjectNotFound},
        {QLatin1String("42703"), TooFewParameters}, {QLatin1String("42P07"), TableExists},
        {QLatin1String("54000"), RecordTooLarge},   {QLatin1String("53100"), DiskFull},
        {QLatin1String("58030"), DiskError},        {QLatin1String("XX001"), Corrupt},
        {QLatin1String("XX002"), Corrupt},
    };
    for (const auto &[code, number] : numbers) {
        if (state == code)
            return number;
    }
    if (state.startsWith(QLatin1String("08")) || state.startsWith(QLatin1String("57P")))
        return ConnectionLost;
    return Failed;
}

QString fieldOf(const PGresult *result, int field)
{
    const char *text = result ? PQresultErrorField(result, field) : nullptr;
    return QString::fromUtf8(text);
}

} // namespace

void FinishPostgres::operator()(PGconn *connection) const
{
    PQfinish(connection);
}

void ClearPostgresResult::operator()(PGresult *result) const
{
    PQclear(result);
}

PostgresHandle connectPostgres(const PostgresOptions &options)
{
    const OptionLists lists(options);
    PostgresHandle connection(PQconnectdbParams(lists.keys(), lists.values(), 0));
    // Nobody reads what the library would write to the standard error.
    PQsetNoticeReceiver(
        connection.get(), [](void *, const PGresult *) {}, nullptr);
    return connection;
}

int pingPostgres(const PostgresOptions &options)
{
    const OptionLists lists(options);
    return PQpingParams(lists.keys(), lists.values(), 0);
}

Error postgresError(const PGconn *connection, const PGresult *failed, const QString &sql)
{
    QString text = fieldOf(failed, PG_DIAG_MESSAGE_PRIMARY);
    if (text.isNull())
        text = QString::fromUtf8(PQerrorMessage(connection));
    text = text.trimmed();
    if (const auto function = functionError(text))
        return describedError(function->first, function->second, sql);
    const int number = errorNumber(fieldOf(failed, PG_DIAG_SQLSTATE));
    // In whatever language the server speaks, the index that a value would be twice in is named at the end.
    const QString index =
        u'"' + fieldOf(failed, PG_DIAG_CONSTRAINT_NAME).replace(u'"', QStringLiteral("\"\"")) + u'"';
    if (number == DuplicateKey && !text.endsWith(index))
        text += u' ' + index;
    return describedError(number, text, sql);
}

} // namespace dao
