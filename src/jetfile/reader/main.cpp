// SPDX-License-Identifier: Apache-2.0
// orvale-jet-reader: sends what a Jet file holds to the program that started it (jetfile/wire/Wire.h). A
// damaged file may crash this program or make it loop, so its memory and its time are limited.
#include "jetfile/reader/FrameOutput.h"
#include "jetfile/reader/TableList.h"
#include "jetfile/wire/TableCoding.h"

#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace jetreader {

using namespace jetfile;

namespace {

void limitResources()
{
    const rlimit noCore{0, 0};
    ::setrlimit(RLIMIT_CORE, &noCore);
#ifndef __SANITIZE_ADDRESS__ // which reserves terabytes for itself
    constexpr rlim_t memory = 512 * 1024 * 1024;
    const rlimit addressSpace{memory, memory};
    ::setrlimit(RLIMIT_AS, &addressSpace);
#endif
}

// libmdb writes to standard output and error, and environment variables change how it decodes.
int takeOverOutput()
{
    const int output = ::dup(STDOUT_FILENO);
    const int nowhere = ::open("/dev/null", O_WRONLY);
    ::dup2(nowhere, STDOUT_FILENO);
    ::dup2(nowhere, STDERR_FILENO);
    for (const char *variable : {"MDBOPTS", "MDBPATH", "MDBICONV", "MDB_JET3_CHARSET"})
        ::unsetenv(variable);
    return output;
}

void sendFile(const QByteArray &path, FrameOutput &output)
{
    wire::Writer payload;
    TableScan scan(path);
    payload << wire::magic << wire::version << quint8(scan.file().isJet3() ? 3 : 4);
    output.send(wire::Kind::Hello, payload);

    const std::vector<TableDefinition> tables = readTableList(scan);
    QList<JetTable> definitions;
    for (const TableDefinition &table : tables)
        definitions += table.table;
    payload.clear();
    wire::putTables(payload, definitions);
    if (payload.size() > wire::longestFrame)
        throw Damage(QStringLiteral("il catalogo elenca troppe tabelle"));
    output.send(wire::Kind::Tables, payload);

    for (std::size_t i = 0; i < tables.size(); ++i) {
        quint32 rows = 0;
        const qsizetype countAt = sizeof(quint32);
        const auto begin = [&] {
            rows = 0;
            payload.clear();
            payload << quint32(i) << rows;
        };
        const auto flush = [&] {
            payload.patch(countAt, rows);
            output.send(wire::Kind::Rows, payload);
            begin();
        };
        begin();
        scan.run(tables[i], payload, [&] {
            ++rows;
            if (payload.size() >= wire::fullBatch)
                flush();
        });
        if (rows > 0)
            flush();
        payload.truncate(countAt);
        output.send(wire::Kind::TableEnd, payload);
    }
    payload.clear();
    output.send(wire::Kind::End, payload);
}

} // namespace

} // namespace jetreader

int main(int argc, char *argv[])
{
    using namespace jetreader;
    if (argc != 2) {
        std::fputs("Uso: orvale-jet-reader FILE\n"
                   "Scrive sull'uscita le tabelle di un file Jet nella forma che legge orvale.\n",
                   stderr);
        return 2;
    }
    limitResources();
    FrameOutput output(takeOverOutput());
    try {
        sendFile(argv[1], output);
    } catch (const Damage &damage) {
        wire::Writer payload;
        payload << QString::fromStdString(damage.what()).left(400);
        output.send(wire::Kind::Failure, payload);
    } catch (const std::bad_alloc &) {
        ::_exit(1);
    }
    // _exit runs no destructors: libmdb's data may be corrupt after a damaged file.
    ::_exit(0);
}
