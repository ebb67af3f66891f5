// SPDX-License-Identifier: Apache-2.0
#include "regional/SheetLayout.h"

#include "regional/SheetData.h"
#include "regional/SheetSources.h"

#include <gtest/gtest.h>

namespace clivara {
namespace {

std::string faultOf(const char *lines)
{
    try {
        parseSheetLayout(QStringLiteral("scheda | 9 | F | Elenco | Titolo\ngruppo | Uno\n")
                         + QString::fromUtf8(lines));
    } catch (const LayoutError &error) {
        return error.what();
    }
    return {};
}

TEST(SheetLayoutTest, ReadsFieldsOfEachKind)
{
    const SheetLayout layout =
        parseSheetLayout("# comment\n"
                         "scheda | 9 | F | Elenco | Titolo\n"
                         "criteri | bpco\n"
                         "gruppo | Uno, due\n"
                         "  2 | 1 | elenco | Fumo | Fuma? | no = 0 / sì = 3 / *non so | fumo()\n"
                         "  1 | 1 | fascia | Fascia | Fascia | da fare / bassa = 0 | fascia(Punti)\n"
                         "gruppo | Tre\n"
                         "  3 | 4 | numero | Peso | Peso | 00,0 | esame(90.1;90.2, 12) | \"  , \"\n"
                         "  7 | 2 | totale | Punti | Punti | | punti(Uno, due)\n"
                         "  9 | 8 | data | Giorno | Giorno |\n"
                         " 17 | 3 | testo | Note | Note |\n"
                         " 20 | 2 | riserva | Altro | | | | \"0 \"\n");
    EXPECT_EQ(layout.type, 9);
    EXPECT_EQ(layout.criteria, "bpco");
    EXPECT_EQ(layout.groups, (QStringList{"Uno, due", "Tre"}));
    EXPECT_EQ(layout.length, 21);
    const SheetField &smoking = layout.fields[0];
    EXPECT_EQ(smoking.entries.size(), 3);
    EXPECT_EQ(smoking.entries[1].text, "sì");
    EXPECT_EQ(smoking.entries[1].points, 3);
    EXPECT_FALSE(smoking.entries[2].points);
    EXPECT_EQ(smoking.blank, "2");
    EXPECT_EQ(layout.fields[2].source.arguments, (QStringList{"90.1;90.2", "12"}));
    EXPECT_EQ(layout.fields[3].source.arguments, QStringList{"Uno, due"});
    EXPECT_EQ(CreaStringaDati(SheetData(layout)), "02  , 00           0 ");
}

TEST(SheetLayoutTest, RefusesWhatWouldLoseData)
{
    const struct {
        const char *lines, *fault;
    } cases[] = {
        {"", "line 3: a layout has a line \"scheda\" and fields"},
        {"1 | 8 | data | A | A\n10 | 8 | data | B | B", "line 4: B stands at 10, not at 9"},
        {"1 | 8 | data | A | A\n8 | 8 | data | B | B", "line 4: B stands at 8, not at 9"},
        {"1 | 8 | data | A | A\n9 | 8 | data | A | B", "line 4: the name A is there twice"},
        {"1 | 6 | data | A | A", "line 3: the field A has another width"},
        {"1 | 2 | elenco | A | A | no / sì", "line 3: the field A has another width"},
        {"1 | 1 | elenco | A | A", "line 3: a list without entries"},
        {"1 | 1 | elenco | A | A | 0 / 1 / 2 / 3 / 4 / 5 / 6 / 7 / 8 / 9 / 10",
         "line 3: more than ten entries do not fit one digit"},
        {"1 | 4 | numero | A | A | 0.0.0", "line 3: \"0.0.0\" is no pattern of a number"},
        {"1 | 4 | numero | A | A | 00.0 | | \"0\"", "line 3: the field A has another width"},
        {"x | 4 | numero | A | A | 00.0", "line 3: \"x\" is no number"},
        {"1 | 4 | altro | A | A", "line 3: unknown kind \"altro\""},
        {"1 | 4 | testo | A | A | | due parole", "line 3: \"due parole\" is no source"},
        {"1 | 4 | testo", "line 3: a field has position, width, kind, name and caption"},
    };
    for (const auto &[lines, fault] : cases)
        EXPECT_EQ(faultOf(lines), fault) << lines;
}

TEST(SheetLayoutTest, AllSevenTypesAreWhole)
{
    const struct {
        const char *form, *listText, *caption;
    } types[] = {
        {"AIR15_7_1", "Scheda diabetologica (Art. 7)", "AIR Campania - Art. 7 - Scheda Diabetologica"},
        {"AIR15_7_2", "Scheda ipertensione (Art. 7)", "AIR Campania - Art. 7 - Scheda Ipertensione"},
        {"AIR15_7_3", "Scheda malattie respiratorie (Art. 7)",
         "AIR Campania - Art. 7 - Scheda Malattie respiratorie"},
        {"AIR15_7_4", "Scheda valutazione fragilità (Art. 13)",
         "AIR Campania - Art. 13 - Scheda valutazione fragilità"},
        {"AIR15_7_3_2", "Scheda malattie respiratorie (Art. 7) - 2021",
         "AIR Campania - Art. 7 - 2021 - Scheda Malattie respiratorie"},
        {"AIR15_7_6", "Scheda malattie respiratorie (Art. 7) - Asma",
         "AIR Campania - Art. 7 - Scheda Malattie respiratorie - ASMA"},
        {"AIR15_7_7", "Scheda malattie respiratorie (Art. 7) - BPCO",
         "AIR Campania - Art. 7 - Scheda Malattie respiratorie - BPCO"},
    };
    EXPECT_EQ(sheetLayouts().size(), std::size(types));
    int type = 0;
    for (const auto &[form, listText, caption] : types) {
        const SheetLayout *const layout = sheetLayout(++type);
        ASSERT_TRUE(layout);
        EXPECT_EQ(layout->type, type);
        EXPECT_EQ(layout->form, form);
        EXPECT_EQ(sheetTypeText(type).toStdString(), listText);
        EXPECT_EQ(layout->caption.toStdString(), caption);
        for (const SheetField &field : layout->fields) {
            EXPECT_TRUE(field.source.name.isEmpty() || isSheetSource(field.source.name))
                << form << field.name.toStdString();
            // Totals and bands are about what is there.
            const QString argument = field.source.arguments.value(0);
            if (field.kind == SheetFieldKind::Total) {
                EXPECT_TRUE(argument == "*" || layout->groups.contains(argument)) << form;
            }
            if (field.kind == SheetFieldKind::Band) {
                EXPECT_GE(layout->indexOf(argument), 0) << form;
            }
        }
    }
    for (const int unknown : {-1, 0, 8}) {
        EXPECT_FALSE(sheetLayout(unknown));
        EXPECT_TRUE(sheetTypeText(unknown).isEmpty());
    }
}

TEST(SheetLayoutTest, TheDiabetesSheetHasItsPrescribedShape)
{
    const SheetLayout &layout = *sheetLayout(1);
    QList<int> lists(19, 0);
    for (const SheetField &field : layout.fields) {
        if (field.kind == SheetFieldKind::List)
            ++lists[field.position];
    }
    EXPECT_EQ(lists.mid(1), QList<int>(18, 1)); // a digit for each of eighteen lists, first of all
    const SheetField &note = layout.fields[layout.indexOf("Note")];
    EXPECT_EQ(note.position, 19);
    EXPECT_EQ(note.width, 79);
    EXPECT_EQ(CreaStringaDati(SheetData(layout)), QStringLiteral("003000000000000000") + QString(79, ' ')
                                                      + "00.000.000.0" + QString(24, ' ') + "00,0"
                                                      + "00300             " + "  , " + "000.0CLV2");
}

} // namespace
} // namespace clivara
