// SPDX-License-Identifier: Apache-2.0
#include "dao/ParameterMarks.h"

#include "jetsql/Error.h"

namespace dao::sql {
namespace {

// Characters that stand in no SQL outside quotes: two for each parameter, the second for its use as a GUID.
constexpr char16_t firstMark = 0xE000;
constexpr char16_t lastMark = 0xF8FF;

} // namespace

int ParameterMarks::find(QStringView name) const
{
    for (qsizetype i = 0; i < m_parameters.size(); ++i) {
        if (name.compare(m_parameters[i].name, Qt::CaseInsensitive) == 0)
            return int(i);
    }
    return -1;
}

QString ParameterMarks::mark(const ParameterUse &use)
{
    const int mark = firstMark + 2 * use.parameter + (use.asGuid ? 1 : 0);
    if (mark > lastMark)
        throw Error(InvalidArgument, QStringLiteral("La query ha troppi parametri"));
    m_used[use.parameter] = true;
    return QString(QChar(char16_t(mark)));
}

QList<ParameterUse> ParameterMarks::resolve(QString &sql) const
{
    QList<ParameterUse> uses;
    if (m_parameters.isEmpty())
        return uses;
    const qsizetype unused = m_used.indexOf(false);
    if (unused >= 0)
        throw Error(
            ItemNotFound,
            QStringLiteral("Il parametro non fa parte della query: '%1'").arg(m_parameters[unused].name));
    QChar quote;
    for (QChar &c : sql) {
        if (!quote.isNull()) {
            quote = c == quote ? QChar() : quote;
        } else if (c == u'\'' || c == u'"') {
            quote = c;
        } else if (c.unicode() >= firstMark && c.unicode() <= lastMark) {
            const int mark = c.unicode() - firstMark;
            uses.append({mark / 2, mark % 2 == 1});
            c = u'?';
        }
    }
    return uses;
}

} // namespace dao::sql
