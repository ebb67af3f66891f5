// SPDX-License-Identifier: Apache-2.0
#include "app/practice/PracticeCheck.h"
#include "PracticeFixture.h"

namespace {

using orvale::Finding;
using orvale::Practice;

class PracticeCheckTest : public PracticeFixture { };

// One fault a case: the statements that make it, a word of the line that tells it, and its keys.
TEST_F(PracticeCheckTest, FindsEachFault)
{
    const QString codes = QString(230, u'9');
    const QString infections = QString(190, u'9');
    const struct {
        QStringList statements;
        const char *text;
        const char *keys;
    } cases[] = {
        {{"INSERT INTO inf_gen (cod_paz) VALUES (8)", "INSERT INTO inf_gen (cod_paz) VALUES (9)"},
         "inf_gen: righe di un paziente",
         "8,9"},
        {{"INSERT INTO esa_ob (cod_paz, presmax) VALUES (8, 120)"}, "esa_ob: righe di un paziente", "8"},
        {{"INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz, id_Probl) VALUES (5, 1, 77)"},
         "problema che non esiste",
         "5"},
        {{"INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz, id_Probl) VALUES (6, 2, 1)"},
         "problema di un altro paziente",
         "6"},
        {{"INSERT INTO riepil2 (idriepil2, cod_rie) VALUES (3, 'E7')"}, "risultati senza la richiesta", "3"},
        // A medicine of the same code is no request.
        {{"INSERT INTO SPEFAR (CODSPE) VALUES ('094')",
          "INSERT INTO riepil (cod_pre, cod_paz, tipo, minsan) VALUES (4, 1, 0, '094')",
          "INSERT INTO riepil2 (idriepil2, cod_rie) VALUES (8, '094')",
          "INSERT INTO riepil2 (idriepil2) VALUES (9)"},
         "risultati senza la richiesta",
         "8,9"},
        {{"INSERT INTO riepil (cod_pre, cod_paz, tipo, minsan) VALUES (4, 1, 19, 'E1')"},
         "gruppo che non è in ESAMI",
         "4"},
        {{"INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz, idtipo) VALUES (5, 1, 7)",
          "INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz, idtipo) VALUES (6, 1, 0)",
          "INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz, idtipo) VALUES (7, 1, 2)"},
         "tipo che non è in TIPOVISITA",
         "5"},
        {{"INSERT INTO SUGGERIT (COD_PRE) VALUES (12)"}, "suggerimenti senza la prescrizione", "12"},
        {{"INSERT INTO riepil (cod_pre, cod_paz, tipo, minsan) VALUES (4, 1, 1, 'E1')",
          "INSERT INTO riepil (cod_pre, cod_paz, tipo, minsan) VALUES (5, 1, 2, 'E1')"},
         "riepil: chiave ripetuta (minsan)",
         "E1"},
        {{"INSERT INTO PROBLEMS (cod_paz, stato_probl, sRecordUid) VALUES (1, 1, 'u1')",
          "INSERT INTO PROBLEMS (cod_paz, stato_probl, sRecordUid) VALUES (2, 1, 'U1')"},
         "PROBLEMS: chiave ripetuta (sRecordUid)",
         "u1"},
        {{"UPDATE archivio SET idRowGuid = '{0F8FAD5B-D9CB-469F-A165-70867728950E}'"},
         "archivio: chiave ripetuta (idRowGuid)",
         "{0F8FAD5B-D9CB-469F-A165-70867728950E}"},
        {{QStringLiteral("INSERT INTO ESAME_OB (cod_paz, tipo_dati, dati_paz) VALUES (2, 'X', '%1')")
              .arg(codes.chopped(2))},
         "allergie non lunghe 230",
         "2"},
        {{QStringLiteral("INSERT INTO ESAME_OB (cod_paz, tipo_dati, dati_paz) VALUES (1, 'M', '%1')")
              .arg(infections + u'9')},
         "infettive non lunghe 190",
         "1"},
        {{"INSERT INTO ESAME_OB (cod_paz, tipo_dati) VALUES (1, 'X')",
          "INSERT INTO ESAME_OB (cod_paz, tipo_dati) VALUES (1, 'X')"},
         "più schede delle allergie",
         "1"},
        {{"UPDATE PROBLEMS SET stato_probl = 4"}, "stato sconosciuto", "1"},
        {{"UPDATE PROBLEMS SET stato_probl = Null"}, "stato sconosciuto", "1"},
        // Nothing wrong: texts never filled in, visits of no problem, medicines in the list.
        {{QStringLiteral("INSERT INTO ESAME_OB (cod_paz, tipo_dati, dati_paz) VALUES (1, 'X', '%1')")
              .arg(codes),
          "INSERT INTO ESAME_OB (cod_paz, tipo_dati, dati_paz) VALUES (2, 'X', '  ')",
          "INSERT INTO ESAME_OB (cod_paz, tipo_dati) VALUES (1, 'M')",
          "INSERT INTO ESAME_OB (cod_paz, tipo_dati, dati_paz) VALUES (1, 'A', '17070.1')",
          "INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz, id_Probl) VALUES (1, 1, 1)",
          "INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz, id_Probl) VALUES (2, 1, -1)",
          "INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz) VALUES (3, 1)",
          "INSERT INTO SPEFAR (CODSPE) VALUES ('094')",
          "INSERT INTO riepil (cod_pre, cod_paz, tipo, minsan) VALUES (4, 1, 0, '094')",
          "INSERT INTO riepil (cod_pre, cod_paz, tipo, minsan) VALUES (5, 1, 0, '094')",
          "INSERT INTO riepil (cod_pre, cod_paz, tipo, minsan) VALUES (6, 1, 20, 'E1')",
          "INSERT INTO PROBLEMS (cod_paz, stato_probl, sRecordUid) VALUES (1, 0, '')",
          "INSERT INTO PROBLEMS (cod_paz, stato_probl, sRecordUid) VALUES (2, 2, '')"},
         "",
         ""},
    };
    int number = 0;
    for (const auto &c : cases) {
        SCOPED_TRACE(c.statements.first().toStdString());
        const auto practice = Practice::create(path(QStringLiteral("p%1").arg(++number)));
        dao::Database &clinical = *practice->environment().clinical;
        clinical.Execute("INSERT INTO archivio (cod_paz, cognome) VALUES (1, 'Uno')");
        clinical.Execute("INSERT INTO archivio (cod_paz, cognome) VALUES (2, 'Due')");
        clinical.Execute("INSERT INTO PROBLEMS (cod_paz, stato_probl) VALUES (1, 3)");
        clinical.Execute("INSERT INTO ESAMI (tipo_esa) VALUES (1)");
        clinical.Execute("INSERT INTO ESAMI (tipo_esa) VALUES (2)");
        practice->environment().codes->Execute("INSERT INTO TIPOVISITA (IdTipo) VALUES (2)");
        for (const QString &statement : c.statements)
            clinical.Execute(statement);
        const auto found = orvale::checkPractice(*practice);
        if (*c.text == '\0') {
            EXPECT_TRUE(found.isEmpty()) << found.value(0).text.toStdString();
            continue;
        }
        ASSERT_EQ(found.size(), 1);
        EXPECT_NE(found.first().text.toStdString().find(c.text), std::string::npos)
            << found.first().text.toStdString();
        EXPECT_EQ(found.first().keys.join(u',').toStdString(), c.keys);
        EXPECT_EQ(found.first().count, found.first().keys.size());
        EXPECT_EQ(found.first().kind, Finding::Kind::Inconsistency);
    }
}

// What was stored without a patient stands under these codes.
TEST_F(PracticeCheckTest, FindsTheRowsOfNobodyInEveryTable)
{
    const auto practice = Practice::create(path("p"));
    dao::Database &clinical = *practice->environment().clinical;
    clinical.Execute("INSERT INTO archivio (cod_paz) VALUES (1)");
    QStringList tables;
    for (const char *table :
         {"inf_gen", "ESAME_OB", "esa_ob", "riepil", "PROBLEMS", "VISITAPROBL", "Rischio_Cardio",
          "SindrMetabolica", "cronpat", "pat_rem2", "patopers", "ricoveri2", "AIR15_7"}) {
        tables.append(table);
        int key = 500;
        for (const char *nobody : {"0", "-1", "77777", "1"}) {
            QStringList fields{"cod_paz"}, values{nobody};
            // Keys that the tables want.
            const auto add = [&](const char *of, const char *field, const QString &value) {
                if (qstrcmp(table, of) == 0) {
                    fields.append(field);
                    values.append(value);
                }
            };
            const QString number = QString::number(++key);
            add("riepil", "cod_pre", number);
            add("riepil", "tipo", "20");
            add("PROBLEMS", "stato_probl", "1");
            add("VISITAPROBL", "IdVisitaProbl", number);
            add("Rischio_Cardio", "Data_Val", "#3/1/2026#");
            add("SindrMetabolica", "Data_Val", "#3/1/2026#");
            add("AIR15_7", "idScheda", number);
            add("AIR15_7", "idTipo", "1");
            clinical.Execute(QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                                 .arg(table, fields.join(u','), values.join(u',')));
        }
    }
    QStringList told;
    for (const Finding &finding : orvale::checkPractice(*practice)) {
        EXPECT_EQ(finding.count, 3) << qPrintable(finding.text);
        told.append(finding.text.section(u':', 0, 0));
    }
    EXPECT_EQ(told, tables);

    // Nobody has a row in the registry either.
    clinical.Execute("INSERT INTO archivio (cod_paz) VALUES (0)");
    clinical.Execute("INSERT INTO Modifiche (Tipo, cod_paz) VALUES (4, 77777)");
    const auto found = orvale::checkPractice(*practice);
    ASSERT_EQ(found.size(), tables.size() + 2);
    for (qsizetype i = 0; i < tables.size(); ++i)
        EXPECT_EQ(found[i].count, 3) << qPrintable(found[i].text);
    EXPECT_EQ(found[tables.size()].keys, QStringList{"0"});
    EXPECT_EQ(found.last().keys, QStringList{"77777"});
    EXPECT_EQ(found.last().kind, Finding::Kind::WorthKnowing);
}

// A practice that was filled elsewhere may lack the indexes that keep keys apart.
TEST_F(PracticeCheckTest, FindsKeysThatNoIndexGuards)
{
    const auto practice = Practice::create(path("p"));
    const auto execute = [](dao::Database &database, const QStringList &statements) {
        for (const QString &statement : statements)
            database.Execute(statement);
    };
    const clivara::HostEnvironment &environment = practice->environment();
    execute(*environment.clinical, {"INSERT INTO archivio (cod_paz) VALUES (1)", "DROP TABLE Rischio_Cardio",
                                    "CREATE TABLE Rischio_Cardio (cod_paz LONG, Data_Val DATETIME)",
                                    "INSERT INTO Rischio_Cardio VALUES (1, #3/1/2026#)",
                                    "INSERT INTO Rischio_Cardio VALUES (1, #3/2/2026#)"});
    execute(*environment.codes, {"DROP TABLE icd9", "CREATE TABLE icd9 (cod TEXT(10), des TEXT(120))",
                                 "INSERT INTO icd9 VALUES ('v1', 'a')"});
    execute(*environment.doctors,
            {"DROP TABLE medici_gruppo", "CREATE TABLE medici_gruppo (cod_smi LONG, idRowGuid GUID)",
             "INSERT INTO medici_gruppo (cod_smi) VALUES (101)"});
    EXPECT_TRUE(orvale::checkPractice(*practice).isEmpty());
    execute(*environment.clinical, {"INSERT INTO Rischio_Cardio VALUES (1, #3/2/2026#)"});
    execute(*environment.codes, {"INSERT INTO icd9 VALUES ('V1', 'b')"});
    execute(*environment.doctors, {"INSERT INTO medici_gruppo (cod_smi) VALUES (101)"});
    QStringList told;
    for (const Finding &finding : orvale::checkPractice(*practice))
        told << QStringLiteral("%1: %2").arg(finding.text, finding.keys.join(u','));
    told.sort();
    ASSERT_EQ(told.size(), 3);
    EXPECT_TRUE(told.at(0).startsWith("Rischio_Cardio: chiave ripetuta (cod_paz, Data_Val): 1 / "))
        << told.at(0).toStdString();
    EXPECT_TRUE(told.at(0).contains("2026"));
    EXPECT_EQ(told.at(1).toLower(), "icd9: chiave ripetuta (cod): v1");
    EXPECT_EQ(told.at(2), "medici_gruppo: chiave ripetuta (cod_smi): 101");
}

TEST_F(PracticeCheckTest, NamesTablesThatAreNotThere)
{
    const auto practice = Practice::create(path("p"));
    practice->environment().codes->Execute("DROP TABLE TIPOVISITA");
    const auto found = orvale::checkPractice(*practice);
    ASSERT_EQ(found.size(), 1);
    EXPECT_TRUE(found.first().text.contains("Tabelle.sqlite")) << found.first().text.toStdString();
    EXPECT_EQ(found.first().keys, QStringList{"TIPOVISITA"});
}

TEST_F(PracticeCheckTest, ListsTheRowsThatAnImportRefused)
{
    const auto practice = Practice::create(path("p"));
    dao::Database &clinical = *practice->environment().clinical;
    clinical.Execute("CREATE TABLE orvale_refused_rows (id COUNTER, [database] TEXT(20), [table] MEMO, "
                     "[row] DOUBLE, [reason] MEMO, [content] MEMO)");
    EXPECT_TRUE(orvale::checkPractice(*practice).isEmpty());
    clinical.Execute("INSERT INTO orvale_refused_rows ([database], [table], [row], [reason]) VALUES "
                     "('codes', 'icd9', 12, 'chiave doppia')");
    const auto found = orvale::checkPractice(*practice);
    ASSERT_EQ(found.size(), 1);
    EXPECT_EQ(found.first().kind, Finding::Kind::Inconsistency);
    EXPECT_EQ(found.first().keys, QStringList{"codes.icd9 / 12 / chiave doppia"});
}

// Medicines leave the list when they are no longer sold: that is no fault of the practice.
TEST_F(PracticeCheckTest, TellsWhatIsOnlyWorthKnowingApart)
{
    const auto practice = Practice::create(path("p"));
    for (const char *statement :
         {"INSERT INTO archivio (cod_paz) VALUES (1)",
          "INSERT INTO riepil (cod_pre, cod_paz, tipo, minsan) VALUES (4, 1, 0, '094')",
          "INSERT INTO PROBLEMS (cod_paz, stato_probl) VALUES (1, 9)"})
        practice->environment().clinical->Execute(statement);
    const auto found = orvale::checkPractice(*practice);
    ASSERT_EQ(found.size(), 2);
    EXPECT_EQ(found.first().kind, Finding::Kind::Inconsistency);
    EXPECT_EQ(found.last().kind, Finding::Kind::WorthKnowing);
    EXPECT_TRUE(found.last().text.contains("farmaco"));
    EXPECT_EQ(found.last().keys, QStringList{"4"});
}

TEST_F(PracticeCheckTest, ShowsTheFirstKeysOfMany)
{
    const auto practice = Practice::create(path("p"));
    for (int i = 1; i <= 23; ++i)
        practice->environment().clinical->Execute(
            QStringLiteral("INSERT INTO inf_gen (cod_paz) VALUES (%1)").arg(i));
    const auto found = orvale::checkPractice(*practice);
    ASSERT_EQ(found.size(), 1);
    EXPECT_EQ(found.first().count, 23);
    EXPECT_EQ(found.first().keys.size(), 20);
    EXPECT_EQ(found.first().keys.last(), "20");
    EXPECT_EQ(orvale::checkPractice(*practice, 1000).first().keys.last(), "23");
}

} // namespace
