// SPDX-License-Identifier: Apache-2.0
#include "inputs/PatientInputForm.h"

#include "chart/WorkingState.h"
#include "controls/DateCheck.h"
#include "controls/MaskedDateEdit.h"
#include "controls/NumericEdit.h"
#include "controls/RoomyScrollArea.h"
#include "dao/Dao.h"
#include "ui_PersonLine.h"
#include "values/JetValues.h"

#include <QKeyEvent>

namespace clivara {

namespace {

constexpr int remarkCharacters = 44; // a longer remark takes two lines

} // namespace

PatientInputForm::PatientInputForm(const QString &name, const QString &caption, WorkingState &state)
    : RemarkForm(name, state)
    , m_person(std::make_unique<Ui::PersonLine>())
{
    setWindowTitle(caption);
}

PatientInputForm::~PatientInputForm() = default;

void PatientInputForm::setUpPerson(QWidget *place, const QAbstractButton *exit)
{
    m_person->setupUi(place);
    m_exit = exit;
    for (QLabel *const label :
         {m_person->avviso_lblSesso, m_person->avviso_lblEta, m_person->avviso_MaskEdBox1}) {
        setForeColour(label, darkRedText);
        showRemarks(label, {});
    }
    connect(m_person->MaskEdBox1, &MaskedDateEdit::committed, this, [this] {
        if (isLoaded() && QApplication::focusWidget() != m_exit)
            dateLeft();
    });
    connect(m_person->MaskEdBox1, &QLineEdit::textChanged, this, &PatientInputForm::refreshDateRemarks);
}

void PatientInputForm::addBesideAge(QLabel *label)
{
    m_person->line->insertWidget(m_person->line->indexOf(m_person->ageUnit) + 1, label);
}

void PatientInputForm::addInput(NumericEdit *edit, QLabel *source, const QLabel *unit,
                                PlausibleRange plausible)
{
    edit->setUnit(unit->text());
    makeQuiet(source);
    showSource(source, {});
    // Below the source, in its place.
    auto *const remark = new QLabel(source->parentWidget());
    remark->setObjectName(QStringLiteral("avviso_") + edit->objectName());
    remark->setTextFormat(Qt::PlainText);
    remark->setTextInteractionFlags(Qt::TextSelectableByMouse);
    remark->setWordWrap(true);
    remark->setMinimumWidth(fontMetrics().averageCharWidth() * remarkCharacters);
    remark->setAccessibleDescription(QStringLiteral("Avviso: ") + edit->accessibleName());
    setForeColour(remark, darkRedText);
    auto *const grid = qobject_cast<QGridLayout *>(source->parentWidget()->layout());
    int row = 0, column = 0, rows = 0, columns = 0;
    grid->getItemPosition(grid->indexOf(source), &row, &column, &rows, &columns);
    grid->removeWidget(source);
    auto *const cell = new QVBoxLayout;
    cell->setSpacing(0);
    cell->addStretch();
    cell->addWidget(source);
    cell->addWidget(remark);
    cell->addStretch();
    grid->addLayout(cell, row, column, rows, columns);
    m_inputs.append({edit, source, remark, plausible, {}, false});
    showRemarks(remark, {});

    edit->installEventFilter(this);
    connect(edit, &QLineEdit::textEdited, this, [this, edit] { m_typing = edit; });
    connect(edit, &QLineEdit::textChanged, this, [this, edit] {
        forgetOrigin(input(edit));
        inputsChanged();
        refreshRemarks();
    });
    connect(edit, &QLineEdit::editingFinished, this, [this] {
        m_typing = nullptr;
        refreshRemarks();
    });
}

void PatientInputForm::setPlausible(const NumericEdit *edit, PlausibleRange plausible)
{
    input(edit).plausible = plausible;
}

PatientInputForm::Input &PatientInputForm::input(const QObject *edit)
{
    return *std::find_if(m_inputs.begin(), m_inputs.end(),
                         [edit](const Input &known) { return known.edit == edit; });
}

void PatientInputForm::forgetOrigin(Input &input)
{
    showSource(input.source, {});
    input.found.clear();
    input.mustBeSeen = false;
}

void PatientInputForm::setComputeButton(QAbstractButton *button)
{
    m_compute = button;
    button->installEventFilter(this); // for its mnemonic
    connect(button, &QAbstractButton::clicked, this, [this] {
        m_typing = nullptr;
        refreshRemarks();
        guarded([this] { compute(); });
    });
}

void PatientInputForm::orderTabs(QWidget *inputs, const QList<QWidget *> &others)
{
    QWidget *before = m_person->MaskEdBox1;
    const auto follow = [&before](QWidget *widget) {
        setTabOrder(before, widget);
        before = widget;
    };
    for (QWidget *const widget : inputs->findChildren<QWidget *>()) {
        if (widget->focusPolicy() & Qt::TabFocus)
            follow(widget);
    }
    for (QWidget *const widget : others)
        follow(widget);

    auto *const area = new RoomyScrollArea(inputs->parentWidget());
    delete inputs->parentWidget()->layout()->replaceWidget(inputs, area);
    area->setWidget(inputs);
    inputs->setAutoFillBackground(false);
}

void PatientInputForm::showPatient()
{
    shrink();
    m_birth = {};
    m_person->lblSesso->clear();
    m_person->lblEta->clear();
    m_person->ageUnit->hide();
    m_isRegistryRead = guarded([this] {
        const auto patient = readCalculatorPatient(m_state.clinical(), m_state.header.patientCode);
        if (!patient)
            return;
        m_birth = patient->birth;
        m_person->lblSesso->setText(patient->sex);
        if (const int age = exactAge(m_birth, m_state.clock.today()); age >= 0) {
            m_person->lblEta->setText(QString::number(age));
            m_person->ageUnit->show();
        }
    });
    refreshPersonRemarks();
    refreshDateRemarks();
}

bool PatientInputForm::isAgeKnown() const
{
    return exactAge(m_birth, m_state.clock.today()) >= 0;
}

QString PatientInputForm::sexRemark() const
{
    const QString consequence = withoutSex();
    if (sex() != Sex::Unknown || consequence.isEmpty())
        return {};
    return (m_isRegistryRead ? QStringLiteral("Sesso non indicato: %1.")
                             : QStringLiteral("Non è stato possibile leggere il sesso: %1."))
        .arg(consequence);
}

QString PatientInputForm::birthRemark() const
{
    const QString consequence = withoutBirth();
    if (isAgeKnown() || consequence.isEmpty())
        return {};
    return (m_isRegistryRead ? QStringLiteral("Data di nascita mancante o futura: %1.")
                             : QStringLiteral("Non è stato possibile leggere la data di nascita: %1."))
        .arg(consequence);
}

void PatientInputForm::refreshPersonRemarks()
{
    const auto lines = [](const QString &line) { return line.isEmpty() ? QStringList() : QStringList(line); };
    showRemarks(m_person->avviso_lblSesso, lines(sexRemark()));
    const bool isTooOld = exactAge(m_birth, m_state.clock.today()) > highestPlausibleAge;
    showRemarks(m_person->avviso_lblEta,
                isTooOld ? QStringList(QStringLiteral("Età improbabile: verificare la data di nascita."))
                         : lines(birthRemark()));
}

void PatientInputForm::refreshDateRemarks()
{
    // A date that is still being typed may be another one: "01/02/20" of "01/02/2026".
    const QString typed = dateEdit()->dateText();
    const auto day = typed.size() == 10 ? calendarDay(typed) : std::nullopt;
    QStringList lines;
    if (day) {
        const QDate today = m_state.clock.today();
        if (const QString remark = dateRemark(*day, m_birth, today); !remark.isEmpty())
            lines << remark;
        if (QString remark = ageAtDateRemark(*day, m_birth, today);
            !remark.isEmpty() && !withoutBirth().isEmpty()) {
            const int then = exactAge(m_birth, *day);
            const QString band = ageBand(then), bandNow = ageBand(exactAge(m_birth, today));
            if (band != bandNow)
                remark += QStringLiteral(" %1 anni sono %2.")
                              .arg(then)
                              .arg(band.isEmpty() ? QStringLiteral("nelle età valide") : band);
            lines << remark;
        }
    }
    showRemarks(m_person->avviso_MaskEdBox1, lines);
}

QStringList PatientInputForm::valueRemarks(const Input &input) const
{
    if (input.edit->isRefused())
        return {input.edit->refusal() + u'.'};
    const double value = input.edit->number();
    if (value == 0) // for the form it is missing
        return {};
    QStringList lines{rangeRemark(value, input.plausible, input.edit->unit()), inputRemark(input.edit)};
    lines.removeAll(QString());
    return lines;
}

void PatientInputForm::refreshRemarks()
{
    for (const Input &input : m_inputs) {
        QStringList lines = input.found;
        if (input.edit != m_typing)
            lines += valueRemarks(input);
        showRemarks(input.remark, lines);
    }
}

bool PatientInputForm::leadToUnseen()
{
    const auto unseen = [this] {
        return std::find_if(m_inputs.begin(), m_inputs.end(),
                            [](const Input &candidate) { return candidate.mustBeSeen; });
    };
    const auto first = unseen();
    if (first == m_inputs.end())
        return false;
    const auto current = std::find_if(m_inputs.begin(), m_inputs.end(), [this](const Input &candidate) {
        return candidate.edit == focusWidget();
    });
    if (current != m_inputs.end())
        current->mustBeSeen = false;
    if (const auto next = unseen(); next != m_inputs.end()) {
        next->edit->setFocus();
        next->edit->selectAll();
    } else {
        m_compute->setFocus();
    }
    return true;
}

bool PatientInputForm::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_compute)
        return (event->type() == QEvent::Shortcut && leadToUnseen())
               || RemarkForm::eventFilter(watched, event);
    if (event->type() == QEvent::FocusOut && !m_isLeading) {
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        // A menu, another window, or the closing of the form that takes the focus does not mean that the
        // value was seen.
        if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason && isVisible())
            input(watched).mustBeSeen = false;
    }
    return RemarkForm::eventFilter(watched, event);
}

