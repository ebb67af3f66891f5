// SPDX-License-Identifier: Apache-2.0
#include "dao/native/Storage.h"

#include <QSqlError>
#include <QSqlQuery>

namespace dao {
namespace {

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
    QueryCursor(const Storage &storage, const QSqlDatabase &connection, const QString &sql,
                const QVariantList &values)
        : m_storage(storage)
        , m_query(runQuery(storage, connection, sql, values))
    {
    }

    bool next() override
    {
        if (m_query.next())
            return true;
        if (m_query.lastError().isValid())
            throw m_storage.error(m_query.lastError(), m_query.lastQuery());
        return false;
    }

    QVariant value(int column) const override { return m_query.value(column); }

private:
    const Storage &m_storage;
    QSqlQuery m_query;
};

} // namespace

QSqlQuery runQuery(const Storage &storage, const QSqlDatabase &connection, const QString &sql,
                   const QVariantList &values)
{
    QSqlQuery query(connection);
    query.setForwardOnly(true);
    bool done = query.prepare(sql);
    for (const QVariant &value : values)
        query.addBindValue(value);
    done = done && query.exec();
    if (!done)
        throw storage.error(query.lastError(), sql);
    return query;
}

int Storage::execute(QSqlDatabase &connection, const QString &sql, const QVariantList &values) const
{
    return runQuery(*this, connection, sql, values).numRowsAffected();
}

void Storage::control(QSqlDatabase &connection, const QString &sql) const
{
    QSqlQuery query(connection);
    if (!query.exec(sql))
        throw error(query.lastError(), sql);
}

Error Storage::goneTransaction() const
{
    return Error(TransactionError,
                 QStringLiteral("La transazione è stata annullata da un errore precedente"));
}

std::unique_ptr<NativeCursor> Storage::openCursor(QSqlDatabase &connection, const QString &sql,
                                                  const QVariantList &values) const
{
    return std::make_unique<QueryCursor>(*this, connection, sql, values);
}

std::unique_ptr<NativeCursor> Storage::openFirstRows(QSqlDatabase &connection, const QString &sql,
                                                     const QVariantList &values, int) const
{
    return openCursor(connection, sql, values);
}

std::unique_ptr<NativeCursor> Storage::openStream(QSqlDatabase &connection, const QString &sql) const
{
    return openCursor(connection, sql, {});
}

QString Storage::linkedName(const QString &name, const QString &) const
{
    return name;
}

QString Storage::nameOfLinked(const QString &linked, const QString &) const
{
    return linked;
}

Error Storage::error(const QSqlError &error, const QString &sql) const
{
    const int number = errorNumber(error);
    return Error(number, errorDescription(number, errorText(error)), sql);
}

} // namespace dao
