// SPDX-License-Identifier: Apache-2.0
#include "regional/SheetPrint.h"

#include "chart/WorkingState.h"
#include "regional/SheetData.h"
#include "support/ui/FileChoice.h"
#include "values/JetValues.h"

#include <QBuffer>
#include <QDir>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrinter>
#include <QSaveFile>
#include <QStandardPaths>
#include <QTextDocument>

namespace clivara {

namespace {

const auto pdfFolder = QStringLiteral("CARTELLA_PDF");

// What a file's name may be anywhere.
QString fileName(QString text)
{
    for (const QChar sign : QStringLiteral("\\/:*?\"<>|"))
        text.replace(sign, u'-');
    return text.simplified();
}

constexpr int fieldsAside = 2; // fields of a group beside each other

const auto styleSheet =
    QStringLiteral("body { font-family: sans-serif; font-size: 9pt; color: #000000; }"
                   "p { margin: 0; }"
                   ".practice { font-size: 9pt; color: #333333; }"
                   ".title { font-size: 14pt; font-weight: bold; margin-top: 6px; }"
                   ".patient { font-size: 11pt; margin-top: 6px; }"
                   ".group { font-size: 10pt; font-weight: bold; background-color: #e4ebef; }"
                   ".caption { color: #444444; }"
                   ".value { font-weight: bold; }"
                   ".none { color: #777777; }"
                   ".small { font-size: 8pt; color: #555555; }");

QString lines(const QStringList &texts)
{
    QStringList escaped;
    for (const QString &text : texts) {
        if (!text.trimmed().isEmpty())
            escaped << text.trimmed().toHtmlEscaped();
    }
    return escaped.join(QStringLiteral("<br>"));
}

// Nothing was chosen or written.
bool isBlank(const SheetData &data, int field)
{
    const SheetField &described = data.layout().fields[field];
    return packedField(described, data.value(field)) == described.blank
           && described.kind != SheetFieldKind::Total;
}

QString cell(const SheetData &data, int field)
{
    const SheetField &described = data.layout().fields[field];
    const bool blank = isBlank(data, field);
    const QString shown = shownValue(data, field).trimmed();
    return QStringLiteral("<td width=\"31%\" class=\"caption\">%1</td><td width=\"19%\" class=\"%2\">%3</td>")
        .arg(described.caption.toHtmlEscaped(), blank ? QStringLiteral("none") : QStringLiteral("value"),
             shown.isEmpty() ? QStringLiteral("—") : shown.toHtmlEscaped());
}

QString wideRow(const SheetData &data, int field)
{
    const QString shown = data.value(field).trimmed();
    return QStringLiteral("<tr><td class=\"caption\">%1</td><td colspan=\"3\" class=\"value\">%2</td></tr>")
        .arg(data.layout().fields[field].caption.toHtmlEscaped(),
             shown.isEmpty() ? QStringLiteral("—") : shown.toHtmlEscaped());
}

QString groupTable(const SheetData &data, const QString &group)
{
    QString rows, row;
    int aside = 0;
    const auto endRow = [&] {
        if (aside == 0)
            return;
        rows += QStringLiteral("<tr>") + row
                + QString(QStringLiteral("<td></td><td></td>")).repeated(fieldsAside - aside)
                + QStringLiteral("</tr>");
        row.clear();
        aside = 0;
    };
    const auto &fields = data.layout().fields;
    for (int i = 0; i < fields.size(); ++i) {
        if (fields[i].group != group || !isShown(fields[i].kind))
            continue;
        if (fields[i].kind == SheetFieldKind::Text) {
            endRow();
            rows += wideRow(data, i);
            continue;
        }
        row += cell(data, i);
        if (++aside == fieldsAside)
            endRow();
    }
    endRow();
    return QStringLiteral("<table width=\"100%\" cellspacing=\"0\" cellpadding=\"2\">"
                          "<tr><td colspan=\"4\" class=\"group\">%1</td></tr>%2</table>")
        .arg(group.toHtmlEscaped(), rows);
}

} // namespace

SheetPaper sheetPaper(const WorkingState &state, qint32 number, QDate date)
{
    SheetPaper paper;
    const GroupSettings &group = state.group;
    paper.heading = {group.heading.trimmed(), group.title.trimmed(),    group.stamp1.trimmed(),
                     group.stamp2.trimmed(),  group.address1.trimmed(), group.address2.trimmed()};
    paper.heading.removeAll(QString());
    if (paper.heading.isEmpty())
        paper.heading << (state.doctor.name + u' ' + state.doctor.surname).trimmed();
    const PatientIdentity &identity = state.header.identity;
    QStringList facts;
    if (!identity.sex.isEmpty())
        facts << QStringLiteral("Sesso %1").arg(identity.sex);
    if (state.header.birthDay.isValid())
        facts << QStringLiteral("%1 il %2")
                     .arg(identity.sex == QLatin1String("F") ? QStringLiteral("Nata")
                                                             : QStringLiteral("Nato"),
                          jet::slashedDate(state.header.birthDay));
    if (!identity.fiscalCode.isEmpty())
        facts << QStringLiteral("C.F. %1").arg(identity.fiscalCode);
    paper.patient = {(identity.surname + u' ' + identity.name).trimmed(), facts.join(QStringLiteral(" · "))};
    paper.number = number;
    paper.date = date;
    return paper;
}

QString sheetHtml(const SheetData &data, const SheetPaper &paper)
{
    const SheetLayout &layout = data.layout();
    QString html =
        QStringLiteral("<html><body><p class=\"practice\">%1</p><hr>"
                       "<p class=\"title\">%2</p><p class=\"small\">Scheda n. %3 del %4</p>"
                       "<p class=\"patient\">%5</p><br>")
            .arg(lines(paper.heading), layout.listText.toHtmlEscaped(), QString::number(paper.number),
                 jet::slashedDate(paper.date), lines(paper.patient));
    for (const QString &group : layout.groups)
        html += groupTable(data, group);
    return html
           + QStringLiteral("<br><br><table width=\"100%\"><tr><td width=\"50%\" class=\"small\">Data %1</td>"
                            "<td width=\"50%\" class=\"small\">Firma del medico "
                            "______________________________</td></tr></table></body></html>")
                 .arg(jet::slashedDate(paper.date));
}

void printSheet(const SheetData &data, const SheetPaper &paper, QPagedPaintDevice &device)
{
    QTextDocument document;
    document.setDefaultStyleSheet(styleSheet);
    document.setDocumentMargin(0);
    document.setHtml(sheetHtml(data, paper));
    device.setPageMargins({}, QPageLayout::Millimeter); // the document leaves two centimetres by itself
    document.print(&device);
}

QByteArray sheetPdf(const SheetData &data, const SheetPaper &paper)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setPageSize(QPageSize(QPageSize::A4));
        writer.setTitle(data.layout().listText);
        printSheet(data, paper, writer);
    }
    return bytes;
}

