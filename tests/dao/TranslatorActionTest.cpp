// SPDX-License-Identifier: Apache-2.0
#include "dao/SmallPractice.h"
#include "jetsql/Error.h"

#include <gtest/gtest.h>

using dao::FieldType;
using dao::StatementKind;

namespace {

struct Case {
    const char *statement;
    int affected;
    const char *query;
    const char *rows;
};

void expectChanges(std::initializer_list<Case> cases)
{
    for (const Case &c : cases) {
        const SmallPractice practice;
        try {
            EXPECT_EQ(practice.execute(c.statement), c.affected) << c.statement;
            EXPECT_EQ(practice.rows(c.query).toStdString(), c.rows) << c.statement;
        } catch (const std::exception &error) {
            ADD_FAILURE() << c.statement << "\n" << error.what();
        }
    }
}

TEST(TranslatorAction, InsertsConvertToTheFieldsType)
{
    const char *const newRow = "select * from archivio where cod_paz = 9";
    expectChanges({
        {"INSERT INTO archivio (cod_paz, cognome) VALUES (9, 'Sant''Anna')", 1, newRow,
         "9|Sant'Anna|Null|Null|0|Null|Null"},
        {"insert into archivio values ('9', 5, '11/05/2024', '70.5', 1, null, "
         "'0a0b0c0d-0000-0000-0000-000000000001')",
         1, newRow, "9|5|2024-05-11 00:00:00|70.5|-1|Null|{0A0B0C0D-0000-0000-0000-000000000001}"},
        {"insert into archivio (cod_paz, data_nasc, peso, attivo, idRowGuid) values (8.5 + 0.5, '', '', "
         "null, '')",
         1, newRow, "9|Null|Null|Null|0|Null|Null"},
        {"insert into archivio (cod_paz, cognome, note) values (9, '', '')", 1, newRow,
         "9||Null|Null|0||Null"},
        {"insert into archivio (cod_paz, data_nasc) values (9, date())", 1, newRow,
         "9|Null|2024-05-11 00:00:00|Null|0|Null|Null"},
        {"insert into problems (idproblems, cod_paz, descr_mal) select idvisitaprobl + 100, cod_paz, sintomo "
         "from visitaprobl where sintomo <> ''",
         2, "select * from problems where idproblems > 100 order by 1", "101|1|A\n103|1|b"},
        {"insert into visitaprobl select 50 as idVisitaProbl, cod_paz, data_nasc as datareg from archivio "
         "where cod_paz = 1",
         1, "select * from visitaprobl where idvisitaprobl = 50", "50|1|Null|1950-03-07 00:00:00|Null|0"},
        {"insert into riepil (cod_paz, tipo, num_conf) values (9, 2.5, '3.5')", 1,
         "select tipo, num_conf from riepil where cod_paz = 9", "2|4"},
        {"insert into riepil (cod_paz, minsan) select cod_paz, cognome from archivio where cod_paz = 1", 1,
         "select minsan from riepil where cod_pre is null and tipo is null", "Rossi"},
        {"insert into problems (cod_paz) select note from archivio where note = '' or note = '12'", 2,
         "select cod_paz from problems where idproblems is null order by 1", "Null\n12"},
    });
}

TEST(TranslatorAction, UpdatesConvertToTheFieldsType)
{
    expectChanges({
        {"update VISITAPROBL set id_Probl='' where (id_Probl = 10)", 1,
         "select id_probl from visitaprobl where idvisitaprobl = 1", "Null"},
        {"UPDATE archivio SET cognome = 'O''Neill', attivo = yes, peso = peso + 0.5, data_nasc = "
         "cdate('1/2/03') WHERE cod_paz = 4",
         1, "select cognome, attivo, peso, data_nasc from archivio where cod_paz = 4",
         "O'Neill|-1|60.5|2003-02-01 00:00:00"},
        {"update riepil set tipo = tipo + 0.5 where minsan = 'L2'", 1,
         "select tipo from riepil where minsan = 'l2'", "2"},
        {"update riepil set num_conf = cod_paz, cod_pre = da_pre - da_pre where minsan = 'F2'", 1,
         "select num_conf, cod_pre from riepil where minsan = 'F2'", "2|0"},
        {"update archivio set attivo = (peso > 65), note = attivo where peso is not null", 4,
         "select attivo, note from archivio where cod_paz < 4 order by cod_paz", "-1|-1\n0|\n-1|-1"},
        {"update archivio set attivo = (peso > 65) where cod_paz = 2", 1,
         "select attivo from archivio where cod_paz = 2", "0"},
        {"update archivio as a set a.note = a.cognome & a.cod_paz", 5,
         "select note from archivio where cod_paz = 5", "5"},
        {"UPDATE visitaprobl AS v INNER JOIN problems AS p ON v.id_probl = p.idproblems SET v.sintomo = "
         "left(p.descr_mal, 3)",
         1, "select sintomo from visitaprobl order by idvisitaprobl", "Ipe\nNull\nb\n"},
        {"UPDATE visitaprobl v LEFT JOIN problems p ON v.id_probl = p.idproblems SET v.id_probl = null WHERE "
         "p.idproblems is null and v.id_probl > 0",
         1, "select id_probl from visitaprobl order by idvisitaprobl", "10\nNull\n-1\nNull"},
        {"UPDATE archivio, problems SET archivio.note = problems.descr_mal WHERE archivio.cod_paz = "
         "problems.cod_paz and problems.cod_paz = 2",
         1, "select note from archivio where cod_paz = 2", "Asma"},
    });
}

TEST(TranslatorAction, Deletes)
{
    expectChanges({
        {"DELETE * FROM problems WHERE cod_paz = 1", 2, "select count(*) from problems", "1"},
        {"delete from problems", 3, "select count(*) from problems", "0"},
        {"DELETE v.* FROM visitaprobl AS v WHERE v.datareg = CDATE('11/05/2024')", 1,
         "select count(*) from visitaprobl", "3"},
        {"DELETE v.* FROM visitaprobl v INNER JOIN problems p ON v.id_probl = p.idproblems", 1,
         "select idvisitaprobl from visitaprobl order by 1", "2\n3\n4"},
        {"delete * from problems where cod_paz in (select cod_paz from archivio where cognome = 'rossi')", 2,
         "select count(*) from problems", "1"},
    });
}

TEST(TranslatorAction, WhatDoesNotFitIsAnErrorAndChangesNothing)
{
    const struct {
        const char *statement;
        int number;
    } cases[] = {
        {"insert into archivio (cod_paz, cognome) values (1)", dao::FieldCountDiffers},
        {"insert into archivio (cod_paz) values (1, 2)", dao::FieldCountDiffers},
        {"insert into archivio (cod_paz, peso, COD_PAZ) values (1, 2, 3)", dao::DuplicateDestination},
        {"update archivio set peso = 1, peso = 2", dao::DuplicateDestination},
        {"insert into archivio (nome) values (1)", dao::UnknownFieldName},
        {"insert into nowhere values (1)", dao::ObjectNotFound},
        {"insert into archivio (cod_paz) values ('abc')", dao::ConversionError},
        {"insert into archivio (cod_paz) values (3000000000)", dao::Overflow},
        {"insert into riepil (tipo) values (40000)", dao::Overflow},
        {"insert into riepil (num_conf) values (256)", dao::Overflow},
        {"insert into archivio (data_nasc) values ('31/02/2024')", dao::ConversionError},
        {"insert into riepil (minsan) values ('1234567890')", dao::FieldTooSmall},
        {"insert into archivio (idRowGuid) values ('abc')", dao::ConversionError},
        {"update riepil set minsan = minsan & '12345678'", dao::FieldTooSmall},
        {"update archivio set peso = note", dao::ConversionError},
        {"update archivio set cod_paz = 1, nome = 2", dao::TooFewParameters},
        {"update archivio a, problems p set a.note = '', p.descr_mal = ''", dao::SyntaxError},
        {"update archivio set where 1", dao::SyntaxError},
        {"delete * from archivio a, problems p", dao::SyntaxError},
        {"delete x.* from archivio", dao::ObjectNotFound},
        {"insert into archivio (cod_paz) select cod_paz, cognome from archivio", dao::FieldCountDiffers},
    };
    const SmallPractice practice;
    const auto everything = [&practice] {
        return practice.rows("select * from archivio") + practice.rows("select * from riepil");
    };
    const QString before = everything();
    for (const auto &c : cases)
        EXPECT_EQ(practice.errorNumber(c.statement), c.number) << c.statement;
    EXPECT_EQ(everything().toStdString(), before.toStdString());
}

// name:type(size)! for each field (! required), then name(fields) for each index, with P for primary, U for
// unique
std::string shown(const dao::Definition &definition)
{
    QStringList parts = {definition.table};
    for (const dao::ColumnInfo &column : definition.columns)
        parts.append(QStringLiteral("%1:%2%3%4")
                         .arg(column.name)
                         .arg(int(column.type))
                         .arg(column.size > 0 ? QStringLiteral("(%1)").arg(column.size) : QString(),
                              column.required ? QStringLiteral("!") : QString()));
    for (const dao::IndexInfo &index : definition.indexes)
        parts.append(index.name + u'(' + index.fields.join(u',') + u')'
                     + (index.primary  ? u'P'
                        : index.unique ? u'U'
                                       : u' '));
    return parts.join(u' ').trimmed().toStdString();
}

TEST(TranslatorAction, Definitions)
{
    const SmallPractice practice;
    const auto type = [](FieldType t) { return std::to_string(int(t)); };
    const struct {
        const char *statement;
        StatementKind kind;
        std::string shown;
    } cases[] = {
        {"CREATE TABLE t (id COUNTER CONSTRAINT pk PRIMARY KEY, nome TEXT(30) NOT NULL, [con spazio] MEMO, d "
         "DATETIME UNIQUE)",
         StatementKind::CreateTable,
         "t id:" + type(FieldType::AutoNumber) + " nome:" + type(FieldType::Text) + "(30)! con spazio:"
             + type(FieldType::Memo) + " d:" + type(FieldType::Date) + " pk(id)P d(d)U"},
        {"create table t (a LONG, b SHORT, c BYTE, d YESNO, e CURRENCY, f SINGLE, g DOUBLE, h GUID, i "
         "LONGBINARY, j VARCHAR, "
         "primary key (a, b), constraint u unique (c, d))",
         StatementKind::CreateTable,
         "t a:" + type(FieldType::Long) + " b:" + type(FieldType::Integer) + " c:" + type(FieldType::Byte)
             + " d:" + type(FieldType::Boolean) + " e:" + type(FieldType::Currency)
             + " f:" + type(FieldType::Single) + " g:" + type(FieldType::Double)
             + " h:" + type(FieldType::Guid) + " i:" + type(FieldType::Binary) + " j:" + type(FieldType::Text)
             + "(255) PrimaryKey(a,b)P u(c,d)U"},
        {"CREATE UNIQUE INDEX chiave ON t (a, b DESC)", StatementKind::CreateIndex, "t chiave(a,b)U"},
        {"create index p on t (a) with primary", StatementKind::CreateIndex, "t p(a)P"},
        {"ALTER TABLE t ADD COLUMN x INTEGER NOT NULL", StatementKind::AddColumn,
         "t x:" + type(FieldType::Long) + "!"},
        {"alter table t add y char(3)", StatementKind::AddColumn, "t y:" + type(FieldType::Text) + "(3)"},
        {"alter table t drop column x", StatementKind::DropColumn, "t x:" + type(FieldType::Text)},
        {"alter table t add constraint k primary key (a)", StatementKind::CreateIndex, "t k(a)P"},
        {"DROP TABLE [t]", StatementKind::DropTable, "t"},
        {"drop index chiave on t;", StatementKind::DropIndex, "t chiave()"},
    };
    for (const auto &c : cases) {
        const dao::Translation translation = practice.translate(c.statement);
        EXPECT_EQ(translation.kind, c.kind) << c.statement;
        EXPECT_EQ(shown(translation.definition), c.shown) << c.statement;
        EXPECT_TRUE(translation.sql.isEmpty()) << c.statement;
    }
    for (const char *statement :
         {"create table t", "create table t (a)", "create table t (a complex)",
          "create table t (a text(300))", "create table t (a text(0))",
          "create table t (a long, b long references u (x))", "create table t (a long, a2 long) x",
          "create view v as select 1", "create index i on t", "create index i on t (a) with disallow null",
          "alter table t alter column a text", "drop view v"})
        EXPECT_EQ(practice.errorNumber(statement), dao::SyntaxError) << statement;
    EXPECT_EQ(practice.errorNumber("create table t (a long, primary key (b))"), dao::TooFewParameters);
}

} // namespace
