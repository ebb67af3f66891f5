// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/practice/Schema.h"
#include "app/practice/UserError.h"
#include "dao/native/Account.h"
#include "data/HostEnvironment.h"

#include <QString>
#include <functional>
#include <memory>

namespace orvale {

// An open practice: its six databases in one workspace, and what the host knows of it. It is a folder with
// Orvale, Tabelle, Terzo, Medici, Locale and Eventi with the extension .sqlite, or a database of a server
// with the schemas clinical, codes, third, doctors, local and events. A path is that of the folder or the
// database's address.
class Practice {
public:
    // Whether opening reads every page of the files. That takes about a second and a half for each gigabyte,
    // so a window that is to appear at once does it afterwards with damagedFile().
    enum class Pages { ReadAll, ReadLater };

    // Throws UserError: missing folder or file, not a practice, corrupted, a newer schema version, no
    // permission. Nothing is changed on disk by a refused practice. An older schema version is upgraded.
    static std::unique_ptr<Practice> open(const QString &path, const Schema &schema = Schema::current(),
                                          Pages pages = Pages::ReadAll);
    // Reads every page of a practice's files through a connection of its own, on any thread: rows that cannot
    // be read any more are found before a doctor relies on them. The first damaged file; empty when all are
    // whole.
    static QString damagedFile(const QString &path);
    // A new, empty practice with all tables of the current schema version in a folder that does not exist or
    // is empty; throws UserError and leaves nothing behind.
    static std::unique_ptr<Practice> create(const QString &path);
    // The same, filled by `fill` before it takes its place: built in a folder beside it that is removed when
    // anything fails. The practice that `fill` gets is closed afterwards.
    static void build(const QString &path, const std::function<void(Practice &)> &fill);
    ~Practice();

    const clivara::HostEnvironment &environment() const { return m_environment; }
    dao::DBEngine &engine() { return *m_engine; }
    QString path() const { return m_path; }
    // Where the practice's files that are a workstation's own stand: the practice's folder, or for a practice
    // on a server the user's.
    QString workstationFolder() const;
    // The lowest code of the group's doctors (medici_gruppo.cod_smi); empty without doctors.
    QString firstDoctor() const;

    // Properties of the practice ("region": two digits, "created"...), kept in its clinical database; empty
    // when missing.
    QString property(const QString &name) const;
    void setProperty(const QString &name, const QString &value);

private:
    friend class PracticeBuild;
    // `given` is the path as the user gave it; an address may hold a password, which is kept for the
    // connection only.
    explicit Practice(const QString &path, const QString &given = {});
    void openDatabases(bool create);
    QMap<QString, std::shared_ptr<dao::Database>> databases() const;

    QString m_path;
    std::unique_ptr<dao::DBEngine> m_engine;
    clivara::HostEnvironment m_environment;
};

// The account with which a practice on a server is opened: the one in its address, else the host's library's;
// what they leave out the environment says. The password is for the connection only and is not kept.
dao::Account accountOf(const QString &address);

// A practice as messages show it: as it was given, an address without its password.
QString shownPractice(const QString &path);

// The absolute path of a practice's folder, or its address without the password; throws UserError for one
// that is none.
QString practicePath(const QString &path);

// Where `orvale` without --practice looks: "practice" in the user's data folder.
QString defaultPracticePath();

} // namespace orvale
