// SPDX-License-Identifier: Apache-2.0
#include "support/SingleByteText.h"

#include <cerrno>
#include <iconv.h>

namespace clivara {

namespace {

class Converter {
public:
    Converter()
        : m_handle(iconv_open("WINDOWS-1252", Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? "UTF-16LE" : "UTF-16BE"))
    {
    }
    ~Converter()
    {
        if (isOpen())
            iconv_close(m_handle);
    }
    Converter(const Converter &) = delete;
    Converter &operator=(const Converter &) = delete;

    bool isOpen() const { return m_handle != reinterpret_cast<iconv_t>(-1); }

    // Converts one character (a surrogate pair is one); false when the code page does not have it.
    bool convert(const QChar *character, int units, char &byte)
    {
        // iconv takes its input by a pointer to non-const and leaves it alone.
        char *in = const_cast<char *>(reinterpret_cast<const char *>(character));
        std::size_t inLeft = units * sizeof(QChar);
        char *out = &byte;
        std::size_t outLeft = 1;
        if (iconv(m_handle, &in, &inLeft, &out, &outLeft) == static_cast<std::size_t>(-1)) {
            iconv(m_handle, nullptr, nullptr, nullptr, nullptr);
            return false;
        }
        return outLeft == 0;
    }

private:
    iconv_t m_handle;
};

} // namespace

QByteArray singleByteText(QStringView text)
{
    QByteArray bytes;
    bytes.reserve(text.size());
    Converter converter;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar character = text[i];
        if (character.unicode() < 0x80) {
            bytes.append(static_cast<char>(character.unicode()));
            continue;
        }
        const bool pair = character.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        char byte = '?';
        if (!converter.isOpen() || !converter.convert(text.data() + i, pair ? 2 : 1, byte))
            byte = '?';
        bytes.append(byte);
        if (pair)
            ++i;
    }
    return bytes;
}

} // namespace clivara
