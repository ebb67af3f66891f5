// SPDX-License-Identifier: Apache-2.0
#include "problems/ProblemItems.h"

#include "ProblemFixture.h"

namespace clivara {
namespace {

class ProblemItemsTest : public ProblemFixture {
protected:
    ProblemItemsTest()
    {
        attachProblemTables(*state.environment);
        execute("INSERT INTO SPEFAR (CODSPE, SPECIALITA) VALUES ('D1', ' RAMIPRIL 5MG ')");
        execute("INSERT INTO ESAMI VALUES (1, 'Esami di laboratorio')");
        execute("INSERT INTO ESAMI VALUES (5, ' Terapia fisica ')");
        execute("INSERT INTO ESAMI VALUES (19, 'Altro')");
        execute("INSERT INTO ESAMI VALUES (20, 'Certificazioni')");
    }

    void addVisit(int id, const QString &problem, const QString &date,
                  const QString &texts = "Null, Null, Null, Null, Null", int patient = 17)
    {
        execute(QStringLiteral(
                    "INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz, id_Probl, DataReg, idtipo, SINTOMO, "
                    "anamnesi, esameob, conclusioni, pianificazione, txtNote) VALUES (%1, %2, %3, %4, 2, "
                    "'S01', %5)")
                    .arg(id)
                    .arg(patient)
                    .arg(problem, date, texts));
    }
    // A line of RIEPIL; values as the SQL has them.
    void addItem(int code, int type, const QString &date, const QString &diagnosis, const QString &minsan,
                 const QString &packs = "2", int patient = 17)
    {
        execute(QStringLiteral(
                    "INSERT INTO RIEPIL (cod_pre, cod_paz, tipo, minsan, da_pre, num_conf, cod_dia) VALUES "
                    "(%1, %2, %3, '%4', %5, %6, %7)")
                    .arg(code)
                    .arg(patient)
                    .arg(type)
                    .arg(minsan, date, packs, diagnosis));
    }
    // A result under a line of RIEPIL: exam, unita, risposta, risposta_e, data_eff, numter.
    void addResult(const QString &order, const QString &values)
    {
        execute(QStringLiteral(
                    "INSERT INTO RIEPIL2 (idriepil2, cod_rie, esame, unita, risposta, risposta_e, data_eff, "
                    "numter) VALUES (%1, '%2', %3)")
                    .arg(++m_results)
                    .arg(order, values));
    }

