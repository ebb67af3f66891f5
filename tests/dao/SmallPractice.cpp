// SPDX-License-Identifier: Apache-2.0
#include "dao/SmallPractice.h"

#include "dao/native/Connection.h"
#include "dao/postgres/PostgresDialect.h"
#include "dao/sqlite/SqliteDialect.h"
#include "jetsql/Error.h"
#include "server/TestEngine.h"
#include "values/JetValues.h"

#include <gtest/gtest.h>

using dao::FieldType;

namespace {

struct Column {
    const char *name;
    FieldType type;
    int size = 0;
};

const std::pair<const char *, std::vector<Column>> schema[] = {
    {"one",
     {{"n", FieldType::Long},
      {"empty", FieldType::Text, 50},
      {"nodate", FieldType::Date},
      {"nonumber", FieldType::Long}}},
    {"Archivio",
     {{"cod_paz", FieldType::Long},
      {"cognome", FieldType::Text, 50},
      {"data_nasc", FieldType::Date},
      {"peso", FieldType::Double},
      {"attivo", FieldType::Boolean},
      {"note", FieldType::Memo},
      {"idRowGuid", FieldType::Guid}}},
    {"RIEPIL",
     {{"COD_PAZ", FieldType::Long},
      {"DA_PRE", FieldType::Date},
      {"MINSAN", FieldType::Text, 9},
      {"TIPO", FieldType::Integer},
      {"num_conf", FieldType::Byte},
      {"COD_PRE", FieldType::Text, 9}}},
    {"RIEPIL2",
     {{"cod_rie", FieldType::Text, 9},
      {"codice", FieldType::Text, 12},
      {"unita", FieldType::Text, 20},
      {"tipo", FieldType::Integer}}},
    {"VISITAPROBL",
     {{"idVisitaProbl", FieldType::AutoNumber},
      {"cod_paz", FieldType::Long},
      {"id_Probl", FieldType::Long},
      {"datareg", FieldType::Date},
      {"sintomo", FieldType::Text, 5},
      {"urgente", FieldType::Boolean}}},
    {"PROBLEMS",
     {{"idProblems", FieldType::Long}, {"cod_paz", FieldType::Long}, {"descr_mal", FieldType::Text, 100}}},
};

// Yes and No stand for the engine's own literals.
const std::pair<const char *, const char *> content[] = {
    {"one", "(1, NULL, NULL, NULL)"},
    {"Archivio",
     "(1, 'Rossi', '1950-03-07 00:00:00', 70.5, Yes, NULL, "
     "'{00000000-0000-0000-0000-00000000AB01}'),"
     " (2, 'D''Angelo', '1980-12-31 00:00:00', NULL, No, '', NULL), (3, 'nicolò', NULL, 82, Yes, '12', NULL),"
     " (4, 'Nicolo', '2001-01-15 10:30:00', 60, No, 'testo', NULL), (5, NULL, '1950-03-07 00:00:00', 0, No, "
     "'7.5', NULL)"},
    {"RIEPIL", "(1, '2024-05-11 00:00:00', 'L1', 1, NULL, 'A'), (1, '2024-05-11 09:00:00', "
               "'L2', 1, NULL, 'B'),"
               " (1, NULL, 'L3', 1, NULL, 'C'), (1, '2024-01-02 00:00:00', 'F1', 0, 2, 'A'), (2, '2023-12-31 "
               "23:59:59', "
               "'F2', 0, 3, 'a'),"
               " (2, '2024-06-01 00:00:00', 'l1', 1, NULL, NULL)"},
    {"RIEPIL2", "('L1', '90.14.3', '210', 1), ('L2', '90.14.3', ' 198,5', 2), ('L3', "
                "'90.14.3', '', 3),"
                " ('L1', '90.43.2', '95', 1), ('X9', '90.14.1', NULL, 1)"},
    {"VISITAPROBL", "(1, 1, 10, '2024-05-11 00:00:00', 'A', No), (2, 1, NULL, '2024-03-01 "
                    "00:00:00', NULL, Yes),"
                    " (3, 1, -1, '2024-04-01 08:30:00', 'b', No), (4, 2, 99, NULL, '', No)"},
    {"PROBLEMS", "(10, 1, 'Ipertensione'), (11, 1, 'Diabete'), (12, 2, 'Asma')"},
};

const struct {
    const char *table;
    const char *name;
    const char *field;
} indexes[] = {{"RIEPIL", "riepil_date", "DA_PRE"},
               {"Archivio", "archivio_name", "cognome"},
               {"RIEPIL2", "riepil2_code", "codice"}};

QString shown(const QVariant &value)
{
    if (value.isNull())
        return QStringLiteral("Null");
    if (value.typeId() == QMetaType::Bool)
        return value.toBool() ? QStringLiteral("-1") : QStringLiteral("0");
    if (value.typeId() == QMetaType::Double)
        return clivara::jet::numberText(value.toDouble());
    return value.toString();
}

} // namespace

