// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "TestPrompts.h"
#include "data/DataFixture.h"
#include "host/working_state/WorkingState.h"

namespace clivara {

// A clinical database with patient 17, a man of 60 on 21/11/2026, and nothing else.
class CalculatorFixture : public DataFixture {
protected:
    CalculatorFixture()
    {
        environment.clinical = create(
            "Orvale.sqlite",
            {"CREATE TABLE archivio (cod_paz LONG, sesso TEXT(1), Data_Nasc DATETIME)",
             "CREATE TABLE ESAME_OB (cod_paz LONG, tipo_dati TEXT(1), chiave TEXT(10), data_reg DATETIME, "
             "dati_paz MEMO)",
             "CREATE TABLE DEFCAMPI (Tiporec TEXT(1), Formapp TEXT(10), descrizione TEXT(30), [offset] "
             "SHORT, "
             "lunghezza SHORT)",
             "CREATE TABLE riepil (cod_pre LONG, cod_paz LONG, tipo SHORT, minsan TEXT(12), da_pre DATETIME)",
             "CREATE TABLE riepil2 (idriepil2 LONG, cod_rie TEXT(12), codice TEXT(12), unita TEXT(30))",
             "INSERT INTO archivio VALUES (17, 'M', #03/12/1966#)",
             "INSERT INTO DEFCAMPI VALUES ('A', 'PED', 'peso', 9, 5)",
             "INSERT INTO DEFCAMPI VALUES ('A', 'EOG', 'peso', 4, 5)"});
        state.environment = &environment;
        state.header.patientCode = 17;
    }

    void execute(const QString &sql) { environment.clinical->Execute(sql); }

    // An objective examination; `date` as the SQL has it.
    void addExamination(const char *date, const char *key, const char *text)
    {
        execute(QStringLiteral("INSERT INTO ESAME_OB VALUES (17, 'A', '%1', %2, %3)").arg(key, date, text));
    }

    // A result, `daysAgo` before today; -1000 for a result without a date.
    void addResult(const char *code, int daysAgo, const char *value, int type = 1, int patient = 17)
    {
        const QString date = daysAgo == -1000
                                 ? QStringLiteral("Null")
                                 : clock.today().addDays(-daysAgo).toString(u"'#'MM'/'dd'/'yyyy'#'");
        ++m_results;
        execute(QStringLiteral("INSERT INTO riepil VALUES (%1, %2, %3, 'E%1', %4)")
                    .arg(m_results)
                    .arg(patient)
                    .arg(type)
                    .arg(date));
        addToLast(code, value);
    }
    // One more result under the header of the last.
    void addToLast(const char *code, const char *value)
    {
        execute(QStringLiteral("INSERT INTO riepil2 VALUES (%1, 'E%2', '%3', %4)")
                    .arg(++m_lines)
                    .arg(m_results)
                    .arg(code, value));
    }

    TestPrompts prompts;
    struct NoAccount : Middleware {
        QString account(const QString &) override { return {}; }
    } middleware;
    SystemPauses pauses;
    SystemGuids guids;
    HostEnvironment environment;
    WorkingState state{Services{settings, clock, prompts, pauses, guids, middleware}};

private:
    int m_results = 0;
    int m_lines = 0;
};

} // namespace clivara
