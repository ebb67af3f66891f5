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
};

// A GUID in the form in which GUIDs are stored, in braces and capitals; another text as it is.
QString guidText(const QString &text);

} // namespace dao::sql
