// SPDX-License-Identifier: Apache-2.0
#include "problems/Visite2.h"

#include "chart/ListReading.h"
#include "chart/WorkingState.h"
#include "problems/VisitCommands.h"
#include "ui_Visite2.h"

#include <QMenu>

namespace clivara {

namespace {

constexpr QSize usualSize(960, 704);

} // namespace

Visite2::Visite2(WorkingState &state)
    : SectionForm(QStringLiteral("Visite2"), state)
    , m_ui(std::make_unique<Ui::Visite2>())
    , m_menu(new QMenu(this))
{
    setWindowTitle(QStringLiteral("Gestione Visite"));
    m_ui->setupUi(contents());
    m_ui->keysHint->setForegroundRole(QPalette::PlaceholderText);
    setUsualSize(usualSize);
    makeMenu();

    ItemTreeView *const list = m_ui->ReportControl1;
    list->setThirdColumn(ItemTreeModel::Third::ProblemCode);
    list->setPlaceholder(QStringLiteral("Nessuna visita registrata per questo paziente."));
    connect(list, &ReportView::insertRequested, this, &Visite2::addVisit);
    connect(list, &ReportView::editRequested, this, &Visite2::editSelected);
    connect(list, &ReportView::deleteRequested, this, &Visite2::deleteSelected);
    connect(list, &ReportView::menuRequested, m_menu, [this](const QPoint &place) { m_menu->popup(place); });
    connect(list, &ReportView::identifierRequested, this,
            [this, list](const QModelIndex &row) { openItemIdentifier(m_state, *list->items().item(row)); });
    connect(m_ui->bt_Visita_1, &QPushButton::clicked, this, &Visite2::addVisit);
    connect(m_ui->bt_Visita_2, &QPushButton::clicked, this, &Visite2::editSelected);
    connect(m_ui->bt_Visita_3, &QPushButton::clicked, this, &Visite2::deleteSelected);
    connect(m_ui->bt_Esci, &QPushButton::clicked, this, &Visite2::reject);
}

Visite2::~Visite2() = default;

void Visite2::makeMenu()
{
    const auto add = [this](const char *name, const QString &text, void (Visite2::*run)()) {
        QAction *const action = m_menu->addAction(text);
        action->setObjectName(QLatin1String(name));
        connect(action, &QAction::triggered, this, run);
    };
    m_menu->setObjectName(QStringLiteral("mnMenu1"));
    add("nuovo1", QStringLiteral("&Nuova visita"), &Visite2::addVisit);
    add("modifica1", QStringLiteral("&Modifica visita"), &Visite2::editSelected);
    add("elimina1", QStringLiteral("&Elimina visita"), &Visite2::deleteSelected);
}

void Visite2::load()
{
    guarded(QStringLiteral("Form_Load"), [this] {
        if (m_state.environment)
            attachProblemTables(*m_state.environment);
    });
    CaricaTab_Visite(ItemTreeView::Place::FromTheTop);
    m_ui->ReportControl1->setFocus();
}

void Visite2::unloading()
{
    m_state.settings.write(QStringLiteral("AGGIORNA_DIARIO"), QStringLiteral("COMMAND1"));
}

void Visite2::CaricaTab_Visite(ItemTreeView::Place place)
{
    QList<ItemRow> visits =
        readList(m_state, QStringLiteral("Visite2.CaricaTab_Visite"), *m_ui->ReportControl1,
                 [this] { return patientVisits(m_state.local(), m_state.header.patientCode); });
    const qsizetype count = visits.size();
    m_ui->ReportControl1->showItems(std::move(visits), place);
    m_ui->lblConteggio->setText(countText(*m_ui->ReportControl1, count));
}

void Visite2::addVisit()
{
    // The problem that another form has selected may be another patient's: this visit is of none until the
    // doctor chooses one.
    const std::optional<qint32> created = newVisit(m_state, {});
    CaricaTab_Visite(ItemTreeView::Place::AsBefore);
    if (created)
        m_ui->ReportControl1->selectVisit(*created);
}

void Visite2::editSelected()
{
    const std::optional<qint32> visit = m_ui->ReportControl1->selectedVisit();
    if (!visit)
        return;
    editVisit(m_state, *visit);
    CaricaTab_Visite(ItemTreeView::Place::AsBefore);
}

void Visite2::deleteSelected()
{
    if (m_ui->ReportControl1->selectedVisit()
        && askAndDeleteVisit(m_state, *m_ui->ReportControl1->selectedItem()))
        CaricaTab_Visite(ItemTreeView::Place::AsBefore);
}

} // namespace clivara
