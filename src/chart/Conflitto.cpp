// SPDX-License-Identifier: Apache-2.0
#include "chart/Conflitto.h"

#include "chart/TextDifference.h"
#include "chart/VersionPane.h"
#include "chart/WorkingState.h"
#include "ui_Conflitto.h"

#include <QShortcut>

namespace clivara {

namespace {

constexpr QSize largestSize(960, 640);
constexpr int outerMargin = 16;
constexpr int leastFields = 96; // so much of the fields is always seen

// Line ends as a text field has them.
QString shownText(QString text)
{
    return text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
}

QString noteOn(const ConflictField &field, bool mergesFields)
{
    const bool hereOnly = field.stored == field.read;
    const bool thereOnly = field.mine == field.read;
    if (thereOnly)
        return mergesFields
                   ? QStringLiteral("modificato solo dall'altra postazione: resta con entrambe le scelte")
                   : QStringLiteral("modificato solo dall'altra postazione");
    return hereOnly ? QStringLiteral("modificato solo qui")
                    : QStringLiteral("modificato da entrambe le postazioni");
}

QLabel *addHeading(QWidget *area, const ConflictField &field, const QString &note)
{
    auto *const heading = new QLabel(area);
    heading->setTextFormat(Qt::RichText);
    heading->setText(QStringLiteral("<b>%1</b>&nbsp;&nbsp;–&nbsp;&nbsp;%2")
                         .arg(field.caption.toHtmlEscaped(), note.toHtmlEscaped()));
    return heading;
}

} // namespace

Conflitto::Conflitto(WorkingState &state)
    : SectionForm(QStringLiteral("Conflitto"), state)
    , m_ui(std::make_unique<Ui::Conflitto>())
{
    m_ui->setupUi(contents());
    setWindowTitle(QStringLiteral("Modificato da un'altra postazione"));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    // The colours of a notice, the same on every workstation.
    QPalette colours = m_ui->avviso->palette();
    colours.setColor(QPalette::Window, QColor(0xfd, 0xf1, 0xd8));
    colours.setColor(QPalette::WindowText, QColor(0x5c, 0x43, 0x00));
    m_ui->avviso->setPalette(colours);
    m_ui->avviso->setAutoFillBackground(true);
    connect(m_ui->TieniMio, &QPushButton::clicked, this, [this] { choose(ConflictChoice::Mine); });
    connect(m_ui->TieniAltro, &QPushButton::clicked, this, [this] { choose(ConflictChoice::Theirs); });
    connect(m_ui->TornaModifica, &QPushButton::clicked, this, &Conflitto::reject);
    connect(m_ui->Successiva, &QPushButton::clicked, this, &Conflitto::showNext);
    connect(new QShortcut(Qt::Key_F3, this), &QShortcut::activated, this, &Conflitto::showNext);
}

Conflitto::~Conflitto() = default;

void Conflitto::load()
{
    const RecordConflict &conflict = call().conflict;
    m_ui->avviso->setText(QStringLiteral("⚠  ") + conflictSentence(m_state, conflict)
                          + QStringLiteral(" Niente è stato ancora sostituito."));
    m_ui->spiegazione->setText(
        QStringLiteral("Tieni il mio: si salva quanto è a sinistra%1.\nTieni l'altro: resta quanto è già "
                       "salvato, e quanto "
                       "è stato scritto qui si perde.")
            .arg(conflict.mergesFields
                     ? QStringLiteral("; dove qui non si è modificato niente resta quanto è già salvato")
                     : QStringLiteral(" al posto di quanto è già salvato")));
    showFields(conflict);
    fit();
    m_ui->TornaModifica->setFocus();
}

// As high as what there is to see.
void Conflitto::fit()
{
    const QWidget *const fields = m_ui->area->widget();
    const int width = largestSize.width() - 2 * outerMargin;
    const int wanted = fields->layout()->totalHeightForWidth(width);
    m_ui->area->setMinimumHeight(std::min(wanted, leastFields));
    const int others = layout()->totalHeightForWidth(largestSize.width())
                       - m_ui->area->sizeHint().expandedTo(m_ui->area->minimumSize()).height();
    setUsualSize({largestSize.width(), std::min(largestSize.height(), others + wanted)});
}

void Conflitto::showFields(const RecordConflict &conflict)
{
    auto *const fields = new QWidget;
    fields->setObjectName(QStringLiteral("campi"));
    auto *const grid = new QGridLayout(fields);
    grid->setContentsMargins(0, 0, 8, 0);
    grid->setHorizontalSpacing(16);
    grid->setVerticalSpacing(4);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
    m_differences.clear();
    m_shown = -1;
    for (const ConflictField &field : conflict.fields) {
        if (field.mine != field.stored)
            addField(grid, field, conflict.mergesFields);
    }
    grid->setRowStretch(grid->rowCount(), 1);
    m_ui->area->setWidget(fields);
    m_ui->Successiva->setVisible(m_differences.size() > 1);
}

void Conflitto::addField(QGridLayout *grid, const ConflictField &field, bool mergesFields)
{
    const int row = grid->rowCount();
    const int number = (row - 1) / 2;
    QWidget *const area = grid->parentWidget();
    QLabel *const heading = addHeading(area, field, noteOn(field, mergesFields));
    heading->setObjectName(QStringLiteral("campo_%1").arg(number));
    grid->addWidget(heading, row, 0, 1, 2);

    const QString mine = shownText(field.mine);
    const QString theirs = shownText(field.stored);
    QList<VersionPane::Part> inMine;
    QList<VersionPane::Part> inTheirs;
    for (const TextDifference &difference : textDifferences(mine, theirs)) {
        inMine.append({difference.firstAt, difference.firstLength});
        inTheirs.append({difference.secondAt, difference.secondLength});
    }
    const auto addPane = [&](int column, const char *name, const QString &which, const QString &text,
                             const QList<VersionPane::Part> &parts) {
        auto *const pane = new VersionPane(area);
        pane->setObjectName(QStringLiteral("%1_%2").arg(QLatin1String(name)).arg(number));
        pane->setAccessibleName(field.caption + QStringLiteral(", ") + which);
        pane->showVersion(text, parts);
        grid->addWidget(pane, row + 1, column);
        return pane;
    };
    VersionPane *const left = addPane(0, "mio", QStringLiteral("il mio"), mine, inMine);
    VersionPane *const right = addPane(1, "altro", QStringLiteral("l'altro"), theirs, inTheirs);
    for (qsizetype i = 0; i < inMine.size(); ++i)
        m_differences.append({left, right, i});
    // A long text opens where it begins to differ.
    if (!inMine.isEmpty()) {
        left->showPart(0);
        right->showPart(0);
    }
}

void Conflitto::showNext()
{
    if (m_differences.isEmpty())
        return;
    if (m_shown >= 0) {
        m_differences[m_shown].mine->mark(-1);
        m_differences[m_shown].theirs->mark(-1);
    }
    m_shown = (m_shown + 1) % m_differences.size();
    const Difference &next = m_differences[m_shown];
    for (VersionPane *const pane : {next.mine, next.theirs}) {
        pane->mark(next.part);
        pane->showPart(next.part);
    }
    m_ui->area->ensureWidgetVisible(next.mine);
}

void Conflitto::choose(ConflictChoice choice)
{
    call().choice = choice;
    reject();
}

} // namespace clivara
