// SPDX-License-Identifier: Apache-2.0
#include "dao/Session.h"

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

Session::Session(std::shared_ptr<const Now> now, std::shared_ptr<const Account> account)
    : m_now(std::move(now))
    , m_account(std::move(account))
{
}

void Session::open(const QString &name)
{
    if (!m_storage)
        m_storage = openStorage(name, *m_account);
    else if (m_storage->kind() != storageKind(name))
        throw Error(InvalidOperation,
                    QStringLiteral("Non si possono aprire insieme database di tipo diverso: '%1'")
                        .arg(fullName(name)));
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
    open(path);
    const QString canonical = m_storage->sameName(path);
    const QString shared = canonical + QStringLiteral("|rw");
    // A reader can use what is attached for writing; its database object refuses to write.
    for (const QString &key : {shared, canonical + QStringLiteral("|ro")}) {
        if (!readOnly && key != shared)
            break;
        if (auto existing = m_attached.value(key).lock())
            return existing;
    }
    detachUnused();
    const QString schema = m_storage->attach(path, QStringLiteral("db%1").arg(m_schemas + 1), readOnly);
    ++m_schemas;
    auto attachment = std::make_shared<Attachment>();
    attachment->session = shared_from_this();
    attachment->name = fullName(path);
    attachment->schema = schema;
    attachment->key = readOnly ? canonical + QStringLiteral("|ro") : shared;
    m_attached.insert(attachment->key, attachment);
    return attachment;
}

void Session::createDatabase(const QString &path)
{
    open(path);
    detachUnused();
    m_storage->createDatabase(path);
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
            m_storage->detach(schema);
            return true;
        } catch (const Error &) {
            return false; // still read from; the next time
        }
    });
}

std::unique_ptr<NativeCursor> Session::select(const QString &sql, const QVariantList &values) const
{
    requireTransaction();
    return connection().select(sql, values);
}

std::unique_ptr<NativeCursor> Session::selectFirst(int rows, const QString &sql,
                                                   const QVariantList &values) const
{
    requireTransaction();
    return connection().selectFirst(rows, sql, values);
}

std::unique_ptr<NativeCursor> Session::stream(const QString &sql) const
{
    requireTransaction();
    return connection().stream(sql);
}

int Session::execute(const QString &sql, const QVariantList &values)
{
    drainReaders();
    requireTransaction();
    requireInPlace();
    return connection().execute(sql, values);
}

qint64 Session::insertRow(const QString &sql, const QVariantList &values, const QString &autoNumber)
{
    drainReaders();
    requireTransaction();
    requireInPlace();
    return connection().insertRow(sql, values, autoNumber);
}

void Session::insert(NativeInsert &prepared, const QVariantList &values)
{
    drainReaders();
    requireTransaction();
    requireInPlace();
    prepared.add(values);
}

void Session::insertRows(NativeInsert &prepared, const QList<QVariantList> &rows,
                         const NativeInsert::Refused &refused)
{
    drainReaders();
    requireTransaction();
    requireInPlace();
    prepared.addRows(rows, refused);
}

void Session::drainReaders()
{
    // Draining takes the reader off the list.
    while (!m_readers.empty())
        m_readers.back()->drain();
}

// The native engine may give up a whole transaction (disk full, for example). What the caller believes to be
// inside it must not be saved on its own then, and what is read outside it may be another state.
void Session::requireTransaction() const
{
    if (m_depth > 0 && !connection().inTransaction())
        throw connection().goneTransaction();
}

void Session::requireInPlace() const
{
    if (m_depth == 0)
        m_storage->requireInPlace();
}

void Session::begin()
{
    if (!m_storage) // a transaction before the first database: of files, as ever
        open({});
    drainReaders();
    requireTransaction();
    if (m_depth > 0) {
        connection().control(QStringLiteral("SAVEPOINT ") + savepoint(m_depth));
        ++m_depth;
        return;
    }
    connection().begin();
    ++m_depth;
    try {
        m_storage->requireInPlace();
    } catch (const Error &) {
        rollback();
        throw;
    }
}

void Session::beginReading()
{
    if (m_depth > 0)
        throw Error(TransactionError, QStringLiteral("Una transazione è già in corso"));
    drainReaders();
    connection().beginReading();
    ++m_depth;
}

void Session::commit()
{
    if (m_depth == 0)
        throw Error(TransactionError, QStringLiteral("Nessuna transazione in corso"));
    drainReaders();
    try {
        requireTransaction();
        if (m_depth == 1)
            m_storage->requireInPlace();
        if (m_depth == 1)
            connection().commit();
        else
            connection().control(QStringLiteral("RELEASE ") + savepoint(m_depth - 1));
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
    if (connection().inTransaction()) {
        if (m_depth == 0) {
            connection().control(QStringLiteral("ROLLBACK"));
        } else {
            connection().control(QStringLiteral("ROLLBACK TO ") + savepoint(m_depth));
            connection().control(QStringLiteral("RELEASE ") + savepoint(m_depth));
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
