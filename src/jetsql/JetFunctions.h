// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetsql/Catalog.h"

#include <QStringView>
#include <QVariant>
#include <span>

// The scalar functions of the SQL, written once: the translator computes constants with them, a dialect may
// offer them to its native engine or translate them to native functions of the same meaning.
namespace dao::sql {

// Values are qlonglong or double, QString, QDateTime (UTC), bool; an invalid variant is Null.
using Arguments = std::span<const QVariant>;

enum FunctionTraits {
    Internal = 1, // a conversion that only the binder calls
    TakesNull = 2, // else any Null argument makes the result Null
    KeepsNumber = 4, // the result is a number of the first argument's type
};

// One function: the binder computes constants with it, SQLite calls it as "jet_name", and the server has a function
// "jet.name" of the same arguments; a sign stands for it where every engine has an operator.
struct Function {
    QStringView name; // lower-case
    // A letter for each parameter, by which the caller converts: t text, n number, d date. Those after '|'
    // may be left out.
    const char *parameters;
    FieldType result;
    QVariant (*call)(Arguments);
    int traits = 0; // FunctionTraits
    QStringView sign = {};
};

// What a function does not accept: the engine's error number and a text.
struct FunctionError {
    int number;
    QString text;
};
[[noreturn]] void throwInvalidCall();
[[noreturn]] void throwOverflow();

// The functions of groups of rows. First and Last take any value.
enum class Aggregate { None, Count, Sum, Avg, Min, Max, First, Last };
Aggregate findAggregate(QStringView name); // in any case
QString nameOf(Aggregate aggregate); // in lower case

const std::span<const Function> &textFunctions();
const std::span<const Function> &numberFunctions();
const std::span<const Function> &dateFunctions();

// Null when there is none; `name` in any case.
const Function *findFunction(QStringView name);

// The result for arguments of the parameters' types; throws FunctionError.
QVariant callFunction(const Function &function, Arguments arguments);

// What a pattern of "like" begins with before its first sign.
QString literalPrefix(const QString &pattern);

// A Date as text: "dd/mm/yyyy", with " hh:mm:ss" unless it is midnight; the time alone on day zero.
QString dateText(const QDateTime &date);

} // namespace dao::sql
