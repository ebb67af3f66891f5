// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "TestPrompts.h"
#include "data/CountedPauses.h"
#include "data/DataFixture.h"
#include "data/LockHolder.h"
#include "data/NumberedGuids.h"
#include "data/SchemaFile.h"
#include "host/working_state/WorkingState.h"

namespace clivara {

// The clinical database of a practice in region 03 with patient 17, a man of 60 on 21/11/2026, and nothing else.
class EvaluationFixture : public DataFixture {
protected:
    EvaluationFixture()
    {
        environment.clinical = create("Orvale.sqlite", schemaStatements("clinical"));
        environment.workspace = &engine.DefaultWorkspace();
        execute("INSERT INTO archivio (cod_paz, sesso, Data_Nasc) VALUES (17, 'M', #03/12/1966#)");
        execute("INSERT INTO DEFCAMPI VALUES ('A', 'EOG', 'circonf_addom', 9, 5)");
        state.environment = &environment;
        state.header.patientCode = 17;
        state.doctor.region = QStringLiteral("03");
        state.log.start(settings, "start");
    }

    void execute(const QString &sql) { environment.clinical->Execute(sql); }
    QStringList clinical(const QString &sql) { return rowsOf(*environment.clinical, sql); }
    dao::Database &database() { return *environment.clinical; }

    // A day before today as the SQL has it.
    QString daysAgo(int days) const { return clock.today().addDays(-days).toString(u"'#'MM'/'dd'/'yyyy'#'"); }
    // A laboratory result; `value` as the SQL has it.
    void addResult(const char *code, const QString &date, const char *value)
    {
        ++m_results;
        execute(
            QStringLiteral("INSERT INTO riepil (cod_pre, cod_paz, tipo, minsan, da_pre) VALUES (%1, 17, 1, "
                           "'E%1', %2)")
                .arg(m_results)
                .arg(date));
        execute(QStringLiteral(
                    "INSERT INTO riepil2 (idriepil2, cod_rie, codice, unita) VALUES (%1, 'E%1', '%2', %3)")
                    .arg(m_results)
                    .arg(code, value));
    }
    void addPressure(const QString &date, const char *systolic, const char *diastolic)
    {
        execute(QStringLiteral("INSERT INTO esa_ob VALUES (17, %1, %2, %3)").arg(date, systolic, diastolic));
    }
    void addQuestionnaire(const char *kind, const QString &date, const QString &text)
    {
        execute(QStringLiteral("INSERT INTO ESAME_OB VALUES (17, '%1', '%2', %3, %4)")
                    .arg(QLatin1String(kind))
                    .arg(++m_questionnaires)
                    .arg(date, text));
    }
    // The lifestyle questionnaire with a code in the characters 96 and 97.
    static QString lifestyle(const char *smoking) { return u'\'' + QString(95, '0') + smoking + "00'"; }

    TestPrompts prompts;
    struct NoAccount : Middleware {
        QString account(const QString &) override { return {}; }
    } middleware;
    CountedPauses pauses;
    NumberedGuids guids;
    HostEnvironment environment;
    WorkingState state{Services{settings, clock, prompts, pauses, guids, middleware}};

private:
    int m_results = 0;
    int m_questionnaires = 0;
};

} // namespace clivara
