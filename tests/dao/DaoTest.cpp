// SPDX-License-Identifier: Apache-2.0
#include "dao/Dao.h"
#include "dao/BulkLoad.h"
#include "dao/native/Connection.h"
#include "server/TestEngine.h"
#include "values/JetValues.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

namespace jet = clivara::jet;

// The number of the error that the work fails with; 0 when it does not fail.
template <typename Work>
int errorOf(Work work)
{
    try {
        work();
    } catch (const dao::Error &error) {
        EXPECT_FALSE(error.text().isEmpty());
        return error.number();
    }
    return 0;
}

class DaoTest : public testing::Test {
protected:
    QString path(const QString &name) const { return testengine::databaseName(m_folder.path(), name); }

    std::shared_ptr<dao::Database> create(const QString &name)
    {
        return m_engine.DefaultWorkspace().CreateDatabase(path(name));
    }

    // A database with one table of every kind of field and a few rows.
    std::shared_ptr<dao::Database> patients(const QString &name = "a.sqlite")
    {
        auto database = create(name);
        database->Execute(
            "CREATE TABLE pazienti (id COUNTER, cognome TEXT(10), nascita DATETIME, peso DOUBLE, "
            "figli SMALLINT, attivo YESNO, note MEMO, uid GUID, quota CURRENCY, foto LONGBINARY)");
        database->Execute("CREATE UNIQUE INDEX cognome ON pazienti (cognome)");
        database->Execute("CREATE INDEX figli_cognome ON pazienti (figli, cognome)");
        const QList<QVariantList> rows{
            {"Rossi", 2}, {"Nicolò", 1}, {"Bianchi", QVariant()}, {"D'Amico", 2}, {"Verdi", 2}};
        dao::BulkInsert insert(*database, "PAZIENTI", {"Cognome", "figli"});
        for (const QVariantList &row : rows)
            insert.add(row);
        return database;
    }

    static QVariant scalar(dao::Database &database, const QString &sql)
    {
        return database.OpenRecordset(sql)->Fields(0).Value();
    }
    static QStringList surnames(dao::Recordset &rows)
    {
        QStringList names;
        for (; !rows.Eof(); rows.MoveNext())
            names.append(rows.Fields("cognome").text());
        return names;
    }

    QTemporaryDir m_folder;
    dao::DBEngine m_engine;
};

TEST_F(DaoTest, FilesThatAreNoDatabaseAreRefusedAndNothingIsCreated)
{
    if (testengine::isServer())
        GTEST_SKIP() << "of files";
    const auto write = [&](const char *name, const QByteArray &content) {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    };
    write("empty.sqlite", {});
    write("foreign.sqlite", "This is a letter to the doctor, not a database.");
    write("corrupt.sqlite", QByteArray("SQLite format 3\0", 16) + QByteArray(4096, 'x'));
    patients("broken.sqlite");
    {
        QFile file(path("broken.sqlite"));
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        file.seek(100); // the first page's tree, behind an intact header
        file.write(QByteArray(400, '\xff'));
    }
    const QStringList before = QDir(m_folder.path()).entryList(QDir::Files);
    EXPECT_EQ(errorOf([&] { m_engine.OpenDatabase(path("missing.sqlite")); }), dao::CannotFindFile);
    EXPECT_EQ(errorOf([&] { m_engine.OpenDatabase(m_folder.path()); }), dao::CannotFindFile);
    EXPECT_EQ(errorOf([&] { m_engine.OpenDatabase(path("empty.sqlite")); }), dao::NotADatabase);
    EXPECT_EQ(errorOf([&] { m_engine.OpenDatabase(path("foreign.sqlite")); }), dao::NotADatabase);
    EXPECT_EQ(errorOf([&] { m_engine.OpenDatabase(path("corrupt.sqlite")); }), dao::NotADatabase);
    EXPECT_EQ(errorOf([&] { m_engine.OpenDatabase(path("broken.sqlite")); }), dao::Corrupt);
    EXPECT_EQ(errorOf([&] { create("foreign.sqlite"); }), dao::TableExists);
    EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::Files), before);
}

