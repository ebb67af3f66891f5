// SPDX-License-Identifier: Apache-2.0
#include "app/ImportCopy.h"

#include "data/engine/FieldValue.h"
#include "values/JetValues.h"

#include <algorithm>
#include <limits>

namespace orvale {

namespace {

using dao::FieldType;

// Rows between two reports.
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
    const QVariant converted = dao::fieldValue(value, target);
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
    void prepareRow(const jetfile::JetRow &row);
    void write();
    QString duplicateReason(const dao::Error &error) const;
    void createIndex(dao::IndexInfo index);

    const jetfile::JetTable &m_source;
    const PlannedTable &m_plan;
    const CopyTarget &m_target;
    RefusedRows &m_refused;
    QList<dao::IndexInfo> m_later; // created when the rows are there
    QList<bool> m_required; // by copied column
    std::unique_ptr<dao::BulkInsert> m_insert;
    QVariantList m_values;
};

bool isUnique(const dao::IndexInfo &index)
{
    return index.unique || index.primary;
}

// An index has a name of its own among all of the database's, which a table may have taken.
void TableCopy::createIndex(dao::IndexInfo index)
{
    const QString name = index.name;
    for (int i = 2;; ++i) {
        try {
            m_target.load.createIndex(m_plan.name, index);
            return;
        } catch (const dao::Error &error) {
            if (error.number() != dao::TableExists || i > 9)
                throw;
        }
        index.name = QStringLiteral("%1_%2").arg(name).arg(i);
    }
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
            createIndex(index);
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
        createIndex(index);
    const bool isNumbered =
        std::any_of(m_plan.columns.begin(), m_plan.columns.end(),
                    [](const dao::ColumnInfo &column) { return column.type == FieldType::AutoNumber; });
    // A number given to a row that is gone must not be given again: what hangs on it would hang on the new row.
    if (isNumbered && m_source.lastAutoNumber > 0
        && m_source.lastAutoNumber < std::numeric_limits<qint32>::max())
        m_target.load.setLastAutoNumber(m_plan.name, m_source.lastAutoNumber);
}

void TableCopy::prepareRow(const jetfile::JetRow &row)
{
    m_values.resize(m_plan.copied.size());
    for (int i = 0; i < m_plan.copied.size(); ++i) {
        const PlannedColumn &column = m_plan.copied[i];
        const QVariant &value = row.values[column.source];
        if (column.target.type == FieldType::Date && value.typeId() == QMetaType::Double && !column.converts)
            throw Refusal{QStringLiteral("data impossibile nel campo %1").arg(column.target.name)};
        if (value.typeId() == QMetaType::QString && !value.toString().isValidUtf16())
            throw Refusal{QStringLiteral("il campo %1 contiene mezzo carattere, che non si può scrivere")
                              .arg(column.target.name)};
        m_values[i] = column.converts ? convertedValue(value, column.target) : value;
        if (m_required[i] && isNull(m_values[i]))
            throw Refusal{
                QStringLiteral("manca il valore del campo %1, che è obbligatorio").arg(column.target.name)};
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

void TableCopy::write()
{
    if (!m_insert)
        throw Refusal{QStringLiteral("la tabella non ha campi")};
    try {
        m_insert->add(m_values);
    } catch (const dao::Error &error) {
        if (!isOfTheRow(error))
            throw;
        throw Refusal{error.number() == dao::DuplicateKey ? duplicateReason(error) : error.text()};
    }
}

CopiedTable TableCopy::run(jetfile::JetFileReader &reader, const std::function<void(qint64)> &step)
{
    QList<dao::ColumnInfo> columns;
    for (const PlannedColumn &column : m_plan.copied)
        columns.append(column.target);
    CopiedTable result{0, 0, TableTally(columns), {}};
    dao::Transaction transaction(m_target.workspace);
    define();
    jetfile::JetRow row;
    while (reader.nextRow(row)) {
        ++result.read;
        try {
            if (!row.problem.isEmpty())
                throw Refusal{row.problem};
            try {
                prepareRow(row);
            } catch (const dao::Error &error) {
                if (!isOfTheRow(error))
                    throw;
                throw Refusal{error.text()};
            }
            write();
            result.written.add([&](int i) -> const QVariant & { return m_values[i]; });
        } catch (const Refusal &refusal) {
            ++result.refused;
            m_refused.add(m_target.role, m_source, result.read, refusal.reason, row);
            const bool isListed =
                result.reasons.size() < mostReasons || result.reasons.contains(refusal.reason);
            ++result.reasons[isListed ? refusal.reason : QStringLiteral("altri motivi")];
        }
        if (result.read % stepRows == 0)
            step(result.read);
    }
    defineRest();
    m_insert.reset();
    transaction.commit();
    step(result.read);
    return result;
}

} // namespace

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
