// SPDX-License-Identifier: Apache-2.0
#include "regional/ModEstrazDati.h"

#include "chart/MeasuredText.h"
#include "support/Log.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

constexpr int smokingPlace = 95; // characters 96 and 97 of the questionnaire
constexpr int smokingLength = 2;
constexpr int smokes = 3; // the highest of the codes that are a statement

// The first and the last second of a day; of no day, of the day zero.
QDateTime since(QDate day)
{
    return day.isValid() ? jet::dateTime(day) : jet::zeroDate();
}

QDateTime until(QDate day)
{
    return jet::dateTime(since(day).date(), QTime(23, 59, 59));
}

// The bounds of a period that may be open, as conditions that follow others.
void addOpenBounds(dao::Query &query, const QString &field, const Period &period)
{
    if (period.from.isValid()) {
        query.sql += QStringLiteral(" and (%1>=[since])").arg(field);
        query.parameters.append({"since", since(period.from)});
    }
    if (period.to.isValid()) {
        query.sql += QStringLiteral(" and (%1<=[until])").arg(field);
        query.parameters.append({"until", until(period.to)});
    }
}

// "((f like [item0]) or (f like [item1]))". False, and nothing is added, without an item.
bool addAnyLike(dao::Query &query, const QString &field, const QString &list)
{
    QStringList terms;
    for (const QString &item : list.split(u';', Qt::SkipEmptyParts)) {
        const auto name = QStringLiteral("item%1").arg(terms.size());
        terms += QStringLiteral("(%1 like [%2])").arg(field, name);
        query.parameters.append({name, item});
    }
    query.sql += u'(' + terms.join(QStringLiteral(" or ")) + u')';
    return !terms.isEmpty();
}

dao::Query laboratoryQuery(qint32 patient, const Period &period, const QString &condition)
{
    return {QStringLiteral("SELECT DISTINCTROW ARCHIVIO.COD_PAZ, RIEPIL.*, RIEPIL2.* "
                           "FROM ((ARCHIVIO INNER JOIN INF_GEN ON ARCHIVIO.COD_PAZ = INF_GEN.COD_PAZ) "
                           "INNER JOIN RIEPIL ON ARCHIVIO.COD_PAZ = RIEPIL.COD_PAZ) "
                           "INNER JOIN RIEPIL2 ON RIEPIL.MINSAN = RIEPIL2.COD_RIE "
                           "WHERE (ARCHIVIO.COD_PAZ = [patient]) AND (RIEPIL.TIPO<>0) AND (RIEPIL.TIPO<20) "
                           "AND (RIEPIL.da_pre >= [since]) AND (RIEPIL.da_pre <= [until]) "
                           "AND (not isnull(RIEPIL2.unita)) AND ")
                + condition
                + QStringLiteral(" ORDER BY RIEPIL.da_pre desc, RIEPIL.COD_PRE desc, RIEPIL2.idriepil2 desc"),
            {{"patient", patient}, {"since", since(period.from)}, {"until", until(period.to)}}};
}

// Nothing without an item.
std::optional<dao::Query> problemQuery(qint32 patient, const QString &icdList, const QString &condition)
{
    dao::Query query{QStringLiteral("SELECT * from problems p where (p.cod_paz=[patient]) AND (not "
                                    "isnull(p.CodICDSospetto)) AND (len(p.CodICDSospetto)>0) AND "),
                     {{"patient", patient}}};
    if (!addAnyLike(query, QStringLiteral("p.CodICDSospetto"), icdList))
        return std::nullopt;
    if (!condition.isEmpty())
        query.sql += QStringLiteral(" AND (") + condition + u')';
    return query;
}

// The whole of a text as a number, with a decimal comma or point.
std::optional<double> measuredNumber(QString text)
{
    return jet::numberFromText(text.replace(u',', u'.'));
}

double measuredAt(const QString &text, int place, int length)
{
    return jet::leadingNumber(FormattaValore(QStringView(text).mid(place, length), false));
}

dao::Field field(dao::Recordset &rows, const char *name)
{
    return rows.Fields(QString::fromLatin1(name));
}

qint16 pressureOf(const dao::Field &field)
{
    return jet::toInteger(field.number()).value_or(0); // Null is 0
}

} // namespace

