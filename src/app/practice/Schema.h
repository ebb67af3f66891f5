// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/Dao.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

namespace orvale {

// The databases of a practice by their role, and the file of each in the practice's folder.
struct PracticeFile {
    QString database; // "clinical", "codes", "third", "doctors", "local", "events"
    QString fileName; // "Orvale.sqlite"...
};
const QList<PracticeFile> &practiceFiles();

// Whether a practice of that name is a database of a server, rather than a folder.
bool isOnServer(const QString &practice);

// The name of one of a practice's databases: a file in its folder, or a schema of its database on a server.
QString databaseName(const QString &practice, const PracticeFile &file);

// One numbered schema file: definitions that take a database from the version before to this one.
struct SchemaFile {
    int version = 0;
    QString database;
    QString sql; // Jet definitions and action queries; each ends with a semicolon at the end of a line
};

// What tells the rows of a table apart.
struct TableKey {
    QString database;
    QString table;
    QStringList fields;
};

// The statements of a schema file, without comment lines and closing semicolons.
QStringList schemaStatements(const QString &sql);

// The numbered files of a practice's tables, from the first version on.
class Schema {
public:
    // The files built into the program.
    static Schema current();
    explicit Schema(QList<SchemaFile> files);

    // The version that the files lead to.
    int version() const;
    // Names of the tables that version 1 creates in a database.
    QStringList firstTables(const QString &database) const;
    // The primary keys that the files define, in their order.
    QList<TableKey> primaryKeys() const;

    // Brings the databases (by role) from a version (0: empty) to version() in one transaction, and writes
    // the new version. The rows of every table that was there are counted before and after: a file that loses
    // or adds rows is an error, as is a file that fails; then nothing is changed. Throws UserError.
    void apply(dao::Workspace &workspace, const QMap<QString, std::shared_ptr<dao::Database>> &databases,
               int fromVersion) const;

private:
    QList<SchemaFile> m_files; // by version
};

// The practice's properties, in the table orvale_properties of its clinical database.
QString readProperty(dao::Database &clinical, const QString &name); // empty when missing
void writeProperty(dao::Database &clinical, const QString &name, const QString &value);

} // namespace orvale
