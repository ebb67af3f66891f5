// SPDX-License-Identifier: Apache-2.0
#include "regional/SheetCriteria.h"

#include "regional/SheetData.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

enum Answer { No = 1, Yes = 2 }; // entries of the lists "non indicato / no / sì"
enum Verdict { Unknown = 0, Adequate = 1, ToReview = 2 };

constexpr double glycatedGoal = 7.0; // %
constexpr double glycatedGoalFrail = 8.0; // %
constexpr int frailAge = 75;

bool isYes(const SheetData &data, const char *name)
{
    return data.entry(QString::fromLatin1(name)) == Yes;
}

bool isNo(const SheetData &data, const char *name)
{
    return data.entry(QString::fromLatin1(name)) == No;
}

bool anyYes(const SheetData &data, std::initializer_list<const char *> names)
{
    return std::any_of(names.begin(), names.end(), [&](const char *name) { return isYes(data, name); });
}

double number(const SheetData &data, const char *name)
{
    return data.number(QString::fromLatin1(name));
}

bool isEmpty(const SheetData &data, const char *name)
{
    return data.value(QString::fromLatin1(name)).isEmpty();
}

TherapyCriteria judged(const QStringList &faults, const QStringList &findings)
{
    return {faults.isEmpty() ? Adequate : ToReview, findings + faults};
}

// 0 unknown, else 1 controlled, 2 partly, 3 not.
int asthmaControl(const SheetData &data)
{
    int yes = 0, answered = 0;
    for (const char *const symptom : {"Diurni", "Notturni", "AlBisogno", "Limitazioni"}) {
        yes += isYes(data, symptom) ? 1 : 0;
        answered += isYes(data, symptom) || isNo(data, symptom) ? 1 : 0;
    }
    if (yes >= 3)
        return 3;
    if (answered == 4)
        return yes == 0 ? 1 : 2;
    if (isEmpty(data, "Act"))
        return 0;
    const double act = number(data, "Act");
    return act >= 20 ? 1 : act >= 16 ? 2 : 3;
}

TherapyCriteria asthma(const SheetData &data)
{
    static const QStringList levels{QStringLiteral("Controllo: non valutabile."),
                                    QStringLiteral("Controllo: asma controllata."),
                                    QStringLiteral("Controllo: asma parzialmente controllata."),
                                    QStringLiteral("Controllo: asma non controllata.")};
    const int control = asthmaControl(data);
    QStringList faults;
    if (control >= 2)
        faults << QStringLiteral("Il controllo è insufficiente: verificare tecnica, aderenza e gradino.");
    if (isNo(data, "Ics") && isYes(data, "Laba"))
        faults << QStringLiteral("Beta-2 agonisti a lunga durata senza cortisonico inalatorio.");
    if (isNo(data, "Ics") && isYes(data, "Brevi"))
        faults << QStringLiteral("Solo broncodilatatori a breve durata, senza cortisonico inalatorio.");
    if (control == 0 && faults.isEmpty())
        return {Unknown, {levels[0]}};
    return judged(faults, {levels[control]});
}

enum Group { GroupA = 1, GroupB = 2, GroupE = 3 }; // entries of the list "Gruppo"

QChar groupLetter(int group)
{
    return QStringLiteral("ABE").at(group - 1);
}

TherapyCriteria copd(const SheetData &data)
{
    const int group = copdGroup(data);
    QStringList findings, faults;
    const double ratio = number(data, "Tiffeneau");
    if (ratio >= 70)
        findings
            << QStringLiteral("FEV1/FVC %1 %: l'ostruzione non è confermata.").arg(jet::numberText(ratio));
    if (group == 0)
        return {Unknown, findings << QStringLiteral("Gruppo: mancano la dispnea e il CAT.")};
    const int noted = data.entry(QStringLiteral("Gruppo"));
    findings << (noted == 0 || noted == group
                     ? QStringLiteral("Gruppo %1.").arg(groupLetter(group))
                     : QStringLiteral("Gruppo %1 secondo i dati, ma è indicato il gruppo %2.")
                           .arg(groupLetter(group), groupLetter(noted)));
    if (group == GroupA) {
        if (!anyYes(data, {"Brevi", "Laba", "Lama"}))
            faults << QStringLiteral("Nessun broncodilatatore prescritto.");
    } else if (!isYes(data, "Laba") || !isYes(data, "Lama")) {
        faults << QStringLiteral("Manca la doppia broncodilatazione (LABA e LAMA).");
    }
    const double eosinophils = number(data, "Eosinofili");
    if (isYes(data, "Ics") && eosinophils > 0 && eosinophils < 100)
        faults << QStringLiteral("Cortisonico inalatorio con eosinofili sotto 100 per µl.");
    return judged(faults, findings);
}

