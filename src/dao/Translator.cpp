// SPDX-License-Identifier: Apache-2.0
#include "dao/Translator.h"

#include "dao/SqlPrinter.h"
#include "jetsql/Binder.h"
#include "jetsql/Error.h"
#include "jetsql/Parser.h"

namespace dao {
Translator::Translator(const Dialect &dialect, const Catalog &catalog, std::function<QDateTime()> now)
    : m_dialect(dialect)
    , m_catalog(catalog)
    , m_now(std::move(now))
{
}

Translation Translator::translate(const QString &jetSql, const sql::ParameterTypes &parameters) const
{
    try {
        const sql::Statement statement = sql::Parser(jetSql).parse();
        Translation translation;
        const sql::BoundStatement bound = sql::bind(statement, m_catalog, parameters, [&] {
            translation.usesClock = true;
            return m_now();
        });
        translation.kind = bound.kind;
        translation.sql = sql::SqlPrinter(m_dialect).print(bound, translation.parameters);
        translation.columns = bound.select.columns;
        for (ResultColumn &column : translation.columns) {
            if (column.type == FieldType::Null) // a field that holds nothing but Null
                column.type = FieldType::Text;
        }
        translation.sources = bound.select.sources;
        translation.target = bound.target;
        translation.definition = bound.definition;
        return translation;
    } catch (const Error &error) {
        throw Error(error.number(), error.text(), jetSql);
    }
}

} // namespace dao