void printOnPaper(const SheetData &data, const SheetPaper &paper, QWidget *window)
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageSize(QPageSize(QPageSize::A4));
    QPrintDialog dialog(&printer, window);
    if (dialog.exec() == QDialog::Accepted)
        printSheet(data, paper, printer);
}

QString savePdf(const WorkingState &state, const SheetData &data, const SheetPaper &paper, QWidget *window)
{
    const PatientIdentity &patient = state.header.identity;
    const QString name = fileName(
        QStringLiteral("%1 - %2 %3 - %4.pdf")
            .arg(data.layout().listText, patient.surname, patient.name, paper.date.toString(Qt::ISODate)));
    const QString folder = state.settings.read(pdfFolder).toString();
    const QString path =
        !folder.isEmpty()
            ? QDir(folder).filePath(name)
            : chooseFileToSave(
                window, QStringLiteral("Salva la scheda come PDF"),
                QDir(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)).filePath(name),
                QStringLiteral("PDF (*.pdf)"));
    if (path.isEmpty())
        return {};
    const QByteArray bytes = sheetPdf(data, paper);
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return path;
    state.prompts.warn(QStringLiteral("Il file %1 non si può scrivere: %2")
                           .arg(QDir::toNativeSeparators(path), file.errorString()));
    return {};
}

} // namespace clivara