TherapyCriteria anyRespiratory(const SheetData &data)
{
    enum Diagnosis { Asthma = 1, Copd = 2, Both = 3 };
    const int diagnosis = data.entry(QStringLiteral("Diagnosi"));
    if (diagnosis == Copd)
        return copd(data);
    if (diagnosis != Asthma && diagnosis != Both)
        return {Unknown, {}};
    QStringList faults;
    if (isNo(data, "Ics"))
        faults << QStringLiteral("Asma senza cortisonico inalatorio.");
    if (number(data, "Riacutizzazioni") >= 2 || number(data, "Ricoveri") >= 1)
        faults << QStringLiteral("Riacutizzazioni o ricoveri nell'ultimo anno.");
    return judged(faults, {});
}

} // namespace

int copdGroup(const SheetData &data)
{
    constexpr int dyspnoeaUnknown = 5;
    if (number(data, "Riacutizzazioni") >= 2 || number(data, "Ricoveri") >= 1)
        return GroupE;
    const int dyspnoea = data.entry(QStringLiteral("Dispnea"));
    const bool known = dyspnoea != dyspnoeaUnknown;
    if ((known && dyspnoea >= 2) || number(data, "Cat") >= 10)
        return GroupB;
    return known || !isEmpty(data, "Cat") ? GroupA : 0;
}

TherapyCriteria CriteriTerapiaDiabete(const SheetData &data, int age)
{
    QStringList reasons;
    const bool isVascular = anyYes(data, {"Ischemia", "Cerebrale", "Arteriopatia"});
    if (isVascular && isNo(data, "Statine"))
        reasons << QStringLiteral("Malattia vascolare senza statina.");
    if (isVascular && isNo(data, "Antiaggreganti"))
        reasons << QStringLiteral("Malattia vascolare senza antiaggregante.");
    if (isYes(data, "Nefropatia") && isNo(data, "AceSartani"))
        reasons << QStringLiteral("Nefropatia senza ACE-inibitore o sartano.");
    if (isEmpty(data, "Glicata"))
        return {Unknown, QStringList{QStringLiteral("Manca l'emoglobina glicata.")} + reasons};
    const double glycated = number(data, "Glicata");
    const bool isFrail =
        age >= frailAge || anyYes(data, {"Ischemia", "Scompenso", "Cerebrale", "Nefropatia"});
    const double goal = isFrail ? glycatedGoalFrail : glycatedGoal;
    const bool reached = glycated <= goal;
    reasons.prepend(QStringLiteral("Emoglobina glicata %1 %, obiettivo %2 %.")
                        .arg(jet::formatNumber(glycated, u"0.0"), jet::formatNumber(goal, u"0.0")));
    return {reached ? Adequate : ToReview, reasons};
}

TherapyCriteria CriteriTerapiaMalattieRespiratorie(const SheetData &data)
{
    const QString &kind = data.layout().criteria;
    return kind == QLatin1String("asma")   ? asthma(data)
           : kind == QLatin1String("bpco") ? copd(data)
                                           : anyRespiratory(data);
}

TherapyCriteria therapyCriteria(const SheetData &data, int age)
{
    const QString &kind = data.layout().criteria;
    if (kind.isEmpty())
        return {};
    return kind == QLatin1String("diabete") ? CriteriTerapiaDiabete(data, age)
                                            : CriteriTerapiaMalattieRespiratorie(data);
}

QStringList sheetConclusions(const SheetData &data, int age)
{
    QStringList notes;
    const TherapyCriteria criteria = therapyCriteria(data, age);
    if (!criteria.reasons.isEmpty())
        notes << QStringLiteral("Criteri di terapia: ") + criteria.reasons.join(u' ');
    const auto &fields = data.layout().fields;
    for (int i = 0; i < fields.size(); ++i) {
        if (fields[i].kind == SheetFieldKind::Band)
            notes << QStringLiteral("%1: %2 (punti %3)")
                         .arg(fields[i].caption, shownValue(data, i),
                              data.value(fields[i].source.arguments.value(0)));
    }
    return notes;
}

} // namespace clivara
