// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "problems/ProblemRecords.h"

#include <QStringList>

namespace clivara {

struct HostEnvironment;

// A row of the lists of visits, drugs and tests with the lines below it, texts ready to be shown.
struct ItemRow {
    enum class Kind { Visit, Drug, Test };
    Kind kind = Kind::Visit;
    QString date; // "dd/mm/yy"; empty when unknown
    QString description; // type of the visit, name of the drug, group of tests
    qint32 key = 0; // IdVisitaProbl or cod_pre (of the group's first test)
    QString minsan; // code of drug or test order
    QString problemCode; // CodICDSospetto of a visit's problem
    struct Line {
        QString date; // of a test's result; empty elsewhere
        QString text; // "Anamnesi: …", "Num. confezioni: …", "Emoglobina Esito: …"
    };
    QList<Line> lines;
    LastWrite written = {}; // of a visit, as it was read
};
QChar itemKindLetter(ItemRow::Kind kind); // 'V', 'F', 'S'
QString itemKindName(ItemRow::Kind kind); // "Visita", "Farmaco", "Esami"

// Links what the queries below join into the host's local database, where they run.
// Queries of what cannot be linked fail.
void attachProblemTables(const HostEnvironment &environment);

// What is filed against the problem: visits (newest first), drugs (newest first), tests (oldest first, a row for
// each day and group of tests). Drugs and tests count from `start` on, with the diagnosis `code`; without a
// start nothing limits their dates, and a problem without a code has none of them. With the id `unassociated`
// the visits of no problem and the items without diagnosis. Throws dao::Error.
QList<ItemRow> problemItems(dao::Database &local, qint32 patientCode, qint32 problem, QDate start,
                            const QString &code);
// All visits of the patient, newest first, whatever their problem.
QList<ItemRow> patientVisits(dao::Database &local, qint32 patientCode);

} // namespace clivara
