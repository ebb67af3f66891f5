// SPDX-License-Identifier: Apache-2.0
#include "problems/RicercaDiagnosi.h"

#include "chart/WorkingState.h"
#include "problems/DiagnosisAnswer.h"
#include "problems/MatchDelegate.h"
#include "ui_RicercaDiagnosi.h"
#include "values/JetValues.h"

#include <QAbstractTableModel>
#include <QKeyEvent>
#include <limits>

namespace clivara {

namespace {

constexpr QSize usualSize(800, 560);

bool movesInList(const QKeyEvent &key)
{
    switch (key.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        return true;
    case Qt::Key_Home:
    case Qt::Key_End:
        return key.modifiers() == Qt::ControlModifier;
    default:
        return false;
    }
}

// "3 diagnosi", and a hint where there is none.
QString countText(qsizetype count, const QString &searched)
{
    if (count > 0)
        return QStringLiteral("%L1 diagnosi").arg(count);
    return searched.isEmpty() ? QStringLiteral("L'archivio non ha diagnosi.")
                              : QStringLiteral("Nessuna diagnosi: provare con meno lettere.");
}

} // namespace

class DiagnosisModel : public QAbstractTableModel {
public:
    using QAbstractTableModel::QAbstractTableModel;

    void show(QList<Diagnosis> diagnoses)
    {
        beginResetModel();
        m_diagnoses = std::move(diagnoses);
        endResetModel();
    }
    const QList<Diagnosis> &diagnoses() const { return m_diagnoses; }

    int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : int(m_diagnoses.size());
    }
    int columnCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : 2; }
    QVariant data(const QModelIndex &index, int role) const override
    {
        const Diagnosis &diagnosis = m_diagnoses[index.row()];
        if (role == Qt::DisplayRole)
            return index.column() == 0 ? diagnosis.code : diagnosis.name;
        return role == Qt::ToolTipRole ? QVariant(diagnosis.name) : QVariant();
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
            return {};
        return section == 0 ? QStringLiteral("CODICE") : QStringLiteral("DIAGNOSI");
    }

private:
    QList<Diagnosis> m_diagnoses;
};

RicercaDiagnosi::RicercaDiagnosi(WorkingState &state)
    : SectionForm(QStringLiteral("RicercaDiagnosi"), state)
    , m_ui(std::make_unique<Ui::RicercaDiagnosi>())
    , m_model(new DiagnosisModel(this))
    , m_delegate(new MatchDelegate(this))
{
    m_ui->setupUi(contents());
    setWindowTitle(QStringLiteral("Ricerca diagnosi"));
    setUsualSize(usualSize);
    ReportView *const list = m_ui->ReportControl1;
    list->setModel(m_model);
    list->setItemDelegate(m_delegate);
    list->setTextColumn(1, 1);
    list->setColumns({{1000, QStringLiteral("00000.00")}, {7000, {}}});
    m_ui->txtCerca->installEventFilter(this);
    connect(m_ui->txtCerca, &QLineEdit::textChanged, this, &RicercaDiagnosi::search);
    connect(list, &ReportView::editRequested, this, &RicercaDiagnosi::choose);
    connect(m_ui->OKButton, &QPushButton::clicked, this, &RicercaDiagnosi::choose);
    connect(m_ui->CancelButton, &QPushButton::clicked, this, &RicercaDiagnosi::reject);
}

RicercaDiagnosi::~RicercaDiagnosi() = default;

void RicercaDiagnosi::load()
{
    m_chosen.reset();
    m_currentCode = m_state.settings.text(QStringLiteral("CODICE DIAGNOSI"));
    m_diagnoses.emplace(m_state.codes());
    m_ui->txtCerca->clear();
    search({});
    showCode(m_currentCode);
    m_ui->txtCerca->setFocus();
}

void RicercaDiagnosi::search(const QString &text)
{
    m_model->show(m_diagnoses->find(text, std::numeric_limits<int>::max()));
    m_delegate->setSearched(text);
    const qsizetype count = m_model->diagnoses().size();
    m_ui->lblTrovate->setText(countText(count, text.trimmed()));
    m_ui->OKButton->setEnabled(count > 0);
    if (count > 0)
        m_ui->ReportControl1->setCurrentIndex(m_model->index(0, 0));
}

// Starts the list at the diagnosis that is to be replaced.
void RicercaDiagnosi::showCode(const QString &code)
{
    const auto &all = m_model->diagnoses();
    const auto found = std::find_if(all.begin(), all.end(), [&](const Diagnosis &diagnosis) {
        return jet::sameText(diagnosis.code, code);
    });
    if (found == all.end())
        return;
    const QModelIndex index = m_model->index(int(found - all.begin()), 0);
    m_ui->ReportControl1->setCurrentIndex(index);
    m_ui->ReportControl1->scrollTo(index, QAbstractItemView::PositionAtCenter);
}

void RicercaDiagnosi::choose()
{
    const QModelIndex current = m_ui->ReportControl1->currentIndex();
    if (!current.isValid())
        return;
    m_chosen = m_model->diagnoses()[current.row()];
    unload();
}

void RicercaDiagnosi::unloading()
{
    if (m_chosen)
        writeDiagnosis(m_state.settings, {m_chosen->code, m_chosen->name});
    else
        writeDiagnosisAborted(m_state.settings, m_currentCode);
}

bool RicercaDiagnosi::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && movesInList(*static_cast<QKeyEvent *>(event))) {
        QCoreApplication::sendEvent(m_ui->ReportControl1, event);
        return true;
    }
    return SectionForm::eventFilter(watched, event);
}

} // namespace clivara
