// SPDX-License-Identifier: Apache-2.0
#include "evaluations/EvaluationForm.h"

#include "chart/SharedWrites.h"
#include "chart/WorkingState.h"
#include "controls/DateCheck.h"
#include "controls/MaskedDateEdit.h"
#include "controls/NumericEdit.h"
#include "evaluations/CardiovascularRules.h"
#include "evaluations/HistoryModel.h"
#include "support/Mnemonic.h"
#include "support/ui/WaitCursor.h"
#include "ui_EvaluationForm.h"
#include "values/JetValues.h"

#include <QShortcut>

namespace clivara {

namespace {

constexpr QSize usualSize(1040, 520);
constexpr int visibleRows = 7;

} // namespace

EvaluationForm::EvaluationForm(const QString &name, const Words &words, HistoryPlot::Scale scale,
                               WorkingState &state)
    : PatientInputForm(name, words.caption, state)
    , m_ui(std::make_unique<Ui::EvaluationForm>())
    , m_history(new HistoryModel(words.valueHeading,
                                 scale == HistoryPlot::Scale::Percent ? Qt::AlignRight : Qt::AlignLeft, this))
    , m_referenceLabel(new QLabel(this))
{
    m_ui->setupUi(contents());
    setUpPerson(m_ui->person, m_ui->esci);
    m_referenceLabel->setObjectName(QStringLiteral("Label2_1"));
    m_referenceLabel->setTextFormat(Qt::PlainText);
    addBesideAge(m_referenceLabel);

    QPalette paper = m_ui->results->palette();
    paper.setColor(QPalette::Window, Qt::white);
    m_ui->results->setPalette(paper);
    QFont large = m_ui->SSPanel1->font();
    large.setPointSizeF(large.pointSizeF() * 1.25);
    large.setBold(true);
    m_ui->SSPanel1->setFont(large);
    // Room for the longest lines, so that the form does not grow under the doctor's eyes.
    const QFontMetrics metrics(large);
    m_ui->SSPanel1->setMinimumSize(
        metrics.horizontalAdvance(QStringLiteral("Sindrome Metabolica NON diagnosticata.")),
        metrics.height());
    m_ui->SSPanel2->setMinimumHeight(2 * fontMetrics().height());
    m_ui->SSPanel2->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_ui->status->setMinimumHeight(2 * fontMetrics().height());
    m_ui->status->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    makeQuiet(m_ui->hint);
    makeQuiet(m_ui->plotPoint);

    m_ui->Grid1->setModel(m_history);
    m_ui->Grid1->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    m_ui->Grid1->setColumnWidth(0, fontMetrics().horizontalAdvance(QStringLiteral("00/00/0000")) + 32);
    m_ui->Grid1->setMinimumHeight(visibleRows * m_ui->Grid1->verticalHeader()->defaultSectionSize());
    m_ui->plotLabel->setText(words.course);
    m_ui->plot->setAccessibleName(withoutMnemonic(words.course));
    m_ui->plot->setScale(scale);
    setUsualSize(usualSize);

    connectHistory();
    connect(dateEdit(), &QLineEdit::textChanged, this, [this] {
        if (std::exchange(m_refusedDate, std::nullopt))
            showStatus({});
    });
    connect(m_ui->Button1_0, &QPushButton::clicked, this, &EvaluationForm::newEvaluation);
    connect(m_ui->Button1_1, &QPushButton::clicked, this, &EvaluationForm::deleteChosen);
    setComputeButton(m_ui->Button2_0);
    connect(m_ui->Button2_1, &QPushButton::clicked, this, &EvaluationForm::trySave);
    connect(new QShortcut(QKeySequence::Save, this), &QShortcut::activated, m_ui->Button2_1,
            &QPushButton::click);
    connect(m_ui->esci, &QPushButton::clicked, this, &EvaluationForm::reject);
}

EvaluationForm::~EvaluationForm() = default;

QWidget *EvaluationForm::inputArea() const
{
    return m_ui->inputs;
}

QString EvaluationForm::regionCode() const
{
    return m_state.doctor.region;
}

void EvaluationForm::inputsComplete()
{
    orderTabs(m_ui->inputs, {m_ui->Button2_0, m_ui->Button2_1, m_ui->Grid1, m_ui->plot, m_ui->Button1_0,
                             m_ui->Button1_1, m_ui->esci});
}

void EvaluationForm::connectHistory()
{
    // The selection, not the current row: that one is also set when Tab leads into the list, which loads nothing.
    connect(m_ui->Grid1->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this](const QItemSelection &selected) {
                if (!m_filling && !selected.isEmpty())
                    choose(selected.indexes().first());
            });
    auto *const remove = new QShortcut(Qt::Key_Delete, m_ui->Grid1);
    remove->setContext(Qt::WidgetShortcut);
    connect(remove, &QShortcut::activated, m_ui->Button1_1, &QPushButton::click);
    // The row that was chosen before is read again, whatever was typed since.
    connect(m_ui->Grid1, &QTableView::clicked, this, [this](const QModelIndex &row) {
        if (m_chosen != m_history->at(row.row()).when)
            choose(row);
    });
    connect(m_ui->plot, &HistoryPlot::currentChanged, this, [this](int point) {
        m_ui->plotPoint->setText(point < 0 ? QString() : m_ui->plot->points().at(point).text);
    });
    connect(m_ui->plot, &HistoryPlot::chosen, this,
            [this](int point) { m_ui->Grid1->setCurrentIndex(m_history->index(m_plotted.at(point), 0)); });
}

