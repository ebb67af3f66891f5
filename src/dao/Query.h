// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetsql/Parameters.h"

#include <QList>
#include <QString>
#include <QVariant>

namespace dao {

// The value of a parameter, which stands in the SQL as a bare or bracketed name: "where cod_paz = [patient]". Its
// type is that of the variant: bool is Yes/No; a whole number Long (Double when it is too large); double Double;
// QString Text, never Null even when it is empty; QDate, QTime and QDateTime Date, an invalid one Null; QUuid Guid; an
// invalid variant Null.
struct Parameter {
    QString name; // without brackets
    QVariant value;
};

// A Jet SQL text and the values of its parameters. Values never become SQL: a text is translated once for each
// combination of their types. A parameter may stand in the SQL several times. Every value must be used
// (ItemNotFound), and its name must not be that of a field where it stands (AmbiguousField): a query of one patient
// must not become one of all by a slip of the pen.
struct Query {
    QString sql;
    QList<Parameter> parameters;
};

// The parameters of a query, with their values as fields of their types take them. Throws Error: TypeMismatch for a
// value of no type of the language, Overflow or ConversionError for a number or date outside its range.
class BoundParameters {
public:
    explicit BoundParameters(const QList<Parameter> &parameters);

    const sql::ParameterTypes &types() const { return m_types; }
    // What a translation depends on beside its text; empty without parameters.
    QString key() const;
    // The native values of a translation, in their order; `native` turns a value of a type into a native one.
    template <typename Native>
    QVariantList values(const QList<sql::ParameterUse> &uses, Native native) const
    {
        QVariantList result;
        for (const sql::ParameterUse &use : uses)
            result.append(native(value(use), m_types[use.parameter].type));
        return result;
    }

private:
    QVariant value(const sql::ParameterUse &use) const;

    sql::ParameterTypes m_types;
    QVariantList m_values;
};

} // namespace dao
