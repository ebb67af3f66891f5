// SPDX-License-Identifier: Apache-2.0
#include "app/patients/PatientRecords.h"

#include "data/AllergyRecords.h"
#include "problems/ProblemRecords.h"

#include <QSet>
#include <algorithm>
#include <utility>

namespace orvale {

namespace {

constexpr int shownVisits = 12;
constexpr int shownExams = 14;
// Some 20 years of regular checks: enough for the newest value and the one before of every exam.
constexpr int readResults = 600;

QString trimmed(dao::Recordset &rows, const QString &field)
{
    return rows.Fields(field).text().trimmed();
}

qint32 whole(const dao::Field &field)
{
    return static_cast<qint32>(field.number());
}

// Rows of one patient, who is [patient] in the SQL.
std::unique_ptr<dao::Recordset> rowsOf(dao::Database &clinical, const QString &sql, qint32 patient)
{
    return clinical.OpenRecordset({sql, {{"patient", patient}}}, dao::RecordsetType::Snapshot);
}

PatientEntry entryOf(dao::Recordset &rows)
{
    PatientEntry patient;
    patient.code = whole(rows.Fields(QStringLiteral("cod_paz")));
    patient.surname = trimmed(rows, QStringLiteral("cognome"));
    patient.name = trimmed(rows, QStringLiteral("nome"));
    patient.sex = trimmed(rows, QStringLiteral("sesso")).toUpper();
    patient.birthDate = rows.Fields(QStringLiteral("Data_Nasc")).date().date();
    patient.fiscalCode = trimmed(rows, QStringLiteral("cod_fisc"));
    return patient;
}

QString entrySql(const QString &condition)
{
    return QStringLiteral("SELECT a.cod_paz, a.cognome, a.nome, a.sesso, a.Data_Nasc, g.cod_fisc "
                          "FROM archivio AS a LEFT JOIN inf_gen AS g ON a.cod_paz = g.cod_paz "
                          "WHERE %1 ORDER BY a.cod_paz")
        .arg(condition);
}

// The exams that the calculators propose, by patient, of the results after a day.
QHash<qint32, QSet<QString>> examsSince(dao::Database &clinical, QDate since)
{
    QHash<qint32, QSet<QString>> exams;
    const auto rows = clinical.OpenRecordset(
        {QStringLiteral("SELECT DISTINCT r.cod_paz, r2.codice FROM riepil AS r, riepil2 AS r2 "
                        "WHERE r2.cod_rie = r.minsan AND r.tipo = 1 AND r.da_pre > [dal] "
                        "AND NOT isnull(r2.unita) AND r2.codice IN ('90.14.1', '90.14.3', '90.43.2', "
                        "'90.16.4', '90.16.04', '90.27.1')"),
         {{QStringLiteral("dal"), since}}},
        dao::RecordsetType::Snapshot);
    for (; !rows->Eof(); rows->MoveNext())
        exams[whole(rows->Fields(0))].insert(rows->Fields(1).text());
    return exams;
}

// Those whose newest measurement, the only one that is proposed, holds a weight.
QList<qint32> weighedPatients(dao::Database &clinical)
{
    QHash<qint32, bool> weighed;
    const auto rows = clinical.OpenRecordset(
        QStringLiteral("SELECT cod_paz, val(mid(dati_paz, 4, 5)) AS peso FROM ESAME_OB "
                       "WHERE tipo_dati = 'A' AND NOT isnull(dati_paz) ORDER BY data_reg, chiave"),
        dao::RecordsetType::Snapshot);
    for (; !rows->Eof(); rows->MoveNext())
        weighed[whole(rows->Fields(0))] = rows->Fields(1).number() > 0;
    weighed.removeIf([](const auto &patient) { return !patient.value(); });
    return weighed.keys();
}

} // namespace

std::vector<PatientEntry> PatientRecords::entriesAfter(qint32 code, int count) const
{
    std::vector<PatientEntry> patients;
    const auto rows =
        rowsOf(*m_environment.clinical, entrySql(QStringLiteral("a.cod_paz > [patient]")), code);
    // Not TOP, which ranks all rows to keep equal ones together: rows are read only as far as the index is
    // followed here.
    for (; static_cast<int>(patients.size()) < count && !rows->Eof(); rows->MoveNext())
        patients.push_back(entryOf(*rows));
    return patients;
}

std::optional<PatientEntry> PatientRecords::entry(qint32 code) const
{
    const auto rows =
        rowsOf(*m_environment.clinical, entrySql(QStringLiteral("a.cod_paz = [patient]")), code);
    if (rows->Eof())
        return {};
    return entryOf(*rows);
}

std::optional<PatientSummary> PatientRecords::summary(qint32 code) const
{
    const auto found = registry(code);
    if (!found)
        return {};
    return PatientSummary{*found, openProblems(code), lastVisits(code), lastLaboratory(code),
                          lastPressure(code)};
}

std::optional<PatientRegistry> PatientRecords::registry(qint32 code) const
{
    const auto rows = rowsOf(
        *m_environment.clinical,
        QStringLiteral("SELECT a.*, g.cod_fisc, g.prefisso, g.telefono, g.luogo_nas FROM archivio AS a "
                       "LEFT JOIN inf_gen AS g ON a.cod_paz = g.cod_paz WHERE a.cod_paz = [patient]"),
        code);
    if (rows->Eof())
        return {};
    const auto text = [&](const char *field) { return trimmed(*rows, QString::fromLatin1(field)); };
    PatientRegistry patient;
    patient.code = code;
    patient.surname = text("cognome");
    patient.name = text("nome");
    patient.sex = text("sesso").toUpper();
    patient.birthDate = rows->Fields(QStringLiteral("Data_Nasc")).date().date();
    patient.birthplace = text("luogo_nas");
    patient.fiscalCode = text("cod_fisc").toUpper();
    patient.address = text("indirizzo");
    patient.postalCode = text("cap");
    patient.city = text("citta");
    patient.province = text("prov");
    patient.telephone = (text("prefisso") + u' ' + text("telefono")).trimmed();
    patient.exemptionPathology = text("ESENZ_PAT");
    patient.exemptionInvalidity = text("ESENZ_INV");
    patient.allergies = allergies(code);
    return patient;
}

clivara::Allergies PatientRecords::allergies(qint32 code) const
{
    // The rest of the registry is shown all the same, with a line that says what was not read.
    try {
        return clivara::readAllergies(*m_environment.clinical, code);
    } catch (const dao::Error &) {
        return {};
    }
}

QList<ProblemLine> PatientRecords::openProblems(qint32 code) const
{
    using clivara::ProblemState;
    QList<ProblemLine> problems;
    for (const clivara::ProblemRow &row : clivara::listProblems(*m_environment.clinical, code)) {
        if (row.state == qint16(ProblemState::Closed))
            continue;
        QString name = row.description;
        if (name.isEmpty())
            name = clivara::diagnosisName(*m_environment.codes, row.suspectedCode);
        if (name.isEmpty())
            name = row.suspectedCode;
        problems.append({name, row.suspectedCode, row.start, row.state});
    }
    std::stable_partition(problems.begin(), problems.end(), [](const ProblemLine &problem) {
        return problem.state == qint16(ProblemState::Chronic);
    });
    return problems;
}

QList<VisitLine> PatientRecords::lastVisits(qint32 code) const
{
    QList<VisitLine> visits;
    const auto rows = rowsOf(
        *m_environment.clinical,
        QStringLiteral("SELECT TOP %1 DataReg, idtipo, conclusioni, anamnesi, esameob, pianificazione, "
                       "txtNote FROM VISITAPROBL WHERE cod_paz = [patient] "
                       "ORDER BY DataReg DESC, IdVisitaProbl DESC")
            .arg(shownVisits),
        code);
    for (; !rows->Eof(); rows->MoveNext()) {
        QString text;
        for (const char *field : {"conclusioni", "anamnesi", "esameob", "pianificazione", "txtNote"}) {
            text = rows->Fields(QString::fromLatin1(field)).text().simplified();
            if (!text.isEmpty())
                break;
        }
        visits.append({rows->Fields(QStringLiteral("DataReg")).date().date(),
                       visitType(whole(rows->Fields(QStringLiteral("idtipo")))), text});
    }
    return visits;
}

QList<LaboratoryLine> PatientRecords::lastLaboratory(qint32 patient) const
{
    QList<LaboratoryLine> lines;
    QHash<QString, qsizetype> byExam;
    const auto rows = rowsOf(
        *m_environment.clinical,
        QStringLiteral("SELECT TOP %1 r.da_pre, r2.codice, r2.esame, r2.unita, r2.unita_Mis, r2.risposta, "
                       "r2.risposta_e "
                       "FROM riepil AS r, riepil2 AS r2 WHERE r2.cod_rie = r.minsan AND r.tipo = 1 "
                       "AND r.cod_paz = [patient] ORDER BY r.da_pre DESC, r2.idriepil2 DESC")
            .arg(readResults),
        patient);
    for (; !rows->Eof(); rows->MoveNext()) {
        const QString value = trimmed(*rows, QStringLiteral("unita"));
        if (value.isEmpty())
            continue;
        const QString exam = trimmed(*rows, QStringLiteral("esame"));
        const QString code = trimmed(*rows, QStringLiteral("codice"));
        const QString key = code + u'\n' + exam.toLower();
        const QDate date = rows->Fields(QStringLiteral("da_pre")).date().date();
        if (const auto known = byExam.constFind(key); known == byExam.cend()) {
            if (lines.size() == shownExams)
                continue;
            byExam.insert(key, lines.size());
            const QString report = rows->Fields(QStringLiteral("risposta")).text();
            const QString verdict = rows->Fields(QStringLiteral("risposta_e")).text();
            lines.append({exam.isEmpty() ? code : exam, value,
                          isMeasured(value) ? trimmed(*rows, QStringLiteral("unita_Mis")) : QString(),
                          rangeMark(report, verdict), rangeWords(report, verdict), date});
        } else if (lines[*known].previousValue.isEmpty() && date < lines[*known].date) {
            lines[*known].previousValue = value;
            lines[*known].previousDate = date;
        }
    }
    return lines;
}

BloodPressure PatientRecords::lastPressure(qint32 code) const
{
    const auto rows =
        rowsOf(*m_environment.clinical,
               QStringLiteral("SELECT TOP 1 presmax, presmin, data_ob FROM esa_ob "
                              "WHERE cod_paz = [patient] AND presmax > 0 ORDER BY data_ob DESC"),
               code);
    if (rows->Eof())
        return {};
    return {whole(rows->Fields(QStringLiteral("presmax"))), whole(rows->Fields(QStringLiteral("presmin"))),
            rows->Fields(QStringLiteral("data_ob")).date().date()};
}

qint32 PatientRecords::instructivePatient(QDate since) const
{
    dao::Database &clinical = *m_environment.clinical;
    QHash<qint32, QSet<QString>> exams = examsSince(clinical, since);
    for (const qint32 patient : weighedPatients(clinical))
        exams[patient].insert(QStringLiteral("peso"));
    // So do the evaluations and the sheets of which there is a course to see.
    for (const char *table : {"Rischio_Cardio", "SindrMetabolica", "AIR15_7"}) {
        const auto rows = clinical.OpenRecordset(
            QStringLiteral("SELECT cod_paz FROM %1 GROUP BY cod_paz HAVING count(*) > 2")
                .arg(QLatin1String(table)),
            dao::RecordsetType::Snapshot);
        for (; !rows->Eof(); rows->MoveNext())
            exams[whole(rows->Fields(0))].insert(QLatin1String(table));
    }

    // Each exam counts more than any number of problems.
    constexpr int examWeight = 100;
    QHash<qint32, int> scores;
    for (auto each = exams.cbegin(); each != exams.cend(); ++each)
        scores[each.key()] = examWeight * static_cast<int>(each->size());
    const auto problems = clinical.OpenRecordset(
        QStringLiteral("SELECT cod_paz, count(*) AS n FROM PROBLEMS WHERE stato_probl = 1 GROUP BY cod_paz"),
        dao::RecordsetType::Snapshot);
    for (; !problems->Eof(); problems->MoveNext())
        scores[whole(problems->Fields(0))] += std::min(examWeight - 1, whole(problems->Fields(1)));

    QList<qint32> candidates = scores.keys();
    std::sort(candidates.begin(), candidates.end(), [&](qint32 a, qint32 b) {
        return std::pair(-scores.value(a), a) < std::pair(-scores.value(b), b);
    });
    // Rows may have outlived their patient.
    for (const qint32 candidate : std::as_const(candidates)) {
        if (entry(candidate))
            return candidate;
    }
    const auto any = entriesAfter(-1, 1);
    return any.empty() ? -1 : any.front().code;
}

QString PatientRecords::visitType(int type) const
{
    if (m_visitTypes.isEmpty()) {
        const auto rows = m_environment.codes->OpenRecordset(
            QStringLiteral("SELECT IdTipo, descr_tipo FROM TIPOVISITA"), dao::RecordsetType::Snapshot);
        for (; !rows->Eof(); rows->MoveNext()) {
            m_visitTypes.insert(whole(rows->Fields(0)), rows->Fields(1).text().trimmed());
        }
    }
    return m_visitTypes.value(type);
}

} // namespace orvale
