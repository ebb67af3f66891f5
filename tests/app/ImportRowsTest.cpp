// SPDX-License-Identifier: Apache-2.0
#include "ImportFixture.h"
#include "values/JetValues.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <limits>

namespace {

using jetfile::IndexKind;
using jetfile::JetColumn;
using jetfile::JetType;

class ImportRows : public ImportFixture {
protected:
    // A row of ESAMI, a table of the practice with the primary key tipo_esa and the text descr_esa.
    jetfile::JetTableWriter &exams(JetType keyType = JetType::Integer, int descriptionSize = 60)
    {
        return file().table("ESAMI", {{"tipo_esa", keyType}, {"descr_esa", JetType::Text, descriptionSize}});
    }
    Rows refusedRows() const
    {
        return rows(
            "SELECT [database], [table], [row], reason, content FROM orvale_refused_rows ORDER BY id");
    }
    static bool hasNote(const orvale::ImportReport &report, const QString &text)
    {
        return report.notes.filter(text).size() == 1;
    }
};

// Everything that a table of another host may look like.
TEST_F(ImportRows, BringsUnknownTablesAndFieldsAsTheyAre)
{
    const QString table = "Fatture d'\"oro\" [$] è select";
    auto &invoices = file().table(table, {{"order", JetType::Long},
                                          {"importo €", JetType::Currency},
                                          {"dell'\"anno\"", JetType::Date},
                                          {"pagata", JetType::Boolean},
                                          {"uid", JetType::Guid},
                                          {"foto", JetType::Ole},
                                          {"testo", JetType::Memo}});
    invoices.index("uno$due", {"order"}, IndexKind::Unique);
    const QString longText = QString(20000, u'à') + QStringLiteral("\r\n\"fine\"\t") + QChar(0xFEFF);
    const QByteArray bytes("\x00\x01\xFF", 3);
    const QString guid = "{0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9}";
    const QDateTime date = clivara::jet::dateTime(1950, 2, 3, 4, 5, 6);
    invoices.addRow({1, 123450000LL, date, true, guid, bytes, longText});
    // Null twice in a unique index is no duplicate; an empty text is no Null.
    invoices.addRow({{}, -5LL, {}, false, {}, {}, ""});
    invoices.addRow({{}, {}, {}, false, {}, {}, "b"});
    auto &known = file().table("esami", {{"altro", JetType::Double}, {"TIPO_ESA", JetType::Integer}});
    known.addRow({0.1, 7});
    const orvale::ImportReport report = import();

    EXPECT_TRUE(report.agrees()) << orvale::summaryLines(report).join(u'\n').toStdString();
    EXPECT_EQ(report.unknownTables, QStringList{QStringLiteral("clinical.") + table});
    EXPECT_EQ(report.unknownFields, QStringList{"clinical.ESAMI.altro"});
    EXPECT_EQ(report.missingFields, QStringList{"clinical.ESAMI.descr_esa"});
    EXPECT_EQ(rows("SELECT tipo_esa, descr_esa, altro FROM ESAMI"), (Rows{{7, {}, 0.1}}));

    const auto practice = orvale::Practice::open(target());
    dao::Database &clinical = *practice->environment().clinical;
    const auto set = clinical.OpenRecordset(table, dao::RecordsetType::Table);
    const Rows expected{{1, 12345.0, date, true, guid, bytes, longText},
                        {{}, -0.0005, {}, false, {}, {}, ""},
                        {{}, {}, {}, false, {}, {}, "b"}};
    for (const QVariantList &row : expected) {
        for (int i = 0; i < row.size(); ++i) {
            EXPECT_EQ(set->Fields(i).Value(), row[i]) << i;
            EXPECT_EQ(set->Fields(i).isNull(), !row[i].isValid()) << i;
        }
        set->MoveNext();
    }
    const QList<dao::IndexInfo> indexes = clinical.TableDefs()[table].Indexes();
    ASSERT_EQ(indexes.size(), 1);
    EXPECT_EQ(indexes[0].name, "uno$due");
    EXPECT_TRUE(indexes[0].unique);
}

TEST_F(ImportRows, SetsRowsAsideThatCannotBeWritten)
{
    auto &table = exams();
    table.addRow({1, "primo"});
    table.addRow({1, "doppio"});
    table.addRow({{}, "senza \"chiave\"\n"});
    table.addRow({2, QStringLiteral("mezzo ") + QChar(0xD800)});
    table.addRow({3, "ultimo"});
    auto &unique =
        file().table("altra", {{"a", JetType::Long}, {"b", JetType::Text, 10}, {"quando", JetType::Date}});
    unique.index("solo_a", {"a"}, IndexKind::Unique);
    unique.index("a_b", {"b", "a"}, IndexKind::Unique);
    unique.addRow({1, "x", {}});
    unique.addRow({1, "y", {}});
    unique.addRow({2, "x", 3e6});
    const orvale::ImportReport report = import();

    EXPECT_FALSE(report.agrees());
    EXPECT_TRUE(report.tablesAgree());
    EXPECT_EQ(report.refused(), 5);
    EXPECT_EQ(proof(report, "ESAMI").written, 2);
    EXPECT_EQ(rows("SELECT descr_esa FROM ESAMI ORDER BY tipo_esa"), (Rows{{"primo"}, {"ultimo"}}));
    const struct {
        const char *table;
        double row;
        const char *reason;
        const char *content;
    } expected[] = {
        {"ESAMI", 2, "chiave primaria tipo_esa (tipo_esa): c'è già una riga con gli stessi valori",
         R"({"tipo_esa":1,"descr_esa":"doppio"})"},
        {"ESAMI", 3, "manca il valore del campo tipo_esa, che è obbligatorio",
         R"({"tipo_esa":null,"descr_esa":"senza \"chiave\"\u000a"})"},
        {"ESAMI", 4, "il campo descr_esa contiene mezzo carattere, che non si può scrivere",
         R"({"tipo_esa":2,"descr_esa":"mezzo \ud800"})"},
        {"altra", 2, "indice univoco solo_a (a): c'è già una riga con gli stessi valori",
         R"({"a":1,"b":"y","quando":null})"},
        {"altra", 3, "data impossibile nel campo quando", R"({"a":2,"b":"x","quando":3e+06})"},
    };
    const Rows refused = refusedRows();
    ASSERT_EQ(refused.size(), std::size(expected));
    for (int i = 0; i < refused.size(); ++i) {
        EXPECT_EQ(refused[i], (QVariantList{"clinical", QString::fromUtf8(expected[i].table), expected[i].row,
                                            QString::fromUtf8(expected[i].reason),
                                            QString::fromUtf8(expected[i].content)}))
            << i << ' ' << refused[i][3].toString().toStdString() << ' '
            << refused[i][4].toString().toStdString();
        EXPECT_TRUE(QJsonDocument::fromJson(refused[i][4].toString().toUtf8()).isObject());
    }
    ASSERT_EQ(report.refusals.size(), 5);
    EXPECT_EQ(report.refusals[0].table, "clinical.ESAMI");
    EXPECT_EQ(report.refusals[0].rows, 1);
    // What is saved for others to read has no patient's data in it.
    EXPECT_FALSE(readFile("practice.import.tsv").contains("doppio"));
}

