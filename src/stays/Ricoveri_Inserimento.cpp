// SPDX-License-Identifier: Apache-2.0
#include "stays/Ricoveri_Inserimento.h"

#include "chart/FormOpener.h"
#include "chart/RegionalNotice.h"
#include "chart/WorkingState.h"
#include "stays/DayField.h"
#include "stays/StayRules.h"
#include "ui_Ricoveri_Inserimento.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

constexpr QSize usualSize(640, 360);
const auto newTitle = QStringLiteral("Inserimento ricovero");

} // namespace

std::optional<qint32> openStay(WorkingState &state, std::optional<qint32> stay)
{
    StayCall call;
    call.stay = stay;
    state.forms->showForm(QStringLiteral("Ricoveri_Inserimento"), &call);
    return call.saved;
}

Ricoveri_Inserimento::Ricoveri_Inserimento(WorkingState &state)
    : RecordDialog(QStringLiteral("Ricoveri_Inserimento"), state, *this)
    , m_ui(std::make_unique<Ui::Ricoveri_Inserimento>())
{
    m_ui->setupUi(contents());
    setUsualSize(usualSize);
    m_ui->hint->setForegroundRole(QPalette::PlaceholderText);
    setButtons(m_ui->Btm_Memorizza, m_ui->Btm_Esci);
    for (MyDateControl *const date : {m_ui->Data_Dom, m_ui->Data_Val}) {
        date->setClock(state.clock);
        connect(date, &MyDateControl::textChanged, this, &Ricoveri_Inserimento::noteLength);
    }
    connect(m_ui->Combo1, &QComboBox::editTextChanged, this, &Ricoveri_Inserimento::noteHospital);
}

Ricoveri_Inserimento::~Ricoveri_Inserimento() = default;

void Ricoveri_Inserimento::load()
{
    const bool isNew = !call().stay;
    Stay stay;
    if (isNew) {
        stay.admitted = m_state.clock.today();
    } else {
        const auto found = readRecord<Stay>(m_state.clinical(), *call().stay);
        if (!found)
            refuseToOpen(QStringLiteral("Il ricovero è stato eliminato da un'altra postazione."));
        stay = *found;
    }
    m_stays = listStays(m_state.clinical(), m_state.header.patientCode);
    m_read = stay;
    m_answer = {};
    fillLists();
    setWindowTitle(isNew ? newTitle : QStringLiteral("Modifica dati ricovero"));
    show(stay);
    m_ui->Data_Dom->setFocus();
}

void Ricoveri_Inserimento::show(const Stay &stay)
{
    m_shown = stay;
    showDay(*m_ui->Data_Dom, stay.admitted);
    showDay(*m_ui->Data_Val, stay.discharged);
    m_ui->Combo1->showText(stay.hospital);
    showWard(stay.ward);
    noteLength();
    noteHospital();
}

void Ricoveri_Inserimento::fillLists()
{
    m_hospitals = hospitals(m_state.clinical());
    m_ui->Combo1->clear();
    m_ui->Combo1->addItems(m_hospitals);
    m_ui->Combo2->clear();
    m_ui->Combo2->addItems(wards(m_state.codes()));
}

void Ricoveri_Inserimento::showWard(const QString &stored)
{
    const QString ward = stored.trimmed();
    int index = ward.isEmpty() ? -1 : m_ui->Combo2->findText(ward, Qt::MatchFixedString);
    if (index < 0 && !ward.isEmpty()) { // a ward that the table no longer has
        m_ui->Combo2->insertItem(0, ward);
        index = 0;
    }
    m_ui->Combo2->showIndex(index);
}

// Says what the two dates make of the stay, while they are typed.
void Ricoveri_Inserimento::noteLength()
{
    const QDate admitted = shownDay(*m_ui->Data_Dom);
    const QDate discharged = shownDay(*m_ui->Data_Val);
    const bool isDoubtful = admitted.isValid() && discharged.isValid() && discharged < admitted;
    const QString text =
        holdsNoDay(*m_ui->Data_Dom) || holdsNoDay(*m_ui->Data_Val)
            ? QString()
            : stayLengthText({admitted, discharged, isNewestStay(m_stays, entered())}, m_state.clock.today());
    m_ui->lblDurata->setText(isDoubtful ? QStringLiteral("⚠ ") + text : text);
}

