// SPDX-License-Identifier: Apache-2.0
#include "app/scenario/ScenarioParser.h"
#include "app/practice/UserError.h"
#include "app/scenario/JsonLine.h"

#include <QJsonArray>
#include <gtest/gtest.h>

using namespace orvale;

namespace {

std::string refusalOf(const QString &scenario)
{
    try {
        parseScenario(scenario);
    } catch (const UserError &error) {
        return error.text().toStdString();
    }
    return "accepted";
}

ScenarioLine only(const QString &line)
{
    const QList<ScenarioLine> lines = parseScenario(line);
    EXPECT_EQ(lines.size(), 1) << line.toStdString();
    return lines.value(0);
}

} // namespace

TEST(ScenarioParser, TakesTheTextAfterTheControlAsItStands)
{
    const struct {
        const char16_t *line;
        const char16_t *name;
        const char16_t *text;
    } cases[] = {
        {u"type me_col 70", u"me_col", u"70"},
        {u"  type\tme_col   70 kg  \r", u"me_col", u"70 kg"},
        {u"type me_col \"\"", u"me_col", u""},
        {u"type me_col \"  70\"", u"me_col", u"  70"},
        {u"type me_col \"", u"me_col", u"\""},
        {u"type me_col detto \"il nonno\"", u"me_col", u"detto \"il nonno\""},
        {u"expect SSPanel2 Colesterolo LDL: 120.0 mg/dl", u"SSPanel2", u"Colesterolo LDL: 120.0 mg/dl"},
        {u"expect lblColore #c00000", u"lblColore", u"#c00000"},
        {u"expect Button2(0) Calcola # non è un commento", u"Button2(0)", u"Calcola # non è un commento"},
        {u"setting CODICE REGIONE = 03", u"CODICE REGIONE", u"03"},
        {u"setting REGIONE=", u"REGIONE", u""},
        {u"setting TITOLO = \" a = b\"", u"TITOLO", u" a = b"},
        {u"get CODICE REGIONE # commento", u"CODICE REGIONE", u""},
        {u"sql clinical SELECT * FROM riepil WHERE da_pre > #11/21/2026#", u"clinical",
         u"SELECT * FROM riepil WHERE da_pre > #11/21/2026#"},
        {u"extract Trova \"due parole\" 0", u"Trova", u"\"due parole\" 0"},
    };
    for (const auto &[line, name, text] : cases) {
        const ScenarioLine parsed = only(QString::fromUtf16(line));
        EXPECT_EQ(parsed.name, QString::fromUtf16(name));
        EXPECT_EQ(parsed.text, QString::fromUtf16(text));
    }
}

TEST(ScenarioParser, ReadsNumbersDatesAndParameters)
{
    EXPECT_EQ(only("today 2026-11-21 # fissa").date, QDate(2026, 11, 21));
    EXPECT_EQ(only("patient -1").count, -1);
    EXPECT_EQ(only("dblclick Grid 12").count, 12);
    EXPECT_EQ(only("action 99").count, 99);
    EXPECT_FALSE(only("action 81  # senza").parameter.isValid());
    EXPECT_EQ(only("action 3 3").parameter, QVariant(3));
    EXPECT_EQ(only("action 9 fumatore").parameter, QVariant("fumatore"));
    EXPECT_EQ(only("action 9 \"3\"").parameter, QVariant("3"));
}

TEST(ScenarioParser, LeavesOutCommentsAndCountsAllLines)
{
    const auto lines = parseScenario("# titolo\n\n  # altro\nform\r\n\t\nclick Button1   # esce\n");
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(lines[0].number, 4);
    EXPECT_EQ(lines[1].number, 6);
    EXPECT_EQ(lines[1].name, "Button1");
    EXPECT_TRUE(parseScenario({}).isEmpty());
}

TEST(ScenarioParser, NamesTheLineItRefuses)
{
    const struct {
        const char *line;
        const char *reason;
    } cases[] = {
        {"clik Button1", "comando sconosciuto: clik"},
        {"Click Button1", "comando sconosciuto: Click"},
        {"click", "manca il nome del controllo"},
        {"click Button1 Button2", "testo di troppo: Button2"},
        {"type me_col", "manca il testo (\"\" per il testo vuoto)"},
        {"expect me_col", "manca il testo (\"\" per il testo vuoto)"},
        {"select Grid", "manca il numero della riga"},
        {"select Grid -1", "numero di riga non valido: -1"},
        {"select Grid due", "numero di riga non valido: due"},
        {"today 21/11/2026", "la data si scrive AAAA-MM-GG, non 21/11/2026"},
        {"today 2026-02-30", "la data si scrive AAAA-MM-GG, non 2026-02-30"},
        {"patient", "manca il codice del paziente"},
        {"patient 12x", "codice del paziente non valido: 12x"},
        {"action", "manca il codice dell'azione"},
        {"action 40000", "codice dell'azione non valido: 40000"},
        {"answer Forse", "risposta sconosciuta: Forse (ci sono Yes, No, Ok, Cancel)"},
        {"key Escape2", "tasto sconosciuto: Escape2"},
        {"key Ctrl+A, Ctrl+B", "testo di troppo: Ctrl+B"},
        {"setting REGIONE", "manca il segno = dopo il nome dell'impostazione"},
        {"setting = 3", "manca il nome dell'impostazione"},
        {"get", "manca il nome dell'impostazione"},
        {"sql clinical", "manca il testo SQL"},
        {"sql Orvale SELECT 1",
         "archivio sconosciuto: Orvale (ci sono clinical, codes, third, doctors, local, events)"},
        {"shot ../x", "il nome di un'immagine non può contenere una cartella: ../x"},
        {"form calcLDL", "testo di troppo: calcLDL"},
    };
    for (const auto &[line, reason] : cases)
        EXPECT_EQ(refusalOf(QStringLiteral("form\n\n") + QString::fromUtf8(line)),
                  std::string("riga 3: ") + reason);
}

TEST(JsonLine, KeepsTheOrderAndEscapesTexts)
{
    const JsonLine inner = JsonLine().add("z", "a\"b\\c\n\u00b2").add("a", QJsonValue());
    const JsonLine line = JsonLine()
                              .add("text", 77.78)
                              .add("control", QJsonArray{1, true, QJsonValue()})
                              .add("list", QList<JsonLine>{inner, JsonLine()})
                              .add("object", inner);
    EXPECT_EQ(line.text().toStdString(),
              R"({"text":77.78,"control":[1,true,null],"list":[{"z":"a\"b\\c\n²","a":null},{}],)"
              R"("object":{"z":"a\"b\\c\n²","a":null}})");
}
