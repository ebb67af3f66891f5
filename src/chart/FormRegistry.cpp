// SPDX-License-Identifier: Apache-2.0
#include "chart/FormRegistry.h"

#include "jetsql/Error.h"
#include "values/JetValues.h"

#include <algorithm>
#include <map>

namespace clivara {

namespace {

template <typename Integer>
Integer inRange(const std::optional<Integer> &value)
{
    if (!value)
        throw dao::Error(dao::Overflow, QStringLiteral("Parametro dell'azione fuori intervallo"));
    return *value;
}

} // namespace

const FormRow *FormRegistry::find(const QString &name) const
{
    const auto found =
        std::find_if(m_rows.begin(), m_rows.end(), [&](const FormRow &row) { return row.name == name; });
    return found == m_rows.end() ? nullptr : &*found;
}

bool FormRegistry::isBuilt(const QString &name) const
{
    const FormRow *const row = find(name);
    return row && row->create;
}

FormRegistry::Opened FormRegistry::opened(qint16 code, const QVariant &param) const
{
    Opened usual;
    for (const FormRow &row : m_rows) {
        for (const FormAction &action : row.actions) {
            if (action.code != code)
                continue;
            if (!action.onlyFor)
                usual = {&row, &action};
            else if (parameterNumber(param) == *action.onlyFor)
                return {&row, &action};
        }
    }
    return usual;
}

bool FormRegistry::opens(qint16 code) const
{
    return std::any_of(m_rows.begin(), m_rows.end(), [&](const FormRow &row) {
        return row.create
               && std::any_of(row.actions.begin(), row.actions.end(),
                              [&](const FormAction &action) { return action.code == code; });
    });
}

QStringList FormRegistry::unloadOrder() const
{
    std::map<int, QString> names;
    for (const FormRow &row : m_rows) {
        if (row.unloadOrder > 0)
            names.emplace(row.unloadOrder, row.name);
    }
    QStringList order;
    for (const auto &[place, name] : names)
        order.append(name);
    return order;
}

double parameterNumber(const QVariant &param)
{
    return param.typeId() == QMetaType::QString ? jet::leadingNumber(param.toString()) : param.toDouble();
}

qint16 shortParameter(const QVariant &param)
{
    return inRange(jet::toInteger(parameterNumber(param)));
}

qint32 longParameter(const QVariant &param)
{
    return inRange(jet::toLong(parameterNumber(param)));
}

} // namespace clivara
