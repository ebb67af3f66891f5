// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDate>
#include <QJsonObject>
#include <QString>

namespace workstations {

// What a doctor writes down in one go. Each kind goes through its own form of the chart, except for events,
// which no form writes: those go through the journal itself.
enum class Kind { Visit, Problem, Stay, Evaluation, Allergies, Sheet, Event };
constexpr int kinds = 7;

// One thing that a workstation saves. The tag is its own among all workstations and is found again in the
// stored row.
struct Save {
    Kind kind = Kind::Visit;
    int worker = 0;
    int number = 0; // of the workstation's saves, from 0
    qint32 patient = 0;
    QDate date; // no other visit, stay or evaluation is of that day
    QString tag;
    QString text; // begins with the tag

    QJsonObject toJson() const;
    static Save fromJson(const QJsonObject &object);
};

// The save of that number of one of several workstations that save `saves` each.
Save makeSave(int worker, int number, int saves);

// The patients that the saves are about: those that all workstations write for, and those whose allergies one
// save writes. Their keys begin at `firstPatient`.
constexpr qint32 firstPatient = 500001;
constexpr int sharedPatients = 20;
int patientsNeeded(int workers, int saves);

// The values of an evaluation, which has no text: systolic pressure and total cholesterol in the equation's
// ranges.
int systolicOf(const Save &save);
int cholesterolOf(const Save &save);
QString hospitalOf(const Save &save);

} // namespace workstations
