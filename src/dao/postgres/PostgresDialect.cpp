// SPDX-License-Identifier: Apache-2.0
#include "dao/postgres/PostgresDialect.h"

#include "jetsql/Error.h"
#include "jetsql/JetFunctions.h"
#include "values/JetValues.h"

#include <QCryptographicHash>
#include <array>

namespace dao {
namespace {

const QString textType = QStringLiteral("::citext");

// The longest name that the server keeps, in bytes.
constexpr qsizetype longestName = 63;

// The types of the schema "jet" are found without its name.
struct DeclaredType {
    FieldType type;
    QLatin1String name;
};
constexpr std::array declaredTypes{
    DeclaredType{FieldType::Boolean, QLatin1String("boolean")},
    DeclaredType{FieldType::Byte, QLatin1String("byte")},
    DeclaredType{FieldType::Integer, QLatin1String("smallint")},
    DeclaredType{FieldType::Long, QLatin1String("integer")},
    DeclaredType{FieldType::AutoNumber, QLatin1String("integer")},
    DeclaredType{FieldType::Currency, QLatin1String("numeric(19,4)")},
    DeclaredType{FieldType::Single, QLatin1String("real")},
    DeclaredType{FieldType::Double, QLatin1String("double precision")},
    DeclaredType{FieldType::Date, QLatin1String("timestamp(0) without time zone")},
    DeclaredType{FieldType::Memo, QLatin1String("memo")},
    DeclaredType{FieldType::Guid, QLatin1String("guid")},
    DeclaredType{FieldType::Binary, QLatin1String("bytea")},
};

} // namespace

QString PostgresDialect::textLiteral(const QString &text) const
{
    if (text.contains(QChar(0)))
        throw Error(InvalidArgument,
                    QStringLiteral("Il testo contiene un carattere nullo, che il server non accetta"));
    return Dialect::textLiteral(text) + textType;
}

QString PostgresDialect::dateLiteral(const QDateTime &date) const
{
    return u'\'' + clivara::jet::storedDate(date) + QStringLiteral("'::timestamp");
}

QString PostgresDialect::numberLiteral(double value) const
{
    // A whole number is compared with fields of whole numbers through their indexes.
    if (value == double(qint32(value)))
        return QString::number(qint32(value));
    return u'\'' + QString::number(value, 'g', QLocale::FloatingPointShortest) + QStringLiteral("'::float8");
}

QString PostgresDialect::booleanLiteral(bool value) const
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

QString PostgresDialect::conditionFromBoolean(const QString &value) const
{
    return value == u"NULL" ? QStringLiteral("NULL::boolean") : value;
}

QString PostgresDialect::booleanFromCondition(const QString &condition) const
{
    return condition;
}

QString PostgresDialect::numberFromBoolean(const QString &value) const
{
    return QStringLiteral("(-((") + value + QStringLiteral(")::int))");
}

QString PostgresDialect::parameter(FieldType type, const QString &place) const
{
    // Without a type of its own the server would choose one, or compare a text with regard to case.
    switch (sql::classOf(type)) {
    case sql::TypeClass::Boolean:
        return place + QStringLiteral("::boolean");
    case sql::TypeClass::Number:
        return place + (type == FieldType::Long ? QStringLiteral("::int") : QStringLiteral("::float8"));
    case sql::TypeClass::Date:
        return place + QStringLiteral("::timestamp");
    default:
        return place + textType;
    }
}

QString PostgresDialect::nullLiteral(FieldType type) const
{
    switch (sql::classOf(type)) {
    case sql::TypeClass::Boolean:
        return QStringLiteral("NULL::boolean");
    case sql::TypeClass::Number:
        return type == FieldType::Double || type == FieldType::Single || type == FieldType::Currency
                   ? QStringLiteral("NULL::float8")
                   : QStringLiteral("NULL::smallint"); // becomes any whole number
    case sql::TypeClass::Date:
        return QStringLiteral("NULL::timestamp");
    case sql::TypeClass::Text:
        return QStringLiteral("NULL") + textType;
    default:
        return QStringLiteral("NULL");
    }
}

QString PostgresDialect::computed(const QString &number) const
{
    return u'(' + number + QStringLiteral(")::float8");
}

QString PostgresDialect::concatenated(const QString &texts) const
{
    return u'(' + texts + textType + u')';
}

QString PostgresDialect::joinedAnyway() const
{
    return QStringLiteral(" ON true");
}

QString PostgresDialect::orderTerm(const QString &expression, FieldType type, bool descending) const
{
    // True is -1 and comes before false, the other way round than on the server.
    const bool down = descending != (type == FieldType::Boolean);
    return expression + (down ? QStringLiteral(" DESC") : QString())
           + (descending ? QStringLiteral(" NULLS LAST") : QStringLiteral(" NULLS FIRST"));
}

QString PostgresDialect::compareText(const QString &left, const QString &op, const QString &right) const
{
    // A value bound later has no type of its own.
    return u'(' + left + u' ' + op + u' ' + right + (right == u"?" ? textType : QString()) + u')';
}

QString PostgresDialect::groupText(const QString &expression) const
{
    return expression;
}

QString PostgresDialect::likePattern(const QString &text, const QString &pattern) const
{
    const QString prefix = sql::literalPrefix(pattern);
    const QString match = likeExpression(text, textLiteral(pattern));
    if (prefix.isEmpty())
        return match;
    // Texts that begin with the prefix stand together in the collation, up to its highest character.
    return u'(' + compareText(text, QStringLiteral(">="), textLiteral(prefix)) + QStringLiteral(" AND ")
           + compareText(text, QStringLiteral("<="), textLiteral(prefix + QChar(0xFFFF)))
           + QStringLiteral(" AND ") + match + u')';
}

QString PostgresDialect::likeExpression(const QString &text, const QString &pattern) const
{
    return QStringLiteral("jet.like(") + pattern + QStringLiteral(", ") + text + u')';
}

QString PostgresDialect::functionName(const QString &name) const
{
    return QStringLiteral("jet.\"") + name + u'"';
}

QString PostgresDialect::rowIdentity(const QString &alias) const
{
    return alias + QStringLiteral(".engine_row");
}

QString PostgresDialect::identical(const QString &left, const QString &right, FieldType type) const
{
    return u'(' + left + (isText(type) ? QStringLiteral("::text") : QString())
           + QStringLiteral(" IS NOT DISTINCT FROM ") + right + u')';
}

QString PostgresDialect::columnDeclaration(const ColumnInfo &column) const
{
    QString text = identifier(column.name) + u' ';
    if (column.type == FieldType::Text) {
        text += QStringLiteral("text_%1").arg(column.size > 0 ? column.size : 255);
    } else {
        const auto declared =
            std::find_if(declaredTypes.begin(), declaredTypes.end(),
                         [&](const DeclaredType &type) { return type.type == column.type; });
        if (declared == declaredTypes.end())
            throw Error(SyntaxError, QStringLiteral("Tipo del campo non valido: '%1'").arg(column.name));
        text += declared->name;
    }
    if (column.type == FieldType::AutoNumber)
        return text + QStringLiteral(" NOT NULL GENERATED BY DEFAULT AS IDENTITY UNIQUE");
    if (column.type == FieldType::Boolean)
        return text + QStringLiteral(" NOT NULL DEFAULT false");
    if (column.required)
        text += QStringLiteral(" NOT NULL");
    return text;
}

ColumnInfo PostgresDialect::declaredColumn(const QString &name, const QString &type, bool isNumbered,
                                           bool required)
{
    ColumnInfo column{name, FieldType::Unknown, 0, required};
    for (const DeclaredType &declared : declaredTypes) {
        if (declared.name == type && (declared.type == FieldType::AutoNumber) == isNumbered)
            column.type = declared.type;
    }
    const QLatin1String text("text_");
    if (type.startsWith(text)) {
        column.type = FieldType::Text;
        column.size = type.mid(text.size()).toInt();
    }
    if (column.type == FieldType::Boolean || column.type == FieldType::AutoNumber)
        column.required = false;
    return column;
}

QStringList PostgresDialect::hiddenColumns() const
{
    return {QStringLiteral("engine_row bigint GENERATED BY DEFAULT AS IDENTITY PRIMARY KEY")};
}

QString PostgresDialect::rowNumberDeclaration() const
{
    return QStringLiteral("integer GENERATED BY DEFAULT AS IDENTITY PRIMARY KEY");
}

QStringList PostgresDialect::completeTable(const QString &nativeName, const QList<ColumnInfo> &columns) const
{
    QStringList statements;
    // To plan a join, the server compares each of the values that it counts as common in one table with each
    // of the other's: with the hundred of its own choice, comparing texts without regard to case took longer
    // than the query.
    QStringList counted;
    for (const ColumnInfo &column : columns) {
        if (column.type == FieldType::Text || column.type == FieldType::Memo
            || column.type == FieldType::Guid)
            counted.append(QStringLiteral("ALTER COLUMN %1 SET STATISTICS 10").arg(identifier(column.name)));
    }
    if (!counted.isEmpty())
        statements.append(
            QStringLiteral("ALTER TABLE %1 %2").arg(nativeName, counted.join(QStringLiteral(", "))));
    for (const ColumnInfo &column : columns) {
        if (column.type != FieldType::AutoNumber)
            continue;
        // New numbers go on above those that rows are given.
        statements.append(
            QStringLiteral("DO $do$ DECLARE numbers text := pg_get_serial_sequence(%1, %2); BEGIN "
                           "EXECUTE format('CREATE TRIGGER engine_numbers AFTER INSERT ON %3 FOR EACH ROW "
                           "WHEN (NEW.%4 > coalesce(pg_sequence_last_value(%L::regclass), 0)) "
                           "EXECUTE FUNCTION jet.keep_number(%L)', numbers, %2); END $do$")
                .arg(Dialect::textLiteral(nativeName), Dialect::textLiteral(column.name),
                     QString(nativeName)
                         .replace(u'%', QStringLiteral("%%"))
                         .replace(u'\'', QStringLiteral("''")),
                     identifier(column.name)
                         .replace(u'%', QStringLiteral("%%"))
                         .replace(u'\'', QStringLiteral("''"))));
    }
    return statements;
}

QString PostgresDialect::requireColumn(const QString &nativeName, const QString &column) const
{
    return QStringLiteral("ALTER TABLE %1 ALTER COLUMN %2 SET NOT NULL").arg(nativeName, identifier(column));
}

QString PostgresDialect::indexName(const QString &table, const IndexInfo &index)
{
    const QString name = nativeIndexName(table, index);
    if (name.toUtf8().size() <= longestName)
        return name;
    const QByteArray sum = QCryptographicHash::hash(name.toUtf8(), QCryptographicHash::Sha1).toHex().left(12);
    QString start = name;
    while (start.toUtf8().size() > longestName - 1 - sum.size())
        start.chop(1);
    return start + u'~' + QString::fromLatin1(sum);
}

QString PostgresDialect::createIndex(const QString &schema, const QString &table,
                                     const IndexInfo &index) const
{
    QStringList fields;
    for (const QString &field : index.fields)
        fields.append(identifier(field) + QStringLiteral(" NULLS FIRST"));
    const QString name = indexName(table, index);
    const QString whole = nativeIndexName(table, index);
    const QString sql =
        QStringLiteral("CREATE %1 %2 ON %3 (%4)")
            .arg(index.unique || index.primary ? QStringLiteral("UNIQUE INDEX") : QStringLiteral("INDEX"),
                 identifier(name), qualified(schema, table), fields.join(QStringLiteral(", ")));
    return name == whole ? sql
                         : sql
                               + QStringLiteral("; COMMENT ON INDEX %1 IS %2")
                                     .arg(qualified(schema, name), Dialect::textLiteral(whole));
}

QString PostgresDialect::dropIndex(const QString &schema, const QString &table, const IndexInfo &index) const
{
    return QStringLiteral("DROP INDEX ") + qualified(schema, indexName(table, index));
}

} // namespace dao
