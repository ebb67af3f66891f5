// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "data/HostEnvironment.h"

#include <QString>
#include <memory>
#include <stdexcept>

namespace orvale {

// Something a person asked for cannot be done; the text is one clear Italian line.
class UserError : public std::runtime_error {
public:
    explicit UserError(const QString &text)
        : std::runtime_error(text.toStdString())
        , m_text(text)
    {
    }
    QString text() const { return m_text; }

private:
    QString m_text;
};

// The first doctor of a practice, by the lowest code.
struct FirstDoctor {
    QString code; // medici_gruppo.cod_smi
    QString region; // two digits, kept in the practice's properties
};

// An open practice: its six databases in one workspace, and what the host knows of it. The folder holds Orvale,
// Tabelle, Terzo, Medici, Locale and Eventi with the extension .sqlite.
class Practice {
public:
    // Throws UserError: missing folder or file, not a practice, corrupted, a newer schema version, no permission.
    // Nothing is changed on disk by a refused practice.
    static std::unique_ptr<Practice> open(const QString &path);
    // A new, empty practice with all tables of the current schema version in a folder that does not exist or is
    // empty; throws UserError and leaves nothing behind.
    static std::unique_ptr<Practice> create(const QString &path);
    ~Practice();

    const clivara::HostEnvironment &environment() const { return m_environment; }
    dao::DBEngine &engine() { return *m_engine; }
    QString path() const { return m_path; }
    FirstDoctor firstDoctor() const;

    // Properties of the practice ("region", "created"...), kept in its clinical database; empty when missing.
    QString property(const QString &name) const;
    void setProperty(const QString &name, const QString &value);

private:
    Practice();
    QString m_path;
    std::unique_ptr<dao::DBEngine> m_engine;
    clivara::HostEnvironment m_environment;
};

// Where `orvale` without --practice looks: "practice" in the user's data folder.
QString defaultPracticePath();

} // namespace orvale
