// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetfile/reader/PageFile.h"

#include <QString>

#include <array>
#include <optional>

namespace jetreader {

// Turns the texts of a file into UTF-16 without loss. Jet 4 holds UTF-16, in which runs of characters below
// U+0100 may be stored as single bytes; Jet 3 holds bytes of the file's code page.
class TextDecoder {
public:
    // Throws Damage when the code page of a Jet 3 file is not known or has characters of several bytes.
    explicit TextDecoder(const PageFile &file);

    // Nothing when the bytes are no text.
    std::optional<QString> decode(Bytes bytes) const;

private:
    bool m_jet3;
    std::array<char16_t, 256> m_codePage{};
};

// Whether a text may be the name of a table or field: up to 64 characters, none of which is a control
// character, half of a surrogate pair or one that stands for nothing. Others cannot be created anywhere.
bool isName(QStringView text);

} // namespace jetreader
