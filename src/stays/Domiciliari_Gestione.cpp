// SPDX-License-Identifier: Apache-2.0
#include "stays/Domiciliari_Gestione.h"

#include "chart/ListReading.h"
#include "chart/WorkingState.h"
#include "controls/ReportIcons.h"
#include "controls/ReportTableModel.h"
#include "stays/DayField.h"
#include "ui_Domiciliari_Gestione.h"
#include "values/JetValues.h"

#include <QKeyEvent>
#include <QShortcut>

namespace clivara {

namespace {

constexpr QSize usualSize(800, 608);
enum Column { Date, Type, Validity };

const auto newTitle = QStringLiteral("Nuovo domiciliare");
const auto editTitle = QStringLiteral("Modifica dati domiciliare");
const auto browseTitle = QStringLiteral("Dati domiciliare");
const auto browseKeys =
    QStringLiteral("Ins nuovo  ·  Invio modifica  ·  Canc elimina  ·  Spazio testo intero  ·  Esc esce");
const auto entryKeys = QStringLiteral("Ctrl+S salva  ·  Esc annulla");

} // namespace

Domiciliari_Gestione::Domiciliari_Gestione(WorkingState &state)
    : SectionForm(QStringLiteral("Domiciliari_Gestione"), state)
    , m_ui(std::make_unique<Ui::Domiciliari_Gestione>())
    , m_grid(new ReportTableModel(
          {QStringLiteral("Data"), QStringLiteral("Tipo"), QStringLiteral("Inizio validità")}, this))
{
    setWindowTitle(QStringLiteral("Domiciliari"));
    m_ui->setupUi(contents());
    m_ui->keysHint->setForegroundRole(QPalette::PlaceholderText);
    m_ui->optionalNote->setForegroundRole(QPalette::PlaceholderText);
    setUsualSize(usualSize);

    ReportView *const grid = m_ui->Griglia_Domiciliari;
    grid->setRootIsDecorated(false);
    grid->setModel(m_grid);
    grid->setTextColumn(Type, 2);
    grid->setColumns(
        {{1200, QStringLiteral("00/00/0000")}, {4000, {}}, {1200, QStringLiteral("Inizio validità")}});
    grid->setPlaceholder(QStringLiteral("Nessuna prestazione domiciliare registrata per questo paziente."));
    for (MyDateControl *const date : {m_ui->Data_Dom, m_ui->Data_Val})
        date->setClock(state.clock);
    connectControls();
}

Domiciliari_Gestione::~Domiciliari_Gestione() = default;

void Domiciliari_Gestione::connectControls()
{
    ReportView *const grid = m_ui->Griglia_Domiciliari;
    connect(grid, &ReportView::insertRequested, this, &Domiciliari_Gestione::newEntry);
    connect(grid, &ReportView::editRequested, this, &Domiciliari_Gestione::editSelected);
    connect(grid, &ReportView::deleteRequested, this, &Domiciliari_Gestione::deleteSelected);
    connect(grid->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &Domiciliari_Gestione::showSelected);
    connect(m_ui->btGestione_0, &QPushButton::clicked, this, &Domiciliari_Gestione::newEntry);
    connect(m_ui->btGestione_1, &QPushButton::clicked, this, &Domiciliari_Gestione::editSelected);
    connect(m_ui->btGestione_2, &QPushButton::clicked, this, &Domiciliari_Gestione::deleteSelected);
    connect(m_ui->btGestione_3, &QPushButton::clicked, this, &Domiciliari_Gestione::saveEntry);
    connect(m_ui->btGestione_4, &QPushButton::clicked, this, &Domiciliari_Gestione::cancel);
    connect(m_ui->Btm_Uscita, &QPushButton::clicked, this, &Domiciliari_Gestione::leave);
    for (const auto keys : {Qt::CTRL | Qt::Key_S, Qt::CTRL | Qt::Key_Return, Qt::CTRL | Qt::Key_Enter})
        connect(new QShortcut(keys, this), &QShortcut::activated, this, &Domiciliari_Gestione::saveEntry);
}

void Domiciliari_Gestione::load()
{
    setMode(Mode::Browse);
    CaricaListaTipi();
    Carica_Domiciliari(0);
}

void Domiciliari_Gestione::unloading()
{
    m_state.settings.write(QStringLiteral("AGGIORNA_DIARIO"), QStringLiteral("PREVENZIONE"));
}

void Domiciliari_Gestione::leave()
{
    m_state.settings.write(QStringLiteral("AGGIORNA_DIARIO"), QStringLiteral("DIARIO"));
    reject();
}

void Domiciliari_Gestione::setMode(Mode mode)
{
    m_mode = mode;
    const bool isBrowsing = mode == Mode::Browse;
    m_ui->Frame1->setEnabled(isBrowsing);
    m_ui->frDati->setEnabled(!isBrowsing);
    m_ui->frDati->setTitle(isBrowsing ? browseTitle : mode == Mode::New ? newTitle : editTitle);
    m_ui->keysHint->setText(isBrowsing ? browseKeys : entryKeys);
    if (isBrowsing)
        m_ui->Griglia_Domiciliari->setFocus();
    else
        m_ui->Data_Dom->setFocus(Qt::TabFocusReason);
}

void Domiciliari_Gestione::CaricaListaTipi()
{
    m_types.clear();
    guarded(QStringLiteral("CaricaListaTipi"), [this] { m_types = serviceTypes(m_state.codes()); });
}

void Domiciliari_Gestione::Carica_Domiciliari(qint32 selected, int otherwise)
{
    m_entries = readList(
        m_state, QStringLiteral("Domiciliari_Gestione.Carica_Domiciliari"), *m_ui->Griglia_Domiciliari,
        [this] { return listHomeCare(m_state.clinical(), m_state.codes(), m_state.header.patientCode); });
    QList<ReportTableModel::Row> rows;
    for (const HomeCareEntry &entry : std::as_const(m_entries)) {
        ReportTableModel::Row row;
        row.key = entry.id;
        row.texts = {jet::slashedDate(entry.date), entry.typeName, jet::slashedDate(entry.validity)};
        row.icon = reportIcon(ReportIcon::HomeCare);
        rows.append(row);
    }
    m_grid->setRows(std::move(rows));
    m_ui->lblConteggio->setText(countText(*m_ui->Griglia_Domiciliari, m_entries.size()));
    m_ui->Griglia_Domiciliari->setCurrentIndex(m_grid->nearest(selected, otherwise));
    showSelected();
    m_ui->Griglia_Domiciliari->setFocus();
}

const HomeCareEntry *Domiciliari_Gestione::selectedEntry() const
{
    const QModelIndex current = m_ui->Griglia_Domiciliari->currentIndex();
    return current.isValid() ? &m_entries.at(current.row()) : nullptr;
}

void Domiciliari_Gestione::showSelected()
{
    if (m_mode != Mode::Browse)
        return;
    const HomeCareEntry *const entry = selectedEntry();
    show(entry ? *entry : HomeCareEntry());
}

void Domiciliari_Gestione::show(const HomeCareEntry &entry)
{
    m_shown = entry;
    showDay(*m_ui->Data_Dom, entry.date);
    showDay(*m_ui->Data_Val, entry.validity);
    chooseType(entry);
}

void Domiciliari_Gestione::chooseType(const HomeCareEntry &entry)
{
    ChoiceBox *const list = m_ui->cbTipoDomiciliare;
    list->clear();
    for (const ServiceType &type : std::as_const(m_types))
        list->addItem(type.name, type.id);
    // A type that is none of these, which another workstation has given the visit, can be kept, but not
    // chosen anew.
    if (entry.type && list->findData(*entry.type) < 0)
        list->addItem(typeName(entry), *entry.type);
    list->showIndex(entry.type ? list->findData(*entry.type) : -1);
}

HomeCareEntry Domiciliari_Gestione::entered() const
{
    HomeCareEntry entry = m_shown;
    entry.date = shownDay(*m_ui->Data_Dom);
    entry.validity = shownDay(*m_ui->Data_Val);
    const QVariant type = m_ui->cbTipoDomiciliare->currentData();
    entry.type = type.isValid() ? std::optional(qint32(type.toInt())) : std::nullopt;
    return entry;
}

void Domiciliari_Gestione::newEntry()
{
    HomeCareEntry entry;
    entry.date = m_state.clock.today();
    setMode(Mode::New);
    show(entry);
}

void Domiciliari_Gestione::editSelected()
{
    const HomeCareEntry *const entry = selectedEntry();
    if (!entry)
        return;
    setMode(Mode::Edit);
    m_read = *entry;
    show(*entry);
}

void Domiciliari_Gestione::deleteSelected()
{
    const HomeCareEntry *const entry = selectedEntry();
    if (!entry)
        return;
    const std::optional<QStringList> read = readContents(entry->id);
    if (!read) {
        m_state.prompts.warn(QStringLiteral(
            "Non è stato possibile eliminare l'elemento: non si può leggere che cosa contiene."));
        return;
    }
    QStringList contents = *read;
    QString question = QStringLiteral("Sei sicuro di voler eliminare l'elemento selezionato?");
    if (!contents.isEmpty())
        question +=
            QStringLiteral("\nÈ anche una visita, e con l'elemento si elimina quanto vi è scritto: %1.")
                .arg(contents.join(QStringLiteral(", ")));
    if (!m_state.prompts.confirm(question))
        return;
    const int row = m_ui->Griglia_Domiciliari->currentIndex().row();
    deleteListed(m_state, entry->written,
                 [&](LastWrite &seen) { return deleteHomeCare(m_state, entry->id, seen, contents); },
                 {QStringLiteral("L'elemento è stato salvato"),
                  QStringLiteral("L'elemento era già stato eliminato da un'altra postazione."),
                  QStringLiteral("Non è stato possibile eliminare l'elemento")});
    Carica_Domiciliari(entry->id, row);
}

// What of a visit the entry holds as well; empty when it cannot be read. The deletion itself looks again.
std::optional<QStringList> Domiciliari_Gestione::readContents(qint32 id)
{
    std::optional<QStringList> contents;
    guarded(QStringLiteral("Elimina"), [&] { contents = visitContents(m_state.clinical(), id); });
    return contents;
}

bool Domiciliari_Gestione::mayWrite()
{
    const HomeCareEntry entry = entered();
    const auto refuse = [&](const Prompt &prompt, QWidget *field) {
        m_state.prompts.ask(prompt);
        field->setFocus(Qt::TabFocusReason);
        return false;
    };
    const auto attention = QStringLiteral("Attenzione");
    if (!entry.date.isValid())
        return refuse({attention,
                       dateRequest(QStringLiteral("E' necessario inserire la data."), *m_ui->Data_Dom),
                       PromptIcon::Warning},
                      m_ui->Data_Dom);
    if (!entry.type)
        return refuse({attention, QStringLiteral("E' necessario indicare il tipo."), PromptIcon::Warning},
                      m_ui->cbTipoDomiciliare);
    if (holdsNoDay(*m_ui->Data_Val))
        return refuse({attention,
                       QStringLiteral("La data di inizio validità non è una data.\nCorreggerla o vuotarla."),
                       PromptIcon::Warning},
                      m_ui->Data_Val);
    if (isDuplicateEntry(listHomeCare(m_state.clinical(), m_state.codes(), m_state.header.patientCode),
                         entry)) {
        // The list shows it: another workstation may have written it a moment ago.
        Carica_Domiciliari(entry.id);
        return refuse({QStringLiteral("Attenzione!"), QStringLiteral("Elemento già presente in elenco!"),
                       PromptIcon::Information},
                      m_ui->Data_Dom);
    }
    return true;
}

SaveResult<HomeCareEntry> Domiciliari_Gestione::save(HomeCareEntry &mine, const HomeCareEntry &read)
{
    return saveHomeCare(m_state, mine, read);
}

QString Domiciliari_Gestione::typeName(const HomeCareEntry &entry) const
{
    const auto type = std::find_if(m_types.begin(), m_types.end(),
                                   [&](const ServiceType &known) { return known.id == entry.type; });
    if (type != m_types.end())
        return type->name;
    return entry.type ? QStringLiteral("Tipo %1 (non è una prestazione)").arg(*entry.type) : QString();
}

std::optional<QString> Domiciliari_Gestione::shownText(QLatin1String column, const HomeCareEntry &entry) const
{
    return column == QLatin1String("idtipo") ? std::optional(typeName(entry)) : std::nullopt;
}

void Domiciliari_Gestione::becomeNew()
{
    EditedRecord::becomeNew();
    m_mode = Mode::New;
    m_ui->frDati->setTitle(newTitle);
}

void Domiciliari_Gestione::saveEntry()
{
    if (m_mode == Mode::Browse)
        return;
    const WriteResult result = saveRecord(m_state, objectName(), *this);
    if (result != WriteResult::Done && result != WriteResult::TheirsKept)
        return;
    const qint32 saved = m_shown.id;
    setMode(Mode::Browse);
    Carica_Domiciliari(saved);
}

void Domiciliari_Gestione::cancel()
{
    setMode(Mode::Browse);
    showSelected();
}

void Domiciliari_Gestione::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (m_mode != Mode::Browse && event->key() == Qt::Key_Escape)
        cancel();
    else if (m_mode != Mode::Browse && isEnter && !(event->modifiers() & ~Qt::KeypadModifier))
        focusNextChild();
    else
        SectionForm::keyPressEvent(event);
}

} // namespace clivara
