// SPDX-License-Identifier: Apache-2.0
#include "dao/ParameterMarks.h"

#include "jetsql/Error.h"

namespace dao::sql {
namespace {

// Characters that stand in no SQL outside quotes: two for each parameter, the second for its use as a GUID.
constexpr char16_t firstMark = 0xE000;
constexpr char16_t lastMark = 0xF8FF;

} // namespace

QString parameterMark(const ParameterUse &use)
{
    const int mark = firstMark + 2 * use.parameter + (use.asGuid ? 1 : 0);
    if (mark > lastMark)
        throw Error(InvalidArgument, QStringLiteral("La query ha troppi parametri"));
    return QString(QChar(char16_t(mark)));
}

QList<ParameterUse> resolveParameterMarks(QString &sql)
{
    QList<ParameterUse> uses;
    QChar quote;
    for (qsizetype i = 0; i < sql.size(); ++i) {
        const QChar c = std::as_const(sql)[i];
        if (!quote.isNull()) {
            quote = c == quote ? QChar() : quote;
        } else if (c == u'\'' || c == u'"') {
            quote = c;
        } else if (c.unicode() >= firstMark && c.unicode() <= lastMark) {
            const int mark = c.unicode() - firstMark;
            uses.append({mark / 2, mark % 2 == 1});
            sql[i] = u'?';
        }
    }
    return uses;
}

} // namespace dao::sql
