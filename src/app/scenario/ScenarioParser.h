// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDate>
#include <QList>
#include <QString>
#include <QVariant>

namespace orvale {

enum class ScenarioCommand {
    Today,
    Setting,
    Get,
    Patient,
    Action,
    Type,
    Choose,
    Check,
    Uncheck,
    Click,
    Select,
    DoubleClick,
    Key,
    Answer,
    Close,
    Form,
    Show,
    Rows,
    Boxes,
    Header,
    Extract,
    Sql,
    Exec,
    Shot,
    Expect,
};

// One command of a scenario. What its arguments mean stands beside each member; the others are empty.
struct ScenarioLine {
    int number = 0; // of the line in the file, from 1
    ScenarioCommand command = ScenarioCommand::Form;
    // The control; of setting and get the key, of sql and exec the database, of key, answer and shot the
    // name, of extract the routine.
    QString name;
    QString
        text; // what is typed, chosen, expected or written; the SQL; the arguments of extract as they stand
    int count = 0; // row, patient or action code
    QVariant parameter; // of action: a whole number or a text; invalid when none was given
    QDate date; // of today
};

// The scenario's commands in order. Empty lines and lines that begin with '#' are left out. A line whose
// command has no free text may end in " # ..." as well; everywhere else '#' belongs to the text. Throws
// UserError ("riga 3: ...") for the first line that is no command or has wrong arguments.
QList<ScenarioLine> parseScenario(const QString &text);

// The names of the databases of `sql` and `exec`.
QStringList scenarioDatabases();

} // namespace orvale
