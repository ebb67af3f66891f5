// SPDX-License-Identifier: Apache-2.0
#include "app/import/PracticeCopy.h"

#include "app/import/ImportCopy.h"
#include "app/practice/PracticeBuild.h"
#include "app/practice/PracticeReader.h"

namespace orvale {

namespace {

// Rows that are written at once, and between two reports.
constexpr qsizetype stepRows = 256;
// Below this many rows an index is kept up to date faster than it is made afterwards.
constexpr qint64 fewRows = 500;

// A table that was copied and is still to be proved.
struct Copied {
    QString role;
    dao::TableInfo definition;
    TableTally source;
};

class PracticeCopy {
public:
    PracticeCopy(const QString &from, const QString &to,
                 const std::function<void(const ImportProgress &)> &progress)
        : m_from(from)
        , m_to(to)
        , m_progress(progress)
    {
    }

    QList<TableProof> run();

private:
    void copyDatabase(PracticeReader &source, PracticeBuild &build, const QString &role);
    void copyTable(dao::Database &source, PracticeBuild &build, const QString &role,
                   const dao::TableInfo &definition);
    void copyRows(dao::Database &source, dao::Database &target, const dao::TableInfo &definition,
                  TableTally &tally, const QString &place);
    QList<TableProof> prove(const QString &folder);
    void report(const QString &table, bool proving, qint64 done, qint64 total) const;

    QString m_from, m_to;
    const std::function<void(const ImportProgress &)> &m_progress;
    std::vector<Copied> m_copied;
};

// The tables that stand in a database, without the linked ones.
QStringList ownTables(dao::Database &database)
{
    QStringList names;
    const dao::TableDefs tables = database.TableDefs();
    for (int i = 0; i < tables.Count(); ++i) {
        if (tables[i].Connect().isEmpty())
            names.append(tables[i].Name());
    }
    return names;
}

QStringList fieldsOf(const dao::TableInfo &definition)
{
    QStringList names;
    for (const dao::ColumnInfo &column : definition.columns)
        names.append(column.name);
    return names;
}

qint64 countRows(dao::Database &database, const QString &table)
{
    const auto row = database.OpenRecordset(QStringLiteral("SELECT count(*) FROM [%1]").arg(table),
                                            dao::RecordsetType::Snapshot);
    return row->Fields(0).Value().toLongLong();
}

void PracticeCopy::report(const QString &table, bool proving, qint64 done, qint64 total) const
{
    if (m_progress)
        m_progress({table, proving, done, total, 0, 0});
}

void PracticeCopy::copyRows(dao::Database &source, dao::Database &target, const dao::TableInfo &definition,
                            TableTally &tally, const QString &place)
{
    const qint64 total = countRows(source, definition.name);
    const QStringList fields = fieldsOf(definition);
    dao::BulkInsert insert(target, definition.name, fields);
    dao::BulkReader reader(source, definition.name, fields);
    QList<QVariantList> rows;
    const auto write = [&] {
        insert.addRows(rows, [&](qsizetype, const dao::Error &error) {
            throw UserError(QStringLiteral("Una riga della tabella %1 non si può copiare: %2")
                                .arg(place, error.text().simplified()));
        });
        rows.clear();
        report(place, false, tally.rows(), total);
    };
    while (reader.next()) {
        QVariantList row;
        for (int i = 0; i < fields.size(); ++i)
            row.append(reader.value(i));
        tally.add([&](int i) -> const QVariant & { return row[i]; });
        rows.append(row);
        if (rows.size() >= stepRows)
            write();
    }
    write();
}

void PracticeCopy::copyTable(dao::Database &source, PracticeBuild &build, const QString &role,
                             const dao::TableInfo &definition)
{
    dao::BulkLoad &load = build.load(role);
    const QString place = role + u'.' + definition.name;
    const bool hasFewRows = countRows(source, definition.name) < fewRows;
    dao::Transaction transaction(build.practice().engine().DefaultWorkspace());
    load.createTable(definition.name, definition.columns, {});
    const auto createIndexes = [&](bool unique) {
        for (const dao::IndexInfo &index : definition.indexes) {
            if ((index.unique || index.primary) == unique)
                createIndexInto(load, definition.name, index);
        }
    };
    createIndexes(true);
    if (hasFewRows)
        createIndexes(false);
    Copied copied{role, definition, TableTally(definition.columns)};
    copyRows(source, build.database(role), definition, copied.source, place);
    if (!hasFewRows)
        createIndexes(false);
    if (const qint64 number = dao::lastAutoNumber(source, definition.name); number > 0)
        load.setLastAutoNumber(definition.name, number);
    transaction.commit();
    m_copied.push_back(std::move(copied));
}

void PracticeCopy::copyDatabase(PracticeReader &source, PracticeBuild &build, const QString &role)
{
    dao::Database &database = source.database(role);
    const QStringList names = ownTables(database);
    for (const QString &name : names)
        copyTable(database, build, role, dao::TableInfo(*database.catalog().table(name)));
}

// Reads the finished copy through a connection of its own.
QList<TableProof> PracticeCopy::prove(const QString &folder)
{
    PracticeReader target(folder, m_to);
    QList<TableProof> proofs;
    for (const Copied &copied : m_copied) {
        QList<PlannedColumn> columns;
        for (const dao::ColumnInfo &column : copied.definition.columns)
            columns.append({column, 0, false});
        const QString place = copied.role + u'.' + copied.definition.name;
        const qint64 rows = copied.source.rows();
        const TableTally tally = tallyOf(target.database(copied.role), copied.definition.name, columns,
                                         [&](qint64 done) { report(place, true, done, rows); });
        TableProof proof;
        proof.database = copied.role;
        proof.table = copied.definition.name;
        proof.declared = proof.read = rows;
        proof.written = tally.rows();
        proof.agrees = true;
        compareColumns(proof, fieldsOf(copied.definition), copied.source, tally);
        if (!proof.agrees)
            throw UserError(
                QStringLiteral("La copia non è uguale all'originale nella tabella %1 (righe %2 e %3): "
                               "non ne è rimasto nulla.")
                    .arg(place)
                    .arg(proof.read)
                    .arg(proof.written));
        proofs.append(proof);
    }
    return proofs;
}

QList<TableProof> PracticeCopy::run()
{
    Practice::open(m_from); // says what is wrong with it, and brings its tables to this version
    PracticeReader source(practicePath(m_from), m_from);
    PracticeBuild build(m_to, PracticeBuild::Existing::Refused, PracticeBuild::Tables::None);
    for (const PracticeFile &file : practiceFiles())
        copyDatabase(source, build, file.database);
    build.finish();
    QList<TableProof> proofs = prove(build.folder());
    report({}, true, 0, 0); // the last chance to give up
    build.place();
    return proofs;
}

} // namespace

QList<TableProof> copyPractice(const QString &from, const QString &to,
                               const std::function<void(const ImportProgress &)> &progress)
{
    try {
        return PracticeCopy(from, to, progress).run();
    } catch (const dao::Error &error) {
        throw UserError(QStringLiteral("L'archivio %1 non si può copiare in %2: %3")
                            .arg(shownPractice(from), shownPractice(to), error.text().simplified()));
    }
}

} // namespace orvale
