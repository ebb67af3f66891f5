// SPDX-License-Identifier: Apache-2.0
#include "app/practice/Regions.h"

namespace orvale {

const QList<Region> &regions()
{
    static const QList<Region> list{
        {QStringLiteral("01"), QStringLiteral("Piemonte")},
        {QStringLiteral("02"), QStringLiteral("Valle d'Aosta")},
        {QStringLiteral("03"), QStringLiteral("Lombardia")},
        {QStringLiteral("04"), QStringLiteral("Trentino-Alto Adige")},
        {QStringLiteral("05"), QStringLiteral("Veneto")},
        {QStringLiteral("06"), QStringLiteral("Friuli-Venezia Giulia")},
        {QStringLiteral("07"), QStringLiteral("Liguria")},
        {QStringLiteral("08"), QStringLiteral("Emilia-Romagna")},
        {QStringLiteral("09"), QStringLiteral("Toscana")},
        {QStringLiteral("10"), QStringLiteral("Umbria")},
        {QStringLiteral("11"), QStringLiteral("Marche")},
        {QStringLiteral("12"), QStringLiteral("Lazio")},
        {QStringLiteral("13"), QStringLiteral("Abruzzo")},
        {QStringLiteral("14"), QStringLiteral("Molise")},
        {QStringLiteral("15"), QStringLiteral("Campania")},
        {QStringLiteral("16"), QStringLiteral("Puglia")},
        {QStringLiteral("17"), QStringLiteral("Basilicata")},
        {QStringLiteral("18"), QStringLiteral("Calabria")},
        {QStringLiteral("19"), QStringLiteral("Sicilia")},
        {QStringLiteral("20"), QStringLiteral("Sardegna")},
    };
    return list;
}

} // namespace orvale
