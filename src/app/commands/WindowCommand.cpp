// SPDX-License-Identifier: Apache-2.0
#include "app/commands/CommandLine.h"
#include "app/commands/Commands.h"
#include "app/commands/HostServices.h"
#include "app/commands/StartupReport.h"
#include "app/demo/Demo.h"
#include "app/practice/DamageWatch.h"
#include "app/practice/Practice.h"
#include "app/window/HostStyle.h"
#include "app/window/HostWindow.h"
#include "app/window/ImportDialog.h"
#include "app/window/WorkDialog.h"

#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QScreen>
#include <QSettings>
#include <QStyle>

namespace orvale {

namespace {

const QLatin1String geometryKey("finestra/geometria");

// False when the doctor gave up the first start.
bool prepareFirstPractice(const QString &path)
{
    if (QFileInfo::exists(path))
        return true;
    DemoOptions options;
    options.today = QDate::currentDate();
    WorkDialog dialog(
        QStringLiteral("Orvale – primo avvio"),
        QStringLiteral("Al primo avvio Orvale prepara un archivio di prova con pazienti inventati."));
    return dialog.run([&](const WorkDialog::Report &report) {
        QDir().mkpath(QFileInfo(path).absolutePath());
        createDemo(path, options, [&](int done, int total) { report({{}, {}, done, total}); });
    });
}

// What a damaged file still shows may be incomplete: nobody must go on treating patients by it.
void refuseDamaged(QWidget &window, const QString &file)
{
    const QString text = QStringLiteral("Il file %1 è danneggiato.").arg(file);
    printError(text);
    QMessageBox::critical(&window, QStringLiteral("Attenzione!"),
                          text
                              + QStringLiteral("\n\nQuello che si legge può essere incompleto. Il programma "
                                               "si chiude: ripristinare una copia di sicurezza."));
    QApplication::exit(1);
}

struct Showing {
    int status = 0;
    QString next; // the practice to open now; empty to end the program
};

// As the doctor left it; at first in its own size, or over the whole of a screen that has no room for that.
void place(HostWindow &window, const QByteArray &geometry)
{
    if (window.restoreGeometry(geometry))
        return;
    const int titleBar = window.style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &window);
    const QSize room = window.screen()->availableSize();
    if (window.width() > room.width() || window.height() + titleBar > room.height())
        window.setWindowState(Qt::WindowMaximized);
}

// Shows the window on a practice until it is closed.
Showing showPractice(Practice &practice, HostServices &host, bool reportsStartup)
{
    Showing showing;
    HostWindow window(practice, host.services());
    QSettings remembered(QStringLiteral("Orvale"), QStringLiteral("orvale"));
    place(window, remembered.value(geometryKey).toByteArray());
    if (reportsStartup)
        new StartupReport(window);
    QObject::connect(&window, &HostWindow::importAsked, &window, [&] {
        ImportDialog dialog(practice.path(), host.services().prompts, importPractice, &window);
        if (dialog.exec() != QDialog::Accepted)
            return;
        showing.next = dialog.practiceToOpen();
        window.close();
    });
    window.show();
    const DamageWatch watch(practice.path());
    QObject::connect(&watch, &DamageWatch::finished, &window, [&window](const QString &damagedFile) {
        if (!damagedFile.isEmpty())
            refuseDamaged(window, damagedFile);
    });
    showing.status = QApplication::exec();
    remembered.setValue(geometryKey, window.saveGeometry());
    return showing;
}

Showing openPractice(const QString &path, HostServices &host, bool reportsStartup = false)
{
    const std::unique_ptr<Practice> practice =
        Practice::open(path, Schema::current(), Practice::Pages::ReadLater);
    try {
        return showPractice(*practice, host, reportsStartup);
    } catch (const dao::Error &error) {
        throw UserError(
            QStringLiteral("L'archivio %1 non si legge: %2").arg(shownPractice(path), error.text()));
    }
}

} // namespace

CommandLine windowCommandLine()
{
    CommandLine line(
        QStringLiteral("[--practice P]"),
        QStringLiteral("Apre la finestra sull'archivio dell'utente; al primo avvio ne crea uno di prova."));
    line.addOption(QStringLiteral("practice"), QStringLiteral("P"),
                   QStringLiteral("un altro archivio: una cartella, o postgresql://server/database"));
    line.addOption(QStringLiteral("startup-report"), {},
                   QStringLiteral("dice quando la finestra è visibile e quanta memoria occupa, poi esce"));
    return line;
}

int runWindow(const QStringList &arguments)
{
    CommandLine line = windowCommandLine();
    if (!line.parse(arguments))
        return 0;

    applyHostStyle(*qApp);
    const bool isOwn = !line.isSet(QStringLiteral("practice"));
    QString path = isOwn ? defaultPracticePath() : line.value(QStringLiteral("practice"));
    if (isOwn && !prepareFirstPractice(path))
        return 0;

    HostServices host;
    Showing showing;
    try {
        showing = openPractice(path, host, line.isSet(QStringLiteral("startup-report")));
    } catch (const UserError &error) {
        // Whoever started the program from a menu sees no line.
        printError(error.text());
        host.services().prompts.warn(error.text());
        return 1;
    }
    while (!showing.next.isEmpty()) {
        const QString next = showing.next;
        try {
            showing = openPractice(next, host);
            path = next;
        } catch (const UserError &error) {
            if (next == path)
                throw;
            host.services().prompts.warn(error.text());
            showing.next = path; // the one that was open before
        }
    }
    return showing.status;
}

} // namespace orvale
