// SPDX-License-Identifier: Apache-2.0
#include "inputs/CalculatorRecords.h"

#include "dao/Dao.h"
#include "inputs/CalculatorRules.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

std::unique_ptr<dao::Recordset> open(dao::Database &clinical, const dao::Query &query)
{
    return clinical.OpenRecordset(query, dao::RecordsetType::Snapshot, dao::RowsWanted::First);
}

} // namespace

std::optional<CalculatorPatient> readCalculatorPatient(dao::Database &clinical, qint32 patientCode)
{
    const auto row =
        open(clinical, {QStringLiteral("select sesso, data_nasc FROM Archivio WHERE (cod_paz = [patient])"),
                        {{"patient", patientCode}}});
    if (row->Eof())
        return std::nullopt;
    return CalculatorPatient{row->Fields(QStringLiteral("sesso")).text().trimmed(),
                             row->Fields(QStringLiteral("data_nasc")).date().date()};
}

std::optional<QString> cutMeasurement(dao::Database &clinical, const QString &description,
                                      const QString &examination)
{
    const auto layout =
        open(clinical, {QStringLiteral("SELECT * FROM DEFCAMPI WHERE Tiporec LIKE 'A' AND Formapp LIKE "
                                       "'EOG' and descrizione = [name]"),
                        {{"name", description}}});
    if (layout->Eof())
        return std::nullopt;
    const int offset = int(layout->Fields(QStringLiteral("offset")).number()); // from 1
    const int length = int(layout->Fields(QStringLiteral("lunghezza")).number());
    if (offset < 1 || length < 0)
        return std::nullopt;
    return examination.mid(offset - 1, length);
}

Finding readWeight(dao::Database &clinical, qint32 patientCode)
{
    const auto rows =
        open(clinical, {QStringLiteral("SELECT * FROM ESAME_OB WHERE (TIPO_DATI LIKE 'A') AND "
                                       "(COD_PAZ = [patient]) order by data_reg desc, chiave desc"),
                        {{"patient", patientCode}}});
    if (rows->Eof() || rows->Fields(QStringLiteral("dati_paz")).isNull())
        return {};
    const auto weight =
        cutMeasurement(clinical, QStringLiteral("peso"), rows->Fields(QStringLiteral("dati_paz")).text());
    if (!weight)
        return {};
    return {
        Proposal{*weight, rows->Fields(QStringLiteral("data_reg")).date().date(), weight->trimmed(), {}, {}},
        {},
        {},
        {}};
}

Finding readNewestResult(dao::Database &clinical, qint32 patientCode, const QString &examCode, QDate today)
{
    return scanResults(clinical, patientCode, examCode, recentSince(today), false,
                       [today](QDate date, const QString &stored) {
                           if (!isRecent(date, today))
                               return Scan::Stop; // and those after it are older still
                           return stored.isEmpty() ? Scan::Skip : Scan::Take;
                       });
}

Finding scanResults(dao::Database &clinical, qint32 patientCode, const QString &examCode, QDate since,
                    bool onlySince, const ResultJudge &judge)
{
    dao::Query query{{}, {{"patient", patientCode}}};
    QStringList codes;
    for (const QString &code : QStringList{examCode} + otherSpellings(examCode)) {
        const auto name = QStringLiteral("exam%1").arg(codes.size());
        codes.append(u'[' + name + u']');
        query.parameters.append({name, code});
    }
    query.sql =
        QStringLiteral("SELECT r2.*, r.* FROM riepil AS r, riepil2 AS r2 WHERE (r2.codice in (%1)) and "
                       "(r2.cod_rie = r.minsan) and (r.tipo = 1) and (r.cod_paz = [patient])")
            .arg(codes.join(u','));
    if (onlySince) {
        query.sql += QStringLiteral(" and (r.da_pre >= [since])");
        query.parameters.append({"since", since});
    }
    // Of results of the same day the one with the higher key is the newest.
    query.sql += QStringLiteral(" ORDER BY r.da_pre DESC, r.cod_pre DESC, r2.idriepil2 DESC");
    const auto text = [](dao::Recordset &rows, const QString &field) {
        return rows.Fields(field).text().trimmed();
    };
    Finding finding;
    finding.since = since;
    for (const auto rows = open(clinical, query); !rows->Eof(); rows->MoveNext()) {
        const Sighting seen{text(*rows, QStringLiteral("unita")), text(*rows, QStringLiteral("unita_Mis")),
                            rows->Fields(QStringLiteral("da_pre")).date().date(),
                            text(*rows, QStringLiteral("codice"))};
        if (!jet::sameText(seen.code, examCode)) {
            if (!finding.otherCode && seen.date >= since && holdsNumber(seen.stored))
                finding.otherCode = seen;
            continue;
        }
        const Scan scan = judge(seen.date, seen.stored);
        if (scan == Scan::Skip) {
            if (!finding.skipped && !seen.stored.isEmpty())
                finding.skipped = seen;
            continue;
        }
        if (scan == Scan::Take) {
            finding.proposal = {jet::numberText(jet::leadingNumber(seen.stored)), seen.date, seen.stored,
                                seen.unit, rows->Fields(QStringLiteral("data_eff")).date().date()};
            // What is of the same day is the same exam.
            if (finding.otherCode && finding.otherCode->date <= seen.date)
                finding.otherCode.reset();
        }
        break;
    }
    return finding;
}

} // namespace clivara
