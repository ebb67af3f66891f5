// SPDX-License-Identifier: Apache-2.0
#include "app/practice/PracticeCheck.h"

#include "app/practice/Practice.h"
#include "app/practice/ResourceText.h"
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

// The rules of a file of src/app/practice/checks; links.sql tells how they are written.
QList<Rule> rulesOf(const QString &name)
{
    QList<Rule> rules;
    for (const QString &line : resourceText(QStringLiteral(":/checks/") + name).split(u'\n')) {
        const bool isInconsistency = line.startsWith(QLatin1String("--!"));
        if (isInconsistency || line.startsWith(QLatin1String("--?")))
            rules.append({line.mid(4),
                          {},
                          QStringLiteral("clinical"),
                          isInconsistency ? Finding::Kind::Inconsistency : Finding::Kind::WorthKnowing});
        else if (!line.startsWith(QLatin1String("--")) && !line.isEmpty())
            rules.last().sql += line.chopped(line.endsWith(u';') ? 1 : 0) + u' ';
    }
    return rules;
}

// Rows of a patient who is not in the registry, and of nobody: no patient has a code of 0 or less.
QList<Rule> patientRules()
{
    constexpr std::pair<const char *, const char *> tables[] = {
        {"inf_gen", "cod_paz"},        {"ESAME_OB", "cod_paz"},        {"esa_ob", "cod_paz"},
        {"riepil", "cod_pre"},         {"PROBLEMS", "idProblems"},     {"VISITAPROBL", "IdVisitaProbl"},
        {"Rischio_Cardio", "cod_paz"}, {"SindrMetabolica", "cod_paz"}, {"cronpat", "cod_paz"},
        {"pat_rem2", "cod_paz"},       {"patopers", "cod_paz"},        {"ricoveri2", "idRicovero"},
        {"AIR15_7", "idScheda"},
    };
    QList<Rule> rules;
    for (const auto &[table, key] : tables)
        rules.append(
            {QStringLiteral("%1: righe di un paziente che non è in archivio (%2)")
                 .arg(QLatin1String(table), QLatin1String(key)),
             QStringLiteral("SELECT t.%2 FROM %1 AS t LEFT JOIN archivio AS a ON t.cod_paz = a.cod_paz "
                            "WHERE isnull(a.cod_paz) OR t.cod_paz <= 0 ORDER BY t.%2")
                 .arg(QLatin1String(table), QLatin1String(key))});
    return rules;
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
                               QStringLiteral("tipo > 0 AND not isnull(minsan)"));
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
    const QList<Rule> rules = patientRules() + rulesOf(QStringLiteral("links.sql"))
                              + QList<Rule>{visitTypeRule(*environment.codes)} + primaryKeyRules(databases)
                              + keyRules() + rulesOf(QStringLiteral("values.sql"))
                              + refusedRules(*environment.clinical);
    for (const Rule &rule : rules)
        applyRule(databases, rule, mostKeys, found);
    std::stable_partition(found.begin(), found.end(), [](const Finding &finding) {
        return finding.kind == Finding::Kind::Inconsistency;
    });
    return found;
}

} // namespace orvale
