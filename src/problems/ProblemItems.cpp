// SPDX-License-Identifier: Apache-2.0
#include "problems/ProblemItems.h"

#include "data/Connection.h"
#include "host/working_state/WorkingState.h"
#include "problems/SqlText.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

const QString visitQuery =
    QStringLiteral("SELECT VISITAPROBL.*, PROBLEMS.*, TIPOVISITA.*, SINTOMI.* "
                   "FROM ((VISITAPROBL LEFT JOIN PROBLEMS ON VISITAPROBL.id_Probl = PROBLEMS.idProblems) "
                   "LEFT JOIN TIPOVISITA ON VISITAPROBL.IDTIPO = TIPOVISITA.IdTipo) LEFT JOIN SINTOMI ON "
                   "VISITAPROBL.SINTOMO = SINTOMI.CODICE Where (VISITAPROBL.cod_paz = %1) ");
// Visits of one day: the later entry first.
const QString visitOrder =
    QStringLiteral("order by VISITAPROBL.datareg desc, VISITAPROBL.idvisitaprobl desc");

const QString drugQuery =
    QStringLiteral("SELECT RIEPIL.DA_PRE, RIEPIL.COD_PRE, RIEPIL.MINSAN, RIEPIL.NUM_CONF, SPEFAR.SPECIALITA, "
                   "RIEPIL.COD_PAZ FROM RIEPIL INNER JOIN SPEFAR ON RIEPIL.MINSAN = SPEFAR.CODSPE "
                   "WHERE ((riepil.tipo = 0) and (RIEPIL.COD_PAZ=%1) ");

const QString testQuery = QStringLiteral(
    "select riepil.da_pre, riepil.cod_pre, riepil.minsan, riepil.tipo, riepil2.*, esami.* "
    "from riepil, riepil2, esami Where (riepil.cod_paz = %1) and (riepil.tipo > 0) and "
    "(riepil.tipo = esami.tipo_esa) and (riepil.tipo < 20)  and (riepil.minsan = riepil2.cod_rie) ");

QString shownDate(const QDateTime &date)
{
    return jet::formatDate(date, u"dd/mm/yy");
}

std::unique_ptr<dao::Recordset> open(dao::Database &local, const QString &query)
{
    return local.OpenRecordset(query, dao::RecordsetType::Snapshot);
}

QList<ItemRow> visits(dao::Database &local, const QString &query)
{
    struct Text {
        QString prefix, field;
    };
    const std::array<Text, 5> texts{{
        {QStringLiteral("Anamnesi: "), QStringLiteral("VISITAPROBL.anamnesi")},
        {QStringLiteral("Esame obiett.: "), QStringLiteral("VISITAPROBL.esameob")},
        {QStringLiteral("Conclusioni: "), QStringLiteral("VISITAPROBL.conclusioni")},
        {QStringLiteral("Pianificazione: "), QStringLiteral("VISITAPROBL.pianificazione")},
        {QStringLiteral("Note: "), QStringLiteral("VISITAPROBL.txtNote")},
    }};
    QList<ItemRow> items;
    for (const auto rows = open(local, query); !rows->Eof(); rows->MoveNext()) {
        ItemRow visit;
        visit.kind = ItemRow::Kind::Visit;
        visit.date = shownDate(rows->Fields(QStringLiteral("datareg")).date());
        visit.description = rows->Fields(QStringLiteral("descr_tipo")).text().trimmed();
        visit.key = qint32(rows->Fields(QStringLiteral("idvisitaprobl")).number());
        visit.problemCode = rows->Fields(QStringLiteral("codicdsospetto")).text().trimmed();
        for (const Text &text : texts) {
            const QString written = rows->Fields(text.field).text().trimmed();
            if (!written.isEmpty())
                visit.lines.append({{}, text.prefix + written});
        }
        items.append(visit);
    }
    return items;
}

void appendDrugs(QList<ItemRow> &items, dao::Database &local, const QString &query)
{
    for (const auto rows = open(local, query); !rows->Eof(); rows->MoveNext()) {
        ItemRow drug;
        drug.kind = ItemRow::Kind::Drug;
        drug.date = shownDate(rows->Fields(QStringLiteral("da_pre")).date());
        drug.description = rows->Fields(QStringLiteral("specialita")).text().trimmed();
        drug.key = qint32(rows->Fields(QStringLiteral("cod_pre")).number());
        drug.minsan = rows->Fields(QStringLiteral("minsan")).text().trimmed();
        const dao::Field packs = rows->Fields(QStringLiteral("num_conf"));
        if (!packs.isNull())
            drug.lines.append({{}, QStringLiteral("Num. confezioni: ") + packs.text()});
        items.append(drug);
    }
}

