// SPDX-License-Identifier: Apache-2.0
#include "app/session/HostSession.h"

#include "app/practice/Practice.h"
#include "app/session/CurrentPatient.h"
#include "chart/WorkingState.h"
#include "host/Class3.h"
#include "values/JetValues.h"

namespace orvale {

namespace {

// The action that closes every form of the chart before the host lets it go.
constexpr qint16 unloadForms = 99;

// The one that chooses a problem for the host.
constexpr qint16 problemChoice = 24;

const QLatin1String viewKey("AGGIORNA_DIARIO");
const QLatin1String patientKey("CARICA PAZIENTE");
const QLatin1String diagnosisKey("DIAGNOSI");
const QLatin1String diagnosisCodeKey("CODICE DIAGNOSI");
// Written in place of a diagnosis when none was picked.
const QLatin1String aborted("*ABORT*");

} // namespace

HostSession::HostSession(Practice &practice, const clivara::Services &services, Chart chart)
    : m_practice(practice)
    , m_settings(services.settings)
    , m_doctor(services.settings, practice)
    , m_chart(std::move(chart))
{
    m_doctor.write(m_settings);
    prepareRegion(m_settings, practice);
    deselectPatient(m_settings);
    // The trace decides once, when the chart is created, whether it is on.
    prepareWorkFolder(m_settings, practice);
    if (!m_chart) {
        m_class3 = std::make_unique<clivara::Class3>(
            clivara::Services{m_settings, services.clock, services.prompts, services.pauses, services.guids,
                              services.middleware, services.connector});
        m_class3->InitDbConn(practice.environment());
        m_chart = [this](qint16 action, QVariant &param, clivara::SettingsStore &) {
            m_class3->Action(action, param);
            return m_class3->failure();
        };
    }
}

HostSession::~HostSession()
{
    if (m_class3)
        m_class3->Action(unloadForms);
}

bool HostSession::selectPatient(qint32 code)
{
    if (!orvale::selectPatient(m_settings, *m_practice.environment().clinical, code))
        return false;
    m_patient = code;
    return true;
}

void HostSession::chooseDoctor(const QString &code)
{
    m_doctor.choose(code);
    m_doctor.write(m_settings);
}

SectionOutcome HostSession::openSection(qint16 action)
{
    const auto take = [this](const QString &key) { return m_settings.take(key); };
    // What an earlier section left there is not this section's answer.
    for (const QLatin1String key : {viewKey, patientKey, diagnosisKey, diagnosisCodeKey})
        take(key);

    m_settings.announce();
    QVariant param;
    SectionOutcome outcome;
    outcome.failure = m_chart(action, param, m_settings);
    outcome.view = take(viewKey).trimmed().toUpper();
    const auto patient = clivara::jet::numberFromText(take(patientKey));
    const auto code = patient ? clivara::jet::toLong(*patient) : std::nullopt;
    if (code && *code >= 0)
        outcome.patient = *code;
    const QString diagnosisCode = take(diagnosisCodeKey).trimmed();
    const QString diagnosis = take(diagnosisKey).trimmed();
    // Other sections ask for diagnoses of their own in the same mailbox.
    if (action == problemChoice && diagnosisCode != aborted && diagnosis != aborted) {
        outcome.diagnosisCode = diagnosisCode;
        outcome.diagnosis = diagnosis;
    }
    const QVariantList result = param.toList();
    if (result.size() == 2 && result.first().toString() == QLatin1String("valutazione"))
        outcome.evaluation = result.last().toDouble();
    return outcome;
}

} // namespace orvale
