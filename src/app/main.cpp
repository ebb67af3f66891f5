// SPDX-License-Identifier: Apache-2.0
#include "app/CommandLine.h"
#include "app/Commands.h"
#include "data/engine/Error.h"

#include <QApplication>
#include <memory>

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
        {QStringLiteral("play"), orvale::runPlay, true},
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

bool hasDisplay()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

bool asksForHelp(const QStringList &arguments)
{
    return arguments.contains(QStringLiteral("--help")) || arguments.contains(QStringLiteral("-h"));
}

// Standard error belongs to the commands. What the platform without a display cannot do for a window says
// nothing about their work.
void writeQtMessage(QtMsgType, const QMessageLogContext &, const QString &text)
{
    if (!text.startsWith(QLatin1String("This plugin does not support"))
        && !text.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR not set")))
        orvale::printError(text);
}

// Windows need an application of widgets, everything else starts faster without one.
std::unique_ptr<QCoreApplication> makeApplication(int &argc, char **argv, bool draws)
{
    if (!draws)
        return std::make_unique<QCoreApplication>(argc, argv);
    if (!hasDisplay() && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(writeQtMessage);
    return std::make_unique<QApplication>(argc, argv);
}

int run(int &argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    const QString first = arguments.value(0);
    if (first == QLatin1String("--help") || first == QLatin1String("-h")) {
        orvale::printLine(help());
        return 0;
    }
    if (first == QLatin1String("--version")) {
        orvale::printLine(QStringLiteral("orvale " ORVALE_VERSION));
        return 0;
    }
    for (const Command &command : commands()) {
        if (command.name != first)
            continue;
        const QStringList rest = arguments.mid(1);
        const auto application = makeApplication(argc, argv, command.draws && !asksForHelp(rest));
        return command.run(rest);
    }
    if (!first.isEmpty() && !first.startsWith(u'-'))
        throw orvale::UsageError(QStringLiteral("Comando sconosciuto: %1. Vedere orvale --help.").arg(first));
    // What is wrong with the options is told even where no window can be opened.
    if (!orvale::windowCommandLine().parse(arguments))
        return 0;
    if (!hasDisplay() && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        throw orvale::UserError(
            QStringLiteral("Manca uno schermo su cui aprire la finestra (DISPLAY non impostato)."));
    const QApplication application(argc, argv);
    return orvale::runWindow(arguments);
}

} // namespace

int main(int argc, char **argv)
{
    try {
        return run(argc, argv);
    } catch (const orvale::UsageError &error) {
        orvale::printError(error.text());
        return 2;
    } catch (const orvale::UserError &error) {
        orvale::printError(error.text());
    } catch (const dao::Error &error) {
        orvale::printError(QStringLiteral("Errore dell'archivio: %1").arg(error.text().simplified()));
    } catch (const std::exception &error) {
        orvale::printError(
            QStringLiteral("Errore: %1").arg(QString::fromLocal8Bit(error.what()).simplified()));
    }
    return 1;
}
