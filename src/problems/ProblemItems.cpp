// SPDX-License-Identifier: Apache-2.0
#include "problems/ProblemItems.h"

#include "data/Connection.h"
#include "data/HostEnvironment.h"
#include "data/Identity.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

const QString visitQuery =
    QStringLiteral("SELECT VISITAPROBL.*, PROBLEMS.*, TIPOVISITA.*, SINTOMI.* "
                   "FROM ((VISITAPROBL LEFT JOIN PROBLEMS ON VISITAPROBL.id_Probl = PROBLEMS.idProblems) "
                   "LEFT JOIN TIPOVISITA ON VISITAPROBL.IDTIPO = TIPOVISITA.IdTipo) LEFT JOIN SINTOMI ON "
                   "VISITAPROBL.SINTOMO = SINTOMI.CODICE Where (VISITAPROBL.cod_paz = [patient]) ");
// Visits of one day: the later entry first.
const QString visitOrder =
    QStringLiteral("order by VISITAPROBL.datareg desc, VISITAPROBL.idvisitaprobl desc");

const QString drugQuery =
    QStringLiteral("SELECT RIEPIL.DA_PRE, RIEPIL.COD_PRE, RIEPIL.MINSAN, RIEPIL.NUM_CONF, SPEFAR.SPECIALITA, "
                   "RIEPIL.COD_PAZ FROM RIEPIL INNER JOIN SPEFAR ON RIEPIL.MINSAN = SPEFAR.CODSPE "
                   "WHERE ((riepil.tipo = 0) and (RIEPIL.COD_PAZ=[patient]) ");

const QString testQuery = QStringLiteral(
    "select riepil.da_pre, riepil.cod_pre, riepil.minsan, riepil.tipo, riepil2.*, esami.* "
    "from riepil, riepil2, esami Where (riepil.cod_paz = [patient]) and (riepil.tipo > 0) and "
    "(riepil.tipo = esami.tipo_esa) and (riepil.tipo < 20)  and (riepil.minsan = riepil2.cod_rie) ");

QString shownDate(const QDateTime &date)
{
    return jet::formatDate(date, u"dd/mm/yy");
}

std::unique_ptr<dao::Recordset> open(dao::Database &local, const dao::Query &query)
{
    return local.OpenRecordset(query, dao::RecordsetType::Snapshot);
}

// A field of every row to come; found once, since a list may have thousands of rows.
dao::Field field(dao::Recordset &rows, const char *name)
{
    return rows.Fields(QString::fromLatin1(name));
}

qint32 key(const dao::Field &field)
{
    return qint32(field.number());
}

QString trimmed(const dao::Field &field)
{
    return field.text().trimmed();
}

QList<ItemRow> visits(dao::Database &local, const dao::Query &query)
{
    const auto rows = open(local, query);
    struct Text {
        QString prefix;
        dao::Field field;
    };
    const std::array<Text, 5> texts{{
        {QStringLiteral("Anamnesi: "), field(*rows, "VISITAPROBL.anamnesi")},
        {QStringLiteral("Esame obiett.: "), field(*rows, "VISITAPROBL.esameob")},
        {QStringLiteral("Conclusioni: "), field(*rows, "VISITAPROBL.conclusioni")},
        {QStringLiteral("Pianificazione: "), field(*rows, "VISITAPROBL.pianificazione")},
        {QStringLiteral("Note: "), field(*rows, "VISITAPROBL.txtNote")},
    }};
    const dao::Field date = field(*rows, "datareg"), type = field(*rows, "descr_tipo"),
                     id = field(*rows, "idvisitaprobl"), code = field(*rows, "codicdsospetto"),
                     author = field(*rows, "VISITAPROBL.sAuthorUid"),
                     modified = field(*rows, "VISITAPROBL.dLastModifiedDate");
    QList<ItemRow> items;
    for (; !rows->Eof(); rows->MoveNext()) {
        ItemRow visit{ItemRow::Kind::Visit,
                      shownDate(date.date()),
                      trimmed(type),
                      key(id),
                      {},
                      trimmed(code),
                      {},
                      {normaliseUid(author.text()), modified.date()}};
        for (const Text &text : texts) {
            const QString written = trimmed(text.field);
            if (!written.isEmpty())
                visit.lines.append({{}, text.prefix + written});
        }
        items.append(std::move(visit));
    }
    return items;
}

void appendDrugs(QList<ItemRow> &items, dao::Database &local, const dao::Query &query)
{
    const auto rows = open(local, query);
    const dao::Field date = field(*rows, "da_pre"), name = field(*rows, "specialita"),
                     order = field(*rows, "cod_pre"), minsan = field(*rows, "minsan"),
                     packs = field(*rows, "num_conf");
    for (; !rows->Eof(); rows->MoveNext()) {
        ItemRow drug{
            ItemRow::Kind::Drug, shownDate(date.date()), trimmed(name), key(order), trimmed(minsan), {}, {}};
        if (!packs.isNull())
            drug.lines.append({{}, QStringLiteral("Num. confezioni: ") + packs.text()});
        items.append(std::move(drug));
    }
}