TEST_F(DaoTest, DefinitionsAreReadBackAsTheyWereMade)
{
    const auto database = patients();
    const QList<dao::ColumnInfo> fields = database->TableDefs()["PAZIENTI"].Fields();
    using enum dao::FieldType;
    const QList<dao::FieldType> types{AutoNumber, Text, Date, Double,   Integer,
                                      Boolean,    Memo, Guid, Currency, Binary};
    ASSERT_EQ(fields.size(), types.size());
    for (int i = 0; i < types.size(); ++i)
        EXPECT_EQ(fields[i].type, types[i]) << fields[i].name.toStdString();
    EXPECT_EQ(fields[1].size, 10);
    const QList<dao::IndexInfo> indexes = database->TableDefs()["pazienti"].Indexes();
    ASSERT_EQ(indexes.size(), 2);
    EXPECT_EQ(indexes[0].name, "cognome");
    EXPECT_TRUE(indexes[0].unique);
    EXPECT_EQ(indexes[1].fields, (QStringList{"figli", "cognome"}));
    EXPECT_EQ(errorOf([&] { database->Execute("CREATE TABLE Pazienti (x LONG)"); }), dao::TableExists);
    EXPECT_EQ(errorOf([&] { database->Execute("SELECT * FROM pazienti"); }), dao::SelectNotExecuted);
    EXPECT_EQ(errorOf([&] { database->TableDefs()["nessuna"]; }), dao::ItemNotFound);
    database->Execute("DROP INDEX cognome ON pazienti");
    EXPECT_EQ(database->TableDefs()["pazienti"].Indexes().size(), 1);
    database->Execute("ALTER TABLE pazienti ADD COLUMN medico TEXT(5)");
    EXPECT_EQ(database->TableDefs()["pazienti"].Fields().last().name, "medico");
    database->Execute("DROP TABLE pazienti");
    EXPECT_EQ(database->TableDefs().Count(), 0);
}

TEST_F(DaoTest, PrimaryKeyAddedLaterTakesNoNull)
{
    const auto database = create("a.sqlite");
    database->Execute("CREATE TABLE codici (codice LONG, testo TEXT(5))");
    database->Execute("CREATE INDEX testo ON codici (testo)");
    database->Execute("INSERT INTO codici (codice, testo) VALUES (7, 'x')");
    database->Execute("CREATE UNIQUE INDEX chiave ON codici (codice) WITH PRIMARY");
    EXPECT_EQ(scalar(*database, "SELECT testo FROM codici WHERE codice = 7"), "x");
    const QList<dao::IndexInfo> indexes = database->TableDefs()["codici"].Indexes();
    ASSERT_EQ(indexes.size(), 2);
    EXPECT_TRUE(indexes[1].primary);
    EXPECT_EQ(indexes[1].name, "chiave");
    EXPECT_EQ(errorOf([&] { database->Execute("INSERT INTO codici (testo) VALUES ('y')"); }),
              dao::FieldRequired);
    EXPECT_EQ(errorOf([&] { database->Execute("INSERT INTO codici (codice) VALUES (7)"); }),
              dao::DuplicateKey);
}

TEST_F(DaoTest, AssignedValuesAreConvertedOrRefused)
{
    const auto database = patients();
    struct Case {
        const char *field;
        QVariant given;
        QVariant kept;
        int error = 0;
    };
    const QVariant null;
    const QDateTime day = jet::dateTime(2026, 11, 21);
    const QList<Case> cases{
        {"figli", 2.5, 2},
        {"figli", 3.5, 4},
        {"figli", "", null},
        {"figli", " 12 ", 12},
        {"figli", true, -1},
        {"figli", 32768, {}, dao::Overflow},
        {"figli", "dodici", {}, dao::ConversionError},
        {"peso", "72.5", 72.5},
        {"quota", 1.23456, 1.2346},
        {"nascita", day, day},
        {"nascita", "21/11/2026", day},
        {"nascita", "", null},
        {"nascita", "domani", {}, dao::ConversionError},
        {"attivo", null, false},
        {"attivo", 5, true},
        {"attivo", "no", false},
        {"cognome", "", ""},
        {"cognome", null, null},
        {"cognome", 12, "12"},
        {"cognome", QString(10, u'é'), QString(10, u'é')},
        {"cognome", QString(11, u'é'), {}, dao::FieldTooSmall},
        {"cognome", "\U0001F600\U0001F600\U0001F600\U0001F600\U0001F600x", {}, dao::FieldTooSmall},
        {"note", QString(100000, u'n'), QString(100000, u'n')},
        {"note", "Sant'Anna \"x\"\n%1", "Sant'Anna \"x\"\n%1"},
        {"uid", "{0f8fad5b-d9cb-469f-a165-70867728950e}", "{0F8FAD5B-D9CB-469F-A165-70867728950E}"},
        {"uid", "pippo", {}, dao::ConversionError},
        {"foto", QByteArray("\0\1\xff", 3), QByteArray("\0\1\xff", 3)},
    };
    for (const Case &item : cases) {
        SCOPED_TRACE(item.field + item.given.toString().left(30).toStdString());
        const auto rows = database->OpenRecordset("SELECT * FROM pazienti WHERE id = 1");
        rows->Edit();
        EXPECT_EQ(errorOf([&] { rows->Fields(item.field).setValue(item.given); }), item.error);
        if (item.error != 0)
            continue;
        rows->Update();
        EXPECT_EQ(rows->Fields(item.field).Value(), item.kept);
        EXPECT_EQ(scalar(*database, QStringLiteral("SELECT %1 FROM pazienti WHERE id = 1").arg(item.field)),
                  item.kept);
    }
}

