// SPDX-License-Identifier: Apache-2.0
#include "dao/FieldValue.h"
#include "dao/RecordsetPrivate.h"

namespace dao {

int Recordset::Private::columnOf(const QString &wanted) const
{
    const auto same = [&](const QString &candidate) {
        return candidate.size() == wanted.size() && candidate.compare(wanted, Qt::CaseInsensitive) == 0;
    };
    const QList<ResultColumn> &columns = translation.columns;
    for (int i = 0; i < columns.size(); ++i) {
        if (same(columns[i].name))
            return i;
    }
    for (int i = 0; i < columns.size(); ++i) {
        const ColumnInfo *info = columnInfo(i);
        if (same(columns[i].qualifiedName) || (info && same(info->name)))
            return i;
    }
    return -1;
}

const ColumnInfo *Recordset::Private::columnInfo(int column) const
{
    const ResultColumn &result = translation.columns[column];
    if (result.source < 0 || result.sourceColumn < 0)
        return nullptr;
    return &translation.sources[result.source].table->columns[result.sourceColumn];
}

QVariant Recordset::Private::value(int column)
{
    requireOpen();
    const FieldType fieldType = translation.columns[column].type;
    if (mode != EditMode::None && column < isSet.size() && isSet[column])
        return buffer[column];
    if (mode == EditMode::Add)
        return fieldType == FieldType::Boolean ? QVariant(false) : QVariant();
    requireRow();
    return session->dialect().fromNative(cell(column), fieldType);
}

void Recordset::Private::setValue(int column, const QVariant &value)
{
    requireOpen();
    if (mode == EditMode::None)
        throw Error(UpdateWithoutEdit, QStringLiteral("Assegnazione a un campo senza AddNew o Edit"));
    const ColumnInfo *info = columnInfo(column);
    const int source = translation.columns[column].source;
    if (!info || !isWritable(source) || (info->type == FieldType::AutoNumber && mode == EditMode::InProgress))
        throw Error(ReadOnly,
                    QStringLiteral("Il campo '%1' non è aggiornabile").arg(translation.columns[column].name));
    const QVariant converted = fieldValue(value, *info);
    buffer.resize(translation.columns.size());
    isSet.resize(translation.columns.size());
    buffer[column] = converted;
    isSet[column] = true;
}

QString Field::Name() const
{
    return m_recordset->d->translation.columns[m_column].name;
}

FieldType Field::Type() const
{
    return m_recordset->d->translation.columns[m_column].type;
}

int Field::Size() const
{
    return m_recordset->d->translation.columns[m_column].size;
}

QString Field::SourceTable() const
{
    const int source = m_recordset->d->translation.columns[m_column].source;
    return source < 0 ? QString() : m_recordset->d->translation.sources[source].table->name;
}

QString Field::SourceField() const
{
    const ColumnInfo *info = m_recordset->d->columnInfo(m_column);
    return info ? info->name : QString();
}

QVariant Field::Value() const
{
    return m_recordset->d->value(m_column);
}

void Field::setValue(const QVariant &value)
{
    m_recordset->d->setValue(m_column, value);
}

} // namespace dao