void PatientInputForm::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isEnter || !leadToUnseen())
        RemarkForm::keyPressEvent(event);
}

void PatientInputForm::clearInputs()
{
    showDate(jet::slashedDate(m_state.clock.today()));
    fillInputs({});
}

void PatientInputForm::fillInputs(const QString &text)
{
    m_typing = nullptr;
    for (const Input &input : m_inputs)
        showStored(input.edit, text);
}

void PatientInputForm::showStored(NumericEdit *edit, const QString &text)
{
    edit->setText(text);
    forgetOrigin(input(edit)); // also when the text is the one of before
    refreshRemarks();
}

void PatientInputForm::focusFirst()
{
    const auto first = [this](const std::function<bool(const Input &)> &isWanted) -> QWidget * {
        const auto found = std::find_if(m_inputs.begin(), m_inputs.end(), isWanted);
        return found == m_inputs.end() ? nullptr : found->edit;
    };
    QWidget *place = first([](const Input &input) { return input.mustBeSeen; });
    if (!place)
        place = first([](const Input &input) { return input.edit->text().trimmed().isEmpty(); });
    m_isLeading = true;
    (place ? place : m_compute)->setFocus();
    m_isLeading = false;
}

void PatientInputForm::proposeValue(NumericEdit *edit, const QString &phrase, const Reader &read)
{
    Finding finding;
    if (!guarded([&] { finding = read(m_state.clinical(), m_state.header.patientCode); })) {
        showUnread(input(edit).source);
        return;
    }
    const auto &proposal = finding.proposal;
    if (proposal)
        showStored(edit, proposal->text);
    Input &of = input(edit);
    if (proposal && !proposal->stored.isEmpty() && proposal->date.isValid()) {
        QString source = phrase.arg(jet::slashedDate(proposal->date));
        // What was rounded is shown as it was.
        if (const auto stored = jet::numberFromText(proposal->stored);
            stored && *stored != jet::leadingNumber(proposal->text))
            source += QStringLiteral(": ") + proposal->stored;
        showSource(of.source, source);
    }
    FindingRemarks remarks = findingRemarks(finding, edit->unit(), m_state.clock.today());
    of.found = std::move(remarks.lines);
    of.mustBeSeen = remarks.mustBeSeen;
    refreshRemarks();
}

