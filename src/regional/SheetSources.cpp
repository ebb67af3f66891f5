// SPDX-License-Identifier: Apache-2.0
#include "regional/SheetSources.h"

#include "chart/ResultUnits.h"
#include "regional/ModEstrazDati.h"
#include "regional/SheetCriteria.h"
#include "regional/SheetData.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

struct Found {
    QString value;
    QString origin = {};
    QString refusal = {}; // why what was found is not proposed; then it has no value
};

// The record as the sources see it. What several fields come from is read once.
class Sources {
public:
    Sources(const ModEstrazDati &record, const SheetPatient &patient)
        : m_record(record)
        , m_patient(patient)
    {
    }

    using Maybe = std::optional<Found>;

    Maybe problem(const QStringList &arguments);
    Maybe drugs(const QStringList &arguments);
    Maybe smoking(const QStringList &arguments);
    Maybe diabetesType(const QStringList &arguments);
    Maybe diabetesTherapy(const QStringList &arguments);
    Maybe respiratory(const QStringList &arguments);
    Maybe chronic(const QStringList &arguments);
    Maybe exam(const QStringList &arguments);
    Maybe examDate(const QStringList &arguments);
    Maybe massIndex(const QStringList &arguments);
    Maybe weight(const QStringList &arguments);
    Maybe risk(const QStringList &arguments);
    template <qint16 Pressure::*side>
    Maybe highest(const QStringList &arguments)
    {
        return pressure(&ModEstrazDati::PressioneMassima, side, arguments);
    }
    template <qint16 Pressure::*side>
    Maybe lowest(const QStringList &arguments)
    {
        return pressure(&ModEstrazDati::PressioneMinima, side, arguments);
    }

private:
    Period window(const QString &months) const
    {
        return {m_patient.today.addMonths(-months.toInt()), m_patient.today};
    }
    bool has(const QString &icdList) const { return m_record.EsisteProblemaICD(m_patient.code, icdList); }
    bool takes(const QString &atcList, const QString &months) const
    {
        return m_record.SommaConfezioniATC(m_patient.code, atcList, window(months)) > 0;
    }
    const std::optional<LabResult> &result(const QStringList &arguments);
    // Why a result is not proposed; empty when it is.
    QString refusalOf(const LabResult &result, const QStringList &arguments) const;
    const Anthropometry &body(const QString &months);
    Maybe pressure(bool (ModEstrazDati::*read)(qint32, const Period &, Pressure &) const,
                   qint16 Pressure::*side, const QStringList &arguments) const;

    const ModEstrazDati &m_record;
    const SheetPatient &m_patient;
    QHash<QString, std::optional<LabResult>> m_results;
    QHash<QString, Anthropometry> m_bodies;
};

// A problem that is not recorded may still be there: the field stays open.
Sources::Maybe Sources::problem(const QStringList &arguments)
{
    const QString code = m_record.UltimoProblemaICD(m_patient.code, arguments.value(0));
    if (code.isEmpty())
        return std::nullopt;
    return Found{arguments.value(1, QStringLiteral("2")), QStringLiteral("Problema %1").arg(code)};
}

Sources::Maybe Sources::drugs(const QStringList &arguments)
{
    const QString &months = arguments.value(1);
    const qint32 packs = m_record.SommaConfezioniATC(m_patient.code, arguments.value(0), window(months));
    return Found{packs > 0 ? QStringLiteral("2") : QStringLiteral("1"),
                 QStringLiteral("Confezioni prescritte in %1 mesi: %2").arg(months).arg(packs)};
}

// Codes 1 to 3 are the first three entries.
Sources::Maybe Sources::smoking(const QStringList &)
{
    QDate day;
    const int code = m_record.StatoFumo(m_patient.code, day);
    if (code < 1 || code > 3)
        return std::nullopt;
    return Found{QString::number(code - 1), day.isValid()
                                                ? QStringLiteral("Anamnesi del %1").arg(jet::slashedDate(day))
                                                : QStringLiteral("Anamnesi senza data")};
}

// The fifth digit of 250.xx: 1 and 3 are type 1, 0 and 2 type 2; 249 and the diabetes of other diseases are neither.
Sources::Maybe Sources::diabetesType(const QStringList &)
{
    const QString code =
        m_record.UltimoProblemaICD(m_patient.code, QStringLiteral("249*;250*;251.8*;648.0*;775.1*"));
    if (code.isEmpty())
        return std::nullopt;
    const QString origin = QStringLiteral("Problema %1").arg(code);
    if (!code.startsWith(QLatin1String("250")))
        return Found{QStringLiteral("3"), origin};
    const QChar digit = code.size() > 5 ? code.at(5) : u'0';
    const bool isTypeOne = digit == u'1' || digit == u'3';
    return Found{isTypeOne ? QStringLiteral("1") : QStringLiteral("2"), origin};
}

