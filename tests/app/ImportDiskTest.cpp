// SPDX-License-Identifier: Apache-2.0
#include "FailingDisk.h"
#include "ImportFixture.h"

#include <limits>

namespace {

using orvale::Practice;

class ImportDisk : public ImportFixture { };

// Wherever the disk fails, the import says so, and the practice that was to be replaced is as it was.
TEST_F(ImportDisk, ADiskThatFailsLeavesTheTargetAsItWas)
{
    auto &table = file().table("orders", {{"n", jetfile::JetType::Long}, {"t", jetfile::JetType::Memo}});
    table.index("n", {"n"});
    for (int i = 0; i < 1500; ++i)
        table.addRow({i, QString(300, QChar(u'a' + i % 26))});
    saveFiles();
    Practice::create(target())->setProperty("old", "yes");
    const auto before = filesBelow(m_folder.path());
    auto replacing = options();
    replacing.replace = true;

    const auto import = [&] {
        return refusal([&] { EXPECT_TRUE(orvale::importPractice(replacing).agrees()); });
    };
    qint64 needed = 0;
    {
        const QTemporaryDir elsewhere;
        const FailingDisk disk(std::numeric_limits<qint64>::max());
        orvale::importPractice({source(), elsewhere.filePath("p"), {}, false});
        needed = FailingDisk::bytesWritten();
    }
    ASSERT_GT(needed, 500000);
    const int moments = 16;
    for (int i = 0; i < moments; ++i) {
        // The last one lacks a single byte.
        const qint64 room = needed * i / (moments - 1) - (i == moments - 1 ? 1 : 0);
        const auto fault = i % 3 == 2 ? FailingDisk::Fault::Broken : FailingDisk::Fault::Full;
        SCOPED_TRACE(room);
        std::string text;
        {
            const FailingDisk disk(room, fault);
            text = import();
            EXPECT_TRUE(FailingDisk::hasFailed());
        }
        const char *expected = fault == FailingDisk::Fault::Full ? "Spazio su disco insufficiente"
                                                                 : "Errore di lettura o scrittura sul disco";
        EXPECT_NE(text.find(expected), std::string::npos) << text;
        EXPECT_EQ(text.find('\n'), std::string::npos) << text;
        EXPECT_EQ(filesBelow(m_folder.path()), before);
    }
    EXPECT_EQ(Practice::open(target())->property("old"), "yes");
}

TEST_F(ImportDisk, ReportsThatCannotBeSavedEndTheImport)
{
    saveFiles();
    QDir(m_folder.path()).mkpath("practice.import.tsv/x");
    const auto before = filesBelow(m_folder.path());
    EXPECT_NE(refusal([&] { orvale::importPractice(options()); }).find("non si può scrivere"),
              std::string::npos);
    EXPECT_EQ(filesBelow(m_folder.path()), before);
}

} // namespace
