// SPDX-License-Identifier: Apache-2.0
#include "app/commands/CommandLine.h"
#include "app/commands/Commands.h"
#include "app/commands/SignalNotes.h"
#include "app/commands/TerminalProgress.h"
#include "app/import/PracticeCopy.h"
#include "app/practice/Practice.h"

namespace orvale {

int runCopy(const QStringList &arguments)
{
    CommandLine line(
        QStringLiteral("copy DA A"),
        QStringLiteral(
            "Copia l'archivio DA in un nuovo archivio A, da una cartella a un server e viceversa, e\n"
            "prova che è uguale: ogni tabella, riga per riga e valore per valore. Se qualcosa\n"
            "non riesce, di A non resta nulla."));
    line.addArgument(QStringLiteral("DA"),
                     QStringLiteral("cartella dell'archivio, o postgresql://server/database"));
    line.addArgument(QStringLiteral("A"), QStringLiteral("lo stesso, dell'archivio da creare"));
    if (!line.parse(arguments))
        return 0;
    const SignalNotes notes;
    TerminalProgress bar;
    QList<TableProof> proofs;
    try {
        proofs = copyPractice(line.argument(0), line.argument(1), [&](const ImportProgress &progress) {
            notes.check();
            bar.show(progress);
        });
    } catch (const SignalNotes::Interrupted &) {
        bar.end();
        printError(QStringLiteral("Copia interrotta: di %1 non è rimasto nulla.")
                       .arg(shownPractice(line.argument(1))));
        return notes.status();
    }
    bar.end();
    qint64 rows = 0;
    for (const TableProof &proof : proofs)
        rows += proof.written;
    printLine(
        QStringLiteral("Copiate %1 righe di %2 tabelle in %3: la prova è riuscita, ogni valore è uguale.")
            .arg(rows)
            .arg(proofs.size())
            .arg(shownPractice(line.argument(1))));
    return 0;
}

} // namespace orvale
