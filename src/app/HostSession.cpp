// SPDX-License-Identifier: Apache-2.0
#include "app/HostSession.h"

#include "app/CurrentPatient.h"
#include "app/Practice.h"
#include "host/Class3.h"
#include "host/working_state/WorkingState.h"
#include "values/JetValues.h"

namespace orvale {

namespace {

// The action that closes every form of the chart before the host lets it go.
constexpr qint16 unloadForms = 99;

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
    , m_chart(std::move(chart))
{
    prepareDoctor(m_settings, practice);
    deselectPatient(m_settings);
    // The trace decides once, when the chart is created, whether it is on.
    prepareWorkFolder(m_settings, practice);
    if (!m_chart) {
        m_class3 = std::make_unique<clivara::Class3>(services);
        m_class3->InitDbConn(practice.environment());
        m_chart = [this](qint16 action, QVariant &param) {
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

SectionOutcome HostSession::openSection(qint16 action)
{
    // What an earlier section or another program left there is not this section's answer.
    for (const QLatin1String key : {viewKey, patientKey, diagnosisKey, diagnosisCodeKey})
        take(key);

    QVariant param;
    SectionOutcome outcome;
    outcome.failure = m_chart(action, param);
    outcome.view = take(viewKey).trimmed().toUpper();
    const auto patient = clivara::jet::numberFromText(take(patientKey));
    const auto code = patient ? clivara::jet::toLong(*patient) : std::nullopt;
    if (code && *code >= 0)
        outcome.patient = *code;
    outcome.diagnosisCode = take(diagnosisCodeKey).trimmed();
    outcome.diagnosis = take(diagnosisKey).trimmed();
    if (outcome.diagnosisCode == aborted || outcome.diagnosis == aborted) {
        outcome.diagnosisCode.clear();
        outcome.diagnosis.clear();
    }
    const QVariantList result = param.toList();
    if (result.size() == 2 && result.first().toString() == QLatin1String("valutazione"))
        outcome.evaluation = result.last().toDouble();
    return outcome;
}

QString HostSession::take(const QString &key)
{
    const QString value = m_settings.text(key);
    if (!value.isEmpty())
        m_settings.write(key, QString());
    return value;
}

} // namespace orvale