void EvaluationForm::load()
{
    showPatient();
    showReferenceAge();
    refreshHistory();
    newEvaluation();
}

void EvaluationForm::showReferenceAge()
{
    const QDate day = referenceDay(regionCode());
    m_referenceAge = day.isValid() ? std::max(0, exactAge(birth(), day)) : int(ageYears());
    m_referenceLabel->setVisible(day.isValid() && birth().isValid());
    m_referenceLabel->setText(m_referenceLabel->isHidden()
                                  ? QString()
                                  : QStringLiteral("%1 anni al %2")
                                        .arg(m_referenceAge)
                                        .arg(jet::formatDate(jet::dateTime(day), u"d/m/yy")));
}

void EvaluationForm::refreshHistory()
{
    QList<HistoryRow> rows;
    m_read.clear();
    const bool wasRead = guarded([&] {
        rows = history();
        m_read = readEvaluations(m_state.clinical(), storedAs(), m_state.header.patientCode);
    });
    m_filling = true;
    m_history->setRows(rows);
    m_filling = false;

    QList<HistoryPlot::Point> points;
    m_plotted.clear();
    for (int row = int(rows.size()) - 1; row >= 0; --row) {
        const HistoryRow &saved = rows.at(row);
        if (!saved.number)
            continue;
        points.append({saved.when.date(), *saved.number, saved.date + QStringLiteral(": ") + saved.value});
        m_plotted.append(row);
    }
    m_ui->plot->setPoints(points,
                          wasRead ? QStringLiteral("Nessuna rilevazione salvata")
                                  : QStringLiteral("Non è stato possibile leggere\nle rilevazioni salvate"));
}

void EvaluationForm::newEvaluation()
{
    m_filling = true;
    m_ui->Grid1->clearSelection();
    m_ui->Grid1->setCurrentIndex({});
    m_filling = false;
    m_ui->plot->setCurrent(-1);
    m_chosen = {};
    m_refusedDate.reset();
    m_ui->Button1_1->setEnabled(false);
    clearInputs();
    showResult({});
    setSavable(false);
    showStatus({});
    guarded([this] { propose(); });
    focusFirst();
}

void EvaluationForm::choose(const QModelIndex &row)
{
    if (row.isValid())
        showChosen(m_history->at(row.row()).when);
}

void EvaluationForm::showChosen(const QDateTime &when)
{
    bool shown = false;
    guarded([&] { shown = showSaved(when); });
    if (!shown) {
        showStatus(
            QStringLiteral("La rilevazione del %1 non si può leggere.").arg(jet::slashedDate(when.date())),
            true);
        return;
    }
    m_chosen = when;
    m_ui->Button1_1->setEnabled(true);
    showDate(jet::slashedDate(when.date()));
    m_refusedDate.reset();
    setSavable(false);
    const int row = m_ui->Grid1->currentIndex().row();
    m_ui->plot->setCurrent(int(m_plotted.indexOf(row)));
    showStatus(QStringLiteral("Rilevazione del %1: per modificarla premere Calcola, poi Salva.")
                   .arg(jet::slashedDate(when.date())));
}

void EvaluationForm::showHint(const QString &text)
{
    m_ui->hint->setText(text);
    m_ui->hint->setVisible(!text.isEmpty());
}

void EvaluationForm::showResult(const QString &text, const QString &second)
{
    m_ui->results->setEnabled(true);
    m_ui->results->setToolTip({});
    m_ui->SSPanel1->setText(text);
    m_ui->SSPanel2->setText(second);
}

void EvaluationForm::setSavable(bool savable)
{
    m_ui->Button2_1->setEnabled(savable);
}

void EvaluationForm::showStatus(const QString &text, bool warning)
{
    m_ui->status->setText(warning && !text.isEmpty() ? QStringLiteral("⚠ ") + text : text);
    setForeColour(m_ui->status, warning ? darkRedText : blackText);
}

void EvaluationForm::showNotReloaded(const NumericEdit *edit, QLabel *source)
{
    showSource(source, edit->text().isEmpty() ? QString() : QStringLiteral("non di questa rilevazione"));
    source->setToolTip({});
}

void EvaluationForm::inputsChanged()
{
    setSavable(false);
    if (m_ui->SSPanel1->text().isEmpty())
        return;
    m_ui->results->setEnabled(false);
    m_ui->results->setToolTip(QStringLiteral("I dati sono cambiati: premere Calcola"));
}

void EvaluationForm::dateLeft()
{
    // One box for one text; what was typed stays to be corrected.
    if (dateEdit()->dateText() != m_refusedDate && !checkDateField())
        markDateRefused();
}

