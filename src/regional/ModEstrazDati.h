// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/Dao.h"

#include <QDate>
#include <QString>

namespace clivara {

class Log;

// The days that a query is about, both included. A null date is no bound where the routine says that it may be open;
// otherwise it stands for day zero (30/12/1899). A period that ends before it begins holds nothing.
struct Period {
    QDate from;
    QDate to;
};

// A numeric laboratory result.
struct LabResult {
    double value = 0; // in `unit`; a decimal comma is read as one
    QDate date; // when it was measured, or without that when it was asked for
    QString answer; // the report's text
    QString unit;
};

// 0 where nothing was found.
struct Anthropometry {
    double heightM = 0;
    double weightKg = 0;
    double massIndex = 0; // kg/m², when both are there
    QDate date; // of the oldest row that a value came from
};

struct Pressure {
    qint16 systolic = 0; // mmHg; 0 for one that was not written down
    qint16 diastolic = 0;
};

// Reads facts for a patient's evaluations out of the clinical database. Nothing is written and nothing is raised: a
// query that fails leaves a line in the log and gives the routine's empty result (0, false or an empty text).
//
// Lists of codes are one text with ';' between the items, each a pattern of `like` ("401.*;402.*"); empty items are
// left out, and with no item nothing is found. A `condition` is SQL that is added to the query; empty adds nothing.
// Of rows with the same date the one with the higher key is the newest.
class ModEstrazDati {
public:
    // Database and log must outlive the object.
    ModEstrazDati(dao::Database &clinical, Log &log)
        : m_clinical(clinical)
        , m_log(log)
    {
    }

    // How many of the routines' queries have failed: an empty result that made it higher says nothing about the patient.
    int failures() const { return m_failures; }

    // Prescriptions that a hospital suggested; open period. Only zero or not zero: rows are not counted to the end.
    int ContaPrescrizioniOspedaliere(qint32 patient, const Period &period,
                                     const QString &condition = {}) const;
    // Packs of the drugs of these ATC groups, or with these health codes, that were prescribed; open period.
    qint32 SommaConfezioniATC(qint32 patient, const QString &atcList, const Period &period) const;
    qint32 SommaConfezioniCodSan(qint32 patient, const QString &codeList, const Period &period) const;
    // The newest cardiovascular risk (Rischio_Cardio.pct_rischio), as stored; open period.
    double UltimoRischioCardio(qint32 patient, const Period &period) const;

    // The newest result of an exam whose value is a number; one that is no number is passed over. `condition` names the
    // exam ("(RIEPIL2.codice = '90.28.1')") and must not be empty. False leaves `result` empty.
    bool UltimoEsameLab(qint32 patient, const Period &period, const QString &condition,
                        LabResult &result) const;
    // True when there is any result of the exam with a value, numeric or not.
    bool EsisteEsameLab(qint32 patient, const Period &period, const QString &condition) const;

    // The newest height and the newest weight that are not zero, which may come from different rows. True when there
    // is either.
    bool DatiAntropometrici(qint32 patient, const Period &period, Anthropometry &result) const;
    // The highest, or lowest, pair of pressures by systolic, then diastolic. The period's last day counts up to its
    // midnight, as pressures are stored without an hour.
    bool PressioneMassima(qint32 patient, const Period &period, Pressure &result) const;
    bool PressioneMinima(qint32 patient, const Period &period, Pressure &result) const;

    // False for a patient without a row in inf_gen: the queries of results join it, and find none then.
    bool hasGeneralInformation(qint32 patient) const;

    // Problems by their suspected ICD code, open and closed.
    bool EsisteProblemaICD(qint32 patient, const QString &icdList, const QString &condition = {}) const;
    // The code of the one that was opened last.
    QString UltimoProblemaICD(qint32 patient, const QString &icdList, const QString &condition = {}) const;

    // The smoking code of the newest lifestyle questionnaire: 1 never, 2 stopped, 3 smokes; another number as
    // it stands there, 0 without one. `date` is that of a statement 1 to 3, null otherwise.
    int StatoFumo(qint32 patient, QDate &date) const;

private:
    qint32 sumPacks(const char *routine, qint32 patient, const QString &field, const QString &list,
                    const Period &period) const;
    bool firstPressure(const char *routine, qint32 patient, const Period &period, const QString &order,
                       Pressure &result) const;
    // Opens the rows and lets `read` take its values from them. False when there is none, and after an error.
    template <typename Read>
    bool readRows(const char *routine, const dao::Query &query, Read read) const;

    dao::Database &m_clinical;
    Log &m_log;
    mutable int m_failures = 0;
};

} // namespace clivara
