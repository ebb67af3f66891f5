// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/patients/PatientIndex.h"
#include "app/patients/PatientSummary.h"
#include "data/HostEnvironment.h"

#include <QHash>
#include <optional>

namespace orvale {

// Reads of a practice what the host itself shows. Every member throws dao::Error when the databases cannot be
// read.
class PatientRecords {
public:
    // The environment must outlive the object.
    explicit PatientRecords(const clivara::HostEnvironment &environment)
        : m_environment(environment)
    {
    }

    // The next patients by code after a given one, for the search list; fewer than `count` at the end.
    std::vector<PatientEntry> entriesAfter(qint32 code, int count) const;
    // Empty when there is no such patient.
    std::optional<PatientEntry> entry(qint32 code) const;

    // Empty when there is no such patient.
    std::optional<PatientSummary> summary(qint32 code) const;
    std::optional<PatientRegistry> registry(qint32 code) const;
    QList<ProblemLine> openProblems(qint32 code) const;
    QList<VisitLine> lastVisits(qint32 code) const;
    QList<LaboratoryLine> lastLaboratory(qint32 patient) const;
    BloodPressure lastPressure(qint32 code) const;

    // A patient whose chart shows much: most of the exams that the calculators read, done since a day,
    // several saved evaluations, and open problems. -1 when the practice has no patient.
    qint32 instructivePatient(QDate since) const;

private:
    clivara::Allergies allergies(qint32 code) const;
    QString visitType(int type) const;

    const clivara::HostEnvironment &m_environment;
    mutable QHash<int, QString> m_visitTypes; // of the code tables, read once
};

} // namespace orvale
