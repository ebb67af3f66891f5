// SPDX-License-Identifier: Apache-2.0
#include "jetsql/JetFunctions.h"

#include "jetsql/Error.h"

namespace dao::sql {

void throwInvalidCall()
{
    throw FunctionError{InvalidCall, QStringLiteral("Chiamata di funzione non valida")};
}

void throwOverflow()
{
    throw FunctionError{Overflow, QStringLiteral("Overflow")};
}

const Function *findFunction(QStringView name)
{
    for (const auto &group : {textFunctions(), numberFunctions(), dateFunctions()}) {
        for (const Function &function : group) {
            if (function.name.size() == name.size() && name.compare(function.name, Qt::CaseInsensitive) == 0)
                return &function;
        }
    }
    return nullptr;
}

QVariant callFunction(const Function &function, Arguments arguments)
{
    if (!function.takesNull
        && std::any_of(arguments.begin(), arguments.end(), [](const QVariant &a) { return !a.isValid(); }))
        return {};
    return function.call(arguments);
}

QString literalPrefix(const QString &pattern)
{
    qsizetype length = 0;
    while (length < pattern.size() && !QStringView(u"*?#[").contains(pattern[length]))
        ++length;
    return pattern.left(length);
}

} // namespace dao::sql
