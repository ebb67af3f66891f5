// SPDX-License-Identifier: Apache-2.0
#include "app/commands/CommandLine.h"
#include "app/commands/Commands.h"
#include "app/commands/Program.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <unistd.h>

namespace {

struct Command {
    QString name;
    int (*run)(const QStringList &arguments);
    bool draws; // opens windows, if only to take pictures of them
};

const QList<Command> &commands()
{
    static const QList<Command> list{
        {QStringLiteral("demo"), orvale::runDemo, false},
        {QStringLiteral("import"), orvale::runImport, false},
        {QStringLiteral("copy"), orvale::runCopy, false},
        {QStringLiteral("role"), orvale::runRole, false},
        {QStringLiteral("check"), orvale::runCheck, false},
        {QStringLiteral("tour"), orvale::runTour, true},
    };
    return list;
}

QString help()
{
    return QStringLiteral(
        "Uso: orvale [--practice P]\n"
        "     orvale COMANDO [ARGOMENTI]\n\n"
        "Senza comando apre la finestra sull'archivio P (o su quello dell'utente).\n\n"
        "  demo P            crea un archivio dimostrativo nella cartella P\n"
        "  import SOURCE P   porta i file Jet della cartella SOURCE nell'archivio P\n"
        "  copy DA A         copia l'archivio DA nel nuovo archivio A e prova che è uguale\n"
        "  check P           legge l'archivio P e dice che cosa è incoerente\n"
        "  role RUOLO        scrive l'SQL dei permessi delle postazioni su un server\n"
        "  play SCENARIO     esegue uno scenario e ne scrive i risultati\n"
        "  tour CARTELLA     apre ogni sezione e ne salva un'immagine\n"
        "  --help            mostra questo aiuto; dopo un comando, il suo\n"
        "  --version         mostra la versione\n\n"
        "Un archivio è una cartella, o un database di un server: postgresql://server/database.");
}

// The scenario player is a program of its own beside this one, since it is linked with a library for tests.
// It takes this one's place: standard input, signals and the exit status are its own.
[[noreturn]] void becomePlayer(char **argv)
{
    const QString program = QFileInfo(QFile::symLinkTarget(QStringLiteral("/proc/self/exe")))
                                .dir()
                                .filePath(QStringLiteral("orvale-play"));
    ::execv(QFile::encodeName(program).constData(), argv + 1);
    throw orvale::UserError(QStringLiteral("Il programma %1 manca o non si può avviare.").arg(program));
}

int run(int &argc, char **argv)
{
    const QStringList arguments = orvale::programArguments(argc, argv);
    const QString first = arguments.value(0);
    if (first == QLatin1String("--help") || first == QLatin1String("-h")) {
        orvale::printLine(help());
        return 0;
    }
    if (first == QLatin1String("--version")) {
        orvale::printLine(QStringLiteral("orvale " ORVALE_VERSION));
        return 0;
    }
    if (first == QLatin1String("play"))
        becomePlayer(argv);
    for (const Command &command : commands()) {
        if (command.name != first)
            continue;
        const QStringList rest = arguments.mid(1);
        const auto application =
            orvale::makeApplication(argc, argv, command.draws && !orvale::asksForHelp(rest));
        return command.run(rest);
    }
    if (!first.isEmpty() && !first.startsWith(u'-'))
        throw orvale::UsageError(QStringLiteral("Comando sconosciuto: %1. Vedere orvale --help.").arg(first));
    // What is wrong with the options is told even where no window can be opened.
    if (!orvale::windowCommandLine().parse(arguments))
        return 0;
    if (!orvale::hasDisplay() && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        throw orvale::UserError(
            QStringLiteral("Manca uno schermo su cui aprire la finestra (DISPLAY non impostato)."));
    const QApplication application(argc, argv);
    return orvale::runWindow(arguments);
}

} // namespace

int main(int argc, char **argv)
{
    return orvale::runGuarded([&] { return run(argc, argv); });
}