TEST_F(DaoTest, TextsInIndexesKnowNoCaseButAccents)
{
    const auto database = patients();
    const auto add = [&](const QString &surname) {
        const auto rows = database->OpenRecordset("pazienti");
        rows->AddNew();
        rows->Fields("cognome").setValue(surname);
        rows->Update();
        return rows->LastAutoNumber();
    };
    EXPECT_EQ(errorOf([&] { add("NICOLÒ"); }), dao::DuplicateKey);
    // The server does not take the number of a row that failed back.
    const qint64 number = add("Nicolo");
    EXPECT_EQ(number, testengine::isServer() ? 7 : 6);
    const auto rows = database->OpenRecordset("pazienti", dao::RecordsetType::Table);
    rows->setIndex("COGNOME");
    rows->Seek("=", "nicolÒ");
    ASSERT_FALSE(rows->NoMatch());
    EXPECT_EQ(rows->Fields("id").Value(), 2);
    EXPECT_EQ(rows->RecordCount(), 6);
    EXPECT_EQ(errorOf([&] { rows->setIndex("nessuno"); }), dao::NotAnIndex);
}

TEST_F(DaoTest, SeekFindsByEveryOperatorAndGoesOnInIndexOrder)
{
    const auto database = patients();
    struct Case {
        const char *op;
        QVariant first;
        QVariant second;
        const char *found; // empty: no match
    };
    const QVariant null;
    const QList<Case> cases{
        {"=", 2, null, "D'Amico"},    {"=", 2, "verdi", "Verdi"}, {"=", 3, null, ""},
        {"=", null, null, "Bianchi"}, {">", 1, null, "D'Amico"},  {">", 2, "rossi", "Verdi"},
        {">", 2, null, ""},           {">=", 2, "E", "Rossi"},    {"<", 2, null, "Nicolò"},
        {"<", null, null, ""},        {"<=", 2, null, "Verdi"},   {"<", 2, "Rossi", "D'Amico"},
        {">", null, null, "Nicolò"}};
    const auto rows = database->OpenRecordset("pazienti", dao::RecordsetType::Table);
    rows->setIndex("figli_cognome");
    EXPECT_EQ(surnames(*rows), (QStringList{"Bianchi", "Nicolò", "D'Amico", "Rossi", "Verdi"}));
    for (const Case &item : cases) {
        SCOPED_TRACE(std::string(item.op) + " " + item.first.toString().toStdString() + " "
                     + item.second.toString().toStdString());
        rows->Seek(item.op, item.first, item.second);
        EXPECT_EQ(rows->NoMatch(), *item.found == '\0');
        if (rows->NoMatch())
            EXPECT_EQ(errorOf([&] { rows->Fields("cognome").Value(); }), dao::NoCurrentRecord);
        else
            EXPECT_EQ(rows->Fields("cognome").text(), item.found);
    }
    rows->Seek("=", 2);
    rows->MovePrevious();
    EXPECT_EQ(surnames(*rows), (QStringList{"Nicolò", "D'Amico", "Rossi", "Verdi"}));
    rows->Seek("=", 1);
    EXPECT_EQ(surnames(*rows), (QStringList{"Nicolò", "D'Amico", "Rossi", "Verdi"}));
    EXPECT_EQ(errorOf([&] { rows->Seek("<>", 1); }), dao::InvalidArgument);
}

TEST_F(DaoTest, MovingThroughRowsAndPastTheirEnds)
{
    const auto database = patients();
    const auto rows = database->OpenRecordset("SELECT cognome FROM pazienti ORDER BY id");
    EXPECT_EQ(rows->RecordCount(), 1);
    EXPECT_FALSE(rows->Bof());
    rows->MovePrevious();
    EXPECT_TRUE(rows->Bof());
    EXPECT_EQ(errorOf([&] { rows->MovePrevious(); }), dao::NoCurrentRecord);
    EXPECT_EQ(errorOf([&] { rows->Fields(0).Value(); }), dao::NoCurrentRecord);
    rows->MoveLast();
    EXPECT_EQ(rows->RecordCount(), 5);
    rows->MoveNext();
    EXPECT_TRUE(rows->Eof());
    EXPECT_EQ(errorOf([&] { rows->MoveNext(); }), dao::NoCurrentRecord);
    EXPECT_EQ(errorOf([&] { rows->Fields("nessuno"); }), dao::ItemNotFound);
    const auto none = database->OpenRecordset("SELECT * FROM pazienti WHERE id > 100");
    EXPECT_TRUE(none->Bof() && none->Eof());
    EXPECT_EQ(none->RecordCount(), 0);
    EXPECT_EQ(errorOf([&] { none->MoveFirst(); }), dao::NoCurrentRecord);
    EXPECT_EQ(errorOf([&] { none->Edit(); }), dao::NoCurrentRecord);
    rows->Close();
    EXPECT_EQ(errorOf([&] { rows->Eof(); }), dao::InvalidOperation);
}

