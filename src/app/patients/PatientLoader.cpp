// SPDX-License-Identifier: Apache-2.0
#include "app/patients/PatientLoader.h"

#include "app/patients/PatientIndex.h"
#include "app/patients/PatientRecords.h"

#include <limits>

namespace orvale {

namespace {

// A slice of this size is read within one picture of the screen.
constexpr int slice = 500;
// The list is shown anew after the first slice and then now and then: searching costs time as well.
constexpr int slicesBetweenViews = 16;

} // namespace

PatientLoader::PatientLoader(const PatientRecords &records, PatientIndex &index, QObject *parent)
    : QObject(parent)
    , m_records(records)
    , m_index(index)
{
    m_timer.setInterval(0);
    connect(&m_timer, &QTimer::timeout, this, &PatientLoader::readSlice);
}

void PatientLoader::start()
{
    m_index = PatientIndex();
    m_lastCode = std::numeric_limits<qint32>::min();
    m_slices = 0;
    m_timer.start();
    emit advanced();
}

void PatientLoader::readSlice()
{
    std::vector<PatientEntry> patients;
    try {
        patients = m_records.entriesAfter(m_lastCode, slice);
    } catch (const dao::Error &error) {
        stop();
        emit failed(error.text());
        return;
    }
    for (const PatientEntry &patient : patients)
        m_index.add(patient);
    if (static_cast<int>(patients.size()) < slice) {
        stop();
        emit finished();
        return;
    }
    m_lastCode = patients.back().code;
    if (m_slices++ % slicesBetweenViews == 0)
        emit advanced();
}

void PatientLoader::stop()
{
    m_timer.stop();
    m_index.sort();
}

} // namespace orvale
