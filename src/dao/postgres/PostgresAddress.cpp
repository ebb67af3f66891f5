// SPDX-License-Identifier: Apache-2.0
#include "dao/postgres/PostgresAddress.h"

#include "jetsql/Error.h"

#include <QUrl>
#include <QUrlQuery>

namespace dao {
namespace {

constexpr QLatin1String scheme("postgresql");
// An option of the program's own, which the server's library does not know.
constexpr QLatin1String answerTimeoutKey("answer_timeout");

} // namespace

bool isServerAddress(const QString &name)
{
    return name.startsWith(scheme + QLatin1String("://"), Qt::CaseInsensitive);
}

PostgresAddress PostgresAddress::parse(const QString &address)
{
    const QUrl url(address, QUrl::StrictMode);
    PostgresAddress result;
    result.user = url.userName(QUrl::FullyDecoded);
    result.password = url.password(QUrl::FullyDecoded);
    result.host = url.host();
    result.port = url.port(0);
    result.database = url.path(QUrl::FullyDecoded).mid(1);
    result.schema = url.fragment(QUrl::FullyDecoded);
    const QUrlQuery query(url);
    for (const auto &[key, value] : query.queryItems(QUrl::FullyDecoded)) {
        if (key == u"host")
            result.host = value;
        else if (key == u"port")
            result.port = value.toInt();
        else if (key == u"user")
            result.user = value;
        else if (key == u"password")
            result.password = value;
        else if (key == answerTimeoutKey)
            result.answerTimeout = value.toInt();
        else
            result.options.append({key, value});
    }
    if (!url.isValid() || result.answerTimeout < 1 || result.database.isEmpty()
        || result.database.contains(u'/'))
        throw Error(CannotFindFile,
                    QStringLiteral("L'indirizzo del database non è valido: deve avere la forma "
                                   "postgresql://server/database"));
    return result;
}

QString PostgresAddress::server() const
{
    QUrl url;
    QUrlQuery query;
    url.setScheme(scheme);
    // The folder of a socket is no name of a host.
    if (host.startsWith(u'/'))
        query.addQueryItem(QStringLiteral("host"), host);
    else
        url.setHost(host);
    if (!user.isEmpty())
        url.setUserName(user, QUrl::DecodedMode);
    if (port > 0)
        url.setPort(port);
    url.setPath(u'/' + database, QUrl::DecodedMode);
    for (const auto &[key, value] : options)
        query.addQueryItem(key, value);
    if (answerTimeout != PostgresAddress().answerTimeout)
        query.addQueryItem(answerTimeoutKey, QString::number(answerTimeout));
    if (!query.isEmpty())
        url.setQuery(query);
    // Without a host the two slashes would be lost.
    const QString text = url.toString(QUrl::FullyEncoded);
    return isServerAddress(text) ? text : QString(text).replace(scheme + u':', scheme + QLatin1String("://"));
}

QString PostgresAddress::name() const
{
    return schema.isEmpty() ? server()
                            : server() + u'#' + QString::fromLatin1(QUrl::toPercentEncoding(schema));
}

} // namespace dao
