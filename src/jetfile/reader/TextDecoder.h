// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetfile/reader/PageFile.h"
#include "jetfile/wire/Wire.h"

#include <array>
#include <string>

namespace jetreader {

// Turns the texts of a file into UTF-16 without loss. Jet 4 holds UTF-16, in which runs of characters below U+0100
// may be stored as single bytes; Jet 3 holds bytes of the file's code page.
class TextDecoder {
public:
    // Throws Damage when the code page of a Jet 3 file is not known or has characters of several bytes.
    explicit TextDecoder(const PageFile &file);

    // False, and nothing is written, when the bytes are no text.
    bool put(Bytes bytes, jetfile::wire::Writer &writer);
    // Empty when the bytes are no text.
    QString decode(Bytes bytes);

private:
    enum class Result { Wide, Latin, NoText };
    Result decodeInto(Bytes bytes);

    bool m_jet3;
    std::array<char16_t, 256> m_codePage{};
    std::u16string m_wide;
    Bytes m_latin;
};

// Whether a text may be the name of a table or field: up to 64 characters, none of which is a control character,
// half of a surrogate pair or one that stands for nothing. Others cannot be created anywhere.
bool isName(QStringView text);

} // namespace jetreader
