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

Aggregate findAggregate(QStringView name)
{
    for (int i = int(Aggregate::Count); i <= int(Aggregate::Last); ++i) {
        if (name.compare(nameOf(Aggregate(i)), Qt::CaseInsensitive) == 0)
            return Aggregate(i);
    }
    return Aggregate::None;
}

QString nameOf(Aggregate aggregate)
{
    switch (aggregate) {
    case Aggregate::Count:
        return QStringLiteral("count");
    case Aggregate::Sum:
        return QStringLiteral("sum");
    case Aggregate::Avg:
        return QStringLiteral("avg");
    case Aggregate::Min:
        return QStringLiteral("min");
    case Aggregate::Max:
        return QStringLiteral("max");
    case Aggregate::First:
        return QStringLiteral("first");
    case Aggregate::Last:
        return QStringLiteral("last");
    case Aggregate::None:
        break;
    }
    return {};
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
    if ((function.traits & TakesNull) == 0
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
