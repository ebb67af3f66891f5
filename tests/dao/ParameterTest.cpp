// SPDX-License-Identifier: Apache-2.0
#include "dao/Dao.h"
#include "server/TestEngine.h"
#include "values/JetValues.h"

#include <QTemporaryDir>
#include <QTime>
#include <QUuid>
#include <gtest/gtest.h>

namespace {

using dao::Query;

class ParameterTest : public testing::Test {
protected:
    ParameterTest()
        : m_database(m_engine.DefaultWorkspace().CreateDatabase(
            testengine::databaseName(m_folder.path(), "parameters.sqlite")))
    {
        m_database->Execute("CREATE TABLE pazienti (id LONG, nome TEXT(20), nascita DATETIME, peso DOUBLE, "
                            "figli SMALLINT, attivo YESNO, uid GUID)");
        m_database->Execute("CREATE INDEX nascita ON pazienti (nascita)");
        m_database->Execute("CREATE INDEX nome ON pazienti (nome)");
        dao::BulkInsert insert(*m_database, "pazienti",
                               {"id", "nome", "nascita", "peso", "figli", "attivo", "uid"});
        insert.add(
            {1, "D'Amico", QDate(1950, 3, 7), 70.5, 2, true, "{0000AB01-0000-0000-0000-000000000001}"});
        insert.add({2, "Nicolò", QDateTime(QDate(1980, 12, 31), QTime(10, 30), Qt::UTC), 82, 0, false, {}});
        insert.add({3, "12", QDate(2001, 1, 15), {}, {}, true, {}});
        insert.add({4, "", {}, -1, 3, false, {}});
        insert.add({5, {}, QDate(1950, 3, 7), 0, 1, true, {}});
        insert.add({6, "a*b?[#]", {}, {}, {}, false, {}});
    }

    // The ids of the rows for which the condition holds: "1 3"; "error <number>".
    std::string ids(const QString &condition, const QList<dao::Parameter> &parameters)
    {
        return list({"SELECT id FROM pazienti WHERE " + condition + " ORDER BY id", parameters});
    }
    std::string list(const Query &query)
    {
        try {
            QStringList values;
            const auto rows = m_database->OpenRecordset(query);
            for (; !rows->Eof(); rows->MoveNext())
                values.append(rows->Fields(0).isNull() ? QStringLiteral("Null") : rows->Fields(0).text());
            return values.join(u' ').toStdString();
        } catch (const dao::Error &error) {
            return "error " + std::to_string(error.number());
        }
    }

