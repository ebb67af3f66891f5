// SPDX-License-Identifier: Apache-2.0
#include "dao/SmallPractice.h"
#include "server/TestEngine.h"

#include <gtest/gtest.h>

namespace {

struct Case {
    const char *sql;
    const char *rows;
};

class TranslatorSelect : public testing::Test {
protected:
    void expectRows(std::initializer_list<Case> cases)
    {
        for (const Case &c : cases) {
            try {
                EXPECT_EQ(m_practice.rows(c.sql).toStdString(), c.rows) << c.sql;
            } catch (const std::exception &error) {
                ADD_FAILURE() << c.sql << "\n" << error.what();
            }
        }
    }
    SmallPractice m_practice;
};

TEST_F(TranslatorSelect, NamesAreFoundHoweverTheyAreWritten)
{
    expectRows({
        {"select COGNOME from archivio where cod_paz=1", "Rossi"},
        {"SELECT [Cognome] FROM [ARCHIVIO] WHERE [archivio].[COD_PAZ] = 2;", "D'Angelo"},
        {"select `cognome` from `archivio` where archivio!cod_paz = 3", "nicolò"},
        {"select [a.cognome] from archivio as a where [a.cod_paz] = 4", "Nicolo"},
        {" SELECT * FROM  problems WHERE descr_mal like 'Asma' and cod_paz =  2", "12|2|Asma"},
        {"select descr_mal from problems where cod_paz= 1AND (idproblems = 10)", "Ipertensione"},
        {"select descr_mal from problems where (descr_mal='Asma')ORDER by idproblems", "Asma"},
    });
}

TEST_F(TranslatorSelect, Joins)
{
    expectRows({
        {"SELECT r2.*, r.* FROM riepil AS r, riepil2 AS r2 WHERE (r2.codice = '90.14.3') and (r2.cod_rie = "
         "r.minsan) "
         "and (r.tipo = 1) and (r.cod_paz =  1) ORDER BY r.da_pre DESC",
         "L2|90.14.3| 198,5|2|1|2024-05-11 09:00:00|L2|1|Null|B\n"
         "L1|90.14.3|210|1|1|2024-05-11 00:00:00|L1|1|Null|A\n"
         "L3|90.14.3||3|1|Null|L3|1|Null|C"},
        {"SELECT r.minsan, s.unita FROM riepil r INNER JOIN riepil2 s ON r.MINSAN = s.cod_rie WHERE s.codice "
         "= '90.43.2'",
         "L1|95\nl1|95"},
        {"select v.idVisitaProbl, descr_mal from visitaprobl v left join problems on v.id_probl = "
         "problems.idProblems "
         "where (v.cod_paz = 1) and ( (id_probl <= 0) or isnull(id_probl) ) order by v.datareg desc",
         "3|Null\n2|Null"},
        {"select idVisitaProbl, descr_mal from visitaprobl v right join problems p on v.id_probl = "
         "p.idproblems order by p.idproblems",
         "1|Ipertensione\nNull|Diabete\nNull|Asma"},
        {"SELECT a.cognome, p.descr_mal, v.sintomo FROM ((archivio a INNER JOIN problems p ON a.cod_paz = "
         "p.cod_paz) "
         "LEFT JOIN visitaprobl v ON v.id_Probl = p.idProblems) LEFT JOIN one ON one.n = p.idProblems ORDER "
         "BY p.idProblems",
         "Rossi|Ipertensione|A\nRossi|Diabete|Null\nD'Angelo|Asma|Null"},
        // a join in parentheses on the right side
        {"SELECT a.cod_paz, v.idVisitaProbl FROM archivio a LEFT JOIN (problems p INNER JOIN visitaprobl v "
         "ON v.id_probl = p.idproblems) "
         "ON a.cod_paz = p.cod_paz WHERE a.cod_paz < 3 ORDER BY a.cod_paz",
         "1|1\n2|Null"},
        {"SELECT count(*) FROM (archivio a INNER JOIN problems p ON a.cod_paz = p.cod_paz) INNER JOIN "
         "(visitaprobl v INNER JOIN one o ON o.n < v.idVisitaProbl) ON v.cod_paz = a.cod_paz",
         "5"},
        {"SELECT p.idproblems, v.idvisitaprobl FROM one, visitaprobl v RIGHT JOIN problems p ON v.id_probl = "
         "p.idproblems ORDER BY 1",
         "10|1\n11|Null\n12|Null"},
    });
}

TEST_F(TranslatorSelect, FieldsOfEqualNameAreAllThere)
{
    const auto translation = m_practice.translate(
        "SELECT p.*, v.cod_paz, v.sintomo AS s, v.sintomo, 1+1, len(d.s) FROM problems p, visitaprobl v, "
        "(select sintomo as s from visitaprobl) AS d");
    QStringList names;
    QStringList qualified;
    for (const dao::ResultColumn &column : translation.columns) {
        names.append(column.name);
        qualified.append(column.qualifiedName);
    }
    EXPECT_EQ(names.join(u' ').toStdString(),
              "idProblems p.cod_paz descr_mal v.cod_paz s sintomo Expr1006 Expr1007");
    EXPECT_EQ(qualified.join(u' ').toStdString(),
              "p.idProblems p.cod_paz p.descr_mal v.cod_paz v.sintomo v.sintomo  ");
    ASSERT_EQ(translation.sources.size(), 2);
    EXPECT_EQ(translation.sources[0].alias, u"p");
    EXPECT_EQ(translation.sources[0].identityColumn, 8);
    EXPECT_EQ(translation.sources[1].identityColumn, 9);
    EXPECT_EQ(translation.columns[3].source, 1);
    EXPECT_EQ(translation.columns[3].sourceColumn, 1);
    EXPECT_EQ(translation.columns[3].type, dao::FieldType::Long);
    EXPECT_EQ(translation.columns[4].size, 5);
    EXPECT_EQ(translation.columns[6].source, -1);
    const auto twice = m_practice.translate("SELECT cognome, cognome, null FROM archivio").columns;
    EXPECT_EQ(twice[0].name, u"cognome");
    EXPECT_EQ(twice[1].name, u"cognome");
    EXPECT_EQ(twice[2].type, dao::FieldType::Text);
    EXPECT_FALSE(translation.usesClock);
    EXPECT_TRUE(m_practice.translate("select n from one where date() > nodate").usesClock);
}

TEST_F(TranslatorSelect, HiddenColumnsIdentifyTheRowsUnlessTheyStandForNone)
{
    const auto identity = [this](const char *sql) {
        const dao::Translation translation = m_practice.translate(sql);
        return translation.sources.isEmpty() ? -2 : translation.sources.first().identityColumn;
    };
    EXPECT_EQ(identity("select cognome, peso from archivio"), 2);
    EXPECT_EQ(identity("select distinctrow cognome from archivio"), 1);
    EXPECT_EQ(identity("select top 2 cognome from archivio order by cognome"), 1);
    EXPECT_EQ(identity("select distinct cognome from archivio"), -1);
    EXPECT_EQ(identity("select max(peso) from archivio"), -1);
    EXPECT_EQ(identity("select cognome from archivio group by cognome"), -1);
    EXPECT_EQ(identity("select cognome from archivio union select cognome from archivio"), -2);
}

TEST_F(TranslatorSelect, ConditionsOnFields)
{
    expectRows({
        {"select cod_paz from archivio where attivo order by cod_paz", "1\n3"},
        {"select cod_paz from archivio where not attivo order by cod_paz", "2\n4\n5"},
        {"select cod_paz from archivio where attivo = true and peso > 71", "3"},
        {"select cod_paz from archivio where attivo = 0 and cod_paz >= 4 order by 1", "4\n5"},
        {"select cod_paz from archivio where attivo = 1", ""},
        {"select attivo, attivo + 0, cstr(attivo) from archivio where cod_paz = 1", "-1|-1|-1"},
        {"select cod_paz from archivio where cognome = 'NICOLÒ'", "3"},
        {"select cod_paz from archivio where cognome > 'o'", "1"},
        {"select cod_paz from archivio where note = 12", "3"},
        {"select cod_paz from archivio where note < 100 order by cod_paz", "3\n5"},
        {"select cod_paz from archivio where note <> 12 order by cod_paz", "2\n4\n5"},
        {"select cod_paz from archivio where note <> ''  order by cod_paz", "3\n4\n5"},
        {"select cod_paz from archivio where note = ''", "2"},
        {"select cod_paz from archivio where cod_paz = '3'", "3"},
        {"select cod_paz from archivio where cod_paz = ''", ""},
        {"select cod_paz from archivio where note = null", ""},
        {"select cod_paz from archivio where not (note = '12') order by cod_paz", "2\n4\n5"},
        {"select cod_paz from archivio where data_nasc is null or peso is null order by cod_paz", "2\n3"},
        {"select cod_paz from archivio where peso <> 0 and 120/peso < 2 order by 1", "1\n3"},
        {"select cod_paz from archivio where data_nasc = cdate('07/03/1950') order by cod_paz", "1\n5"},
        {"select cod_paz from archivio where data_nasc >= #1/1/1980# order by cod_paz", "2\n4"},
        {"select cod_paz from archivio where data_nasc > '31/12/1999'", "4"},
        {"select cod_paz from archivio where data_nasc between cdate('15/01/2001 0.0.0') and "
         "cdate('15/01/2001 23.59.59')",
         "4"},
        {"select cod_paz from archivio where format(data_nasc, 'dd/mm/yyyy') = '15/01/2001'", "4"},
        {"select cod_paz from archivio where datediff('yyyy', data_nasc, date()) > 60 order by cod_paz",
         "1\n5"},
        {"select cod_paz from archivio where idRowGuid={guid {00000000-0000-0000-0000-00000000ab01}}", "1"},
        {"select cod_paz from archivio where idRowGuid='00000000-0000-0000-0000-00000000ab01'", "1"},
        {"select minsan from riepil where (tipo = 0) and (cod_pre like 'A*') order by minsan", "F1\nF2"},
        {"select cod_rie from riepil2 where (not isnull(unita)) and len(trim(unita)) > 0 and val(unita) > "
         "197 order by 1",
         "L1\nL2"},
        {"select cod_paz from archivio where left(cognome,4) in ('ross', 'NICO') order by cod_paz",
         "1\n3\n4"},
        {"select cod_paz from archivio where \"Rossi\" = cognome", "1"},
        {"select cognome + ' ' + note as x from archivio where cod_paz in (1, 4) order by cod_paz",
         "Null\nNicolo testo"},
        {"select cognome & ' ' & note & cod_paz & peso from archivio where cod_paz in (1, 4) order by "
         "cod_paz",
         "Rossi 170.5\nNicolo testo460"},
        {"select format(data_nasc,'dd/mm/yyyy'), format(peso,'0.0'), IIF((attivo=-1), 'SI', 'NO') As a from "
         "archivio "
         "where cod_paz < 3 order by cod_paz",
         "07/03/1950|70.5|SI\n31/12/1980||NO"},
    });
}

TEST_F(TranslatorSelect, OrderDistinctAndTop)
{
    expectRows({
        {"select cod_paz from archivio order by cognome", "5\n2\n4\n3\n1"},
        {"select cod_paz from archivio order by cognome desc", "1\n3\n4\n2\n5"},
        {"select cod_paz from archivio order by data_nasc, cod_paz desc", "3\n5\n1\n2\n4"},
        {"select cod_paz from archivio order by data_nasc desc, 1", "4\n2\n1\n5\n3"},
        {"select peso * 2 as doppio, cod_paz from archivio where peso is not null order by doppio desc",
         "164|3\n141|1\n120|4\n0|5"},
        {"select cod_paz as peso from archivio where peso > 0 order by peso", "4\n1\n3"},
        {"select cognome from archivio order by archivio.cod_paz", "Rossi\nD'Angelo\nnicolò\nNicolo\nNull"},
        {"select distinct cod_pre from riepil order by cod_pre", "Null\nA\nB\nC"},
        {"select distinctrow cod_pre from riepil where tipo = 0 order by minsan", "A\na"},
        {"select top 2 minsan from riepil order by da_pre desc", "l1\nL2"},
        {"select top 1 cod_paz from archivio where data_nasc is not null order by data_nasc", "1\n5"},
        {"select top 1 * from problems where cod_paz = 1 order by descr_mal", "11|1|Diabete"},
        {"select distinct top 2 cod_pre from riepil where cod_pre is not null order by cod_pre desc", "C\nB"},
        {"select count(*) from (select top 3 minsan from riepil)", "3"},
        {"select top 1 cod_paz, count(*) as quanti from riepil group by cod_paz order by count(*) desc",
         "1|4"},
    });
}

TEST_F(TranslatorSelect, Groups)
{
    expectRows({
        {"select max(idvisitaprobl) as idvisita from visitaprobl", "4"},
        {"select max(idvisitaprobl) from visitaprobl where cod_paz = 77", "Null"},
        {"SELECT sum(r.num_conf) AS numatc1 FROM riepil r WHERE (r.tipo=0)", "5"},
        {"select count(*), count(da_pre), sum(tipo), avg(num_conf), min(minsan), max(da_pre) from riepil",
         "6|5|4|2.5|F1|2024-06-01 00:00:00"},
        {"select cod_pre, count(*) from riepil where cod_pre is not null group by cod_pre order by cod_pre",
         "A|3\nB|1\nC|1"},
        {"select cod_paz, count(*) as n from riepil group by cod_paz having count(*) > 2", "1|4"},
        {"select year(da_pre), count(*) from riepil group by year(da_pre) order by year(da_pre) desc",
         "2024|4\n2023|1\nNull|1"},
        {"select year(da_pre) + 1 as prossimo, count(*) from riepil where da_pre is not null group by "
         "year(da_pre) "
         "order by prossimo",
         "2024|1\n2025|4"},
        {"select first(descr_mal), last(descr_mal) from (select descr_mal from problems order by idproblems) "
         "as p",
         "Ipertensione|Asma"},
        {"select max(unita) from riepil2", "95"},
        {"select sum(iif(tipo = 0, 1, 0)) from riepil", "2"},
        {"select min(attivo), count(attivo) from archivio", "-1|5"},
        {"select sum(note) from archivio where cod_paz in (3, 5)", "19.5"},
    });
}

TEST_F(TranslatorSelect, SubqueriesAndUnions)
{
    expectRows({
        {"select cognome from archivio where cod_paz in (select cod_paz from problems where descr_mal like "
         "'d*')",
         "Rossi"},
        {"select cognome from archivio a where exists (select * from problems p where p.cod_paz = a.cod_paz "
         "and "
         "p.descr_mal = 'asma')",
         "D'Angelo"},
        {"select cognome, (select count(*) from problems p where p.cod_paz = a.cod_paz) as quanti from "
         "archivio a "
         "where a.cod_paz < 4 order by cod_paz",
         "Rossi|2\nD'Angelo|1\nnicolò|0"},
        {"select t.nome, t.kg + 1 from (select cognome as nome, peso as kg from archivio where cod_paz = 1) "
         "as t "
         "where t.nome = 'ROSSI'",
         "Rossi|71.5"},
        {"select minsan from riepil where minsan in (select cod_rie from riepil2) order by minsan, cod_paz",
         "L1\nl1\nL2\nL3"},
        {"select cod_paz from archivio where note in (select cod_paz * 2.5 from archivio)", "5"},
        {"select cod_paz from archivio where cod_paz in (select note from archivio) or cod_paz = 1", "1"},
        {"select ucase(cod_pre) as cod_pre from riepil union select codice from riepil2 order by cod_pre "
         "desc",
         "C\nB\nA\n90.43.2\n90.14.3\n90.14.1\nNull"},
        {"select cod_pre from riepil where tipo = 0 union all select cod_pre from riepil where tipo = 0 "
         "order by 1",
         "A\na\nA\na"},
        {"select count(*) from (select 'x' as c from one union select 'X' from one) as u", "1"},
        {"select 1 as n from one union select n + 1 from one union all select 3 from one order by n desc",
         "3\n2\n1"},
        {"select null as n from one union all select n from one", "Null\n1"},
        {"(select n from one)", "1"},
        {"select 1 + 1", "2"},
    });
}

TEST_F(TranslatorSelect, IndexesAreUsed)
{
    const struct {
        const char *sql;
        const char *index;
    } cases[] = {
        {"select * from riepil where da_pre >= cdate('01/01/2024 0.0.0') and da_pre <= cdate('31/12/2024 "
         "23.59.59')",
         "riepil_date (DA_PRE>? AND DA_PRE<?)"},
        {"select * from riepil where da_pre = #5/11/2024#", "riepil_date (DA_PRE=?)"},
        {"select * from riepil where da_pre > date() - 366", "riepil_date (DA_PRE>?)"},
        {"select * from riepil where da_pre > '01/01/2024'", "riepil_date (DA_PRE>?)"},
        {"select * from archivio where cognome = 'ROSSI'", "archivio_name (cognome=?)"},
        {"select * from archivio where cognome like 'ross*'", "archivio_name (cognome>? AND cognome<?)"},
        {"select * from archivio where cognome like 'rossi'", "archivio_name (cognome=?)"},
        {"select * from archivio where cognome in ('rossi', 'verdi')", "archivio_name (cognome=?)"},
        {"select * from archivio order by cognome", "archivio_name"},
        {"select * from riepil2 s, riepil r where s.codice = '90.14.3' and s.cod_rie = r.minsan",
         "riepil2_code (codice=?)"},
    };
    for (const auto &c : cases) {
        // The server's plan names the index and tells its conditions apart.
        const QString index = QString::fromLatin1(c.index);
        const QString sought = testengine::isServer() ? index.section(u' ', 0, 0) : index;
        EXPECT_NE(m_practice.plan(c.sql).indexOf(sought), -1) << c.sql << "\n"
                                                              << m_practice.plan(c.sql).toStdString();
    }
    // Ordered by the index itself
    const QString plan = m_practice.plan("select * from archivio order by cognome");
    EXPECT_FALSE(plan.contains(u"TEMP B-TREE") || plan.contains(u"Sort")) << plan.toStdString();
}

TEST_F(TranslatorSelect, ErrorsHaveTheirNumberAndQuoteThePlace)
{
    const struct {
        const char *sql;
        int number;
        const char *quoted;
    } cases[] = {
        {"", 3075, ""},
        {"selec * from one", 3075, "'selec * from one'"},
        {"select from one", 3075, "'from one'"},
        {"select * from", 3075, ""},
        {"select * from one where", 3075, ""},
        {"select * from one where n = 1 n", 3075, "'n'"},
        {"select * from one where (n = 1", 3075, ""},
        {"select * from one where n = 1)", 3075, "')'"},
        {"select * from one where empty = 'abc", 3075, "''abc'"},
        {"select * from one where empty = abc'", 3075, "'''"},
        {"select * from [one", 3075, "'[one'"},
        {"select * from one where n in ()", 3075, "')'"},
        {"select * from one where nodate = #31/31/2024#", 3075, "'#31/31/2024#'"},
        {"select n @ 1 from one", 3075, "'@ 1 from one'"},
        {"select * from one order n", 3075, "'n'"},
        {"select * from nowhere", 3078, "'nowhere'"},
        {"select x.* from one", 3078, "'x'"},
        {"select m from one", 3061, "'m'"},
        {"select * from one where one.m = 1", 3061, "'one.m'"},
        {"select * from riepil r where riepil.tipo = 1", 3061, "'riepil.tipo'"},
        {"select cod_paz from archivio a, problems p", 3079, "'cod_paz'"},
        {"select cognome, max(peso) from archivio", 3122, "'cognome'"},
        {"select cognome from archivio group by peso", 3122, "'cognome'"},
        {"select peso from archivio group by peso order by cognome", 3122, "'cognome'"},
        {"select * from archivio where max(peso) > 1", 3096, "'max(peso)'"},
        {"select peso from archivio order by max(peso)", 3096, "'max(peso)'"},
        {"select distinct cognome from archivio order by peso", 3093, "'peso'"},
        {"select * from one order by 9", 3075, "'9'"},
        {"select n from one union select n, n from one", 3346, "'select n, n from one'"},
        {"select n from one union select empty from one", 13, "'select empty from one'"},
        {"select top 5 percent * from one", 3075, "'percent'"},
        {"select * into two from one", 3075, "'into two from one'"},
        {"select * from one where n in (select n, n from one)", 3075, "'select n, n from one'"},
        {"select * from one, one", 3075, "'one'"},
        {"select * from archivio where data_nasc = cdate('__-__-____')", 13, "'cdate('__-__-____')'"},
        {"select * from archivio where data_nasc = 'abc'", 13, "'data_nasc = 'abc''"},
        {"select * from archivio where cint(note) = 1", 13, ""},
        {"select * from archivio where idRowGuid = {guid {123}}", 3075, "'{guid {123}}'"},
    };
    for (const auto &c : cases) {
        QString text;
        EXPECT_EQ(m_practice.errorNumber(c.sql, &text), c.number) << c.sql << "\n" << text.toStdString();
        EXPECT_TRUE(text.contains(c.quoted)) << c.sql << "\n" << text.toStdString();
    }
    const QString deep =
        QStringLiteral("select * from one where ") + QString(100000, u'(') + QStringLiteral("n = 1");
    EXPECT_EQ(m_practice.errorNumber(deep), 3075);
    EXPECT_EQ(m_practice.errorNumber(QStringLiteral("select n") + QString(100000, u'#').replace(u'#', "+1")
                                     + QStringLiteral(" from one")),
              3075);
    const QString signs = QStringLiteral("select ") + QString(100000, u'-') + QStringLiteral("1 from one");
    EXPECT_EQ(m_practice.errorNumber(signs), 0);
}

} // namespace
