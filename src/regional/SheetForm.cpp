// SPDX-License-Identifier: Apache-2.0
#include "regional/SheetForm.h"

#include "chart/ErrorLog.h"
#include "chart/FormOpener.h"
#include "chart/WorkingState.h"
#include "controls/DateCheck.h"
#include "controls/MaskedDateEdit.h"
#include "jetsql/Error.h"
#include "regional/ModEstrazDati.h"
#include "regional/SheetCriteria.h"
#include "regional/SheetFields.h"
#include "regional/SheetPrint.h"
#include "ui_SheetForm.h"
#include "values/JetValues.h"

#include <QDir>
#include <QKeyEvent>
#include <QScopeGuard>
#include <QShortcut>

namespace clivara {

namespace {

constexpr QSize usualSize(1100, 768);

QString dayText(QDate day)
{
    return jet::slashedDate(day);
}

} // namespace

qint32 openSheet(WorkingState &state, const SheetLayout &layout, qint32 sheet)
{
    SheetCall call;
    call.sheet = sheet;
    state.forms->showForm(layout.form, &call);
    return call.saved;
}

SheetForm::SheetForm(WorkingState &state, const SheetLayout &layout)
    : SectionForm(layout.form, state)
    , m_layout(layout)
    , m_ui(std::make_unique<Ui::SheetForm>())
{
    m_ui->setupUi(contents());
    setWindowTitle(layout.caption);
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    setUsualSize(usualSize);
    m_ui->hint->setForegroundRole(QPalette::PlaceholderText);
    m_ui->DTPicker1->setClock(state.clock);
    m_fields = new SheetFields(layout, state.clock);
    m_ui->fields->setWidget(m_fields);
    connect(m_fields, &SheetFields::edited, this, &SheetForm::noteCriteria);
    connect(m_ui->btnModello, &QPushButton::clicked, this, &SheetForm::readByLayout);
    connect(m_ui->ctrlButt_0, &QPushButton::clicked, this, &SheetForm::reject);
    connect(m_ui->ctrlButt_1, &QPushButton::clicked, this, &SheetForm::save);
    connect(m_ui->ctrlButt_2, &QPushButton::clicked, this, &SheetForm::print);
    connect(m_ui->ctrlButt_3, &QPushButton::clicked, this, &SheetForm::savePdf);
    connect(new QShortcut(Qt::CTRL | Qt::Key_S, this), &QShortcut::activated, m_ui->ctrlButt_1,
            &QPushButton::click);
    connect(new QShortcut(Qt::CTRL | Qt::Key_P, this), &QShortcut::activated, m_ui->ctrlButt_2,
            &QPushButton::click);
}

SheetForm::~SheetForm() = default;

void SheetForm::load()
{
    InitDati(call().sheet);
}

void SheetForm::InitDati(qint32 number)
{
    m_author = SheetAuthor::Marked;
    if (number < 1) {
        m_isReadable = true;
        noteMessage({});
        m_fields->setOrigins({});
        initNew();
        showReadable(false);
    } else {
        initStored(number);
    }
}

// The fields, or the string as it is stored.
void SheetForm::showReadable(bool isUnmarked)
{
    m_ui->txtRegistrato->setVisible(!m_isReadable);
    m_ui->btnModello->setVisible(!m_isReadable && isUnmarked);
    m_ui->fields->setVisible(m_isReadable);
    if (!m_isReadable)
        m_ui->lblCriteri->hide();
    m_ui->DTPicker1->setEnabled(m_isReadable);
    for (QPushButton *const button : {m_ui->ctrlButt_1, m_ui->ctrlButt_2, m_ui->ctrlButt_3})
        button->setEnabled(m_isReadable);
    if (m_isReadable)
        m_fields->focusFirst();
    else
        m_ui->ctrlButt_0->setFocus();
}

void SheetForm::initNew()
{
    const QDate today = m_state.clock.today();
    m_isStored = false;
    m_sheet = {nextSheetNumber(m_state.clinical(), m_layout.type), m_layout.type, today, {}};
    SheetData values(m_layout);
    const RecoveredData recovered = RecuperaDati(values, ModEstrazDati(m_state.clinical(), m_state.log),
                                                 {m_state.header.patientCode, age(), today});
    PopolaDati(values);
    m_fields->setOrigins(recovered.origins);
    noteMessage(recovered.notice());
}

void SheetForm::initStored(qint32 number)
{
    const auto stored = readSheet(m_state.clinical(), m_state.header.patientCode, m_layout.type, number);
    if (!stored) {
        const QString text = QStringLiteral("Errore nella lettura della scheda id=%1").arg(number);
        m_state.prompts.ask({QStringLiteral("Attenzione"), text, PromptIcon::Critical});
        throw ToldError(dao::RecordDeleted, text);
    }
    m_isStored = true;
    m_sheet = *stored;
    showStored();
}

void SheetForm::showStored()
{
    m_isReadable = true;
    noteMessage({});
    m_fields->setOrigins({});
    const ReadSheet read = readSheetString(m_layout, m_sheet.data, m_author);
    PopolaDati(read.data.value_or(SheetData(m_layout)));
    if (!read.data)
        showUnreadable(read);
    showReadable(read.isUnmarked);
}

void SheetForm::showUnreadable(const ReadSheet &read)
{
    m_isReadable = false;
    const QString asStored = QStringLiteral(" È mostrata com'è registrata e non si può modificare.");
    noteMessage(
        (read.isUnmarked
             ? QStringLiteral("La scheda non ha il segno di questo programma: può averla scritta un altro "
                              "programma, con altri significati.")
             : QStringLiteral("La scheda non corrisponde al suo modello: %1.").arg(read.fault))
        + asStored);
    m_ui->txtRegistrato->setPlainText(m_sheet.data);
}

// Only who has filled it in knows what the string means.
void SheetForm::readByLayout()
{
    if (m_state.prompts.ask(
            {QStringLiteral("Attenzione"),
             QStringLiteral(
                 "Questa scheda è stata compilata con questo programma, in una versione precedente?\n"
                 "Con Sì è letta con il suo modello. Se l'ha scritta un altro programma i valori "
                 "mostrati non sarebbero quelli registrati."),
             PromptIcon::Warning,
             {PromptButton::Yes, PromptButton::No},
             PromptButton::No})
        != PromptButton::Yes)
        return;
    m_author = SheetAuthor::Vouched;
    showStored();
    noteMessage(QStringLiteral(
        "La scheda è letta con il modello di questo programma: salvandola ne riceve il segno."));
}

void SheetForm::PopolaDati(const SheetData &values)
{
    m_fields->showData(values);
    if (m_sheet.date.isValid())
        m_ui->DTPicker1->setValue(m_sheet.date);
    else
        m_ui->DTPicker1->SetEmptyValue();
    showHeading();
    m_shown = m_fields->texts();
}

void SheetForm::showHeading()
{
    QString text = QStringLiteral("Scheda n. %1").arg(m_sheet.number);
    if (m_sheet.date.isValid())
        text += QStringLiteral(" del ") + dayText(m_sheet.date);
    m_ui->Label2->setText(m_isStored ? text : text + QStringLiteral(" (nuova)"));
}

void SheetForm::noteMessage(const QString &text)
{
    m_ui->message->setText(text);
    m_ui->message->setVisible(!text.isEmpty());
}

// What follows from the values, where the doctor sees it from every field.
void SheetForm::noteCriteria()
{
    const QStringList notes = sheetConclusions(m_fields->entered(), age());
    m_ui->lblCriteri->setText(notes.join(u' '));
    m_ui->lblCriteri->setVisible(m_isReadable && !notes.isEmpty());
}

int SheetForm::age() const
{
    return exactAge(m_state.header.birthDay, m_state.clock.today());
}

QDate SheetForm::enteredDate() const
{
    const auto *const edit = m_ui->DTPicker1->findChild<MaskedDateEdit *>(QStringLiteral("dtEdit"));
    return calendarDay(edit->dateText()).value_or(QDate());
}

bool SheetForm::isChanged() const
{
    return m_isReadable && (m_fields->texts() != m_shown || enteredDate() != m_sheet.date);
}

bool SheetForm::mayWrite()
{
    if (!enteredDate().isValid()) {
        m_state.prompts.warn(dateRequest(QStringLiteral("Inserire la data della scheda."), *m_ui->DTPicker1));
        m_ui->DTPicker1->setFocus();
        return false;
    }
    if (const auto misfit = m_fields->misfit()) {
        m_state.prompts.warn(misfit->text);
        misfit->control->setFocus();
        return false;
    }
    return true;
}

bool SheetForm::save()
{
    if (m_saving || !isLoaded() || !m_isReadable)
        return false;
    m_saving = true;
    const auto done = qScopeGuard([this] { m_saving = false; });
    const WriteResult result = saveRecord(m_state, objectName(), *this);
    if (result == WriteResult::TheirsKept)
        showTheirs();
    if (result != WriteResult::Done)
        return result == WriteResult::TheirsKept;
    m_shown = m_fields->texts();
    m_author = SheetAuthor::Marked; // it has the mark now
    call().saved = m_sheet.number;
    showHeading();
    noteMessage(
        QStringLiteral("Scheda salvata alle %1.").arg(jet::formatDate(m_state.clock.local(), u"hh:nn")));
    return true;
}

StoredSheet SheetForm::entered() const
{
    StoredSheet sheet = m_sheet;
    sheet.date = enteredDate();
    sheet.data = CreaStringaDati(m_fields->entered());
    return sheet;
}

WriteResult SheetForm::write()
{
    StoredSheet sheet = entered();
    const SaveResult<StoredSheet> result = m_isStored ? changeSheet(m_state, sheet, m_sheet)
                                                      : SaveResult<StoredSheet>{addSheet(m_state, sheet), {}};
    if (result == WriteResult::Changed)
        m_elsewhere = result.stored;
    if (result == WriteResult::Done) {
        m_sheet = sheet;
        m_isStored = true;
    }
    return result;
}

void SheetForm::becomeNew()
{
    m_isStored = false;
}

QString SheetForm::vanishedQuestion() const
{
    return QStringLiteral("Un'altra postazione ha eliminato la scheda mentre era aperta.\n"
                          "Salvarla come scheda nuova?");
}

RecordConflict SheetForm::conflict() const
{
    QStringList captions{QStringLiteral("Data")};
    const auto shown = [this](const StoredSheet &sheet, const std::optional<SheetData> &values) {
        QStringList texts{dayText(sheet.date)};
        for (int i = 0; values && i < m_layout.fields.size(); ++i)
            texts.append(shownValue(*values, i));
        if (!values)
            texts.append(sheet.data);
        return texts;
    };
    const StoredSheet mine = entered();
    const auto read = readSheetString(m_layout, m_sheet.data, m_author).data;
    const auto stored = readSheetString(m_layout, m_elsewhere.data, m_author).data;
    RecordConflict conflict;
    if (read && stored) {
        for (const SheetField &field : m_layout.fields)
            captions.append(field.caption.isEmpty() ? field.name : field.caption);
        conflict = conflictOf(
            QStringLiteral("La scheda è stata salvata"), captions,
            {shown(m_sheet, read), shown(mine, m_fields->entered()), shown(m_elsewhere, stored)}, {}, {});
    } else { // what another program wrote does not fit the layout
        captions.append(QStringLiteral("Dati come sono registrati"));
        conflict = conflictOf(
            QStringLiteral("La scheda è stata salvata"), captions,
            {shown(m_sheet, std::nullopt), shown(mine, std::nullopt), shown(m_elsewhere, std::nullopt)}, {},
            {});
        conflict.mergesFields = false;
    }
    return conflict;
}

void SheetForm::keepMine()
{
    SheetData values = m_fields->entered();
    const auto read = readSheetString(m_layout, m_sheet.data, m_author).data;
    const auto stored = readSheetString(m_layout, m_elsewhere.data, m_author).data;
    for (int i = 0; read && stored && i < m_layout.fields.size(); ++i) {
        if (values.value(i) == read->value(i))
            values.setValue(i, stored->value(i));
    }
    AggiornaTotali(values);
    const QDate day = enteredDate() == m_sheet.date ? m_elsewhere.date : enteredDate();
    m_sheet = m_elsewhere;
    m_fields->showData(values);
    m_ui->DTPicker1->setValue(day);
    m_shown.clear(); // not saved yet
}

void SheetForm::showTheirs()
{
    guarded(QStringLiteral("InitDati"), [this] {
        InitDati(m_sheet.number);
        noteMessage(QStringLiteral("La scheda è come l'ha salvata l'altra postazione."));
    });
}

bool SheetForm::queryUnload()
{
    if (!isChanged())
        return true;
    const PromptButton answer =
        m_state.prompts.ask({QStringLiteral("Attenzione!"),
                             QStringLiteral("La scheda è stata modificata. Salvarla prima di chiudere?"),
                             PromptIcon::Question,
                             {PromptButton::Yes, PromptButton::No, PromptButton::Cancel},
                             PromptButton::Yes});
    return answer == PromptButton::No || (answer == PromptButton::Yes && save());
}

// What is on paper is what is stored.
bool SheetForm::isSavedForPaper()
{
    if (!isLoaded() || !m_isReadable)
        return false;
    if (m_isStored && !isChanged() && m_author == SheetAuthor::Marked)
        return true;
    return m_state.prompts.ask({QStringLiteral("Attenzione!"),
                                QStringLiteral("La scheda non è salvata così com'è. Salvarla ora?\n"
                                               "Si stampa soltanto una scheda salvata."),
                                PromptIcon::Question,
                                {PromptButton::Yes, PromptButton::No},
                                PromptButton::Yes})
               == PromptButton::Yes
           && save();
}

void SheetForm::print()
{
    if (isSavedForPaper())
        printOnPaper(m_fields->entered(), sheetPaper(m_state, m_sheet.number, enteredDate()), this);
}

void SheetForm::savePdf()
{
    if (!isSavedForPaper())
        return;
    const QString path = clivara::savePdf(m_state, m_fields->entered(),
                                          sheetPaper(m_state, m_sheet.number, enteredDate()), this);
    if (!path.isEmpty())
        noteMessage(QStringLiteral("PDF salvato: %1").arg(QDir::toNativeSeparators(path)));
}

void SheetForm::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && !(event->modifiers() & ~Qt::KeypadModifier))
        focusNextChild();
    else
        SectionForm::keyPressEvent(event);
}

} // namespace clivara