template <typename Read>
bool ModEstrazDati::readRows(const char *routine, const dao::Query &query, Read read) const
{
    try {
        const auto rows = m_clinical.OpenRecordset(query, dao::RecordsetType::Snapshot);
        if (rows->Eof())
            return false;
        read(*rows);
        return true;
    } catch (const dao::Error &error) {
        ++m_failures;
        m_log.write(
            QStringLiteral("ModEstrazDati.%1 - Error %2 - ").arg(QLatin1String(routine)).arg(error.number())
            + error.text());
        return false;
    }
}

int ModEstrazDati::ContaPrescrizioniOspedaliere(qint32 patient, const Period &period,
                                                const QString &condition) const
{
    dao::Query query{
        QStringLiteral("SELECT r.*, SUGGERIT.* "
                       "FROM RIEPIL as r INNER JOIN SUGGERIT ON r.COD_PRE = SUGGERIT.COD_PRE "
                       "WHERE (((r.COD_PAZ)=[patient]) AND ((r.TIPO)=8) AND (SUGGERIT.OSPEDAL)) "),
        {{"patient", patient}}};
    addOpenBounds(query, QStringLiteral("r.da_pre"), period);
    if (!condition.isEmpty())
        query.sql += QStringLiteral(" and ( ") + condition + QStringLiteral(" ) ");
    query.sql += QStringLiteral(" ORDER BY r.da_pre");
    int count = 0;
    readRows("ContaPrescrizioniOspedaliere", query,
             [&](const dao::Recordset &rows) { count = rows.RecordCount(); });
    return count;
}

qint32 ModEstrazDati::sumPacks(const char *routine, qint32 patient, const QString &field, const QString &list,
                               const Period &period) const
{
    dao::Query query{
        QStringLiteral("SELECT sum(r.num_conf) AS numatc1 FROM riepil r, spefar s "
                       "WHERE (r.cod_paz = [patient]) and (r.tipo=0) and (r.minsan=s.codspe) and "),
        {{"patient", patient}}};
    if (!addAnyLike(query, field, list))
        return 0;
    addOpenBounds(query, QStringLiteral("r.da_pre"), period);
    qint32 sum = 0;
    readRows(routine, query, [&](dao::Recordset &rows) {
        sum = jet::toLong(rows.Fields(QStringLiteral("numatc1")).number()).value_or(0); // Null is 0
    });
    return sum;
}

qint32 ModEstrazDati::SommaConfezioniATC(qint32 patient, const QString &atcList, const Period &period) const
{
    return sumPacks("SommaConfezioniATC", patient, QStringLiteral("s.atc"), atcList, period);
}

qint32 ModEstrazDati::SommaConfezioniCodSan(qint32 patient, const QString &codeList,
                                            const Period &period) const
{
    return sumPacks("SommaConfezioniCodSan", patient, QStringLiteral("s.codsan"), codeList, period);
}

double ModEstrazDati::UltimoRischioCardio(qint32 patient, const Period &period) const
{
    double risk = 0;
    dao::Query query{QStringLiteral("SELECT rc.* from Rischio_Cardio rc where (rc.cod_paz=[patient])"),
                     {{"patient", patient}}};
    addOpenBounds(query, QStringLiteral("data_val"), period);
    query.sql += QStringLiteral(" ORDER by data_val desc");
    readRows("UltimoRischioCardio", query,
             [&](dao::Recordset &rows) { risk = field(rows, "pct_rischio").number(); });
    return risk;
}

bool ModEstrazDati::UltimoEsameLab(qint32 patient, const Period &period, const QString &condition,
                                   LabResult &result) const
{
    result = {};
    bool found = false;
    readRows("UltimoEsameLab", laboratoryQuery(patient, period, condition), [&](dao::Recordset &rows) {
        const dao::Field value = field(rows, "unita"), measured = field(rows, "data_eff"),
                         asked = field(rows, "da_pre");
        for (; !rows.Eof(); rows.MoveNext()) {
            const auto number = measuredNumber(value.text());
            if (!number)
                continue;
            const QDate day = measured.date().date();
            result = {*number, day.isValid() ? day : asked.date().date(), field(rows, "risposta").text(),
                      field(rows, "unita_Mis").text()};
            found = true;
            return;
        }
    });
    return found;
}

bool ModEstrazDati::EsisteEsameLab(qint32 patient, const Period &period, const QString &condition) const
{
    return readRows("EsisteEsameLab", laboratoryQuery(patient, period, condition),
                    [](const dao::Recordset &) {});
}