TEST_F(DaoTest, EditsAreRefusedWhenTheRowChangedInBetween)
{
    const auto mine = patients();
    const auto other = m_engine.CreateWorkspace();
    const auto theirs = other->OpenDatabase(path("a.sqlite"));
    const auto rows = mine->OpenRecordset("SELECT * FROM pazienti ORDER BY id");
    EXPECT_EQ(errorOf([&] { rows->Fields("figli").setValue(1); }), dao::UpdateWithoutEdit);
    EXPECT_EQ(errorOf([&] { rows->Update(); }), dao::UpdateWithoutEdit);

    rows->Fields("cognome").Value();
    theirs->Execute("UPDATE pazienti SET peso = 80 WHERE id = 1");
    rows->Edit(); // reads the row again
    EXPECT_EQ(rows->Fields("peso").number(), 80);
    theirs->Execute("UPDATE pazienti SET note = 'nuova' WHERE id = 1");
    rows->Fields("figli").setValue(9);
    EXPECT_EQ(errorOf([&] { rows->Update(); }), dao::RecordChanged);
    EXPECT_EQ(rows->editMode(), dao::EditMode::InProgress);
    EXPECT_EQ(rows->Fields("figli").Value(), 9);
    EXPECT_EQ(scalar(*theirs, "SELECT figli FROM pazienti WHERE id = 1"), 2);
    theirs->Execute("DELETE FROM pazienti WHERE id = 1");
    EXPECT_EQ(errorOf([&] { rows->Update(); }), dao::RecordDeleted);
    EXPECT_EQ(errorOf([&] { rows->Edit(); }), dao::RecordDeleted);

    rows->MoveNext();
    rows->Edit();
    rows->Fields("cognome").setValue("ROSSI");
    rows->Update(); // the other Rossi is gone
    rows->Delete();
    EXPECT_EQ(errorOf([&] { rows->Fields("id").Value(); }), dao::RecordDeleted);
    rows->MoveNext();
    EXPECT_EQ(rows->Fields("id").Value(), 3);
    EXPECT_EQ(scalar(*theirs, "SELECT count(*) FROM pazienti"), 3);
}

TEST_F(DaoTest, FailedUpdateKeepsTheBufferAndCanBeRetried)
{
    const auto database = patients();
    database->Execute("CREATE TABLE visite (chiave LONG NOT NULL, nota TEXT(5))");
    const auto rows = database->OpenRecordset("SELECT * FROM visite");
    rows->AddNew();
    rows->Fields("nota").setValue("a");
    EXPECT_EQ(errorOf([&] { rows->Update(); }), dao::FieldRequired);
    rows->Fields("chiave").setValue(1);
    rows->Update();
    EXPECT_EQ(scalar(*database, "SELECT nota FROM visite WHERE chiave = 1"), "a");
    rows->AddNew();
    rows->CancelUpdate();
    EXPECT_EQ(rows->editMode(), dao::EditMode::None);
}

TEST_F(DaoTest, JoinedRowsUpdateOneTableAtATime)
{
    const auto database = patients();
    database->Execute("CREATE TABLE visite (id LONG, nota TEXT(20))");
    database->Execute("INSERT INTO visite (id, nota) VALUES (1, 'prima')");
    const auto rows =
        database->OpenRecordset("SELECT p.*, v.* FROM pazienti AS p INNER JOIN visite AS v ON p.id = v.id");
    EXPECT_EQ(rows->Fields("v.nota").Value(), "prima");
    EXPECT_EQ(rows->Fields("V.ID").Value(), 1);
    EXPECT_EQ(rows->Fields("cognome").SourceTable(), "pazienti");
    rows->Edit();
    rows->Fields("nota").setValue("seconda");
    rows->Update();
    EXPECT_EQ(rows->Fields("nota").Value(), "seconda");
    rows->Edit();
    rows->Fields("nota").setValue("terza");
    rows->Fields("cognome").setValue("Neri");
    EXPECT_EQ(errorOf([&] { rows->Update(); }), dao::InvalidOperation);
    EXPECT_EQ(scalar(*database, "SELECT nota FROM visite"), "seconda");
    const auto sums = database->OpenRecordset("SELECT count(*) AS n FROM pazienti");
    EXPECT_FALSE(sums->Updatable());
    EXPECT_EQ(errorOf([&] { sums->Edit(); }), dao::ReadOnly);
}

TEST_F(DaoTest, HalfReadRowsSurviveWritesAndTransactions)
{
    const auto database = create("a.sqlite");
    database->Execute("CREATE TABLE numeri (n LONG)");
    dao::Workspace &workspace = m_engine.DefaultWorkspace();
    {
        dao::Transaction transaction(workspace);
        dao::BulkInsert insert(*database, "numeri", {"n"});
        for (int i = 0; i < 1000; ++i)
            insert.add({i});
        transaction.commit();
    }
    const auto other = m_engine.CreateWorkspace();
    const auto theirs = other->OpenDatabase(path("a.sqlite"));
    const auto rows = database->OpenRecordset("SELECT n FROM numeri ORDER BY n");
    for (int i = 0; i < 10; ++i)
        rows->MoveNext();
    theirs->Execute("INSERT INTO numeri (n) VALUES (5000)"); // makes the state that is being read an old one
    {
        dao::Transaction transaction(workspace);
        database->Execute("DELETE FROM numeri");
    } // rolled back
    database->Execute("DELETE FROM numeri WHERE n < 500");
    int sum = 0;
    for (; !rows->Eof(); rows->MoveNext())
        ++sum;
    EXPECT_EQ(sum, 990);
    EXPECT_EQ(scalar(*database, "SELECT count(*) FROM numeri"), 501);
}

