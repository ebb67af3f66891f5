// SPDX-License-Identifier: Apache-2.0
#include "stays/Ricoveri_Inserimento.h"

#include "chart/FormOpener.h"
#include "chart/RegionalNotice.h"
#include "chart/ThreeWay.h"
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
    : RecordDialog(QStringLiteral("Ricoveri_Inserimento"), state)
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
        const auto found = readStay(m_state.clinical(), *call().stay);
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
    m_stay = stay;
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
    const auto length = m_ui->Combo1->text().size();
    const bool isTooLong = length > longestHospital;
    m_ui->lblSede->setVisible(isTooLong);
    if (isTooLong)
        m_ui->lblSede->setText(QStringLiteral("⚠ La sede ha %1 caratteri: può averne al massimo %2.")
                                   .arg(length)
                                   .arg(longestHospital));
}

Stay Ricoveri_Inserimento::entered() const
{
    Stay stay = m_stay;
    stay.admitted = shownDay(*m_ui->Data_Dom);
    stay.discharged = shownDay(*m_ui->Data_Val);
    const QString typed = m_ui->Combo1->text();
    if (typed != m_stay.hospital.trimmed()) {
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
    if (stay.hospital.trimmed().size() > longestHospital) {
        m_state.prompts.warn(
            QStringLiteral("La sede ha %1 caratteri: può averne al massimo %2.\nAccorciarla.")
                .arg(stay.hospital.trimmed().size())
                .arg(longestHospital));
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

WriteResult Ricoveri_Inserimento::write()
{
    Stay stay = entered();
    Stay read = m_read;
    const WriteResult result =
        saveStay(m_state, stay, read, m_answer.extendList && m_answer.hospital == stay.hospital.trimmed());
    if (result == WriteResult::Done)
        m_stay = stay;
    else if (result == WriteResult::Changed)
        m_elsewhere = read;
    return result;
}

RecordConflict Ricoveri_Inserimento::conflict() const
{
    const auto shown = [](const Stay &stay) {
        return QStringList{jet::slashedDate(stay.admitted), jet::slashedDate(stay.discharged), stay.hospital,
                           stay.ward};
    };
    return conflictOf(QStringLiteral("Il ricovero è stato salvato"),
                      {QStringLiteral("Data accesso"), QStringLiteral("Data fine ricovero"),
                       QStringLiteral("Sede"), QStringLiteral("Reparto")},
                      {shown(m_read), shown(entered()), shown(m_elsewhere)}, m_read.written,
                      m_elsewhere.written);
}

void Ricoveri_Inserimento::keepMine()
{
    Stay stay = entered();
    takeUntouched(contentsOf(stay), contentsOf(std::as_const(m_read)),
                  contentsOf(std::as_const(m_elsewhere)));
    m_read = m_elsewhere;
    show(stay);
}

void Ricoveri_Inserimento::becomeNew()
{
    m_stay.id = 0;
    setWindowTitle(newTitle);
}

QString Ricoveri_Inserimento::vanishedQuestion() const
{
    return QStringLiteral("Il ricovero è stato eliminato da un'altra postazione mentre lo si modificava.\n"
                          "Quanto scritto è ancora nella finestra. Salvarlo come nuovo ricovero?");
}

void Ricoveri_Inserimento::written()
{
    call().saved = m_stay.id;
    tellRegion(m_state, m_stay.id);
}

} // namespace clivara
