// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace dao {

// Where a practice's databases are kept.
enum class StorageKind { Files, Server };

// How thoroughly a database is looked through: its pages, or also its indexes against their tables, which
// takes much longer.
enum class Thoroughness { Pages, PagesAndIndexes };

} // namespace dao
