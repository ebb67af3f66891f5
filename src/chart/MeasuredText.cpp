// SPDX-License-Identifier: Apache-2.0
#include "chart/MeasuredText.h"

#include "values/JetValues.h"

#include <cmath>

namespace clivara {

QString NormalizzaNumero(QStringView text)
{
    const QStringView trimmed = text.trimmed();
    QString kept = QStringLiteral("0");
    bool hasSeparator = false;
    for (qsizetype i = 0; i < trimmed.size(); ++i) {
        const QChar c = trimmed[i];
        if ((c >= u'0' && c <= u'9') || (c == u'-' && i == 0)) {
            kept += c;
        } else if ((c == u',' || c == u'.') && !hasSeparator) {
            kept += u',';
            hasSeparator = true;
        }
    }
    return hasSeparator ? kept + u'0' : kept;
}

QString FormattaValore(QStringView text, bool wholeNumber)
{
    const double value = jet::leadingNumber(NormalizzaNumero(text).replace(u',', u'.'));
    return wholeNumber ? jet::formatNumber(std::floor(value), u"0") : jet::formatNumber(value, u"0.0");
}

} // namespace clivara
