// SPDX-License-Identifier: Apache-2.0
#include "regional/SheetData.h"

#include "regional/SheetDates.h"

#include <QRegularExpression>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace clivara {
namespace {

TEST(SheetDatesTest, DatesWithAndWithoutBars)
{
    EXPECT_EQ(StrData2woBars("21/11/2026"), "21112026");
    EXPECT_EQ(StrData2wBars("21112026"), "21/11/2026");
    EXPECT_EQ(StrDatawoBars2Data("29022024"), QDate(2024, 2, 29));
    for (const char *none : {"", "00000000", "29022023", "2911202", "        ", "2a112026"})
        EXPECT_FALSE(StrDatawoBars2Data(none).isValid()) << none;
}

// A value of every field, by chance: what a doctor could have entered.
SheetData randomSheet(const SheetLayout &layout, std::mt19937 &random)
{
    const auto below = [&](int limit) { return int(random() % unsigned(limit)); };
    SheetData sheet(layout);
    for (int i = 0; i < layout.fields.size(); ++i) {
        const SheetField &field = layout.fields[i];
        QString value;
        switch (field.kind) {
        case SheetFieldKind::List:
            value = QString::number(below(int(field.entries.size())));
            break;
        case SheetFieldKind::Text: {
            const QString signs = QString::fromUtf8("aèÉ'\"%|€ 0,;\\");
            for (int length = below(field.width + 1); length > 0; --length)
                value += signs.at(below(int(signs.size())));
            while (value.endsWith(' '))
                value.chop(1);
            break;
        }
        case SheetFieldKind::Number:
            if (below(4) != 0) {
                const bool hasDecimals = field.pattern.contains('.') || field.pattern.contains(',');
                const int highest = int(std::pow(10, field.pattern.count('0')));
                const int lowest = field.blank.trimmed().isEmpty() ? 0 : 1; // where zero is an answer
                value = QString::number(lowest + below(highest - lowest));
                if (hasDecimals) {
                    const qsizetype decimals =
                        field.pattern.size() - 1 - field.pattern.indexOf(QRegularExpression("[.,]"));
                    value = QString::number(value.toInt() / std::pow(10, decimals));
                }
            }
            break;
        case SheetFieldKind::Date:
            if (below(4) != 0)
                value = QDate(1900 + below(200), 1 + below(12), 1 + below(28)).toString("dd/MM/yyyy");
            break;
        case SheetFieldKind::Kept:
            for (int c = 0; c < field.width; ++c)
                value += QChar('0' + below(10));
            break;
        case SheetFieldKind::Total:
        case SheetFieldKind::Band:
        case SheetFieldKind::Copy:
        case SheetFieldKind::Mark:
            continue; // follow from the others
        }
        sheet.setValue(i, value);
    }
    AggiornaTotali(sheet);
    return sheet;
}

class SheetRoundTrip : public testing::TestWithParam<int> { };

TEST_P(SheetRoundTrip, WhatWasEnteredComesBack)
{
    const SheetLayout &layout = *sheetLayout(GetParam());
    std::mt19937 random(20261121u + unsigned(GetParam()));
    for (int round = 0; round < 2000; ++round) {
        const SheetData sheet = randomSheet(layout, random);
        const QString stored = CreaStringaDati(sheet);
        ASSERT_EQ(stored.size(), layout.length);
        const ReadSheet read = readSheetString(layout, stored);
        ASSERT_TRUE(read.data) << read.fault.toStdString() << '\n' << stored.toStdString();
        for (int i = 0; i < layout.fields.size(); ++i)
            ASSERT_EQ(read.data->value(i).toStdString(), sheet.value(i).toStdString())
                << layout.fields[i].name.toStdString() << '\n'
                << stored.toStdString();
        ASSERT_EQ(CreaStringaDati(*read.data), stored);
    }
}

// Cut, longer or changed strings are refused or read as exactly what they say, never as something else.
TEST_P(SheetRoundTrip, ADamagedStringIsRefusedOrReadAsItStands)
{
    const SheetLayout &layout = *sheetLayout(GetParam());
    std::mt19937 random(7u + unsigned(GetParam()));
    int refused = 0;
    for (int round = 0; round < 2000; ++round) {
        QString stored = CreaStringaDati(randomSheet(layout, random));
        const int place = int(random() % unsigned(stored.size()));
        switch (round % 3) {
        case 0:
            stored.truncate(place);
            break;
        case 1:
            stored.insert(place, 'x');
            break;
        default:
            stored[place] = QChar(u"9x 0"[random() % 4]);
        }
        const ReadSheet read = readSheetString(layout, stored);
        ASSERT_EQ(read.data.has_value(), read.fault.isEmpty());
        if (!read.data) {
            ++refused;
            continue;
        }
        ASSERT_EQ(round % 3, 2); // of another length it never fits
        // A number or date of blanks or zeros is an empty one; everything else is written back as it was.
        const ReadSheet again = readSheetString(layout, CreaStringaDati(*read.data));
        ASSERT_TRUE(again.data && *again.data == *read.data) << stored.toStdString();
    }
    EXPECT_GT(refused, 1300);
}

INSTANTIATE_TEST_SUITE_P(AllTypes, SheetRoundTrip, testing::Range(1, 8));

TEST(SheetDataTest, PacksTypedValues)
{
    const SheetLayout &diabetes = *sheetLayout(1);
    const SheetLayout &hypertension = *sheetLayout(2);
    const struct {
        const SheetLayout &layout;
        const char *field, *value, *piece; // piece null: does not fit
    } cases[] = {
        {diabetes, "Glicata", "7.25", "07.3"},
        {diabetes, "Glicata", "7,2", "07.2"},
        {diabetes, "Glicata", "", "00.0"},
        {diabetes, "Glicata", " ", "00.0"},
        {diabetes, "Glicata", "99.9", "99.9"},
        {diabetes, "Glicata", "99.95", nullptr},
        {diabetes, "Glicata", "-1", nullptr},
        {diabetes, "Glicata", "7.", "07.0"},
        {diabetes, "Glicata", ".", nullptr},
        {diabetes, "Creatinina", "1.25", "01,3"},
        {diabetes, "Microalbumina", "", "  , "},
        {diabetes, "Peso", "100", "100.0"},
        {diabetes, "Peso", "1000", nullptr},
        {hypertension, "Peso", "100", "100.0"},
        {hypertension, "SistolicaMax", "1000", nullptr},
        {hypertension, "Creatinina", "0.954", "0.95"},
        {diabetes, "DataFondo", "29/02/2024", "29022024"},
        {diabetes, "DataFondo", "29/02/2023", nullptr},
        {diabetes, "DataFondo", "1/2/2024", nullptr},
        {diabetes, "DataFondo", "", "        "},
        {diabetes, "Fumo", "2", "2"},
        {*sheetLayout(7), "Riacutizzazioni", "0", "00"},
        {*sheetLayout(7), "Riacutizzazioni", "", "  "},
    };
    for (const auto &[layout, name, value, piece] : cases) {
        const auto packed = packedField(layout.fields[layout.indexOf(name)], value);
        EXPECT_EQ(packed.value_or("none").toStdString(), piece ? piece : "none") << name << ' ' << value;
    }
}

TEST(SheetDataTest, AStringWithoutTheMarkIsReadOnlyWhenSomebodyVouchesForIt)
{
    const SheetLayout &layout = *sheetLayout(1);
    const QString stored = "103221000120122111"
                           + QString("Avvisare l'infermiera di comunita'").leftJustified(79)
                           + "07.624.189.9060320260311202526092025" + "00,000300               , ";
    ASSERT_EQ(stored.size(), 159);
    ASSERT_EQ(layout.earlierLength, 159);
    const ReadSheet unread = readSheetString(layout, stored);
    EXPECT_FALSE(unread.data) << "its digits may mean something else";
    EXPECT_TRUE(unread.isUnmarked);
    const ReadSheet read = readSheetString(layout, stored, SheetAuthor::Vouched);
    ASSERT_TRUE(read.data) << read.fault.toStdString();
    EXPECT_EQ(read.data->entry("TipoDiabete"), 1);
    EXPECT_EQ(read.data->entry("Fumo"), 3);
    EXPECT_EQ(read.data->value("Note"), "Avvisare l'infermiera di comunita'");
    EXPECT_EQ(read.data->value("Glicata"), "7.6");
    EXPECT_EQ(read.data->value("DataGlicata"), "06/03/2026");
    EXPECT_EQ(read.data->value("Peso"), "89.9");
    EXPECT_EQ(read.data->value("Creatinina"), "");
    EXPECT_EQ(CreaStringaDati(*read.data), stored + "089.9CLV2") << "everything else stays where it was";
    const ReadSheet damaged = readSheetString(layout, "9" + stored.mid(1), SheetAuthor::Vouched);
    EXPECT_FALSE(damaged.data || damaged.isUnmarked);
}

TEST(SheetDataTest, AWeightOfThreeDigitsStandsBehindTheRest)
{
    const SheetLayout &layout = *sheetLayout(1);
    SheetData sheet(layout);
    const QString empty = CreaStringaDati(sheet);
    const struct {
        const char *weight, *brief, *whole;
    } cases[] = {{"", "00.0", "000.0"},
                 {"72.5", "72.5", "072.5"},
                 {"99.94", "99.9", "099.9"},
                 {"99.95", "00.0", "100.0"},
                 {"112.3", "00.0", "112.3"}};
    for (const auto &[weight, brief, whole] : cases) {
        sheet.setValue(layout.indexOf("Peso"),
                       fittedValue(layout.fields[layout.indexOf("Peso")], weight).value());
        const QString stored = CreaStringaDati(sheet);
        EXPECT_EQ(stored, QString(empty).replace(105, 4, brief).replace(159, 5, whole)) << weight;
        const ReadSheet read = readSheetString(layout, stored);
        ASSERT_TRUE(read.data) << read.fault.toStdString();
        EXPECT_EQ(read.data->value("Peso"), sheet.value("Peso"));
        // Another program has written one of the two.
        EXPECT_FALSE(readSheetString(layout, QString(stored).replace(105, 4, "61.0")).data);
    }
}

TEST(SheetDataTest, SaysWhyAStringDoesNotFit)
{
    const SheetLayout &layout = *sheetLayout(1);
    const QString whole = CreaStringaDati(SheetData(layout));
    const auto with = [&](int position, const char *piece) {
        return QString(whole).replace(position - 1, qsizetype(strlen(piece)), piece);
    };
    const struct {
        QString stored;
        const char *fault;
    } cases[] = {
        {"", "i dati mancano"},
        {whole.left(50), "i dati hanno 50 caratteri invece di 168"},
        {whole + "x", "i dati hanno 169 caratteri invece di 168"},
        {with(165, "XXXX"), "«XXXX» al carattere 165 non è un valore di «Modello di questo programma»"},
        {with(1, "7"), "«7» al carattere 1 non è un valore di «Tipo di diabete»"},
        {with(1, " "), "« » al carattere 1 non è un valore di «Tipo di diabete»"},
        {with(98, "7.20"), "«7.20» al carattere 98 non è un valore di «Emoglobina glicata (%)»"},
        {with(98, "07,2"), "«07,2» al carattere 98 non è un valore di «Emoglobina glicata (%)»"},
        {with(110, "31022026"), "«31022026» al carattere 110 non è un valore di «Data della glicata»"},
        {with(110, "2026-1-1"), "«2026-1-1» al carattere 110 non è un valore di «Data della glicata»"},
    };
    for (const auto &[stored, fault] : cases) {
        const ReadSheet read = readSheetString(layout, stored);
        EXPECT_FALSE(read.data);
        EXPECT_EQ(read.fault.toStdString(), fault);
    }
    // A date of zeros is no date, and no fault.
    const ReadSheet zeros = readSheetString(layout, with(110, "00000000"));
    ASSERT_TRUE(zeros.data);
    EXPECT_EQ(zeros.data->value("DataGlicata"), "");
}

TEST(SheetDataTest, TotalsFollowThePoints)
{
    const SheetLayout &layout = *sheetLayout(4);
    SheetData sheet(layout);
    AggiornaTotali(sheet);
    EXPECT_EQ(sheet.value("Totale"), "0");
    EXPECT_EQ(shownValue(sheet, layout.indexOf("Fascia")), "da completare");
    const int items = unassessedItems(sheet);
    EXPECT_EQ(items, 25);

    // All as good as can be: nothing is frail.
    const auto chooseAll = [&](bool worst) {
        for (int i = 0; i < layout.fields.size(); ++i) {
            if (layout.fields[i].kind == SheetFieldKind::List)
                sheet.setValue(i, worst ? QString::number(layout.fields[i].entries.size() - 1) : "1");
        }
        AggiornaTotali(sheet);
    };
    chooseAll(false);
    EXPECT_EQ(sheet.value("Totale"), "0");
    EXPECT_EQ(shownValue(sheet, layout.indexOf("Fascia")), "assente");

    // The edges of the bands, by dependence in the basic activities (two points each) and one more point.
    const char *const basic[] = {"Bagno", "Vestirsi", "Toilette", "Spostarsi", "Continenza", "Alimentarsi"};
    const auto set = [&](const char *name, int entry) {
        sheet.setValue(layout.indexOf(name), QString::number(entry));
        AggiornaTotali(sheet);
    };
    set(basic[0], 3);
    set(basic[1], 3);
    set("Telefono", 2);
    EXPECT_EQ(sheet.value("Totale"), "5");
    EXPECT_EQ(shownValue(sheet, layout.indexOf("Fascia")), "assente");
    set("Spesa", 2);
    EXPECT_EQ(sheet.value("Totale"), "6");
    EXPECT_EQ(sheet.value("TotaleBase"), "4");
    EXPECT_EQ(sheet.value("TotaleStrumentali"), "2");
    EXPECT_EQ(shownValue(sheet, layout.indexOf("Fascia")), "lieve");
    set("Denaro", 0);
    EXPECT_EQ(unassessedItems(sheet), 1);
    EXPECT_EQ(shownValue(sheet, layout.indexOf("Fascia")), "da completare");

    chooseAll(true);
    EXPECT_EQ(sheet.value("Totale"), "47");
    EXPECT_EQ(shownValue(sheet, layout.indexOf("Fascia")), "grave");
    int areas = 0;
    for (const char *total : {"TotaleBase", "TotaleStrumentali", "TotaleMobilita", "TotaleMente",
                              "TotaleCliniche", "TotaleSociali"})
        areas += sheet.entry(total);
    EXPECT_EQ(areas, 47);
}

} // namespace
} // namespace clivara