void PatientInputForm::showSource(QLabel *label, const QString &source)
{
    label->setText(source);
    label->setVisible(!source.isEmpty());
    label->setToolTip(source.isEmpty() ? QString() : QStringLiteral("Valore proposto: ") + source);
}

void PatientInputForm::showUnread(QLabel *label)
{
    showSource(label, QStringLiteral("non è stato possibile leggere"));
    label->setToolTip({});
}

std::optional<double> PatientInputForm::required(NumericEdit *edit, const QString &warning)
{
    if (const double number = edit->number(); number != 0)
        return number;
    m_state.prompts.warn(
        edit->isRefused() ? QStringLiteral("%1: %2.").arg(edit->accessibleName(), edit->refusal()) : warning);
    edit->setFocus();
    edit->selectAll();
    return std::nullopt;
}

QString PatientInputForm::sexText() const
{
    return m_person->lblSesso->text();
}

double PatientInputForm::ageYears() const
{
    return jet::leadingNumber(m_person->lblEta->text());
}

MaskedDateEdit *PatientInputForm::dateEdit() const
{
    return m_person->MaskEdBox1;
}

void PatientInputForm::showDate(const QString &text)
{
    m_validDate = text;
    m_person->MaskEdBox1->setDateText(text);
}

bool PatientInputForm::checkDateField()
{
    const QString typed = m_person->MaskEdBox1->dateText();
    if (typed == m_validDate)
        return true;
    if (!checkDate(typed, true, m_state.prompts))
        return false;
    showDate(withFullYear(typed));
    return true;
}

void PatientInputForm::handBack(const QString &name, const QVariant &value)
{
    m_state.settings.write(QStringLiteral("AGGIORNA_DIARIO"), QStringLiteral("PREVENZIONE"));
    m_state.result = QVariantList{name, value};
}

} // namespace clivara
