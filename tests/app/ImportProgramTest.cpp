// SPDX-License-Identifier: Apache-2.0
#include "ImportFixture.h"
#include "ProgramRun.h"

#include <csignal>
#include <sys/types.h>

namespace {

using jetfile::JetType;

class ImportProgram : public ImportFixture {
protected:
    Outcome runImport(const QStringList &more = {}) const
    {
        return orvaleRun(QStringList{"import", source(), target()} + more);
    }
    jetfile::JetTableWriter &exams()
    {
        return file().table("ESAMI", {{"tipo_esa", JetType::Integer}, {"descr_esa", JetType::Text, 60}});
    }
};

TEST_F(ImportProgram, PrintsATableAndEndsWithZero)
{
    exams().addRow({1, "uno"});
    file().table("nuova", {{"n", JetType::Long}});
    saveFiles();
    const Outcome outcome = runImport({"--region", "15"});
    EXPECT_EQ(outcome.status, 0) << outcome.error.toStdString();
    EXPECT_EQ(outcome.error, QString()); // no bar where there is no terminal
    for (const char *line : {"tabella         letti  scritti  rifiutati  prova\n",
                             "clinical.ESAMI      1        1          0  uguale\n",
                             "clinical.nuova      0        0          0  uguale\n",
                             "Tabelle sconosciute, portate come sono (1): clinical.nuova\n",
                             "Nota: Il file Terzo.mdb non c'è: le sue tabelle sono vuote.\n"})
        EXPECT_TRUE(outcome.output.contains(line)) << outcome.output.toStdString();
    EXPECT_EQ(orvale::Practice::open(target())->property("region"), "15");

    const Outcome again = runImport();
    EXPECT_EQ(again.status, 1);
    EXPECT_TRUE(again.error.contains("non è vuota")) << again.error.toStdString();
    EXPECT_EQ(runImport({"--replace"}).status, 0);
}

TEST_F(ImportProgram, EndsWithOneWhenARowIsRefused)
{
    exams().addRow({1, "uno"}).addRow({1, "doppio"});
    saveFiles();
    const Outcome outcome = runImport();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(outcome.error.contains("è al suo posto, ma con righe rifiutate (1)"))
        << outcome.error.toStdString();
    EXPECT_EQ(outcome.error.count(u'\n'), 1);
    EXPECT_TRUE(outcome.output.contains("clinical.ESAMI: 1 – chiave primaria tipo_esa"))
        << outcome.output.toStdString();
    EXPECT_EQ(rows("SELECT descr_esa FROM ESAMI"), (Rows{{"uno"}}));
}

TEST_F(ImportProgram, ASignalLeavesNothingButOneLine)
{
    auto &table = exams();
    for (int i = 0; i < 3000; ++i)
        table.addRow({i, QString(60, u'x')});
    saveFiles();
    const QStringList before = entriesBeside();
    for (const int signal : {SIGINT, SIGTERM}) {
        QProcess process;
        process.start(QStringLiteral(ORVALE_PROGRAM), {"import", source(), target()});
        ASSERT_TRUE(process.waitForStarted());
        // As soon as it is at work.
        while (entriesBeside() == before && process.state() == QProcess::Running)
            process.waitForFinished(1);
        ::kill(pid_t(process.processId()), signal);
        ASSERT_TRUE(process.waitForFinished(60000));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.exitCode(), 128 + signal);
        const QString error = QString::fromUtf8(process.readAllStandardError());
        EXPECT_TRUE(error.startsWith("Importazione interrotta")) << error.toStdString();
        EXPECT_EQ(error.count(u'\n'), 1);
        EXPECT_EQ(entriesBeside(), before);
    }
}

} // namespace
