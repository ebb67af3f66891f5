// SPDX-License-Identifier: Apache-2.0
// lock_holder FILE: takes the write lock of a database, says "locked", and gives it back when a line comes
// in.
#include <cstdio>
#include <sqlite3.h>

int main(int argc, char **argv)
{
    sqlite3 *database = nullptr;
    if (argc != 2 || sqlite3_open_v2(argv[1], &database, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK
        || sqlite3_exec(database, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr) != SQLITE_OK) {
        std::fprintf(stderr, "%s\n", database ? sqlite3_errmsg(database) : "no file");
        sqlite3_close(database);
        return 1;
    }
    std::puts("locked");
    std::fflush(stdout);
    std::getchar();
    sqlite3_exec(database, "ROLLBACK", nullptr, nullptr, nullptr);
    sqlite3_close(database);
    return 0;
}
