// SPDX-License-Identifier: Apache-2.0
#include "problems/Probl1.h"

#include "chart/FormOpener.h"
#include "chart/RegionalNotice.h"
#include "chart/WorkingState.h"
#include "problems/DiagnosisAnswer.h"
#include "ui_Probl1.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

constexpr QSize usualSize(960, 640);

} // namespace

std::optional<qint32> openProblem(WorkingState &state, std::optional<qint32> problem)
{
    ProblemCall call;
    call.problem = problem;
    state.forms->showForm(QStringLiteral("Probl1"), &call);
    return call.saved;
}

Probl1::Probl1(WorkingState &state)
    : RecordDialog(QStringLiteral("Probl1"), state, *this)
    , m_ui(std::make_unique<Ui::Probl1>())
{
    m_ui->setupUi(contents());
    setUsualSize(usualSize);
    m_ui->hint->setForegroundRole(QPalette::PlaceholderText);
    setButtons(m_ui->chameleonButton1_0, m_ui->chameleonButton1_1);
    for (qint16 value = 0; value <= qint16(ProblemState::Chronic); ++value)
        m_ui->Combo1->addItem(problemStateText(value));
    m_ui->Problema->setPlaceholder(QStringLiteral("nessuna diagnosi: scegliere dall'elenco"));
    for (MaskedDateEdit *const edit : {m_ui->MaskEdBox1, m_ui->MaskEdBox2, m_ui->MaskEdBox3}) {
        addDate(edit);
        dates().watch(edit, DateFieldGuard::Empty::Allowed);
    }
    connect(m_ui->Combo1, &QComboBox::currentIndexChanged, this,
            [this](int index) { m_ui->MaskEdBox3->setEnabled(index == int(ProblemState::Closed)); });
    connect(m_ui->txtDescr, &QLineEdit::textChanged, this, &Probl1::noteDescription);
    connect(m_ui->Problema, &QPushButton::clicked, this, &Probl1::chooseDiagnosis);
    connect(m_ui->Togli, &QPushButton::clicked, this, [this] {
        m_shown.code.clear();
        showDiagnosis({});
        m_ui->Problema->setFocus();
    });
}

Probl1::~Probl1() = default;

std::array<MemoEdit *, problemTexts.size()> Probl1::texts() const
{
    return {m_ui->Text1_0, m_ui->Text1_1, m_ui->Text1_2, m_ui->Text1_3};
}

void Probl1::load()
{
    const bool isNew = !call().problem;
    ProblemDetail problem;
    if (isNew) {
        problem.opened = problem.started = m_state.clock.today();
        problem.state = qint16(ProblemState::Open);
    } else {
        const auto found = readRecord<ProblemDetail>(m_state.clinical(), *call().problem);
        if (!found)
            refuseToOpen(QStringLiteral("Il problema è stato eliminato da un'altra postazione."));
        problem = *found;
    }
    m_read = problem;
    setWindowTitle(isNew ? QStringLiteral("Nuovo problema") : QStringLiteral("Modifica dati problema"));
    show(problem);
    if (isNew)
        m_ui->Problema->setFocus();
    else
        m_ui->Text1_0->setFocus();
}

void Probl1::show(const ProblemDetail &problem)
{
    const QString diagnosis = diagnosisName(m_state.codes(), problem.code);
    m_shown = problem;
    showDiagnosis(diagnosis);
    m_ui->txtDescr->setText(problem.description);
    m_ui->txtDescr->home(false);
    noteDescription();
    // A state that the list does not have is shown as none, and stays unless another one is chosen.
    m_ui->Combo1->showIndex(problem.state < m_ui->Combo1->count() ? problem.state : -1);
    m_ui->MaskEdBox3->setEnabled(m_ui->Combo1->currentIndex() == int(ProblemState::Closed));
    showStoredDate(m_ui->MaskEdBox1, problem.opened);
    showStoredDate(m_ui->MaskEdBox2, problem.started);
    m_ui->MaskEdBox3->setDateText(jet::dashedDate(problem.closed));
    for (std::size_t i = 0; i < texts().size(); ++i)
        texts()[i]->setStoredText(problem.*problemTexts[i]);
}

