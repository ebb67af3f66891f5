// SPDX-License-Identifier: Apache-2.0
#include "problems/Visita2.h"

#include "chart/FormOpener.h"
#include "chart/WorkingState.h"
#include "ui_Visita2.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

constexpr QSize usualSize(960, 680);

void fillList(ChoiceBox *list, const QList<CodeName> &entries)
{
    list->clear();
    for (const CodeName &entry : entries)
        list->addItem(entry.name, entry.code);
}

// The entry of the code; -1 when the list does not have it.
int indexOfCode(const ChoiceBox *list, const QString &code)
{
    int index = code.trimmed().isEmpty() ? -1 : list->count() - 1;
    while (index >= 0 && !jet::sameText(list->itemData(index).toString().trimmed(), code.trimmed()))
        --index;
    return index;
}

QString typeCode(const VisitDetail &visit)
{
    return visit.type ? QString::number(*visit.type) : QString();
}

} // namespace

Visita2::Visita2(WorkingState &state)
    : RecordDialog(QStringLiteral("Visita2"), state, *this)
    , m_ui(std::make_unique<Ui::Visita2>())
{
    m_ui->setupUi(contents());
    setUsualSize(usualSize);
    m_ui->hint->setForegroundRole(QPalette::PlaceholderText);
    setButtons(m_ui->chameleonButton1_0, m_ui->chameleonButton1_1);
    addDate(m_ui->MaskEdBox1);
    dates().watch(m_ui->MaskEdBox1, DateFieldGuard::Empty::Refused);
    addDate(m_ui->MaskEdBox2);
    connect(m_ui->MaskEdBox2, &QLineEdit::textChanged, this, &Visita2::noteValidity);
    connect(m_ui->Problema, &QPushButton::clicked, this, &Visita2::chooseProblem);
    connect(m_ui->Togli, &QPushButton::clicked, this, &Visita2::removeProblem);
    // However the dialog goes away.
    connect(this, &QDialog::finished, this, [this] { m_state.selected = m_callers; });
}

Visita2::~Visita2() = default;

std::array<MemoEdit *, visitTexts.size()> Visita2::texts() const
{
    return {m_ui->Text1_0, m_ui->Text1_1, m_ui->Text1_2, m_ui->Text1_3, m_ui->Text1_4};
}

void Visita2::load()
{
    const bool isNew = !call().visit;
    VisitDetail visit;
    if (isNew) {
        visit.date = m_state.clock.today();
        visit.problem = call().problem.id;
    } else {
        const auto found =
            readRecord<VisitDetail>(m_state.clinical(), *call().visit, m_state.header.patientCode);
        if (!found)
            refuseToOpen(QStringLiteral("La visita è stata eliminata da un'altra postazione."));
        visit = *found;
    }
    fillLists();
    const SelectedProblem callers = m_state.selected;
    show(visit);
    m_callers = callers;
    m_read = visit;
    setWindowTitle(isNew ? QStringLiteral("Nuova visita") : QStringLiteral("Modifica dati visita"));
    m_ui->Text1_0->setFocus();
}

void Visita2::show(const VisitDetail &visit)
{
    const Filing filing = filingOf(visit);
    m_state.selected.id = visit.problem.value_or(noProblem);
    m_shown = visit;
    showStoredDate(m_ui->MaskEdBox1, visit.date);
    m_ui->MaskEdBox2->setDateText(jet::dashedDate(visit.validity));
    noteValidity();
    m_ui->Combo1->showIndex(indexOfCode(m_ui->Combo1, typeCode(visit)));
    m_ui->Combo2->showIndex(indexOfCode(m_ui->Combo2, visit.symptom));
    showProblem(filing);
    for (std::size_t i = 0; i < texts().size(); ++i)
        texts()[i]->setStoredText(visit.*visitTexts[i]);
}

void Visita2::fillLists()
{
    fillList(m_ui->Combo1, visitTypes(m_state.codes()));
    fillList(m_ui->Combo2, symptoms(m_state.codes()));
}

Visita2::Filing Visita2::filingOf(const VisitDetail &visit) const
{
    if (visit.problem.value_or(noProblem) <= noProblem)
        return {};
    if (isProblemGone(m_state.clinical(), m_state.header.patientCode, visit))
        return {{}, QStringLiteral("⚠ problema eliminato: sceglierne un altro")};
    return {problemText(m_state.clinical(), m_state.codes(), *visit.problem),
            QStringLiteral("problema senza diagnosi e senza descrizione")};
}

void Visita2::showProblem(const Filing &filing)
{
    m_state.selected.text = filing.text;
    m_ui->Problema->setPlaceholder(
        filing.note.isEmpty() ? QStringLiteral("nessun problema: scegliere dall'elenco") : filing.note);
    // A warning is not shown as quietly as a field that is only empty.
    QPalette colours;
    if (!filing.note.isEmpty())
        colours.setColor(QPalette::PlaceholderText, colours.color(QPalette::ButtonText));
    m_ui->Problema->setPalette(colours);
    m_ui->Problema->setAccessibleDescription(filing.note);
    m_ui->Problema->setValue(filing.text);
    m_ui->Togli->setEnabled(!filing.text.isEmpty() || !filing.note.isEmpty());
}

