// SPDX-License-Identifier: Apache-2.0
#include "app/import/ImportReport.h"

#include <algorithm>

namespace orvale {

namespace {

QString verdict(bool agrees)
{
    return agrees ? QStringLiteral("uguale") : QStringLiteral("diverso");
}

class TsvWriter {
public:
    void add(QStringList fields)
    {
        for (QString &field : fields) {
            for (QChar &c : field) {
                if (c < u' ')
                    c = u' ';
            }
        }
        m_text += fields.join(u'\t').toUtf8() + '\n';
    }
    QByteArray text() const { return m_text; }

private:
    QByteArray m_text;
};

void addTable(TsvWriter &tsv, const TableProof &table)
{
    const auto rows = [&](const QString &what, qint64 source, qint64 target) {
        tsv.add({what,
                 table.database,
                 table.table,
                 {},
                 QString::number(source),
                 QString::number(target),
                 verdict(source == target),
                 {}});
    };
    rows(QStringLiteral("righe dichiarate e lette"), table.declared, table.read);
    rows(QStringLiteral("righe lette, scritte e rifiutate"), table.read, table.written + table.refused);
    tsv.add({QStringLiteral("righe rifiutate"),
             table.database,
             table.table,
             {},
             QString::number(table.refused),
             {},
             {},
             {}});
    tsv.add({QStringLiteral("impronta delle righe"),
             table.database,
             table.table,
             {},
             table.sourceChecksum,
             table.targetChecksum,
             verdict(table.sourceChecksum == table.targetChecksum),
             {}});
    for (const ColumnProof &column : table.columns) {
        for (const ColumnProof::Figure &figure : column.figures)
            tsv.add({figure.name,
                     table.database,
                     table.table,
                     column.name,
                     figure.source,
                     figure.target,
                     verdict(figure.source == figure.target),
                     {}});
    }
}

// "clinical.archivio.cognome" as three cells.
QStringList placeCells(const QString &place)
{
    return {place.section(u'.', 0, 0), place.section(u'.', 1, 1), place.section(u'.', 2)};
}

QString shortList(const QStringList &names)
{
    constexpr qsizetype most = 12;
    QString text = names.mid(0, most).join(QStringLiteral(", "));
    if (names.size() > most)
        text += QStringLiteral(" e altri %1").arg(names.size() - most);
    return text;
}

} // namespace

qint64 ImportReport::rows() const
{
    qint64 count = 0;
    for (const TableProof &table : tables)
        count += table.written;
    return count;
}

qint64 ImportReport::refused() const
{
    qint64 count = 0;
    for (const TableProof &table : tables)
        count += table.refused;
    return count;
}

bool ImportReport::tablesAgree() const
{
    return std::all_of(tables.begin(), tables.end(), [](const TableProof &table) { return table.agrees; });
}

bool ImportReport::agrees() const
{
    return refused() == 0 && tablesAgree();
}

QByteArray reportText(const ImportReport &report)
{
    TsvWriter tsv;
    tsv.add({QStringLiteral("voce"), QStringLiteral("archivio"), QStringLiteral("tabella"),
             QStringLiteral("campo"), QStringLiteral("sorgente"), QStringLiteral("destinazione"),
             QStringLiteral("esito"), QStringLiteral("nota")});
    tsv.add({QStringLiteral("importazione"),
             {},
             {},
             {},
             QString::number(report.rows() + report.refused()),
             QString::number(report.rows()),
             verdict(report.agrees()),
             {}});
    const auto addPlaces = [&](const QString &what, const QStringList &places) {
        for (const QString &place : places) {
            const QStringList cells = placeCells(place);
            tsv.add({what, cells[0], cells[1], cells[2], {}, {}, {}, {}});
        }
    };
    addPlaces(QStringLiteral("tabella sconosciuta"), report.unknownTables);
    addPlaces(QStringLiteral("tabella mancante"), report.missingTables);
    addPlaces(QStringLiteral("campo sconosciuto"), report.unknownFields);
    addPlaces(QStringLiteral("campo mancante"), report.missingFields);
    for (const QString &note : report.notes)
        tsv.add({QStringLiteral("nota"), {}, {}, {}, {}, {}, {}, note});
    for (const RefusedCount &refusal : report.refusals) {
        const QStringList cells = placeCells(refusal.table);
        tsv.add({QStringLiteral("motivo di rifiuto"),
                 cells[0],
                 cells[1],
                 {},
                 QString::number(refusal.rows),
                 {},
                 {},
                 refusal.reason});
    }
    for (const TableProof &table : report.tables)
        addTable(tsv, table);
    return tsv.text();
}

QStringList tableLines(const ImportReport &report)
{
    QList<QStringList> rows{{QStringLiteral("tabella"), QStringLiteral("letti"), QStringLiteral("scritti"),
                             QStringLiteral("rifiutati"), QStringLiteral("prova")}};
    for (const TableProof &table : report.tables)
        rows.append({table.database + u'.' + table.table, QString::number(table.read),
                     QString::number(table.written), QString::number(table.refused), verdict(table.agrees)});
    QList<qsizetype> widths(5);
    for (const QStringList &row : std::as_const(rows)) {
        for (int i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], row[i].size());
    }
    QStringList lines;
    for (const QStringList &row : std::as_const(rows)) {
        QString line = row[0].leftJustified(widths[0]);
        for (int i = 1; i < 4; ++i)
            line += QStringLiteral("  ") + row[i].rightJustified(widths[i]);
        lines.append(line + QStringLiteral("  ") + row[4]);
    }
    return lines;
}

