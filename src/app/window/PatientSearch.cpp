// SPDX-License-Identifier: Apache-2.0
#include "app/window/PatientSearch.h"

#include "app/window/PatientListModel.h"
#include "ui_PatientSearch.h"

#include <QAction>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLocale>
#include <QScopedValueRollback>

namespace orvale {

namespace {

// The width, in average characters, from which on the list has room for the column beside whole names.
constexpr int sexFrom = 66;
constexpr int codeFrom = 78;
constexpr int cellMargin = 10; // beside a text in the list, as in the style sheet

} // namespace

PatientSearch::PatientSearch(const PatientIndex &index, QWidget *parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::PatientSearch>())
    , m_index(index)
{
    m_ui->setupUi(this);
    m_model = new PatientListModel(index, this);
    m_ui->results->setModel(m_model);
    m_ui->query->addAction(QIcon(QStringLiteral(":/orvale/icons/search.svg")), QLineEdit::LeadingPosition);
    m_ui->query->installEventFilter(this);
    m_ui->results->installEventFilter(this);

    QHeaderView *header = m_ui->results->horizontalHeader();
    const QFontMetrics metrics(m_ui->results->font());
    const auto width = [&](const QString &text) { return metrics.horizontalAdvance(text) + 2 * cellMargin; };
    header->setSectionResizeMode(PatientListModel::Name, QHeaderView::Stretch);
    QFont bold = m_ui->results->font();
    bold.setBold(true);
    const QString widestBirth = PatientListModel::namesakeSign() + QStringLiteral("00/00/0000");
    header->resizeSection(PatientListModel::Birth,
                          QFontMetrics(bold).horizontalAdvance(widestBirth) + 2 * cellMargin);
    header->resizeSection(PatientListModel::Age, width(QStringLiteral("100")));
    header->resizeSection(PatientListModel::Sex, width(QStringLiteral("M")));
    header->resizeSection(PatientListModel::Code, width(QStringLiteral("Codice")));

    connect(m_ui->query, &QLineEdit::textChanged, this, [this] {
        search();
        m_ui->results->scrollToTop();
    });
    // The mouse changes the selection last, keys the current row. Both are followed, since the first signal
    // may still find the old selection.
    const QItemSelectionModel *const highlight = m_ui->results->selectionModel();
    connect(highlight, &QItemSelectionModel::selectionChanged, this, &PatientSearch::followHighlight);
    connect(highlight, &QItemSelectionModel::currentRowChanged, this, &PatientSearch::followHighlight);
}

PatientSearch::~PatientSearch() = default;

void PatientSearch::refresh(QDate today, bool loading)
{
    m_today = today;
    m_loading = loading;
    search();
}

void PatientSearch::mark(qint32 code)
{
    m_marked = code;
    const QScopedValueRollback marking(m_marking, true);
    const int row = m_model->rowOf(code);
    if (row >= 0)
        m_ui->results->setCurrentIndex(m_model->index(row, 0));
    else
        m_ui->results->selectionModel()->clear();
}

void PatientSearch::followHighlight()
{
    if (m_marking)
        return;
    const QModelIndexList rows = m_ui->results->selectionModel()->selectedRows();
    const qint32 highlighted = rows.isEmpty() ? -1 : m_model->codeAt(rows.first().row());
    if (highlighted < 0 || highlighted == m_marked || highlighted == m_refused) {
        mark(m_marked); // a highlight that was taken away comes back
        return;
    }
    emit picked(highlighted);
    if (highlighted == m_marked)
        return;
    // The list may still be about to set the highlight that was refused.
    m_refused = highlighted;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_refused = -1;
            mark(m_marked);
        },
        Qt::QueuedConnection);
}

void PatientSearch::focusQuery()
{
    m_ui->query->setFocus(Qt::ShortcutFocusReason);
    m_ui->query->selectAll();
}

void PatientSearch::search()
{
    m_model->setRows(m_index.find(m_ui->query->text()), m_today);
    mark(m_marked);
    const QLocale locale;
    const QString all = locale.toString(m_index.size());
    if (m_loading)
        m_ui->count->setText(QStringLiteral("Lettura dei pazienti: %1").arg(all));
    else if (m_ui->query->text().trimmed().isEmpty())
        m_ui->count->setText(m_index.size() == 1 ? QStringLiteral("1 paziente")
                                                 : QStringLiteral("%1 pazienti").arg(all));
    else if (m_model->rowCount() == 0)
        m_ui->count->setText(QStringLiteral("Nessun paziente trovato"));
    else
        m_ui->count->setText(
            QStringLiteral("%1 di %2 pazienti").arg(locale.toString(m_model->rowCount()), all));
}

void PatientSearch::pick(int row)
{
    const qint32 code = m_model->codeAt(row);
    if (code >= 0)
        emit picked(code);
}

void PatientSearch::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    // The name needs the room more than what the panel shows as well.
    const int characters = width() / fontMetrics().averageCharWidth();
    m_ui->results->setColumnHidden(PatientListModel::Code, characters < codeFrom);
    m_ui->results->setColumnHidden(PatientListModel::Sex, characters < sexFrom);
}

bool PatientSearch::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    const int marked = m_ui->results->currentIndex().row();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        // Without a mark the first one found, but never one that nobody looked for.
        if (marked >= 0 || !m_ui->query->text().trimmed().isEmpty())
            pick(std::max(marked, 0));
        return true;
    }
    if (watched == m_ui->query) {
        if (key == Qt::Key_Down || key == Qt::Key_PageDown) {
            m_ui->results->setFocus(Qt::OtherFocusReason);
            if (marked < 0)
                m_ui->results->setCurrentIndex(m_model->index(0, 0));
            else
                QCoreApplication::sendEvent(m_ui->results, event);
            return true;
        }
        if (key == Qt::Key_Escape) {
            m_ui->query->clear();
            return true;
        }
    } else if (key == Qt::Key_Escape || (key == Qt::Key_Up && marked <= 0)) {
        focusQuery();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace orvale
