// SPDX-License-Identifier: Apache-2.0
#include "app/import/ImportCopy.h"

#include "dao/FieldValue.h"
#include "values/JetValues.h"

#include <algorithm>
#include <limits>

namespace orvale {

namespace {

using dao::FieldType;

// Rows that are written at once, and between two reports.
constexpr qint64 stepRows = 256;
// Below this many rows an index is kept up to date faster than it is dropped and made anew.
constexpr qint64 fewRows = 500;
// Reasons that are told apart for one table.
constexpr qsizetype mostReasons = 200;

// Why a row cannot be written.
struct Refusal {
    QString reason;
};

// Errors that the row is to blame for, not the disk or the database.
bool isOfTheRow(const dao::Error &error)
{
    switch (error.number()) {
    case dao::Overflow:
    case dao::TypeMismatch:
    case dao::ConversionError:
    case dao::FieldTooSmall:
    case dao::FieldRequired:
    case dao::DuplicateKey:
    case dao::RecordTooLarge:
        return true;
    default:
        return false;
    }
}

bool isNull(const QVariant &value)
{
    return !value.isValid();
}

bool isWholeNumber(FieldType type)
{
    return (type >= FieldType::Byte && type <= FieldType::Long) || type == FieldType::AutoNumber;
}

// A value of another kind, as the practice's field takes it; only if it stays the same value.
QVariant convertedValue(const QVariant &value, const dao::ColumnInfo &target)
{
    QVariant converted = dao::fieldValue(value, target);
    if (!isWholeNumber(target.type) || !converted.isValid())
        return converted;
    const double number =
        value.typeId() == QMetaType::QString     ? clivara::jet::numberFromText(value.toString()).value_or(0)
        : value.typeId() == QMetaType::QDateTime ? clivara::jet::serialFromDate(value.toDateTime())
        : value.typeId() == QMetaType::Bool      ? (value.toBool() ? -1.0 : 0.0)
                                                 : value.toDouble();
    if (number != converted.toInt())
        throw Refusal{QStringLiteral("il valore del campo %1 non è un numero intero").arg(target.name)};
    return converted;
}

// A row that was read, and what came of it so far.
struct ReadRow {
    qint64 number = 0;
    jetfile::JetRow row;
    QVariantList values; // empty when it is refused
    QString refusal;
};

class TableCopy {
public:
    TableCopy(const jetfile::JetTable &source, const PlannedTable &plan, const CopyTarget &target,
              RefusedRows &refused)
        : m_source(source)
        , m_plan(plan)
        , m_target(target)
        , m_refused(refused)
    {
    }

    CopiedTable run(jetfile::JetFileReader &reader, const std::function<void(qint64)> &step);

private:
    void define();
    void defineRest();
    void prepareRow(ReadRow &read) const;
    QVariantList valuesOf(const jetfile::JetRow &row) const;
    void write(CopiedTable &result);
    void refuse(const ReadRow &read, CopiedTable &result);
    QString duplicateReason(const dao::Error &error) const;

