// SPDX-License-Identifier: Apache-2.0
#include "app/practice/Schema.h"
#include "PracticeFixture.h"

#include <set>

namespace {

using orvale::Practice;
using orvale::Schema;
using orvale::SchemaFile;

struct DictionaryField {
    QString database;
    QString table;
    QString field;
    QString type;
    QString primaryKey;
    QString index;
};

// The field list that all programs of the practice agree on.
QList<DictionaryField> dictionary()
{
    QFile file(QStringLiteral(APP_TESTS_FOLDER "/dictionary.tsv"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QList<DictionaryField> fields;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    for (const QString &line : lines.mid(1)) {
        const QStringList cells = line.split(u'\t');
        fields.append({cells.at(0), cells.at(1), cells.at(2), cells.at(3), cells.value(4), cells.value(5)});
    }
    return fields;
}

QString typeText(const dao::ColumnInfo &column)
{
    switch (column.type) {
    case dao::FieldType::Boolean:
        return QStringLiteral("boolean");
    case dao::FieldType::Integer:
        return QStringLiteral("integer");
    case dao::FieldType::Long:
        return QStringLiteral("long");
    case dao::FieldType::AutoNumber:
        return QStringLiteral("autonumber");
    case dao::FieldType::Double:
        return QStringLiteral("double");
    case dao::FieldType::Date:
        return QStringLiteral("datetime");
    case dao::FieldType::Text:
        return QStringLiteral("text(%1)").arg(column.size);
    case dao::FieldType::Memo:
        return QStringLiteral("memo");
    case dao::FieldType::Guid:
        return QStringLiteral("guid");
    default:
        return QStringLiteral("?");
    }
}

dao::Database &databaseOf(const Practice &practice, const QString &name)
{
    const clivara::HostEnvironment &environment = practice.environment();
    const QMap<QString, dao::Database *> databases{
        {"clinical", environment.clinical.get()}, {"codes", environment.codes.get()},
        {"third", environment.third.get()},       {"doctors", environment.doctors.get()},
        {"local", environment.local.get()},       {"events", environment.events.get()}};
    return *databases.value(name);
}

// "table.index#position.field", with a star for the primary key.
std::set<std::string> indexParts(const dao::TableDef &table)
{
    std::set<std::string> parts;
    for (const dao::IndexInfo &index : table.Indexes()) {
        for (int i = 0; i < index.fields.size(); ++i)
            parts.insert(QStringLiteral("%1%2#%3.%4")
                             .arg(index.primary ? QStringLiteral("*") : QString(), index.name)
                             .arg(i + 1)
                             .arg(index.fields.at(i))
                             .toStdString());
    }
    return parts;
}

class SchemaTest : public PracticeFixture {
protected:
    static Schema withVersion2(const QString &sql)
    {
        QList<SchemaFile> files;
        for (const QString database : {"clinical", "codes", "third", "doctors", "events"}) {
            QFile file(QStringLiteral(":/schema/0001_%1.sql").arg(database));
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            files.append({1, database, QString::fromUtf8(file.readAll())});
        }
        files.append({2, "clinical", sql});
        return Schema(files);
    }

    static int count(Practice &practice, const QString &table)
    {
        return practice.environment()
            .clinical->OpenRecordset(QStringLiteral("SELECT count(*) FROM %1").arg(table))
            ->Fields(0)
            .Value()
            .toInt();
    }
};

TEST_F(SchemaTest, CreatesTheTablesOfTheDictionary)
{
    const auto practice = Practice::create(path("p"));
    QMap<QString, QStringList> tables;
    QMap<QString, QList<DictionaryField>> fields;
    for (const DictionaryField &field : dictionary()) {
        const QString key = field.database + u'.' + field.table;
        fields[key].append(field);
    }
    ASSERT_EQ(fields.size(), 35);
    for (auto it = fields.begin(); it != fields.end(); ++it) {
        SCOPED_TRACE(it.key().toStdString());
        const DictionaryField &first = it.value().first();
        tables[first.database].append(first.table);
        const dao::TableDef table = databaseOf(*practice, first.database).TableDefs()[first.table];
        EXPECT_EQ(table.Name(), first.table);
        const QList<dao::ColumnInfo> columns = table.Fields();
        ASSERT_EQ(columns.size(), it.value().size());
        std::set<std::string> indexes;
        for (int i = 0; i < columns.size(); ++i) {
            const DictionaryField &field = it.value().at(i);
            EXPECT_EQ(columns.at(i).name.toStdString(), field.field.toStdString());
            EXPECT_EQ(typeText(columns.at(i)).toStdString(), field.type.toStdString())
                << field.field.toStdString();
            if (!field.primaryKey.isEmpty())
                indexes.insert((u'*' + field.primaryKey + u'.' + field.field).toStdString());
            if (!field.index.isEmpty())
                indexes.insert((field.index + u'.' + field.field).toStdString());
        }
        EXPECT_EQ(indexParts(table), indexes);
    }
    tables["clinical"].append("orvale_properties");
    for (const orvale::PracticeFile &file : orvale::practiceFiles()) {
        const dao::TableDefs found = databaseOf(*practice, file.database).TableDefs();
        int own = 0;
        for (int i = 0; i < found.Count(); ++i)
            own += found[i].Connect().isEmpty();
        EXPECT_EQ(own, tables.value(file.database).size()) << file.database.toStdString();
        EXPECT_EQ(found.Count() - own, file.database == "local" ? 8 : 0) << "what the lists join";
    }
}

TEST_F(SchemaTest, SplitsFilesIntoStatements)
{
    EXPECT_EQ(orvale::schemaStatements("-- A comment; with a semicolon;\nCREATE TABLE t (\n    a LONG\n);\n\n"
                                       "UPDATE t SET a = ';' & a;\nDROP TABLE t"),
              (QStringList{"CREATE TABLE t (\n    a LONG\n)", "UPDATE t SET a = ';' & a", "DROP TABLE t"}));
}

TEST_F(SchemaTest, UpgradesAnOlderPracticeAndKeepsItsRows)
{
    Practice::build(path("p"), [](Practice &practice) {
        practice.environment().clinical->Execute("INSERT INTO ESAMI (tipo_esa, descr_esa) VALUES (1, 'x')");
    });
    const Schema schema = withVersion2("ALTER TABLE ESAMI ADD COLUMN sigla TEXT(5);\n"
                                       "UPDATE ESAMI SET sigla = 'L';\nCREATE TABLE nuova (a LONG);");
    {
        const auto practice = Practice::open(path("p"), schema);
        EXPECT_EQ(practice->property("schema_version"), "2");
        const auto row = practice->environment().clinical->OpenRecordset("SELECT * FROM ESAMI");
        EXPECT_EQ(row->Fields("descr_esa").text(), "x");
        EXPECT_EQ(row->Fields("sigla").text(), "L");
        EXPECT_EQ(count(*practice, "nuova"), 0);
    }
    // The upgraded practice opens again as it is, and not with the program of before.
    EXPECT_EQ(refusal([&] { Practice::open(path("p"), schema); }), "");
    EXPECT_NE(refusal([&] { Practice::open(path("p")); }).find("versione più nuova (2)"), std::string::npos);
}

TEST_F(SchemaTest, UndoesAnUpgradeThatFailsOrLosesRows)
{
    Practice::build(path("p"), [](Practice &practice) {
        practice.environment().clinical->Execute("INSERT INTO ESAMI (tipo_esa, descr_esa) VALUES (1, 'x')");
    });
    const struct {
        const char *sql;
        const char *reason;
    } cases[] = {
        {"ALTER TABLE ESAMI ADD COLUMN sigla TEXT(5);\nDELETE * FROM ESAMI;",
         "ESAMI aveva 1 righe e ne avrebbe 0"},
        {"INSERT INTO ESAMI (tipo_esa) VALUES (2);", "ESAMI aveva 1 righe e ne avrebbe 2"},
        {"DROP TABLE ESAMI;", "ESAMI aveva 1 righe"},
        {"CREATE TABLE nuova (a LONG);\nCREATE TABLE nuova (a LONG);", "nuova"},
        {"CREATE TABLE nuova (a LONG);\nSELEC 1;", "non si possono preparare"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.sql);
        const std::string text = refusal([&] { Practice::open(path("p"), withVersion2(c.sql)); });
        EXPECT_NE(text.find(c.reason), std::string::npos) << text;
        const auto practice = Practice::open(path("p"));
        EXPECT_EQ(practice->property("schema_version"), "1");
        EXPECT_EQ(count(*practice, "ESAMI"), 1);
        EXPECT_FALSE(practice->environment().clinical->TableDefs().contains("nuova"));
        EXPECT_EQ(practice->environment().clinical->TableDefs()["ESAMI"].Fields().size(), 2);
    }
}

} // namespace
