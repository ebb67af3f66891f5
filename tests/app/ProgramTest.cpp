// SPDX-License-Identifier: Apache-2.0
#include "PracticeFixture.h"
#include "ProgramRun.h"

namespace {

class ProgramTest : public PracticeFixture { };

TEST_F(ProgramTest, ShowsHelpOfEveryCommand)
{
    for (const QString command : {"", "demo", "check", "tour", "play"}) {
        QStringList arguments{"--help"};
        if (!command.isEmpty())
            arguments.prepend(command);
        const Outcome outcome = orvaleRun(arguments);
        EXPECT_EQ(outcome.status, 0) << command.toStdString();
        EXPECT_TRUE(outcome.output.startsWith(QStringLiteral("Uso: orvale ")
                                              + (command.isEmpty() ? QStringLiteral("[") : command)))
            << outcome.output.toStdString();
        EXPECT_EQ(outcome.error, QString());
    }
}

TEST_F(ProgramTest, TellsWrongUsageInOneLine)
{
    writeFile("file", "x");
    const struct {
        QStringList arguments;
        int status;
        const char *text;
    } cases[] = {
        {{"dmeo"}, 2, "Comando sconosciuto: dmeo"},
        {{"--practise", "x"}, 2, "Opzione sconosciuta: --practise"},
        {{"--practice"}, 2, "manca il valore (P)"},
        {{"--practice", path("x")}, 1, "Manca uno schermo"},
        {{"tour"}, 2, "Manca l'argomento"},
        {{"demo"}, 2, "Manca l'argomento P"},
        {{"demo", path("x"), "--pazienti", "3"}, 2, "Opzione sconosciuta: --pazienti"},
        {{"demo", path("x"), "--patients", "0"}, 2, "--patients vuole"},
        {{"demo", path("file")}, 1, "non è una cartella"},
        {{"demo", m_folder.path()}, 1, "non è vuota"},
        {{"check", path("x")}, 1, "non esiste"},
        {{"check", m_folder.path()}, 1, "manca il file Orvale.sqlite"},
        {{"check", "a", "b"}, 2, "Argomento di troppo"},
    };
    const auto before = filesBelow(m_folder.path());
    for (const auto &c : cases) {
        const Outcome outcome = orvaleRun(c.arguments);
        SCOPED_TRACE(c.arguments.join(u' ').toStdString());
        EXPECT_EQ(outcome.status, c.status);
        EXPECT_TRUE(outcome.error.contains(c.text)) << outcome.error.toStdString();
        EXPECT_EQ(outcome.error.count(u'\n'), 1) << outcome.error.toStdString();
        EXPECT_EQ(outcome.output, QString());
        EXPECT_EQ(filesBelow(m_folder.path()), before);
    }
}

TEST_F(ProgramTest, CreatesADemoAndChecksIt)
{
    const QString folder = path("demo");
    const Outcome demo = orvaleRun({"demo", folder, "--patients", "5", "--years", "2", "--seed", "3"});
    EXPECT_EQ(demo.status, 0) << demo.error.toStdString();
    EXPECT_TRUE(demo.output.contains("5 pazienti, 2 anni"));
    EXPECT_EQ(demo.error, QString()); // no bar where there is no terminal
    const Outcome clean = orvaleRun({"check", folder});
    EXPECT_EQ(clean.status, 0) << clean.output.toStdString();
    EXPECT_EQ(clean.output, "Nessuna incoerenza.\n");

    orvale::Practice::open(folder)->environment().clinical->Execute(
        "DELETE * FROM archivio WHERE cod_paz = 5");
    const Outcome faulty = orvaleRun({"check", folder});
    EXPECT_EQ(faulty.status, 1);
    EXPECT_TRUE(
        faulty.output.contains("inf_gen: righe di un paziente che non è in archivio (cod_paz): 1 [5]"))
        << faulty.output.toStdString();
    EXPECT_EQ(orvaleRun({"demo", folder}).status, 1);

    const auto practice = orvale::Practice::open(folder);
    for (int i = 101; i <= 125; ++i)
        practice->environment().clinical->Execute(
            QStringLiteral("INSERT INTO inf_gen (cod_paz) VALUES (%1)").arg(i));
    const QString first = orvaleRun({"check", folder}).output;
    EXPECT_TRUE(first.contains(": 26 [5, 101,")) << first.toStdString();
    EXPECT_TRUE(first.contains(", 119, …]"));
    const QString all = orvaleRun({"check", folder, "--all"}).output;
    EXPECT_TRUE(all.contains(", 119, 120, 121, 122, 123, 124, 125]")) << all.toStdString();
}

} // namespace
