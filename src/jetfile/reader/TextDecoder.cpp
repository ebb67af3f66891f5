// SPDX-License-Identifier: Apache-2.0
#include "jetfile/reader/TextDecoder.h"

#include <algorithm>
#include <cerrno>

#include <iconv.h>

namespace jetreader {

namespace {

constexpr int usualCodePage = 1252;

// The characters of a code page of single bytes. A byte that stands for none becomes the control character of
// the same number, as on the systems that the code pages come from.
std::array<char16_t, 256> characters(int codePage)
{
    const QByteArray name = "CP" + QByteArray::number(codePage);
    const iconv_t converter = iconv_open("UTF-16LE", name.constData());
    if (converter == iconv_t(-1))
        throw Damage(QStringLiteral("i testi usano un insieme di caratteri sconosciuto (%1)").arg(codePage));
    std::array<char16_t, 256> table{};
    bool severalBytes = false;
    for (int byte = 0; byte < 256; ++byte) {
        char in = char(byte);
        std::array<char, 4> out;
        char *from = &in;
        char *to = out.data();
        std::size_t inLeft = 1, outLeft = out.size();
        const bool converted = iconv(converter, &from, &inLeft, &to, &outLeft) == 0 && outLeft == 2;
        severalBytes = severalBytes || (!converted && errno == EINVAL);
        table[std::size_t(byte)] = converted ? qFromLittleEndian<char16_t>(out.data()) : char16_t(byte);
        iconv(converter, nullptr, nullptr, nullptr, nullptr);
    }
    iconv_close(converter);
    if (severalBytes)
        throw Damage(QStringLiteral("i testi usano un insieme di caratteri non previsto (%1)").arg(codePage));
    return table;
}

} // namespace

TextDecoder::TextDecoder(const PageFile &file)
    : m_jet3(file.isJet3())
{
    if (m_jet3)
        m_codePage = characters(file.codePage() == 0 ? usualCodePage : file.codePage());
}

std::optional<QString> TextDecoder::decode(Bytes bytes) const
{
    const auto size = qsizetype(bytes.size());
    if (m_jet3) {
        QString text(size, Qt::Uninitialized);
        std::transform(bytes.begin(), bytes.end(), text.begin(),
                       [&](uchar byte) { return m_codePage[byte]; });
        return text;
    }
    if (size < 2 || bytes[0] != 0xff || bytes[1] != 0xfe) {
        if (size % 2 != 0)
            return {};
        QString text(size / 2, Qt::Uninitialized);
        if (size > 0) // an empty value has no address that may be copied from
            qFromLittleEndian<char16_t>(bytes.data(), text.size(), text.data());
        return text;
    }

    bytes = bytes.subspan(2);
    QString text;
    text.reserve(size);
    bool single = true; // one byte a character; a zero byte where one begins changes over
    for (std::size_t i = 0; i < bytes.size();) {
        if (bytes[i] == 0) {
            single = !single;
            ++i;
        } else if (single) {
            text += QLatin1Char(char(bytes[i++]));
        } else if (i + 1 < bytes.size()) {
            text += QChar(number16(bytes, i));
            i += 2;
        } else {
            return {};
        }
    }
    return text;
}

bool isName(QStringView text)
{
    constexpr qsizetype longestName = 64;
    return !text.isEmpty() && text.size() <= longestName && text.isValidUtf16()
           && std::none_of(text.begin(), text.end(), [](QChar c) {
                  return c.isNonCharacter() || c.category() == QChar::Other_Control;
              });
}

} // namespace jetreader
