// SPDX-License-Identifier: Apache-2.0
#include "chart/HostContext.h"

#include "chart/ErrorLog.h"
#include "chart/WorkingState.h"
#include "data/AllergyRecords.h"
#include "data/Identity.h"
#include "data/PatientHeaderLoader.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

const auto lombardyName = QStringLiteral("LOMBARDIA");
const auto lombardyCode = QStringLiteral("03");

void loadDoctorIdentities(WorkingState &state)
{
    state.medicoP = state.settings.text(QStringLiteral("medicoP"));
    state.medicoT = state.settings.text(QStringLiteral("medicoT"));
    dao::Database *doctors = state.environment ? state.environment->doctors.get() : nullptr;
    state.uidMedicoT = LeggiUidMedico(state.medicoT, doctors, state.log);
    state.uidMedicoP = LeggiUidMedico(state.medicoP, doctors, state.log);
    state.uidAuthor = LeggiUidMedico(state.medicoP, doctors, state.log);
}

// The doctor logged in at the host; without one, the doctor that works there.
QString currentDoctor(const WorkingState &state)
{
    const QString current = state.settings.text(QStringLiteral("medico_corrente")).trimmed();
    return current.isEmpty() ? state.medicoP.trimmed() : current;
}

// The doctor's row of medici_gruppo; null when there is none or it cannot be read.
std::unique_ptr<dao::Recordset> doctorRow(const WorkingState &state)
{
    const auto code = jet::numberFromText(currentDoctor(state));
    const auto number = code ? jet::toLong(*code) : std::nullopt;
    if (!number)
        return nullptr;
    auto rows = state.doctors().OpenRecordset(
        {QStringLiteral("select * from medici_gruppo where cod_smi=[doctor]"), {{"doctor", *number}}},
        dao::RecordsetType::Snapshot);
    return rows->Eof() ? nullptr : std::move(rows);
}

// Two digits; the code of Lombardy where the host keeps only that region's name.
QString regionCode(const QString &code, const QString &name)
{
    const QString trimmed = code.trimmed();
    if (trimmed.isEmpty())
        return jet::sameText(name.trimmed(), lombardyName) ? lombardyCode : QString();
    return trimmed.rightJustified(2, QLatin1Char('0'));
}

void loadGroupSettings(WorkingState &state, dao::Recordset *doctor)
{
    GroupSettings group;
    group.heading = state.settings.text(QStringLiteral("SET_INTESTA"));
    group.group = state.settings.text(QStringLiteral("NGRUPPO"));
    group.server = state.settings.text(QStringLiteral("LSERVER"));
    group.title = state.settings.text(QStringLiteral("SET_TITOL"));
    if (doctor) {
        group.stamp1 = doctor->Fields(QStringLiteral("stamp_1")).text();
        group.stamp2 = doctor->Fields(QStringLiteral("stamp_2")).text();
        group.address1 = doctor->Fields(QStringLiteral("vass_1")).text();
        group.address2 = doctor->Fields(QStringLiteral("vass_2")).text();
    }
    state.group = group;
}

void loadDoctorSettings(WorkingState &state, dao::Recordset *doctor)
{
    DoctorSettings settings;
    settings.code = currentDoctor(state);
    settings.regionName = state.settings.text(QStringLiteral("REGIONE"));
    settings.region = regionCode(state.settings.text(QStringLiteral("CODICE REGIONE")), settings.regionName);
    if (doctor) {
        settings.surname = doctor->Fields(QStringLiteral("cognome")).text();
        settings.name = doctor->Fields(QStringLiteral("nome")).text();
        for (int i = 1; i <= 7; ++i)
            settings.specials.append(doctor->Fields(QStringLiteral("special_%1").arg(i)).text());
    }
    state.doctor = settings;
}

} // namespace

void reloadHostContext(WorkingState &state)
{
    loadDoctorIdentities(state);
    try {
        const auto doctor = doctorRow(state);
        loadGroupSettings(state, doctor.get());
        loadDoctorSettings(state, doctor.get());
    } catch (const dao::Error &) {
        // Another doctor's stamp must not stay: what the settings alone give is all that is known.
        loadGroupSettings(state, nullptr);
        loadDoctorSettings(state, nullptr);
    }
    try {
        loadPatientHeader(state.header, state.settings, state.clinical(), state.clock);
    } catch (const dao::Error &) {
        // No clinical database: the queries of the form will say so.
        state.header.identified = false;
        state.header.patientCode = -1;
    }
    reloadAllergies(state);
}

void reloadAllergies(WorkingState &state)
{
    state.header.allergies = {};
    if (!state.header.identified)
        return;
    try {
        state.header.allergies = readAllergies(state.clinical(), state.header.patientCode);
    } catch (const dao::Error &error) {
        logLine(state, QStringLiteral("Allergie"), error);
    }
}

} // namespace clivara
