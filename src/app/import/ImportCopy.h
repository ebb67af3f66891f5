// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/import/ImportPlan.h"
#include "app/import/ImportTally.h"
#include "app/import/RefusedRows.h"
#include "jetfile/JetFileReader.h"

#include <functional>

namespace orvale {

// What came of one table's rows.
struct CopiedTable {
    qint64 read = 0, refused = 0;
    TableTally written; // of the values as they were read, refused rows left out
    QMap<QString, qint64> reasons; // rows refused for each
};

// Where a table goes.
struct CopyTarget {
    QString role; // of the database
    dao::Database &database;
    dao::BulkLoad &load;
    dao::Workspace &workspace;
};

// Gives the practice's table the planned definition and brings the rows of the reader's next table over, in
// one transaction. A row that cannot be written goes to the refused ones; errors of the disk, of locks and of
// the source end the copying: dao::Error, jetfile::SourceError. `step` is called every few rows with their
// count.
CopiedTable copyTable(jetfile::JetFileReader &reader, const jetfile::JetTable &source,
                      const PlannedTable &plan, const CopyTarget &target, RefusedRows &refused,
                      const std::function<void(qint64)> &step);

// Creates an index. It has a name of its own among all of the database's; one that is taken gets a number.
void createIndexInto(dao::BulkLoad &load, const QString &table, dao::IndexInfo index);

// The same figures of a table as it stands in a database.
TableTally tallyOf(dao::Database &database, const QString &table, const QList<PlannedColumn> &columns,
                   const std::function<void(qint64)> &step);

} // namespace orvale
