// SPDX-License-Identifier: Apache-2.0
#include "dao/Query.h"

#include "dao/FieldValue.h"
#include "jetsql/Error.h"

#include <QUuid>

namespace dao {
namespace {

FieldType typeOf(const Parameter &parameter)
{
    const QVariant &value = parameter.value;
    switch (value.typeId()) {
    case QMetaType::UnknownType:
    case QMetaType::Nullptr:
        return FieldType::Null;
    case QMetaType::Bool:
        return FieldType::Boolean;
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong: {
        const double number = value.toDouble();
        return number == double(qint32(value.toLongLong())) ? FieldType::Long : FieldType::Double;
    }
    case QMetaType::Float:
    case QMetaType::Double:
        return FieldType::Double;
    case QMetaType::QString:
    case QMetaType::QChar:
        return FieldType::Text;
    case QMetaType::QDate:
        return value.toDate().isValid() ? FieldType::Date : FieldType::Null;
    case QMetaType::QTime:
        return value.toTime().isValid() ? FieldType::Date : FieldType::Null;
    case QMetaType::QDateTime:
        return value.toDateTime().isValid() ? FieldType::Date : FieldType::Null;
    case QMetaType::QUuid:
        return FieldType::Guid;
    default:
        throw Error(TypeMismatch,
                    QStringLiteral("Tipo di dati non corrispondente: '%1'").arg(parameter.name));
    }
}

} // namespace

BoundParameters::BoundParameters(const QList<Parameter> &parameters)
{
    for (const Parameter &parameter : parameters) {
        const FieldType type = typeOf(parameter);
        m_types.append({parameter.name, type});
        m_values.append(type == FieldType::Null ? QVariant()
                                                : fieldValue(parameter.value, {parameter.name, type}));
    }
}

QString BoundParameters::key() const
{
    QString key;
    for (const sql::ParameterType &parameter : m_types)
        key += QChar(0) + parameter.name + QChar(0) + QChar(u'A' + char16_t(parameter.type));
    return key;
}

QVariant BoundParameters::value(const sql::ParameterUse &use) const
{
    const QVariant &value = m_values[use.parameter];
    return use.asGuid ? sql::guidText(value.toString()) : value;
}

} // namespace dao