// Says at once when the name is longer than the practice can store.
void Ricoveri_Inserimento::noteHospital()
{
    const QString fault = tooLong<&Stay::hospital>(entered());
    m_ui->lblSede->setVisible(!fault.isEmpty());
    m_ui->lblSede->setText(QStringLiteral("⚠ ") + fault);
}

Stay Ricoveri_Inserimento::entered() const
{
    Stay stay = m_shown;
    stay.admitted = shownDay(*m_ui->Data_Dom);
    stay.discharged = shownDay(*m_ui->Data_Val);
    const QString typed = m_ui->Combo1->text();
    if (typed != m_shown.hospital.trimmed()) {
        const QString listed = nameInList(m_hospitals, typed);
        stay.hospital = listed.isEmpty() ? typed : listed;
    }
    if (m_ui->Combo2->isChosen())
        stay.ward = m_ui->Combo2->currentText();
    return stay;
}

bool Ricoveri_Inserimento::refuse(const QString &text, QWidget *field)
{
    m_state.prompts.ask({QStringLiteral("Attenzione"), text, PromptIcon::Question});
    field->setFocus(Qt::TabFocusReason);
    return false;
}

bool Ricoveri_Inserimento::isComplete()
{
    const Stay stay = entered();
    if (!stay.admitted.isValid())
        return refuse(dateRequest(QStringLiteral("E' necessario inserire la data."), *m_ui->Data_Dom),
                      m_ui->Data_Dom);
    if (stay.hospital.trimmed().isEmpty())
        return refuse(QStringLiteral("E' necessario indicare la sede del ricovero."), m_ui->Combo1);
    if (stay.ward.trimmed().isEmpty())
        return refuse(QStringLiteral("E' necessario indicare il reparto."), m_ui->Combo2);
    return true;
}

bool Ricoveri_Inserimento::isConsistent()
{
    const Stay stay = entered();
    if (const QString fault = tooLong<&Stay::hospital>(stay); !fault.isEmpty()) {
        m_state.prompts.warn(fault + QStringLiteral("\nAccorciarla."));
        m_ui->Combo1->setFocus(Qt::TabFocusReason);
        return false;
    }
    if (holdsNoDay(*m_ui->Data_Val)) {
        m_state.prompts.warn(
            QStringLiteral("La data di fine ricovero non è una data.\nCorreggerla o vuotarla."));
        m_ui->Data_Val->setFocus(Qt::TabFocusReason);
        return false;
    }
    if (stay.discharged.isValid() && stay.discharged < stay.admitted
        && !m_state.prompts.confirm(
            QStringLiteral("La data di fine ricovero precede quella di accesso.\nSalvare ugualmente?"))) {
        m_ui->Data_Val->setFocus(Qt::TabFocusReason);
        return false;
    }
    return true;
}

// Offers to add a hospital that the list does not have.
void Ricoveri_Inserimento::askAboutList()
{
    m_hospitals = hospitals(m_state.clinical()); // another workstation may have added it
    const QString hospital = entered().hospital.trimmed();
    if (!nameInList(m_hospitals, hospital).isEmpty() || hospital == m_answer.hospital)
        return;
    m_answer.hospital = hospital;
    m_answer.extendList = m_state.prompts.ask({QStringLiteral("Attenzione"),
                                               QStringLiteral("Si desidera inserire l'elenco Sedi?"),
                                               PromptIcon::Question,
                                               {PromptButton::Yes, PromptButton::No},
                                               PromptButton::No})
                          == PromptButton::Yes;
}

bool Ricoveri_Inserimento::mayWrite()
{
    if (!isComplete() || !isConsistent())
        return false;
    askAboutList();
    return true;
}

SaveResult<Stay> Ricoveri_Inserimento::save(Stay &mine, const Stay &read)
{
    return saveStay(m_state, mine, read, m_answer.extendList && m_answer.hospital == mine.hospital.trimmed());
}

void Ricoveri_Inserimento::becomeNew()
{
    EditedRecord::becomeNew();
    setWindowTitle(newTitle);
}

void Ricoveri_Inserimento::written()
{
    call().saved = m_shown.id;
    tellRegion(m_state, m_shown.id);
}

} // namespace clivara
