// SPDX-License-Identifier: Apache-2.0
#include "app/window/ImportSummary.h"

#include "ui_ImportSummary.h"

#include <QClipboard>
#include <QDir>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QIcon>
#include <QLocale>
#include <QPushButton>

namespace orvale {

namespace {

constexpr int iconPixels = 32;

// The rest is reached by scrolling.
constexpr int mostAttentionLines = 8;

QString counted(qint64 count, const QString &one, const QString &many)
{
    return count == 1 ? one : many.arg(QLocale().toString(count));
}

QString headline(const ImportReport &report)
{
    if (report.agrees())
        return QStringLiteral("Importazione riuscita: tutto coincide con i file di origine.");
    return report.refused() > 0 ? QStringLiteral("Importazione finita, ma non tutto è stato portato.")
                                : QStringLiteral("Importazione finita, ma non tutto coincide.");
}

QString difference(const TableProof &table)
{
    QStringList columns;
    for (const ColumnProof &column : table.columns) {
        if (!column.agrees)
            columns << column.name;
    }
    if (!columns.isEmpty())
        return QStringLiteral("valori diversi dall'origine in %1").arg(columns.join(QStringLiteral(", ")));
    return QStringLiteral("%1 dichiarate dal file, %2 lette, %3 scritte")
        .arg(counted(table.declared, QStringLiteral("1 riga"), QStringLiteral("%1 righe")))
        .arg(QLocale().toString(table.read), QLocale().toString(table.written));
}

} // namespace

QStringList attentionLines(const ImportReport &report)
{
    QStringList lines;
    for (const RefusedCount &refusal : report.refusals)
        lines << QStringLiteral("%1: %2 – %3")
                     .arg(refusal.table.section(u'.', 1),
                          counted(refusal.rows, QStringLiteral("1 riga rifiutata"),
                                  QStringLiteral("%1 righe rifiutate")),
                          refusal.reason);
    for (const TableProof &table : report.tables) {
        if (!table.agrees)
            lines << QStringLiteral("%1: %2").arg(table.table, difference(table));
    }
    if (!report.tablesAgree() && !report.previousPractice.isEmpty())
        lines << QStringLiteral("L'archivio di prima è conservato in %1")
                     .arg(QDir::toNativeSeparators(report.previousPractice));
    return lines;
}

ImportSummary::ImportSummary(const ImportReport &report, QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::ImportSummary>())
{
    m_ui->setupUi(this);
    m_ui->icon->setPixmap(QIcon(report.agrees() ? QStringLiteral(":/orvale/icons/done.svg")
                                                : QStringLiteral(":/orvale/icons/warning.svg"))
                              .pixmap(iconPixels, iconPixels));
    m_ui->headline->setText(headline(report));
    m_ui->practice->setText(
        QStringLiteral("%1 in %2")
            .arg(counted(report.rows(), QStringLiteral("1 riga"), QStringLiteral("%1 righe")),
                 QDir::toNativeSeparators(report.practice)));
    const QStringList attention = attentionLines(report);
    m_ui->attention->setVisible(!attention.isEmpty());
    m_ui->attentionLines->setPlainText(attention.join(u'\n'));
    m_ui->attentionLines->setMaximumHeight((std::min<int>(attention.size(), mostAttentionLines) + 1)
                                           * fontMetrics().lineSpacing());
    m_ui->lines->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_ui->lines->setPlainText(
        (summaryLines(report) + QStringList{QString()} + tableLines(report)).join(u'\n'));
    m_ui->reportFile->setText(QDir::toNativeSeparators(report.reportFile));
    m_ui->open->setFocus();

    connect(m_ui->copy, &QPushButton::clicked, this, [this] {
        QStringList texts{m_ui->headline->text(), m_ui->practice->text()};
        if (!m_ui->attention->isHidden())
            texts << m_ui->attentionLines->toPlainText();
        texts << m_ui->lines->toPlainText();
        QGuiApplication::clipboard()->setText(texts.join(u'\n'));
    });
    connect(m_ui->open, &QPushButton::clicked, this, &QDialog::accept);
    connect(m_ui->close, &QPushButton::clicked, this, &QDialog::reject);
}

ImportSummary::~ImportSummary() = default;

} // namespace orvale
