// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDate>
#include <QFrame>

namespace clivara {

class ElidedLabel;
struct PatientHeader;

// The band at the top of every form that says whose chart it is: surname and name large, below them sex,
// birth date, exact age and fiscal code, and the line of the allergies. What does not fit is elided at the
// end and stands in full in the tool tip and in the accessible name.
class PatientStrip : public QFrame {
    Q_OBJECT

public:
    explicit PatientStrip(QWidget *parent = nullptr);

    // A header that does not speak of its patient shows no name at all, never the one of the patient before.
    void showPatient(const PatientHeader &header, QDate today);

private:
    void showAllergies(const PatientHeader &header);

    ElidedLabel *m_name;
    ElidedLabel *m_details;
    ElidedLabel *m_allergies;
};

// "58 anni", "1 anno", below one year "7 mesi"; empty when the birth date is unknown or later than the day.
QString ageText(QDate birth, QDate today);

} // namespace clivara
