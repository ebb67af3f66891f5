// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/demo/DemoLists.h"
#include "app/demo/DemoRandom.h"
#include "app/practice/Practice.h"

#include <QVariantList>
#include <map>

namespace orvale {

struct DemoPatient;

// One of the invented doctors.
struct DemoDoctor {
    int code = 0; // cod_smi
    QString medico;
    QString uid; // plain
};

// What all generators share: the source of chance, the lists, the days of the history, the doctors, the keys
// given out so far, and one fast inserter for each table.
class DemoWriter {
public:
    DemoWriter(Practice &practice, quint64 seed, QDate today, int years);

    DemoRandom random;
    const DemoLists lists;
    const QDate today;
    const QDate first; // first day of the history
    QList<DemoDoctor> doctors;

    // Keys given out so far, counted up before use.
    int prescription = 20000; // riepil.cod_pre
    int result = 1000; // riepil2.idriepil2
    int problem = 0;
    int visit = 0;
    int stay = 0;
    std::map<int, int> sheets; // AIR15_7.idScheda by idTipo

    // Adds a row, its values in the order of the table's fields. A key of an autonumber field is written as
    // given. The database and the table's name are those of the dictionary.
    void add(const char *database, const char *table, const QVariantList &values);
    // Commits what was added; rows are written many at once, the last ones now.
    void commit(dao::Transaction &transaction);

    // The nine identity values of a shared row in the order of the table's fields: idRowGuid, sRecordUid,
    // sOwnerUid, dCreationDate, sCodSezCli, sPatientUid, sPatientRecordOwnerUid, dLastModifiedDate,
    // sAuthorUid.
    QVariantList stamps(const DemoPatient &patient, const QString &section, QDate day);

    // One or more sentences of a list, none with the given chance (then an invalid variant).
    QVariant sentences(const QString &section, double missing, int most = 3);
    // A working time of the day.
    QDateTime at(QDate day);
    static QDateTime midnight(QDate day);
    static QString braced(const QString &uid);

private:
    Practice &m_practice;
    struct Rows {
        std::unique_ptr<dao::BulkInsert> insert;
        QList<QVariantList> waiting;
        void write();
    };
    std::map<std::pair<QString, QString>, Rows> m_rows; // by database and table
};

} // namespace orvale
