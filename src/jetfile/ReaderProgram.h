// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetfile/wire/Wire.h"

#include <QString>

#include <chrono>

#include <sys/types.h>

namespace jetfile {

// A run of orvale-jet-reader on one file: started by the constructor, ended by the destructor at the latest.
// Not a QProcess, since that belongs to one thread and a practice's files are opened in several and then read
// in another.
class ReaderProgram {
public:
    // The program cannot be started. The text says why, as a part of a sentence.
    class StartError : public std::runtime_error {
    public:
        explicit StartError(const QString &text)
            : std::runtime_error(text.toStdString())
        {
        }
    };
    // The program ended before it had said everything, or said nothing for too long.
    class Broken : public std::runtime_error {
    public:
        using std::runtime_error::runtime_error;
    };

    struct Frame {
        wire::Kind kind{};
        QByteArray payload;
    };

    ReaderProgram(const QString &file, std::chrono::milliseconds patience);
    ~ReaderProgram();
    ReaderProgram(const ReaderProgram &) = delete;
    ReaderProgram &operator=(const ReaderProgram &) = delete;

    // Waits for the next frame; the payload's memory is used again. Throws Broken, and wire::Error when the
    // frame is longer than the protocol allows.
    void receive(Frame &frame);

private:
    void read(char *bytes, qsizetype size);

    std::chrono::milliseconds m_patience;
    int m_pipe = -1;
    pid_t m_process = -1;
};

} // namespace jetfile
