// SPDX-License-Identifier: Apache-2.0
#include "support/SettingsStore.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

using clivara::openUserSettings;
using clivara::SettingsStore;

// The user's configuration folder, for the length of a test.
class UserFolder : public testing::Test {
protected:
    UserFolder()
        : m_previous(qgetenv("XDG_CONFIG_HOME"))
    {
        qputenv("XDG_CONFIG_HOME", folder.path().toLocal8Bit());
    }
    ~UserFolder() override
    {
        if (m_previous.isEmpty())
            qunsetenv("XDG_CONFIG_HOME");
        else
            qputenv("XDG_CONFIG_HOME", m_previous);
    }

    QString file() const { return folder.filePath("Orvale.conf"); }

    QString peer(const QStringList &arguments) const
    {
        QProcess process;
        process.start(QStringLiteral(SETTINGS_PEER), arguments);
        EXPECT_TRUE(process.waitForFinished()) << qPrintable(process.errorString());
        EXPECT_EQ(process.exitCode(), 0);
        return QString::fromUtf8(process.readAllStandardOutput());
    }

    QTemporaryDir folder;

private:
    QByteArray m_previous;
};

// What every store does, the one on the disk and the one in memory.
void checkStore(SettingsStore &store)
{
    EXPECT_FALSE(store.read("medicoP").isValid());
    EXPECT_EQ(store.text("medicoP", "101"), "101");

    store.write("CODICE PAZIENTE", -1);
    EXPECT_EQ(store.read("CODICE PAZIENTE"), QVariant("-1"));
    store.write("codice paziente", 17);
    EXPECT_EQ(store.text("Codice Paziente"), "17");

    store.write("codice paziente", QVariant());
    EXPECT_EQ(store.text("CODICE PAZIENTE"), "17") << "a null is not written";
    store.write("CODICE PAZIENTE", QString());
    EXPECT_EQ(store.read("CODICE PAZIENTE", "x"), QVariant(QString())) << "an empty text is";

    const QStringList awkward{
        "Sant'Anna, 3 \"interno\"", "@Invalid()", "à è ì € ☃", " blanks ", "a\nb", "100%"};
    for (const QString &text : awkward) {
        store.write("SET_INTESTA", text);
        EXPECT_EQ(store.text("SET_INTESTA"), text);
    }
}

TEST_F(UserFolder, KeepsTextsWithoutRegardToCaseOfKeys)
{
    checkStore(*openUserSettings());
    EXPECT_TRUE(QFile::exists(file()));
}

TEST(MemorySettings, KeepsTextsWithoutRegardToCaseOfKeys)
{
    clivara::MemorySettings store;
    checkStore(store);
}

TEST(MemorySettings, SwitchesAreNumbersOrWords)
{
    clivara::MemorySettings store;
    EXPECT_FALSE(store.isOn("MIR_ATTIVO")) << "missing";
    for (const char *on : {"1", "-1", " 2 ", "True", "VERO", "sì", "si", "on", "yes"}) {
        store.write("Mir_Attivo", on);
        EXPECT_TRUE(store.isOn("MIR_ATTIVO")) << on;
    }
    for (const char *off : {"", " ", "0", "-0", "0.0", "false", "falso", "no", "off", "1x"}) {
        store.write("MIR_ATTIVO", off);
        EXPECT_FALSE(store.isOn("MIR_ATTIVO")) << off;
    }
}

TEST_F(UserFolder, ProcessesSeeEachOthersWritesAtOnce)
{
    const auto first = openUserSettings();
    const auto second = openUserSettings();
    first->write("medicoP", "101");
    EXPECT_EQ(second->text("MEDICOP"), "101");

    EXPECT_EQ(peer({"read", "medicop"}), "101");
    peer({"write", "MEDICOP", "102"});
    EXPECT_EQ(first->text("medicoP"), "102") << "one key, whatever its spelling";
    peer({"write", "AGGIORNA_DIARIO", "PREVENZIONE"});
    first->write("DIAGNOSI", "*ABORT*");
    EXPECT_EQ(peer({"read", "aggiorna_diario"}), "PREVENZIONE") << "a write leaves the other's keys alone";
}

TEST_F(UserFolder, ReadsWhatAPersonWrote)
{
    QFile conf(file());
    ASSERT_TRUE(conf.open(QIODevice::WriteOnly));
    conf.write("[Ambiente]\nmedicop=101\nSET_INTESTA=Rossi, medico\n\n[Altro]\nTIPOS=1\n");
    conf.close();
    const auto store = openUserSettings();
    EXPECT_EQ(store->text("medicoP"), "101");
    EXPECT_EQ(store->text("set_intesta"), "Rossi, medico");
    EXPECT_EQ(store->text("TIPOS", "none"), "none") << "of another section";
}

TEST_F(UserFolder, AnUnreadableStoreIsEmptyAndARefusedWriteIgnored)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir("Orvale.conf")); // a folder where the file should be
    const auto store = openUserSettings();
    store->write("medicoP", "101");
    EXPECT_FALSE(store->read("medicoP", "fallback").isValid());

    ASSERT_TRUE(QDir(folder.path()).rmdir("Orvale.conf"));
    store->write("medicoP", "101");
    EXPECT_EQ(store->text("medicoP"), "101") << "one failure says nothing about the next access";
}

} // namespace
