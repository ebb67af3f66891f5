// SPDX-License-Identifier: Apache-2.0
#include "problems/Problemi.h"

#include "chart/FormOpener.h"
#include "chart/FormRegistry.h"
#include "chart/ListReading.h"
#include "chart/WorkingState.h"
#include "problems/Probl1.h"
#include "problems/ProblemRecords.h"
#include "problems/VisitCommands.h"
#include "support/ui/Opener.h"
#include "ui_Problemi.h"

#include <QMenu>

namespace clivara {

namespace {

const auto vanishedText = QStringLiteral("Il problema era già stato cancellato da un'altra postazione.");

constexpr QSize usualSize(1120, 704);
const auto problemTable = QStringLiteral("150"); // for the record-identifier form

// The diabetes chart of a region; empty when it has none.
QString diabetesChartOf(const QString &region)
{
    static const QHash<QString, QString> charts{
        {QStringLiteral("03"), QStringLiteral("Diabete_Lombardia")},
        {QStringLiteral("15"), QStringLiteral("Diabete_Campania")},
        {QStringLiteral("16"), QStringLiteral("DiabeteM")},
        {QStringLiteral("19"), QStringLiteral("Diabete_Sicilia")},
    };
    return charts.value(region);
}

} // namespace

Problemi::Problemi(WorkingState &state)
    : SectionForm(QStringLiteral("Problemi"), state)
    , m_ui(std::make_unique<Ui::Problemi>())
    , m_problems(new ProblemListModel(this))
    , m_problemMenu(new QMenu(this))
    , m_visitMenu(new QMenu(this))
{
    setWindowTitle(QStringLiteral("Gestione Problemi e Visite"));
    m_ui->setupUi(contents());
    CreaTab_Problemi();
    m_ui->ReportControl1_1->setThirdColumn(ItemTreeModel::Third::Kind);
    m_ui->splitter->setStretchFactor(0, 2);
    m_ui->splitter->setStretchFactor(1, 3);
    // Not by what the parts show when the form opens: an empty list below would stay a narrow one.
    m_ui->splitter->setSizes({2 * usualSize.height() / 5, 3 * usualSize.height() / 5});
    m_ui->keysHint->setForegroundRole(QPalette::PlaceholderText);
    setUsualSize(usualSize);
    makeMenus();
    connectProblems();
    connectItems();
    connect(m_ui->BtnSchedaDiabete, &QPushButton::clicked, this, &Problemi::openDiabetesChart);
    connect(m_ui->bt_Esci, &QPushButton::clicked, this, &Problemi::reject);
}

Problemi::~Problemi() = default;

void Problemi::makeMenus()
{
    const auto add = [this](QMenu *menu, const char *name, const QString &text, auto run) {
        QAction *const action = menu->addAction(text);
        action->setObjectName(QLatin1String(name));
        connect(action, &QAction::triggered, this, run);
    };
    m_problemMenu->setObjectName(QStringLiteral("mnMenu0"));
    add(m_problemMenu, "nuovo0", QStringLiteral("&Nuovo problema"),
        [this] { runProblemCommand(ProblemCommand::New); });
    add(m_problemMenu, "modifica0", QStringLiteral("&Modifica"),
        [this] { runProblemCommand(ProblemCommand::Edit); });
    add(m_problemMenu, "chiudi0", QStringLiteral("&Chiudi"),
        [this] { runProblemCommand(ProblemCommand::Close); });
    add(m_problemMenu, "elimina0", QStringLiteral("&Elimina"),
        [this] { runProblemCommand(ProblemCommand::Delete); });

    m_visitMenu->setObjectName(QStringLiteral("mnMenu1"));
    add(m_visitMenu, "nuovo1", QStringLiteral("&Nuova visita"),
        [this] { runVisitCommand(VisitCommand::New); });
    add(m_visitMenu, "modifica1", QStringLiteral("&Modifica visita"),
        [this] { runVisitCommand(VisitCommand::Edit); });
    add(m_visitMenu, "elimina1", QStringLiteral("&Elimina visita"),
        [this] { runVisitCommand(VisitCommand::Delete); });
}

void Problemi::connectProblems()
{
    const auto run = [this](ProblemCommand command) {
        return [this, command] { runProblemCommand(command); };
    };
    connect(m_ui->bt_Probl_1, &QPushButton::clicked, this, run(ProblemCommand::New));
    connect(m_ui->bt_Probl_2, &QPushButton::clicked, this, run(ProblemCommand::Edit));
    connect(m_ui->bt_Probl_3, &QPushButton::clicked, this, run(ProblemCommand::Delete));
    connect(m_ui->bt_Probl_4, &QPushButton::clicked, this, run(ProblemCommand::Close));

    ReportView *const list = m_ui->ReportControl1_0;
    connect(list, &ReportView::insertRequested, this, run(ProblemCommand::New));
    connect(list, &ReportView::editRequested, this, run(ProblemCommand::Edit));
    connect(list, &ReportView::deleteRequested, this, run(ProblemCommand::Delete));
    connect(list, &ReportView::menuRequested, m_problemMenu,
            [this](const QPoint &place) { m_problemMenu->popup(place); });
    connect(list, &ReportView::identifierRequested, this,
            [this](const QModelIndex &row) { openProblemIdentifier(row.row()); });
    connect(list->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &row) {
                if (!m_filling && row.isValid())
                    showProblem(row.row(), ItemTreeView::Place::FromTheTop);
            });
}

