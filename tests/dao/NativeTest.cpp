// SPDX-License-Identifier: Apache-2.0
#include "dao/postgres/PostgresDefinitions.h"
#include "dao/postgres/PostgresStatement.h"
#include "dao/sqlite/SqliteConnection.h"

#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

namespace {

TEST(SqliteStatement, KeepsEveryValueAsItIs)
{
    dao::SqliteConnection connection;
    connection.execute("CREATE TABLE t (a, b, c)", {});
    const QVariant values[] = {
        {},
        0,
        -1,
        qlonglong(1) << 40,
        0.1,
        1e300,
        QString(""),
        QString("è\"'?"),
        QString(QChar(0xFEFF)) + 'x', // no mark of an encoding
        QString("a") + QChar(0) + 'b',
        QByteArray(""),
        QByteArray("\0\xff", 2),
    };
    for (const QVariant &value : values) {
        // The marks are values whatever stands in quotes beside them.
        const auto row = connection.select("SELECT ?, '?', ?", {value, 7});
        ASSERT_TRUE(row->next());
        EXPECT_EQ(row->value(0).isValid(), value.isValid());
        EXPECT_EQ(row->value(0).toString(), value.toString());
        EXPECT_EQ(row->value(0).typeId() == QMetaType::QByteArray, value.typeId() == QMetaType::QByteArray);
        EXPECT_EQ(row->value(2), 7);
        EXPECT_FALSE(row->next());
    }
}

TEST(SqliteStatements, AreReusedWithNothingOfTheLastUse)
{
    dao::SqliteConnection connection;
    connection.execute("CREATE TABLE t (n UNIQUE)", {});
    const QString insert = "INSERT INTO t VALUES (?)";
    connection.execute(insert, {1});
    EXPECT_THROW(connection.execute(insert, {1}), dao::Error);
    EXPECT_EQ(connection.execute(insert, {2}), 1) << "after the one that failed";
    connection.execute(insert, {});
    const QString all = "SELECT n FROM t ORDER BY n";
    const auto one = connection.select(all, {});
    ASSERT_TRUE(one->next() && one->next());
    const auto other = connection.select(all, {}); // of its own, although the first one is not done
    ASSERT_TRUE(other->next());
    EXPECT_FALSE(other->value(0).isValid()) << "no value that was bound before";
    EXPECT_EQ(one->value(0), 1);
}

TEST(SqliteStatements, FollowTheDefinitions)
{
    dao::SqliteConnection connection;
    connection.execute("CREATE TABLE t (a)", {});
    const auto columns = [&] {
        const auto row = connection.select("SELECT * FROM t", {});
        return row->next() ? row->value(1) : QVariant();
    };
    connection.execute("INSERT INTO t VALUES (1)", {});
    EXPECT_FALSE(columns().isValid());
    connection.execute("ALTER TABLE t ADD COLUMN b DEFAULT 5", {});
    EXPECT_EQ(columns(), 5);
    connection.execute("DROP TABLE t", {});
    EXPECT_THROW(columns(), dao::Error);
}

TEST(PostgresStatement, NumbersItsValues)
{
    const struct {
        const char *sql;
        QVariantList values;
        const char *numbered;
        int count;
    } cases[] = {
        {"SELECT '?'", {1}, "SELECT '?'", 0},
        {"a = ? AND b = ?", {1, 1}, "a = $1 AND b = $2", 2}, // their places may give them different types
        {"'?' || ? || '\"?'''", {"x"}, "'?' || $1 || '\"?'''", 1},
        {"\"wh?t\" = ?", {"è"}, "\"wh?t\" = $1", 1},
        {"SELECT ?::int GROUP BY ?::int, ?::float8",
         {7, 7, 7},
         "SELECT $1::int GROUP BY $1::int, $2::float8",
         2},
        {"SELECT ?::int, ?::int, ?", {7, 8, 7}, "SELECT $1::int, $2::int, $3", 3},
    };
    for (const auto &c : cases) {
        const dao::PostgresStatement statement(c.sql, c.values);
        EXPECT_EQ(statement.sql(), QByteArray(c.numbered));
        EXPECT_EQ(statement.count(), c.count) << c.sql;
    }
    const dao::PostgresStatement texts("? ? ?", {QVariant(), QString(), QByteArray()});
    EXPECT_EQ(texts.values()[0], nullptr);
    EXPECT_NE(texts.values()[1], nullptr) << "an empty text is not Null";
    EXPECT_NE(texts.values()[2], nullptr);
    EXPECT_THROW(dao::PostgresStatement("?", {QString(QChar(0))}), dao::Error)
        << "the server has no such texts";
}

TEST(PostgresDefinitions, AreWholeStatementsThatCanBeGivenAgain)
{
    static const QRegularExpression again(
        "^(--[^\\n]*\\n|\\n)*(CREATE OR REPLACE |CREATE \\w+ IF NOT EXISTS |DO |GRANT |COMMENT )");
    QSet<QString> files;
    for (const auto &[file, sql] : dao::postgresDefinitions()) {
        files.insert(file);
        EXPECT_TRUE(again.match(sql).hasMatch()) << sql.toStdString();
        EXPECT_EQ(sql.count("$$") % 2, 0) << sql.toStdString();
        EXPECT_LE(sql.count("CREATE OR REPLACE "), 1) << sql.toStdString();
    }
    EXPECT_EQ(files.size(), 7) << "six files and the mark of the version";
}

} // namespace
