// SPDX-License-Identifier: Apache-2.0
#include "PracticeFixture.h"
#include "ProgramRun.h"

namespace {

// Runs scenarios with the real program on an empty practice.
class PlayTest : public PracticeFixture {
protected:
    static QString practice()
    {
        static const QTemporaryDir folder;
        static const QString made = [] {
            const QString target = folder.filePath("practice");
            const auto created = orvale::Practice::create(target);
            created->environment().doctors->Execute(
                "INSERT INTO medici_gruppo (cod_smi, cognome) VALUES (7, 'Rossi')");
            created->environment().clinical->Execute(
                "INSERT INTO archivio (cod_paz, cognome, sesso, Data_Nasc) "
                "VALUES (1, 'Bianchi', 'M', #1/2/1960#)");
            created->setProperty("region", "03");
            return target;
        }();
        return made;
    }

    Outcome play(const QByteArray &scenario, const QStringList &options = {}) const
    {
        QStringList arguments{"play", "--practice", practice()};
        arguments << options << "-";
        return orvaleRun(arguments, scenario);
    }
};

} // namespace

TEST_F(PlayTest, StopsAtALineThatCannotBeDone)
{
    const struct {
        const char *name;
        const char *scenario;
        const char *output;
        const char *error;
    } cases[] = {
        {"unknown control", "patient 1\naction 81\nshow Pippo\nform\n", "",
         "riga 3: la maschera calcCockCroft non ha il controllo Pippo\n"},
        {"no form", "click Button1\n", "", "riga 1: nessuna maschera è aperta\n"},
        {"form is gone", "patient 1\naction 81\nkey Esc\nshow me_col\n", "",
         "riga 4: nessuna maschera è aperta\n"},
        {"not a button", "patient 1\naction 81\nclick SSPanel1\n", "",
         "riga 3: SSPanel1 non è un pulsante\n"},
        {"disabled", "patient 1\naction 81\ntype lblEta 3\n", "", "riga 3: in lblEta non si può scrivere\n"},
        {"second section", "patient 1\naction 81\naction 80\n", "",
         "riga 3: la maschera calcCockCroft è ancora aperta\n"},
        {"unknown patient", "patient 2\nget CODICE PAZIENTE\n", "",
         "riga 1: l'archivio non ha il paziente 2\n"},
        {"box without answer", "patient 1\naction 81\nclick Button2(0)\nform\n", "",
         "riga 3: finestra di messaggio senza risposta: Inserire il peso!\n"},
        {"box without the button", "patient 1\nanswer Yes\naction 81\nclick Button2(0)\n", "",
         "riga 4: la finestra di messaggio non ha il pulsante Yes: Inserire il peso!\n"},
        {"unknown routine", "form\nextract Trova 1\n", "{\"form\":null,\"caption\":null}\n",
         "riga 2: routine sconosciuta: Trova\n"},
        {"patient that is none", "extract StatoFumo x\n", "", "riga 1: codice del paziente non valido: x\n"},
        {"date that is none", "extract UltimoRischioCardio 1 2026-02-30 0\n", "",
         "riga 1: la data si scrive AAAA-MM-GG o 0, non 2026-02-30\n"},
        {"argument missing", "extract PressioneMassima 1 0\n", "", "riga 1: manca una data\n"},
        {"argument too many", "extract StatoFumo 1 0\n", "", "riga 1: argomento di troppo: 0\n"},
        {"open quotes", "extract SommaConfezioniATC 1 \"C10 0 0\n", "",
         "riga 1: mancano le virgolette che chiudono\n"},
    };
    for (const auto &[name, scenario, output, error] : cases) {
        const Outcome outcome = play(scenario);
        EXPECT_EQ(outcome.status, 2) << name;
        EXPECT_EQ(outcome.output.toStdString(), output) << name;
        EXPECT_EQ(outcome.error.toStdString(), error) << name;
    }
}

TEST_F(PlayTest, StopsAtSqlThatTheEngineRefuses)
{
    const Outcome outcome = play("sql clinical SELECT * FROM manca\nform\n");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.output, QString());
    EXPECT_TRUE(outcome.error.startsWith("riga 1: ")) << outcome.error.toStdString();
    EXPECT_EQ(outcome.error.count(u'\n'), 1);
}

