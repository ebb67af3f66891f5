// SPDX-License-Identifier: Apache-2.0
#include "PracticeFixture.h"
#include "ProgramRun.h"

namespace {

class ProgramTest : public PracticeFixture { };

TEST_F(ProgramTest, ShowsHelpOfEveryCommand)
{
    for (const QString &command : {QStringLiteral(""), QStringLiteral("demo"), QStringLiteral("check"),
                                   QStringLiteral("tour"), QStringLiteral("play")}) {
        QStringList arguments{QStringLiteral("--help")};
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
    writeFile(QStringLiteral("file"), "x");
    const struct {
        QStringList arguments;
        int status;
        const char *text;
    } cases[] = {
        {{QStringLiteral("dmeo")}, 2, "Comando sconosciuto: dmeo"},
        {{QStringLiteral("--practise"), QStringLiteral("x")}, 2, "Opzione sconosciuta: --practise"},
        {{QStringLiteral("--practice")}, 2, "manca il valore (P)"},
        {{QStringLiteral("--practice"), path(QStringLiteral("x"))}, 1, "Manca uno schermo"},
        {{QStringLiteral("tour")}, 2, "Manca l'argomento"},
        {{QStringLiteral("demo")}, 2, "Manca l'argomento P"},
        {{QStringLiteral("demo"), path(QStringLiteral("x")), QStringLiteral("--pazienti"),
          QStringLiteral("3")},
         2,
         "Opzione sconosciuta: --pazienti"},
        {{QStringLiteral("demo"), path(QStringLiteral("x")), QStringLiteral("--patients"),
          QStringLiteral("0")},
         2,
         "--patients vuole"},
        {{QStringLiteral("demo"), path(QStringLiteral("file"))}, 1, "non è una cartella"},
        {{QStringLiteral("demo"), m_folder.path()}, 1, "non è vuota"},
        {{QStringLiteral("check"), path(QStringLiteral("x"))}, 1, "non esiste"},
        {{QStringLiteral("check"), m_folder.path()}, 1, "manca il file Orvale.sqlite"},
        {{QStringLiteral("check"), QStringLiteral("a"), QStringLiteral("b")}, 2, "Argomento di troppo"},
    };
    const auto before = filesBelow(m_folder.path());
    for (const auto &c : cases) {
        const Outcome outcome = orvaleRun(c.arguments);
        SCOPED_TRACE(c.arguments.join(u' ').toStdString());
        EXPECT_EQ(outcome.status, c.status);
        EXPECT_TRUE(outcome.error.contains(QString::fromUtf8(c.text))) << outcome.error.toStdString();
        EXPECT_EQ(outcome.error.count(u'\n'), 1) << outcome.error.toStdString();
        EXPECT_EQ(outcome.output, QString());
        EXPECT_EQ(filesBelow(m_folder.path()), before);
    }
}

TEST_F(ProgramTest, CreatesADemoAndChecksIt)
{
    const QString folder = path(QStringLiteral("demo"));
    const Outcome demo = orvaleRun({QStringLiteral("demo"), folder, QStringLiteral("--patients"),
                                    QStringLiteral("5"), QStringLiteral("--years"), QStringLiteral("2"),
                                    QStringLiteral("--seed"), QStringLiteral("3")});
    EXPECT_EQ(demo.status, 0) << demo.error.toStdString();
    EXPECT_TRUE(demo.output.contains(QStringLiteral("5 pazienti, 2 anni")));
    EXPECT_EQ(demo.error, QString()); // no bar where there is no terminal
    const Outcome clean = orvaleRun({QStringLiteral("check"), folder});
    EXPECT_EQ(clean.status, 0) << clean.output.toStdString();
    EXPECT_EQ(clean.output, QStringLiteral("Nessuna incoerenza.\n"));

    orvale::Practice::open(folder)->environment().clinical->Execute(
        QStringLiteral("DELETE * FROM archivio WHERE cod_paz = 5"));
    const Outcome faulty = orvaleRun({QStringLiteral("check"), folder});
    EXPECT_EQ(faulty.status, 1);
    EXPECT_TRUE(faulty.output.contains(
        QStringLiteral("inf_gen: righe di un paziente che non è in archivio (cod_paz): 1 [5]")))
        << faulty.output.toStdString();
    EXPECT_EQ(orvaleRun({QStringLiteral("demo"), folder}).status, 1);

    const auto practice = orvale::Practice::open(folder);
    for (int i = 101; i <= 125; ++i)
        practice->environment().clinical->Execute(
            QStringLiteral("INSERT INTO inf_gen (cod_paz) VALUES (%1)").arg(i));
    const QString first = orvaleRun({QStringLiteral("check"), folder}).output;
    EXPECT_TRUE(first.contains(QStringLiteral(": 26 [5, 101,"))) << first.toStdString();
    EXPECT_TRUE(first.contains(QStringLiteral(", 119, …]")));
    const QString all = orvaleRun({QStringLiteral("check"), folder, QStringLiteral("--all")}).output;
    EXPECT_TRUE(all.contains(QStringLiteral(", 119, 120, 121, 122, 123, 124, 125]"))) << all.toStdString();
}

} // namespace