TEST_F(DaoTest, RowsAfterTheFirstOnesComeEachOnce)
{
    const auto database = create("a.sqlite");
    database->Execute("CREATE TABLE esami (n LONG, nota TEXT(9))");
    const auto other = m_engine.CreateWorkspace();
    const auto theirs = other->OpenDatabase(path("a.sqlite"));
    const auto fill = [&](int count) {
        database->Execute("DELETE FROM esami");
        for (int i = 0; i < count; ++i)
            database->Execute(QStringLiteral("INSERT INTO esami (n, nota) VALUES (%1, 'x')").arg(i));
    };
    const auto open = [&](const QString &order) {
        return database->OpenRecordset("SELECT n, nota FROM esami WHERE nota <> '%1 %2' ORDER BY " + order,
                                       dao::RecordsetType::Snapshot, dao::RowsWanted::First);
    };
    const auto numbers = [](dao::Recordset &rows) {
        QList<int> found;
        for (; !rows.Eof(); rows.MoveNext())
            found.append(rows.Fields("n").Value().toInt());
        return found;
    };
    const auto upTo = [](int first, int count) {
        QList<int> all;
        for (int i = first; i < count; ++i)
            all.append(i);
        return all;
    };
    for (const int count : {0, 4, 5, 6, 45}) {
        fill(count);
        EXPECT_EQ(numbers(*open("n")), upTo(0, count));
        QList<int> ofOneOrder = numbers(*open("nota")); // any of them may be the first ones
        std::sort(ofOneOrder.begin(), ofOneOrder.end());
        EXPECT_EQ(ofOneOrder, upTo(0, count));
    }

    // Whatever others do meanwhile: files keep the state that is being read, a server may show the new row.
    fill(45);
    const auto rows = open("n");
    for (int i = 0; i < 4; ++i)
        rows->MoveNext();
    theirs->Execute("DELETE FROM esami WHERE n < 2");
    theirs->Execute("INSERT INTO esami (n, nota) VALUES (-1, 'nuovo')");
    QList<int> left = numbers(*rows);
    EXPECT_LE(left.removeAll(-1), 1);
    EXPECT_EQ(left, upTo(4, 45));

    // What the same workstation does: the rows are those of before.
    fill(45);
    const auto before = open("n");
    EXPECT_FALSE(before->Eof());
    database->Execute("DELETE FROM esami");
    EXPECT_EQ(numbers(*before), upTo(0, 45));
}

TEST_F(DaoTest, ManyRowsAreWrittenAtOnceAndEachThatCannotBeIsTold)
{
    const auto database = create("a.sqlite");
    database->Execute("CREATE TABLE righe (id LONG, nome TEXT(12), nota MEMO, quando DATETIME, vero YESNO, "
                      "peso DOUBLE)");
    database->Execute("CREATE UNIQUE INDEX chiave ON righe (id)");
    const QDateTime day(QDate(1899, 12, 30), QTime(23, 59, 59), Qt::UTC);
    const QList<QVariantList> rows{
        {1, "a\tb\\N\nc\rd", "\\.", day, true, 0.1},
        {2, "\u00e8\u20ac\U0001F600", QVariant(), QVariant(), false, -1e-300},
        {1, "doppia", QVariant(), QVariant(), false, 0},
        {3, "pi\u00f9 di dodici caratteri", QVariant(), QVariant(), false, 0},
        {"x", "non \u00e8 un numero", QVariant(), QVariant(), false, 0},
        {4, "\\N", "", QVariant(), QVariant(), 1.7976931348623157e308},
    };
    QStringList told;
    QString broken;
    dao::Transaction transaction(m_engine.DefaultWorkspace());
    dao::BulkInsert insert(*database, "righe", {"id", "nome", "nota", "quando", "vero", "peso"});
    insert.addRows(rows, [&](qsizetype row, const dao::Error &error) {
        told.append(QStringLiteral("%1:%2").arg(row).arg(error.number()));
        if (error.number() == dao::DuplicateKey)
            broken = insert.brokenIndex(error).name;
    });
    told.sort();
    EXPECT_EQ(told, (QStringList{"2:3022", "3:3163", "4:3421"}));
    EXPECT_EQ(broken, "chiave");
    // Whoever does not take it ends it.
    EXPECT_EQ(errorOf([&] {
                  insert.addRows({{9, "a"}}, [](qsizetype, const dao::Error &error) { throw error; });
              }),
              dao::InvalidArgument);
    QList<QVariantList> many;
    for (int i = 100; i < 1100; ++i)
        many.append({i, QString::number(i), QVariant(), QVariant(), false, i});
    insert.addRows(many, [](qsizetype, const dao::Error &error) { throw error; });
    transaction.commit();

    dao::BulkReader reader(*database, "righe", {"id", "nome", "nota", "quando", "vero", "peso"});
    for (const int i : {0, 1, 5}) {
        ASSERT_TRUE(reader.next());
        for (int column = 0; column < 6; ++column) {
            const QVariant expected = column == 4 ? QVariant(rows[i][column].toBool()) : rows[i][column];
            EXPECT_EQ(reader.value(column), expected) << i << '/' << column;
        }
    }
    int left = 0;
    while (reader.next())
        ++left;
    EXPECT_EQ(left, 1000);
}

