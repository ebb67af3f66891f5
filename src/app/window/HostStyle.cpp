// SPDX-License-Identifier: Apache-2.0
#include "app/window/HostStyle.h"

#include <QApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QPalette>
#include <QStyleFactory>
#include <QTranslator>

// The resource stands in a static library; naming it here keeps it in the program.
static void useHostResource()
{
    Q_INIT_RESOURCE(host);
}

namespace orvale {

namespace {

QPalette hostPalette()
{
    const QColor text(0x1c, 0x27, 0x30);
    const QColor accent(0x24, 0x62, 0x7f);
    const QColor disabled(0x8b, 0x97, 0xa1);
    QPalette palette(QColor(0xe4, 0xea, 0xee), QColor(0xee, 0xf2, 0xf5));
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::AlternateBase, QColor(0xf6, 0xf9, 0xfb));
    palette.setColor(QPalette::ToolTipBase, QColor(0x1c, 0x27, 0x30));
    palette.setColor(QPalette::ToolTipText, Qt::white);
    palette.setColor(QPalette::Highlight, accent);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, accent);
    palette.setColor(QPalette::PlaceholderText, QColor(0x6b, 0x78, 0x84));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, disabled);
    return palette;
}

} // namespace

void applyHostStyle(QApplication &application)
{
    useHostResource();
    QLocale::setDefault(QLocale(QLocale::Italian, QLocale::Italy));
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(hostPalette());
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/orvale/icons/orvale.svg")));

    const auto translator = new QTranslator(&application);
    if (translator->load(QLocale(), QStringLiteral("qtbase"), QStringLiteral("_"),
                         QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(translator);
    else
        delete translator;
}

} // namespace orvale
