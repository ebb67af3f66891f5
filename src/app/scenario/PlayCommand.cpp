// SPDX-License-Identifier: Apache-2.0
#include "app/scenario/PlayCommand.h"

#include "app/commands/CommandLine.h"
#include "app/practice/Practice.h"
#include "app/scenario/ScenarioPlayer.h"

#include <QFile>
#include <QStringDecoder>
#include <cstdio>

namespace orvale {

namespace {

// "-" is the standard input. The text is UTF-8, with or without a byte order mark.
QString readScenario(const QString &path)
{
    QFile file(path);
    const bool opened =
        path == QLatin1String("-") ? file.open(stdin, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly);
    if (!opened)
        throw UserError(QStringLiteral("Lo scenario %1 non si può leggere.").arg(path));
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(file.readAll());
    if (decoder.hasError())
        throw UserError(QStringLiteral("Lo scenario %1 non è un testo UTF-8.").arg(path));
    return text;
}

int play(const CommandLine &line)
{
    const QDate today = line.date(QStringLiteral("today"), {});
    QList<ScenarioLine> scenario = parseScenario(readScenario(line.argument(0)));
    if (today.isValid()) {
        ScenarioLine fixed;
        fixed.command = ScenarioCommand::Today;
        fixed.date = today;
        scenario.prepend(fixed);
    }
    const auto practice = Practice::open(line.value(QStringLiteral("practice"), defaultPracticePath()));
    ScenarioPlayer player(*practice,
                          {printLine, printError, line.value(QStringLiteral("shots"), QStringLiteral("."))});
    return player.run(scenario);
}

} // namespace

int runPlay(const QStringList &arguments)
{
    CommandLine line(
        QStringLiteral("play [--practice P] [--today AAAA-MM-GG] [--shots CARTELLA] FILE"),
        QStringLiteral(
            "Esegue lo scenario FILE sulle maschere vere e ne scrive i risultati, una riga JSON "
            "ciascuno.\n"
            "Termina con 0 se tutto è andato bene, con 1 se un expect non è stato soddisfatto, con 2 se "
            "lo\nscenario, l'archivio o una riga non si è potuto eseguire."));
    line.addArgument(QStringLiteral("FILE"), QStringLiteral("lo scenario; - per lo standard input"));
    line.addOption(QStringLiteral("practice"), QStringLiteral("P"),
                   QStringLiteral("l'archivio; senza, quello dell'utente"));
    line.addOption(QStringLiteral("today"), QStringLiteral("AAAA-MM-GG"),
                   QStringLiteral("la data di oggi, alle 10:00:00"));
    line.addOption(QStringLiteral("shots"), QStringLiteral("CARTELLA"),
                   QStringLiteral("dove vanno le immagini di shot; senza, la cartella corrente"));
    if (!line.parse(arguments))
        return 0;
    try {
        return play(line);
    } catch (const UserError &error) {
        printError(error.text());
        return ScenarioPlayer::Stopped;
    }
}

} // namespace orvale