// Insulins A10A, other antidiabetics A10B, both together in A10AE54 and the like; neither is a diet alone
// only for a known diabetic.
Sources::Maybe Sources::diabetesTherapy(const QStringList &arguments)
{
    const QString &months = arguments.value(0);
    const bool insulin = takes(QStringLiteral("A10A*"), months);
    const bool tablets = takes(QStringLiteral("A10B*;A10AE5#"), months);
    if (!insulin && !tablets && !has(QStringLiteral("250*")))
        return std::nullopt;
    const int entry = insulin && tablets ? 4 : insulin ? 3 : tablets ? 2 : 1;
    return Found{QString::number(entry), QStringLiteral("Prescrizioni di %1 mesi").arg(months)};
}

Sources::Maybe Sources::respiratory(const QStringList &)
{
    const bool asthma = has(QStringLiteral("493*"));
    const bool copd = has(QStringLiteral("491.2*;492*;496*"));
    if (!asthma && !copd)
        return std::nullopt;
    return Found{asthma && copd ? QStringLiteral("3")
                 : copd         ? QStringLiteral("2")
                                : QStringLiteral("1"),
                 QStringLiteral("Elenco dei problemi")};
}

// Groups of diseases; entries: not assessed, at most one, two or three, four and more.
Sources::Maybe Sources::chronic(const QStringList &arguments)
{
    int count = 0;
    for (const QString &group : arguments.value(0).split(u';'))
        count += has(group) ? 1 : 0;
    return Found{count >= 4   ? QStringLiteral("3")
                 : count >= 2 ? QStringLiteral("2")
                              : QStringLiteral("1"),
                 QStringLiteral("Gruppi di malattie nell'elenco dei problemi: %1").arg(count)};
}

const std::optional<LabResult> &Sources::result(const QStringList &arguments)
{
    const QString key = arguments.mid(0, 2).join(u',');
    const auto known = m_results.constFind(key);
    if (known != m_results.constEnd())
        return *known;
    QStringList exams;
    for (const QString &code : arguments.value(0).split(u';'))
        exams << QStringLiteral("(RIEPIL2.codice = '%1')").arg(code);
    LabResult found;
    const bool exists = m_record.UltimoEsameLab(m_patient.code, window(arguments.value(1)),
                                                u'(' + exams.join(QStringLiteral(" or ")) + u')', found);
    return *m_results.insert(key, exists ? std::optional(found) : std::nullopt);
}

QString originOf(const LabResult &result)
{
    return QStringLiteral("Risultato del %1: %2 %3")
        .arg(jet::slashedDate(result.date), jet::numberText(result.value), result.unit.trimmed())
        .trimmed();
}

QString Sources::refusalOf(const LabResult &found, const QStringList &arguments) const
{
    if (found.date > m_patient.today)
        return originOf(found) + QStringLiteral(" ha una data futura");
    const QString wanted = arguments.value(2);
    if (resultInUnit(arguments.value(0), found.value, found.unit, wanted))
        return {};
    return originOf(found)
           + (found.unit.trimmed().isEmpty() ? QStringLiteral(" è senza unità di misura")
                                             : QStringLiteral(" non si può riportare in %1").arg(wanted));
}

Sources::Maybe Sources::exam(const QStringList &arguments)
{
    const auto &found = result(arguments);
    if (!found)
        return std::nullopt;
    if (const QString refusal = refusalOf(*found, arguments); !refusal.isEmpty())
        return Found{{}, {}, refusal};
    const auto converted = resultInUnit(arguments.value(0), found->value, found->unit, arguments.value(2));
    if (converted->rule.isEmpty())
        return Found{jet::numberText(converted->value), originOf(*found)};
    return Found{jet::formatNumber(converted->value, u"0.000"),
                 QStringLiteral("%1 (%2, in %3)").arg(originOf(*found), converted->rule, arguments.value(2))};
}

// Of the result that is proposed: the date of another one says nothing.
Sources::Maybe Sources::examDate(const QStringList &arguments)
{
    const auto &found = result(arguments);
    if (!found || !refusalOf(*found, arguments).isEmpty())
        return std::nullopt;
    return Found{jet::slashedDate(found->date), originOf(*found)};
}

const Anthropometry &Sources::body(const QString &months)
{
    const auto known = m_bodies.constFind(months);
    if (known != m_bodies.constEnd())
        return *known;
    Anthropometry found;
    m_record.DatiAntropometrici(m_patient.code, window(months), found);
    return *m_bodies.insert(months, found);
}

QString originOf(const Anthropometry &body)
{
    return QStringLiteral("Misure del %1: %2 m, %3 kg")
        .arg(jet::slashedDate(body.date), jet::numberText(body.heightM), jet::numberText(body.weightKg));
}

Sources::Maybe Sources::massIndex(const QStringList &arguments)
{
    const Anthropometry &found = body(arguments.value(0));
    if (found.massIndex <= 0)
        return std::nullopt;
    return Found{jet::formatNumber(found.massIndex, u"0.0"), originOf(found)};
}

Sources::Maybe Sources::weight(const QStringList &arguments)
{
    const Anthropometry &found = body(arguments.value(0));
    if (found.weightKg <= 0)
        return std::nullopt;
    return Found{jet::numberText(found.weightKg), originOf(found)};
}

