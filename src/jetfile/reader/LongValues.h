// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetfile/reader/PageFile.h"

#include <QSet>

namespace jetreader {

// Fetches memos and binary objects, which lie in the row itself, in one piece on another page, or in a chain
// of pieces.
class LongValues {
public:
    // A value cannot be read. The text is a part of an Italian sentence.
    class Unreadable : public std::runtime_error {
    public:
        explicit Unreadable(const QString &text)
            : std::runtime_error(text.toStdString())
        {
        }
    };

    explicit LongValues(PageFile &pages)
        : m_pages(pages)
    {
    }

    // The value of a field of a row, valid until the next call. Throws Unreadable, and Damage when the file's
    // values together are longer than the file: the same pieces are then counted again and again.
    Bytes fetch(Bytes field);

private:
    Bytes piece(RowAddress address);
    Bytes chain(RowAddress address, std::size_t size);
    void charge(std::size_t size);

    PageFile &m_pages;
    QByteArray m_joined;
    qint64 m_fetched = 0; // bytes from other pages
};

} // namespace jetreader