TEST_F(DaoTest, RowsThatAreReadInOneStateAreNotThoseOfLaterWriters)
{
    const auto database = create("a.sqlite");
    database->Execute("CREATE TABLE visite (id COUNTER, nota TEXT(9))");
    for (int i = 0; i < 3; ++i)
        database->Execute("INSERT INTO visite (nota) VALUES ('x')");
    database->Execute("DELETE FROM visite WHERE id = 3");
    EXPECT_EQ(dao::lastAutoNumber(*database, "visite"), 3);
    database->Execute("CREATE TABLE altre (nota TEXT(9))");
    EXPECT_EQ(dao::lastAutoNumber(*database, "altre"), 0);
    const auto other = m_engine.CreateWorkspace();
    const auto theirs = other->OpenDatabase(path("a.sqlite"));
    other->BeginReading();
    const auto count = [](dao::Database &from) {
        return scalar(from, "SELECT count(*) FROM visite").toInt();
    };
    EXPECT_EQ(count(*theirs), 2);
    try {
        database->Execute("INSERT INTO visite (nota) VALUES ('dopo')");
    } catch (const dao::Error &error) {
        EXPECT_EQ(error.number(), dao::Locked); // files let nobody write meanwhile
    }
    EXPECT_EQ(count(*theirs), 2);
    // A reader that is read to its end, or left in the middle, lets the workspace go on.
    for (const bool isReadToItsEnd : {true, false}) {
        {
            dao::BulkReader reader(*theirs, "visite", {"id"});
            EXPECT_TRUE(reader.next());
            while (isReadToItsEnd && reader.next()) { }
        }
        const auto rows = theirs->OpenRecordset({"SELECT id FROM visite WHERE id > [least]", {{"least", 0}}});
        rows->MoveLast();
        EXPECT_EQ(rows->RecordCount(), 2) << isReadToItsEnd;
    }
    EXPECT_EQ(count(*theirs), 2);
    EXPECT_EQ(errorOf([&] { other->BeginReading(); }), dao::TransactionError);
    other->CommitTrans();
    database->Execute("INSERT INTO visite (nota) VALUES ('dopo')");
    EXPECT_GE(count(*theirs), 3);
}

TEST_F(DaoTest, TransactionsSpanDatabasesAndNest)
{
    const auto first = patients("a.sqlite");
    const auto second = patients("b.sqlite");
    dao::Workspace &workspace = m_engine.DefaultWorkspace();
    const auto counts = [&] {
        return std::pair(scalar(*first, "SELECT count(*) FROM pazienti").toInt(),
                         scalar(*second, "SELECT count(*) FROM pazienti").toInt());
    };
    {
        dao::Transaction outer(workspace);
        first->Execute("DELETE FROM pazienti WHERE id = 1");
        second->Execute("DELETE FROM pazienti");
        EXPECT_EQ(second->RecordsAffected(), 5);
    }
    EXPECT_EQ(counts(), std::pair(5, 5));
    {
        dao::Transaction outer(workspace);
        first->Execute("DELETE FROM pazienti WHERE id = 1");
        {
            dao::Transaction inner(workspace);
            second->Execute("DELETE FROM pazienti");
        }
        outer.commit();
    }
    EXPECT_EQ(counts(), std::pair(4, 5));
    EXPECT_EQ(errorOf([&] { workspace.CommitTrans(); }), dao::TransactionError);
    EXPECT_EQ(errorOf([&] { workspace.Rollback(); }), dao::TransactionError);
    // A table made in a transaction that is rolled back is not there any more.
    workspace.BeginTrans();
    first->Execute("CREATE TABLE breve (n LONG)");
    workspace.Rollback();
    EXPECT_FALSE(first->TableDefs().contains("breve"));
    EXPECT_EQ(errorOf([&] { first->OpenRecordset("breve"); }), dao::SyntaxError);
}

