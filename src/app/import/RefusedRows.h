// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/BulkLoad.h"
#include "jetfile/JetTable.h"

#include <memory>

namespace orvale {

// The rows that an import could not write, in the table orvale_refused_rows of the practice's clinical
// database: where each comes from, why it was refused, and all its values as JSON.
class RefusedRows {
public:
    // Creates the table.
    RefusedRows(dao::Database &clinical, dao::BulkLoad &load);

    // `number` counts the table's rows in reading order, from 1. The reason is an Italian sentence without
    // any value of the row.
    void add(const QString &database, const jetfile::JetTable &table, qint64 number, const QString &reason,
             const jetfile::JetRow &row);

private:
    std::unique_ptr<dao::BulkInsert> m_insert;
};

// {"field":value,...} in the order of the fields: numbers with all their digits, texts whole, dates as
// "YYYY-MM-DD HH:MM:SS", dates that are none as the number that stands for them, bytes as base64.
QString rowAsJson(const jetfile::JetTable &table, const jetfile::JetRow &row);

} // namespace orvale