    const jetfile::JetTable &m_source;
    const PlannedTable &m_plan;
    const CopyTarget &m_target;
    RefusedRows &m_refused;
    QList<dao::IndexInfo> m_later; // created when the rows are there
    QList<bool> m_required; // by copied column
    std::unique_ptr<dao::BulkInsert> m_insert;
    std::vector<ReadRow> m_rows; // that wait to be written
};

bool isUnique(const dao::IndexInfo &index)
{
    return index.unique || index.primary;
}

void TableCopy::define()
{
    const bool hasFewRows = m_source.declaredRows < fewRows;
    if (m_plan.isChanged) {
        if (m_plan.isKnown)
            m_target.load.dropTable(m_plan.name);
        m_target.load.createTable(m_plan.name, m_plan.columns, {});
    }
    for (const dao::IndexInfo &index : m_plan.indexes) {
        const bool isLater = !isUnique(index) && !hasFewRows;
        if (isLater)
            m_later.append(index);
        if (m_plan.isChanged && !isLater)
            createIndexInto(m_target.load, m_plan.name, index);
        else if (!m_plan.isChanged && isLater)
            m_target.load.dropIndex(m_plan.name, index.name);
    }
    for (const PlannedColumn &column : m_plan.copied) {
        bool isRequired = column.target.required || column.target.type == FieldType::AutoNumber;
        for (const dao::IndexInfo &index : m_plan.indexes)
            isRequired |= index.primary && index.fields.contains(column.target.name, Qt::CaseInsensitive);
        m_required.append(isRequired && column.target.type != FieldType::Boolean);
    }
    QStringList fields;
    for (const PlannedColumn &column : m_plan.copied)
        fields.append(column.target.name);
    if (!fields.isEmpty())
        m_insert = std::make_unique<dao::BulkInsert>(m_target.database, m_plan.name, fields);
}

void TableCopy::defineRest()
{
    for (const dao::IndexInfo &index : std::as_const(m_later))
        createIndexInto(m_target.load, m_plan.name, index);
    const bool isNumbered =
        std::any_of(m_plan.columns.begin(), m_plan.columns.end(),
                    [](const dao::ColumnInfo &column) { return column.type == FieldType::AutoNumber; });
    // The number of a deleted row must not be given again: what refers to it would refer to the new
    // row.
    if (isNumbered && m_source.lastAutoNumber > 0
        && m_source.lastAutoNumber < std::numeric_limits<qint32>::max())
        m_target.load.setLastAutoNumber(m_plan.name, m_source.lastAutoNumber);
}

QVariantList TableCopy::valuesOf(const jetfile::JetRow &row) const
{
    QVariantList values(m_plan.copied.size());
    for (int i = 0; i < m_plan.copied.size(); ++i) {
        const PlannedColumn &column = m_plan.copied[i];
        const QVariant &value = row.values[column.source];
        if (column.target.type == FieldType::Date && value.typeId() == QMetaType::Double && !column.converts)
            throw Refusal{QStringLiteral("data impossibile nel campo %1").arg(column.target.name)};
        if (value.typeId() == QMetaType::QString && !value.toString().isValidUtf16())
            throw Refusal{QStringLiteral("il campo %1 contiene mezzo carattere, che non si può scrivere")
                              .arg(column.target.name)};
        values[i] = column.converts ? convertedValue(value, column.target) : value;
        if (m_required[i] && isNull(values[i]))
            throw Refusal{
                QStringLiteral("manca il valore del campo %1, che è obbligatorio").arg(column.target.name)};
    }
    return values;
}

void TableCopy::prepareRow(ReadRow &read) const
{
    try {
        if (!read.row.problem.isEmpty())
            throw Refusal{read.row.problem};
        if (!m_insert)
            throw Refusal{QStringLiteral("la tabella non ha campi")};
        read.values = valuesOf(read.row);
    } catch (const Refusal &refusal) {
        read.refusal = refusal.reason;
    } catch (const dao::Error &error) {
        if (!isOfTheRow(error))
            throw;
        read.refusal = error.text();
    }
}

QString TableCopy::duplicateReason(const dao::Error &error) const
{
    const dao::IndexInfo index = m_insert->brokenIndex(error);
    if (index.fields.isEmpty())
        return QStringLiteral("il numero del contatore c'è già");
    return QStringLiteral("%1 %2 (%3): c'è già una riga con gli stessi valori")
        .arg(index.primary ? QStringLiteral("chiave primaria") : QStringLiteral("indice univoco"), index.name,
             index.fields.join(QStringLiteral(", ")));
}

void TableCopy::refuse(const ReadRow &read, CopiedTable &result)
{
    ++result.refused;
    m_refused.add(m_target.role, m_source, read.number, read.refusal, read.row);
    const bool isListed = result.reasons.size() < mostReasons || result.reasons.contains(read.refusal);
    ++result.reasons[isListed ? read.refusal : QStringLiteral("altri motivi")];
}

// Writes the rows that wait. Those that are refused are kept in the order in which they were read.
void TableCopy::write(CopiedTable &result)
{
    QList<QVariantList> values;
    std::vector<ReadRow *> written;
    for (ReadRow &read : m_rows) {
        if (!read.refusal.isEmpty())
            continue;
        values.append(read.values);
        written.push_back(&read);
    }
    if (!values.isEmpty())
        m_insert->addRows(values, [&](qsizetype row, const dao::Error &error) {
            if (!isOfTheRow(error))
                throw error;
            written[size_t(row)]->refusal =
                error.number() == dao::DuplicateKey ? duplicateReason(error) : error.text();
        });
    for (const ReadRow &read : m_rows) {
        if (read.refusal.isEmpty())
            result.written.add([&](int i) -> const QVariant & { return read.values[i]; });
        else
            refuse(read, result);
    }
    m_rows.clear();
}

CopiedTable TableCopy::run(jetfile::JetFileReader &reader, const std::function<void(qint64)> &step)
{
    QList<dao::ColumnInfo> columns;
    for (const PlannedColumn &column : m_plan.copied)
        columns.append(column.target);
    CopiedTable result{0, 0, TableTally(columns), {}};
    dao::Transaction transaction(m_target.workspace);
    define();
    ReadRow read;
    while (reader.nextRow(read.row)) {
        read.number = ++result.read;
        prepareRow(read);
        m_rows.push_back(std::move(read));
        read = ReadRow();
        if (result.read % stepRows == 0) {
            write(result);
            step(result.read);
        }
    }
    write(result);
    defineRest();
    m_insert.reset();
    transaction.commit();
    step(result.read);
    return result;
}

} // namespace

void createIndexInto(dao::BulkLoad &load, const QString &table, dao::IndexInfo index)
{
    const QString name = index.name;
    for (int i = 2;; ++i) {
        try {
            load.createIndex(table, index);
            return;
        } catch (const dao::Error &error) {
            if (error.number() != dao::TableExists || i > 9)
                throw;
        }
        index.name = QStringLiteral("%1_%2").arg(name).arg(i);
    }
}

CopiedTable copyTable(jetfile::JetFileReader &reader, const jetfile::JetTable &source,
                      const PlannedTable &plan, const CopyTarget &target, RefusedRows &refused,
                      const std::function<void(qint64)> &step)
{
    return TableCopy(source, plan, target, refused).run(reader, step);
}

TableTally tallyOf(dao::Database &database, const QString &table, const QList<PlannedColumn> &columns,
                   const std::function<void(qint64)> &step)
{
    QList<dao::ColumnInfo> targets;
    QStringList fields;
    for (const PlannedColumn &column : columns) {
        targets.append(column.target);
        fields.append(column.target.name);
    }
    TableTally tally(targets);
    dao::BulkReader reader(database, table, fields);
    while (reader.next()) {
        tally.add([&](int i) { return reader.value(i); });
        if (tally.rows() % stepRows == 0)
            step(tally.rows());
    }
    step(tally.rows());
    return tally;
}

} // namespace orvale
