// SPDX-License-Identifier: Apache-2.0
#include "LosingServer.h"
#include "dao/Dao.h"
#include "server/TestEngine.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

class PostgresCommitTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!testengine::isServer())
            GTEST_SKIP() << "of the server";
        m_server = std::make_unique<LosingServer>(m_folder.path().toUtf8(), m_host);
        m_direct = m_admin.DefaultWorkspace().CreateDatabase(name());
        m_direct->Execute("CREATE TABLE visite (id COUNTER, nota TEXT(20))");
        qputenv("PGHOST", m_folder.path().toUtf8());
        m_database = m_engine.OpenDatabase(name().replace(u'#', "?answer_timeout=1#"));
        qputenv("PGHOST", m_host);
    }
    QString name() const { return testengine::databaseName(m_folder.path(), "Orvale.sqlite"); }
    int stored() const
    {
        return m_direct->OpenRecordset("SELECT count(*) FROM visite")->Fields(0).Value().toInt();
    }

    const QByteArray m_host = qgetenv("PGHOST");
    QTemporaryDir m_folder;
    std::unique_ptr<LosingServer> m_server;
    dao::DBEngine m_admin;
    std::shared_ptr<dao::Database> m_direct;
    dao::DBEngine m_engine;
    std::shared_ptr<dao::Database> m_database; // through the server that loses
};

TEST_F(PostgresCommitTest, WhatWasSavedIsSaidToBeSavedAndTheRestNot)
{
    using Loses = LosingServer::Loses;
    using Then = LosingServer::Then;
    struct Row {
        const char *what;
        Loses loses;
        const char *text;
        bool inTransaction;
        bool isSaved;
        Then then = Then::Cuts;
    };
    for (const Row &row : {
             Row{"the answer to the commit", Loses::Answer, "COMMIT", true, true},
             {"the commit", Loses::Statement, "COMMIT", true, false},
             {"the answer to the commit of a statement alone", Loses::Answer, "COMMIT", false, true},
             {"the commit of a statement alone", Loses::Statement, "COMMIT", false, false},
             {"the answer to a statement alone", Loses::Answer, "INSERT INTO", false, false},
             {"a statement alone", Loses::Statement, "INSERT INTO", false, false},
             Row{"the answer to the commit, in silence", Loses::Answer, "COMMIT", true, true, Then::IsSilent},
             Row{"the commit, in silence", Loses::Statement, "COMMIT", true, false, Then::IsSilent},
         }) {
        const int before = stored();
        int error = 0;
        qint64 number = 0;
        try {
            std::optional<dao::Transaction> transaction;
            if (row.inTransaction)
                transaction.emplace(m_engine.DefaultWorkspace());
            const auto visits = m_database->OpenRecordset("visite");
            if (!row.inTransaction)
                m_server->lose(row.loses, row.text, row.then);
            visits->AddNew();
            visits->Fields("nota").setValue("tosse");
            visits->Update();
            number = visits->LastAutoNumber();
            if (row.inTransaction) {
                m_server->lose(row.loses, row.text, row.then);
                transaction->commit();
            }
        } catch (const dao::Error &lost) {
            error = lost.number();
        }
        EXPECT_EQ(error, row.isSaved ? 0 : dao::ConnectionLost) << row.what;
        EXPECT_EQ(stored() - before, row.isSaved ? 1 : 0) << row.what;
        EXPECT_EQ(number > 0, row.isSaved || row.inTransaction) << row.what;
        // The connection is there again for whoever goes on.
        m_database->Execute("DELETE FROM visite");
        m_database->Execute("INSERT INTO visite (nota) VALUES ('altra')");
        EXPECT_EQ(stored(), 1) << row.what;
    }
}

TEST_F(PostgresCommitTest, WhatNobodyCanTellIsSaidToBeInDoubt)
{
    m_engine.DefaultWorkspace().BeginTrans();
    m_database->Execute("INSERT INTO visite (nota) VALUES ('tosse')");
    m_server->lose(LosingServer::Loses::Answer, "COMMIT");
    m_server->refuseFurtherConnections();
    try {
        m_engine.DefaultWorkspace().CommitTrans();
        FAIL() << "nobody could know that";
    } catch (const dao::Error &error) {
        EXPECT_EQ(error.number(), dao::CommitInDoubt) << error.text().toStdString();
    }
    EXPECT_EQ(stored(), 1);
}

} // namespace
