// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ChartFixture.h"

namespace clivara {

// A practice with empty clinical tables and two patients; patient 17, a man of 60, is current.
class SheetFixture : public ChartFixture {
protected:
    SheetFixture()
    {
        createClinical();
        for (const int patient : {17, 18}) {
            execute(QStringLiteral("INSERT INTO archivio (cod_paz) VALUES (%1)").arg(patient));
            execute(QStringLiteral("INSERT INTO inf_gen (cod_paz) VALUES (%1)").arg(patient));
        }
        state.header.birthDay = QDate(1966, 11, 21);
        state.header.identity = {"D'Amico & figli", "Niccolò", "M", "DMCNCL66S21F839K"};
    }

    void addSheetRow(int type, int number, const char *date, const QString &stored, int patient = 17)
    {
        execute(QStringLiteral("INSERT INTO AIR15_7 (idScheda, cod_paz, idTipo, DataReg, SEQDATI) "
                               "VALUES (%1, %2, %3, %4, %5)")
                    .arg(number)
                    .arg(patient)
                    .arg(type)
                    .arg(date, stored));
    }
    static QString quoted(const QString &text) { return u'\'' + text + u'\''; }
};

} // namespace clivara
