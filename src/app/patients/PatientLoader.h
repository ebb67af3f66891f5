// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QTimer>

namespace orvale {

class PatientIndex;
class PatientRecords;

// Reads all patients into the index in short slices of the event loop, so that the window answers meanwhile.
class PatientLoader final : public QObject {
    Q_OBJECT

public:
    // Records and index must outlive the loader.
    PatientLoader(const PatientRecords &records, PatientIndex &index, QObject *parent = nullptr);

    // Empties the index and reads it anew.
    void start();
    bool isLoading() const { return m_timer.isActive(); }

signals:
    void advanced(); // some more patients are in the index
    void finished(); // all are, in order
    void failed(const QString &reason); // those read so far are, in order

private:
    void readSlice();
    void stop();

    const PatientRecords &m_records;
    PatientIndex &m_index;
    QTimer m_timer;
    qint32 m_lastCode = -1;
    int m_slices = 0;
};

} // namespace orvale
