// SPDX-License-Identifier: Apache-2.0
#include "jetsql/SqlErrors.h"

namespace dao::sql {
namespace {

QString quoted(QStringView place)
{
    constexpr qsizetype most = 60;
    QString text = place.trimmed().left(most).toString();
    if (place.trimmed().size() > most)
        text += QStringLiteral("...");
    return u'\'' + text + u'\'';
}

} // namespace

void throwError(int number, const QString &text, QStringView place)
{
    throw Error(number, text + QStringLiteral(": ") + quoted(place));
}

void throwSyntaxError(QStringView place)
{
    if (place.trimmed().isEmpty())
        throw Error(SyntaxError, QStringLiteral("Errore di sintassi: l'istruzione SQL non è completa"));
    throwError(SyntaxError, QStringLiteral("Errore di sintassi nell'istruzione SQL"), place);
}

void throwUnsupported(QStringView place)
{
    throwError(SyntaxError, QStringLiteral("Costrutto SQL non supportato"), place);
}

void throwUnknownTable(QStringView name)
{
    throwError(ObjectNotFound, QStringLiteral("Tabella o query inesistente"), name);
}

void throwUnknownField(QStringView name)
{
    throwError(TooFewParameters, QStringLiteral("Parametri insufficienti, campo inesistente"), name);
}

void throwUnknownFunction(QStringView name)
{
    throwError(UndefinedFunction, QStringLiteral("Funzione non definita nell'espressione"), name);
}

void throwAmbiguousField(QStringView name)
{
    throwError(AmbiguousField,
               QStringLiteral("Il campo può riferirsi a più di una tabella della clausola FROM"), name);
}

void throwFieldAndParameter(QStringView name)
{
    throwError(AmbiguousField, QStringLiteral("Il nome è sia di un campo sia di un parametro"), name);
}

void throwTypeMismatch(QStringView place)
{
    throwError(TypeMismatch, QStringLiteral("Tipo di dati non corrispondente"), place);
}

void throwNotGrouped(QStringView place)
{
    throwError(NotGrouped, QStringLiteral("L'espressione non fa parte di una funzione di aggregazione"),
               place);
}

void throwAggregateHere(QStringView place)
{
    throwError(AggregateHere, QStringLiteral("Funzione di aggregazione non ammessa qui"), place);
}

void throwWrongArguments(QStringView place)
{
    throwError(SyntaxError, QStringLiteral("Numero di argomenti della funzione errato"), place);
}

void throwOrderConflict(QStringView place)
{
    throwError(OrderConflict, QStringLiteral("La clausola ORDER BY è in conflitto con DISTINCT"), place);
}

void throwFieldCount(QStringView place)
{
    throwError(FieldCountDiffers, QStringLiteral("Il numero dei valori e quello dei campi non coincidono"),
               place);
}

} // namespace dao::sql
