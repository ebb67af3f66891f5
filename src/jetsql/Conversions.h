// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetsql/Bound.h"

// Nodes of bound trees, and their conversion into other types. What is constant is converted at once. `place` is the
// part of the SQL that an error quotes.
namespace dao::sql {

BoundPtr make(Bound node);
BoundPtr constant(FieldType type, const QVariant &value);
BoundPtr nullOf(FieldType type);
BoundPtr fieldOf(const BoundTable *table, int column, QStringView place);
BoundPtr condition(Bound::Kind kind, std::vector<BoundPtr> arguments, bool negated = false);
BoundPtr comparison(Bound::Kind kind, Operator op, BoundPtr left, BoundPtr right);

// A call of one of JetFunctions with arguments already of the parameters' types.
BoundPtr call(QStringView function, const std::vector<BoundPtr> &arguments, QStringView place);

// What happens to a text that is no number or date where one is needed.
enum class BadText { IsError, IsNull };

BoundPtr toNumber(const BoundPtr &node, QStringView place, BadText bad = BadText::IsError);
BoundPtr toText(const BoundPtr &node, QStringView place);
BoundPtr toDate(const BoundPtr &node, QStringView place, BadText bad = BadText::IsError);
// A text that is empty for Null.
BoundPtr neverNull(const BoundPtr &text);
// A Yes/No value, or Null.
BoundPtr toCondition(const BoundPtr &node, QStringView place);
// A value of the class; what is none is Null.
BoundPtr toClass(const BoundPtr &node, TypeClass wanted, QStringView place);
// The value that a field of that column gets.
BoundPtr assigned(const BoundPtr &node, const ColumnInfo &column, QStringView place);

// The class that values of several types are converted to, and their type then.
TypeClass commonClass(const std::vector<BoundPtr> &values);
FieldType commonType(const std::vector<BoundPtr> &values, TypeClass common);
// A value of that class.
FieldType typeOf(TypeClass wanted);

} // namespace dao::sql
