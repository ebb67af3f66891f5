// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/practice/UserError.h"

#include <QDate>
#include <QHash>
#include <QList>
#include <QStringList>

namespace orvale {

// A command called in a way it does not know; the program ends with the status 2.
class UsageError : public UserError {
public:
    using UserError::UserError;
};

// The arguments of one command: options ("--name value", "--name=value", or a flag) and positional arguments.
// "--" ends the options, a lone "-" is an argument.
class CommandLine {
public:
    // `synopsis` is the line after "orvale" ("demo P [--patients N]"), `description` one or more lines of
    // help.
    CommandLine(const QString &synopsis, const QString &description);

    // An option that takes a value, shown as `valueName`; an empty `valueName` makes it a flag.
    void addOption(const QString &name, const QString &valueName, const QString &text);
    // A positional argument; all are required.
    void addArgument(const QString &name, const QString &text);

    // Reads the arguments. False when --help was asked for: the help stands on standard output and the
    // command ends with the status 0. Throws UsageError.
    bool parse(const QStringList &arguments);

    bool isSet(const QString &option) const { return m_values.contains(option); }
    QString value(const QString &option, const QString &missing = {}) const
    {
        return m_values.value(option, missing);
    }
    // A whole number within the bounds; `missing` without the option. Throws UsageError.
    int number(const QString &option, int missing, int least, int most) const;
    // A date as YYYY-MM-DD; `missing` without the option. Throws UsageError.
    QDate date(const QString &option, QDate missing) const;
    QString argument(int position) const { return m_arguments.at(position); }

    QString help() const;

private:
    struct Option {
        QString name;
        QString valueName;
        QString text;
    };
    const Option *find(const QString &name) const;

    QString m_synopsis;
    QString m_description;
    QList<Option> m_options;
    QList<Option> m_parameters;
    QHash<QString, QString> m_values;
    QStringList m_arguments;
};

// Writes one line to standard error or standard output, in UTF-8.
void printError(const QString &line);
void printLine(const QString &line);

} // namespace orvale
