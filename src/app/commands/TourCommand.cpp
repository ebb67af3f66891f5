// SPDX-License-Identifier: Apache-2.0
#include "app/commands/CommandLine.h"
#include "app/commands/Commands.h"
#include "app/demo/Demo.h"
#include "app/practice/Practice.h"
#include "app/window/HostStyle.h"
#include "app/window/Tour.h"
#include "support/Clock.h"

#include <QApplication>
#include <QTemporaryDir>

namespace orvale {

namespace {

// Enough people for a patient with every exam of the last year, few enough to be ready in seconds.
constexpr int tourPatients = 150;
constexpr int tourYears = 5;

} // namespace

int runTour(const QStringList &arguments)
{
    CommandLine line(
        QStringLiteral("tour CARTELLA [--practice P]"),
        QStringLiteral("Apre la finestra e ogni sezione su un paziente di prova e ne salva le figure."));
    line.addArgument(QStringLiteral("CARTELLA"), QStringLiteral("dove scrivere le figure; si crea se manca"));
    line.addOption(
        QStringLiteral("practice"), QStringLiteral("P"),
        QStringLiteral("la cartella di un archivio, invece di uno di prova creato per l'occasione"));
    if (!line.parse(arguments))
        return 0;

    applyHostStyle(*qApp);
    clivara::SystemClock clock;
    QTemporaryDir temporary;
    QString path = line.value(QStringLiteral("practice"));
    if (path.isEmpty()) {
        path = temporary.filePath(QStringLiteral("practice"));
        DemoOptions options;
        options.patients = tourPatients;
        options.years = tourYears;
        options.today = clock.today();
        createDemo(path, options);
    }
    const std::unique_ptr<Practice> practice = Practice::open(path);
    try {
        const QStringList written = takeTour(*practice, clock, line.argument(0));
        for (const QString &picture : written)
            printLine(picture);
    } catch (const dao::Error &error) {
        throw UserError(QStringLiteral("L'archivio %1 non si legge: %2").arg(path, error.text()));
    }
    return 0;
}

} // namespace orvale
