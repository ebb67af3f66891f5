// SPDX-License-Identifier: Apache-2.0
#include "dao/SmallPractice.h"
#include "dao/native/NativeErrors.h"
#include "jetsql/Error.h"
#include "server/TestEngine.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

namespace {

const char *const statements[] = {
    "SELECT r2.*, r.* FROM riepil AS r, riepil2 AS r2 WHERE (r2.codice = '90.14.3') and (r2.cod_rie = "
    "r.minsan) ORDER BY r.da_pre DESC",
    "SELECT TOP 3 a.cognome, p.descr_mal AS d FROM (archivio a LEFT JOIN problems p ON a.cod_paz = "
    "p.cod_paz) INNER JOIN one ON one.n < a.peso "
    "WHERE a.data_nasc BETWEEN #1/1/1950# AND cdate('1/1/2020') ORDER BY d DESC, 1",
    "select year(da_pre) + 1 as y, count(*), sum(iif(tipo = 0, 1, '2')) from riepil where minsan like 'l*' "
    "or not isnull(cod_pre) "
    "group by year(da_pre) having count(*) > 0 order by y",
    "select distinct nz(note, peso) & ' ' & format(peso, '0.0%') from archivio where cod_paz in (select "
    "cod_paz from problems) and attivo",
    "select cognome from archivio where exists (select * from problems p where p.cod_paz = archivio.cod_paz) "
    "union all select descr_mal from problems order by cognome",
    "UPDATE visitaprobl AS v INNER JOIN problems AS p ON v.id_probl = p.idproblems SET v.sintomo = "
    "left(p.descr_mal, 3), v.urgente = yes WHERE v.cod_paz = 1",
    "insert into archivio (cod_paz, peso, data_nasc) select idproblems * 2, descr_mal, date() from problems "
    "where 1 = 2",
    "delete v.* from visitaprobl v where v.datareg < dateadd('m', -3, #5/11/2024#) and v.sintomo not in "
    "('a', \"b\")",
    "create table t (id counter constraint pk primary key, nome text(20) not null, d datetime)",
};

// Any statement is either refused with an error of the engine or becomes SQL that the native engine accepts.
TEST(TranslatorRobustness, BrokenStatementsAreRefusedOrAreStillNativeSql)
{
    const SmallPractice practice;
    const QRegularExpression token(QStringLiteral(R"([A-Za-z_]\w*|\d+|'[^']*'|\S)"));
    const char *const foreign[] = {"(", ")", ",",   "select", "null",    "'x'",
                                   "7", "*", "and", ".",      "cod_paz", "max(n)"};
    int refused = 0;
    int translated = 0;
    const auto tryStatement = [&](const QString &sql) {
        try {
            const dao::Translation translation = practice.translate(sql);
            if (!translation.sql.isEmpty())
                practice.nativeExec(QStringLiteral("EXPLAIN ") + translation.sql);
            ++translated;
        } catch (const dao::Error &error) {
            EXPECT_GT(error.number(), 0) << sql.toStdString();
            EXPECT_FALSE(error.text().isEmpty()) << sql.toStdString();
            // The server computes constants when it plans a statement.
            EXPECT_TRUE(error.sql() == sql || error.sql().startsWith(u"EXPLAIN ")) << sql.toStdString();
            ++refused;
        } catch (const std::exception &error) {
            ADD_FAILURE() << sql.toStdString() << "\n" << error.what();
        }
    };
    for (const char *statement : statements) {
        const QString sql = QString::fromLatin1(statement);
        tryStatement(sql);
        auto match = token.globalMatch(sql);
        while (match.hasNext()) {
            const auto found = match.next();
            const QString before = sql.left(found.capturedStart());
            const QString after = sql.mid(found.capturedEnd());
            tryStatement(before + after);
            tryStatement(before);
            tryStatement(before + found.captured() + u' ' + found.captured() + after);
            for (const char *other : foreign)
                tryStatement(before + other + after);
        }
    }
    EXPECT_GT(refused, 1000);
    EXPECT_GT(translated, 100);
}

TEST(TranslatorRobustness, TheCollationHoldsForNativeIndexesToo)
{
    if (testengine::isServer())
        GTEST_SKIP() << "of files";
    const SmallPractice practice;
    practice.nativeExec("CREATE TABLE codes (code TEXT COLLATE JET_TEXT UNIQUE)");
    practice.nativeExec("INSERT INTO codes VALUES ('Nicolò'), ('Nicolo'), (''), (NULL), (NULL)");
    EXPECT_ANY_THROW(practice.nativeExec("INSERT INTO codes VALUES ('NICOLÒ')"));
}

TEST(TranslatorRobustness, FunctionErrorsAreReadFromNativeMessages)
{
    const auto error = dao::functionError(u"JET:6:Overflow Unable to fetch row");
    ASSERT_TRUE(error);
    EXPECT_EQ(error->first, 6);
    EXPECT_EQ(error->second, u"Overflow Unable to fetch row");
    EXPECT_FALSE(dao::functionError(u"no such table: JET"));
    EXPECT_FALSE(dao::functionError(u"JET:x:y"));
    EXPECT_FALSE(dao::functionError(u"JET:6"));
    EXPECT_FALSE(dao::functionError(u""));
}

} // namespace
