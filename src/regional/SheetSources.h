// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDate>
#include <QHash>
#include <QStringList>

namespace clivara {

class ModEstrazDati;
class SheetData;

// Whose record a new sheet is filled from, and when.
struct SheetPatient {
    qint32 code = 0;
    int age = -1; // completed years; -1 when unknown
    QDate today;
};

struct RecoveredData {
    QHash<int, QString> origins; // by field: where its value comes from, for the doctor
    QStringList remarks; // values that do not fit their field and were left out
    bool isWhole = true; // false when a part of the record could not be read: its fields stay as they are

    QString notice() const; // for the doctor: how many values were found, and what is missing
};

// Fills the fields of a new sheet from the patient's record, each as its layout's source says; a field for which
// nothing is found stays as it is. Windows are counted back from today in months. The criteria of the therapy come
// last, from the values that were found.
RecoveredData RecuperaDati(SheetData &data, const ModEstrazDati &record, const SheetPatient &patient);

// True for the name of a source that RecuperaDati knows.
bool isSheetSource(const QString &name);

} // namespace clivara