void Problemi::connectItems()
{
    const auto run = [this](VisitCommand command) { return [this, command] { runVisitCommand(command); }; };
    connect(m_ui->bt_Visita_1, &QPushButton::clicked, this, run(VisitCommand::New));
    connect(m_ui->bt_Visita_2, &QPushButton::clicked, this, run(VisitCommand::Edit));
    connect(m_ui->bt_Visita_3, &QPushButton::clicked, this, run(VisitCommand::Delete));

    ItemTreeView *const list = m_ui->ReportControl1_1;
    connect(list, &ReportView::insertRequested, this, run(VisitCommand::New));
    connect(list, &ReportView::editRequested, this, run(VisitCommand::Edit));
    connect(list, &ReportView::deleteRequested, this, run(VisitCommand::Delete));
    connect(list, &ReportView::menuRequested, m_visitMenu,
            [this](const QPoint &place) { m_visitMenu->popup(place); });
    connect(list, &ReportView::identifierRequested, this,
            [this, list](const QModelIndex &row) { openItemIdentifier(m_state, *list->items().item(row)); });
    connect(m_ui->SSPanel1, &QLabel::customContextMenuRequested, m_visitMenu,
            [this](const QPoint &place) { m_visitMenu->popup(m_ui->SSPanel1->mapToGlobal(place)); });

    connect(m_ui->goToVisits, &QToolButton::clicked, list, [list] { list->goTo(ItemRow::Kind::Visit); });
    connect(m_ui->goToDrugs, &QToolButton::clicked, list, [list] { list->goTo(ItemRow::Kind::Drug); });
    connect(m_ui->goToTests, &QToolButton::clicked, list, [list] { list->goTo(ItemRow::Kind::Test); });
}

void Problemi::load()
{
    m_state.log.write(QStringLiteral("+--- Clivara.Problemi begin"));
    m_diagnosisNames.clear(); // the host may have changed its databases meanwhile
    const QString chart = diabetesChartOf(m_state.doctor.region);
    m_ui->BtnSchedaDiabete->setVisible(!chart.isEmpty());
    enableOpener(*m_ui->BtnSchedaDiabete, m_state.forms->registry().isBuilt(chart),
                 QStringLiteral("La scheda del diabete della regione non è ancora disponibile"));
    guarded(QStringLiteral("Form_Load"), [this] {
        if (m_state.environment)
            attachProblemTables(*m_state.environment);
    });
    // The columns stand since the form was made.
    m_state.log.write(QStringLiteral("+--- Clivara.Problemi CreaTab_Problemi"));
    m_state.log.write(QStringLiteral("+--- Clivara.Problemi CaricaTab_Problemi"));
    CaricaTab_Problemi();
    m_state.log.write(QStringLiteral("+--- Clivara.Problemi CreaTab_Visite"));
    m_ui->ReportControl1_0->setFocus();
    m_state.log.write(QStringLiteral("+--- Clivara.Problemi end"));
}

void Problemi::unloading()
{
    m_state.settings.write(QStringLiteral("AGGIORNA_DIARIO"), QStringLiteral("PROBLEMI"));
}