    QTemporaryDir m_folder;
    dao::DBEngine m_engine;
    std::shared_ptr<dao::Database> m_database;
};

TEST_F(ParameterTest, EveryTypeWithEveryOperator)
{
    const QVariant day = QDate(1950, 3, 7);
    const QVariant hour = QDateTime(QDate(1980, 12, 31), QTime(10, 30), Qt::UTC);
    const QVariant text = QStringLiteral("d'AMICO");
    const QVariant longNumber = 12345678901LL;
    const struct {
        const char *condition;
        QVariant value;
        const char *ids;
    } cases[] = {
        // numbers
        {"id = [p]", 3, "3"},
        {"id = p", 3, "3"},
        {"id = `P`", 3LL, "3"},
        {"id <> [p]", 3, "1 2 4 5 6"},
        {"id < [p]", 2.5, "1 2"},
        {"id between [p] and [p] + 1", 3, "3 4"},
        {"id in ([p], 5)", 1, "1 5"},
        {"id in (select id from pazienti where figli = [p])", 2, "1"},
        {"exists (select * from pazienti as b where b.id = pazienti.id and b.figli > [p])", 1, "1 4"},
        {"peso = -[p]", 1, "4"},
        {"peso = [p]", -1, "4"},
        {"peso = [p]", 70.5, "1"},
        {"peso * 2 = [p] * 2", 82, "2"},
        {"figli \\ [p] = 1", 2, "1 4"},
        {"id = [p]", longNumber, ""},
        {"id < [p]", longNumber, "1 2 3 4 5 6"},
        {"nome = [p]", 12, "3"},
        {"nome <> [p]", 12, "1 2 4 6"},
        {"nome & '' = [p] & ''", 12, "3"},
        {"nascita > [p]", 30000, "3"},
        {"attivo = [p]", -1, "1 3 5"},
        {"left(nome, [p]) = 'ni'", 2, "2"},
        // texts
        {"nome = [p]", text, "1"},
        {"[p] = nome", text, "1"},
        {"nome = [p]", QStringLiteral("NICOLÒ"), "2"},
        {"nome = [p]", QStringLiteral("nicolo"), ""},
        {"nome <> [p]", text, "2 3 4 6"},
        {"nome > [p]", QStringLiteral("D"), "1 2"},
        {"nome in ([p])", text, "1"},
        {"nome in (select [p] from pazienti)", text, "1"},
        {"nome = [p]", QStringLiteral("' or '1'='1"), ""},
        {"nome = [p]", QStringLiteral("?"), ""},
        {"nome = [p]", QString(), "4"},
        {"nome = [p]", QChar(u'a'), ""},
        {"ucase([p]) = 'D''AMICO' and id = 1", text, "1"},
        {"id = [p]", QStringLiteral("3"), "3"},
        {"id = [p]", QStringLiteral("tre"), ""},
        {"id <> [p]", QStringLiteral("tre"), "1 2 3 4 5 6"},
        {"nascita = [p]", QStringLiteral("07/03/1950"), "1 5"},
        {"[p] + 1 = id", QStringLiteral("2"), "3"},
        {"uid = [p]", QStringLiteral("0000ab01-0000-0000-0000-000000000001"), "1"},
        {"uid = [p]", QStringLiteral("no"), ""},
        {"uid = [p]", QUuid::fromString(u"{0000ab01-0000-0000-0000-000000000001}"), "1"},
        // like
        {"nome like [p]", QStringLiteral("d'*"), "1"},
        {"nome like [p]", QStringLiteral("NICOLÒ"), "2"},
        {"nome like [p]", QStringLiteral("n?col[!a]"), "2"},
        {"nome like [p]", QStringLiteral("##"), "3"},
        {"nome like [p] & '*'", QStringLiteral("ni"), "2"},
        {"nome like [p]", QStringLiteral("a[*]b[?][[][#]]"), "6"},
        {"nome not like [p]", QStringLiteral("*i*"), "3 4 6"},
        {"nome like [p]", 12, "3"},
        // dates
        {"nascita = [p]", day, "1 5"},
        {"nascita = [p]", hour, "2"},
        {"nascita >= [p]", day, "1 2 3 5"},
        {"nascita <> [p]", day, "2 3"},
        {"nascita between [p] and #12/31/1980#", day, "1 5"},
        {"nascita - [p] = 0", day, "1 5"},
        {"nascita = [p] + 1", QDate(1950, 3, 6), "1 5"},
        {"datediff('yyyy', [p], nascita) = 30", day, "2"},
        {"format([p], 'dd/mm/yyyy') = '07/03/1950' and id = 1", day, "1"},
        {"nascita = [p]", QDateTime(QDate(1980, 12, 31), QTime(10, 30, 0, 400), Qt::UTC), "2"},
        {"timevalue(nascita) = [p]", QTime(10, 30), "2"},
        // Yes/No
        {"attivo = [p]", true, "1 3 5"},
        {"attivo = [p]", false, "2 4 6"},
        {"[p] and id < 3", true, "1 2"},
        {"not [p]", true, ""},
        {"peso = [p]", true, "4"},
        {"iif([p], id, 0) = 2", true, "2"},
        // Null
        {"nome = [p]", QVariant(), ""},
        {"nome <> [p]", QVariant(), ""},
        {"nome like [p]", QVariant(), ""},
        {"nascita = [p]", QDate(), ""},
        {"nascita > [p]", QDateTime(), ""},
        {"isnull([p]) and id = 1", QVariant(), "1"},
        {"isnull([p]) and id = 1", text, ""},
        {"nz([p], 'x') = 'x' and id = 1", QVariant(), "1"},
        {"nome & [p] = 'nicolò'", QVariant(), "2"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(ids(QString::fromUtf8(c.condition), {{"p", c.value}}), c.ids)
            << c.condition << " with " << c.value.toString().toStdString();
}

TEST_F(ParameterTest, ParametersStandInEveryClause)
{
    const struct {
        const char *sql;
        QList<dao::Parameter> parameters;
        const char *values;
    } cases[] = {
        {"select [a] & '-' & [b] & '-' & [a] from pazienti where id = [c]",
         {{"c", 1}, {"b", "y'"}, {"a", "x"}},
         "x-y'-x"},
        {"select top 2 id from pazienti where attivo order by id + [p] desc", {{"p", 1}}, "5 3"},
        {"select count(*) from pazienti group by iif(id > [p], 1, 2) having count(*) > [q] order by 1",
         {{"p", 2}, {"q", 1}},
         "2 4"},
        {"select iif(id > [p], 1, 2) from pazienti group by iif(id > [p], 1, 2) order by 1",
         {{"p", 2}},
         "1 2"},
        {"select distinct [p] from pazienti", {{"p", "x"}}, "x"},
        {"select id from pazienti where id = [p] union all select id from pazienti where id = [q] order by "
         "id desc",
         {{"p", 1}, {"q", 6}},
         "6 1"},
        {"select b.id from pazienti as a inner join pazienti as b on (a.id = b.figli + [p]) order by b.id",
         {{"p", 2}},
         "1 2 4 5"},
        {"select n from (select id + [p] as n from pazienti where id < [q]) as d order by n",
         {{"p", 10}, {"q", 3}},
         "11 12"},
        {"select max(id) - [p] from pazienti", {{"p", 1}}, "5"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(list({QString::fromUtf8(c.sql), c.parameters}), c.values) << c.sql;
}

TEST_F(ParameterTest, ValuesOfWrongNamesAreRefused)
{
    EXPECT_EQ(ids("id = [altro]", {}), "error " + std::to_string(dao::TooFewParameters));
    EXPECT_EQ(ids("id = [altro]", {{"p", 1}}), "error " + std::to_string(dao::TooFewParameters));
    EXPECT_EQ(ids("id = 1", {{"p", 1}}), "error " + std::to_string(dao::ItemNotFound));
    // The field would win, and the query would be one of all rows.
    EXPECT_EQ(ids("id = [id]", {{"id", 1}}), "error " + std::to_string(dao::AmbiguousField));
    EXPECT_EQ(ids("id = [p]", {{"p", QByteArray("x")}}), "error " + std::to_string(dao::TypeMismatch));
    EXPECT_EQ(ids("nascita = [p]", {{"p", QDate(12000, 1, 1)}}),
              "error " + std::to_string(dao::ConversionError));
}

TEST_F(ParameterTest, AValueOfAnotherTypeIsTranslatedAnew)
{
    dao::QueryDef query = m_database->CreateQueryDef("select id from pazienti where nome = [p] order by id");
    const auto found = [&query](const QVariant &value) {
        query.Parameters("P") = value;
        const auto rows = query.OpenRecordset(dao::RecordsetType::Snapshot);
        return rows->Eof() ? 0 : rows->Fields(0).Value().toInt();
    };
    EXPECT_EQ(found("nicolò"), 2);
    EXPECT_EQ(found(12), 3);
    EXPECT_EQ(found("D'Amico"), 1);
    EXPECT_EQ(found({}), 0);
    EXPECT_EQ(found("12"), 3);
}

TEST_F(ParameterTest, ActionQueriesTakeParameters)
{
    const auto affected = [this](const char *sql, const QList<dao::Parameter> &parameters) {
        m_database->Execute({QString::fromUtf8(sql), parameters});
        return m_database->RecordsAffected();
    };
    EXPECT_EQ(affected("insert into pazienti (id, nome, nascita, peso, attivo, uid) "
                       "values ([id], [nome], [nascita], [peso], [attivo], [uid])",
                       {{"id", 7},
                        {"nome", "L'Età {?}"},
                        {"nascita", QDate(1999, 2, 3)},
                        {"peso", "60.5"},
                        {"attivo", true},
                        {"uid", "0000ab02-0000-0000-0000-000000000002"}}),
              1);
    EXPECT_EQ(list({"select nome & '|' & nascita & '|' & peso & '|' & attivo & '|' & uid from pazienti "
                    "where id = [p]",
                    {{"p", 7}}}),
              "L'Età {?}|03/02/1999|60.5|-1|{0000AB02-0000-0000-0000-000000000002}");
    EXPECT_EQ(affected("update pazienti set nome = [p], peso = [q], attivo = [q] where id in ([a], [b])",
                       {{"a", 1}, {"b", 7}, {"p", "x?'"}, {"q", QVariant()}}),
              2);
    EXPECT_EQ(list({"select nome & nz(peso, 'n') & attivo from pazienti where id = 7 or id = 1", {}}),
              "x?'n0 x?'n0");
    EXPECT_EQ(affected("update pazienti as a inner join pazienti as b on a.id = b.id set a.peso = b.id + [p] "
                       "where b.id = [q]",
                       {{"p", 100}, {"q", 7}}),
              1);
    EXPECT_EQ(list({"select peso from pazienti where id = 7", {}}), "107");
    EXPECT_EQ(affected("insert into pazienti (id, nome) select id + [p], [q] from pazienti where id < [r]",
                       {{"p", 100}, {"q", "copia"}, {"r", 3}}),
              2);
    EXPECT_EQ(affected("delete from pazienti where id > [p] or nome = [q]", {{"p", 100}, {"q", "X?'"}}), 4);
    EXPECT_THROW(affected("update pazienti set nome = [p]", {{"p", QString(21, u'x')}}), dao::Error);
}

TEST_F(ParameterTest, RowsFoundByParametersAreUpdatable)
{
    const auto rows =
        m_database->OpenRecordset({"select * from pazienti where nascita = [giorno] and nome = [cognome]",
                                   {{"giorno", QDate(1950, 3, 7)}, {"cognome", "d'amico"}}});
    ASSERT_FALSE(rows->Eof());
    rows->Edit();
    rows->Fields("peso").setValue(71);
    rows->Update();
    EXPECT_EQ(rows->Fields("peso").number(), 71);
    rows->MoveFirst();
    rows->Delete();
    EXPECT_EQ(ids("id = [p]", {{"p", 1}}), "");
}

} // namespace
