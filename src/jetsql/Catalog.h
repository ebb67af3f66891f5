// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

namespace dao {

// The field types of the practice's tables. Null is the type of the bare word Null in an expression and
// Unknown of a value that may be of any type; no field has them.
enum class FieldType {
    Boolean,
    Byte,
    Integer,
    Long,
    AutoNumber,
    Currency,
    Single,
    Double,
    Date,
    Text,
    Memo,
    Guid,
    Binary,
    Null,
    Unknown
};

constexpr bool isNumeric(FieldType type)
{
    return type >= FieldType::Byte && type <= FieldType::Double;
}
constexpr bool isText(FieldType type)
{
    return type == FieldType::Text || type == FieldType::Memo || type == FieldType::Guid;
}

namespace sql {

// What kind of comparison a type takes part in.
enum class TypeClass { Null, Boolean, Number, Date, Text, Binary };
TypeClass classOf(FieldType type);

} // namespace sql

struct ColumnInfo {
    QString name;
    FieldType type = FieldType::Text;
    int size = 0; // characters of a Text field; 0 otherwise
    bool required = false;
};

struct IndexInfo {
    QString name;
    QStringList fields;
    bool unique = false;
    bool primary = false;
};

// Index names are a table's own in the language but a schema's own in the native engines: there an index is
// "table$name", the primary key "table$name$pk".
QString nativeIndexName(const QString &table, const IndexInfo &index);
// The index of such a name, its fields and whether it is unique aside; a name made otherwise is its own.
IndexInfo indexOfNativeName(const QString &table, const QString &nativeName);

// One table as the engine finds it, a linked one included.
struct TableInfo {
    QString name; // as stored
    QString nativeName; // qualified and quoted, ready to stand in native SQL
    QList<ColumnInfo> columns;
    QList<IndexInfo> indexes;

    // Position of a column by name without regard to case; -1 when there is none.
    int columnIndex(QStringView column) const;
    // The index of that name without regard to case; null when there is none.
    const IndexInfo *index(QStringView name) const;
};

// Where the translator looks names up. Names are matched without regard to case.
class Catalog {
public:
    virtual ~Catalog() = default;
    // Null when there is no such table. Valid until the catalog's database changes its tables.
    virtual const TableInfo *table(QStringView name) const = 0;
};

} // namespace dao