void Problemi::CreaTab_Problemi()
{
    ReportView *const list = m_ui->ReportControl1_0;
    list->setModel(m_problems);
    list->setRootIsDecorated(false);
    list->setItemsExpandable(false);
    list->setUniformRowHeights(true);
    list->setTextColumn(ProblemListModel::Problem, 1);
    list->setColumns({{300, {}},
                      {1000, QStringLiteral("00/00/00")},
                      {800, QStringLiteral("000.00")},
                      {3000, {}},
                      {3200, {}}});
}

void Problemi::CaricaTab_Problemi()
{
    const QList<ProblemRow> problems =
        readList(m_state, QStringLiteral("Problemi.CaricaTab_Problemi"), *m_ui->ReportControl1_0,
                 [this] { return listProblems(m_state.clinical(), m_state.header.patientCode); });
    m_filling = true;
    m_problems->setProblems(problems, [this](const QString &code) { return diagnosisName(code); });
    const int known = m_problems->rowOf(m_state.selected.id);
    const QModelIndex selected = m_problems->index(std::max(known, 0), ProblemListModel::Problem);
    m_ui->ReportControl1_0->setCurrentIndex(selected);
    m_ui->ReportControl1_0->scrollTo(selected);
    m_filling = false;
    const auto place = known >= 0 ? ItemTreeView::Place::AsBefore : ItemTreeView::Place::FromTheTop;
    showProblem(selected.row(), place);
}

void Problemi::showProblem(int row, ItemTreeView::Place place)
{
    const ProblemListModel::Row &problem = m_problems->at(row);
    m_state.selected = {problem.id, problem.problem};
    m_ui->lblProblema->setText(problem.id == unassociated ? QStringLiteral("nessun problema")
                                                          : problem.problem);
    CaricaTab_Visite(place);
}

void Problemi::CaricaTab_Visite(ItemTreeView::Place place)
{
    const ProblemListModel::Row *const problem = selectedRow();
    if (!problem)
        return;
    m_state.log.write(QStringLiteral("+--- Clivara.CaricaTab_Visite id_probl=")
                      + QString::number(problem->id));
    QList<ItemRow> items =
        readList(m_state, QStringLiteral("Problemi.CaricaTab_Visite"), *m_ui->ReportControl1_1, [&] {
            return problemItems(m_state.local(), m_state.header.patientCode, problem->id, problem->start,
                                problem->code);
        });
    const bool isEmpty = items.isEmpty() && !m_ui->ReportControl1_1->isUnread();
    const bool hadFocus = m_ui->ReportControl1_1->hasFocus();
    m_ui->ReportControl1_1->showItems(std::move(items), place);
    m_ui->ReportControl1_1->setVisible(!isEmpty);
    m_ui->SSPanel1->setVisible(isEmpty);
    if (isEmpty && hadFocus)
        m_ui->bt_Visita_1->setFocus();
    showCounts();
    m_state.log.write(QStringLiteral("+--- Clivara.CaricaTab_Visite end"));
}

void Problemi::showCounts()
{
    const ItemTreeView &list = *m_ui->ReportControl1_1;
    const auto show = [&](QToolButton *button, const QString &text, ItemRow::Kind kind) {
        const int count = list.items().count(kind);
        button->setText(text.arg(countText(list, count)));
        button->setEnabled(count > 0);
    };
    show(m_ui->goToVisits, QStringLiteral("&Visite: %1"), ItemRow::Kind::Visit);
    show(m_ui->goToDrugs, QStringLiteral("&Farmaci: %1"), ItemRow::Kind::Drug);
    show(m_ui->goToTests, QStringLiteral("Esa&mi: %1"), ItemRow::Kind::Test);
}

const ProblemListModel::Row *Problemi::selectedRow() const
{
    // The current row is the selected one; with the mouse it is so a moment earlier.
    const QModelIndex row = m_ui->ReportControl1_0->currentIndex();
    return row.isValid() ? &m_problems->at(row.row()) : nullptr;
}

QString Problemi::diagnosisName(const QString &code)
{
    const auto known = m_diagnosisNames.constFind(code);
    if (known != m_diagnosisNames.constEnd())
        return *known;
    try {
        return *m_diagnosisNames.insert(code, clivara::diagnosisName(m_state.codes(), code));
    } catch (const dao::Error &) {
        return {}; // the code alone tells enough
    }
}

