// SPDX-License-Identifier: Apache-2.0
#include "app/CommandLine.h"
#include "app/Commands.h"
#include "app/Import.h"
#include "app/TerminalProgress.h"

#include <csignal>

namespace orvale {

namespace {

volatile std::sig_atomic_t caughtSignal = 0;

void noteSignal(int signal)
{
    caughtSignal = signal;
}

// Thrown through the import, which then leaves nothing behind.
struct Interrupted { };

// Ctrl-C and a request to end only note themselves while this lives. The second of its kind ends the program at
// once.
class SignalNotes {
public:
    SignalNotes()
    {
        caughtSignal = 0;
        struct sigaction action = {};
        action.sa_handler = noteSignal;
        action.sa_flags = SA_RESETHAND | SA_RESTART;
        sigaction(SIGINT, &action, &m_interrupt);
        sigaction(SIGTERM, &action, &m_terminate);
    }
    ~SignalNotes()
    {
        sigaction(SIGINT, &m_interrupt, nullptr);
        sigaction(SIGTERM, &m_terminate, nullptr);
    }
    SignalNotes(const SignalNotes &) = delete;
    SignalNotes &operator=(const SignalNotes &) = delete;

private:
    struct sigaction m_interrupt = {};
    struct sigaction m_terminate = {};
};

} // namespace

int runImport(const QStringList &arguments)
{
    CommandLine line(
        QStringLiteral("import SOURCE P [--region NN] [--replace]"),
        QStringLiteral(
            "Porta i file Jet della cartella SOURCE (Orvale.mdb, Tabelle.mdb, Terzo.mdb, Medici.mdb,\n"
            "Locale.mdb, Eventi.mdb) in un nuovo archivio P e prova che c'è tutto. Il rapporto\n"
            "completo è in P.import.tsv. Termina con 0 se nessuna riga è rifiutata e tutto è uguale."));
    line.addArgument(QStringLiteral("SOURCE"), QStringLiteral("cartella dei file Jet, che non cambiano"));
    line.addArgument(QStringLiteral("P"), QStringLiteral("cartella dell'archivio da creare"));
    line.addOption(QStringLiteral("region"), QStringLiteral("NN"),
                   QStringLiteral("codice della regione del medico, due cifre"));
    line.addOption(QStringLiteral("replace"), {},
                   QStringLiteral("sostituisce l'archivio P, se c'è e nessuno lo ha aperto"));
    if (!line.parse(arguments))
        return 0;
    ImportOptions options;
    options.source = line.argument(0);
    options.target = line.argument(1);
    options.region = line.value(QStringLiteral("region"));
    options.replace = line.isSet(QStringLiteral("replace"));

    const SignalNotes notes;
    TerminalProgress bar;
    ImportReport report;
    try {
        report = importPractice(options, [&](const ImportProgress &progress) {
            if (caughtSignal != 0)
                throw Interrupted();
            if (!progress.table.isEmpty())
                bar.show((progress.proving ? QStringLiteral("prova ") : QStringLiteral("copia "))
                             + progress.table,
                         progress.tableDone, progress.tableTotal);
        });
    } catch (const Interrupted &) {
        bar.end();
        printError(
            QStringLiteral("Importazione interrotta: l'archivio %1 è come prima.").arg(options.target));
        return 128 + caughtSignal;
    }
    bar.end();
    const QStringList lines = tableLines(report) + QStringList{QString()} + summaryLines(report);
    for (const QString &text : lines)
        printLine(text);
    if (report.agrees())
        return 0;
    printError(QStringLiteral("L'archivio %1 è al suo posto, ma %2: vedere il rapporto %3.")
                   .arg(options.target,
                        report.tablesAgree()
                            ? QStringLiteral("con righe rifiutate (%1)").arg(report.refused())
                            : QStringLiteral("la prova non è riuscita"),
                        report.reportFile));
    return 1;
}

} // namespace orvale
