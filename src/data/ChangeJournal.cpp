// SPDX-License-Identifier: Apache-2.0
#include "data/ChangeJournal.h"

#include "data/RecordsetOperations.h"
#include "support/Clock.h"
#include "support/Log.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

constexpr QChar partSeparator = u'§';
constexpr int partWidth = 15; // characters of a part that are kept

bool isBlank(const QVariant &value)
{
    return value.toString().trimmed().isEmpty();
}

// A key in its one or two parts.
QStringList partsOf(const QVariant &key)
{
    if (isBlank(key))
        return {};
    const QString text = key.toString();
    const qsizetype separator = text.indexOf(partSeparator);
    if (separator < 0)
        return {text};
    return {text.left(separator), text.mid(separator + 1)};
}

// A field that does not take its value stays as it was; the row is written with the others.
void setIfPossible(dao::Recordset &recordset, const QString &field, const QVariant &value)
{
    try {
        recordset.Fields(field).setValue(value);
    } catch (const dao::Error &) {
    }
}

} // namespace

void ChangeJournal::recordChange(qint16 tipo, qint32 cod_paz, const QVariant &chiave, bool cancellazione)
{
    const QDateTime today = jet::dateTime(m_clock.today());
    const QStringList parts = partsOf(chiave);
    dao::Query query{QStringLiteral("SELECT * FROM Modifiche WHERE tipo = [kind] AND "
                                    "format(data_mod, 'dd/mm/yyyy') = [day] AND cod_paz = [patient]"),
                     {{"kind", tipo}, {"day", jet::formatDate(today, u"dd/mm/yyyy")}, {"patient", cod_paz}}};
    for (qsizetype i = 0; i < parts.size(); ++i) {
        query.sql += QStringLiteral(" AND codice%1 = [part%1]").arg(i + 1);
        query.parameters.append({QStringLiteral("part%1").arg(i + 1), parts[i]});
    }
    query.sql += QStringLiteral(" AND cancellazione = [deleted]");
    query.parameters.append({"deleted", cancellazione});
    try {
        const auto rows = m_clinical.OpenRecordset(query, dao::RecordsetType::Dynaset);
        if (rows->Eof())
            rows->AddNew();
        else
            rows->Edit();
        setIfPossible(*rows, QStringLiteral("Tipo"), tipo);
        setIfPossible(*rows, QStringLiteral("data_mod"), today);
        setIfPossible(*rows, QStringLiteral("cod_paz"), cod_paz);
        for (qsizetype i = 0; i < parts.size(); ++i)
            setIfPossible(*rows, QStringLiteral("codice%1").arg(i + 1), parts[i].left(partWidth));
        setIfPossible(*rows, QStringLiteral("cancellazione"), cancellazione);
        rows->Update();
    } catch (const dao::Error &error) {
        m_log.write(
            QStringLiteral("Modifiche - Error %1 - %2").arg(QString::number(error.number()), error.text()));
    }
}

QDate ChangeJournal::lastChange(dao::Database &clinical, qint16 tipo, qint32 cod_paz, const QString &chiave)
{
    const auto rows = clinical.OpenRecordset(
        {QStringLiteral("SELECT max(data_mod) AS giorno FROM Modifiche WHERE tipo = [kind] AND "
                        "cod_paz = [patient] AND codice1 = [part]"),
         {{"kind", tipo}, {"patient", cod_paz}, {"part", chiave.left(partWidth)}}},
        dao::RecordsetType::Snapshot);
    return rows->Eof() ? QDate() : rows->Fields(QStringLiteral("giorno")).date().date();
}

qint16 ChangeJournal::recordEvent(const QString &MedicoR, const QString &Medico, const QString &metodo,
                                  const QVariant &codPaz, const QVariant &chiave, const QVariant &chiave1,
                                  const QVariant &chiave2)
{
    constexpr qint16 failed = -1;
    const auto text = [](const QVariant &key) { return isBlank(key) ? QString() : key.toString(); };
    try {
        const auto events = m_events.OpenRecordset(QStringLiteral("Eventi"), dao::RecordsetType::Dynaset);
        if (m_operations.Recordset_AddNew(*events) != 0)
            return failed;
        setIfPossible(*events, QStringLiteral("MedicoR"), MedicoR);
        setIfPossible(*events, QStringLiteral("Medico"), Medico);
        setIfPossible(*events, QStringLiteral("metodo"), metodo);
        setIfPossible(*events, QStringLiteral("codPaz"), isBlank(codPaz) ? QVariant(0) : codPaz);
        setIfPossible(*events, QStringLiteral("Data"), jet::dateTime(m_clock.today()));
        setIfPossible(*events, QStringLiteral("chiave"), text(chiave));
        setIfPossible(*events, QStringLiteral("chiave1"), text(chiave1));
        setIfPossible(*events, QStringLiteral("chiave2"), text(chiave2));
        setIfPossible(*events, QStringLiteral("Eseguita"), true);
        return m_operations.Recordset_Update(*events);
    } catch (const dao::Error &error) {
        m_log.write(
            QStringLiteral("Eventi - Error %1 - %2").arg(QString::number(error.number()), error.text()));
        return failed;
    }
}

} // namespace clivara
