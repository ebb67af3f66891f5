// SPDX-License-Identifier: Apache-2.0
// A second process of the host: "write KEY VALUE", "read KEY", or "log TEXT COUNT".
#include "support/Clock.h"
#include "support/Log.h"
#include "support/SettingsStore.h"

#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const auto settings = clivara::openUserSettings();
    if (arguments.value(1) == QLatin1String("write"))
        settings->write(arguments.value(2), arguments.value(3));
    else if (arguments.value(1) == QLatin1String("read"))
        QTextStream(stdout) << settings->text(arguments.value(2), "(missing)");
    else {
        const clivara::SystemClock clock;
        clivara::Log log(clock);
        log.start(*settings, arguments.value(2));
        for (int i = 1; i < arguments.value(3).toInt(); ++i)
            log.write(arguments.value(2));
    }
    return 0;
}