void EvaluationForm::markDateRefused()
{
    m_refusedDate = dateEdit()->dateText();
    showStatus(QStringLiteral("La data non è valida: correggerla per salvare."), true);
}

void EvaluationForm::leadToDate()
{
    markDateRefused();
    dateEdit()->setFocus();
    dateEdit()->selectAll();
}

void EvaluationForm::trySave()
{
    // Who was told when leaving the field is led back to it without a second box.
    if (dateEdit()->dateText() == m_refusedDate || !checkDateField()) {
        leadToDate();
        return;
    }
    const auto day = calendarDay(dateEdit()->dateText());
    if (!day) { // the check lets 29 February pass in years that have none
        m_state.prompts.warn(QStringLiteral("Data non valida !"));
        leadToDate();
        return;
    }
    m_refusedDate.reset();
    saveOn(*day);
}

void EvaluationForm::saveOn(QDate day)
{
    // A chosen evaluation that gets another date is a new one: it must not replace the one of that date.
    const bool isNew = !m_chosen.isValid() || m_chosen.date() != day;
    m_saving = {isNew ? jet::dateTime(day) : m_chosen, isNew, {}};
    const WriteResult result = saveRecord(m_state, objectName(), *this);
    if (result == WriteResult::TheirsKept)
        showTheirs(m_saving.when);
    if (result != WriteResult::Done)
        return;
    refreshHistory();
    afterSave();
    showStatus(QStringLiteral("✓ Rilevazione del %1 salvata.").arg(jet::slashedDate(day)));
}

bool EvaluationForm::mayWrite()
{
    if (!m_saving.isNew || storedAs().ofSameDate != Existing::Refuse
        || !hasEvaluation(m_state.clinical(), storedAs(), m_state.header.patientCode, m_saving.when))
        return true;
    m_state.prompts.ask({windowTitle(),
                         QStringLiteral("Esiste già una rilevazione effettuata nella stessa data."),
                         PromptIcon::None,
                         {PromptButton::Ok},
                         PromptButton::Ok});
    return false;
}

WriteResult EvaluationForm::write()
{
    m_saving.versions.read = m_read.value(m_saving.when);
    const WriteResult result = save(m_saving.when, m_saving.isNew, m_saving.versions);
    if (result != WriteResult::Vanished || !m_saving.isNew)
        return result;
    // The history shows one that is gone; what is saved here is a new one in any case.
    becomeNew();
    return write();
}

void EvaluationForm::becomeNew()
{
    m_read.remove(m_saving.when);
}

QString EvaluationForm::vanishedQuestion() const
{
    return QStringLiteral("Un'altra postazione ha eliminato la rilevazione mentre era aperta.\n"
                          "Salvarla come nuova?");
}

RecordConflict EvaluationForm::conflict() const
{
    RecordConflict conflict;
    conflict.event =
        QStringLiteral("La rilevazione del %1 è stata salvata").arg(jet::slashedDate(m_saving.when.date()));
    conflict.mergesFields = false; // the result follows from all values
    const QList<StoredEvaluation::Value> &values = storedAs().values;
    for (qsizetype i = 0; i < values.size(); ++i) {
        const auto text = [&](const EvaluationValues &version) {
            return version.isEmpty() ? QString() : values[i].text(version[i]);
        };
        const EvaluationVersions &versions = m_saving.versions;
        conflict.fields.append(
            {values[i].caption, text(versions.read), text(versions.mine), text(versions.stored)});
    }
    return conflict;
}

void EvaluationForm::keepMine()
{
    m_read[m_saving.when] = m_saving.versions.stored;
}

void EvaluationForm::showTheirs(const QDateTime &when)
{
    refreshHistory();
    if (m_chosen == when)
        showChosen(when);
    else
        newEvaluation();
    showStatus(QStringLiteral("La rilevazione del %1 è come l'ha salvata l'altra postazione.")
                   .arg(jet::slashedDate(when.date())));
}

void EvaluationForm::deleteChosen()
{
    if (!m_chosen.isValid()
        || !m_state.prompts.confirm(QStringLiteral("Confermi l'eliminazione della rilevazione selezionata?")))
        return;
    const QString day = jet::slashedDate(m_chosen.date());
    EvaluationValues seen = m_read.value(m_chosen);
    const auto remove = [&](LastWrite &) {
        const WaitCursor waiting;
        return deleteEvaluation(m_state, storedAs(), m_chosen, seen);
    };
    const WriteResult result =
        deleteListed(m_state, {}, remove,
                     {QStringLiteral("La rilevazione del %1 è stata salvata").arg(day),
                      QStringLiteral("La rilevazione era già stata eliminata da un'altra postazione."),
                      QStringLiteral("Non è stato possibile eliminare la rilevazione")});
    if (result == WriteResult::Changed)
        showTheirs(m_chosen);
    if (result != WriteResult::Done && result != WriteResult::Vanished)
        return;
    refreshHistory();
    newEvaluation();
    showStatus(QStringLiteral("Rilevazione del %1 eliminata.").arg(day));
}

} // namespace clivara
