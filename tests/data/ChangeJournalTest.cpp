// SPDX-License-Identifier: Apache-2.0
#include "data/ChangeJournal.h"

#include "CountedPauses.h"
#include "DataFixture.h"
#include "data/RecordsetOperations.h"
#include "values/JetValues.h"

namespace {

using namespace clivara;

class ChangeJournalTest : public DataFixture {
protected:
    ChangeJournalTest()
    {
        clinical = create("Orvale.sqlite",
                          {"CREATE TABLE Modifiche (idModifica COUNTER, Tipo SHORT, data_mod DATETIME, "
                           "cod_paz LONG, codice1 TEXT(15), codice2 TEXT(15), cancellazione YESNO)",
                           "CREATE INDEX paz_tipo ON Modifiche (cod_paz, Tipo, data_mod)"});
        events = create("Eventi.sqlite",
                        {"CREATE TABLE Eventi (idEvento COUNTER, MedicoR TEXT(10), Medico TEXT(10), "
                         "metodo TEXT(40), codPaz LONG, Data DATETIME, chiave TEXT(40), chiave1 TEXT(40), "
                         "chiave2 TEXT(40), Eseguita YESNO)"});
    }

    void change(const QVariant &key, bool deletion = false, qint16 kind = Questionnaire, qint32 patient = 17)
    {
        journal().recordChange(kind, patient, key, deletion);
    }
    ChangeJournal journal() { return {*clinical, *events, clock, log, operations}; }

    // The journal's rows as "kind patient day codice1§codice2", with "-" after a deletion and Null shown as ~.
    QStringList changes()
    {
        QStringList lines;
        for (const auto rows = clinical->OpenRecordset("SELECT * FROM Modifiche ORDER BY idModifica");
             !rows->Eof(); rows->MoveNext()) {
            const auto part = [&](const QString &field) {
                return rows->Fields(field).isNull() ? QStringLiteral("~") : rows->Fields(field).text();
            };
            lines.append(part("Tipo") + ' ' + part("cod_paz") + ' '
                         + jet::storedDate(rows->Fields("data_mod").date()) + ' ' + part("codice1") + "§"
                         + part("codice2")
                         + (rows->Fields("cancellazione").Value().toBool() ? " deleted" : ""));
        }
        return lines;
    }

    CountedPauses pauses;
    RecordsetOperations operations{log, pauses};
    std::shared_ptr<dao::Database> clinical, events;
};

TEST_F(ChangeJournalTest, ADaysChangesOfOneItemAreOneRow)
{
    change("X");
    change("X");
    change("x"); // the engine compares texts without case; the row takes the last spelling
    EXPECT_EQ(changes(), QStringList("4 17 2026-11-21 00:00:00 x§~"));
    change("X", true);
    change("X", true);
    change("A");
    change("X", false, GeneralInformation);
    change("X", false, Questionnaire, 18);
    EXPECT_EQ(changes(), (QStringList{"4 17 2026-11-21 00:00:00 x§~", "4 17 2026-11-21 00:00:00 X§~ deleted",
                                      "4 17 2026-11-21 00:00:00 A§~", "3 17 2026-11-21 00:00:00 X§~",
                                      "4 18 2026-11-21 00:00:00 X§~"}));
    clock.set(jet::dateTime(2026, 11, 22, 8, 30));
    change("X");
    EXPECT_EQ(changes().size(), 6);
    EXPECT_EQ(changes().last(), "4 17 2026-11-22 00:00:00 X§~") << "a day, without its time";
}

TEST_F(ChangeJournalTest, KeysAreOneOrTwoParts)
{
    struct Case {
        QVariant key;
        const char *parts;
        int rows; // after two changes
    };
    const Case cases[]{
        {"ABC§DEF", "ABC§DEF", 1},
        {"Dell'Acqua§l'1", "Dell'Acqua§l'1", 1},
        {"A§B§C", "A§B§C", 1}, // only the first sign separates
        {"§B", "§B", 1},
        {"123456789012345", "123456789012345§~", 1},
        {"1234567890123456", "123456789012345§~", 2}, // sought whole, kept short: never found again
        {"A§1234567890123456", "A§123456789012345", 2},
        {"", "~§~", 1},
        {"   ", "~§~", 1},
        {QVariant(), "~§~", 1},
    };
    for (const Case &c : cases) {
        clinical->Execute("DELETE FROM Modifiche");
        change(c.key);
        change(c.key);
        const QStringList rows = changes();
        EXPECT_EQ(rows.size(), c.rows) << c.parts;
        EXPECT_EQ(rows.last(), QStringLiteral("4 17 2026-11-21 00:00:00 ") + c.parts);
    }
}

TEST_F(ChangeJournalTest, PartsOfAFoundRowThatTheKeyDoesNotNameStay)
{
    change("ABC§DEF");
    change("ABC");
    change(QVariant());
    EXPECT_EQ(changes(), QStringList("4 17 2026-11-21 00:00:00 ABC§DEF"));
}

TEST_F(ChangeJournalTest, AFieldThatFailsIsLeftOutAndTheRowIsWritten)
{
    clinical->Execute("DROP TABLE Modifiche");
    clinical->Execute("CREATE TABLE Modifiche (idModifica COUNTER, Tipo SHORT, data_mod DATETIME, cod_paz "
                      "LONG, codice1 TEXT(2), "
                      "codice2 TEXT(15), cancellazione YESNO)");
    change("ABC§DEF");
    EXPECT_EQ(changes(), QStringList("4 17 2026-11-21 00:00:00 ~§DEF"));
    clinical->Execute("DROP TABLE Modifiche");
    change("ABC");
    EXPECT_EQ(logged().filter("Modifiche - Error ").size(), 1) << "a lost change is told";
}

TEST_F(ChangeJournalTest, EventsAreAppended)
{
    EXPECT_EQ(journal().recordEvent("M001", "M002", "InserimentoPaziente", 17), 0);
    EXPECT_EQ(journal().recordEvent("M001", "M002", "ModificaEsenzioni", QVariant(), "C01", "  ", "d'a"), 0);
    EXPECT_EQ(journal().recordEvent("M001", "M001", "ModificaPaziente", " ", QString(41, 'x'), "b"), 0)
        << "a key that does not fit is left out";
    QStringList lines;
    for (const auto rows = events->OpenRecordset("SELECT * FROM Eventi ORDER BY idEvento"); !rows->Eof();
         rows->MoveNext()) {
        QStringList fields;
        for (int i = 1; i < rows->FieldCount(); ++i)
            fields.append(rows->Fields(i).isNull() ? QStringLiteral("~")
                          : rows->Fields(i).Type() == dao::FieldType::Date
                              ? jet::storedDate(rows->Fields(i).date())
                              : rows->Fields(i).text());
        lines.append(fields.join('|'));
    }
    EXPECT_EQ(lines, (QStringList{"M001|M002|InserimentoPaziente|17|2026-11-21 00:00:00||||true",
                                  "M001|M002|ModificaEsenzioni|0|2026-11-21 00:00:00|C01||d'a|true",
                                  "M001|M001|ModificaPaziente|0|2026-11-21 00:00:00|~|b||true"}));
    EXPECT_EQ(logged().filter("Recordset_Update - 0").size(), 3);
    events->Execute("DROP TABLE Eventi");
    EXPECT_EQ(journal().recordEvent("M001", "M001", "ModificaPaziente", 1), -1);
}

} // namespace
