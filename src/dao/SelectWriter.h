// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/ExpressionWriter.h"

#include <optional>

namespace dao::sql {

struct SelectResult {
    QString sql;
    QList<ResultColumn> columns;
    QList<RowSource> sources;
};

// Translates a SELECT or a UNION of several.
class SelectWriter {
public:
    struct Options {
        bool identities = false; // append the hidden columns that identify the tables' rows
        bool named = false; // give the native columns the names of the result's columns
        bool singleColumn = false; // throws when the result has more than one column
        bool inUnion = false; // ORDER BY is the whole UNION's
        bool groupTexts = false; // texts that differ in case only count as equal (in a UNION)
        std::optional<TypeClass> convertTo = {}; // of the single column
    };

    // `outer`: the scope of the SELECT around this one; null without one.
    SelectWriter(const Context &context, const Scope *outer, const Options &options)
        : m_context(context)
        , m_outer(outer)
        , m_options(options)
    {
    }

    SelectResult write(const Select &select);

private:
    struct Output {
        Operand operand;
        QStringView alias; // as given in the SELECT
        ResultColumn column;
        QString sql; // the native expression
    };

    SelectResult writeUnion(const Select &select);
    SelectResult writeBlock(const Select &select);
    void writeItems(const Select &select, const Scope &scope, ExpressionWriter &expressions);
    void addField(const Scope &scope, int table, int column);
    void nameFields(const Scope &scope);
    QStringList orderTerms(const Select &select, const Scope &scope, ExpressionWriter &expressions,
                           bool grouped);
    Operand orderOperand(const Expression &expression, const Scope &scope, ExpressionWriter &expressions,
                         bool grouped);
    QString outputList(const QStringList &identities, bool named, bool grouped) const;
    QString topOfOrder(const Select &select, const QStringList &identities, const QString &rest);

    const Context &m_context;
    const Scope *m_outer;
    Options m_options;
    std::vector<Output> m_outputs;
    struct Order {
        QString sql;
        FieldType type;
        bool descending;
    };
    std::vector<Order> m_order;
};

} // namespace dao::sql
