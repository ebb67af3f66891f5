// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/native/Dialect.h"
#include "jetsql/Ast.h"

#include <functional>

namespace dao::sql {

// A translated expression: either a constant, whose literal is written only when its use is known, or native
// SQL that is atomic or parenthesised.
struct Operand {
    QString sql;
    FieldType type = FieldType::Null;
    bool isConstant = false;
    QVariant value; // of a constant, as in Constant
    bool condition = false; // sql is a native condition (type Boolean)
    // A field of a table in FROM.
    int table = -1; // in the innermost scope
    int column = -1;
    int size = 0; // of a Text field
    int parameter = -1; // position among the query's parameters
};

Operand constantOperand(FieldType type, const QVariant &value);
Operand sqlOperand(const QString &sql, FieldType type);
Operand conditionOperand(const QString &sql);

// What happens to a text that is no number or date where one is needed.
enum class BadText { IsError, IsNull };

// Turns operands into other types, in native SQL or, for constants, at once.
class Conversions {
public:
    explicit Conversions(const Dialect &dialect)
        : m_dialect(dialect)
    {
    }

    const Dialect &dialect() const { return m_dialect; }

    // The operand's native SQL as a value (a Yes/No value for a condition).
    QString sql(const Operand &operand) const;

    Operand toNumber(const Operand &operand, QStringView place, BadText bad = BadText::IsError) const;
    Operand toText(const Operand &operand) const;
    Operand toDate(const Operand &operand, QStringView place, BadText bad = BadText::IsError) const;
    // A native condition.
    QString toCondition(const Operand &operand, QStringView place) const;
    // The operand as a value of the class; what is none is Null.
    Operand toClass(const Operand &operand, TypeClass wanted, QStringView place) const;

    // The value that a field of that column gets.
    Operand assigned(const Operand &operand, const ColumnInfo &column, QStringView place) const;

    // A call of one of JetFunctions with arguments already of the parameters' types; constants are computed.
    Operand call(QStringView function, const std::vector<Operand> &arguments, QStringView place) const;

private:
    Operand assignedNumber(const Operand &operand, FieldType type, QStringView place) const;
    const Dialect &m_dialect;
};

} // namespace dao::sql
