// SPDX-License-Identifier: Apache-2.0
#include "calculators/CalculatorRecords.h"

#include "calculators/CalculatorRules.h"
#include "data/engine/Dao.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

std::unique_ptr<dao::Recordset> open(dao::Database &clinical, const QString &sql)
{
    return clinical.OpenRecordset(sql, dao::RecordsetType::Snapshot, dao::RowsWanted::First);
}

} // namespace

std::optional<CalculatorPatient> readCalculatorPatient(dao::Database &clinical, qint32 patientCode)
{
    const auto row = open(clinical, QStringLiteral("select sesso, data_nasc FROM Archivio WHERE (cod_paz = ")
                                        + QString::number(patientCode) + QStringLiteral(")"));
    if (row->Eof())
        return std::nullopt;
    return CalculatorPatient{row->Fields(QStringLiteral("sesso")).text().trimmed(),
                             row->Fields(QStringLiteral("data_nasc")).date().date()};
}

std::optional<QString> cutMeasurement(dao::Database &clinical, const QString &description,
                                      const QString &examination)
{
    const auto layout =
        open(clinical, QStringLiteral("SELECT * FROM DEFCAMPI WHERE Tiporec LIKE 'A' AND Formapp LIKE "
                                      "'EOG' and descrizione like '")
                           + description + u'\'');
    if (layout->Eof())
        return std::nullopt;
    const int offset = int(layout->Fields(QStringLiteral("offset")).number()); // from 1
    const int length = int(layout->Fields(QStringLiteral("lunghezza")).number());
    if (offset < 1 || length < 0)
        return std::nullopt;
    return examination.mid(offset - 1, length);
}

std::optional<Proposal> readWeight(dao::Database &clinical, qint32 patientCode)
{
    const auto rows =
        open(clinical, QStringLiteral("SELECT * FROM ESAME_OB WHERE (TIPO_DATI LIKE 'A') AND (COD_PAZ = ")
                           + QString::number(patientCode)
                           + QStringLiteral(") order by data_reg desc, chiave desc"));
    if (rows->Eof() || rows->Fields(QStringLiteral("dati_paz")).isNull())
        return std::nullopt;
    const auto weight =
        cutMeasurement(clinical, QStringLiteral("peso"), rows->Fields(QStringLiteral("dati_paz")).text());
    if (!weight)
        return std::nullopt;
    return Proposal{*weight, rows->Fields(QStringLiteral("data_reg")).date().date(), weight->trimmed()};
}

std::optional<Proposal> readNewestResult(dao::Database &clinical, qint32 patientCode, const QString &examCode,
                                         QDate today)
{
    return scanResults(clinical, patientCode, examCode, {}, [today](QDate date, const QString &stored) {
        if (!isRecent(date, today))
            return Scan::Stop; // and those after it are older still
        return stored.isEmpty() ? Scan::Skip : Scan::Take;
    });
}

std::optional<Proposal> scanResults(dao::Database &clinical, qint32 patientCode, const QString &examCode,
                                    QDate since, const ResultJudge &judge)
{
    QString sql = QStringLiteral("SELECT r2.*, r.* FROM riepil AS r, riepil2 AS r2 WHERE (r2.codice = '")
                  + examCode
                  + QStringLiteral("') and (r2.cod_rie = r.minsan) and (r.tipo = 1) and (r.cod_paz =  ")
                  + QString::number(patientCode);
    if (since.isValid())
        sql += QStringLiteral(") and (r.da_pre >= CDATE('%1')").arg(jet::slashedDate(since));
    // Of results of the same day the one with the higher key is the newest.
    sql += QStringLiteral(") ORDER BY r.da_pre DESC, r.cod_pre DESC, r2.idriepil2 DESC");
    for (const auto rows = open(clinical, sql); !rows->Eof(); rows->MoveNext()) {
        const QDate date = rows->Fields(QStringLiteral("da_pre")).date().date();
        const QString stored = rows->Fields(QStringLiteral("unita")).text().trimmed();
        switch (judge(date, stored)) {
        case Scan::Take:
            return Proposal{jet::numberText(jet::leadingNumber(stored)), date, stored};
        case Scan::Stop:
            return std::nullopt;
        case Scan::Skip:
            break;
        }
    }
    return std::nullopt;
}

} // namespace clivara
