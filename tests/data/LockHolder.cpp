// SPDX-License-Identifier: Apache-2.0
// lock_holder DATABASE: another workstation in the middle of a save. Takes the write lock of a database, a file or a
// server's address with a schema, says "locked", and gives it back when a line comes in.
#include <cstdio>
#include <cstring>
#include <libpq-fe.h>
#include <sqlite3.h>
#include <string>

namespace {

int holdFile(const char *name)
{
    sqlite3 *database = nullptr;
    if (sqlite3_open_v2(name, &database, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK
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

// The practice's lock for transactions, and every row of the schema's tables.
int holdSchema(const std::string &address, const std::string &schema)
{
    PGconn *connection = PQconnectdb(address.c_str());
    const std::string lock =
        "BEGIN; SELECT pg_advisory_xact_lock(1869769079, 1); DO $do$ DECLARE name text; BEGIN "
        "FOR name IN SELECT format('%I.%I', schemaname, tablename) FROM pg_tables WHERE schemaname = '"
        + schema + "' LOOP EXECUTE 'LOCK TABLE ' || name || ' IN EXCLUSIVE MODE'; END LOOP; END $do$";
    PGresult *result = PQexec(connection, lock.c_str());
    const bool isLocked = PQresultStatus(result) == PGRES_COMMAND_OK;
    PQclear(result);
    if (isLocked) {
        std::puts("locked");
        std::fflush(stdout);
        std::getchar();
    } else {
        std::fprintf(stderr, "%s\n", PQerrorMessage(connection));
    }
    PQfinish(connection);
    return isLocked ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2)
        return 1;
    const std::string name = argv[1];
    const size_t schema = name.find('#');
    return name.rfind("postgresql://", 0) == 0 && schema != std::string::npos
               ? holdSchema(name.substr(0, schema), name.substr(schema + 1))
               : holdFile(argv[1]);
}
