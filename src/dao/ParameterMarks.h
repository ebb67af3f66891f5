// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetsql/Parameters.h"

#include <QStringView>

namespace dao::sql {

// The parameters of one statement. The parts of its SQL are not written in their order, and some are written twice:
// where a parameter stands they hold a mark, which becomes a "?" when all is in its place.
class ParameterMarks {
public:
    explicit ParameterMarks(const ParameterTypes &parameters)
        : m_parameters(parameters)
        , m_used(parameters.size())
    {
    }

    int find(QStringView name) const; // -1 when there is none
    FieldType type(int parameter) const { return m_parameters[parameter].type; }
    QString mark(const ParameterUse &use);
    // Puts "?" in the place of the marks and tells what each stands for. Throws Error (ItemNotFound) for a parameter
    // that was never used.
    QList<ParameterUse> resolve(QString &sql) const;

private:
    const ParameterTypes &m_parameters;
    QList<bool> m_used;
};

} // namespace dao::sql
