// SPDX-License-Identifier: Apache-2.0
#include "dao/Translator.h"

#include "dao/ActionWriter.h"
#include "dao/SelectWriter.h"
#include "jetsql/Error.h"
#include "jetsql/Parser.h"

namespace dao {
namespace {

Translation translateStatement(const sql::Statement &statement, const sql::Context &context)
{
    switch (statement.kind) {
    case StatementKind::Select: {
        sql::SelectWriter::Options options;
        options.identities = true;
        sql::SelectResult result = sql::SelectWriter(context, nullptr, options).write(*statement.select);
        Translation translation;
        translation.sql = result.sql;
        translation.columns = result.columns;
        for (ResultColumn &column : translation.columns) {
            if (column.type == FieldType::Null) // a field that holds nothing but Null
                column.type = FieldType::Text;
        }
        translation.sources = result.sources;
        return translation;
    }
    case StatementKind::Insert:
        return sql::ActionWriter(context).insert(statement);
    case StatementKind::Update:
        return sql::ActionWriter(context).update(statement);
    case StatementKind::Delete:
        return sql::ActionWriter(context).remove(statement);
    default:
        break;
    }
    Translation translation;
    translation.kind = statement.kind;
    translation.definition = statement.definition;
    return translation;
}

} // namespace

Translator::Translator(const Dialect &dialect, const Catalog &catalog, std::function<QDateTime()> now)
    : m_dialect(dialect)
    , m_catalog(catalog)
    , m_now(std::move(now))
{
}

Translation Translator::translate(const QString &jetSql, const sql::ParameterTypes &parameters) const
{
    try {
        sql::ParameterMarks marks(parameters);
        const sql::Statement statement = sql::Parser(jetSql).parse();
        bool usesClock = false;
        const std::function<QDateTime()> now = [this, &usesClock] {
            usesClock = true;
            return m_now();
        };
        Translation translation =
            translateStatement(statement, sql::Context{m_dialect, m_catalog, now, marks});
        translation.parameters = marks.resolve(translation.sql);
        translation.usesClock = usesClock;
        return translation;
    } catch (const Error &error) {
        throw Error(error.number(), error.text(), jetSql);
    }
}

} // namespace dao
