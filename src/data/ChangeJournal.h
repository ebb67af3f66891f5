// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/Dao.h"

#include <QString>
#include <QVariant>

namespace clivara {

class Clock;
class Log;
class RecordsetOperations;

// Kinds of change (Modifiche.Tipo). Numbers below 100 are the host's: practices also hold kinds that this
// program does not know. The chart's own kinds begin at 101; docs/architecture.md lists them for whoever
// reads the table.
enum ChangeKind : qint16 {
    GeneralInformation = 3, // the patient's row of inf_gen
    Questionnaire = 4, // a row of ESAME_OB; the key is its tipo_dati letter
    CardiovascularRisk = 101, // a row of Rischio_Cardio; the key is its date, "dd/mm/yyyy"
    MetabolicSyndrome = 102 // a row of SindrMetabolica; the key is its date, "dd/mm/yyyy"
};

// Tells the host what the chart changed in a patient's data, so that the host can pass it on. Both recorders
// raise nothing: what cannot be written is left out, and a change that is lost altogether leaves a line in
// the log.
class ChangeJournal {
public:
    ChangeJournal(dao::Database &clinical, dao::Database &events, const Clock &clock, Log &log,
                  RecordsetOperations &operations)
        : m_clinical(clinical)
        , m_events(events)
        , m_clock(clock)
        , m_log(log)
        , m_operations(operations)
    {
    }

    // One row of Modifiche per day, kind, patient, key and deletion flag. A key of two parts has the section
    // sign "§" between them; a blank key (empty, Null, only blanks) is left out of the search and of the row.
    // The search compares whole parts but at most 15 characters of each are kept, so a longer part adds a row
    // each time.
    void recordChange(qint16 tipo, qint32 cod_paz, const QVariant &chiave, bool cancellazione);

    // The day of the newest change of that kind, patient and key of one part, deletions included; null when
    // there is none. Throws dao::Error.
    static QDate lastChange(dao::Database &clinical, qint16 tipo, qint32 cod_paz, const QString &chiave);

    // One row of Eventi per event ("InserimentoPaziente", "ModificaEsenzioni"...). A blank patient code is 0,
    // a blank or missing key an empty text. 0 when the row was saved, else -1.
    qint16 recordEvent(const QString &MedicoR, const QString &Medico, const QString &metodo,
                       const QVariant &codPaz, const QVariant &chiave = {}, const QVariant &chiave1 = {},
                       const QVariant &chiave2 = {});

private:
    dao::Database &m_clinical;
    dao::Database &m_events;
    const Clock &m_clock;
    Log &m_log;
    RecordsetOperations &m_operations;
};

} // namespace clivara
