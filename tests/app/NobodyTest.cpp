// SPDX-License-Identifier: Apache-2.0
#include "PracticeFixture.h"
#include "app/demo/Demo.h"
#include "app/scenario/ScenarioPlayer.h"

namespace {

// What CODICE PAZIENTE may hold when it names no patient.
const char *const nobodies[]{"\"\"", "-1", "0", "77777", "abc", "1.0", "99999999999"};

// A save or command as the doctor does it, and where that leaves the doctor.
struct Attempt {
    const char *name;
    const char *lines;
    const char *form; // that stays open
};

const Attempt attempts[]{
    {"new problem",
     "action 5\nclick bt_Probl(1)\ntype txtDescr Gotta\nanswer Ok\nclick chameleonButton1(0)\nexpect "
     "txtDescr "
     "Gotta",
     "Probl1"},
    {"changed problem",
     "action 5\nselect ReportControl1(0) 1\nclick bt_Probl(2)\ntype Text1(0) scritto\nanswer Ok\n"
     "click chameleonButton1(0)\nexpect Text1(0) scritto",
     "Probl1"},
    {"closed problem", "action 5\nselect ReportControl1(0) 1\nanswer Yes\nanswer Ok\nclick bt_Probl(4)",
     "Problemi"},
    {"deleted problem", "action 5\nselect ReportControl1(0) 1\nanswer Yes\nanswer Ok\nclick bt_Probl(3)",
     "Problemi"},
    {"new visit",
     "action 17\nclick bt_Visita(1)\ntype Text1(0) tosse\nanswer Ok\nclick chameleonButton1(0)\nexpect "
     "Text1(0) tosse",
     "Visita2"},
    {"changed visit",
     "action 17\nselect ReportControl1 0\nkey Return\ntype Text1(0) tosse\nanswer Ok\nclick "
     "chameleonButton1(0)\n"
     "expect Text1(0) tosse",
     "Visita2"},
    {"deleted visit", "action 17\nselect ReportControl1 0\nanswer Yes\nanswer Ok\nkey Del", "Visite2"},
    {"new stay and hospital",
     "action 19\nclick Btm_Ins_Dom\ntype Combo1 Ospedale nuovo\nchoose Combo2 Cardiologia\nanswer "
     "Yes\nanswer Ok\n"
     "click Btm_Memorizza\nexpect Combo1 Ospedale nuovo",
     "Ricoveri_Inserimento"},
    {"deleted stay", "action 19\nselect Griglia_Ricoveri 0\nanswer Ok\nanswer Ok\nclick Btm_Elimina",
     "Ricoveri_Gestione"},
    {"new entry of home care",
     "action 18\nclick btGestione(0)\nchoose cbTipoDomiciliare Assistenza domiciliare integrata "
     "(ADI)\nanswer Ok\n"
     "click btGestione(3)\nexpect cbTipoDomiciliare Assistenza domiciliare integrata (ADI)",
     "Domiciliari_Gestione"},
    {"deleted entry of home care",
     "action 18\nselect Griglia_Domiciliari 0\nanswer Yes\nanswer Ok\nclick btGestione(2)",
     "Domiciliari_Gestione"},
    {"risk",
     "action 13\ntype me_pas 140\ntype me_col 220\ntype me_hdl 50\nanswer Yes\nclick Button2(0)\nanswer Ok\n"
     "click Button2(1)\nexpect me_pas 140",
     "Rischio_Cardio"},
    {"deleted risk", "action 13\nselect Grid1 0\nanswer Yes\nanswer Ok\nclick Button1(1)", "Rischio_Cardio"},
    {"syndrome",
     "action 20\ntype me_ca 102\ntype me_pas 130\ntype me_pad 84\ntype me_glic 109\ntype me_hdl 40\n"
     "type me_trigl 150\nclick Button2(0)\nanswer Ok\nclick Button2(1)\nexpect me_ca 102",
     "SindrMetabolica"},
    {"deleted syndrome", "action 20\nselect Grid1 0\nanswer Yes\nanswer Ok\nclick Button1(1)",
     "SindrMetabolica"},
    {"new sheet",
     "action 25\ncheck optTipo(1)\nclick chameleonButton1(1)\ntype me_Peso 72,5\nanswer Ok\nclick "
     "ctrlButt(1)\n"
     "expect me_Peso 72.5",
     "AIR15_7_1"},
    {"deleted sheet", "action 25\nselect MSFlexGrid1 0\nanswer Yes\nanswer Ok\nclick Btm_Elimina",
     "AIR15_Gestione"},
    {"allergies",
     "action 12\ncheck alim(0)\ntype Text1 Nichel\nanswer Yes\nanswer Ok\nkey Esc\nexpect Text1 Nichel",
     "Allergie"},
    {"past infections", "action 0\nclick Apri_PregMalInf\ncheck SSCheck1(3)\nanswer No\nkey Esc",
     "PregMalInf"},
};

class NobodyTest : public PracticeFixture {
protected:
    void SetUp() override
    {
        const QDate today(2026, 11, 21);
        orvale::createDemo(path("practice"), {.patients = 1, .years = 1, .seed = 1, .today = today});
        m_practice = orvale::Practice::open(path("practice"));
        int key = 900;
        // What an earlier version or another program has stored of nobody.
        for (const int code : {-1, 0, 77777}) {
            ++key;
            for (const char *sql :
                 {"INSERT INTO PROBLEMS (cod_paz, DataInizio, descr_mal, stato_probl) VALUES (%1, "
                  "#1/1/2020#, 'Cefalea', 1)",
                  "INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz, DataReg, idtipo) VALUES (%2, %1, "
                  "#1/1/2020#, 1)",
                  "INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz, DataReg, idtipo) VALUES (%2 + 100, %1, "
                  "#1/1/2021#, %3)",
                  "INSERT INTO ricoveri2 (cod_paz, data_accesso, sede, reparto) VALUES (%1, #1/1/2020#, "
                  "'Sede', 'Cardiologia')",
                  "INSERT INTO Rischio_Cardio (cod_paz, Data_Val, pct_rischio, pressione, colesterolo, hdl) "
                  "VALUES (%1, #1/1/2020#, 5, 140, 220, 50)",
                  "INSERT INTO SindrMetabolica (cod_paz, Data_Val, valutazione, circAdd, pressSist, "
                  "pressDiast, "
                  "glicemia, trigliceridi) VALUES (%1, #1/1/2020#, 1, 102, 130, 84, 109, 150)",
                  "INSERT INTO AIR15_7 (idScheda, cod_paz, idTipo, DataReg, SEQDATI) VALUES (%2, %1, 1, "
                  "#1/1/2020#, 'x')",
                  "INSERT INTO inf_gen (cod_paz) VALUES (%1)"})
                clinical().Execute(QString(sql)
                                       .replace("%1", QString::number(code))
                                       .replace("%2", QString::number(key))
                                       .replace("%3", QString::number(homeCareType())));
        }
    }

