// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetsql/Catalog.h"

namespace dao::sql {

// A parameter of a query as far as the translation knows it.
struct ParameterType {
    QString name;
    FieldType type = FieldType::Null;
};
using ParameterTypes = QList<ParameterType>;

// A place of a parameter in the native SQL.
struct ParameterUse {
    int parameter = -1; // position among the query's parameters
    bool asGuid = false; // a text that is compared with GUIDs, in the form in which they are stored

    bool operator==(const ParameterUse &) const = default;
};

// The parameters of a statement that is being bound.
class GivenParameters {
public:
    explicit GivenParameters(const ParameterTypes &parameters)
        : m_parameters(parameters)
        , m_used(parameters.size())
    {
    }

    int find(QStringView name) const; // without regard to case; -1 when there is none
    FieldType use(int parameter); // its type
    // Throws Error (ItemNotFound) unless each was used.
    void requireUse() const;

private:
    const ParameterTypes &m_parameters;
    QList<bool> m_used;
};

// A GUID in the form in which GUIDs are stored, in braces and capitals; another text as it is.
QString guidText(const QString &text);

} // namespace dao::sql
