// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Save.h"

#include <QFile>
#include <QList>
#include <QStringList>

namespace workstations {

// What a workstation knows of its own saves, in a file of its own that reaches the disk line by line: what
// was begun, what the chart acknowledged and after which wait, what the doctor was shown.
class Ledger {
public:
    explicit Ledger(const QString &path);

    void begun(const Save &save);
    // How long the form took to open and the save to be done, in ms; -1 where there was nothing to open.
    void acknowledged(const Save &save, qint64 openedMs, qint64 savedMs);
    void shown(const Save &save, const QString &box);

private:
    void write(const QJsonObject &line);
    QFile m_file;
};

// The ledger of a workstation as it stands. A last line that was cut is left out.
struct Account {
    struct Entry {
        Save save;
        bool isAcknowledged = false;
        qint64 openedMs = -1, savedMs = -1;
    };
    QList<Entry> entries; // begun, in their order
    QStringList shown; // "tag: text"
    static Account read(const QString &path);
};

} // namespace workstations
