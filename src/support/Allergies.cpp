// SPDX-License-Identifier: Apache-2.0
#include "support/Allergies.h"

#include <QRegularExpression>

#include <algorithm>

namespace clivara {

namespace {

// The ways to write that there are no allergies. What limits the statement is captured as "scope".
const QList<QRegularExpression> &statements()
{
    static const QList<QRegularExpression> all = [] {
        const QString one =
            QStringLiteral("(?:allergi[ae]|intolleranz[ae]|reazion[ei] (?:allergica|allergiche))");
        const QString kind = QStringLiteral(
            "(?:(?:(?:a|ad|ai|agli|verso|da|per) )?(?:farmac[oi]|medicinali|aliment[oi]|inalanti|pollini)"
            "|farmacologic(?:a|he)|medicamentos[ae]|alimentar[ei]|respiratori[ae])");
        const QString scope =
            QStringLiteral("(?<scope%1> %2(?: (?:e|ed|o|ne) %2)*)?").arg(QStringLiteral("%1"), kind);
        const QString known = QStringLiteral(
            "(?: (?:not[ae]|riferit[ae]|conosciut[ae]|documentat[ae]|segnalat[ae]|pregress[ae]))?");
        const QString subject =
            QStringLiteral("%1(?: (?:e|ed|o|ne) %1)?").arg(one) + scope.arg(1) + known + scope.arg(2);
        const QString who = QStringLiteral("(?:(?:il |la )?paziente )?");
        const QString none = QStringLiteral("(?:nessuna?|no|nega|negat[ae]|assenza di"
                                            "|non (?:ha|presenta|riferisce|riferite|segnalate|risultano))");
        QList<QRegularExpression> patterns;
        for (const QString &pattern :
             {who + none + QStringLiteral("(?: alcuna)? ") + subject,
              subject + QStringLiteral(" (?:nessuna(?: nota)?|negat[ae]|negativ[ae]|assent[ei]|no)"),
              QStringLiteral("(?:nessuna|no|nega|negat[ae]|assent[ei])"),
              who + QStringLiteral("non (?:e )?allergic[oa]") + scope.arg(1),
              QStringLiteral("anamnesi allergologica (?:negativa|muta)")})
            patterns.append(QRegularExpression(QRegularExpression::anchoredPattern(pattern)));
        return patterns;
    }();
    return all;
}

NoAllergyStatement statementOf(const QString &sentence)
{
    for (const QRegularExpression &pattern : statements()) {
        if (const auto match = pattern.match(sentence); match.hasMatch()) {
            const QStringList names = pattern.namedCaptureGroups();
            const bool isLimited = std::any_of(names.begin(), names.end(), [&](const QString &name) {
                return !name.isEmpty() && !match.captured(name).isEmpty();
            });
            return isLimited ? NoAllergyStatement::Limited : NoAllergyStatement::Whole;
        }
    }
    return NoAllergyStatement::None;
}

QString quoted(const QString &text)
{
    return u'«' + text + u'»';
}

QString tickedWords(const QStringList &allergens)
{
    if (allergens.isEmpty())
        return {};
    const QString count = allergens.size() == 1
                              ? QStringLiteral("1 allergene segnato")
                              : QStringLiteral("%1 allergeni segnati").arg(allergens.size());
    return count + QStringLiteral(": ") + allergens.join(QStringLiteral(", "));
}

QString joined(QStringList parts)
{
    parts.removeAll(QString());
    return parts.join(QStringLiteral("  ·  "));
}

QString knownWords(const Allergies &allergies)
{
    // A statement that there are none was written before the ticks, or forgotten.
    const QString text =
        allergies.text.isEmpty() || noAllergyStatement(allergies.text) == NoAllergyStatement::None
            ? allergies.text
            : QStringLiteral("in «Varie» è scritto ") + quoted(allergies.text);
    const bool isContradicted = text != allergies.text;
    return QStringLiteral("Allergie: ")
           + joined(isContradicted ? QStringList{tickedWords(allergies.allergens), text}
                                   : QStringList{text, tickedWords(allergies.allergens)});
}

} // namespace

QString plainWords(const QString &text)
{
    QString plain;
    for (const QChar character : text.normalized(QString::NormalizationForm_D).toLower()) {
        if (character.isLetterOrNumber())
            plain += character;
        else if (!character.isMark())
            plain += u' ';
    }
    return plain.simplified();
}

NoAllergyStatement noAllergyStatement(const QString &text)
{
    if (text.contains(u'?'))
        return NoAllergyStatement::None; // a question states nothing
    static const QRegularExpression ends(QStringLiteral("[.;,!\\r\\n]"));
    bool any = false;
    bool whole = false;
    for (const QString &part : text.split(ends)) {
        const QString sentence = plainWords(part);
        if (sentence.isEmpty())
            continue;
        any = true;
        switch (statementOf(sentence)) {
        case NoAllergyStatement::None:
            return NoAllergyStatement::None;
        case NoAllergyStatement::Limited:
            break;
        case NoAllergyStatement::Whole:
            whole = true;
        }
    }
    return !any ? NoAllergyStatement::None : whole ? NoAllergyStatement::Whole : NoAllergyStatement::Limited;
}

Allergies judgedAllergies(const QStringList &allergens, bool isAnswered, bool isIntact, const QString &text)
{
    Allergies allergies;
    allergies.allergens = allergens;
    allergies.isAnswered = isAnswered;
    if (!plainWords(text).isEmpty())
        allergies.text = text.simplified();
    if (!isIntact)
        allergies.state = AllergyState::Unread;
    else if (!allergens.isEmpty())
        allergies.state = AllergyState::Known;
    else if (allergies.text.isEmpty())
        allergies.state = AllergyState::NotRecorded;
    else
        allergies.state = noAllergyStatement(text) == NoAllergyStatement::None ? AllergyState::Known
                                                                               : AllergyState::NoneKnown;
    return allergies;
}

QString allergyWords(const Allergies &allergies)
{
    switch (allergies.state) {
    case AllergyState::Known:
        return knownWords(allergies);
    case AllergyState::NoneKnown:
        return (noAllergyStatement(allergies.text) == NoAllergyStatement::Whole
                    ? QStringLiteral("Nessuna allergia nota: ")
                    : QStringLiteral("Nessuna allergia nota, ma solo per quanto è scritto: "))
               + quoted(allergies.text);
    case AllergyState::NotRecorded:
        return allergies.isAnswered ? QStringLiteral("Allergie non registrate (nessun allergene è segnato)")
                                    : QStringLiteral("Allergie non registrate");
    case AllergyState::Unread:
        break;
    }
    const QString read = joined({allergies.text, tickedWords(allergies.allergens)});
    return read.isEmpty() ? QStringLiteral("Allergie non lette: possono essercene")
                          : QStringLiteral("Allergie lette solo in parte: ") + read;
}

QString allergyLine(const Allergies &allergies)
{
    switch (allergies.state) {
    case AllergyState::Known:
        return QStringLiteral("⚠ ") + allergyWords(allergies);
    case AllergyState::NoneKnown:
        return QStringLiteral("✓ ") + allergyWords(allergies);
    case AllergyState::NotRecorded:
        return QStringLiteral("? ") + allergyWords(allergies);
    case AllergyState::Unread:
        break;
    }
    return QStringLiteral("✕ ") + allergyWords(allergies);
}

} // namespace clivara