    dao::Database &clinical() { return *m_practice->environment().clinical; }
    int homeCareType()
    {
        const auto row = m_practice->environment().codes->OpenRecordset(
            "SELECT IdTipo FROM TIPOVISITA WHERE descr_tipo LIKE '*(ADI)*'");
        return int(row->Fields(0).number());
    }
    // Every row of every table of the clinical database, as text.
    QMap<QString, QStringList> everything()
    {
        QMap<QString, QStringList> tables;
        for (int i = 0; i < clinical().TableDefs().Count(); ++i) {
            const dao::TableDef table = clinical().TableDefs()[i];
            QStringList &rows = tables[table.Name()];
            const auto found = clinical().OpenRecordset("SELECT * FROM [" + table.Name() + "]");
            for (; !found->Eof(); found->MoveNext()) {
                QString row;
                for (int column = 0; column < table.Fields().size(); ++column)
                    row += found->Fields(column).text() + u'|';
                rows += row;
            }
        }
        return tables;
    }
    // What the player prints.
    QStringList play(const QString &lines, int &status)
    {
        QStringList printed;
        const auto note = [&](const QString &line) { printed += line; };
        orvale::ScenarioPlayer player(*m_practice, {note, note, path("")});
        status = player.run(orvale::parseScenario(lines));
        return printed;
    }

    std::unique_ptr<orvale::Practice> m_practice;
};

TEST_F(NobodyTest, NoFormStoresAnything)
{
    const auto before = everything();
    ASSERT_EQ(before.value("PROBLEMS").filter("Cefalea").size(), 3);
    for (const char *nobody : nobodies) {
        for (const Attempt &attempt : attempts) {
            SCOPED_TRACE(std::string(nobody) + ": " + attempt.name);
            int status = 0;
            // Somebody was the current patient before.
            const QStringList printed = play(
                QStringLiteral(
                    "today 2026-11-21\npatient 1\naction 50\nsetting CODICE PAZIENTE = %1\n%2\nboxes\nform\n")
                    .arg(nobody, attempt.lines),
                status);
            const std::string said = printed.join(u'\n').toStdString();
            EXPECT_EQ(status, orvale::ScenarioPlayer::Done) << said;
            EXPECT_NE(said.find("non c'è un paziente identificato"), std::string::npos) << said;
            EXPECT_TRUE(printed.last().startsWith(QStringLiteral("{\"form\":\"%1\"").arg(attempt.form)))
                << said;
        }
    }
    const auto after = everything();
    for (auto table = before.cbegin(); table != before.cend(); ++table)
        EXPECT_EQ(after.value(table.key()), *table) << table.key().toStdString();
}

} // namespace