// "S-Sodio Esito: NORMALE 141, Referto: …, N.sed: 10", of which what is there. The result is the field for it
// (risposta_e) or, without that, the answer (risposta), and always the measured value (unita), which must not be
// hidden by either; an answer beside a result is the report on it.
QString resultText(dao::Recordset &row)
{
    const auto text = [&](const char *field) {
        return row.Fields(QString::fromLatin1(field)).text().trimmed();
    };
    const QString answer = text("risposta");
    const QString outcome = text("risposta_e");
    const QString value = text("unita");
    const QString sessions = text("numter");
    const QString &words = outcome.isEmpty() ? answer : outcome;
    const QString result = words.isEmpty() || value.isEmpty() ? words + value : words + u' ' + value;
    QString shown = text("esame");
    if (!result.isEmpty())
        shown += (shown.isEmpty() ? QString() : QStringLiteral(" ")) + QStringLiteral("Esito: ") + result;
    if (!outcome.isEmpty() && !answer.isEmpty())
        shown += QStringLiteral(", Referto: ") + answer;
    if (!sessions.isEmpty())
        shown += QStringLiteral(", N.sed: ") + sessions;
    return shown;
}

void appendTests(QList<ItemRow> &items, dao::Database &local, const QString &query)
{
    QDateTime previousDate = jet::dateTime(1900, 1, 1);
    int previousType = 0; // no group has it
    for (const auto rows = open(local, query); !rows->Eof(); rows->MoveNext()) {
        const QDateTime date = rows->Fields(QStringLiteral("da_pre")).date();
        const int type = int(rows->Fields(QStringLiteral("tipo")).number());
        if (date != previousDate || type != previousType) {
            ItemRow group;
            group.kind = ItemRow::Kind::Test;
            group.date = shownDate(date);
            group.description = rows->Fields(QStringLiteral("descr_esa")).text().trimmed();
            group.key = qint32(rows->Fields(QStringLiteral("cod_pre")).number());
            group.minsan = rows->Fields(QStringLiteral("minsan")).text().trimmed();
            items.append(group);
            previousDate = date;
            previousType = type;
        }
        items.last().lines.append(
            {shownDate(rows->Fields(QStringLiteral("data_eff")).date()), resultText(*rows)});
    }
}

} // namespace

QChar itemKindLetter(ItemRow::Kind kind)
{
    switch (kind) {
    case ItemRow::Kind::Drug:
        return u'F';
    case ItemRow::Kind::Test:
        return u'S';
    case ItemRow::Kind::Visit:
        break;
    }
    return u'V';
}

QString itemKindName(ItemRow::Kind kind)
{
    switch (kind) {
    case ItemRow::Kind::Drug:
        return QStringLiteral("Farmaco");
    case ItemRow::Kind::Test:
        return QStringLiteral("Esami");
    case ItemRow::Kind::Visit:
        break;
    }
    return QStringLiteral("Visita");
}

void attachProblemTables(WorkingState &state)
{
    if (!state.environment)
        return;
    QStringList clinical{QStringLiteral("D"),      QStringLiteral("VISITAPROBL"), QStringLiteral("PROBLEMS"),
                         QStringLiteral("RIEPIL"), QStringLiteral("RIEPIL2"),     QStringLiteral("ESAMI"),
                         QStringLiteral("SPEFAR")};
    AttachTables(*state.environment, clinical);
    QStringList codes{QStringLiteral("S"), QStringLiteral("TIPOVISITA"), QStringLiteral("SINTOMI")};
    AttachTables(*state.environment, codes);
}

QList<ItemRow> problemItems(dao::Database &local, qint32 patientCode, qint32 problem, QDate start,
                            const QString &code)
{
    const bool isProblem = problem != unassociated;
    const QString association = isProblem ? QStringLiteral("and (VISITAPROBL.id_probl = %1) ").arg(problem)
                                          : QStringLiteral("and ( (id_probl <= 0) or isnull(id_probl) )");
    QList<ItemRow> items = visits(local, visitQuery.arg(patientCode) + association + visitOrder);
    // Without a code there is no diagnosis that anything could be prescribed for.
    if (isProblem && code.trimmed().isEmpty())
        return items;
    const QString diagnosis =
        isProblem ? QStringLiteral(" and (riepil.cod_dia = ") + sqlText(code.trimmed()) + QStringLiteral(") ")
                  : QStringLiteral(" and (isnull(riepil.cod_dia) or (TRIM(riepil.cod_dia)='')) ");
    const QString since = start.isValid() ? QStringLiteral("and (riepil.da_pre >= cdate('%1 00.00.00'))")
                                                .arg(jet::formatDate(jet::dateTime(start), u"dd/mm/yyyy"))
                                          : QString();
    appendDrugs(items, local,
                drugQuery.arg(patientCode) + since + QLatin1Char(')') + diagnosis
                    + QStringLiteral("order by riepil.da_pre desc, riepil.cod_pre desc"));
    appendTests(
        items, local,
        testQuery.arg(patientCode) + diagnosis + since
            + QStringLiteral(" order by riepil.da_pre , riepil.tipo, riepil.cod_pre, riepil2.idriepil2"));
    return items;
}

QList<ItemRow> patientVisits(dao::Database &local, qint32 patientCode)
{
    return visits(local, visitQuery.arg(patientCode) + visitOrder);
}

} // namespace clivara