void Problemi::runProblemCommand(ProblemCommand command)
{
    if (command == ProblemCommand::New) {
        newProblem();
        return;
    }
    const ProblemListModel::Row *const selected = selectedRow();
    if (!selected || selected->id == unassociated)
        return;
    const ProblemListModel::Row problem = *selected; // the list may be read again meanwhile
    switch (command) {
    case ProblemCommand::Edit:
        m_state.selected.id = openProblem(m_state, problem.id).value_or(problem.id);
        CaricaTab_Problemi();
        break;
    case ProblemCommand::Delete:
        deleteProblem(problem);
        break;
    default:
        closeProblem(problem);
        break;
    }
}

void Problemi::newProblem()
{
    if (const auto created = openProblem(m_state, std::nullopt))
        m_state.selected.id = *created;
    CaricaTab_Problemi();
}

void Problemi::deleteProblem(const ProblemListModel::Row &problem)
{
    if (!m_state.prompts.confirm(QStringLiteral("Cancellare il problema\n%1?").arg(problem.problem)))
        return;
    deleteListed(m_state, problem.written,
                 [&](LastWrite &seen) { return clivara::deleteProblem(m_state, problem.id, seen); },
                 {QString::fromUtf8(ProblemDetail::table.saved), vanishedText,
                  QStringLiteral("Non è stato possibile cancellare il problema")});
    CaricaTab_Problemi();
}

void Problemi::closeProblem(const ProblemListModel::Row &problem)
{
    if (problem.state != qint16(ProblemState::Open)) {
        m_state.prompts.ask({QStringLiteral("Attenzione"),
                             QStringLiteral("E' possibile chiudere solo i problemi aperti."),
                             PromptIcon::Warning});
        return;
    }
    if (!m_state.prompts.confirm(QStringLiteral("Chiudere il problema\n%1?").arg(problem.problem)))
        return;
    ProblemStanding there{problem.state, problem.written};
    const WriteResult result = clivara::closeProblem(m_state, problem.id, there);
    if (result == WriteResult::Changed)
        tellNotClosed(problem, there);
    else
        tellCommand(m_state, result, vanishedText,
                    QStringLiteral("Non è stato possibile chiudere il problema"));
    CaricaTab_Problemi();
}

// Another workstation has saved the problem since the list was read.
void Problemi::tellNotClosed(const ProblemListModel::Row &problem, const ProblemStanding &there)
{
    RecordConflict conflict;
    conflict.event = QString::fromUtf8(ProblemDetail::table.saved);
    conflict.before = problem.written;
    conflict.there = there.written;
    const QString now =
        there.state == qint16(ProblemState::Open)
            ? QStringLiteral("Non è stato chiuso: l'elenco lo mostra com'è adesso, e da lì si può chiudere.")
            : QStringLiteral("Non è stato chiuso: il suo stato è ora «%1».")
                  .arg(problemStateText(there.state));
    m_state.prompts.warn(conflictSentence(m_state, conflict) + u'\n' + now);
}

void Problemi::runVisitCommand(VisitCommand command)
{
    const ProblemListModel::Row *const problem = selectedRow();
    const std::optional<qint32> visit = m_ui->ReportControl1_1->selectedVisit();
    std::optional<qint32> created;
    switch (command) {
    case VisitCommand::New:
        if (!problem)
            return;
        created = newVisit(m_state, {problem->id, problem->problem});
        break;
    case VisitCommand::Edit:
        if (!visit)
            return;
        editVisit(m_state, *visit);
        break;
    case VisitCommand::Delete:
        if (!visit || !askAndDeleteVisit(m_state, *m_ui->ReportControl1_1->selectedItem()))
            return;
        break;
    }
    CaricaTab_Visite();
    if (created && !m_ui->ReportControl1_1->selectVisit(*created)) {
        // Filed elsewhere: by the doctor, or because another workstation has deleted the problem.
        CaricaTab_Problemi();
        m_ui->ReportControl1_1->selectVisit(*created);
    }
}

void Problemi::openProblemIdentifier(int row)
{
    const ProblemListModel::Row &problem = m_problems->at(row);
    if (problem.id == unassociated)
        return;
    openIdentifier(m_state, problem.id, problemTable);
}

void Problemi::openDiabetesChart()
{
    m_state.forms->showForm(diabetesChartOf(m_state.doctor.region));
}

} // namespace clivara
