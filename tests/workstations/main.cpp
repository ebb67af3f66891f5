// SPDX-License-Identifier: Apache-2.0
// Several workstations on one practice: what each of them is told to be saved is saved, whatever the others
// do and whoever is killed meanwhile. docs/architecture.md tells how to run it.
#include "Driver.h"
#include "app/commands/CommandLine.h"
#include "jetsql/Error.h"
#include "server/TestEngine.h"

#include <QApplication>
#include <QTemporaryDir>

namespace {

workstations::Run runFrom(const orvale::CommandLine &line)
{
    workstations::Run run;
    run.practice = line.argument(1);
    run.folder = line.value("folder");
    const auto number = [&](const char *option, int missing, int most) {
        return line.number(option, missing, 0, most);
    };
    run.workstations = number("processes", run.workstations, 99);
    run.saves = number("saves", run.saves, 9999);
    run.workstationKills = number("kill-workstations", 0, 9999);
    run.serverKills = number("kill-server", 0, 999);
    run.visitors = number("visitors", 0, 99);
    run.comesAndGoes = line.isSet("come-and-go");
    run.limitMs = number("limit", 0, 100000);
    run.seed = quint32(number("seed", 1, 1000000));
    return run;
}

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    orvale::CommandLine line("drive|work|visit PRACTICE [--processes N] [--saves M]",
                             "Fa lavorare N postazioni su un archivio nuovo e ne verifica il contenuto.");
    line.addArgument("COMMAND", "drive; work è di ciascuna postazione, visit di chi passa");
    line.addArgument("PRACTICE", "una cartella da creare, o postgresql://…");
    line.addOption("folder", "CARTELLA", "registri delle postazioni");
    line.addOption("processes", "N", "postazioni (4)");
    line.addOption("saves", "M", "salvataggi di ciascuna (15)");
    line.addOption("kill-workstations", "K", "postazioni da uccidere");
    line.addOption("kill-server", "K", "arresti del server");
    line.addOption("visitors", "V", "programmi che aprono l'archivio per poco, uno dopo l'altro");
    line.addOption("come-and-go", {}, "le postazioni chiudono l'archivio ogni pochi salvataggi");
    line.addOption("limit", "MS", "attesa più lunga ammessa");
    line.addOption("seed", "S", "seme dei momenti a caso");
    line.addOption("worker", "I", "di work: quale postazione");
    line.addOption("from", "J", "di work: il primo salvataggio; di visit: il numero");
    QStringList arguments = QCoreApplication::arguments().mid(1);
    try {
        if (!line.parse(arguments))
            return 0;
        workstations::Run run = runFrom(line);
        if (line.argument(0) == QLatin1String("work"))
            return workstations::work(run, line.number("worker", 0, 0, 99), line.number("from", 0, 0, 9999));
        if (line.argument(0) == QLatin1String("visit"))
            return workstations::visit(run, line.number("from", 0, 0, 1000000));
        QTemporaryDir folder;
        if (run.folder.isEmpty())
            run.folder = folder.path();
        // A practice without a name is that of the tests' server, or a folder that goes away again.
        if (run.practice.isEmpty())
            run.practice = testengine::server();
        if (run.practice.isEmpty())
            run.practice = folder.filePath("practice");
        return workstations::drive(run);
    } catch (const orvale::UserError &error) {
        orvale::printError(error.text());
    } catch (const dao::Error &error) {
        orvale::printError(error.text());
    } catch (const std::exception &error) {
        orvale::printError(QString::fromLocal8Bit(error.what()));
    }
    return 2;
}
