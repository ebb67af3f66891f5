// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "TestPrompts.h"
#include "chart/WorkingState.h"
#include "data/CountedPauses.h"
#include "data/DataFixture.h"
#include "data/NumberedGuids.h"
#include "data/SchemaFile.h"

namespace clivara {

// The services of a host that a test holds still: every message box is expected, no pause is waited for, and
// there is no account.
class ServicesFixture : public DataFixture {
protected:
    ServicesFixture() { environment.workspace = &engine.DefaultWorkspace(); }

    Services services() { return {settings, clock, prompts, pauses, guids, middleware}; }

    TestPrompts prompts;
    struct NoAccount : Middleware {
        QString account(const QString &) override { return {}; }
    } middleware;
    CountedPauses pauses;
    NumberedGuids guids;
    HostEnvironment environment;
};

// A workstation on 21/11/2026 whose current patient is 17. The databases are those that the test makes.
class ChartFixture : public ServicesFixture {
protected:
    ChartFixture()
    {
        state.environment = &environment;
        state.header.patientCode = 17;
        state.header.identified = true;
        state.log.start(settings, "start");
    }

    // The clinical database with empty tables as every practice has them.
    void createClinical() { environment.clinical = create("Orvale.sqlite", schemaStatements("clinical")); }
    dao::Database &database() { return *environment.clinical; }
    void execute(const QString &sql) { database().Execute(sql); }
    QStringList clinical(const QString &sql) { return rowsOf(database(), sql); }

    WorkingState state{services()};
};

} // namespace clivara
