// SPDX-License-Identifier: Apache-2.0
#include "app/import/Import.h"

#include "app/import/ImportCopy.h"
#include "app/import/ImportReport.h"
#include "app/import/ImportSource.h"
#include "app/practice/PracticeBuild.h"
#include "app/practice/PracticeReader.h"
#include "dao/postgres/PostgresAddress.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>
#include <optional>
#include <set>

namespace orvale {

namespace {

using ReportProgress = std::function<void(const ImportProgress &)>;

// A table that was copied and is still to be proved.
struct CopiedEntry {
    QString database;
    jetfile::JetTable source;
    PlannedTable plan;
    CopiedTable copied;
};

class Import {
public:
    Import(const ImportOptions &options, const ReportProgress &progress)
        : m_options(options)
        , m_progress(progress)
    {
    }

    ImportReport run();

private:
    void checkPlaces() const;
    void copyFile(SourceFile &file, PracticeBuild &build, RefusedRows &refused);
    void noteTable(const QString &database, const CopiedEntry &entry);
    void prove(const QString &folder);
    TableProof proofOf(const CopiedEntry &entry, const TableTally &target) const;
    void place(PracticeBuild &build);
    std::function<void(qint64)> stepsOf(const QString &table, qint64 rows, bool proving);

    const ImportOptions &m_options;
    const ReportProgress &m_progress;
    ImportReport m_report;
    std::vector<CopiedEntry> m_copied;
    qint64 m_done = 0, m_total = 0;
};

// Beside the practice's folder; for a practice on a server, in the folder where the program was started.
QString reportPath(const QString &practice)
{
    const QString name = isOnServer(practice) ? dao::PostgresAddress::parse(practice).database : practice;
    return QFileInfo(name + QStringLiteral(".import.tsv")).absoluteFilePath();
}

// What an import replaces must not hold what it reads.
void Import::checkPlaces() const
{
    const QString source = QFileInfo(m_options.source).canonicalFilePath();
    const QString target = QFileInfo(practicePath(m_options.target)).canonicalFilePath();
    if (!source.isEmpty() && !target.isEmpty() && (source == target || source.startsWith(target + u'/')))
        throw UserError(QStringLiteral("I file da importare sono nella cartella dell'archivio %1: "
                                       "indicare un'altra cartella.")
                            .arg(m_options.target));
    static const QRegularExpression region(QStringLiteral("^[0-9]{2}$"));
    if (!m_options.region.isEmpty() && !region.match(m_options.region).hasMatch())
        throw UserError(
            QStringLiteral("Il codice della regione ha due cifre, non «%1».").arg(m_options.region));
}

std::function<void(qint64)> Import::stepsOf(const QString &table, qint64 rows, bool proving)
{
    const qint64 before = m_done;
    return [this, table, rows, proving, before](qint64 done) {
        m_done = std::min(before + std::min(done, rows), m_total);
        if (m_progress)
            m_progress({table, proving, done, std::max(done, rows), m_done, m_total});
    };
}

void Import::copyFile(SourceFile &file, PracticeBuild &build, RefusedRows &refused)
{
    dao::Database &database = build.database(file.database);
    QStringList names; // of all tables, so far
    const dao::TableDefs tables = database.TableDefs();
    for (int i = 0; i < tables.Count(); ++i)
        names.append(tables[i].Name());
    std::set<QString> missing;
    for (const QString &name : std::as_const(names)) {
        if (!isReservedTable(name))
            missing.insert(name);
    }
    const auto knownName = [&](const QString &name) {
        const auto found = std::find_if(missing.begin(), missing.end(), [&](const QString &known) {
            return known.compare(name, Qt::CaseInsensitive) == 0;
        });
        return found == missing.end() ? QString() : *found;
    };
    const QList<jetfile::JetTable> sources = file.reader ? file.reader->tables() : QList<jetfile::JetTable>();
    for (const jetfile::JetTable &source : sources) {
        const QString known = knownName(source.name);
        CopiedEntry entry{file.database, source, {}, {0, 0, TableTally({}), {}}};
        if (known.isEmpty()) {
            entry.plan = planUnknownTable(source, names);
            names.append(entry.plan.name);
        } else {
            missing.erase(known);
            entry.plan = planKnownTable(*database.catalog().table(known), source);
        }
        const CopyTarget target{file.database, database, build.load(file.database),
                                build.practice().engine().DefaultWorkspace()};
        entry.copied = copyTable(*file.reader, source, entry.plan, target, refused,
                                 stepsOf(file.database + u'.' + entry.plan.name, source.declaredRows, false));
        noteTable(file.database, entry);
        m_copied.push_back(std::move(entry));
    }
    for (const QString &name : missing)
        m_report.missingTables.append(file.database + u'.' + name);
    if (!file.reader)
        m_report.notes.append(
            QStringLiteral("Il file %1 non c'è: le sue tabelle sono vuote.").arg(file.fileName));
    file.reader.reset();
}

void Import::noteTable(const QString &database, const CopiedEntry &entry)
{
    const QString place = database + u'.' + entry.plan.name;
    if (!entry.plan.isKnown)
        m_report.unknownTables.append(place);
    for (const QString &field : entry.plan.unknownFields)
        m_report.unknownFields.append(place + u'.' + field);
    for (const QString &field : entry.plan.missingFields)
        m_report.missingFields.append(place + u'.' + field);
    for (const QString &note : entry.plan.notes)
        m_report.notes.append(QStringLiteral("%1: %2.").arg(place, note));
    for (auto it = entry.copied.reasons.begin(); it != entry.copied.reasons.end(); ++it)
        m_report.refusals.append({place, it.key(), it.value()});
}

TableProof Import::proofOf(const CopiedEntry &entry, const TableTally &target) const
{
    const TableTally &source = entry.copied.written;
    TableProof proof;
    proof.database = entry.database;
    proof.table = entry.plan.name;
    proof.declared = entry.source.declaredRows;
    proof.read = entry.copied.read;
    proof.written = target.rows();
    proof.refused = entry.copied.refused;
    proof.agrees = proof.declared == proof.read && proof.read == proof.written + proof.refused;
    QStringList columns;
    for (const PlannedColumn &column : entry.plan.copied)
        columns.append(column.target.name);
    compareColumns(proof, columns, source, target);
    return proof;
}

// Reads the finished files through a connection of their own.
void Import::prove(const QString &folder)
{
    PracticeReader practice(folder, m_options.target);
    for (const CopiedEntry &entry : m_copied) {
        const TableTally tally =
            tallyOf(practice.database(entry.database), entry.plan.name, entry.plan.copied,
                    stepsOf(entry.database + u'.' + entry.plan.name, entry.source.declaredRows, true));
        m_report.tables.append(proofOf(entry, tally));
    }
}

void Import::place(PracticeBuild &build)
{
    m_report.practice = build.target();
    m_report.reportFile = reportPath(build.target());
    QSaveFile file(m_report.reportFile);
    const QByteArray text = reportText(m_report);
    const bool isWritten = file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.flush();
    if (!isWritten)
        throw UserError(QStringLiteral("Il rapporto %1 non si può scrivere: %2")
                            .arg(m_report.reportFile, file.errorString()));
    if (m_progress)
        m_progress({{}, true, 0, 0, m_total, m_total}); // the last chance to give up
    m_report.previousPractice = build.place(m_report.tablesAgree() ? PracticeBuild::Previous::Removed
                                                                   : PracticeBuild::Previous::Kept);
    if (!file.commit())
        m_report.notes.append(QStringLiteral("Il rapporto %1 non si può scrivere: %2")
                                  .arg(m_report.reportFile, file.errorString()));
}

ImportReport Import::run()
{
    checkPlaces();
    std::vector<SourceFile> files = openSource(m_options.source);
    PracticeBuild build(m_options.target, m_options.replace ? PracticeBuild::Existing::Replaced
                                                            : PracticeBuild::Existing::Refused);
    for (const SourceFile &file : files) {
        const auto tables = file.reader ? file.reader->tables() : QList<jetfile::JetTable>();
        for (const jetfile::JetTable &table : tables)
            m_total += 2 * table.declaredRows;
    }
    if (!m_options.region.isEmpty())
        build.practice().setProperty(QStringLiteral("region"), m_options.region);
    {
        RefusedRows refused(build.database(practiceFiles().first().database),
                            build.load(practiceFiles().first().database));
        for (SourceFile &file : files)
            copyFile(file, build, refused);
    }
    build.finish();
    prove(build.folder());
    place(build);
    return m_report;
}

} // namespace

ImportReport importPractice(const ImportOptions &options,
                            const std::function<void(const ImportProgress &)> &progress)
{
    try {
        return Import(options, progress).run();
    } catch (const jetfile::SourceError &error) {
        throw UserError(error.text());
    } catch (const dao::Error &error) {
        throw UserError(QStringLiteral("L'archivio %1 non si può creare: %2")
                            .arg(shownPractice(options.target), error.text().simplified()));
    }
}

} // namespace orvale
