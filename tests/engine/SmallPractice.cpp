// SPDX-License-Identifier: Apache-2.0
#include "engine/SmallPractice.h"

#include "data/engine/Error.h"
#include "data/engine/SqliteFunctions.h"
#include "values/JetValues.h"

#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <gtest/gtest.h>
#include <sqlite3.h>

using dao::FieldType;

namespace {

struct Column {
    const char *name;
    FieldType type;
    int size = 0;
};

QString nativeType(const Column &column)
{
    switch (column.type) {
    case FieldType::Double:
    case FieldType::Single:
    case FieldType::Currency:
        return QStringLiteral("REAL");
    case FieldType::Text:
    case FieldType::Memo:
    case FieldType::Guid:
        return QStringLiteral("TEXT COLLATE JET_TEXT");
    case FieldType::Date:
        return QStringLiteral("TEXT");
    default:
        return QStringLiteral("INTEGER");
    }
}

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

const char *const content[] = {
    "INSERT INTO one VALUES (1, NULL, NULL, NULL)",
    "INSERT INTO Archivio VALUES (1, 'Rossi', '1950-03-07 00:00:00', 70.5, -1, NULL, "
    "'{00000000-0000-0000-0000-00000000AB01}'),"
    " (2, 'D''Angelo', '1980-12-31 00:00:00', NULL, 0, '', NULL), (3, 'nicolò', NULL, 82, -1, '12', NULL),"
    " (4, 'Nicolo', '2001-01-15 10:30:00', 60, 0, 'testo', NULL), (5, NULL, '1950-03-07 00:00:00', 0, 0, "
    "'7.5', NULL)",
    "INSERT INTO RIEPIL VALUES (1, '2024-05-11 00:00:00', 'L1', 1, NULL, 'A'), (1, '2024-05-11 09:00:00', "
    "'L2', 1, NULL, 'B'),"
    " (1, NULL, 'L3', 1, NULL, 'C'), (1, '2024-01-02 00:00:00', 'F1', 0, 2, 'A'), (2, '2023-12-31 23:59:59', "
    "'F2', 0, 3, 'a'),"
    " (2, '2024-06-01 00:00:00', 'l1', 1, NULL, NULL)",
    "INSERT INTO RIEPIL2 VALUES ('L1', '90.14.3', '210', 1), ('L2', '90.14.3', ' 198,5', 2), ('L3', "
    "'90.14.3', '', 3),"
    " ('L1', '90.43.2', '95', 1), ('X9', '90.14.1', NULL, 1)",
    "INSERT INTO VISITAPROBL VALUES (1, 1, 10, '2024-05-11 00:00:00', 'A', 0), (2, 1, NULL, '2024-03-01 "
    "00:00:00', NULL, -1),"
    " (3, 1, -1, '2024-04-01 08:30:00', 'b', 0), (4, 2, 99, NULL, '', 0)",
    "INSERT INTO PROBLEMS VALUES (10, 1, 'Ipertensione'), (11, 1, 'Diabete'), (12, 2, 'Asma')",
    "CREATE INDEX riepil_date ON RIEPIL (DA_PRE)",
    "CREATE INDEX archivio_name ON Archivio (cognome)",
    "CREATE INDEX riepil2_code ON RIEPIL2 (codice)",
};

QString shown(const QVariant &value)
{
    if (value.isNull())
        return QStringLiteral("Null");
    if (value.typeId() == QMetaType::Double)
        return clivara::jet::numberText(value.toDouble());
    return value.toString();
}

} // namespace

SmallPractice::SmallPractice()
    : m_connection(QStringLiteral("small practice"))
    , m_dialect(dao::makeSqliteDialect())
{
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connection);
    database.setDatabaseName(QStringLiteral(":memory:"));
    if (!database.open())
        throw std::runtime_error("no SQLite database in memory");
    dao::registerSqliteFunctions(*static_cast<sqlite3 *const *>(database.driver()->handle().constData()));
    for (const auto &[name, columns] : schema) {
        dao::TableInfo table;
        table.name = QString::fromLatin1(name);
        table.nativeName = QStringLiteral("main.\"") + table.name + u'"';
        QStringList declarations;
        for (const Column &column : columns) {
            table.columns.append({QString::fromLatin1(column.name), column.type, column.size, false});
            declarations.append(QString::fromLatin1(column.name) + u' ' + nativeType(column));
        }
        nativeExec(QStringLiteral("CREATE TABLE ") + table.nativeName + QStringLiteral(" (")
                   + declarations.join(QStringLiteral(", ")) + u')');
        m_tables[table.name.toLower()] = table;
    }
    for (const char *statement : content)
        nativeExec(QString::fromUtf8(statement));
    m_translator = std::make_unique<dao::Translator>(
        *m_dialect, *this, [] { return clivara::jet::dateTime(2024, 5, 11, 14, 30, 15); });
}

SmallPractice::~SmallPractice()
{
    QSqlDatabase::database(m_connection).close();
    QSqlDatabase::removeDatabase(m_connection);
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

void SmallPractice::nativeExec(const QString &sql) const
{
    QSqlQuery query(QSqlDatabase::database(m_connection));
    if (!query.exec(sql))
        throw std::runtime_error((query.lastError().text() + QStringLiteral(" in ") + sql).toStdString());
}

QString SmallPractice::run(const QString &native, int columns) const
{
    QSqlQuery query(QSqlDatabase::database(m_connection));
    query.setForwardOnly(true);
    query.exec(native);
    QStringList lines;
    while (query.next()) {
        QStringList values;
        for (int i = 0; i < columns; ++i)
            values.append(shown(query.value(i)));
        lines.append(values.join(u'|'));
    }
    if (query.lastError().isValid()) {
        if (const auto error = dao::functionError(query.lastError().databaseText()))
            throw dao::Error(error->first, error->second, native);
        throw std::runtime_error((query.lastError().text() + QStringLiteral(" in ") + native).toStdString());
    }
    return lines.join(u'\n');
}

QString SmallPractice::rows(const QString &sql) const
{
    const dao::Translation translation = translate(sql);
    return run(translation.sql, int(translation.columns.size()));
}

int SmallPractice::execute(const QString &sql) const
{
    const dao::Translation translation = translate(sql);
    run(translation.sql, 0);
    return run(QStringLiteral("SELECT changes()"), 1).toInt();
}

QString SmallPractice::value(const QString &expression) const
{
    return rows(QStringLiteral("SELECT ") + expression + QStringLiteral(" FROM one"));
}

QString SmallPractice::plan(const QString &sql) const
{
    return run(QStringLiteral("EXPLAIN QUERY PLAN ") + translate(sql).sql, 4);
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
