// SPDX-License-Identifier: Apache-2.0
#include "app/window/Sections.h"

namespace orvale {

QList<SectionGroup> sectionGroups()
{
    const auto icon = [](const char *name) {
        return QStringLiteral(":/orvale/icons/%1.svg").arg(QLatin1String(name));
    };
    return {
        {QStringLiteral("Cartella clinica"),
         QStringLiteral("Ca&rtella clinica"),
         {
             {5, QStringLiteral("&Problemi"), icon("problems"), Qt::Key_F2},
             {17, QStringLiteral("&Visite"), icon("visits"), Qt::Key_F3},
         }},
        {QStringLiteral("Anamnesi"),
         QStringLiteral("&Anamnesi"),
         {
             {12, QStringLiteral("&Allergie"), icon("allergies"), Qt::Key_F4},
             {0, QStringLiteral("Informazioni &generali"), icon("general"), Qt::Key_F5},
         }},
        {QStringLiteral("Rischio"),
         QStringLiteral("Ri&schio"),
         {
             {13, QStringLiteral("Rischio &cardiovascolare"), icon("heart"), Qt::Key_F6},
             {20, QStringLiteral("Sindrome &metabolica"), icon("metabolic"), Qt::Key_F7},
         }},
        {QStringLiteral("Calcolatori"),
         QStringLiteral("&Calcolatori"),
         {
             {80, QStringLiteral("Colesterolo &LDL"), icon("ldl"), Qt::Key_F8},
             {81, QStringLiteral("Clearance della c&reatinina"), icon("clearance"), Qt::Key_F9},
             // F10 belongs to the menu bar.
             {82, QStringLiteral("&Filtrato glomerulare"), icon("filtration"), Qt::Key_F11},
         }},
        {QStringLiteral("Ricoveri e domiciliari"),
         QStringLiteral("Rico&veri"),
         {
             {19, QStringLiteral("&Ricoveri"), icon("hospital"), Qt::SHIFT | Qt::Key_F2},
             {18, QStringLiteral("Assistenza &domiciliare"), icon("home"), Qt::SHIFT | Qt::Key_F3},
         }},
        {QStringLiteral("Schede regionali"),
         QStringLiteral("Sche&de"),
         {
             {25, QStringLiteral("&Schede regionali"), icon("sheets"), Qt::SHIFT | Qt::Key_F4},
         }},
    };
}

QString plainTitle(const Section &section)
{
    return QString(section.title).remove(u'&');
}

} // namespace orvale
