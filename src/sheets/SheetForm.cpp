// SPDX-License-Identifier: Apache-2.0
#include "sheets/SheetForm.h"

#include "controls/DateCheck.h"
#include "controls/MaskedDateEdit.h"
#include "data/engine/Error.h"
#include "extraction/ModEstrazDati.h"
#include "host/working_state/ErrorLog.h"
#include "host/working_state/WorkingState.h"
#include "sheets/SheetCriteria.h"
#include "sheets/SheetFields.h"
#include "sheets/SheetPrint.h"
#include "ui_SheetForm.h"
#include "values/JetValues.h"

#include <QDir>
#include <QFileDialog>
#include <QKeyEvent>
#include <QPrintDialog>
#include <QPrinter>
#include <QSaveFile>
#include <QScopeGuard>
#include <QShortcut>
#include <QStandardPaths>

namespace clivara {

namespace {

constexpr QSize usualSize(1100, 768);
const auto pdfFolder = QStringLiteral("CARTELLA_PDF");

QString dayText(QDate day)
{
    return jet::formatDate(jet::dateTime(day), u"dd/mm/yyyy");
}

// What a file's name may be anywhere.
QString fileName(QString text)
{
    for (const QChar sign : QStringLiteral("\\/:*?\"<>|"))
        text.replace(sign, u'-');
    return text.simplified();
}

} // namespace

SheetForm::SheetForm(WorkingState &state, const SheetLayout &layout)
    : ChartForm(layout.form, state.header, state.clock)
    , m_state(state)
    , m_layout(layout)
    , m_ui(std::make_unique<Ui::SheetForm>())
{
    m_ui->setupUi(contents());
    setWindowTitle(layout.caption);
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    resize(usualSize);
    m_ui->hint->setForegroundRole(QPalette::PlaceholderText);
    m_ui->DTPicker1->setClock(state.clock);
    m_fields = new SheetFields(layout, state.clock);
    m_ui->fields->setWidget(m_fields);
    connect(m_fields, &SheetFields::edited, this, &SheetForm::noteCriteria);
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
    InitDati(m_state.sheetNumber);
}

void SheetForm::InitDati(qint32 number)
{
    m_isReadable = true;
    noteMessage({});
    m_fields->setOrigins({});
    if (number < 1)
        initNew();
    else
        initStored(number);
    m_ui->txtRegistrato->setVisible(!m_isReadable);
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
    const qsizetype count = recovered.origins.size();
    const QString found =
        count == 0   ? QStringLiteral("Nella cartella non c'è niente da riprendere.")
        : count == 1 ? QStringLiteral("Un valore è ripreso dalla cartella: da verificare.")
                     : QStringLiteral("%1 valori sono ripresi dalla cartella: da verificare.").arg(count);
    noteMessage((QStringList{found} + recovered.remarks).join(u' '));
}

void SheetForm::initStored(qint32 number)
{
    const auto stored = readSheet(m_state.clinical(), m_state.header.patientCode, m_layout.type, number);
    if (!stored) {
        const QString text = QStringLiteral("Errore nella lettura della scheda id=%1").arg(number);
        m_state.prompts.ask({QStringLiteral("Attenzione"), text, PromptIcon::Critical});
        throw dao::Error(dao::RecordDeleted, text);
    }
    m_isStored = true;
    m_sheet = *stored;
    const ReadSheet read = readSheetString(m_layout, stored->data);
    PopolaDati(read.data.value_or(SheetData(m_layout)));
    if (!read.data)
        showUnreadable(read.fault);
}

void SheetForm::showUnreadable(const QString &fault)
{
    m_isReadable = false;
    noteMessage(
        QStringLiteral("La scheda non corrisponde al suo modello: %1. È mostrata com'è registrata e non si "
                       "può modificare.")
            .arg(fault));
    m_ui->txtRegistrato->setPlainText(m_sheet.data);
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
    const SheetData values = m_fields->entered();
    QStringList notes;
    const TherapyCriteria criteria = therapyCriteria(values, age());
    if (!criteria.reasons.isEmpty())
        notes << QStringLiteral("Criteri di terapia: ") + criteria.reasons.join(u' ');
    for (int i = 0; i < m_layout.fields.size(); ++i) {
        const SheetField &field = m_layout.fields[i];
        if (field.kind == SheetFieldKind::Band)
            notes << QStringLiteral("%1: %2 (punti %3)")
                         .arg(field.caption, shownValue(values, i),
                              values.value(field.source.arguments.value(0)));
    }
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
        m_state.prompts.warn(QStringLiteral("Inserire la data della scheda."));
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
    try {
        if (!mayWrite() || !trySave())
            return false;
    } catch (const dao::Error &error) {
        logError(m_state, objectName() + QStringLiteral(".Salva"), error);
        return false;
    }
    m_shown = m_fields->texts();
    m_state.sheetNumber = m_sheet.number;
    showHeading();
    noteMessage(
        QStringLiteral("Scheda salvata alle %1.").arg(jet::formatDate(m_state.clock.local(), u"hh:nn")));
    return true;
}

bool SheetForm::trySave()
{
    StoredSheet sheet = m_sheet;
    sheet.date = enteredDate();
    sheet.data = CreaStringaDati(m_fields->entered());
    SheetWrite result = m_isStored ? changeSheet(m_state, sheet, m_sheet) : addSheet(m_state, sheet);
    const auto asks = [this](const QString &question) {
        return m_state.prompts.ask({QStringLiteral("Attenzione!"),
                                    question,
                                    PromptIcon::Warning,
                                    {PromptButton::Yes, PromptButton::No},
                                    PromptButton::No})
               == PromptButton::Yes;
    };
    if (result == SheetWrite::Changed) {
        if (!asks(QStringLiteral("Un'altra postazione ha modificato la scheda mentre era aperta.\n"
                                 "Sostituirla con quanto è scritto qui?")))
            return false;
        result = changeSheet(m_state, sheet, std::nullopt);
    }
    if (result == SheetWrite::Vanished) {
        if (!asks(QStringLiteral("Un'altra postazione ha eliminato la scheda mentre era aperta.\n"
                                 "Salvarla come scheda nuova?")))
            return false;
        result = addSheet(m_state, sheet);
    }
    if (result != SheetWrite::Done) {
        m_state.prompts.warn(
            QStringLiteral("Salvataggio non riuscito: l'archivio è occupato o non si può scrivere.\n"
                           "Quanto scritto resta nella finestra: riprovare tra poco."));
        return false;
    }
    m_sheet = sheet;
    m_isStored = true;
    return true;
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

void SheetForm::print()
{
    if (!mayWrite())
        return;
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageSize(QPageSize(QPageSize::A4));
    QPrintDialog dialog(&printer, this);
    if (dialog.exec() == QDialog::Accepted)
        printSheet(m_fields->entered(), sheetPaper(m_state, m_sheet.number, enteredDate()), printer);
}

void SheetForm::savePdf()
{
    if (!mayWrite())
        return;
    const PatientIdentity &patient = m_state.header.identity;
    const QString name = fileName(
        QStringLiteral("%1 - %2 %3 - %4.pdf")
            .arg(m_layout.listText, patient.surname, patient.name, enteredDate().toString(Qt::ISODate)));
    const QString folder = m_state.settings.read(pdfFolder).toString();
    const QString path =
        !folder.isEmpty()
            ? QDir(folder).filePath(name)
            : QFileDialog::getSaveFileName(
                this, QStringLiteral("Salva la scheda come PDF"),
                QDir(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)).filePath(name),
                QStringLiteral("PDF (*.pdf)"));
    if (path.isEmpty())
        return;
    const QByteArray bytes =
        sheetPdf(m_fields->entered(), sheetPaper(m_state, m_sheet.number, enteredDate()));
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        m_state.prompts.warn(QStringLiteral("Il file %1 non si può scrivere: %2")
                                 .arg(QDir::toNativeSeparators(path), file.errorString()));
        return;
    }
    noteMessage(QStringLiteral("PDF salvato: %1").arg(QDir::toNativeSeparators(path)));
}

void SheetForm::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && !(event->modifiers() & ~Qt::KeypadModifier))
        focusNextChild();
    else
        ChartForm::keyPressEvent(event);
}

} // namespace clivara