TEST_F(DaoTest, CommitThatFailsIsRolledBack)
{
    const auto database = patients();
    // A row that names none is found out by the commit, and a deletion makes the native engine give up everything.
    const QStringList definitions =
        testengine::isServer()
            ? QStringList{"CREATE TABLE \"%1\".figlio (p integer REFERENCES \"%1\".pazienti(id) "
                          "DEFERRABLE INITIALLY DEFERRED)",
                          "CREATE FUNCTION \"%1\".strappo() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN "
                          "PERFORM "
                          "pg_terminate_backend(pg_backend_pid()); RETURN OLD; END $$",
                          "CREATE TRIGGER strappo BEFORE DELETE ON \"%1\".pazienti FOR EACH ROW EXECUTE "
                          "FUNCTION "
                          "\"%1\".strappo()"}
            : QStringList{
                "CREATE TABLE %1.figlio (p INTEGER REFERENCES pazienti(id) DEFERRABLE INITIALLY DEFERRED)",
                "CREATE TRIGGER %1.strappo BEFORE DELETE ON pazienti "
                "BEGIN SELECT RAISE(ROLLBACK, 'no'); END"};
    for (const QString &definition : definitions)
        database->nativeConnection().execute(definition.arg(database->nativeSchema()));
    database->TableDefs().Refresh();
    dao::Workspace &workspace = m_engine.DefaultWorkspace();
    workspace.BeginTrans();
    database->Execute("UPDATE pazienti SET figli = 7");
    database->Execute("INSERT INTO figlio (p) VALUES (99)");
    EXPECT_NE(errorOf([&] { workspace.CommitTrans(); }), 0);
    EXPECT_EQ(scalar(*database, "SELECT count(*) FROM pazienti WHERE figli = 7"), 0);
    // The native engine gives the transaction up: what follows must not be saved on its own.
    workspace.BeginTrans();
    EXPECT_NE(errorOf([&] { database->Execute("DELETE FROM pazienti WHERE id = 1"); }), 0);
    // Of a server that is because the connection was lost, and whoever saves is to be told that.
    const int gone = testengine::isServer() ? dao::TransactionLost : dao::TransactionError;
    EXPECT_EQ(errorOf([&] { database->Execute("UPDATE pazienti SET figli = 8"); }), gone);
    EXPECT_EQ(errorOf([&] { workspace.CommitTrans(); }), gone);
    EXPECT_EQ(scalar(*database, "SELECT count(*) FROM pazienti WHERE figli = 8"), 0);
    database->Execute("UPDATE pazienti SET figli = 9");
    EXPECT_EQ(database->RecordsAffected(), 5);
}

TEST_F(DaoTest, LinkedTablesAreReadJoinedAndUpdatedAndStayLinked)
{
    const auto clinical = patients("clinical.sqlite");
    patients("moved.sqlite")->Execute("DELETE FROM pazienti WHERE id > 1");
    auto local = create("local.sqlite");
    local->Execute("CREATE TABLE visite (paziente LONG, nota TEXT(9))");
    local->Execute("INSERT INTO visite (paziente, nota) VALUES (2, 'v')");
    const auto link = [&](const QString &target, const QString &source) {
        dao::TableDef table = local->CreateTableDef("Pazienti");
        table.setConnect(";DATABASE=" + path(target));
        table.setSourceTableName(source);
        local->TableDefs().Append(table);
    };
    EXPECT_EQ(errorOf([&] { link("missing.sqlite", "pazienti"); }), dao::CannotFindFile);
    EXPECT_EQ(errorOf([&] { link("clinical.sqlite", "nessuna"); }), dao::ObjectNotFound);
    EXPECT_EQ(local->TableDefs().Count(), 1);
    link("clinical.sqlite", "PAZIENTI");
    EXPECT_EQ(errorOf([&] { link("clinical.sqlite", "pazienti"); }), dao::TableExists);

    local->Close();
    local = m_engine.CreateWorkspace()->OpenDatabase(path("local.sqlite")); // nothing else is open there
    EXPECT_EQ(local->TableDefs().Count(), 2);
    EXPECT_EQ(local->TableDefs()["pazienti"].Connect(), ";DATABASE=" + path("clinical.sqlite"));
    const auto rows = local->OpenRecordset(
        "SELECT cognome, nota FROM visite INNER JOIN pazienti ON visite.paziente = pazienti.id");
    EXPECT_EQ(rows->Fields("cognome").Value(), "Nicolò");
    rows->Edit();
    rows->Fields("cognome").setValue("Neri");
    rows->Update();
    EXPECT_EQ(scalar(*clinical, "SELECT cognome FROM pazienti WHERE id = 2"), "Neri");

    dao::TableDef table = local->TableDefs()["pazienti"];
    table.setConnect(";DATABASE=" + path("missing.sqlite"));
    EXPECT_EQ(errorOf([&] { table.RefreshLink(); }), dao::CannotFindFile);
    EXPECT_EQ(scalar(*local, "SELECT count(*) FROM pazienti"), 5);
    table.setConnect(";DATABASE=" + path("moved.sqlite"));
    table.RefreshLink();
    EXPECT_EQ(scalar(*local, "SELECT count(*) FROM pazienti"), 1);
    local->TableDefs().Delete("pazienti");
    EXPECT_FALSE(local->TableDefs().contains("pazienti"));
    EXPECT_TRUE(clinical->TableDefs().contains("pazienti"));
}

