// SPDX-License-Identifier: Apache-2.0
#include "app/PracticeCheck.h"

#include "app/Practice.h"

#include <QSqlError>
#include <QSqlQuery>

namespace orvale {

namespace {

constexpr int shownKeys = 20;

// A query whose rows are inconsistent; its first column is the row's key.
struct Rule {
    QString text;
    QString sql;
};

// Rows of a patient who is not in the registry.
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
                            "WHERE isnull(a.cod_paz) ORDER BY t.%2")
                 .arg(table, key)});
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
             "SELECT r2.idriepil2 FROM riepil2 AS r2 LEFT JOIN riepil AS r ON r2.cod_rie = r.minsan "
             "WHERE isnull(r.minsan) ORDER BY r2.idriepil2")},
        {QStringLiteral("riepil: prescrizioni di un farmaco che non è in elenco (cod_pre)"),
         QStringLiteral("SELECT r.cod_pre FROM riepil AS r LEFT JOIN SPEFAR AS s ON r.minsan = s.CODSPE "
                        "WHERE r.tipo = 0 AND isnull(s.CODSPE) ORDER BY r.cod_pre")},
        {QStringLiteral("SUGGERIT: suggerimenti senza la prescrizione (COD_PRE)"),
         QStringLiteral("SELECT s.COD_PRE FROM SUGGERIT AS s LEFT JOIN riepil AS r ON s.COD_PRE = r.cod_pre "
                        "WHERE isnull(r.cod_pre) ORDER BY s.COD_PRE")},
    };
}

Rule duplicates(const QString &table, const QString &field,
                const QString &condition = QStringLiteral("1 = 1"))
{
    return {QStringLiteral("%1: %2 ripetuto").arg(table, field),
            QStringLiteral(
                "SELECT %2 FROM %1 WHERE %3 AND not isnull(%2) GROUP BY %2 HAVING count(*) > 1 ORDER BY %2")
                .arg(table, field, condition)};
}

QList<Rule> keyRules()
{
    return {
        duplicates(QStringLiteral("archivio"), QStringLiteral("cod_paz")),
        duplicates(QStringLiteral("archivio"), QStringLiteral("idRowGuid")),
        duplicates(QStringLiteral("PROBLEMS"), QStringLiteral("sRecordUid")),
        duplicates(QStringLiteral("VISITAPROBL"), QStringLiteral("sRecordUid")),
        duplicates(QStringLiteral("ricoveri2"), QStringLiteral("sRecordUid")),
        duplicates(QStringLiteral("riepil"), QStringLiteral("minsan"), QStringLiteral("tipo > 0")),
        {QStringLiteral("ESAME_OB: più schede delle allergie di un paziente (cod_paz)"),
         QStringLiteral(
             "SELECT cod_paz FROM ESAME_OB WHERE tipo_dati = 'X' GROUP BY cod_paz HAVING count(*) > 1 "
             "ORDER BY cod_paz")},
        {QStringLiteral("ESAME_OB: più schede delle malattie infettive di un paziente (cod_paz)"),
         QStringLiteral(
             "SELECT cod_paz FROM ESAME_OB WHERE tipo_dati = 'M' GROUP BY cod_paz HAVING count(*) > 1 "
             "ORDER BY cod_paz")},
    };
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

void applyRule(dao::Database &database, const Rule &rule, QList<Inconsistency> &found)
{
    Inconsistency inconsistency{rule.text, 0, {}};
    const auto rows = database.OpenRecordset(rule.sql, dao::RecordsetType::Snapshot);
    for (; !rows->Eof(); rows->MoveNext()) {
        if (++inconsistency.count <= shownKeys)
            inconsistency.keys.append(rows->Fields(0).text());
    }
    if (inconsistency.count > 0)
        found.append(inconsistency);
}

// What the native engine says of pages and indexes, when it is not "ok".
void checkFile(dao::Database &database, QList<Inconsistency> &found)
{
    Inconsistency inconsistency{QStringLiteral("%1: il file è danneggiato").arg(database.Name()), 0, {}};
    QSqlQuery query(database.nativeConnection());
    query.setForwardOnly(true);
    if (!query.exec(
            QStringLiteral("PRAGMA \"%1\".integrity_check(%2)").arg(database.nativeSchema()).arg(shownKeys)))
        inconsistency = {inconsistency.text, 1, {query.lastError().databaseText()}};
    while (query.next()) {
        const QString line = query.value(0).toString();
        if (line == QLatin1String("ok"))
            continue;
        ++inconsistency.count;
        inconsistency.keys.append(line.simplified());
    }
    if (inconsistency.count > 0)
        found.append(inconsistency);
}

} // namespace

QList<Inconsistency> checkPractice(Practice &practice)
{
    QList<Inconsistency> found;
    const clivara::HostEnvironment &environment = practice.environment();
    for (const auto &database : {environment.clinical, environment.codes, environment.third,
                                 environment.doctors, environment.local, environment.events})
        checkFile(*database, found);
    if (!found.isEmpty())
        return found; // rows of a damaged file prove nothing
    const QList<Rule> rules = patientRules() + linkRules() + keyRules() + valueRules();
    for (const Rule &rule : rules)
        applyRule(*environment.clinical, rule, found);
    return found;
}

} // namespace orvale
