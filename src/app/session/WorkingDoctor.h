// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QList>
#include <QString>

namespace clivara {
class SettingsStore;
}

namespace orvale {

class Practice;

// A doctor of the practice's group.
struct GroupDoctor {
    QString code; // medici_gruppo.cod_smi
    QString name; // surname and name; the code where two have the same or none
    QString uid; // record UID, empty when unknown
};

// The doctors of the practice by name. Throws dao::Error.
QList<GroupDoctor> groupDoctors(Practice &practice);

// The doctor who works in a window. Whoever was chosen is remembered for the user and the practice.
class WorkingDoctor {
public:
    // Both must outlive the object. Throws dao::Error.
    WorkingDoctor(clivara::SettingsStore &user, Practice &practice);

    const QList<GroupDoctor> &group() const { return m_group; }
    // The doctor who was chosen in this practice, else the one whom the settings name, unless they were left
    // by another practice, else the one with the lowest code. Empty in a practice without doctors.
    const GroupDoctor &current() const { return m_current; }
    // False while nobody has said which of several doctors it is.
    bool isChosen() const { return m_chosen; }
    // Remembers the doctor of that code; another code changes nothing.
    void choose(const QString &code);
    // Writes the settings by which the chart knows the doctor.
    void write(clivara::SettingsStore &settings) const;

private:
    bool take(const QString &code);

    clivara::SettingsStore &m_user;
    const QString m_practice; // names the practice in the user's settings
    QList<GroupDoctor> m_group;
    GroupDoctor m_current;
    bool m_chosen = false;
};

} // namespace orvale
