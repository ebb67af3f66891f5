// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/Engines.h"
#include "jetsql/Error.h"

#include <QHash>
#include <functional>
#include <memory>
#include <vector>

namespace dao {

class Session;

// Rows being read through a native cursor. A cursor must not stay open across a write or a transaction's
// boundary: it would hold an old state of the database and keep the write lock from being taken.
class Reader {
public:
    virtual ~Reader() = default;
    // Reads the rest into memory and lets the cursor go.
    virtual void drain() = 0;
};

// A database file reachable in a session under a schema name, for as long as somebody holds this.
struct Attachment {
    std::shared_ptr<Session> session;
    QString key;
    QString name; // the database's, in full
    QString schema;

    ~Attachment();
};

using Now = std::function<QDateTime()>;

// The one native connection of a workspace: statements, attached files and transactions.
class Session : public std::enable_shared_from_this<Session> {
public:
    // `account` is asked for when a database of a server is opened.
    Session(std::shared_ptr<const Now> now, std::shared_ptr<const Account> account);
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    const Dialect &dialect() const { return m_storage->dialect(); }
    Storage &storage() const { return *m_storage; }
    Connection &connection() const { return m_storage->connection(); }
    QDateTime now() const;

    std::shared_ptr<Attachment> attach(const QString &path, bool readOnly);
    void createDatabase(const QString &path);

    // A statement that reads; its rows are the caller's to step through.
    std::unique_ptr<NativeCursor> select(const QString &sql, const QVariantList &values = {}) const;
    // The same rows, of which most often no more than so many are read.
    std::unique_ptr<NativeCursor> selectFirst(int rows, const QString &sql, const QVariantList &values) const;
    // The same for rows that are too many to be kept in memory.
    std::unique_ptr<NativeCursor> stream(const QString &sql) const;
    // A statement that writes; the number of rows affected.
    int execute(const QString &sql, const QVariantList &values = {});
    // INSERT of one row; the number that it got in the autonumber column (0 when its name is empty).
    qint64 insertRow(const QString &sql, const QVariantList &values, const QString &autoNumber);
    // A row through a statement prepared once.
    void insert(NativeInsert &prepared, const QVariantList &values);
    void insertRows(NativeInsert &prepared, const QList<QVariantList> &rows,
                    const NativeInsert::Refused &refused);

    bool isInTransaction() const { return m_depth > 0; }
    void begin();
    void beginReading(); // not inside a transaction
    void commit();
    void rollback();
    void rollbackAll();

    // Counts the changes of definitions made or undone in this session, by whichever of its databases.
    int definitionsGeneration() const { return m_generation; }
    void definitionsChanged() { ++m_generation; }

    void addReader(Reader &reader) { m_readers.push_back(&reader); }
    void removeReader(Reader &reader) { std::erase(m_readers, &reader); }

private:
    friend struct Attachment;
    void release(const QString &schema);
    void detachUnused();
    void drainReaders();
    void requireTransaction() const;
    // Checks the files before a statement outside a transaction, which commits by itself; inside one, begin()
    // and commit() check.
    void requireInPlace() const;
    // Opens the native connection for the first database. Later ones must be of the same engine: InvalidOperation.
    void open(const QString &name);

    std::unique_ptr<Storage> m_storage;
    std::shared_ptr<const Now> m_now;
    std::shared_ptr<const Account> m_account;
    QHash<QString, std::weak_ptr<Attachment>> m_attached; // by key
    QStringList m_unused; // schemas that could not be detached yet
    std::vector<Reader *> m_readers;
    int m_schemas = 0;
    int m_generation = 0;
    int m_depth = 0; // of nested transactions
};

// Several statements that are done together or not at all, inside a transaction or without one.
class Atomic {
public:
    explicit Atomic(Session &session)
        : m_session(session)
    {
        m_session.begin();
    }
    ~Atomic();
    Atomic(const Atomic &) = delete;
    Atomic &operator=(const Atomic &) = delete;
    void commit();

private:
    Session &m_session;
    bool m_open = true;
};

} // namespace dao
