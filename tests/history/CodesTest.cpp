// SPDX-License-Identifier: Apache-2.0
#include "data/AllergyCode.h"
#include "data/CodePairs.h"
#include "history/InfectionCode.h"

#include <gtest/gtest.h>
#include <random>
#include <set>

namespace clivara {

namespace {

QString nines(int pairs)
{
    return QStringLiteral("99").repeated(pairs);
}

QString twoDigits(int number)
{
    return (number < 10 ? QStringLiteral("0") : QString()) + QString::number(number);
}

// Where each group begins in the code string, from 1, and how many items it has.
struct GroupPlace {
    const char *control;
    int start;
    int items;
};
constexpr GroupPlace groupPlaces[]{{"grami", 1, 17}, {"derma", 35, 2},   {"polv", 39, 5},
                                   {"alim", 49, 41}, {"micof", 131, 12}, {"compos", 155, 9},
                                   {"alb", 173, 15}, {"erbe", 203, 10},  {"epit", 223, 4}};

TEST(AllergyCode, EachAllergenAloneIsAPairAtItsPlace)
{
    std::size_t allergen = 0;
    for (std::size_t group = 0; group < std::size(groupPlaces); ++group) {
        const GroupPlace &place = groupPlaces[group];
        EXPECT_STREQ(allergenGroups[group].control, place.control);
        EXPECT_EQ(firstAllergen(group), int(allergen));
        for (int item = 0; item < place.items; ++item, ++allergen) {
            AllergenSelection alone;
            alone.set(allergen);
            const QString expected = nines(115).replace(place.start - 1 + 2 * item, 2, twoDigits(item));
            EXPECT_EQ(encodeAllergies(alone), expected) << place.control << item;
            EXPECT_EQ(decodeAllergies(expected), alone) << place.control << item;
        }
    }
    EXPECT_EQ(allergen, 115u);
}

TEST(AllergyCode, AllAndNone)
{
    EXPECT_EQ(encodeAllergies({}), nines(115));
    EXPECT_TRUE(decodeAllergies(nines(115)).none());
    const QString all = encodeAllergies(AllergenSelection().set());
    EXPECT_EQ(all.size(), 230);
    EXPECT_TRUE(all.startsWith("000102030405060708091011121314151600010001020304"));
    EXPECT_TRUE(all.contains("383940000102"));
    EXPECT_TRUE(all.endsWith("00010203"));
    EXPECT_TRUE(decodeAllergies(all).all());
}

TEST(AllergyCode, AnyPairButNinetyNineIsSelected)
{
    for (const char *pair : {"00", "98", "9 ", " 9", "  ", "xx", "9x", "-1", "è9"}) {
        const QString code = nines(114) + QString::fromUtf8(pair);
        EXPECT_EQ(decodeAllergies(code), AllergenSelection().set(114)) << pair;
    }
    EXPECT_TRUE(decodeAllergies(QString()).none());
    EXPECT_TRUE(decodeAllergies(QString(230, u' ')).none());
}

TEST(AllergyCode, WrongLengths)
{
    // What is missing counts as selected, what is too much is not looked at.
    EXPECT_EQ(decodeAllergies(nines(113)), AllergenSelection().set(113).set(114));
    EXPECT_EQ(decodeAllergies(nines(114) + u'9'), AllergenSelection().set(114));
    EXPECT_TRUE(decodeAllergies(nines(115) + QStringLiteral("0001")).none());
    // One character lost: every later pair but those of nines alone is out of step.
    EXPECT_EQ(decodeAllergies(QStringLiteral("9") + QStringLiteral("07") + nines(113)),
              AllergenSelection().set(0).set(1).set(114));
}

TEST(AllergyCode, RandomSelectionsComeBack)
{
    std::mt19937 random(6);
    for (int round = 0; round < 500; ++round) {
        AllergenSelection selection;
        for (std::size_t i = 0; i < selection.size(); ++i)
            selection[i] = random() % 100 < unsigned(round % 100);
        const QString code = encodeAllergies(selection);
        ASSERT_EQ(code.size(), 230);
        ASSERT_EQ(decodeAllergies(code), selection);
    }
}

TEST(AllergyCode, Intact)
{
    EXPECT_TRUE(isIntactAllergyCode(encodeAllergies(AllergenSelection().set(3))));
    EXPECT_TRUE(isIntactAllergyCode(nines(114) + QStringLiteral("77")));
    for (const QString &code :
         {nines(114), nines(116), nines(114) + u'9', nines(115) + u' ', nines(114) + QStringLiteral("9x"),
          nines(114) + QStringLiteral("٣٤"), QString()})
        EXPECT_FALSE(isIntactAllergyCode(code)) << code.toStdString();
}

QString noNotes()
{
    return (QStringLiteral("99") + QString(30, u' ')).repeated(5);
}

TEST(InfectionCode, EachDiseaseAloneIsAPairAtItsPlace)
{
    for (int disease = 0; disease < 20; ++disease) {
        const int block = disease - 15;
        const int position = block < 0 ? 2 * disease + 1 : 32 * block + 31; // from 1
        InfectionAnswers alone;
        alone.had.set(std::size_t(disease));
        const QString expected =
            QString(nines(15) + noNotes()).replace(position - 1, 2, twoDigits(block < 0 ? disease : block));
        EXPECT_EQ(encodeInfections(alone), expected) << disease;
        EXPECT_EQ(decodeInfections(expected), alone) << disease;
    }
}

TEST(InfectionCode, AllAndNone)
{
    EXPECT_EQ(encodeInfections({}), nines(15) + noNotes());
    EXPECT_EQ(decodeInfections(nines(15) + noNotes()), InfectionAnswers());
    EXPECT_EQ(decodeInfections({}), InfectionAnswers());
    InfectionAnswers all;
    all.had.set();
    all.notes.fill("perché è così: «30 caratteri»!");
    ASSERT_EQ(all.notes[0].size(), 30);
    const QString code = encodeInfections(all);
    EXPECT_EQ(code.size(), 190);
    EXPECT_TRUE(code.startsWith(QStringLiteral("0001020304050607080910111213140") + u'0' + all.notes[0]));
    EXPECT_EQ(code.mid(158, 2), "04");
    EXPECT_EQ(code.mid(160), all.notes[4]);
    EXPECT_EQ(decodeInfections(code), all);
}

TEST(InfectionCode, NotesKeepTheirBlocks)
{
    struct Case {
        QString note, packed;
    };
    for (const Case &each : std::initializer_list<Case>{
             {"  nel 1987  ", "nel 1987"},
             {QString(31, u'x'), QString(30, u'x')},
             // One character each, also when the accent came as a sign of its own.
             {QString::fromUtf8("e\u0300").repeated(30), QString::fromUtf8("\u00e8").repeated(30)},
             // No half of a character.
             {QString(29, u'x') + QString::fromUtf8("😀"), QString(29, u'x')},
             {"riga\nriga\t", "riga\nriga\t"}}) {
        InfectionAnswers answers;
        answers.notes[1] = each.note;
        answers.had.set(17);
        const QString code = encodeInfections(answers);
        EXPECT_EQ(code, nines(15) + QStringLiteral("99") + QString(30, u' ') + QStringLiteral("99")
                            + each.packed.leftJustified(30) + QStringLiteral("02") + QString(30, u' ')
                            + (QStringLiteral("99") + QString(30, u' ')).repeated(2));
        EXPECT_EQ(decodeInfections(code).notes[1], each.packed);
        EXPECT_EQ(decodeInfections(code).had, answers.had);
    }
}

TEST(InfectionCode, DamagedStrings)
{
    // The blanks of the last note are gone, as where a program trims.
    EXPECT_EQ(decodeInfections(nines(15) + noNotes().trimmed()), InfectionAnswers());
    EXPECT_TRUE(isIntactInfectionCode(nines(15) + noNotes().trimmed()));
    EXPECT_TRUE(isIntactInfectionCode(nines(15) + noNotes() + QStringLiteral("  ")));

    // Cut off after the plain diseases: the others count as had, without notes.
    InfectionAnswers cut;
    for (std::size_t disease = 15; disease < 20; ++disease)
        cut.had.set(disease);
    EXPECT_EQ(decodeInfections(nines(15)), cut);
    EXPECT_FALSE(isIntactInfectionCode(nines(15)));

    EXPECT_EQ(decodeInfections(QStringLiteral("xy") + nines(14) + noNotes()).had,
              decltype(InfectionAnswers::had)().set(0));
    for (const QString &code : {QStringLiteral("xy") + nines(14) + noNotes(), nines(15) + noNotes() + u'x',
                                nines(15) + QStringLiteral("9") + noNotes()})
        EXPECT_FALSE(isIntactInfectionCode(code)) << code.toStdString();
}

TEST(InfectionCode, RandomAnswersComeBack)
{
    std::mt19937 random(10);
    const QString signs = QString::fromUtf8("abcàèìòùÈ'\"1987(),.- €");
    for (int round = 0; round < 500; ++round) {
        InfectionAnswers answers;
        for (std::size_t i = 0; i < answers.had.size(); ++i)
            answers.had[i] = random() % 2 == 0;
        for (QString &note : answers.notes) {
            for (auto length = random() % 31; length > 0; --length)
                note += signs[int(random() % unsigned(signs.size()))];
            note = withoutOuterBlanks(note);
        }
        const QString code = encodeInfections(answers);
        ASSERT_EQ(code.size(), 190);
        ASSERT_EQ(decodeInfections(code), answers);
    }
}

TEST(InfectionCode, EveryDiseaseHasItsBox)
{
    std::set<int> numbers;
    int plain = 0;
    for (const InfectionFrame &frame : infectionFrames) {
        int notes = 0;
        for (const InfectionFrame::Item &item : frame.items) {
            if (!item.caption)
                continue;
            EXPECT_TRUE(numbers.insert(item.number).second) << item.number;
            if (item.number >= 15)
                ++notes;
            else
                EXPECT_EQ(item.number, plain++) << "in the order of the frames";
        }
        const QString caption = QString::fromUtf16(frame.caption);
        EXPECT_EQ(notes, caption == QLatin1String("Malattie Respiratorie") ? 4
                         : caption == QLatin1String("Altre Malattie")      ? 1
                                                                           : 0);
    }
    EXPECT_EQ(numbers.size(), 20u);
    EXPECT_EQ(*numbers.rbegin(), 19);
}

TEST(CodePairs, OuterBlanks)
{
    EXPECT_EQ(withoutOuterBlanks("  a b "), "a b");
    EXPECT_EQ(withoutOuterBlanks(" \t "), "\t"); // a tab is no blank
    EXPECT_EQ(withoutOuterBlanks("   "), QString());
}

} // namespace

} // namespace clivara