// A description that was not edited is stored as it was.
QString Probl1::descriptionFault() const
{
    return m_ui->txtDescr->isModified() ? tooLong<&ProblemDetail::description>(entered()) : QString();
}

// The field takes any length, so that nothing of a pasted text is lost unseen; what is too much is said at once.
void Probl1::noteDescription()
{
    m_ui->descriptionNote->setText(descriptionFault());
    m_ui->descriptionNote->setVisible(!m_ui->descriptionNote->text().isEmpty());
}

void Probl1::showDiagnosis(const QString &name)
{
    // A code that no list knows speaks for itself.
    m_ui->Problema->setCode(name.isEmpty() ? QString() : m_shown.code);
    m_ui->Problema->setValue(name.isEmpty() ? m_shown.code : name);
    m_ui->Togli->setEnabled(!m_ui->Problema->value().isEmpty());
}

void Probl1::chooseDiagnosis()
{
    guarded(QStringLiteral("Problema_Click"), [this] {
        const DiagnosisAnswer answer = askForDiagnosis(m_state, m_shown.code);
        m_shown.code = answer.code;
        showDiagnosis(answer.name.isEmpty() ? diagnosisName(m_state.codes(), answer.code) : answer.name);
    });
}

ProblemDetail Probl1::entered() const
{
    ProblemDetail problem = m_shown;
    if (m_ui->txtDescr->isModified())
        problem.description = m_ui->txtDescr->text();
    if (m_ui->Combo1->currentIndex() >= 0)
        problem.state = qint16(m_ui->Combo1->currentIndex());
    problem.opened = enteredDate(m_ui->MaskEdBox1, m_shown.opened);
    problem.started = enteredDate(m_ui->MaskEdBox2, m_shown.started);
    problem.closed = enteredDate(m_ui->MaskEdBox3, m_shown.closed);
    for (std::size_t i = 0; i < texts().size(); ++i)
        problem.*problemTexts[i] = texts()[i]->storedText();
    return problem;
}

bool Probl1::mayWrite()
{
    const ProblemDetail problem = entered();
    if (m_ui->Problema->value().trimmed().isEmpty() && problem.description.trimmed().isEmpty()) {
        m_state.prompts.warn(
            QStringLiteral("E' necessario selezionare un problema o inserire una descrizione!"));
        m_ui->Problema->setFocus();
        return false;
    }
    if (const QString fault = descriptionFault(); !fault.isEmpty()) {
        m_state.prompts.warn(fault
                             + QStringLiteral("\nAccorciarla, o scriverne una parte in un altro testo."));
        m_ui->txtDescr->setFocus();
        return false;
    }
    for (MaskedDateEdit *const edit : {m_ui->MaskEdBox1, m_ui->MaskEdBox2, m_ui->MaskEdBox3}) {
        if (edit->isEnabled() && holdsNoDate(edit)) {
            dates().refuse(edit);
            return false;
        }
    }
    if (isDuplicateProblem(m_state.clinical(), m_state.header.patientCode, problem, m_read)) {
        m_state.prompts.ask({QStringLiteral("Attenzione!"),
                             QStringLiteral("Il problema selezionato è già stato inserito."),
                             PromptIcon::Information});
        return false;
    }
    return true;
}

SaveResult<ProblemDetail> Probl1::save(ProblemDetail &mine, const ProblemDetail &read)
{
    return saveProblem(m_state, mine, read);
}

std::optional<QString> Probl1::shownText(QLatin1String column, const ProblemDetail &problem) const
{
    if (column == QLatin1String("CodICDSospetto")) {
        const QString name = diagnosisName(m_state.codes(), problem.code);
        return name.isEmpty() ? problem.code : u'[' + problem.code + QStringLiteral("] ") + name;
    }
    if (column == QLatin1String("stato_probl") && problem.state < m_ui->Combo1->count())
        return problemStateText(problem.state);
    return std::nullopt;
}

void Probl1::becomeNew()
{
    EditedRecord::becomeNew();
    setWindowTitle(QStringLiteral("Nuovo problema"));
}

void Probl1::written()
{
    call().saved = m_shown.id;
    tellRegion(m_state, m_shown.id);
}

} // namespace clivara
