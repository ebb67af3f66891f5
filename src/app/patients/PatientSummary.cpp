// SPDX-License-Identifier: Apache-2.0
#include "app/patients/PatientSummary.h"

#include <QRegularExpression>

#include <array>

namespace orvale {

namespace {

struct RangeWords {
    RangeMark mark;
    QRegularExpression words;
};

// What a text as a whole or in its beginning says; the first that fits counts.
const std::array<RangeWords, 4> &rangeTexts()
{
    const auto folded = [](const char *pattern) {
        return QRegularExpression(QLatin1String(pattern), QRegularExpression::CaseInsensitiveOption);
    };
    static const std::array<RangeWords, 4> texts{
        RangeWords{RangeMark::Above, folded("^(?:valore )?(?:superiore|al di sopra|sopra|oltre|maggiore)\\b.*"
                                            "(?:riferimento|norma|limit[ei])")},
        // What lies below the limit of the method ("inferiore al limite di rilevabilità") is not abnormal.
        RangeWords{RangeMark::Below, folded("^(?!.*limit[ei] (?:\\w+ ){0,2}"
                                            "(?:rileva|rivela|quantific|determina|misura|metod|sensibil))"
                                            "(?:valore )?(?:inferiore|al di sotto|sotto|minore)\\b.*"
                                            "(?:riferimento|norma|limit[ei])")},
        RangeWords{RangeMark::Beyond, folded("^(?:valore )?(?:patologic[oa]|alterat[oa]|anormale|fuori norma|"
                                             "fuori range|fuori dai? limiti)\\b")},
        RangeWords{RangeMark::Beyond, folded("^\\*+$")},
    };
    return texts;
}

RangeMark markOf(const QString &text)
{
    for (const RangeWords &each : rangeTexts()) {
        if (each.words.match(text.simplified()).hasMatch())
            return each.mark;
    }
    return RangeMark::None;
}

} // namespace

RangeMark rangeMark(const QString &report, const QString &verdict)
{
    const RangeMark reported = markOf(report);
    const RangeMark judged = markOf(verdict);
    // The one that tells the side says more.
    return reported == RangeMark::None || (reported == RangeMark::Beyond && judged != RangeMark::None)
               ? judged
               : reported;
}

QString rangeWords(const QString &report, const QString &verdict)
{
    QStringList words;
    for (const QString &text : {verdict, report}) {
        if (markOf(text) != RangeMark::None)
            words.append(u'«' + text.simplified() + u'»');
    }
    return words.join(QStringLiteral(", "));
}

bool isMeasured(const QString &value)
{
    static const QRegularExpression number(QStringLiteral("^[<>≤≥]?=?\\s*[+-]?\\d+(?:[.,]\\d+)?$"));
    return number.match(value.trimmed()).hasMatch();
}

} // namespace orvale
