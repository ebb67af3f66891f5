// SPDX-License-Identifier: Apache-2.0
#include "inputs/InputRemarks.h"

#include "chart/ResultUnits.h"
#include "inputs/CalculatorRules.h"
#include "support/PatientHeader.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

// "1.35 mg/dl del 10/11/2026", between quotes when it is not a number alone.
QString sightingText(const Sighting &sighting)
{
    const QString value = jet::numberFromText(sighting.stored)
                              ? (sighting.stored + u' ' + sighting.unit).trimmed()
                              : u'«' + sighting.stored + u'»';
    return QStringLiteral("%1 del %2").arg(value, jet::slashedDate(sighting.date));
}

QString skippedRemark(const Sighting &skipped, bool isProposed)
{
    if (!holdsNumber(skipped.stored))
        return QStringLiteral("Il più recente è senza valore: %1.").arg(sightingText(skipped));
    return (isProposed ? QStringLiteral("Il più recente è fuori dai limiti: %1.")
                       : QStringLiteral("Non proposto perché fuori dai limiti: %1."))
        .arg(sightingText(skipped));
}

QString otherCodeRemark(const Sighting &other, bool isProposed)
{
    return (isProposed ? QStringLiteral("Con il codice %1 ce n'è uno più recente: %2.")
                       : QStringLiteral("Con il codice %1 c'è: %2."))
        .arg(other.code, sightingText(other));
}

void remarkOnDate(const Proposal &proposal, QDate since, QDate today, QStringList &lines)
{
    const auto yearsAgo = [today](QDate day) {
        const int years = exactAge(day, today);
        return years > 1 ? QStringLiteral("%1 anni fa").arg(years) : QStringLiteral("più di un anno fa");
    };
    if (proposal.date.isNull())
        lines << QStringLiteral("Senza data: può essere vecchio.");
    else if (proposal.date > today)
        lines << QStringLiteral("La data è futura: %1.").arg(jet::slashedDate(proposal.date));
    else if (proposal.date < since)
        lines << QStringLiteral("È di %1.").arg(yearsAgo(proposal.date));
    // The date by which results are found is that of the request.
    if (proposal.performed.isNull() || proposal.performed == proposal.date)
        return;
    if (proposal.performed > today)
        lines << QStringLiteral("Risulta eseguito in data futura: %1.")
                     .arg(jet::slashedDate(proposal.performed));
    else if (proposal.performed < since)
        lines << QStringLiteral("Risulta eseguito il %1.").arg(jet::slashedDate(proposal.performed));
}

} // namespace

bool isSameUnit(const QString &a, const QString &b)
{
    return plainUnit(a) == plainUnit(b);
}

QString rangeRemark(double value, PlausibleRange range, const QString &unit)
{
    if (range.contains(value))
        return {};
    return QStringLiteral("Improbabile: di solito tra %1 e %2 %3.")
        .arg(jet::numberText(range.least), jet::numberText(range.most), unit);
}

QString hdlRemark(double hdlMgDl, double totalMgDl)
{
    return totalMgDl != 0 && hdlMgDl > totalMgDl
               ? QStringLiteral("L'HDL supera il colesterolo totale (%1).").arg(jet::numberText(totalMgDl))
               : QString();
}

QString friedewaldRemark(double totalMgDl, double hdlMgDl, double triglyceridesMgDl)
{
    if (triglyceridesMgDl > friedewaldTriglyceridesMgDl)
        return QStringLiteral("Oltre %1 mg/dl la formula di Friedewald non è valida.")
            .arg(jet::numberText(friedewaldTriglyceridesMgDl));
    const auto ldl = ldlMgDl(totalMgDl, hdlMgDl, triglyceridesMgDl);
    return totalMgDl != 0 && hdlMgDl != 0 && ldl && *ldl < 0
               ? QStringLiteral("Con questi valori l'LDL è negativo.")
               : QString();
}

QString pressureRemark(double systolicMmHg, double diastolicMmHg)
{
    return systolicMmHg != 0 && diastolicMmHg >= systolicMmHg
               ? QStringLiteral("La diastolica non è minore della sistolica (%1).")
                     .arg(jet::numberText(systolicMmHg))
               : QString();
}

FindingRemarks findingRemarks(const Finding &finding, const QString &unit, QDate today)
{
    FindingRemarks remarks;
    const auto &proposal = finding.proposal;
    if (proposal && !proposal->stored.isEmpty()) {
        const double read = jet::leadingNumber(proposal->text);
        const auto whole = jet::numberFromText(proposal->stored);
        // A whole number that the form rounded is not one read in part.
        if (!whole || (*whole != read && jet::roundHalfToEven(*whole) != read)) {
            remarks.lines
                << QStringLiteral("«%1» letto come %2.").arg(proposal->stored, jet::numberText(read));
            remarks.mustBeSeen = true;
        }
        if (!proposal->unit.isEmpty() && !isSameUnit(proposal->unit, unit)) {
            remarks.lines << QStringLiteral("È in %1, non in %2.").arg(proposal->unit, unit);
            remarks.mustBeSeen = true;
        }
        remarkOnDate(*proposal, finding.since.isValid() ? finding.since : recentSince(today), today,
                     remarks.lines);
    }
    if (finding.skipped)
        remarks.lines << skippedRemark(*finding.skipped, proposal.has_value());
    if (finding.otherCode)
        remarks.lines << otherCodeRemark(*finding.otherCode, proposal.has_value());
    return remarks;
}

QString dateRemark(QDate day, QDate birth, QDate today)
{
    if (!day.isValid())
        return {};
    if (day.year() < earliestPlausibleYear)
        return QStringLiteral("Anno improbabile: %1.").arg(day.year());
    if (day > today)
        return QStringLiteral("La data è futura.");
    if (birth.isValid() && day < birth)
        return QStringLiteral("La data precede la nascita (%1).").arg(jet::slashedDate(birth));
    return {};
}

QString ageAtDateRemark(QDate day, QDate birth, QDate today)
{
    const int then = day.isValid() ? exactAge(birth, day) : -1;
    const int now = exactAge(birth, today);
    if (then < 0 || now < 0 || then == now)
        return {};
    return QStringLiteral("Il %1 %2 %3 %4: Calcola usa l'età di oggi, %5.")
        .arg(jet::slashedDate(day), day < today ? QStringLiteral("aveva") : QStringLiteral("avrà"))
        .arg(then)
        .arg(then == 1 ? QStringLiteral("anno") : QStringLiteral("anni"))
        .arg(now);
}

} // namespace clivara
