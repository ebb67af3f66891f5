// SPDX-License-Identifier: Apache-2.0
#include "app/practice/DamageWatch.h"
#include "PracticeFixture.h"

#include <QSignalSpy>

namespace {

using orvale::DamageWatch;
using orvale::Practice;

class DamageWatchTest : public PracticeFixture {
protected:
    void SetUp() override { Practice::create(path("p")); }

    QString damagedFile()
    {
        const DamageWatch watch(path("p"));
        QSignalSpy finished(&watch, &DamageWatch::finished);
        if (!finished.wait())
            return QStringLiteral("no answer");
        return finished.first().first().toString();
    }
};

TEST_F(DamageWatchTest, NamesTheDamagedFile)
{
    EXPECT_EQ(damagedFile(), QString());

    const QString codes = path("p/Tabelle.sqlite");
    {
        QFile file(codes);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        file.seek(2 * 4096); // a page behind the schema
        file.write(QByteArray(4096, char(0x5a)));
    }
    EXPECT_EQ(damagedFile(), codes);
}

} // namespace