bool ModEstrazDati::DatiAntropometrici(qint32 patient, const Period &period, Anthropometry &result) const
{
    result = {};
    const dao::Query query{
        QStringLiteral("SELECT * FROM ESAME_OB WHERE (TIPO_DATI LIKE 'A') AND (COD_PAZ = [patient]) "
                       "and (data_reg>=[since]) and (data_reg<=[until]) "
                       "order by data_reg desc, chiave desc"),
        {{"patient", patient}, {"since", since(period.from)}, {"until", until(period.to)}}};
    readRows("DatiAntropometrici", query, [&](dao::Recordset &rows) {
        const dao::Field packed = field(rows, "dati_paz"), day = field(rows, "data_reg");
        for (; !rows.Eof() && (result.heightM == 0 || result.weightKg == 0); rows.MoveNext()) {
            const QString text = packed.text();
            const double height = measuredAt(text, 0, 3) / 100;
            const double weight = measuredAt(text, 3, 5);
            const bool newHeight = result.heightM == 0 && height != 0;
            const bool newWeight = result.weightKg == 0 && weight != 0;
            if (newHeight)
                result.heightM = height;
            if (newWeight)
                result.weightKg = weight;
            if (newHeight || newWeight)
                result.date = day.date().date();
        }
    });
    if (result.heightM > 0 && result.weightKg > 0)
        result.massIndex = result.weightKg / (result.heightM * result.heightM);
    return result.heightM != 0 || result.weightKg != 0;
}

bool ModEstrazDati::firstPressure(const char *routine, qint32 patient, const Period &period,
                                  const QString &order, Pressure &result) const
{
    result = {};
    // Both bounds are midnights.
    const dao::Query query{
        QStringLiteral("SELECT * FROM esa_ob WHERE (cod_paz = [patient]) and (data_ob>=[since]) "
                       "and (data_ob<=[until]) ORDER BY ")
            + order,
        {{"patient", patient}, {"since", since(period.from)}, {"until", since(period.to)}}};
    return readRows(routine, query, [&](dao::Recordset &rows) {
        result = {pressureOf(field(rows, "presmax")), pressureOf(field(rows, "presmin"))};
    });
}

bool ModEstrazDati::PressioneMassima(qint32 patient, const Period &period, Pressure &result) const
{
    return firstPressure("PressioneMassima", patient, period, QStringLiteral("presmax DESC, presmin DESC"),
                         result);
}

bool ModEstrazDati::PressioneMinima(qint32 patient, const Period &period, Pressure &result) const
{
    return firstPressure("PressioneMinima", patient, period, QStringLiteral("presmax ASC, presmin ASC"),
                         result);
}

bool ModEstrazDati::hasGeneralInformation(qint32 patient) const
{
    return readRows(
        "hasGeneralInformation",
        {QStringLiteral("SELECT cod_paz FROM inf_gen WHERE (cod_paz = [patient])"), {{"patient", patient}}},
        [](const dao::Recordset &) {});
}

bool ModEstrazDati::EsisteProblemaICD(qint32 patient, const QString &icdList, const QString &condition) const
{
    const auto query = problemQuery(patient, icdList, condition);
    return query && readRows("EsisteProblemaICD", *query, [](const dao::Recordset &) {});
}

QString ModEstrazDati::UltimoProblemaICD(qint32 patient, const QString &icdList,
                                         const QString &condition) const
{
    QString code;
    auto query = problemQuery(patient, icdList, condition);
    if (!query)
        return code;
    query->sql += QStringLiteral(" order by DataApertura desc, idProblems desc");
    readRows("UltimoProblemaICD", *query,
             [&](dao::Recordset &rows) { code = field(rows, "CodICDSospetto").text(); });
    return code;
}

int ModEstrazDati::StatoFumo(qint32 patient, QDate &date) const
{
    date = {};
    int code = 0;
    readRows("StatoFumo",
             {QStringLiteral("SELECT * FROM Esame_OB WHERE (cod_paz = [patient]) AND (tipo_dati = 'H') "
                             "order by data_reg desc, chiave desc"),
              {{"patient", patient}}},
             [&](dao::Recordset &rows) {
                 const QString text = field(rows, "dati_paz").text();
                 code = int(jet::leadingNumber(QStringView(text).mid(smokingPlace, smokingLength)));
                 if (code >= 1 && code <= smokes)
                     date = field(rows, "data_reg").date().date();
             });
    return code;
}

} // namespace clivara
