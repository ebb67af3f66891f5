// SPDX-License-Identifier: Apache-2.0
#include "data/Identity.h"

#include "DataFixture.h"
#include "support/Seams.h"

namespace {

using namespace clivara;

TEST(Uid, IsComparedInItsNormalisedForm)
{
    struct Case {
        const char *text, *normalised;
    };
    const Case cases[]{{"{ABC}", "abc"},
                       {"{guid {abc}}", "abc"},
                       {"{GUID {0F8F-aD5B}} ", "0f8f-ad5b"},
                       {"  Abc ", "abc"},
                       {"", ""},
                       {"{}", ""}};
    for (const Case &c : cases)
        EXPECT_EQ(normaliseUid(c.text), c.normalised) << c.text;
    EXPECT_EQ(formatUid("{guid {ABC}}", true), "abc");
    EXPECT_EQ(formatUid("ABC", false), "{abc}");

    SystemGuids guids;
    EXPECT_EQ(newUid(guids, false).size(), 38);
    const QString plain = newUid(guids, true);
    EXPECT_EQ(plain.size(), 36);
    EXPECT_EQ(plain, normaliseUid(plain));
}

class DoctorUid : public DataFixture {
protected:
    DoctorUid()
    {
        doctors = create("Medici.sqlite",
                         {"CREATE TABLE medici_gruppo (cod_smi LONG, idRowGuid GUID)",
                          "INSERT INTO medici_gruppo VALUES (101, '{0F8FAD5B-D9CB-469F-A165-70867728950E}')",
                          "INSERT INTO medici_gruppo (cod_smi) VALUES (102)"});
    }
    std::shared_ptr<dao::Database> doctors;
};

TEST_F(DoctorUid, IsFoundByTheDoctorsCode)
{
    EXPECT_EQ(LeggiUidMedico("101", doctors.get(), log), "0f8fad5b-d9cb-469f-a165-70867728950e");
    EXPECT_EQ(LeggiUidMedico("102", doctors.get(), log), "") << "a doctor without UID";
    EXPECT_EQ(LeggiUidMedico("999", doctors.get(), log), "");
    EXPECT_EQ(logged(), (QStringList{"   .LeggiUidMedico codMed=101",
                                     "   .LeggiUidMedico UidUtente=0f8fad5b-d9cb-469f-a165-70867728950e",
                                     "   .LeggiUidMedico end ", "   .LeggiUidMedico codMed=102",
                                     "   .LeggiUidMedico UidUtente=", "   .LeggiUidMedico end ",
                                     "   .LeggiUidMedico codMed=999",
                                     "   .LeggiUidMedico UidUtente=", "   .LeggiUidMedico end "}));
}

TEST_F(DoctorUid, IsEmptyWhenTheLookupFails)
{
    for (const char *code : {"", "M001", "1 or 1=1", "101) or (1=1"})
        EXPECT_EQ(LeggiUidMedico(code, doctors.get(), log), "") << code;
    EXPECT_EQ(LeggiUidMedico("101", nullptr, log), "");
    doctors->Execute("DROP TABLE medici_gruppo");
    EXPECT_EQ(LeggiUidMedico("101", doctors.get(), log), "");
    EXPECT_EQ(logged().filter("codMed=").size(), 6);
    EXPECT_EQ(logged().size(), 6);
}

} // namespace
