// SPDX-License-Identifier: Apache-2.0
#include "data/engine/Session.h"

#include <QFileInfo>
#include <QSqlError>

namespace dao {
namespace {

QString savepoint(int depth)
{
    return QStringLiteral("level%1").arg(depth);
}

} // namespace

Attachment::~Attachment()
{
    session->release(schema);
}

Session::Session(std::shared_ptr<const Now> now)
    : m_dialect(makeSqliteDialect())
    , m_now(std::move(now))
    , m_connection(QSqlDatabase::addDatabase(m_dialect->driverName(),
                                             QStringLiteral("dao-%1").arg(quintptr(this), 0, 16)))
{
    m_dialect->prepareConnection(m_connection);
}

Session::~Session()
{
    // The connection's end rolls back what is open. Qt wants the last copy gone before the name is.
    const QString name = m_connection.connectionName();
    m_connection.close();
    m_connection = QSqlDatabase();
    QSqlDatabase::removeDatabase(name);
}

QDateTime Session::now() const
{
    if (*m_now)
        return (*m_now)();
    const QDateTime local = QDateTime::currentDateTime();
    return QDateTime(local.date(), local.time(), Qt::UTC);
}

std::shared_ptr<Attachment> Session::attach(const QString &path, bool readOnly)
{
    const QFileInfo file(path);
    const QString canonical = file.canonicalFilePath();
    const QString shared = canonical + QStringLiteral("|rw");
    // A reader can use what is attached for writing; its database object refuses to write.
    for (const QString &key : {shared, canonical + QStringLiteral("|ro")}) {
        if (!readOnly && key != shared)
            break;
        if (auto existing = m_attached.value(key).lock())
            return existing;
    }
    detachUnused();
    const QString schema = QStringLiteral("db%1").arg(m_schemas + 1);
    m_dialect->attach(m_connection, path, schema, readOnly);
    ++m_schemas;
    auto attachment = std::make_shared<Attachment>();
    attachment->session = shared_from_this();
    attachment->schema = schema;
    attachment->key = readOnly ? canonical + QStringLiteral("|ro") : shared;
    m_attached.insert(attachment->key, attachment);
    return attachment;
}

void Session::createDatabase(const QString &path)
{
    detachUnused();
    m_dialect->createDatabase(m_connection, path);
}

void Session::release(const QString &schema)
{
    m_unused.append(schema);
    if (m_depth == 0)
        detachUnused();
}

void Session::detachUnused()
{
    m_unused.removeIf([this](const QString &schema) {
        try {
            m_dialect->detach(m_connection, schema);
            return true;
        } catch (const Error &) {
            return false; // still read from; the next time
        }
    });
}

Error Session::errorOf(const QSqlQuery &query) const
{
    return m_dialect->error(query.lastError(), query.lastQuery());
}

QSqlQuery Session::prepare(const QString &sql) const
{
    QSqlQuery query(m_connection);
    query.setForwardOnly(true);
    if (!query.prepare(sql))
        throw m_dialect->error(query.lastError(), sql);
    return query;
}

std::unique_ptr<NativeCursor> Session::select(const QString &sql, const QVariantList &values) const
{
    QSqlDatabase handle = m_connection;
    return m_dialect->openCursor(handle, sql, values);
}

int Session::execute(const QString &sql, const QVariantList &values)
{
    QSqlQuery query = prepare(sql);
    for (const QVariant &value : values)
        query.addBindValue(value);
    return execute(query);
}

int Session::execute(QSqlQuery &prepared)
{
    drainReaders();
    requireTransaction();
    if (!prepared.exec())
        throw errorOf(prepared);
    return prepared.numRowsAffected();
}

void Session::insert(NativeInsert &prepared, const QVariantList &values)
{
    drainReaders();
    requireTransaction();
    prepared.add(values);
}

void Session::drainReaders()
{
    // Draining takes the reader off the list.
    while (!m_readers.empty())
        m_readers.back()->drain();
}

// The native engine may give up a whole transaction (disk full, for example). What the caller believes to be
// inside it must not be saved on its own then.
void Session::requireTransaction()
{
    if (m_depth > 0 && !m_dialect->inTransaction(m_connection))
        throw Error(TransactionError,
                    QStringLiteral("La transazione è stata annullata da un errore precedente"));
}

void Session::run(const QString &sql)
{
    QSqlQuery query(m_connection);
    if (!query.exec(sql))
        throw errorOf(query);
}

void Session::begin()
{
    drainReaders();
    requireTransaction();
    run(m_depth == 0 ? m_dialect->beginTransaction() : QStringLiteral("SAVEPOINT ") + savepoint(m_depth));
    ++m_depth;
}

void Session::commit()
{
    if (m_depth == 0)
        throw Error(TransactionError, QStringLiteral("Nessuna transazione in corso"));
    drainReaders();
    try {
        requireTransaction();
        run(m_depth == 1 ? QStringLiteral("COMMIT") : QStringLiteral("RELEASE ") + savepoint(m_depth - 1));
    } catch (const Error &) {
        rollback();
        throw;
    }
    --m_depth;
    if (m_depth == 0)
        detachUnused();
}

void Session::rollback()
{
    if (m_depth == 0)
        throw Error(TransactionError, QStringLiteral("Nessuna transazione in corso"));
    drainReaders();
    --m_depth;
    definitionsChanged();
    if (m_dialect->inTransaction(m_connection)) {
        if (m_depth == 0) {
            run(QStringLiteral("ROLLBACK"));
        } else {
            run(QStringLiteral("ROLLBACK TO ") + savepoint(m_depth));
            run(QStringLiteral("RELEASE ") + savepoint(m_depth));
        }
    }
    if (m_depth == 0)
        detachUnused();
}

void Session::rollbackAll()
{
    while (m_depth > 0)
        rollback();
}

Atomic::~Atomic()
{
    if (!m_open)
        return;
    try {
        m_session.rollback();
    } catch (const Error &) {
        // Nothing is saved either way.
    }
}

void Atomic::commit()
{
    m_open = false;
    m_session.commit();
}

} // namespace dao
