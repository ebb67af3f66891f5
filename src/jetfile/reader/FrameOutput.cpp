// SPDX-License-Identifier: Apache-2.0
#include "jetfile/reader/FrameOutput.h"

#include <cerrno>

#include <unistd.h>

namespace jetreader {

using namespace jetfile;

namespace {

constexpr unsigned longestSilence = 120; // seconds of computing

} // namespace

FrameOutput::FrameOutput(int descriptor)
    : m_descriptor(descriptor)
{
    ::alarm(longestSilence);
}

void FrameOutput::send(wire::Kind kind, const wire::Writer &payload)
{
    ::alarm(0); // the reader may take all the time it wants
    wire::Writer header;
    header << quint32(payload.size()) << kind;
    write(header.bytes().constData(), header.size());
    write(payload.bytes().constData(), payload.size());
    ::alarm(longestSilence);
}

void FrameOutput::write(const char *bytes, qsizetype size)
{
    while (size > 0) {
        const ssize_t written = ::write(m_descriptor, bytes, std::size_t(size));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            ::_exit(1);
        bytes += written;
        size -= written;
    }
}

} // namespace jetreader