SmallPractice::SmallPractice()
{
    static int made = 0;
    const QString name =
        testengine::databaseName(m_folder.path(), QStringLiteral("small%1.sqlite").arg(++made));
    m_workspace = m_engine.CreateWorkspace();
    m_database = m_workspace->CreateDatabase(name);
    const QString schemaName = dialect().identifier(m_database->nativeSchema());
    dao::Transaction transaction(*m_workspace);
    for (const auto &[tableName, columns] : schema) {
        dao::TableInfo table;
        table.name = QString::fromLatin1(tableName);
        table.nativeName = schemaName + u'.' + dialect().identifier(table.name);
        QStringList declarations;
        for (const Column &column : columns) {
            table.columns.append({column.name, column.type, column.size, false});
            declarations.append(dialect().columnDeclaration(table.columns.last()));
        }
        declarations.append(dialect().hiddenColumns());
        nativeExec(QStringLiteral("CREATE TABLE ") + table.nativeName + QStringLiteral(" (")
                   + declarations.join(", ") + u')');
        m_tables[table.name.toLower()] = table;
    }
    for (const auto &[tableName, rows] : content) {
        nativeExec(QStringLiteral("INSERT INTO %1.%2 VALUES ")
                       .arg(schemaName, dialect().identifier(QString::fromLatin1(tableName)))
                   + QString::fromUtf8(rows)
                         .replace(u" Yes"_qs, u' ' + dialect().booleanLiteral(true))
                         .replace(u" No"_qs, u' ' + dialect().booleanLiteral(false)));
    }
    for (const auto &index : indexes)
        nativeExec(
            dialect().createIndex(m_database->nativeSchema(), index.table, {index.name, {index.field}}));
    transaction.commit();
    m_translator = std::make_unique<dao::Translator>(
        dialect(), *this, [] { return clivara::jet::dateTime(2024, 5, 11, 14, 30, 15); });
}

SmallPractice::~SmallPractice() = default;

const dao::Dialect &SmallPractice::dialect() const
{
    static const dao::SqliteDialect ofFiles;
    static const dao::PostgresDialect ofServer;
    return testengine::isServer() ? static_cast<const dao::Dialect &>(ofServer) : ofFiles;
}

const dao::TableInfo *SmallPractice::table(QStringView name) const
{
    const auto found = m_tables.find(name.toString().toLower());
    return found == m_tables.end() ? nullptr : &found->second;
}

dao::Translation SmallPractice::translate(const QString &sql) const
{
    return m_translator->translate(sql);
}

template <typename Work>
auto SmallPractice::natively(const QString &native, Work work) const
{
    try {
        return work(m_database->nativeConnection());
    } catch (const dao::Error &error) {
        // What the native engine does not take is a fault of the translation; what its functions do not, is not.
        if (error.number() == dao::Failed || error.number() == dao::ObjectNotFound
            || error.number() == dao::TooFewParameters)
            throw std::runtime_error((error.text() + QStringLiteral(" in ") + native).toStdString());
        throw;
    }
}

void SmallPractice::nativeExec(const QString &sql) const
{
    natively(sql, [&](dao::Connection &connection) { return connection.execute(sql); });
}

QString SmallPractice::run(const QString &native, int columns) const
{
    return natively(native, [&](dao::Connection &connection) {
        QStringList lines;
        const auto cursor = connection.select(native);
        while (cursor->next()) {
            QStringList values;
            for (int i = 0; i < columns; ++i)
                values.append(shown(cursor->value(i)));
            lines.append(values.join(u'|'));
        }
        return lines.join(u'\n');
    });
}

QString SmallPractice::rows(const QString &sql) const
{
    const dao::Translation translation = translate(sql);
    return run(translation.sql, int(translation.columns.size()));
}

int SmallPractice::execute(const QString &sql) const
{
    const QString native = translate(sql).sql;
    return natively(native, [&](dao::Connection &connection) { return connection.execute(native); });
}

QString SmallPractice::value(const QString &expression) const
{
    return rows(QStringLiteral("SELECT ") + expression + QStringLiteral(" FROM one"));
}

QString SmallPractice::ofNulls(const QString &function, const QList<FieldType> &types) const
{
    QStringList nulls;
    for (const FieldType type : types)
        nulls.append(dialect().nullLiteral(type));
    return run(QStringLiteral("SELECT %1(%2)").arg(dialect().functionName(function), nulls.join(u',')), 1);
}

QString SmallPractice::plan(const QString &sql) const
{
    if (!testengine::isServer())
        return run(QStringLiteral("EXPLAIN QUERY PLAN ") + translate(sql).sql, 4);
    // So few rows would be read through without any index.
    nativeExec("SET enable_seqscan = off");
    return run(QStringLiteral("EXPLAIN ") + translate(sql).sql, 1);
}

int SmallPractice::errorNumber(const QString &sql, QString *text) const
{
    try {
        rows(sql);
        return 0;
    } catch (const dao::Error &error) {
        if (text != nullptr)
            *text = error.text();
        return error.number();
    }
}
