// SPDX-License-Identifier: Apache-2.0
#include "jetfile/JetFileReader.h"
#include "jetfile/JetHeader.h"
#include "jetfile/ReaderProgram.h"
#include "jetfile/wire/RowCoding.h"
#include "jetfile/wire/TableCoding.h"

#include <QDir>
#include <optional>

namespace jetfile {

namespace {

QString oneLine(QString text)
{
    for (QChar &c : text) {
        if (!c.isPrint())
            c = u' ';
    }
    return text;
}

} // namespace

struct JetFileReader::Private {
    Private(const QString &path, std::chrono::milliseconds patience)
        : name(QDir::toNativeSeparators(path))
        , header(JetHeader::read(path))
        , program(path, patience)
        , rowsAllowed(header.pages * wire::mostRowsOfPage)
    {
    }

    void receiveDefinitions();
    bool nextRow(JetRow &row);
    void receive(wire::Kind expected);
    wire::Kind receive();
    [[noreturn]] void damaged(const QString &detail) const;

    QString name;
    JetHeader header;
    ReaderProgram program;
    ReaderProgram::Frame frame;
    std::optional<wire::Reader> payload; // of the frame
    QList<JetTable> tables;
    qsizetype current = 0; // the table whose rows come
    quint32 rowsLeft = 0; // in the payload
    qint64 rowsAllowed = 0; // that the file's pages can still hold
};

void JetFileReader::Private::damaged(const QString &detail) const
{
    const QString end = detail.isEmpty() ? QStringLiteral(".") : QStringLiteral(": %1.").arg(oneLine(detail));
    throw SourceError(QStringLiteral("Il file «%1» è danneggiato o incompleto%2").arg(name, end));
}

wire::Kind JetFileReader::Private::receive()
{
    payload.reset(); // shares the memory of the frame before
    program.receive(frame);
    payload.emplace(frame.payload);
    if (frame.kind == wire::Kind::Failure)
        damaged(payload->takeText(wire::longestProblem));
    return frame.kind;
}

void JetFileReader::Private::receive(wire::Kind expected)
{
    if (receive() != expected)
        throw wire::Error("frame out of turn");
}

void JetFileReader::Private::receiveDefinitions()
{
    receive(wire::Kind::Hello);
    if (payload->take<quint32>() != wire::magic || payload->take<quint16>() != wire::version)
        throw ReaderProgram::StartError(QStringLiteral("orvale-jet-reader è di un'altra versione"));
    if (payload->take<quint8>() != header.jetVersion)
        throw wire::Error("another version than the header's");
    receive(wire::Kind::Tables);
    tables = wire::takeTables(*payload);
}

bool JetFileReader::Private::nextRow(JetRow &row)
{
    while (rowsLeft == 0) {
        if (payload && !payload->atEnd())
            throw wire::Error("bytes after the last row");
        const wire::Kind kind = receive();
        if (payload->take<quint32>() != current)
            throw wire::Error("rows of another table");
        if (kind == wire::Kind::TableEnd) {
            if (++current == tables.size())
                receive(wire::Kind::End);
            return false;
        }
        if (kind != wire::Kind::Rows)
            throw wire::Error("frame out of turn");
        rowsLeft = payload->take<quint32>();
        rowsAllowed -= rowsLeft;
        if (rowsAllowed < 0)
            throw wire::Error("more rows than the file can hold");
    }
    wire::takeRow(*payload, tables[current].columns, row);
    --rowsLeft;
    return true;
}

JetFileReader::JetFileReader(const QString &path, std::chrono::milliseconds patience)
{
    try {
        d = std::make_unique<Private>(path, patience);
        d->receiveDefinitions();
    } catch (const ReaderProgram::StartError &error) {
        throw SourceError(QStringLiteral("Il file «%1» non si può leggere: il lettore non parte (%2).")
                              .arg(QDir::toNativeSeparators(path), QString::fromStdString(error.what())));
    } catch (const ReaderProgram::Broken &) {
        d->damaged({});
    } catch (const wire::Error &) {
        d->damaged({});
    }
}

JetFileReader::~JetFileReader() = default;

int JetFileReader::jetVersion() const
{
    return d->header.jetVersion;
}

const QList<JetTable> &JetFileReader::tables() const
{
    return d->tables;
}

bool JetFileReader::nextRow(JetRow &row)
{
    if (d->current >= d->tables.size())
        return false;
    try {
        return d->nextRow(row);
    } catch (const ReaderProgram::Broken &) {
        d->damaged({});
    } catch (const wire::Error &) {
        d->damaged({});
    }
}

} // namespace jetfile
