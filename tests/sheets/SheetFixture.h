// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "TestPrompts.h"
#include "data/CountedPauses.h"
#include "data/DataFixture.h"
#include "data/NumberedGuids.h"
#include "data/SchemaFile.h"
#include "host/working_state/WorkingState.h"

namespace clivara {

// A practice with empty clinical tables and two patients; patient 17, a man of 60, is current.
class SheetFixture : public DataFixture {
protected:
    SheetFixture()
    {
        environment.clinical = create("Orvale.sqlite", schemaStatements("clinical"));
        environment.workspace = &engine.DefaultWorkspace();
        for (const int patient : {17, 18}) {
            execute(QStringLiteral("INSERT INTO archivio (cod_paz) VALUES (%1)").arg(patient));
            execute(QStringLiteral("INSERT INTO inf_gen (cod_paz) VALUES (%1)").arg(patient));
        }
        state.environment = &environment;
        state.header.patientCode = 17;
        state.header.birthDay = QDate(1966, 11, 21);
        state.header.identity = {QStringLiteral("D'Amico & figli"), QStringLiteral("Niccolò"),
                                 QStringLiteral("M"), QStringLiteral("DMCNCL66S21F839K")};
        state.log.start(settings, "start");
    }

    void execute(const QString &sql) { environment.clinical->Execute(sql); }
    QStringList clinical(const QString &sql) { return rowsOf(*environment.clinical, sql); }
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

    TestPrompts prompts;
    struct NoAccount : Middleware {
        QString account(const QString &) override { return {}; }
    } middleware;
    CountedPauses pauses;
    NumberedGuids guids;
    HostEnvironment environment;
    WorkingState state{Services{settings, clock, prompts, pauses, guids, middleware}};
};

} // namespace clivara
