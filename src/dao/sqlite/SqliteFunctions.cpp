// SPDX-License-Identifier: Apache-2.0
#include "dao/sqlite/SqliteFunctions.h"

#include "jetsql/Error.h"
#include "jetsql/JetFunctions.h"
#include "values/JetValues.h"

#include <new>
#include <sqlite3.h>

namespace dao {
namespace {

namespace jet = clivara::jet;

QString textOf(sqlite3_value *value)
{
    const auto *text = reinterpret_cast<const char *>(sqlite3_value_text(value));
    return QString::fromUtf8(text, sqlite3_value_bytes(value));
}

QVariant argument(sqlite3_value *value, char parameter)
{
    const int type = sqlite3_value_type(value);
    if (type == SQLITE_NULL)
        return {};
    if (parameter == 't')
        return textOf(value);
    if (parameter == 'd')
        return jet::dateFromStored(textOf(value));
    if (type == SQLITE_INTEGER)
        return qlonglong(sqlite3_value_int64(value));
    return sqlite3_value_double(value);
}

void setResult(sqlite3_context *context, const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        sqlite3_result_null(context);
        break;
    case QMetaType::Bool:
        sqlite3_result_int(context, value.toBool() ? -1 : 0);
        break;
    case QMetaType::LongLong:
        sqlite3_result_int64(context, value.toLongLong());
        break;
    case QMetaType::Double:
        sqlite3_result_double(context, value.toDouble());
        break;
    default: {
        const QString text =
            value.typeId() == QMetaType::QDateTime ? jet::storedDate(value.toDateTime()) : value.toString();
        const QByteArray utf8 = text.toUtf8();
        sqlite3_result_text(context, utf8.constData(), int(utf8.size()), SQLITE_TRANSIENT);
    }
    }
}

// No exception may pass through SQLite.
template <typename Body>
void guarded(sqlite3_context *context, Body body) noexcept
{
    try {
        body();
    } catch (const sql::FunctionError &error) {
        const QByteArray message = QStringLiteral("JET:%1:%2").arg(error.number).arg(error.text).toUtf8();
        sqlite3_result_error(context, message.constData(), int(message.size()));
    } catch (const std::bad_alloc &) {
        sqlite3_result_error_nomem(context);
    }
}

void callScalar(sqlite3_context *context, int count, sqlite3_value **values)
{
    guarded(context, [&] {
        const auto &function = *static_cast<const sql::Function *>(sqlite3_user_data(context));
        QVariant arguments[8];
        const char *parameter = function.parameters;
        for (int i = 0; i < count; ++i, ++parameter) {
            if (*parameter == '|')
                ++parameter;
            arguments[i] = argument(values[i], *parameter);
        }
        setResult(context, sql::callFunction(function, sql::Arguments(arguments, size_t(count))));
    });
}

void callLike(sqlite3_context *context, int, sqlite3_value **values)
{
    guarded(context, [&] {
        if (sqlite3_value_type(values[0]) == SQLITE_NULL || sqlite3_value_type(values[1]) == SQLITE_NULL) {
            sqlite3_result_null(context);
            return;
        }
        const QString text = textOf(values[1]);
        // SQLite keeps a constant pattern for the whole statement.
        if (const auto *kept = static_cast<const QString *>(sqlite3_get_auxdata(context, 0))) {
            sqlite3_result_int(context, jet::like(text, *kept));
            return;
        }
        const QString pattern = textOf(values[0]);
        sqlite3_result_int(context, jet::like(text, pattern));
        sqlite3_set_auxdata(context, 0, new QString(pattern),
                            [](void *kept) { delete static_cast<QString *>(kept); });
    });
}

// first() and last(): the value of the group's first or last row, Null included.
struct EdgeRow {
    sqlite3_value *value;
    bool seen;
};

void stepEdge(sqlite3_context *context, int, sqlite3_value **values)
{
    auto *row = static_cast<EdgeRow *>(sqlite3_aggregate_context(context, sizeof(EdgeRow)));
    if (row == nullptr) {
        sqlite3_result_error_nomem(context);
        return;
    }
    const bool last = sqlite3_user_data(context) != nullptr;
    if (row->seen && !last)
        return;
    row->seen = true;
    sqlite3_value_free(row->value);
    row->value = sqlite3_value_dup(values[0]);
}

void finishEdge(sqlite3_context *context)
{
    auto *row = static_cast<EdgeRow *>(sqlite3_aggregate_context(context, 0));
    if (row == nullptr || row->value == nullptr)
        return;
    sqlite3_result_value(context, row->value);
    sqlite3_value_free(row->value);
    row->value = nullptr;
}

int collate(void *, int leftSize, const void *left, int rightSize, const void *right)
{
    return jet::compareText(QUtf8StringView(static_cast<const char *>(left), leftSize),
                            QUtf8StringView(static_cast<const char *>(right), rightSize));
}

void check(sqlite3 *connection, int result)
{
    if (result != SQLITE_OK)
        throw Error(Failed, QString::fromUtf8(sqlite3_errmsg(connection)));
}

constexpr int pure = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;

void registerScalars(sqlite3 *connection, std::span<const sql::Function> functions)
{
    for (const sql::Function &function : functions) {
        const QByteArray name = QByteArrayLiteral("jet_") + function.name.toLatin1();
        // SQLite itself checks the counts that are registered; the shortest call and each longer one.
        int count = 0;
        bool optional = false;
        for (const char *parameter = function.parameters;; ++parameter) {
            if (*parameter == '|') {
                optional = true;
            }
            if (*parameter == '\0' || *parameter == '|' || optional)
                check(connection, sqlite3_create_function_v2(connection, name.constData(), count, pure,
                                                             const_cast<sql::Function *>(&function),
                                                             callScalar, nullptr, nullptr, nullptr));
            if (*parameter == '\0')
                break;
            if (*parameter != '|')
                ++count;
        }
    }
}

} // namespace

void registerSqliteFunctions(sqlite3 *connection)
{
    check(connection,
          sqlite3_create_collation_v2(connection, "JET_TEXT", SQLITE_UTF8, nullptr, collate, nullptr));
    registerScalars(connection, sql::textFunctions());
    registerScalars(connection, sql::numberFunctions());
    registerScalars(connection, sql::dateFunctions());
    check(connection, sqlite3_create_function_v2(connection, "jet_like", 2, pure, nullptr, callLike, nullptr,
                                                 nullptr, nullptr));
    static int lastMark = 0;
    check(connection, sqlite3_create_function_v2(connection, "jet_first", 1, SQLITE_UTF8, nullptr, nullptr,
                                                 stepEdge, finishEdge, nullptr));
    check(connection, sqlite3_create_function_v2(connection, "jet_last", 1, SQLITE_UTF8, &lastMark, nullptr,
                                                 stepEdge, finishEdge, nullptr));
}

} // namespace dao
