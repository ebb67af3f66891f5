// SPDX-License-Identifier: Apache-2.0
#include "app/commands/Program.h"

#include "app/commands/CommandLine.h"
#include "jetsql/Error.h"

#include <QApplication>

namespace orvale {

namespace {

// Standard error belongs to the commands. What the platform without a display cannot do for a window says
// nothing about their work.
void writeQtMessage(QtMsgType, const QMessageLogContext &, const QString &text)
{
    if (!text.startsWith(QLatin1String("This plugin does not support"))
        && !text.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR not set")))
        printError(text);
}

} // namespace

QStringList programArguments(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

bool hasDisplay()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

bool asksForHelp(const QStringList &arguments)
{
    return arguments.contains(QStringLiteral("--help")) || arguments.contains(QStringLiteral("-h"));
}

std::unique_ptr<QCoreApplication> makeApplication(int &argc, char **argv, bool draws)
{
    if (!draws)
        return std::make_unique<QCoreApplication>(argc, argv);
    if (!hasDisplay() && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(writeQtMessage);
    return std::make_unique<QApplication>(argc, argv);
}

int runGuarded(const std::function<int()> &program)
{
    try {
        return program();
    } catch (const UsageError &error) {
        printError(error.text());
        return 2;
    } catch (const UserError &error) {
        printError(error.text());
    } catch (const dao::Error &error) {
        printError(QStringLiteral("Errore dell'archivio: %1").arg(error.text().simplified()));
    } catch (const std::exception &error) {
        printError(QStringLiteral("Errore: %1").arg(QString::fromLocal8Bit(error.what()).simplified()));
    }
    return 1;
}

} // namespace orvale