TEST_F(ImportRows, WidensFieldsAndConvertsThoseOfAnotherKind)
{
    auto &table = exams(JetType::Long, 120);
    table.addRow({100000, QString(100, u'x')});
    auto &hints = file().table("SUGGERIT", {{"COD_PRE", JetType::Text, 20}, {"OSPEDAL", JetType::Integer}});
    hints.addRow({"12", 1});
    hints.addRow({"dodici", 0});
    hints.addRow({"1.5", 0});
    hints.addRow({"13", 0});
    const orvale::ImportReport report = import();

    EXPECT_TRUE(report.tablesAgree());
    EXPECT_TRUE(hasNote(report, "il campo tipo_esa diventa Intero lungo da Intero"));
    EXPECT_TRUE(hasNote(report, "il campo descr_esa diventa Testo(120) da Testo(60)"));
    EXPECT_TRUE(hasNote(report, "il campo COD_PRE è Testo(20) e non Intero lungo"));
    EXPECT_EQ(rows("SELECT * FROM ESAMI"), (Rows{{100000, QString(100, u'x')}}));
    EXPECT_EQ(rows("SELECT * FROM SUGGERIT"), (Rows{{12, true}, {13, false}}));
    ASSERT_EQ(refusedRows().size(), 2);
    EXPECT_EQ(refusedRows()[1][3], "il valore del campo COD_PRE non è un numero intero");
    // The practice's own definition and indexes are kept beside what is new.
    const auto practice = orvale::Practice::open(target());
    const auto indexes = practice->environment().clinical->TableDefs()["ESAMI"].Indexes();
    ASSERT_EQ(indexes.size(), 1);
    EXPECT_TRUE(indexes[0].primary);
}

