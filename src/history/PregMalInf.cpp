// SPDX-License-Identifier: Apache-2.0
#include "history/PregMalInf.h"

#include "chart/WorkingState.h"
#include "ui_PregMalInf.h"

#include <QCheckBox>
#include <QLineEdit>

namespace clivara {

PregMalInf::PregMalInf(WorkingState &state, std::shared_ptr<QString> loadedCode)
    : QuestionnaireForm(QStringLiteral("PregMalInf"), state, std::move(loadedCode),
                        QuestionnaireKind::Infections)
    , m_ui(std::make_unique<Ui::PregMalInf>())
{
    m_ui->setupUi(contents());
    setWindowTitle(QStringLiteral("Pregresse malattie infettive"));
    setNotices(m_ui->avvisi);
    QGroupBox *const frames[] = {m_ui->respiratorie, m_ui->altre, m_ui->epatite, m_ui->esantemi};
    static_assert(std::size(frames) == infectionFrames.size());
    for (std::size_t i = 0; i < infectionFrames.size(); ++i) {
        frames[i]->setTitle(QString::fromUtf16(infectionFrames[i].caption));
        for (const InfectionFrame::Item &item : infectionFrames[i].items) {
            if (item.caption)
                addBox(static_cast<QBoxLayout *>(frames[i]->layout()), item);
        }
        static_cast<QBoxLayout *>(frames[i]->layout())->addStretch(1);
    }
    setTabOrder(m_ui->esantemi, m_ui->Uscita);
    connect(m_ui->Uscita, &QPushButton::clicked, this, &PregMalInf::reject);
}

PregMalInf::~PregMalInf() = default;

void PregMalInf::addBox(QBoxLayout *layout, const InfectionFrame::Item &item)
{
    auto *const box = new QCheckBox(QString::fromUtf16(item.caption));
    box->setObjectName(QStringLiteral("SSCheck1_%1").arg(item.number));
    m_boxes[std::size_t(item.number)] = box;
    const int note = item.number - plainInfections;
    if (note < 0) {
        layout->addWidget(box);
        return;
    }
    auto *const edit = new QLineEdit;
    edit->setObjectName(QStringLiteral("Text1_%1").arg(note));
    edit->setMaxLength(infectionNoteLength);
    edit->setAccessibleName(QStringLiteral("Nota: ") + box->text());
    edit->setToolTip(QStringLiteral("Al più %1 caratteri").arg(infectionNoteLength));
    // Room for the whole note.
    edit->setMinimumWidth(edit->fontMetrics().averageCharWidth() * infectionNoteLength + 24);
    QPalette colours = edit->palette();
    colours.setColor(QPalette::Disabled, QPalette::Base, colours.color(QPalette::Window));
    edit->setPalette(colours);
    m_notes[std::size_t(note)] = edit;
    auto *const line = new QHBoxLayout;
    line->setSpacing(8);
    line->addWidget(box, 1);
    line->addWidget(edit);
    layout->addLayout(line);
    connect(box, &QCheckBox::clicked, this, [this, note] { askForNote(std::size_t(note)); });
}

void PregMalInf::load()
{
    const Loaded loaded = loadCode(isIntactInfectionCode);
    m_hasRow = loaded != Loaded::NoRow;
    showAnswers(loaded == Loaded::Code ? decodeInfections(*m_loadedCode) : InfectionAnswers());
    m_shownCode = encodeInfections(answers());
    adjustSize();
    m_boxes[std::size_t(plainInfections)]->setFocus();
}

void PregMalInf::showAnswers(const InfectionAnswers &answers)
{
    for (std::size_t i = 0; i < m_boxes.size(); ++i)
        m_boxes[i]->setChecked(answers.had[i]);
    for (std::size_t k = 0; k < m_notes.size(); ++k) {
        const bool had = answers.had[plainInfections + k];
        m_notes[k]->setText(had ? answers.notes[k] : QString());
        m_notes[k]->setCursorPosition(0);
        setNoteReady(k, had);
        m_hiddenNotes[k] = had ? QString() : answers.notes[k];
    }
}

InfectionAnswers PregMalInf::answers() const
{
    InfectionAnswers answers;
    for (std::size_t i = 0; i < m_boxes.size(); ++i)
        answers.had[i] = m_boxes[i]->isChecked();
    for (std::size_t k = 0; k < m_notes.size(); ++k)
        answers.notes[k] = m_hiddenNotes[k].isEmpty() ? m_notes[k]->text() : m_hiddenNotes[k];
    return answers;
}

void PregMalInf::setNoteReady(std::size_t note, bool ready)
{
    m_notes[note]->setEnabled(ready);
    m_notes[note]->setPlaceholderText(ready ? QStringLiteral("nota") : QString());
}

void PregMalInf::askForNote(std::size_t note)
{
    setNoteReady(note, true);
    if (QString &hidden = m_hiddenNotes[note]; !hidden.isEmpty())
        m_notes[note]->setText(std::exchange(hidden, {}));
}

bool PregMalInf::queryUnload()
{
    const QString code = encodeInfections(answers());
    // Whoever has only looked at nobody's chart is told nothing; what was entered there is refused by the
    // save.
    if (!m_state.header.identified && code == m_shownCode)
        return true;
    // A patient without a row gets one, also when the answers are by chance those that were loaded last.
    if (m_hasRow && !isChangedCode(code))
        return true;
    const bool isTouched = code != m_shownCode;
    const bool isNull = m_hasRow && !m_read.code;
    if (isForeign() || (isNull && !isTouched)) {
        const PromptButton answer = askForeign(isTouched);
        if (answer != PromptButton::Yes)
            return answer == PromptButton::No;
    }
    m_closesUnsaved = false;
    const WriteResult result = saveRecord(m_state, objectName(), *this);
    return result == WriteResult::Done || result == WriteResult::TheirsKept || m_closesUnsaved;
}

// Whoever has only looked stores nothing by pressing Enter, and whoever has written loses nothing by it.
PromptButton PregMalInf::askForeign(bool isTouched)
{
    const QString reason =
        m_read.code   ? QStringLiteral("La scheda registrata non è integra: le voci che non si leggono "
                                         "risultano segnate.")
        : isForeign() ? QStringLiteral("La scheda registrata è vuota: le voci segnate vengono "
                                       "dall'ultima scheda aperta, forse di un altro paziente.")
                      : QStringLiteral("La scheda registrata è vuota.");
    QList<PromptButton> buttons{PromptButton::Yes, PromptButton::No};
    if (isTouched)
        buttons.append(PromptButton::Cancel);
    return m_state.prompts.ask({QStringLiteral("Attenzione!"),
                                reason
                                    + QStringLiteral("\nRegistrare per questo paziente quanto è segnato ora? "
                                                     "Con No la scheda resta com'è."),
                                PromptIcon::Warning, buttons,
                                isTouched ? PromptButton::Cancel : PromptButton::No});
}

WriteResult PregMalInf::write()
{
    const QString code = encodeInfections(answers());
    return writeAll([&]() -> WriteResult {
        if (isCodeReplaced(code)) // whoever has only looked has nothing to save any more
            return code == m_shownCode ? WriteResult::Done : WriteResult::Changed;
        writeCode(m_state, m_kind, code, m_state.clock.local());
        return WriteResult::Done;
    });
}

void PregMalInf::tellNotSaved(WorkingState &state, int error)
{
    m_closesUnsaved =
        state.prompts.ask({QStringLiteral("Attenzione!"),
                           QStringLiteral("Salvataggio non riuscito: %1.\nChiudere senza salvare?")
                               .arg(failureReason(error)),
                           PromptIcon::Warning,
                           {PromptButton::Yes, PromptButton::No},
                           PromptButton::No})
        == PromptButton::Yes;
}

RecordConflict PregMalInf::conflict() const
{
    const auto shown = [this](const InfectionAnswers &answers) {
        QStringList names;
        QStringList notes;
        for (std::size_t i = 0; i < m_boxes.size(); ++i) {
            if (answers.had[i])
                names.append(m_boxes[i]->text());
        }
        for (std::size_t k = 0; k < m_notes.size(); ++k) {
            if (!answers.notes[k].trimmed().isEmpty())
                notes.append(m_boxes[plainInfections + k]->text() + QStringLiteral(": ")
                             + answers.notes[k].trimmed());
        }
        return QStringList{names.join(u'\n'), notes.join(u'\n')};
    };
    return conflictOf(QStringLiteral("Le malattie infettive sono state salvate"),
                      {QStringLiteral("Malattie avute"), QStringLiteral("Note")},
                      {shown(decodeInfections(m_read.code.value_or(QString()))), shown(answers()),
                       shown(decodeInfections(m_elsewhere.code.value_or(QString())))},
                      m_read.written, m_elsewhere.written);
}

void PregMalInf::keepMine()
{
    InfectionAnswers merged = answers();
    const InfectionAnswers read = decodeInfections(m_read.code.value_or(QString()));
    const InfectionAnswers stored = decodeInfections(m_elsewhere.code.value_or(QString()));
    const auto touched = merged.had ^ read.had;
    merged.had = (merged.had & touched) | (stored.had & ~touched);
    for (std::size_t k = 0; k < m_notes.size(); ++k) {
        if (merged.notes[k].trimmed() == read.notes[k].trimmed())
            merged.notes[k] = stored.notes[k];
    }
    m_read = m_elsewhere;
    m_hasRow = m_read.exists;
    m_shownCode.clear();
    showAnswers(merged);
}

} // namespace clivara
