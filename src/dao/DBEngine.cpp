// SPDX-License-Identifier: Apache-2.0
#include "dao/DatabasePrivate.h"

namespace dao {

DBEngine::DBEngine()
    : m_account(std::make_shared<Account>())
    , m_now(std::make_shared<std::function<QDateTime()>>())
{
}

DBEngine::~DBEngine() = default;

QString DBEngine::DefaultUser() const
{
    return m_account->user;
}

void DBEngine::setDefaultUser(const QString &user)
{
    m_account->user = user;
}

void DBEngine::setDefaultPassword(const QString &password)
{
    m_account->password = password;
}

void DBEngine::setNow(std::function<QDateTime()> now)
{
    *m_now = std::move(now);
}

Workspace &DBEngine::DefaultWorkspace()
{
    if (!m_default)
        m_default = CreateWorkspace();
    return *m_default;
}

std::unique_ptr<Workspace> DBEngine::CreateWorkspace()
{
    return std::unique_ptr<Workspace>(new Workspace(std::make_shared<Session>(m_now, m_account)));
}

std::shared_ptr<Database> DBEngine::OpenDatabase(const QString &name, bool readOnly)
{
    return DefaultWorkspace().OpenDatabase(name, readOnly);
}

Workspace::Workspace(std::shared_ptr<Session> session)
    : m_session(std::move(session))
{
}

Workspace::~Workspace()
{
    try {
        m_session->rollbackAll();
    } catch (const Error &) {
        // The connection's end undoes what is left.
    }
}

std::shared_ptr<Database> Workspace::OpenDatabase(const QString &name, bool readOnly)
{
    const auto attachment = m_session->attach(name, readOnly);
    const QString path = fullName(name);
    return std::shared_ptr<Database>(
        new Database(std::make_unique<Database::Private>(attachment, path, readOnly)));
}

std::shared_ptr<Database> Workspace::CreateDatabase(const QString &name)
{
    m_session->createDatabase(name);
    return OpenDatabase(name);
}

void Workspace::BeginTrans()
{
    m_session->begin();
}

void Workspace::BeginReading()
{
    m_session->beginReading();
}

void Workspace::CommitTrans()
{
    m_session->commit();
}

void Workspace::Rollback()
{
    m_session->rollback();
}

Transaction::Transaction(Workspace &workspace)
    : m_workspace(workspace)
{
    m_workspace.BeginTrans();
}

Transaction::~Transaction()
{
    if (!m_open)
        return;
    try {
        m_workspace.Rollback();
    } catch (const Error &) {
        // Nothing is saved either way.
    }
}

void Transaction::commit()
{
    m_open = false; // a commit that fails has rolled back
    m_workspace.CommitTrans();
}

} // namespace dao
