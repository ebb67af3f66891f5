// SPDX-License-Identifier: Apache-2.0
#include "stays/Ricoveri_Gestione.h"

#include "chart/ListReading.h"
#include "chart/WorkingState.h"
#include "controls/ReportIcons.h"
#include "controls/ReportTableModel.h"
#include "stays/DayField.h"
#include "stays/Ricoveri_Inserimento.h"
#include "stays/StayRecords.h"
#include "stays/StayRules.h"
#include "ui_Ricoveri_Gestione.h"
#include "values/JetValues.h"

#include <limits>

namespace clivara {

namespace {

constexpr QSize usualSize(880, 560);
constexpr int newest = std::numeric_limits<int>::max(); // the last row
enum Column { Admitted, Discharged, Hospital, Ward };

ReportTableModel::Row rowOf(const Stay &stay, bool isNewest, QDate today)
{
    const StayDates dates{stay.admitted, stay.discharged, isNewest};
    ReportTableModel::Row row;
    row.key = stay.id;
    row.texts = {jet::slashedDate(stay.admitted), jet::slashedDate(stay.discharged), stay.hospital.trimmed(),
                 stay.ward.trimmed()};
    row.hintColumn = Discharged;
    switch (stayState(dates, today)) {
    case StayState::Open:
        row.icon = reportIcon(ReportIcon::InHospital);
        row.hint = row.iconText = QStringLiteral("in ospedale");
        row.tone = ReportTone::Strong;
        break;
    case StayState::Unended:
        row.icon = reportIcon(ReportIcon::Discharged);
        row.hint = row.iconText = QStringLiteral("uscita non indicata");
        break;
    case StayState::Planned:
        row.icon = reportIcon(ReportIcon::Discharged);
        row.hint = row.iconText = QStringLiteral("previsto");
        break;
    case StayState::Contradictory:
        row.icon = reportIcon(ReportIcon::Doubtful);
        row.iconText = QStringLiteral("fine prima dell'accesso");
        break;
    case StayState::Closed:
        row.icon = reportIcon(ReportIcon::Discharged);
        row.iconText = QStringLiteral("concluso");
        break;
    }
    QStringList tip{stayLengthText(dates, today), row.texts.at(Hospital), row.texts.at(Ward)};
    tip.removeAll(QString());
    row.tip = tip.join(u'\n');
    return row;
}

} // namespace

Ricoveri_Gestione::Ricoveri_Gestione(WorkingState &state)
    : SectionForm(QStringLiteral("Ricoveri_Gestione"), state)
    , m_ui(std::make_unique<Ui::Ricoveri_Gestione>())
    , m_stays(new ReportTableModel({QStringLiteral("Data accesso"), QStringLiteral("Data uscita"),
                                    QStringLiteral("Sede"), QStringLiteral(" reparto")},
                                   this))
{
    setWindowTitle(QStringLiteral("Ricoveri"));
    m_ui->setupUi(contents());
    m_ui->keysHint->setForegroundRole(QPalette::PlaceholderText);
    setUsualSize(usualSize);

    ReportView *const list = m_ui->Griglia_Ricoveri;
    list->setRootIsDecorated(false);
    list->setModel(m_stays);
    list->setTextColumn(Hospital, 2);
    list->setColumns({{1200, QStringLiteral("00/00/0000")},
                      {1200, QStringLiteral("uscita non indicata ")},
                      {4000, {}},
                      {2600, QStringLiteral("Chirurgia generale")}});
    list->setPlaceholder(QStringLiteral("Nessun ricovero registrato per questo paziente."));
    connect(list, &ReportView::insertRequested, this, &Ricoveri_Gestione::newStay);
    connect(list, &ReportView::editRequested, this, &Ricoveri_Gestione::editSelected);
    connect(list, &ReportView::deleteRequested, this, &Ricoveri_Gestione::deleteSelected);
    connect(list->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &Ricoveri_Gestione::showLength);
    connect(m_ui->Btm_Ins_Dom, &QPushButton::clicked, this, &Ricoveri_Gestione::newStay);
    connect(m_ui->Btn_Modif_Dom, &QPushButton::clicked, this, &Ricoveri_Gestione::editSelected);
    connect(m_ui->Btm_Elimina, &QPushButton::clicked, this, &Ricoveri_Gestione::deleteSelected);
    connect(m_ui->Btm_Uscita, &QPushButton::clicked, this, &Ricoveri_Gestione::reject);
}

Ricoveri_Gestione::~Ricoveri_Gestione() = default;

void Ricoveri_Gestione::load()
{
    fill(0, newest);
}

void Ricoveri_Gestione::unloading()
{
    m_state.settings.write(QStringLiteral("AGGIORNA_DIARIO"), QStringLiteral("DIARIO"));
}

void Ricoveri_Gestione::fill(qint32 selected, int otherwise)
{
    const QList<Stay> stays =
        readList(m_state, QStringLiteral("Ricoveri_Gestione.Carica_Ricoveri"), *m_ui->Griglia_Ricoveri,
                 [this] { return listStays(m_state.clinical(), m_state.header.patientCode); });
    const QDate today = m_state.clock.today();
    QList<ReportTableModel::Row> rows;
    m_written.clear();
    for (const Stay &stay : stays) {
        rows.append(rowOf(stay, isNewestStay(stays, stay), today));
        m_written.insert(stay.id, stay.written);
    }
    m_ui->lblConteggio->setText(countText(*m_ui->Griglia_Ricoveri, rows.size()));
    m_stays->setRows(std::move(rows));
    m_ui->Griglia_Ricoveri->setCurrentIndex(m_stays->nearest(selected, otherwise));
    showLength();
    m_ui->Griglia_Ricoveri->setFocus();
}

void Ricoveri_Gestione::showLength()
{
    const QString tip = m_ui->Griglia_Ricoveri->currentIndex().data(Qt::ToolTipRole).toString();
    m_ui->lblDurata->setText(tip.section(u'\n', 0, 0));
}

qint32 Ricoveri_Gestione::selectedStay() const
{
    return m_stays->keyOf(m_ui->Griglia_Ricoveri->currentIndex());
}

void Ricoveri_Gestione::newStay()
{
    const qint32 before = selectedStay();
    fill(openStay(m_state, std::nullopt).value_or(before), newest);
}

void Ricoveri_Gestione::editSelected()
{
    const qint32 id = selectedStay();
    if (id == 0)
        return;
    const int row = m_ui->Griglia_Ricoveri->currentIndex().row();
    fill(openStay(m_state, id).value_or(id), row);
}

void Ricoveri_Gestione::deleteSelected()
{
    const qint32 id = selectedStay();
    if (id == 0
        || m_state.prompts.ask({QStringLiteral("Attenzione"),
                                QStringLiteral("Confermi l'eliminazione?"),
                                PromptIcon::Critical,
                                {PromptButton::Ok, PromptButton::Cancel},
                                PromptButton::Cancel})
               != PromptButton::Ok)
        return;
    const int row = m_ui->Griglia_Ricoveri->currentIndex().row();
    deleteListed(m_state, m_written.value(id),
                 [&](LastWrite &seen) { return deleteShared<Stay>(m_state, id, seen); },
                 {QStringLiteral("Il ricovero è stato salvato"),
                  QStringLiteral("Il ricovero era già stato eliminato da un'altra postazione."),
                  QStringLiteral("Non è stato possibile eliminare il ricovero")});
    fill(id, row);
}

} // namespace clivara
