// SPDX-License-Identifier: Apache-2.0
#include "history/Allergie.h"

#include "chart/HostContext.h"
#include "chart/WorkingState.h"
#include "data/AllergyCode.h"
#include "data/CodePairs.h"
#include "ui_Allergie.h"

#include <QShortcut>

namespace clivara {

Allergie::Allergie(WorkingState &state, std::shared_ptr<QString> loadedCode)
    : QuestionnaireForm(QStringLiteral("Allergie"), state, std::move(loadedCode),
                        QuestionnaireKind::Allergies)
    , m_ui(std::make_unique<Ui::Allergie>())
{
    m_ui->setupUi(contents());
    setNotices(m_ui->avvisi);
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    connect(m_ui->gruppi, &AllergenPanel::selectionChanged, this, &Allergie::showSelection);
    connect(m_ui->cerca, &QLineEdit::textChanged, this, &Allergie::showSearch);
    connect(m_ui->cerca, &QLineEdit::returnPressed, this, [this] { m_ui->gruppi->focusFound(); });
    connect(m_ui->Text1, &QPlainTextEdit::textChanged, this, [this] { m_textChanged = true; });
    connect(m_ui->Uscita, &QPushButton::clicked, this, &Allergie::reject);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, [this] {
        m_ui->cerca->setFocus(Qt::ShortcutFocusReason);
        m_ui->cerca->selectAll();
    });
}

Allergie::~Allergie() = default;

void Allergie::load()
{
    const PatientIdentity &patient = m_state.header.identity;
    setWindowTitle(
        QStringLiteral("Allergie di  ")
        + QStringLiteral("%1 %2").arg(patient.surname.trimmed(), patient.name.trimmed()).trimmed());
    m_unreadText.clear();
    m_ui->cerca->clear();
    m_ui->Text1->setStoredText({});
    m_ui->gruppi->setCatalogue(readCatalogue(m_state.clinical()));

    const Loaded loaded = loadCode(isIntactAllergyCode);
    if (loaded == Loaded::NoRow)
        m_loadedCode->clear();
    m_ui->gruppi->setSelection(decodeAllergies(*m_loadedCode));
    // With a row that says nothing the free text is not shown either.
    if (loaded == Loaded::Blank)
        noteUnreadText();
    else
        loadFreeText();
    m_textChanged = false;
    m_shownCode = encodeAllergies(m_ui->gruppi->selection());
    showSelection();
    resize(sizeHint());
    m_ui->cerca->setFocus();
}

void Allergie::loadFreeText()
{
    m_readText = readFreeText(m_state.clinical(), m_state.header.patientCode);
    m_ui->Text1->setStoredText(m_readText.value_or(QString()));
    if (!m_readText)
        addNotice(QStringLiteral("Il paziente non ha la scheda delle informazioni generali: il testo di "
                                 "«Varie» non si può salvare."));
}

void Allergie::noteUnreadText()
{
    m_readText = readFreeText(m_state.clinical(), m_state.header.patientCode);
    m_unreadText = m_readText.value_or(QString()).trimmed();
    if (!m_unreadText.isEmpty())
        addNotice(QStringLiteral("La scheda registrata è vuota e il testo già registrato in «Varie» non è "
                                 "mostrato: quanto si scrive vi si aggiunge."));
}

QString Allergie::freeTextToWrite() const
{
    const QString typed = m_ui->Text1->storedText();
    if (m_unreadText.isEmpty())
        return typed;
    return typed.trimmed().isEmpty() ? m_unreadText : m_unreadText + QStringLiteral("\r\n") + typed;
}

bool Allergie::askAndSave()
{
    const QString code = encodeAllergies(m_ui->gruppi->selection());
    // Whoever has only looked at nobody's chart is not asked; what was entered there is refused by the save.
    const bool isChanged = m_state.header.identified ? isChangedCode(code) : code != m_shownCode;
    if (!isChanged && !m_textChanged)
        return true;
    // A first row that says nothing, and answers that nobody gave for this patient, are stored only on
    // purpose.
    const bool isUntouched = code == m_shownCode && !m_textChanged;
    const PromptButton usual = isUntouched || isForeign() ? PromptButton::No : PromptButton::Yes;
    switch (m_state.prompts.ask({QStringLiteral("Attenzione!"),
                                 QStringLiteral("Salvare le modifiche?"),
                                 PromptIcon::Question,
                                 {PromptButton::Yes, PromptButton::No, PromptButton::Cancel},
                                 usual})) {
    case PromptButton::Yes:
        return saveAll();
    case PromptButton::No:
        return true;
    default:
        return false;
    }
}

