// SPDX-License-Identifier: Apache-2.0
#include "jetfile/JetHeader.h"
#include "jetfile/JetFileReader.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <array>
#include <cmath>
#include <limits>
#include <numeric>

namespace jetfile {

namespace {

constexpr qsizetype versionAt = 0x14;
constexpr qsizetype maskedAt = 0x18; // from here on the page is masked
constexpr qsizetype keyAt = 0x3e; // of the encryption of pages; 0 when they are not encrypted
constexpr qsizetype passwordAt = 0x42;
constexpr qsizetype creationDateAt = 0x72; // Jet 4; also masks the password a second time

struct Format {
    int jetVersion;
    qint64 pageSize;
    qsizetype maskedBytes;
    qsizetype passwordBytes;
};
constexpr Format jet3{3, 2048, 126, 20};
constexpr Format jet4{4, 4096, 128, 40};

// RC4 with the key that all files share: an obfuscation, not an encryption.
void unmask(QByteArray &page, const Format &format)
{
    constexpr std::array<uchar, 4> key{0xc7, 0xda, 0x39, 0x6b};
    std::array<uchar, 256> state;
    std::iota(state.begin(), state.end(), uchar(0));
    for (int i = 0, j = 0; i < 256; ++i) {
        j = (j + state[i] + key[i % key.size()]) & 0xff;
        std::swap(state[i], state[j]);
    }
    int a = 0, b = 0;
    for (qsizetype i = 0; i < format.maskedBytes; ++i) {
        a = (a + 1) & 0xff;
        b = (b + state[a]) & 0xff;
        std::swap(state[a], state[b]);
        page[maskedAt + i] = char(uchar(page[maskedAt + i]) ^ state[(state[a] + state[b]) & 0xff]);
    }
}

bool hasPassword(const QByteArray &page, const Format &format)
{
    std::array<uchar, 4> mask{};
    if (format.jetVersion == 4) {
        const double created = qFromLittleEndian<double>(page.constData() + creationDateAt);
        if (std::abs(created) < double(std::numeric_limits<qint32>::max()))
            qToLittleEndian(qint32(created), mask.data());
    }
    for (qsizetype i = 0; i < format.passwordBytes; ++i) {
        if ((uchar(page[passwordAt + i]) ^ mask[i % mask.size()]) != 0)
            return true;
    }
    return false;
}

QString named(const QString &path)
{
    return QStringLiteral("Il file «%1» ").arg(QDir::toNativeSeparators(path));
}

} // namespace

JetHeader JetHeader::read(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        throw SourceError(named(path) + QStringLiteral("non esiste."));
    if (info.isDir())
        throw SourceError(
            QStringLiteral("«%1» è una cartella, non un file.").arg(QDir::toNativeSeparators(path)));
    if (!info.isFile())
        throw SourceError(named(path) + QStringLiteral("non è un file di dati."));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        throw SourceError(named(path) + QStringLiteral("non si può leggere: %1.").arg(file.errorString()));
    if (file.size() == 0)
        throw SourceError(named(path) + QStringLiteral("è vuoto."));

    QByteArray page = file.read(jet3.pageSize);
    const QByteArrayView signature = QByteArrayView(page).sliced(0, qMin(versionAt, page.size()));
    const bool jetSignature = signature.startsWith(QByteArrayView("\0\1\0\0Standard Jet DB", 19));
    const bool newerSignature = signature.startsWith(QByteArrayView("\0\1\0\0Standard ACE DB", 19));
    if (!jetSignature && !newerSignature)
        throw SourceError(named(path) + QStringLiteral("non è un file Jet."));
    if (page.size() < jet3.pageSize)
        throw SourceError(named(path) + QStringLiteral("è incompleto: finisce nella sua prima pagina."));
    const int version = uchar(page[versionAt]);
    if (newerSignature || version > 1) {
        throw SourceError(named(path)
                          + QStringLiteral("è di un formato più recente di Jet 4 e va prima convertito."));
    }

    const Format &format = version == 0 ? jet3 : jet4;
    unmask(page, format);
    if (qFromLittleEndian<quint32>(page.constData() + keyAt) != 0)
        throw SourceError(named(path) + QStringLiteral("è cifrato e va prima decifrato."));
    if (hasPassword(page, format))
        throw SourceError(named(path) + QStringLiteral("è protetto da una password, che va prima tolta."));
    if (file.size() % format.pageSize != 0)
        throw SourceError(named(path) + QStringLiteral("è incompleto: finisce a metà di una pagina."));
    return {format.jetVersion, file.size() / format.pageSize};
}

} // namespace jetfile
