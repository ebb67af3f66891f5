// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDate>
#include <QObject>
#include <QString>
#include <functional>

namespace clivara {

class Clock;
class MaskedDateEdit;
class Prompts;

// What the date fields of one form ("__-__-____") have in common: entering an empty one fills in today's
// date, leaving one with a text that is no date tells the doctor and leads back to it. One box for each time
// that a field is left, whatever the focus does meanwhile.
class DateFieldGuard : public QObject {
    Q_OBJECT

public:
    enum class Empty {
        Allowed, // an emptied field may be left
        Refused // it is no date
    };

    // The field is not checked while `mayLeave` is true: the form goes away, or the doctor's next click
    // checks it itself. Clock and prompts must outlive it.
    DateFieldGuard(const Clock &clock, Prompts &prompts, std::function<bool()> mayLeave);

    void watch(MaskedDateEdit *edit, Empty empty);
    // "Data non valida !", and the focus is on the field.
    void refuse(MaskedDateEdit *edit);

private:
    void fill(MaskedDateEdit *edit) const;
    void check(MaskedDateEdit *edit, Empty empty);

    const Clock &m_clock;
    Prompts &m_prompts;
    const std::function<bool()> m_mayLeave;
    bool m_returning = false; // between a refusal and the focus being back
};

} // namespace clivara