QStringList summaryLines(const ImportReport &report)
{
    QStringList lines{QStringLiteral("Righe importate: %1 (tabelle: %2) in %3.")
                          .arg(report.rows())
                          .arg(report.tables.size())
                          .arg(report.practice)};
    if (report.agrees()) {
        lines.append(QStringLiteral("La prova è riuscita: nell'archivio c'è tutto ciò che è stato letto."));
    }
    for (const TableProof &table : report.tables) {
        if (table.agrees)
            continue;
        QStringList columns;
        for (const ColumnProof &column : table.columns) {
            if (!column.agrees)
                columns.append(column.name);
        }
        QString line =
            QStringLiteral("Prova NON riuscita per la tabella %1.%2: righe dichiarate %3, lette %4, "
                           "scritte %5, rifiutate %6")
                .arg(table.database, table.table)
                .arg(table.declared)
                .arg(table.read)
                .arg(table.written)
                .arg(table.refused);
        if (!columns.isEmpty())
            line += QStringLiteral("; campi diversi: ") + shortList(columns);
        lines.append(line + u'.');
    }
    if (report.refused() > 0)
        lines.append(
            QStringLiteral("Righe rifiutate: %1, conservate con il loro contenuto in orvale_refused_rows.")
                .arg(report.refused()));
    for (const RefusedCount &refusal : report.refusals)
        lines.append(
            QStringLiteral("  %1: %2 – %3").arg(refusal.table).arg(refusal.rows).arg(refusal.reason));
    const auto addList = [&](const QString &what, const QStringList &names) {
        if (!names.isEmpty())
            lines.append(QStringLiteral("%1 (%2): %3").arg(what).arg(names.size()).arg(shortList(names)));
    };
    addList(QStringLiteral("Tabelle sconosciute, portate come sono"), report.unknownTables);
    addList(QStringLiteral("Campi sconosciuti, portati come sono"), report.unknownFields);
    addList(QStringLiteral("Tabelle mancanti nella sorgente, create vuote"), report.missingTables);
    addList(QStringLiteral("Campi mancanti nella sorgente, lasciati vuoti"), report.missingFields);
    for (const QString &note : report.notes)
        lines.append(QStringLiteral("Nota: ") + note);
    if (!report.previousPractice.isEmpty())
        lines.append(
            QStringLiteral("L'archivio precedente è conservato in %1.").arg(report.previousPractice));
    lines.append(QStringLiteral("Rapporto completo: %1").arg(report.reportFile));
    return lines;
}

} // namespace orvale
