// SPDX-License-Identifier: Apache-2.0
#include "dao/sqlite/SqliteDialect.h"

#include "jetsql/Error.h"
#include "jetsql/JetFunctions.h"
#include "values/JetValues.h"

#include <array>

namespace dao {
namespace {

const QString collation = QStringLiteral(" COLLATE JET_TEXT");

// What SQLite is told a column is. The words decide how SQLite stores values: "INT" whole numbers, "CHAR" and
// "TEXT" texts, "DOUB" and "FLOA" floating point; the others keep numbers as they come.
struct DeclaredType {
    FieldType type;
    QLatin1String name;
};
constexpr std::array declaredTypes{
    DeclaredType{FieldType::Boolean, QLatin1String("YESNO")},
    DeclaredType{FieldType::Byte, QLatin1String("TINYINT")},
    DeclaredType{FieldType::Integer, QLatin1String("SMALLINT")},
    DeclaredType{FieldType::Long, QLatin1String("INT")},
    DeclaredType{FieldType::AutoNumber, QLatin1String("INTEGER")},
    DeclaredType{FieldType::Currency, QLatin1String("CURRENCY")},
    DeclaredType{FieldType::Single, QLatin1String("FLOAT")},
    DeclaredType{FieldType::Double, QLatin1String("DOUBLE")},
    DeclaredType{FieldType::Date, QLatin1String("DATETIMETEXT")},
    DeclaredType{FieldType::Text, QLatin1String("VARCHAR")},
    DeclaredType{FieldType::Memo, QLatin1String("TEXT")},
    DeclaredType{FieldType::Guid, QLatin1String("CHAR(38)")},
    DeclaredType{FieldType::Binary, QLatin1String("BLOB")},
};

} // namespace

QString SqliteDialect::textLiteral(const QString &text) const
{
    // SQLite's SQL ends at a zero character, so that no literal can hold one.
    if (!text.contains(QChar(0)))
        return Dialect::textLiteral(text);
    return QStringLiteral("CAST(x'%1' AS TEXT)").arg(QString::fromLatin1(text.toUtf8().toHex()));
}

QString SqliteDialect::dateLiteral(const QDateTime &date) const
{
    return u'\'' + clivara::jet::storedDate(date) + u'\'';
}

QString SqliteDialect::booleanLiteral(bool value) const
{
    return value ? QStringLiteral("-1") : QStringLiteral("0");
}

QString SqliteDialect::conditionFromBoolean(const QString &value) const
{
    return u'(' + value + QStringLiteral(" <> 0)");
}

QString SqliteDialect::booleanFromCondition(const QString &condition) const
{
    return QStringLiteral("(-") + condition + u')';
}

QString SqliteDialect::numberFromBoolean(const QString &value) const
{
    return value;
}

QString SqliteDialect::orderTerm(const QString &expression, FieldType type, bool descending) const
{
    // SQLite takes Null as the smallest value, as the language does.
    QString term = isText(type) ? expression + collation : expression;
    if (descending)
        term += QStringLiteral(" DESC");
    return term;
}

QString SqliteDialect::compareText(const QString &left, const QString &op, const QString &right) const
{
    return u'(' + left + u' ' + op + u' ' + right + collation + u')';
}

QString SqliteDialect::groupText(const QString &expression) const
{
    return expression + collation;
}

QString SqliteDialect::likePattern(const QString &text, const QString &pattern) const
{
    const QString prefix = sql::literalPrefix(pattern);
    const QString match =
        QStringLiteral("jet_like(") + textLiteral(pattern) + QStringLiteral(", ") + text + u')';
    if (prefix.isEmpty())
        return match;
    // Texts that begin with the prefix stand together in the collation, up to the highest character there is.
    const QString highest = QString::fromUcs4(U"\U0010FFFF", 1);
    return u'(' + compareText(text, QStringLiteral(">="), textLiteral(prefix)) + QStringLiteral(" AND ")
           + compareText(text, QStringLiteral("<="), textLiteral(prefix + highest)) + QStringLiteral(" AND ")
           + match + u')';
}

QString SqliteDialect::likeExpression(const QString &text, const QString &pattern) const
{
    return QStringLiteral("jet_like(") + pattern + QStringLiteral(", ") + text + u')';
}

QString SqliteDialect::functionName(const QString &name) const
{
    return QStringLiteral("jet_") + name;
}

QString SqliteDialect::rowIdentity(const QString &alias) const
{
    return alias + QStringLiteral(".rowid");
}

QString SqliteDialect::identical(const QString &left, const QString &right, FieldType) const
{
    return u'(' + left + QStringLiteral(" IS ") + right + QStringLiteral(" COLLATE BINARY)");
}

QString SqliteDialect::columnDeclaration(const ColumnInfo &column) const
{
    const auto declared = std::find_if(declaredTypes.begin(), declaredTypes.end(),
                                       [&](const DeclaredType &type) { return type.type == column.type; });
    if (declared == declaredTypes.end())
        throw Error(SyntaxError, QStringLiteral("Tipo del campo non valido: '%1'").arg(column.name));
    QString text = identifier(column.name) + u' ' + declared->name;
    if (column.type == FieldType::AutoNumber)
        return text + QStringLiteral(" PRIMARY KEY AUTOINCREMENT NOT NULL");
    if (column.type == FieldType::Boolean)
        return text + QStringLiteral(" NOT NULL DEFAULT 0");
    if (column.type == FieldType::Text)
        text += QStringLiteral("(%1)").arg(column.size > 0 ? column.size : 255);
    if (isText(column.type))
        text += QStringLiteral(" COLLATE JET_TEXT");
    if (column.required)
        text += QStringLiteral(" NOT NULL");
    return text;
}

ColumnInfo SqliteDialect::declaredColumn(const QString &name, const QString &declaredType, bool required)
{
    ColumnInfo column{name, FieldType::Unknown, 0, required};
    for (const DeclaredType &declared : declaredTypes) {
        if (declaredType.compare(declared.name, Qt::CaseInsensitive) == 0)
            column.type = declared.type;
    }
    const qsizetype bracket = declaredType.indexOf(u'(');
    if (column.type == FieldType::Unknown && bracket > 0
        && QStringView(declaredType).left(bracket).compare(QLatin1String("VARCHAR"), Qt::CaseInsensitive)
               == 0) {
        column.type = FieldType::Text;
        column.size = QStringView(declaredType).mid(bracket + 1).chopped(1).toInt();
    }
    // A table made by another program: the value tells its type.
    if (column.type == FieldType::Boolean || column.type == FieldType::AutoNumber)
        column.required = false;
    return column;
}

QString SqliteDialect::rowNumberDeclaration() const
{
    return QStringLiteral("INTEGER PRIMARY KEY");
}

QString SqliteDialect::createIndex(const QString &schema, const QString &table, const IndexInfo &index) const
{
    QStringList fields;
    for (const QString &field : index.fields)
        fields.append(identifier(field));
    const QString name = nativeIndexName(table, index);
    return QStringLiteral("CREATE %1 %2 ON %3 (%4)")
        .arg(index.unique || index.primary ? QStringLiteral("UNIQUE INDEX") : QStringLiteral("INDEX"),
             qualified(schema, name), identifier(table), fields.join(QStringLiteral(", ")));
}

QString SqliteDialect::dropIndex(const QString &schema, const QString &table, const IndexInfo &index) const
{
    return QStringLiteral("DROP INDEX ") + qualified(schema, nativeIndexName(table, index));
}

QVariant SqliteDialect::toNative(const QVariant &value, FieldType type) const
{
    if (type == FieldType::Boolean && value.isValid() && !value.isNull())
        return value.toBool() ? -1 : 0;
    return Dialect::toNative(value, type);
}

} // namespace dao
