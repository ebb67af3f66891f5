// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <stdexcept>

namespace dao {

// The engine's error numbers that callers tell apart; any number of the engine may occur.
enum ErrorNumber {
    InvalidCall = 5, // a function called with a value that it does not take
    Overflow = 6,
    DivisionByZero = 11,
    TypeMismatch = 13,
    DuplicateKey = 3022,
    NoCurrentRecord = 3021,
    UpdateWithoutEdit = 3020,
    CannotFindFile = 3024,
    DatabaseMoved = 3044, // a file was moved, replaced or deleted while it was open; what is written is lost
    ReadOnly = 3027,
    NoPermission = 3033,
    InvalidArgument = 3001,
    InvalidOperation = 3219,
    ObjectNotFound = 3078, // a table or query that does not exist
    DuplicateDestination = 3063, // a field that gets two values
    TooFewParameters = 3061, // a name in the SQL that is no field
    SyntaxError = 3075,
    AmbiguousField = 3079, // a field without its table that more than one table has
    UndefinedFunction = 3085,
    OrderConflict = 3093, // DISTINCT ordered by a field that is not selected
    AggregateHere = 3096, // an aggregate function where none may stand
    NotGrouped = 3122, // a field beside aggregates that the rows are not grouped by
    UnknownFieldName = 3127, // INSERT INTO ... SELECT of a field that the table does not have
    FieldCountDiffers = 3346, // INSERT of more or fewer values than fields
    TableExists = 3010,
    FieldTooSmall = 3163,
    RecordDeleted = 3167,
    RecordChanged = 3197,
    Locked = 3260,
    ItemNotFound = 3265,
    FieldRequired = 3314,
    NotADatabase = 3343,
    NotAnIndex = 3015,
    ConversionError = 3421,
    TransactionError = 3034,
    Corrupt = 3049,
    RecordTooLarge = 3047,
    DiskError = 3043,
    DiskFull = 3183,
    SelectNotExecuted = 3065, // Execute of a SELECT
    ConnectionLost = 3151, // of the database server; nothing of the statement or transaction was saved
    TransactionLost = 3154, // what stands in a transaction that went with its connection
    CommitInDoubt = 3155, // lost in the middle of saving, and nobody can tell whether it was saved
    Failed = 3146, // the native engine failed; the text is its own
};

// Whether an error of that number says that the database server is out of reach.
constexpr bool isConnectionLost(int number)
{
    return number == ConnectionLost || number == TransactionLost;
}

// The one error of the data engine: the engine's number, its text, and the SQL it failed on (may be empty).
class Error : public std::runtime_error {
public:
    Error(int number, const QString &text, const QString &sql = {})
        : std::runtime_error(text.toStdString())
        , m_number(number)
        , m_text(text)
        , m_sql(sql)
    {
    }

    int number() const { return m_number; }
    QString text() const { return m_text; }
    QString sql() const { return m_sql; }

private:
    int m_number;
    QString m_text;
    QString m_sql;
};

} // namespace dao
