// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/practice/UserError.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <functional>

namespace orvale {

struct ImportOptions {
    QString source; // folder of Jet files; their names are matched without regard to case
    QString target; // the practice's folder
    QString region; // two digits of the first doctor's region; empty when unknown
    bool replace = false; // a practice that is there already gives way
};

// What is being done, for a bar: `done` out of `total` steps over all tables. A row is one step when it is
// copied and one when it is proved; the files declare how many there are.
struct ImportProgress {
    QString table; // "clinical.archivio", being copied or proved; empty while the practice is finished
    bool proving = false;
    qint64 tableDone = 0, tableTotal = 0; // the table's rows
    qint64 done = 0, total = 0;
};

// What came out for one column: counts and sums of the values as they were read and as they stand in the
// practice, rows set aside left out on both sides.
struct ColumnProof {
    // "valori", "somma", "caratteri", "prima data", "impronta"... and its value on both sides.
    struct Figure {
        QString name;
        QString source, target;
    };
    QString name;
    qint64 sourceValues = 0, targetValues = 0; // that are not Null
    QString sourceSum, targetSum; // sum of numbers, sum of the characters of texts...
    QList<Figure> figures; // all that was compared, the values and sums above included
    bool agrees = false;
};

struct TableProof {
    QString database; // "clinical"...
    QString table;
    qint64 declared = 0; // rows that the file says it holds
    qint64 read = 0, written = 0, refused = 0;
    QList<ColumnProof> columns;
    QString sourceChecksum, targetChecksum; // over whole rows
    bool agrees = false; // read = declared = written + refused, and every column agrees
};

// Rows of one table that were refused for one reason.
struct RefusedCount {
    QString table; // "clinical.archivio"
    QString reason;
    qint64 rows = 0;
};

struct ImportReport {
    QList<TableProof> tables;
    QStringList unknownTables; // "clinical.name": brought over though the chart does not know them
    QStringList unknownFields; // "clinical.table.name"
    QStringList missingTables; // "clinical.name": not in the source, created empty
    QStringList missingFields; // "clinical.table.name"
    QList<RefusedCount> refusals;
    QStringList notes; // further lines: missing files, widened fields...
    QString practice; // the practice's folder
    QString reportFile; // where all this is saved, beside the practice
    // Where a replaced practice is kept: because the proof failed, or because its folder held other files
    // too.
    QString previousPractice;

    qint64 rows() const; // written
    qint64 refused() const;
    bool tablesAgree() const;
    bool agrees() const; // nothing was refused and every table agrees
};

// Brings the Jet files of a folder over into a new practice: builds it in a folder aside, proves it against
// what was read, saves the report and puts the practice in its place. Throws UserError (source missing or
// unreadable, target there already, not writable, disk full) or what `progress` throws to give up; then the
// target is as it was before. A practice that was refused rows or does not agree takes its place all the
// same: the report tells.
ImportReport importPractice(const ImportOptions &options,
                            const std::function<void(const ImportProgress &)> &progress = {});

// The report's lines for a person, in Italian: totals, then what deserves attention.
QStringList summaryLines(const ImportReport &report);
// An aligned table with one line for each table: rows read, written and refused, and whether the proof
// agrees.
QStringList tableLines(const ImportReport &report);

} // namespace orvale
