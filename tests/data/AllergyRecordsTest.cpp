// SPDX-License-Identifier: Apache-2.0
#include "data/AllergyRecords.h"

#include "DataFixture.h"

namespace {

using clivara::Allergies;
using clivara::AllergyState;

class AllergyRecordsTest : public DataFixture {
protected:
    AllergyRecordsTest()
    {
        clinical = create("Orvale.sqlite",
                          {"CREATE TABLE inf_gen (cod_paz LONG, Allergie MEMO)",
                           "CREATE TABLE ESAME_OB (cod_paz LONG, tipo_dati TEXT(1), chiave TEXT(10), "
                           "data_reg DATETIME, dati_paz MEMO)",
                           "CREATE TABLE ALLERGIE (Tipo TEXT(20), codice TEXT(5), descr TEXT(40))",
                           "INSERT INTO ALLERGIE VALUES ('ALIMENTI', '2', 'Latte di vacca')"});
    }

    void store(int patient, const QString &code, const char *key = "''", const char *kind = "X")
    {
        clinical->Execute(QStringLiteral("INSERT INTO ESAME_OB (cod_paz, tipo_dati, chiave, dati_paz) VALUES "
                                         "(%1, '%2', %3, %4)")
                              .arg(patient)
                              .arg(kind, key, code.isNull() ? "Null" : u'\'' + code + u'\''));
    }
    static QString ticked(std::initializer_list<int> allergens)
    {
        clivara::AllergenSelection selection;
        for (const int allergen : allergens)
            selection.set(std::size_t(allergen));
        return clivara::encodeAllergies(selection);
    }

    std::shared_ptr<dao::Database> clinical;
    const int milk = clivara::firstAllergen(3) + 1;
};

TEST_F(AllergyRecordsTest, ReadsTicksAndTextOfThePatient)
{
    clinical->Execute("INSERT INTO inf_gen VALUES (1, 'Penicillina')");
    clinical->Execute("INSERT INTO inf_gen (cod_paz) VALUES (2)");
    clinical->Execute("INSERT INTO inf_gen VALUES (5, 'nega allergie')");
    store(1, ticked({milk, 1}), "Null"); // an older program's, which does not count beside the next one
    store(1, ticked({milk, 18}));
    store(1, ticked({0}), "''", "M");
    store(2, ticked({}));
    store(3, QString());
    store(5, ticked({milk}).left(200));
    store(6, "xy");
    const auto read = [&](int patient) { return clivara::readAllergies(*clinical, patient); };
    EXPECT_EQ(
        read(1),
        (Allergies{AllergyState::Known, {"Dermatofagoidi n. 2", "Latte di vacca"}, "Penicillina", true}));
    EXPECT_EQ(read(2), (Allergies{AllergyState::NotRecorded, {}, {}, true})) << "no tick proves nothing";
    EXPECT_EQ(read(3), (Allergies{AllergyState::NotRecorded, {}, {}, false}));
    EXPECT_EQ(read(4), (Allergies{AllergyState::NotRecorded, {}, {}, false}));
    EXPECT_EQ(read(5), (Allergies{AllergyState::Unread, {"Latte di vacca"}, "nega allergie", true}))
        << "what is cut off may have been ticked";
    EXPECT_EQ(read(6), (Allergies{AllergyState::Unread, {}, {}, true}));
    clinical->Execute("DROP TABLE ESAME_OB");
    EXPECT_THROW(read(1), dao::Error);
}

} // namespace
