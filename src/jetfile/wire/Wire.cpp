// SPDX-License-Identifier: Apache-2.0
#include "jetfile/wire/Wire.h"

#include <QString>

namespace jetfile::wire {

void Writer::putText(QStringView text)
{
    const QByteArray utf8 = text.toUtf8();
    put(quint32(utf8.size()));
    put(utf8.data(), utf8.size());
}

void Writer::clear()
{
    if (m_bytes.capacity() > 4 * fullBatch)
        m_bytes = QByteArray();
    m_bytes.reserve(2 * fullBatch);
    m_bytes.resize(0);
}

QString Reader::takeText(qsizetype mostBytes)
{
    const qsizetype size = take<quint32>();
    if (size > mostBytes)
        throw Error("text too long");
    return QString::fromUtf8(take(size), size);
}

int Reader::takeCount(int most)
{
    const auto count = take<quint32>();
    if (count > quint32(most))
        throw Error("count too high");
    return int(count);
}

} // namespace jetfile::wire