TEST_F(PlayTest, LetsTheChartTraceWhereTheScenarioSays)
{
    const QString work = path("work");
    QDir().mkpath(work + QStringLiteral("/logOrvale"));
    const QByteArray setting = "today 2026-11-21\nsetting ORVALE_WORK = " + work.toUtf8() + "\n";
    EXPECT_EQ(play(setting + "patient 1\naction 81\nshow Pippo\n").status, 2);
    // The chart begins with the first action: the settings before it count.
    const QByteArray log = readFile("work/logOrvale/log_26_11_21.log");
    EXPECT_TRUE(log.contains("+--- Class3.Action 81\r\n")) << log.toStdString();
}

TEST_F(PlayTest, RefusesAWrongScenarioBeforeAnythingRuns)
{
    const auto before = filesBelow(practice());
    const Outcome outcome = play("exec clinical DELETE * FROM archivio\nclik Button1\n");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.output, QString());
    EXPECT_EQ(outcome.error, "riga 2: comando sconosciuto: clik\n");
    EXPECT_EQ(filesBelow(practice()), before);
}

TEST_F(PlayTest, GoesOnAfterAnExpectationThatIsNotMet)
{
    const Outcome outcome =
        play("today 2026-11-21\npatient 1\naction 81\nexpect lblEta 65\nexpect lblSesso M\n"
             "expect lblEta 66\nshow lblSesso\nclick Button1\nform\n");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.error, "riga 4: lblEta: atteso \"65\", mostrato \"66\"\n");
    EXPECT_TRUE(outcome.output.startsWith("{\"control\":\"lblSesso\",\"text\":\"M\","));
    EXPECT_TRUE(outcome.output.endsWith("{\"form\":null,\"caption\":null}\n"));
}

TEST_F(PlayTest, StartsFromThePracticeAndTheGivenDay)
{
    const Outcome outcome = play("get medicoP\nget MEDICOT\nget codice regione\nget AGGIORNA_DIARIO\n"
                                 "sql clinical SELECT now() AS adesso FROM archivio\npatient 1\naction 80\n"
                                 "expect MaskEdBox1 29/02/2024\nshot figura\n",
                                 {"--today", "2024-02-29", "--shots", path("nuova/immagini")});
    EXPECT_EQ(outcome.output.toStdString(), R"({"setting":"medicoP","value":"7"}
{"setting":"MEDICOT","value":"7"}
{"setting":"codice regione","value":"03"}
{"setting":"AGGIORNA_DIARIO","value":null}
{"columns":["adesso"],"rows":[["2024-02-29 10:00:00"]]}
)");
    EXPECT_EQ(outcome.error, QString());
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(readFile("nuova/immagini/figura.png").startsWith("\x89PNG"));
}

TEST_F(PlayTest, TellsWhatCannotBeReadInOneLine)
{
    writeFile("latin1", "type me_col \xE0\n");
    writeFile("bom", "\xEF\xBB\xBF# vuoto\n");
    const QString missing = path("manca");
    const struct {
        QStringList arguments;
        int status;
        QString error;
    } cases[] = {
        {{missing}, 2, QStringLiteral("Lo scenario %1 non si può leggere.\n").arg(missing)},
        {{path("latin1")}, 2, QStringLiteral("Lo scenario %1 non è un testo UTF-8.\n").arg(path("latin1"))},
        {{"--today", "oggi", path("bom")}, 2, "--today vuole una data AAAA-MM-GG, non \"oggi\".\n"},
        {{"--practice", practice(), path("bom")}, 0, {}},
    };
    for (const auto &[arguments, status, error] : cases) {
        const Outcome outcome = orvaleRun(QStringList{"play"} + arguments);
        EXPECT_EQ(outcome.status, status) << outcome.error.toStdString();
        EXPECT_EQ(outcome.error, error);
    }
    const Outcome foreign = orvaleRun({"play", "--practice", missing, path("bom")});
    EXPECT_EQ(foreign.status, 2);
    EXPECT_EQ(foreign.error.count(u'\n'), 1) << foreign.error.toStdString();
    EXPECT_TRUE(foreign.error.contains(missing)) << foreign.error.toStdString();
}
