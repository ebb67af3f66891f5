// SPDX-License-Identifier: Apache-2.0
#include "problems/Problemi.h"

#include "LostServerFixture.h"

#include <QElapsedTimer>
#include <QThread>

namespace clivara {
namespace {

// A practice over TCP with TLS, whose network goes away while a form is open: nothing is refused, nothing answers.
class LostNetworkTest : public LostServerFixture {
protected:
    static void SetUpTestSuite()
    {
        serverAddress = qgetenv("CLIVARA_TEST_SERVER");
        if (testengine::isServer())
            qputenv("CLIVARA_TEST_SERVER",
                    qgetenv("CLIVARA_TEST_NETWORK") + "?answer_timeout=1&connect_timeout=2");
    }
    static void TearDownTestSuite()
    {
        if (testengine::isServer())
            qputenv("CLIVARA_TEST_SERVER", serverAddress);
    }
    void TearDown() override
    {
        if (testengine::isServer())
            server("plug");
    }
    inline static QByteArray serverAddress;
    // Far more than the limits, far less than for ever.
    static constexpr qint64 notEndless = 60000;
};

TEST_F(LostNetworkTest, TheDialogSaysSoInTimeAndSavesOnceWhenTheNetworkIsBack)
{
    const auto tls = environment.clinical->nativeConnection().select(
        "SELECT ssl FROM pg_stat_ssl WHERE pid = pg_backend_pid()");
    EXPECT_TRUE(tls->next() && tls->value(0).toBool());
    inVisit([&] {
        server("unplug");
        QElapsedTimer time;
        time.start();
        EXPECT_EQ(boxOf(save), unreachable);
        EXPECT_LT(time.elapsed(), notEndless);
        // A form asks many things, and does not wait for each of them.
        Problemi list(state);
        time.start();
        inside(list, [] {});
        list.showModal();
        EXPECT_LT(time.elapsed(), notEndless);
        server("plug");
        EXPECT_EQ(value("Text1_0"), "scritto");
        QThread::msleep(1500); // where nobody answered nobody is asked for a moment
        click(save);
        EXPECT_FALSE(visit.isVisible());
    });
    EXPECT_EQ(clinical("SELECT cod_paz, anamnesi FROM VISITAPROBL"), QStringList("17|scritto"));
}

// What has been decrypted already cannot be waited for.
TEST_F(LostNetworkTest, AnswersOfAllLengthsArriveWhole)
{
    const auto other = otherWorkstation();
    for (const int length : {1, 8000, 16300, 16384, 40000, 1000000, 3000000}) {
        const auto found =
            other->OpenRecordset(QStringLiteral("SELECT String(%1, 'x') AS t FROM archivio").arg(length));
        int count = 0;
        for (; !found->Eof(); found->MoveNext())
            count += found->Fields(0).text().size() == length;
        EXPECT_EQ(count, 2) << length;
    }
}

} // namespace
} // namespace clivara