TEST_F(DaoTest, DefinitionsOfAnotherConnectionAreSeen)
{
    const auto mine = patients();
    EXPECT_EQ(mine->TableDefs().Count(), 1);
    const auto theirs = m_engine.CreateWorkspace()->OpenDatabase(path("a.sqlite"));
    theirs->Execute("CREATE TABLE nuova (n LONG)");
    theirs->Execute("ALTER TABLE pazienti ADD COLUMN medico TEXT(5)");
    mine->Execute("INSERT INTO nuova (n) VALUES (1)");
    EXPECT_EQ(mine->RecordsAffected(), 1);
    EXPECT_EQ(errorOf([&] { scalar(*mine, "SELECT medico FROM pazienti"); }), 0);
}

TEST_F(DaoTest, RepeatedStatementsFollowDefinitionsAndClock)
{
    int day = 1;
    m_engine.setNow([&] { return jet::dateTime(QDate(2026, 3, day)); });
    const auto database = patients();
    const QString all = "SELECT * FROM pazienti WHERE figli = 1";
    const QString today = "SELECT date() FROM pazienti";
    const int fields = database->OpenRecordset(all)->FieldCount();
    EXPECT_EQ(scalar(*database, today).toDateTime().date(), QDate(2026, 3, 1));

    day = 2;
    database->Execute("ALTER TABLE pazienti ADD COLUMN medico TEXT(5)");
    EXPECT_EQ(database->OpenRecordset(all)->FieldCount(), fields + 1);
    EXPECT_EQ(scalar(*database, today).toDateTime().date(), QDate(2026, 3, 2));

    const QString edit = "UPDATE pazienti SET figli = figli + 1 WHERE figli = 1";
    database->Execute(edit);
    EXPECT_EQ(database->RecordsAffected(), 1);
    database->Execute(edit);
    EXPECT_EQ(database->RecordsAffected(), 0);
    EXPECT_TRUE(database->OpenRecordset(all)->Eof());

    database->Execute("DROP TABLE pazienti");
    EXPECT_EQ(errorOf([&] { database->OpenRecordset(all); }), dao::ObjectNotFound);
}

TEST_F(DaoTest, ReadOnlyDatabasesAreNotWritten)
{
    patients();
    const auto database = m_engine.CreateWorkspace()->OpenDatabase(path("a.sqlite"), true);
    EXPECT_EQ(scalar(*database, "SELECT count(*) FROM pazienti"), 5);
    EXPECT_EQ(errorOf([&] { database->Execute("DELETE FROM pazienti"); }), dao::ReadOnly);
    EXPECT_EQ(errorOf([&] { database->OpenRecordset("pazienti")->AddNew(); }), dao::ReadOnly);
    EXPECT_EQ(errorOf([&] { dao::BulkInsert(*database, "pazienti", {"id"}); }), dao::ReadOnly);
}

// Not a test of its own: the second process of the next one, told what to lock through its environment.
TEST(DaoLockHolder, HoldsTheWriteLockUntilItsInputEnds)
{
    if (!qEnvironmentVariableIsSet("CLIVARA_LOCK_FILE"))
        GTEST_SKIP() << "runs as the second process of another test";
    dao::DBEngine engine;
    const auto database = engine.OpenDatabase(qEnvironmentVariable("CLIVARA_LOCK_FILE"));
    dao::Transaction transaction(engine.DefaultWorkspace());
    database->Execute("UPDATE pazienti SET figli = 3 WHERE id = 1");
    puts("locked");
    fflush(stdout);
    EXPECT_EQ(getchar(), EOF);
}

TEST_F(DaoTest, LockOfAnotherProcessIsToldAndPasses)
{
    const auto database = patients();
    const auto rows = database->OpenRecordset("SELECT * FROM pazienti WHERE id = 1");
    rows->Edit();
    rows->Fields("figli").setValue(4);
    QProcess holder;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("CLIVARA_LOCK_FILE", path("a.sqlite"));
    holder.setProcessEnvironment(environment);
    holder.start(QCoreApplication::applicationFilePath(), {"--gtest_filter=DaoLockHolder.*"});
    QByteArray output;
    while (!output.contains("locked") && holder.waitForReadyRead(20000))
        output += holder.readAllStandardOutput();
    ASSERT_TRUE(output.contains("locked")) << output.constData();
    EXPECT_EQ(errorOf([&] { rows->Update(); }), dao::Locked);
    EXPECT_EQ(errorOf([&] { m_engine.DefaultWorkspace().BeginTrans(); }), dao::Locked);
    EXPECT_EQ(scalar(*database, "SELECT figli FROM pazienti WHERE id = 1"), 2); // reading goes on
    holder.closeWriteChannel();
    ASSERT_TRUE(holder.waitForFinished(20000));
    rows->Update(); // the buffer was kept
    EXPECT_EQ(scalar(*database, "SELECT figli FROM pazienti WHERE id = 1"), 4);
}

} // namespace
