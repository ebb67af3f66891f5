// SPDX-License-Identifier: Apache-2.0
#include "regional/AIR15_Gestione.h"

#include "chart/ListReading.h"
#include "chart/WorkingState.h"
#include "regional/SheetForm.h"
#include "regional/SheetLayout.h"
#include "support/ui/Opener.h"
#include "ui_AIR15_Gestione.h"
#include "values/JetValues.h"

#include <QButtonGroup>
#include <QStandardItemModel>

namespace clivara {

namespace {

constexpr QSize usualSize(960, 560);
const auto unknownDate = QStringLiteral("senza data");

} // namespace

AIR15_Gestione::AIR15_Gestione(WorkingState &state)
    : SectionForm(QStringLiteral("AIR15_Gestione"), state)
    , m_ui(std::make_unique<Ui::AIR15_Gestione>())
    , m_model(new QStandardItemModel(this))
    , m_types(new QButtonGroup(this))
{
    m_ui->setupUi(contents());
    setWindowTitle(QStringLiteral("AIR Campania"));
    setUsualSize(usualSize);
    m_ui->keysHint->setForegroundRole(QPalette::PlaceholderText);
    ReportView *const list = m_ui->MSFlexGrid1;
    list->setModel(m_model);
    list->setTextColumn(1, 1);
    list->setPlaceholder(QStringLiteral("Il paziente non ha schede."));
    connect(list, &ReportView::insertRequested, this, &AIR15_Gestione::createSheet);
    connect(list, &ReportView::editRequested, this, &AIR15_Gestione::openSelected);
    connect(list, &ReportView::deleteRequested, this, &AIR15_Gestione::deleteSelected);
    connect(list->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &AIR15_Gestione::enableButtons);
    addTypes();
    connect(m_ui->Btm_Apri, &QPushButton::clicked, this, &AIR15_Gestione::openSelected);
    connect(m_ui->Btm_Elimina, &QPushButton::clicked, this, &AIR15_Gestione::deleteSelected);
    connect(m_ui->chameleonButton1_1, &QPushButton::clicked, this, &AIR15_Gestione::createSheet);
    connect(m_ui->Btm_Uscita, &QPushButton::clicked, this, &AIR15_Gestione::leave);
}

AIR15_Gestione::~AIR15_Gestione() = default;

// One option for each layout, above the button that begins a sheet.
void AIR15_Gestione::addTypes()
{
    QWidget *before = m_ui->Btm_Elimina;
    for (const SheetLayout &layout : sheetLayouts()) {
        auto *const option = new QRadioButton(layout.listText);
        option->setObjectName(QStringLiteral("optTipo_%1").arg(layout.type));
        m_ui->types->insertWidget(int(m_types->buttons().size()), option);
        m_types->addButton(option, layout.type);
        setTabOrder(std::exchange(before, option), option);
    }
    setTabOrder(before, m_ui->chameleonButton1_1);
    m_types->buttons().first()->setChecked(true);
}

void AIR15_Gestione::load()
{
    fill();
    selectRow(0);
    m_ui->MSFlexGrid1->setFocus();
}

void AIR15_Gestione::unloading()
{
    m_state.settings.write(QStringLiteral("AGGIORNA_DIARIO"), QStringLiteral("PREVENZIONE"));
}

void AIR15_Gestione::leave()
{
    m_state.settings.write(QStringLiteral("AGGIORNA_DIARIO"), QStringLiteral("DIARIO"));
    reject();
}

void AIR15_Gestione::fill()
{
    m_sheets = readList(m_state, QStringLiteral("AIR15_Gestione.Carica_Schede"), *m_ui->MSFlexGrid1,
                        [this] { return listSheets(m_state.clinical(), m_state.header.patientCode); });
    m_model->clear();
    m_model->setHorizontalHeaderLabels({QStringLiteral("Data"), QStringLiteral("Tipo scheda")});
    for (const StoredSheet &sheet : m_sheets) {
        auto *const date = new QStandardItem(jet::formatDate(jet::dateTime(sheet.date), u"dd/mm/yyyy"));
        if (!sheet.date.isValid()) {
            date->setText(unknownDate);
            date->setData(int(ReportTone::Quiet), ToneRole);
        }
        auto *const type = new QStandardItem(sheetTypeText(sheet.type));
        type->setToolTip(QStringLiteral("Scheda n. %1").arg(sheet.number));
        m_model->appendRow({date, type});
    }
    m_ui->MSFlexGrid1->setColumns({{1200, QStringLiteral("00/00/0000  ")}, {6000, {}}});
    enableButtons();
}

void AIR15_Gestione::selectRow(int row)
{
    m_ui->MSFlexGrid1->setCurrentIndex(m_model->index(std::min(row, m_model->rowCount() - 1), 0));
}

const StoredSheet *AIR15_Gestione::selected() const
{
    const int row = m_ui->MSFlexGrid1->currentIndex().row();
    return row < 0 ? nullptr : &m_sheets[row];
}

void AIR15_Gestione::enableButtons()
{
    const StoredSheet *const sheet = selected();
    enableOpener(*m_ui->Btm_Apri, sheet && sheetLayout(sheet->type),
                 sheet ? QStringLiteral("Il programma non conosce le schede di questo tipo")
                       : QStringLiteral("Nessuna scheda selezionata"));
    m_ui->Btm_Elimina->setEnabled(selected());
}

void AIR15_Gestione::open(int type, qint32 number)
{
    const SheetLayout *const layout = sheetLayout(type);
    if (!layout)
        return; // a type that this program does not know
    const int row = m_ui->MSFlexGrid1->currentIndex().row();
    const qint32 saved = openSheet(m_state, *layout, number);
    fill();
    // The sheet that was saved as a new one, else the row of before.
    for (int i = 0; i < m_sheets.size(); ++i) {
        const StoredSheet &sheet = m_sheets[i];
        if (number < 1 && sheet.type == type && sheet.number == saved) {
            selectRow(i);
            return;
        }
    }
    selectRow(row);
}

void AIR15_Gestione::openSelected()
{
    if (const StoredSheet *const sheet = selected())
        open(sheet->type, sheet->number);
}

void AIR15_Gestione::createSheet()
{
    open(m_types->checkedId(), 0);
}

void AIR15_Gestione::deleteSelected()
{
    const StoredSheet *const sheet = selected();
    if (!sheet)
        return;
    if (m_state.prompts.ask({QStringLiteral("Attenzione"),
                             QStringLiteral("Confermi l'eliminazione?"),
                             PromptIcon::Question,
                             {PromptButton::Yes, PromptButton::No},
                             PromptButton::No})
        != PromptButton::Yes)
        return;
    const int row = m_ui->MSFlexGrid1->currentIndex().row();
    StoredSheet seen = *sheet;
    deleteListed(m_state, {}, [&](LastWrite &) { return deleteSheet(m_state, seen); },
                 {QStringLiteral("La scheda è stata salvata"),
                  {},
                  QStringLiteral("Non è stato possibile eliminare la scheda")});
    fill();
    selectRow(row);
    m_ui->MSFlexGrid1->setFocus();
}

} // namespace clivara
