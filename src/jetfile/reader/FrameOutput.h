// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetfile/wire/Wire.h"

namespace jetreader {

// Sends frames to whoever started this program. While it computes between two frames a clock runs: a program
// that is stuck ends by itself even when nobody is left to end it.
class FrameOutput {
public:
    explicit FrameOutput(int descriptor);

    // Ends this program when nobody listens any more.
    void send(jetfile::wire::Kind kind, const jetfile::wire::Writer &payload);

private:
    void write(const char *bytes, qsizetype size);

    int m_descriptor;
};

} // namespace jetreader
