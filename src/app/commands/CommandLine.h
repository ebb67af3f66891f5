// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/practice/UserError.h"

#include <QCommandLineParser>
#include <QDate>
#include <memory>

namespace orvale {

// A command called in a way it does not know; the program ends with the status 2.
class UsageError : public UserError {
public:
    using UserError::UserError;
};

// The arguments of one command. QCommandLineParser takes them apart; this class adds the count of positional
// arguments, typed values, and errors and help in Italian.
class CommandLine {
public:
    // `synopsis` is the line after "orvale" ("demo P [--patients N]"), `description` one or more lines of
    // help.
    CommandLine(const QString &synopsis, const QString &description);

    // An option that takes a value, shown as `valueName`; an empty `valueName` makes it a flag.
    void addOption(const QString &name, const QString &valueName, const QString &text);
    // A positional argument; all are required.
    void addArgument(const QString &name, const QString &text);

    // Reads the arguments. False when --help was asked for: the help has been printed and the command
    // ends with the status 0. Throws UsageError.
    bool parse(const QStringList &arguments);

    bool isSet(const QString &option) const { return m_parser->isSet(option); }
    QString value(const QString &option, const QString &missing = {}) const
    {
        return isSet(option) ? m_parser->value(option) : missing;
    }
    // A whole number within the bounds; `missing` without the option. Throws UsageError.
    int number(const QString &option, int missing, int least, int most) const;
    // A date as YYYY-MM-DD; `missing` without the option. Throws UsageError.
    QDate date(const QString &option, QDate missing) const;
    QString argument(int position) const { return m_parser->positionalArguments().at(position); }

    QString help() const;

private:
    struct Row { // of the help
        QString name;
        QString text;
    };

    QString m_synopsis;
    QString m_description;
    std::unique_ptr<QCommandLineParser> m_parser =
        std::make_unique<QCommandLineParser>(); // which cannot move
    QList<QCommandLineOption> m_options;
    QList<Row> m_parameters;
};

// Writes one line to standard error or standard output, in UTF-8.
void printError(const QString &line);
void printLine(const QString &line);

} // namespace orvale