Sources::Maybe Sources::risk(const QStringList &arguments)
{
    const double fraction = m_record.UltimoRischioCardio(m_patient.code, window(arguments.value(0)));
    if (fraction <= 0)
        return std::nullopt;
    return Found{jet::formatNumber(fraction * 100, u"0.0"), QStringLiteral("Ultimo rischio calcolato")};
}

// A side that was not written down is no pressure.
Sources::Maybe Sources::pressure(bool (ModEstrazDati::*read)(qint32, const Period &, Pressure &) const,
                                 qint16 Pressure::*side, const QStringList &arguments) const
{
    Pressure found;
    if (!(m_record.*read)(m_patient.code, window(arguments.value(0)), found) || found.*side <= 0)
        return std::nullopt;
    return Found{QString::number(found.*side),
                 QStringLiteral("Pressione %1/%2 mmHg").arg(found.systolic).arg(found.diastolic)};
}

using Read = Sources::Maybe (Sources::*)(const QStringList &);

const QHash<QString, Read> &readers()
{
    static const QHash<QString, Read> names{
        {QStringLiteral("problema"), &Sources::problem},
        {QStringLiteral("farmaci"), &Sources::drugs},
        {QStringLiteral("fumo"), &Sources::smoking},
        {QStringLiteral("tipodiabete"), &Sources::diabetesType},
        {QStringLiteral("terapiadiabete"), &Sources::diabetesTherapy},
        {QStringLiteral("respiratoria"), &Sources::respiratory},
        {QStringLiteral("croniche"), &Sources::chronic},
        {QStringLiteral("esame"), &Sources::exam},
        {QStringLiteral("dataesame"), &Sources::examDate},
        {QStringLiteral("massa"), &Sources::massIndex},
        {QStringLiteral("peso"), &Sources::weight},
        {QStringLiteral("rischio"), &Sources::risk},
        {QStringLiteral("sistolicamax"), &Sources::highest<&Pressure::systolic>},
        {QStringLiteral("diastolicamax"), &Sources::highest<&Pressure::diastolic>},
        {QStringLiteral("sistolicamin"), &Sources::lowest<&Pressure::systolic>},
        {QStringLiteral("diastolicamin"), &Sources::lowest<&Pressure::diastolic>},
    };
    return names;
}

const auto criteriaSource = QStringLiteral("criteri");

} // namespace

bool isSheetSource(const QString &name)
{
    static const QStringList computed{criteriaSource, QStringLiteral("punti"), QStringLiteral("fascia"),
                                      QStringLiteral("copia")};
    return readers().contains(name) || computed.contains(name);
}

RecoveredData RecuperaDati(SheetData &data, const ModEstrazDati &record, const SheetPatient &patient)
{
    Sources sources(record, patient);
    RecoveredData recovered;
    const auto &fields = data.layout().fields;
    for (int i = 0; i < fields.size(); ++i) {
        const auto reader = readers().constFind(fields[i].source.name);
        if (reader == readers().constEnd())
            continue;
        const int failures = record.failures();
        const Sources::Maybe found = (sources.**reader)(fields[i].source.arguments);
        if (record.failures() > failures) {
            recovered.isWhole = false;
            continue;
        }
        if (!found)
            continue;
        if (!found->refusal.isEmpty()) {
            recovered.remarks
                << QStringLiteral("%1: %2, e non è ripreso.").arg(fields[i].caption, found->refusal);
            continue;
        }
        const auto value = fittedValue(fields[i], found->value);
        if (!value) {
            recovered.remarks
                << QStringLiteral("%1: %2 non entra nel campo.").arg(fields[i].caption, found->value);
            continue;
        }
        if (value->isEmpty())
            continue; // nothing but zeros is no value
        data.setValue(i, *value);
        recovered.origins.insert(i, found->origin);
    }
    const bool asksForResults = std::any_of(fields.begin(), fields.end(), [](const SheetField &field) {
        return field.source.name == QStringLiteral("esame");
    });
    const int failures = record.failures();
    if (asksForResults && !record.hasGeneralInformation(patient.code) && record.failures() == failures)
        recovered.remarks << QStringLiteral(
            "Esami di laboratorio: il paziente non ha informazioni generali, e "
            "i suoi risultati non sono ripresi.");
    AggiornaTotali(data);
    for (int i = 0; i < fields.size(); ++i) {
        if (fields[i].source.name == criteriaSource)
            data.setValue(i, QString::number(therapyCriteria(data, patient.age).entry));
    }
    return recovered;
}

QString RecoveredData::notice() const
{
    const qsizetype count = origins.size();
    QStringList told;
    if (count == 1)
        told << QStringLiteral("Un valore è ripreso dalla cartella: da verificare.");
    else if (count > 1)
        told << QStringLiteral("%1 valori sono ripresi dalla cartella: da verificare.").arg(count);
    else if (isWhole)
        told << QStringLiteral("Nella cartella non c'è niente da riprendere.");
    if (!isWhole)
        told << QStringLiteral(
            "Non è stato possibile leggere tutta la cartella: quello che manca qui può esserci.");
    return (told + remarks).join(u' ');
}

} // namespace clivara