bool Allergie::isTextReplaced(const std::optional<QString> &stored) const
{
    const QString there = stored.value_or(QString());
    return m_textChanged && there != m_readText.value_or(QString()) && there != freeTextToWrite();
}

WriteResult Allergie::write()
{
    const QString code = encodeAllergies(m_ui->gruppi->selection());
    const QString text = freeTextToWrite();
    m_textRefused = false;
    const WriteResult result = writeAll([&]() -> WriteResult {
        m_textElsewhere = readFreeText(m_state.clinical(), m_state.header.patientCode);
        const bool isReplaced = isCodeReplaced(code);
        if (isReplaced && code == m_shownCode && !m_textChanged)
            return WriteResult::Done; // whoever has touched nothing has nothing to save any more
        if (isReplaced || isTextReplaced(m_textElsewhere))
            return WriteResult::Changed;
        writeCode(m_state, m_kind, code);
        m_textRefused = m_textChanged && !writeFreeText(m_state, text);
        return WriteResult::Done;
    });
    if (result == WriteResult::Done)
        m_read = {true, code, m_read.written};
    return result;
}

RecordConflict Allergie::conflict() const
{
    const auto names = [this](const AllergenSelection &selection) {
        return m_ui->gruppi->namesOf(selection).join(u'\n');
    };
    const auto stored = [](const StoredCode &row) { return decodeAllergies(row.code.value_or(QString())); };
    const QString read = m_readText.value_or(QString());
    return conflictOf(QStringLiteral("Le allergie sono state salvate"),
                      {QStringLiteral("Allergeni segnati"), QStringLiteral("Varie")},
                      {{names(stored(m_read)), read},
                       {names(m_ui->gruppi->selection()), m_textChanged ? freeTextToWrite() : read},
                       {names(stored(m_elsewhere)), m_textElsewhere.value_or(QString())}},
                      m_read.written, m_elsewhere.written);
}

void Allergie::keepMine()
{
    const AllergenSelection mine = m_ui->gruppi->selection();
    const AllergenSelection touched = mine ^ decodeAllergies(m_read.code.value_or(QString()));
    m_ui->gruppi->setSelection((mine & touched)
                               | (decodeAllergies(m_elsewhere.code.value_or(QString())) & ~touched));
    if (!m_textChanged) {
        m_ui->Text1->setStoredText(m_textElsewhere.value_or(QString()));
        m_textChanged = false;
    }
    m_read = m_elsewhere;
    m_readText = m_textElsewhere;
    m_shownCode.clear();
    showSelection();
}

bool Allergie::saveAll()
{
    const WriteResult result = saveRecord(m_state, objectName(), *this);
    if (result != WriteResult::Done)
        return result == WriteResult::TheirsKept;
    m_state.networkedPractice = m_state.settings.isOn(QStringLiteral("Mir_Attivo"));
    reloadAllergies(m_state);
    showPatient();
    if (m_textRefused) {
        // The window stays open with the text, and only that is still to be saved.
        *m_loadedCode = m_read.code.value_or(QString());
        m_state.prompts.warn(
            QStringLiteral("Gli allergeni segnati sono salvati, il testo di «Varie» no: il paziente "
                           "non ha la scheda delle informazioni generali."));
        m_ui->Text1->setFocus();
        return false;
    }
    m_textChanged = false;
    return true;
}

bool Allergie::queryUnload()
{
    if (askAndSave())
        return true;
    unloading(); // the host refreshes its view also when the form stays open
    return false;
}

void Allergie::unloading()
{
    m_state.settings.write(QStringLiteral("AGGIORNA_DIARIO"), QStringLiteral("RAF"));
}

void Allergie::showSelection()
{
    const QStringList names = m_ui->gruppi->selectedNames();
    m_ui->selezionati->setText(names.isEmpty()
                                   ? QStringLiteral("Nessun allergene selezionato")
                                   : QStringLiteral("%1: ").arg(names.size()) + names.join(u", "));
}

void Allergie::showSearch()
{
    const QString typed = m_ui->cerca->text();
    const int found = m_ui->gruppi->search(typed);
    m_ui->trovati->setText(typed.trimmed().isEmpty() ? QString()
                           : found == 0              ? QStringLiteral("nessuno trovato")
                           : found == 1              ? QStringLiteral("1 trovato – Invio per raggiungerlo")
                                        : QStringLiteral("%1 trovati – Invio per il primo").arg(found));
}

} // namespace clivara
