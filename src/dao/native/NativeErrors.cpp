// SPDX-License-Identifier: Apache-2.0
#include "dao/native/NativeErrors.h"

namespace dao {
namespace {

QString description(int number, const QString &native)
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

} // namespace

std::optional<std::pair<int, QString>> functionError(QStringView nativeMessage)
{
    // The native engine may put words of their own before the message.
    const qsizetype at = nativeMessage.indexOf(u"JET:");
    if (at < 0)
        return std::nullopt;
    const QStringView rest = nativeMessage.mid(at + 4);
    const qsizetype colon = rest.indexOf(u':');
    bool isNumber = false;
    const int number = colon > 0 ? rest.first(colon).toInt(&isNumber) : 0;
    if (!isNumber)
        return std::nullopt;
    return std::pair(number, rest.mid(colon + 1).trimmed().toString());
}

Error describedError(int number, const QString &nativeText, const QString &sql)
{
    return Error(number, description(number, nativeText), sql);
}

} // namespace dao