    static QStringList shown(const QList<ItemRow> &items)
    {
        QStringList rows;
        for (const ItemRow &item : items) {
            rows.append(QStringLiteral("%1|%2|%3|%4|%5")
                            .arg(itemKindLetter(item.kind))
                            .arg(item.date, item.description)
                            .arg(item.key)
                            .arg(item.minsan));
            for (const ItemRow::Line &line : item.lines)
                rows.append(QStringLiteral("  %1|%2").arg(line.date, line.text));
        }
        return rows;
    }
    QStringList items(qint32 problem, QDate start, const QString &code)
    {
        return shown(problemItems(*environment.local, 17, problem, start, code));
    }
    static QStringList keys(const QList<ItemRow> &items, ItemRow::Kind kind)
    {
        QStringList found;
        for (const ItemRow &item : items) {
            if (item.kind == kind)
                found.append(QString::number(item.key));
        }
        return found;
    }

private:
    int m_results = 0;
};

TEST_F(ProblemItemsTest, AProblemShowsItsVisitsThenItsDrugsThenItsTests)
{
    const qint32 problem = addProblem("401.9", "Ipertensione", QDate(2026, 3, 1));
    addVisit(
        1, QString::number(problem), "#01/10/2026#",
        "' storia ', Null, 'conclusioni d''uso', '   ', 'nota'"); // older than the problem: it is filed there
    addVisit(2, QString::number(problem), "#06/02/2026#", "'', 'obiettività', Null, 'piano', Null");
    addVisit(3, QString::number(problem), "#06/02/2026#");
    addVisit(4, "Null", "#06/03/2026#");
    addVisit(5, QString::number(problem), "#06/04/2026#", "Null, Null, Null, Null, Null", 18);
    addItem(10, 0, "#03/01/2026#", "'401.9'", "D1"); // on the day that the problem started
    addItem(11, 0, "#02/28/2026 23:59:59#", "'401.9'", "D1");
    addItem(12, 0, "#05/05/2026#", "'401.9'", "D1", "Null");
    addItem(13, 0, "#05/05/2026#", "'401.1'", "D1");
    addItem(14, 0, "#05/05/2026#", "'401.9'", "unknown");
    addItem(15, 1, "#05/05/2026#", "'401.9'", "E1");
    addItem(16, 1, "#05/05/2026#", "'401.9'", "E2", "2", 18);
    addResult("E1", "' S-Sodio ', ' 141 ', Null, Null, #05/07/2026#, Null");
    addResult("E2", "'di un altro', '1', Null, Null, Null, Null");
    EXPECT_EQ(
        items(problem, QDate(2026, 3, 1), "401.9"),
        (QStringList{"V|02/06/26|Visita domiciliare|3|", "V|02/06/26|Visita domiciliare|2|",
                     "  |Esame obiett.: obiettività", "  |Pianificazione: piano",
                     "V|10/01/26|Visita domiciliare|1|", "  |Anamnesi: storia",
                     "  |Conclusioni: conclusioni d'uso", "  |Note: nota", "F|05/05/26|RAMIPRIL 5MG|12|D1",
                     "F|01/03/26|RAMIPRIL 5MG|10|D1", "  |Num. confezioni: 2",
                     "S|05/05/26|Esami di laboratorio|15|E1", "  07/05/26|S-Sodio Esito: 141"}));
}

TEST_F(ProblemItemsTest, StartOfALongLifeAndNoStartHideNothing)
{
    const qint32 problem = addProblem("401.9", "Ipertensione", QDate(1925, 3, 1));
    addItem(1, 0, "#03/01/1925#", "'401.9'", "D1");
    addItem(2, 0, "#02/28/1925#", "'401.9'", "D1");
    addItem(3, 0, "Null", "'401.9'", "D1");
    addItem(4, 1, "Null", "'401.9'", "E1");
    addResult("E1", "'senza data', Null, Null, Null, Null, Null");
    const auto found = [&](QDate start, ItemRow::Kind kind) {
        return keys(problemItems(*environment.local, 17, problem, start, "401.9"), kind);
    };
    EXPECT_EQ(found(QDate(1925, 3, 1), ItemRow::Kind::Drug), QStringList("1"));
    EXPECT_EQ(found({}, ItemRow::Kind::Drug), (QStringList{"1", "2", "3"}));
    EXPECT_EQ(found(QDate(1925, 3, 1), ItemRow::Kind::Test), QStringList());
    EXPECT_EQ(found({}, ItemRow::Kind::Test), QStringList("4")) << "its group has no date";
}

TEST_F(ProblemItemsTest, UnassociatedAreVisitsOfNoProblemAndItemsWithoutDiagnosis)
{
    const qint32 coded = addProblem("401.9", "Ipertensione", QDate(2020, 1, 1));
    const qint32 described = addProblem("", "Senza codice", QDate(2020, 1, 1));
    int visit = 0;
    for (const QString &problem : {QString("0"), QString("-1"), QString("-7"), QString("Null"),
                                   QString::number(coded), QString::number(described), QString("999")}) {
        ++visit;
        addVisit(visit, problem, QStringLiteral("#01/%1/2026#").arg(visit, 2, 10, QLatin1Char('0')));
    }
    int item = 0;
    for (const char *diagnosis : {"Null", "''", "'   '", "'401.9'", "'401'"}) {
        ++item;
        addItem(item, 0, "#01/01/2026#", diagnosis, "D1");
        addItem(item + 10, 1, QStringLiteral("#01/%1/2026#").arg(item, 2, 10, QLatin1Char('0')), diagnosis,
                QStringLiteral("E%1").arg(item));
        addResult(QStringLiteral("E%1").arg(item), "'x', '1', Null, Null, Null, Null");
    }
    const auto of = [&](qint32 problem, const QString &code) {
        const QList<ItemRow> found = problemItems(*environment.local, 17, problem, {}, code);
        return QStringList{keys(found, ItemRow::Kind::Visit).join(' '),
                           keys(found, ItemRow::Kind::Drug).join(' '),
                           keys(found, ItemRow::Kind::Test).join(' ')};
    };
    EXPECT_EQ(of(unassociated, ""), (QStringList{"4 3 2 1", "3 2 1", "11 12 13"}));
    EXPECT_EQ(of(coded, "401.9"), (QStringList{"5", "4", "14"}));
    EXPECT_EQ(of(described, ""), (QStringList{"6", "", ""}))
        << "items without diagnosis belong to no problem";
    EXPECT_EQ(of(coded, "x' or '1'='1"), (QStringList{"5", "", ""}));
    EXPECT_EQ(items(999, {}, "401.9").size(), 1 + 2 + 2) << "what is filed against a problem that is gone";
}

TEST_F(ProblemItemsTest, ResultsOfOneDayAndGroupShareARow)
{
    addItem(1, 1, "#01/01/1900#", "Null", "E1"); // the very first day that a group can have
    addItem(2, 5, "#05/01/2026#", "Null", "E2");
    addItem(3, 1, "#05/01/2026#", "Null", "E3");
    addItem(4, 1, "#05/01/2026#", "Null", "E4");
    addItem(5, 1, "#05/02/2026#", "Null", "E5");
    addItem(6, 20, "#05/02/2026#", "Null", "E6");
    addItem(7, 19, "#05/03/2026#", "Null", "E7");
    addItem(8, 7, "#05/04/2026#", "Null", "E8"); // a group that ESAMI does not have
    for (int i = 1; i <= 8; ++i)
        addResult(QStringLiteral("E%1").arg(i), QStringLiteral("'e%1', '%1', Null, Null, Null, Null").arg(i));
    addResult("E3", "'e3b', Null, Null, Null, #05/09/2026#, Null");
    EXPECT_EQ(items(unassociated, {}, ""),
              (QStringList{"S|01/01/00|Esami di laboratorio|1|E1", "  |e1 Esito: 1",
                           "S|01/05/26|Esami di laboratorio|3|E3", "  |e3 Esito: 3", "  09/05/26|e3b",
                           "  |e4 Esito: 4", "S|01/05/26|Terapia fisica|2|E2", "  |e2 Esito: 2",
                           "S|02/05/26|Esami di laboratorio|5|E5", "  |e5 Esito: 5", "S|03/05/26|Altro|7|E7",
                           "  |e7 Esito: 7"}));
}

TEST_F(ProblemItemsTest, AResultIsShownWithItsReportAndNothingMeasuredIsHidden)
{
    struct Case {
        const char *values; // esame, unita, risposta, risposta_e, data_eff, numter
        const char *shown;
    };
    const Case cases[]{
        {"'ECG', Null, 'ritmo sinusale', 'Negativo', Null, Null",
         "ECG Esito: Negativo, Referto: ritmo sinusale"},
        {"'ECG', Null, ' ritmo sinusale ', ' ', Null, Null", "ECG Esito: ritmo sinusale"},
        {"'Sodio', '141', 'nei limiti', Null, Null, Null", "Sodio Esito: nei limiti 141"},
        {"'Sodio', '141', Null, 'NORMALE', Null, Null", "Sodio Esito: NORMALE 141"},
        {"'FKT', Null, 'eseguita', 'Da ripetere', Null, ' 10 '",
         "FKT Esito: Da ripetere, Referto: eseguita, N.sed: 10"},
        {"'FKT', Null, Null, Null, Null, '8'", "FKT, N.sed: 8"},
        {"'FKT', ' ', '', Null, Null, ''", "FKT"},
        {"Null, '5', Null, Null, Null, Null", "Esito: 5"},
    };
    addItem(1, 1, "#05/01/2026#", "Null", "E1");
    QStringList expected{"S|01/05/26|Esami di laboratorio|1|E1"};
    for (const Case &c : cases) {
        addResult("E1", c.values);
        expected.append("  |" + QString::fromUtf8(c.shown));
    }
    EXPECT_EQ(items(unassociated, {}, ""), expected);
}

TEST_F(ProblemItemsTest, AllVisitsOfAPatientWithTheirProblemsCode)
{
    const qint32 problem = addProblem(" 401.9 ", "Ipertensione");
    addVisit(1, QString::number(problem), "#01/01/2026#",
             "'" + QString(awkwardText()).replace("'", "''") + "', Null, Null, Null, Null");
    addVisit(2, "999", "#01/02/2026#");
    addVisit(3, "Null", "Null");
    addVisit(4, QString::number(problem), "#01/01/2026#", "Null, Null, Null, Null, Null", 18);
    execute("UPDATE VISITAPROBL SET idtipo = 77 WHERE IdVisitaProbl = 2");
    const QList<ItemRow> found = patientVisits(*environment.local, 17);
    ASSERT_EQ(keys(found, ItemRow::Kind::Visit), (QStringList{"2", "1", "3"}));
    EXPECT_EQ(found[0].problemCode, "") << "its problem is gone";
    EXPECT_EQ(found[0].description, "") << "nobody knows its type";
    EXPECT_EQ(found[1].problemCode, "401.9");
    ASSERT_EQ(found[1].lines.size(), 1);
    EXPECT_EQ(found[1].lines[0].text, "Anamnesi: " + awkwardText().trimmed());
    EXPECT_EQ(found[2].date, "");
}

} // namespace
} // namespace clivara
