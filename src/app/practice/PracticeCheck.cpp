// SPDX-License-Identifier: Apache-2.0
#include "app/practice/PracticeCheck.h"

#include "app/practice/Practice.h"
#include "app/practice/Schema.h"

#include <algorithm>

namespace orvale {

namespace {

constexpr int mostFileLines = 20;

// A query on one database; each row that it gives is found, and its columns are the row's key.
struct Rule {
    QString text;
    QString sql;
    QString database = QStringLiteral("clinical");
    Finding::Kind kind = Finding::Kind::Inconsistency;
};

// Rows of a patient who is not in the registry, and of nobody: no patient has a code of 0 or less.
QList<Rule> patientRules()
{
    const QList<std::pair<QString, QString>> tables{
        {QStringLiteral("inf_gen"), QStringLiteral("cod_paz")},
        {QStringLiteral("ESAME_OB"), QStringLiteral("cod_paz")},
        {QStringLiteral("esa_ob"), QStringLiteral("cod_paz")},
        {QStringLiteral("riepil"), QStringLiteral("cod_pre")},
        {QStringLiteral("PROBLEMS"), QStringLiteral("idProblems")},
        {QStringLiteral("VISITAPROBL"), QStringLiteral("IdVisitaProbl")},
        {QStringLiteral("Rischio_Cardio"), QStringLiteral("cod_paz")},
        {QStringLiteral("SindrMetabolica"), QStringLiteral("cod_paz")},
        {QStringLiteral("cronpat"), QStringLiteral("cod_paz")},
        {QStringLiteral("pat_rem2"), QStringLiteral("cod_paz")},
        {QStringLiteral("patopers"), QStringLiteral("cod_paz")},
        {QStringLiteral("ricoveri2"), QStringLiteral("idRicovero")},
        {QStringLiteral("AIR15_7"), QStringLiteral("idScheda")},
    };
    QList<Rule> rules;
    for (const auto &[table, key] : tables)
        rules.append(
            {QStringLiteral("%1: righe di un paziente che non è in archivio (%2)").arg(table, key),
             QStringLiteral("SELECT t.%2 FROM %1 AS t LEFT JOIN archivio AS a ON t.cod_paz = a.cod_paz "
                            "WHERE isnull(a.cod_paz) OR t.cod_paz <= 0 ORDER BY t.%2")
                 .arg(table, key)});
    rules.append({QStringLiteral("archivio: pazienti senza un codice valido (cod_paz)"),
                  QStringLiteral("SELECT cod_paz FROM archivio WHERE isnull(cod_paz) OR cod_paz <= 0 "
                                 "ORDER BY cod_paz")});
    // The host may have removed the patient since.
    rules.append({QStringLiteral("Modifiche: modifiche di un paziente che non è in archivio (cod_paz)"),
                  QStringLiteral("SELECT DISTINCT t.cod_paz FROM Modifiche AS t LEFT JOIN archivio AS a "
                                 "ON t.cod_paz = a.cod_paz WHERE isnull(a.cod_paz) ORDER BY t.cod_paz"),
                  QStringLiteral("clinical"), Finding::Kind::WorthKnowing});
    return rules;
}

QList<Rule> linkRules()
{
    return {
        {QStringLiteral("VISITAPROBL: visite di un problema che non esiste (IdVisitaProbl)"),
         QStringLiteral("SELECT v.IdVisitaProbl FROM VISITAPROBL AS v LEFT JOIN PROBLEMS AS p "
                        "ON v.id_Probl = p.idProblems WHERE v.id_Probl > 0 AND isnull(p.idProblems) "
                        "ORDER BY v.IdVisitaProbl")},
        {QStringLiteral("VISITAPROBL: visite di un problema di un altro paziente (IdVisitaProbl)"),
         QStringLiteral(
             "SELECT v.IdVisitaProbl FROM VISITAPROBL AS v INNER JOIN PROBLEMS AS p "
             "ON v.id_Probl = p.idProblems WHERE v.cod_paz <> p.cod_paz ORDER BY v.IdVisitaProbl")},
        {QStringLiteral("riepil2: risultati senza la richiesta (idriepil2)"),
         QStringLiteral(
             "SELECT r2.idriepil2 FROM riepil2 AS r2 WHERE NOT EXISTS (SELECT r.minsan FROM riepil "
             "AS r WHERE r.minsan = r2.cod_rie AND r.tipo > 0) ORDER BY r2.idriepil2")},
        {QStringLiteral("riepil: accertamenti di un gruppo che non è in ESAMI (cod_pre)"),
         QStringLiteral("SELECT r.cod_pre FROM riepil AS r LEFT JOIN ESAMI AS e ON r.tipo = e.tipo_esa "
                        "WHERE r.tipo > 0 AND r.tipo < 20 AND isnull(e.tipo_esa) ORDER BY r.cod_pre")},
        // Medicines that are no longer sold leave the list; what was prescribed stays prescribed.
        {QStringLiteral("riepil: prescrizioni di un farmaco che non è (più) in elenco (cod_pre)"),
         QStringLiteral("SELECT r.cod_pre FROM riepil AS r LEFT JOIN SPEFAR AS s ON r.minsan = s.CODSPE "
                        "WHERE r.tipo = 0 AND isnull(s.CODSPE) ORDER BY r.cod_pre"),
         QStringLiteral("clinical"), Finding::Kind::WorthKnowing},
        {QStringLiteral("SUGGERIT: suggerimenti senza la prescrizione (COD_PRE)"),
         QStringLiteral("SELECT s.COD_PRE FROM SUGGERIT AS s LEFT JOIN riepil AS r ON s.COD_PRE = r.cod_pre "
                        "WHERE isnull(r.cod_pre) ORDER BY s.COD_PRE")},
    };
}

// Visits of a type that the codes do not know, which show without a name.
Rule visitTypeRule(dao::Database &codes)
{
    QStringList types;
    const auto rows =
        codes.OpenRecordset(QStringLiteral("SELECT IdTipo FROM TIPOVISITA"), dao::RecordsetType::Snapshot);
    for (; !rows->Eof(); rows->MoveNext())
        types.append(rows->Fields(0).text());
    types.append(QStringLiteral("0")); // none chosen, as Null
    return {QStringLiteral("VISITAPROBL: visite di un tipo che non è in TIPOVISITA (IdVisitaProbl)"),
            QStringLiteral("SELECT IdVisitaProbl FROM VISITAPROBL WHERE idtipo NOT IN (%1) "
                           "ORDER BY IdVisitaProbl")
                .arg(types.join(u','))};
}

Rule duplicates(const QString &database, const QString &table, const QStringList &fields,
                const QString &condition = QStringLiteral("1 = 1"))
{
    const QString list = QStringLiteral("[%1]").arg(fields.join(QStringLiteral("], [")));
    return {QStringLiteral("%1: chiave ripetuta (%2)").arg(table, fields.join(QStringLiteral(", "))),
            QStringLiteral("SELECT %1 FROM [%2] WHERE %3 GROUP BY %1 HAVING count(*) > 1 ORDER BY %1")
                .arg(list, table, condition),
            database};
}

// A unique index over just these fields: no key can stand twice.
bool isGuarded(const dao::TableDef &table, const QStringList &fields)
{
    const QList<dao::IndexInfo> indexes = table.Indexes();
    return std::any_of(indexes.begin(), indexes.end(), [&](const dao::IndexInfo &index) {
        return index.unique && index.fields.join(u',').compare(fields.join(u','), Qt::CaseInsensitive) == 0;
    });
}

using Databases = QMap<QString, std::shared_ptr<dao::Database>>; // by role

// A practice that was filled by another program may lack the index that keeps a key unique.
QList<Rule> primaryKeyRules(const Databases &databases)
{
    QList<Rule> rules;
    for (const TableKey &key : Schema::current().primaryKeys()) {
        if (!isGuarded(databases.value(key.database)->TableDefs()[key.table], key.fields))
            rules.append(duplicates(key.database, key.table, key.fields));
    }
    return rules;
}

// Keys that no index guards: those by which workstations know a row, and those that the chart's queries take
// for one row.
QList<Rule> keyRules()
{
    const QString clinical = QStringLiteral("clinical");
    const auto uid = [](const QString &database, const char *table, const char *field) {
        // Rows from before the identities have none.
        return duplicates(database, QLatin1String(table), {QLatin1String(field)},
                          QStringLiteral("trim([%1]) <> ''").arg(QLatin1String(field)));
    };
    QList<Rule> rules;
    for (const char *table : {"PROBLEMS", "VISITAPROBL", "ricoveri2"})
        rules << uid(clinical, table, "sRecordUid") << uid(clinical, table, "idRowGuid");
    return rules << uid(clinical, "archivio", "idRowGuid") << uid(clinical, "archivio", "sPatientRecordUid")
                 << uid(QStringLiteral("doctors"), "medici_gruppo", "idRowGuid")
                 << duplicates(clinical, QStringLiteral("riepil"), {QStringLiteral("minsan")},
                               QStringLiteral("tipo > 0 AND not isnull(minsan)"))
                 << Rule{QStringLiteral("ESAME_OB: più schede delle allergie di un paziente (cod_paz)"),
                         QStringLiteral("SELECT cod_paz FROM ESAME_OB WHERE tipo_dati = 'X' GROUP BY cod_paz "
                                        "HAVING count(*) > 1 ORDER BY cod_paz")}
                 << Rule{QStringLiteral(
                             "ESAME_OB: più schede delle malattie infettive di un paziente (cod_paz)"),
                         QStringLiteral("SELECT cod_paz FROM ESAME_OB WHERE tipo_dati = 'M' GROUP BY cod_paz "
                                        "HAVING count(*) > 1 ORDER BY cod_paz")};
}

QList<Rule> valueRules()
{
    // An empty code string is a form that was never filled in.
    const QString length =
        QStringLiteral("SELECT cod_paz FROM ESAME_OB WHERE tipo_dati = '%1' "
                       "AND trim(dati_paz) <> '' AND len(dati_paz) <> %2 ORDER BY cod_paz");
    return {
        {QStringLiteral("ESAME_OB: allergie non lunghe 230 caratteri (cod_paz)"),
         length.arg(QStringLiteral("X")).arg(230)},
        {QStringLiteral("ESAME_OB: malattie infettive non lunghe 190 caratteri (cod_paz)"),
         length.arg(QStringLiteral("M")).arg(190)},
        {QStringLiteral("PROBLEMS: problemi di stato sconosciuto (idProblems)"),
         QStringLiteral("SELECT idProblems FROM PROBLEMS WHERE isnull(stato_probl) OR stato_probl < 0 "
                        "OR stato_probl > 3 ORDER BY idProblems")},
    };
}

// Rows that an import could not write: they are in no chart.
QList<Rule> refusedRules(dao::Database &clinical)
{
    const QString table = QStringLiteral("orvale_refused_rows");
    if (!clinical.TableDefs().contains(table))
        return {};
    return {{QStringLiteral("%1: righe rifiutate da un'importazione (tabella, riga, motivo)").arg(table),
             QStringLiteral("SELECT [database] & '.' & [table], [row], [reason] FROM %1 ORDER BY id")
                 .arg(table)}};
}

void applyRule(const Databases &databases, const Rule &rule, int mostKeys, QList<Finding> &found)
{
    Finding finding{rule.kind, rule.text, 0, {}};
    const auto rows = databases.value(rule.database)->OpenRecordset(rule.sql, dao::RecordsetType::Snapshot);
    for (; !rows->Eof(); rows->MoveNext()) {
        if (++finding.count > mostKeys)
            continue;
        QStringList key;
        for (int i = 0; i < rows->FieldCount(); ++i)
            key.append(rows->Fields(i).text());
        finding.keys.append(key.join(QStringLiteral(" / ")));
    }
    if (finding.count > 0)
        found.append(finding);
}

void checkFile(dao::Database &database, QList<Finding> &found)
{
    Finding finding;
    finding.text = QStringLiteral("%1: il file è danneggiato").arg(database.Name());
    const QStringList lines = database.damage(dao::Thoroughness::PagesAndIndexes, mostFileLines);
    for (const QString &line : lines)
        finding.keys.append(line.simplified());
    finding.count = int(lines.size());
    if (finding.count > 0)
        found.append(finding);
}

void checkTables(const Databases &databases, QList<Finding> &found)
{
    for (auto database = databases.begin(); database != databases.end(); ++database) {
        Finding finding;
        finding.text = QStringLiteral("%1: mancano delle tabelle").arg(database.value()->Name());
        const QStringList tables = Schema::current().firstTables(database.key());
        for (const QString &table : tables) {
            if (!database.value()->TableDefs().contains(table))
                finding.keys.append(table);
        }
        finding.count = finding.keys.size();
        if (finding.count > 0)
            found.append(finding);
    }
}

} // namespace

QList<Finding> checkPractice(Practice &practice, int mostKeys)
{
    QList<Finding> found;
    const clivara::HostEnvironment &environment = practice.environment();
    const Databases databases{
        {QStringLiteral("clinical"), environment.clinical}, {QStringLiteral("codes"), environment.codes},
        {QStringLiteral("third"), environment.third},       {QStringLiteral("doctors"), environment.doctors},
        {QStringLiteral("local"), environment.local},       {QStringLiteral("events"), environment.events}};
    for (const auto &database : databases)
        checkFile(*database, found);
    if (found.isEmpty())
        checkTables(databases, found);
    if (!found.isEmpty())
        return found; // the rows of such a practice prove nothing
    const QList<Rule> rules = patientRules() + linkRules() + QList<Rule>{visitTypeRule(*environment.codes)}
                              + primaryKeyRules(databases) + keyRules() + valueRules()
                              + refusedRules(*environment.clinical);
    for (const Rule &rule : rules)
        applyRule(databases, rule, mostKeys, found);
    std::stable_partition(found.begin(), found.end(), [](const Finding &finding) {
        return finding.kind == Finding::Kind::Inconsistency;
    });
    return found;
}

} // namespace orvale