// The texts of a result's row.
class ResultFields {
public:
    explicit ResultFields(dao::Recordset &rows)
        : m_exam(field(rows, "esame"))
        , m_answer(field(rows, "risposta"))
        , m_outcome(field(rows, "risposta_e"))
        , m_value(field(rows, "unita"))
        , m_sessions(field(rows, "numter"))
    {
    }

    // "S-Sodio Esito: NORMALE 141, Referto: …, N.sed: 10", of which what is there. The result is the field for it
    // (risposta_e) or, without that, the answer (risposta), and always the measured value (unita), which must
    // not be hidden by either; an answer beside a result is the report on it.
    QString shown() const
    {
        const QString answer = trimmed(m_answer);
        const QString outcome = trimmed(m_outcome);
        const QString value = trimmed(m_value);
        const QString sessions = trimmed(m_sessions);
        const QString &words = outcome.isEmpty() ? answer : outcome;
        const QString result = words.isEmpty() || value.isEmpty() ? words + value : words + u' ' + value;
        QString text = trimmed(m_exam);
        if (!result.isEmpty())
            text += (text.isEmpty() ? QString() : QStringLiteral(" ")) + QStringLiteral("Esito: ") + result;
        if (!outcome.isEmpty() && !answer.isEmpty())
            text += QStringLiteral(", Referto: ") + answer;
        if (!sessions.isEmpty())
            text += QStringLiteral(", N.sed: ") + sessions;
        return text;
    }

private:
    dao::Field m_exam, m_answer, m_outcome, m_value, m_sessions;
};

void appendTests(QList<ItemRow> &items, dao::Database &local, const dao::Query &query)
{
    const auto rows = open(local, query);
    const dao::Field prescribed = field(*rows, "da_pre"), group = field(*rows, "tipo"),
                     name = field(*rows, "descr_esa"), order = field(*rows, "cod_pre"),
                     minsan = field(*rows, "minsan"), done = field(*rows, "data_eff");
    const ResultFields result(*rows);
    QDateTime previousDate = jet::dateTime(1900, 1, 1);
    int previousType = 0; // no group has it
    for (; !rows->Eof(); rows->MoveNext()) {
        const QDateTime date = prescribed.date();
        const int type = int(group.number());
        if (date != previousDate || type != previousType) {
            items.append(
                {ItemRow::Kind::Test, shownDate(date), trimmed(name), key(order), trimmed(minsan), {}, {}});
            previousDate = date;
            previousType = type;
        }
        items.last().lines.append({shownDate(done.date()), result.shown()});
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

void attachProblemTables(const HostEnvironment &environment)
{
    QStringList clinical{QStringLiteral("D"),      QStringLiteral("VISITAPROBL"), QStringLiteral("PROBLEMS"),
                         QStringLiteral("RIEPIL"), QStringLiteral("RIEPIL2"),     QStringLiteral("ESAMI"),
                         QStringLiteral("SPEFAR")};
    AttachTables(environment, clinical);
    QStringList codes{QStringLiteral("S"), QStringLiteral("TIPOVISITA"), QStringLiteral("SINTOMI")};
    AttachTables(environment, codes);
}

QList<ItemRow> problemItems(dao::Database &local, qint32 patientCode, qint32 problem, QDate start,
                            const QString &code)
{
    const bool isProblem = problem != unassociated;
    const dao::Parameter patient{"patient", patientCode};
    QList<ItemRow> items =
        isProblem
            ? visits(local,
                     {visitQuery + QStringLiteral("and (VISITAPROBL.id_probl = [problem]) ") + visitOrder,
                      {patient, {"problem", problem}}})
            : visits(local,
                     {visitQuery + QStringLiteral("and ( (id_probl <= 0) or isnull(id_probl) )") + visitOrder,
                      {patient}});
    // Without a code there is no diagnosis that anything could be prescribed for.
    if (isProblem && code.trimmed().isEmpty())
        return items;
    QList<dao::Parameter> values{patient};
    if (isProblem)
        values.append({"diagnosis", code.trimmed()});
    if (start.isValid())
        values.append({"since", start});
    const auto diagnosis =
        isProblem ? QStringLiteral(" and (riepil.cod_dia = [diagnosis]) ")
                  : QStringLiteral(" and (isnull(riepil.cod_dia) or (TRIM(riepil.cod_dia)='')) ");
    const auto since = start.isValid() ? QStringLiteral("and (riepil.da_pre >= [since])") : QString();
    appendDrugs(items, local,
                {drugQuery + since + QLatin1Char(')') + diagnosis
                     + QStringLiteral("order by riepil.da_pre desc, riepil.cod_pre desc"),
                 values});
    appendTests(
        items, local,
        {testQuery + diagnosis + since
             + QStringLiteral(" order by riepil.da_pre , riepil.tipo, riepil.cod_pre, riepil2.idriepil2"),
         values});
    return items;
}

QList<ItemRow> patientVisits(dao::Database &local, qint32 patientCode)
{
    return visits(local, {visitQuery + visitOrder, {{"patient", patientCode}}});
}

} // namespace clivara
