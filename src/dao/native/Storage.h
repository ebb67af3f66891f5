// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/native/Connection.h"
#include "dao/native/Dialect.h"
#include "dao/native/StorageKind.h"

#include <QStringList>

namespace dao {

// The databases that one connection of a native engine reaches, and their definitions. Everything throws
// Error.
class Storage {
public:
    virtual ~Storage() = default;

    virtual StorageKind kind() const = 0;
    virtual const Dialect &dialect() const = 0;
    virtual Connection &connection() const = 0;

    // --- databases ------------------------------------------------------------------------------
    // What is equal for two names of the same database.
    virtual QString sameName(const QString &name) const = 0;
    // A database's name as a link from `holder` keeps it, and the name that it stands for: a link to another
    // database of the same practice holds wherever the practice is.
    virtual QString linkedName(const QString &name, const QString &holder) const = 0;
    virtual QString nameOfLinked(const QString &linked, const QString &holder) const = 0;
    // Makes the database of that name (file, schema) reachable and returns the schema name under which it is:
    // the proposed one unless it has one of its own. CannotFindFile, NotADatabase, Corrupt.
    virtual QString attach(const QString &name, const QString &proposed, bool readOnly) = 0;
    virtual void detach(const QString &schema) = 0;
    // Throws DatabaseMoved when a file of the attached databases was moved, replaced or deleted, so that what
    // is written would be lost. By default does nothing: a server's databases cannot be taken away.
    virtual void requireInPlace() const { }
    // Makes a new, empty database of that name; TableExists when there is something of that name.
    virtual void createDatabase(const QString &name) = 0;
    // What is wrong with an attached database, a line each and at most so many; empty when it is whole. By
    // default nothing: a server watches over its own pages.
    virtual QStringList damage(const QString & /*schema*/, Thoroughness, int /*most*/) const { return {}; }

    // --- definitions ----------------------------------------------------------------------------
    virtual QStringList tables(const QString &schema) const = 0;
    // The definition of a table, its nativeName set. ObjectNotFound.
    virtual TableInfo describe(const QString &schema, const QString &table) const = 0;
    // A number that changes with every definition in the schema, by whatever process.
    virtual qint64 definitionVersion(const QString &schema) const = 0;
    // The unique index of the table that a DuplicateKey error speaks of; null when it cannot be told.
    virtual const IndexInfo *brokenIndex(const Error &error, const TableInfo &table) const = 0;
    // The autonumber field of a table goes on after this number, or after its highest row if that is more.
    virtual void setLastAutoNumber(const QString &schema, const QString &table, qint64 number) = 0;
    // The number above which that field goes on; 0 before the first one. The table has an autonumber field.
    virtual qint64 lastAutoNumber(const QString &schema, const TableInfo &table) const = 0;

    // While a schema is being loaded that is thrown away if anything fails, nothing waits for the disk;
    // afterwards it is again a database that survives the loss of power and that several programs share.
    virtual void beginLoad(const QString &schema) = 0;
    virtual void endLoad(const QString &schema) = 0;
};

} // namespace dao
