// SPDX-License-Identifier: Apache-2.0
#include "jetfile/wire/Wire.h"

namespace jetfile::wire {

namespace {

// The order of the machine, so that texts are copied as they are.
void prepare(QDataStream &stream)
{
    stream.setVersion(QDataStream::Qt_6_4);
    stream.setByteOrder(QDataStream::LittleEndian);
}

} // namespace

Writer::Writer()
{
    prepare(*this);
    m_buffer.open(QIODevice::WriteOnly);
    setDevice(&m_buffer);
}

void Writer::truncate(qsizetype size)
{
    m_buffer.buffer().truncate(size);
    m_buffer.seek(size);
}

void Writer::patch(qsizetype place, quint32 number)
{
    m_buffer.seek(place);
    *this << number;
    m_buffer.seek(size());
}

void Writer::clear()
{
    if (m_buffer.buffer().capacity() > 4 * fullBatch)
        m_buffer.buffer() = QByteArray();
    m_buffer.buffer().reserve(2 * fullBatch);
    truncate(0);
}

Reader::Reader(const QByteArray &bytes)
    : QDataStream(bytes)
{
    prepare(*this);
}

QString Reader::takeText(qsizetype longest)
{
    const QString text = take<QString>();
    if (text.size() > longest)
        throw Error("text too long");
    return text;
}

int Reader::takeCount(int most)
{
    const auto count = take<quint32>();
    if (count > quint32(most))
        throw Error("count too high");
    return int(count);
}

} // namespace jetfile::wire