TEST_F(ImportRows, NeverGivesANumberTwice)
{
    // Problem 9 was the last one ever, and is deleted; the visits' table of the practice has no counter.
    auto &places =
        file().table("sedericov", {{"idSede", JetType::AutoNumber}, {"denominazione", JetType::Text, 80}});
    places.addRow({4, "a"});
    places.addRow({9, "b"});
    places.deleteRow(1);
    auto &counted = file().table("contata", {{"n", JetType::AutoNumber}, {"t", JetType::Text, 5}});
    counted.addRow({-3, "a"});
    counted.addRow({7, "b"});
    counted.setLastAutoNumber(2); // less than the highest row
    EXPECT_TRUE(import().agrees());
    const auto practice = orvale::Practice::open(target());
    const auto next = [&](const char *table, const char *field) {
        const auto set = practice->environment().clinical->OpenRecordset(table, dao::RecordsetType::Table);
        set->AddNew();
        set->Fields(field).setValue("x");
        set->Update();
        return set->LastAutoNumber();
    };
    EXPECT_EQ(next("sedericov", "denominazione"), 10);
    EXPECT_EQ(next("contata", "t"), 8);
}

TEST_F(ImportRows, TellsWhenAFileHoldsFewerRowsThanItDeclares)
{
    auto &table = exams();
    table.addRow({1, "uno"});
    table.setDeclaredRows(3);
    const orvale::ImportReport report = import();
    EXPECT_FALSE(report.agrees());
    EXPECT_EQ(report.refused(), 0);
    EXPECT_FALSE(proof(report, "ESAMI").agrees);
    EXPECT_TRUE(QDir(target()).exists());
    EXPECT_FALSE(orvale::summaryLines(report).filter("dichiarate 3, lette 1").isEmpty());
}

// Large enough for indexes that are made when the rows are there.
TEST_F(ImportRows, KeepsAllIndexesOfLargeTables)
{
    auto &pressures = file().table("esa_ob", {{"cod_paz", JetType::Long},
                                              {"data_ob", JetType::Date},
                                              {"presmax", JetType::Integer},
                                              {"presmin", JetType::Integer}});
    for (int i = 0; i < 2000; ++i)
        pressures.addRow(
            {i % 50, clivara::jet::dateTime(2000, 1, 1).addDays(i * 7 % 2000), 100 + i % 80, 70});
    EXPECT_TRUE(import().agrees());
    const auto practice = orvale::Practice::open(target());
    dao::Database &clinical = *practice->environment().clinical;
    const auto set = clinical.OpenRecordset("esa_ob", dao::RecordsetType::Table);
    set->setIndex("paz_data");
    set->Seek("=", 17);
    EXPECT_FALSE(set->NoMatch());
    EXPECT_EQ(rows("SELECT count(*) FROM esa_ob WHERE cod_paz = 17"), (Rows{{40}}));
}

} // namespace
