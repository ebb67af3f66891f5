// SPDX-License-Identifier: Apache-2.0
#include "dao/native/SqlDialect.h"

#include "values/JetValues.h"

#include <QSqlError>
#include <QSqlQuery>

namespace dao {
namespace {

namespace jet = clivara::jet;

QString enclosed(const QString &text, QChar quote)
{
    QString result;
    result.reserve(text.size() + 2);
    result += quote;
    if (!text.contains(quote)) {
        result += text;
    } else {
        for (const QChar c : text) {
            if (c == quote)
                result += quote;
            result += c;
        }
    }
    result += quote;
    return result;
}

// The engine's own text for the errors that people meet; the native text is added where it says more.
QString errorDescription(int number, const QString &native)
{
    switch (number) {
    case DuplicateKey:
        return QStringLiteral("Le modifiche creerebbero valori duplicati in un indice o in una chiave: %1")
            .arg(native);
    case FieldRequired:
        return QStringLiteral("Un campo obbligatorio non contiene un valore: %1").arg(native);
    case Locked:
        return QStringLiteral("Impossibile aggiornare, il database è bloccato da un altro utente: %1")
            .arg(native);
    case ReadOnly:
        return QStringLiteral("Impossibile aggiornare, il database è di sola lettura: %1").arg(native);
    case NoPermission:
        return QStringLiteral("Manca il permesso per questa operazione sul database: %1").arg(native);
    case Corrupt:
        return QStringLiteral("Il database è danneggiato: %1").arg(native);
    case NotADatabase:
        return QStringLiteral("Formato di database non riconosciuto: %1").arg(native);
    case DiskFull:
        return QStringLiteral("Spazio su disco insufficiente: %1").arg(native);
    case DiskError:
        return QStringLiteral("Errore di lettura o scrittura sul disco: %1").arg(native);
    case RecordTooLarge:
        return QStringLiteral("Il record è troppo grande: %1").arg(native);
    default:
        return native;
    }
}

// Through Qt's driver, with any values.
class QueryCursor final : public NativeCursor {
public:
    QueryCursor(const SqlDialect &dialect, const QSqlDatabase &connection, const QString &sql,
                const QVariantList &values)
        : m_dialect(dialect)
        , m_query(runQuery(dialect, connection, sql, values))
    {
    }

    bool next() override
    {
        if (m_query.next())
            return true;
        if (m_query.lastError().isValid())
            throw m_dialect.error(m_query.lastError(), m_query.lastQuery());
        return false;
    }

    QVariant value(int column) const override { return m_query.value(column); }

private:
    const SqlDialect &m_dialect;
    QSqlQuery m_query;
};

} // namespace

QSqlQuery runQuery(const SqlDialect &dialect, const QSqlDatabase &connection, const QString &sql,
                   const QVariantList &values)
{
    QSqlQuery query(connection);
    query.setForwardOnly(true);
    bool done = query.prepare(sql);
    for (const QVariant &value : values)
        query.addBindValue(value);
    done = done && query.exec();
    if (!done)
        throw dialect.error(query.lastError(), sql);
    return query;
}

QString SqlDialect::identifier(const QString &name) const
{
    return enclosed(name, u'"');
}

QString SqlDialect::textLiteral(const QString &text) const
{
    return enclosed(text, u'\'');
}

QString SqlDialect::numberLiteral(double value) const
{
    QString number = QString::number(value, 'g', QLocale::FloatingPointShortest);
    if (!number.contains(u'.') && !number.contains(u'e'))
        number += QStringLiteral(".0");
    return number;
}

QVariant SqlDialect::fromNative(const QVariant &value, FieldType type) const
{
    if (!value.isValid() || value.isNull())
        return {};
    switch (type) {
    case FieldType::Boolean:
        return value.typeId() == QMetaType::Bool ? value.toBool() : value.toDouble() != 0;
    case FieldType::Byte:
    case FieldType::Integer:
    case FieldType::Long:
    case FieldType::AutoNumber:
        return value.toInt();
    case FieldType::Currency:
    case FieldType::Single:
    case FieldType::Double:
        return value.toDouble();
    case FieldType::Date: {
        const QDateTime date = jet::dateFromStored(value.toString());
        return date.isValid() ? QVariant(date) : QVariant();
    }
    case FieldType::Text:
    case FieldType::Memo:
    case FieldType::Guid:
        return value.toString();
    case FieldType::Binary:
        return value.toByteArray();
    case FieldType::Null:
    case FieldType::Unknown:
        break;
    }
    if (value.typeId() != QMetaType::LongLong)
        return value;
    const qint64 number = value.toLongLong();
    return number == qint32(number) ? QVariant(int(number)) : QVariant(double(number));
}

QVariant SqlDialect::toNative(const QVariant &value, FieldType type) const
{
    if (!value.isValid() || value.isNull())
        return {};
    switch (type) {
    case FieldType::Date:
        return jet::storedDate(value.toDateTime());
    case FieldType::Text:
    case FieldType::Memo:
    case FieldType::Guid: {
        const QString text = value.toString();
        return text.isNull() ? QStringLiteral("") : text;
    }
    default:
        return value;
    }
}

QStringList SqlDialect::completeTable(const QString &, const QList<ColumnInfo> &) const
{
    return {};
}

QString SqlDialect::requireColumn(const QString &, const QString &) const
{
    return {};
}

int SqlDialect::execute(QSqlDatabase &connection, const QString &sql, const QVariantList &values) const
{
    return runQuery(*this, connection, sql, values).numRowsAffected();
}

void SqlDialect::control(QSqlDatabase &connection, const QString &sql) const
{
    QSqlQuery query(connection);
    if (!query.exec(sql))
        throw error(query.lastError(), sql);
}

Error SqlDialect::goneTransaction() const
{
    return Error(TransactionError,
                 QStringLiteral("La transazione è stata annullata da un errore precedente"));
}

QString SqlDialect::limit(int rows) const
{
    return QStringLiteral("LIMIT %1").arg(rows);
}

std::unique_ptr<NativeCursor> SqlDialect::openCursor(QSqlDatabase &connection, const QString &sql,
                                                     const QVariantList &values) const
{
    return std::make_unique<QueryCursor>(*this, connection, sql, values);
}

std::unique_ptr<NativeCursor> SqlDialect::openFirstRows(QSqlDatabase &connection, const QString &sql,
                                                        const QVariantList &values, int) const
{
    return openCursor(connection, sql, values);
}

std::unique_ptr<NativeCursor> SqlDialect::openStream(QSqlDatabase &connection, const QString &sql) const
{
    return openCursor(connection, sql, {});
}

QString SqlDialect::linkedName(const QString &name, const QString &) const
{
    return name;
}

QString SqlDialect::nameOfLinked(const QString &linked, const QString &) const
{
    return linked;
}

QString SqlDialect::insertStatement(const QString &nativeTable, const QList<ColumnInfo> &columns) const
{
    QStringList names;
    for (const ColumnInfo &column : columns)
        names.append(identifier(column.name));
    return QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
        .arg(nativeTable, names.join(QStringLiteral(", ")),
             QStringList(columns.size(), QStringLiteral("?")).join(QStringLiteral(", ")));
}

Error SqlDialect::error(const QSqlError &error, const QString &sql) const
{
    const int number = errorNumber(error);
    return Error(number, errorDescription(number, errorText(error)), sql);
}

} // namespace dao
