// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <utility>

namespace clivara {

// Suspends the calling thread between the retries of a database operation.
class Pauses {
public:
    virtual ~Pauses() = default;
    virtual void pause(int milliseconds) = 0;
    // A draw in [0, 1) from a generator freshly seeded by the clock.
    virtual double draw() = 0;
};

class SystemPauses final : public Pauses {
public:
    void pause(int milliseconds) override;
    double draw() override;
};

// New global identities.
class GuidSource {
public:
    virtual ~GuidSource() = default;
    // 38 characters in braces, upper-case hexadecimal.
    virtual QString newGuid() = 0;
};

class SystemGuids final : public GuidSource {
public:
    QString newGuid() override;
};

// The library of the host that knows the account of the secured databases.
class Middleware {
public:
    virtual ~Middleware() = default;
    // Selector "U" gives the account name (at most 10 characters), "P" its password (at most 15); trimmed,
    // empty when there is none. Nothing is kept.
    virtual QString account(const QString &selector) = 0;
};

// Looks the library up at run time with the platform's loader ("Koral32.dll", "libKoral32.so") and calls its
//   void GetUsefullTimer(const char *selector, char *buffer)
// with a buffer of 10 ("U") or 15 ("P") blanks and a terminating zero. The function overwrites the blanks
// with single-byte (Latin-1) text, which ends at the buffer's end or at an earlier zero. Without the library
// the environment variables CLIVARA_DB_USER and CLIVARA_DB_PASSWORD are used, and without those there is no
// account.
class SystemMiddleware final : public Middleware {
public:
    explicit SystemMiddleware(const QString &library = QStringLiteral("Koral32"));
    QString account(const QString &selector) override;

private:
    const QString m_library; // a name for the loader, or a path
};

// The region's own health service, which a networked practice tells of saved problems and stays.
class RegionalConnector {
public:
    virtual ~RegionalConnector() = default;
    // Sends the key of a saved row (idProblems, idRicovero) with its patient and the host setting
    // "OSM_ASRIFT". Empty when it was taken, else the connector's answer for the doctor.
    virtual QString send(qint32 key, qint32 patientCode, const QString &reference) = 0;
};

// Stands where no connector is installed; its answer says so.
class AbsentConnector final : public RegionalConnector {
public:
    QString send(qint32 key, qint32 patientCode, const QString &reference) override;
};

} // namespace clivara
