// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetfile/JetTable.h"

#include <chrono>
#include <memory>
#include <stdexcept>

namespace jetfile {

// A file cannot be read: missing, empty, truncated, damaged, no Jet file, of a newer format, protected by a
// password or encrypted. The text is one clear Italian line that names the file.
class SourceError : public std::runtime_error {
public:
    explicit SourceError(const QString &text)
        : std::runtime_error(text.toStdString())
        , m_text(text)
    {
    }
    QString text() const { return m_text; }

private:
    QString m_text;
};

// Reads a Jet file (version 3 or 4) through a program of its own, orvale-jet-reader, that sends definitions
// and rows over a pipe: a damaged file can crash that program or make it loop, but never this
// one. The memory used does not grow with the file. The file is opened for reading only and never changed.
class JetFileReader {
public:
    // Starts the program and receives the tables' definitions. The program is looked for beside this one. It
    // counts as stuck when it sends nothing for so long. Throws SourceError.
    explicit JetFileReader(const QString &path,
                           std::chrono::milliseconds patience = std::chrono::seconds(20));
    // Ends the program, wherever it is.
    ~JetFileReader();
    JetFileReader(const JetFileReader &) = delete;
    JetFileReader &operator=(const JetFileReader &) = delete;

    int jetVersion() const; // 3 or 4
    // All user tables, in the order of the file's catalogue. Linked and system tables are not among them.
    const QList<JetTable> &tables() const;

    // Rows come table by table, in the order of tables(): false after the last row of a table, then the next
    // call starts the next one. Throws SourceError when the file turns out to be damaged.
    bool nextRow(JetRow &row);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace jetfile
