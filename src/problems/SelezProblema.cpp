// SPDX-License-Identifier: Apache-2.0
#include "problems/SelezProblema.h"

#include "chart/WorkingState.h"
#include "jetsql/Error.h"
#include "problems/DiagnosisAnswer.h"
#include "problems/Probl1.h"
#include "ui_SelezProblema.h"
#include "values/JetValues.h"

#include <QStandardItemModel>

namespace clivara {

namespace {

constexpr QSize usualSize(720, 480);
// Stands for the start of a problem that has none; a year that nobody takes for a real one.
const auto unknownStart = QStringLiteral("1/1/1010");

QString shownText(const ProblemRow &problem, const QString &code, dao::Database &codes)
{
    if (!problem.description.isEmpty())
        return problem.description;
    const QString name = diagnosisName(codes, code);
    return name.isEmpty() ? code : name;
}

} // namespace

SelezProblema::SelezProblema(WorkingState &state)
    : SectionForm(QStringLiteral("SelezProblema"), state)
    , m_ui(std::make_unique<Ui::SelezProblema>())
    , m_model(new QStandardItemModel(this))
{
    m_ui->setupUi(contents());
    setWindowTitle(QStringLiteral("Selezione problema"));
    setUsualSize(usualSize);
    ReportView *const list = m_ui->ReportControl1;
    list->setModel(m_model);
    list->setTextColumn(2, 1);
    list->setPlaceholder(QStringLiteral("Il paziente non ha problemi."));
    connect(list, &ReportView::insertRequested, this, &SelezProblema::createProblem);
    connect(list, &ReportView::editRequested, this, &SelezProblema::choose);
    connect(list->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this] { m_ui->OKButton->setEnabled(currentRow() >= 0); });
    connect(m_ui->OKButton, &QPushButton::clicked, this, &SelezProblema::choose);
    connect(m_ui->CancelButton, &QPushButton::clicked, this, &SelezProblema::reject);
    connect(m_ui->NewButton, &QPushButton::clicked, this, &SelezProblema::createProblem);
}

SelezProblema::~SelezProblema() = default;

void SelezProblema::load()
{
    const qint32 before = m_state.selected.id;
    m_chosen = -1;
    // Until one is chosen the answer is none, also when the form cannot be opened.
    writeDiagnosisAborted(m_state.settings, {});
    m_state.selected = {};
    fill(before);
    m_ui->ReportControl1->setFocus();
}

void SelezProblema::fill(qint32 selected)
{
    const QList<ProblemRow> problems = listProblems(m_state.clinical(), m_state.header.patientCode);
    QList<Entry> entries;
    for (const ProblemRow &problem : problems) {
        const QString code = problem.finalCode.isEmpty() ? problem.suspectedCode : problem.finalCode;
        entries.append({problem.id, code, shownText(problem, code, m_state.codes())});
    }
    m_entries = entries;
    m_model->clear();
    m_model->setHorizontalHeaderLabels(
        {QStringLiteral("DATA"), QStringLiteral("ICD-9"), QStringLiteral("PROBLEMA")});
    int current = entries.isEmpty() ? -1 : 0;
    for (int row = 0; row < entries.size(); ++row) {
        addRow(problems[row], entries[row]);
        if (entries[row].id == selected)
            current = row;
    }
    m_ui->ReportControl1->setColumns({{1000, unknownStart}, {800, QStringLiteral("000.00")}, {5000, {}}});
    m_ui->ReportControl1->setCurrentIndex(m_model->index(current, 0));
    m_ui->OKButton->setEnabled(current >= 0);
}

void SelezProblema::addRow(const ProblemRow &problem, const Entry &entry)
{
    auto *const date = new QStandardItem(jet::formatDate(jet::dateTime(problem.start), u"dd/mm/yy"));
    if (!problem.start.isValid()) {
        date->setText(unknownStart);
        date->setData(int(ReportTone::Quiet), ToneRole);
        date->setToolTip(QStringLiteral("Data di inizio non registrata"));
    }
    auto *const text = new QStandardItem(entry.text);
    text->setToolTip(QStringLiteral("%1 (%2)").arg(entry.text, problemStateText(problem.state)));
    m_model->appendRow({date, new QStandardItem(entry.code), text});
}

int SelezProblema::currentRow() const
{
    return m_ui->ReportControl1->currentIndex().row();
}

void SelezProblema::choose()
{
    if (currentRow() < 0)
        return;
    m_chosen = currentRow();
    unload();
}

void SelezProblema::createProblem()
{
    const int row = currentRow();
    const qint32 before = row < 0 ? noProblem : m_entries[row].id;
    const std::optional<qint32> created = openProblem(m_state, std::nullopt);
    guarded(QStringLiteral("Carica"), [&] { fill(created.value_or(before)); });
    m_ui->ReportControl1->setFocus();
}

void SelezProblema::unloading()
{
    if (m_chosen < 0) {
        m_state.selected = {};
        writeDiagnosisAborted(m_state.settings, {});
        return;
    }
    const Entry &chosen = m_entries[m_chosen];
    m_state.selected = {chosen.id, chosen.text};
    writeDiagnosis(m_state.settings, {chosen.code, chosen.text});
}

} // namespace clivara