void Visita2::chooseProblem()
{
    const SelectedProblem before = m_state.selected;
    bool isChosen = false;
    guarded(QStringLiteral("Problema_Click"), [&] {
        if (!m_state.forms->showForm(QStringLiteral("SelezProblema")) || m_state.selected.id <= noProblem)
            return;
        VisitDetail visit = m_shown;
        visit.problem = m_state.selected.id;
        const Filing filing = filingOf(visit);
        m_shown = visit;
        showProblem(filing);
        isChosen = true;
    });
    if (!isChosen) // the visit stays where it is filed
        m_state.selected = before;
}

void Visita2::removeProblem()
{
    m_shown.problem = noProblem;
    m_state.selected.id = noProblem;
    showProblem({});
    m_ui->Problema->setFocus();
}

// Says beside the field what becomes of a validity that is no date.
void Visita2::noteValidity()
{
    QString note;
    if (holdsNoDate(m_ui->MaskEdBox2))
        note = QStringLiteral("La validità non è una data: non sarà salvata.");
    else if (m_ui->MaskEdBox2->isEmptyDate() && m_shown.validity.isValid())
        note = QStringLiteral("Resta la validità registrata: %1.").arg(jet::dashedDate(m_shown.validity));
    m_ui->validityNote->setText(note);
    m_ui->validityNote->setVisible(!note.isEmpty());
}

VisitDetail Visita2::entered() const
{
    VisitDetail visit = m_shown;
    visit.date = enteredDate(m_ui->MaskEdBox1, m_shown.date);
    visit.validity = enteredDate(m_ui->MaskEdBox2, m_shown.validity);
    if (!visit.validity.isValid()) // stays as it is
        visit.validity = m_shown.validity;
    // A code that its list does not have stays until another entry is chosen or the field is emptied.
    if (m_ui->Combo1->isChosen()) {
        const QVariant type = m_ui->Combo1->currentData();
        visit.type = type.isValid() ? std::optional(qint32(type.toInt())) : std::nullopt;
    }
    if (m_ui->Combo2->isChosen())
        visit.symptom = m_ui->Combo2->currentData().toString();
    for (std::size_t i = 0; i < texts().size(); ++i)
        visit.*visitTexts[i] = texts()[i]->storedText();
    return visit;
}

bool Visita2::mayWrite()
{
    const VisitDetail visit = entered();
    const bool isUntouched = !m_ui->MaskEdBox1->isModified();
    if (!visit.date.isValid() && !isUntouched) {
        m_state.prompts.ask(
            {QStringLiteral("Attenzione"), QStringLiteral("Data visita non valida."), PromptIcon::Warning});
        m_ui->MaskEdBox1->setFocus();
        return false;
    }
    if (isDayTaken(m_state.clinical(), m_state.header.patientCode, visit, m_read.date)) {
        m_state.prompts.ask({QStringLiteral("Attenzione!"),
                             QStringLiteral("Esiste già una visita nella data indicata."),
                             PromptIcon::Information});
        m_ui->MaskEdBox1->setFocus();
        return false;
    }
    return mayKeepProblem();
}

bool Visita2::mayKeepProblem()
{
    if (!isProblemGone(m_state.clinical(), m_state.header.patientCode, m_shown))
        return true;
    const PromptButton answer = m_state.prompts.ask(
        {QStringLiteral("Attenzione!"),
         QStringLiteral("Il problema associato è stato eliminato da un'altra postazione.\n"
                        "Salvare la visita senza problema associato?\n"
                        "Con No resta aperta com'è, e se ne può scegliere un altro."),
         PromptIcon::Warning,
         {PromptButton::Yes, PromptButton::No},
         PromptButton::Yes});
    removeProblem();
    return answer == PromptButton::Yes;
}

SaveResult<VisitDetail> Visita2::save(VisitDetail &mine, const VisitDetail &read)
{
    return saveVisit(m_state, mine, read);
}

void Visita2::written()
{
    call().saved = m_shown.id;
}

std::optional<QString> Visita2::shownText(QLatin1String column, const VisitDetail &visit) const
{
    const auto entryOf = [](const ChoiceBox *list, const QString &code) {
        const int index = indexOfCode(list, code);
        return index < 0 ? code : list->itemText(index);
    };
    if (column == QLatin1String("idtipo"))
        return entryOf(m_ui->Combo1, typeCode(visit));
    if (column == QLatin1String("SINTOMO"))
        return entryOf(m_ui->Combo2, visit.symptom);
    if (column != QLatin1String("id_Probl"))
        return std::nullopt;
    if (isProblemGone(m_state.clinical(), m_state.header.patientCode, visit))
        return QStringLiteral("problema %1, eliminato").arg(*visit.problem);
    return problemText(m_state.clinical(), m_state.codes(), visit.problem.value_or(noProblem));
}

void Visita2::becomeNew()
{
    EditedRecord::becomeNew();
    setWindowTitle(QStringLiteral("Nuova visita"));
}

} // namespace clivara
