// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetfile/wire/Wire.h"

namespace jetreader {

// Sends frames to whoever started this program. An alarm runs between two
// frames: a program in an endless loop ends even when its parent is gone.
class FrameOutput {
public:
    explicit FrameOutput(int descriptor);

    // Ends this program when the pipe has been closed.
    void send(jetfile::wire::Kind kind, const jetfile::wire::Writer &payload);

private:
    void write(const char *bytes, qsizetype size);

    int m_descriptor;
};

} // namespace jetreader
