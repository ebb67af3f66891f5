// SPDX-License-Identifier: Apache-2.0
#include "Check.h"

#include "app/practice/Practice.h"

#include <QDate>
#include <QHash>
#include <QRegularExpression>
#include <QSet>

namespace workstations {

namespace {

using Contents = QMultiHash<QString, QString>; // what is stored, by tag

QString day(const dao::Field &field)
{
    return field.date().date().toString(Qt::ISODate);
}

QString joined(const QStringList &parts)
{
    return parts.join(u'|');
}

// Every row that is exchanged between workstations says whose it is.
QString stamps(dao::Recordset &rows)
{
    return rows.Fields("idRowGuid").text().isEmpty() || rows.Fields("sRecordUid").text().isEmpty()
               ? QStringLiteral("senza identità")
               : QStringLiteral("con identità");
}

void collect(dao::Database &database, const QString &query, Contents &contents,
             const std::function<QStringList(dao::Recordset &)> &tagAndContent)
{
    for (const auto rows = database.OpenRecordset(query, dao::RecordsetType::Snapshot); !rows->Eof();
         rows->MoveNext()) {
        QStringList parts = tagAndContent(*rows);
        const QString tag = parts.takeFirst();
        contents.insert(tag, joined(parts));
    }
}

QSet<QString> texts(dao::Database &database, const QString &query)
{
    QSet<QString> found;
    for (const auto rows = database.OpenRecordset(query, dao::RecordsetType::Snapshot); !rows->Eof();
         rows->MoveNext())
        found.insert(rows->Fields(0).text());
    return found;
}

QString tagOf(const Save &save)
{
    // An evaluation has no text to tell it by.
    return save.kind == Kind::Evaluation
               ? QStringLiteral("%1 %2").arg(save.patient).arg(save.date.toString(Qt::ISODate))
               : save.tag;
}

QString expected(const Save &save)
{
    const QString patient = QString::number(save.patient);
    const QString date = save.date.toString(Qt::ISODate);
    const auto withIdentity = QStringLiteral("con identità");
    switch (save.kind) {
    case Kind::Visit:
        return joined({patient, date, save.text, withIdentity});
    case Kind::Problem:
        return joined({patient, save.text, withIdentity});
    case Kind::Stay:
        return joined({patient, date, "Cardiologia", "in elenco", withIdentity});
    case Kind::Evaluation:
        return joined(
            {QString::number(systolicOf(save)), QString::number(cholesterolOf(save)), "1 modifica"});
    case Kind::Allergies:
        return joined({patient, save.text, "1 scheda, 2 modifiche"});
    case Kind::Sheet:
        return patient;
    case Kind::Event:
        return joined({patient, date});
    }
    return {};
}

// What the practice holds of the workstations' saves.
Contents storedIn(orvale::Practice &practice)
{
    dao::Database &clinical = *practice.environment().clinical;
    const QString theirs = QStringLiteral(" WHERE cod_paz >= %1").arg(firstPatient);
    Contents contents;
    collect(clinical, QStringLiteral("SELECT * FROM VISITAPROBL") + theirs, contents,
            [](dao::Recordset &row) {
                return QStringList{row.Fields("anamnesi").text(), row.Fields("cod_paz").text(),
                                   day(row.Fields("DataReg")), row.Fields("conclusioni").text(), stamps(row)};
            });
    collect(clinical, QStringLiteral("SELECT * FROM PROBLEMS") + theirs, contents, [](dao::Recordset &row) {
        return QStringList{row.Fields("descr_mal").text(), row.Fields("cod_paz").text(),
                           row.Fields("anamnesi").text(), stamps(row)};
    });
    // A stay and its hospital's place in the list are saved together.
    QSet<QString> hospitals =
        texts(clinical, "SELECT denominazione FROM sedericov WHERE denominazione LIKE 'Ospedale w*'");
    collect(clinical, QStringLiteral("SELECT * FROM ricoveri2") + theirs, contents, [&](dao::Recordset &row) {
        const QString hospital = row.Fields("sede").text();
        return QStringList{hospital.section(u' ', 1),
                           row.Fields("cod_paz").text(),
                           day(row.Fields("data_accesso")),
                           row.Fields("reparto").text(),
                           hospitals.remove(hospital) ? QStringLiteral("in elenco")
                                                      : QStringLiteral("non in elenco"),
                           stamps(row)};
    });
    for (const QString &hospital : std::as_const(hospitals))
        contents.insert(hospital.section(u' ', 1), "sede senza ricovero");
    // An evaluation is a row and what the journal says of it.
    QHash<QString, int> evaluations;
    for (const auto rows = clinical.OpenRecordset(
             QStringLiteral("SELECT cod_paz, codice1 FROM Modifiche%1 AND Tipo = 101").arg(theirs));
         !rows->Eof(); rows->MoveNext())
        ++evaluations[rows->Fields(0).text() + u' ' + rows->Fields(1).text()];
    collect(clinical, QStringLiteral("SELECT * FROM Rischio_Cardio") + theirs, contents,
            [&](dao::Recordset &row) {
                const QString patient = row.Fields("cod_paz").text();
                const QDateTime date = row.Fields("Data_Val").date();
                const int noted = evaluations.take(patient + u' ' + date.toString("dd/MM/yyyy"));
                return QStringList{patient + u' ' + day(row.Fields("Data_Val")),
                                   row.Fields("pressione").text(), row.Fields("colesterolo").text(),
                                   noted == 1 ? QStringLiteral("1 modifica") : QString::number(noted)};
            });
    for (auto noted = evaluations.cbegin(); noted != evaluations.cend(); ++noted)
        contents.insert(noted.key(), "modifica senza rilevazione");
    // Allergies are a code, a text and what the journal says of both.
    QHash<QString, int> codes, journal;
    for (const auto rows = clinical.OpenRecordset(QStringLiteral("SELECT cod_paz FROM ESAME_OB") + theirs);
         !rows->Eof(); rows->MoveNext())
        ++codes[rows->Fields(0).text()];
    for (const auto rows = clinical.OpenRecordset(
             QStringLiteral("SELECT cod_paz FROM Modifiche%1 AND Tipo < 100").arg(theirs));
         !rows->Eof(); rows->MoveNext())
        ++journal[rows->Fields(0).text()];
    collect(clinical, QStringLiteral("SELECT cod_paz, Allergie FROM inf_gen") + theirs, contents,
            [&](dao::Recordset &row) {
                const QString patient = row.Fields(0).text(), text = row.Fields(1).text();
                const int found = codes.take(patient), noted = journal.take(patient);
                if (text.isEmpty() && found == 0 && noted == 0)
                    return QStringList{QString(), QString()};
                return QStringList{text.section(u' ', 0, 0), patient, text,
                                   QStringLiteral("%1 scheda, %2 modifiche").arg(found).arg(noted)};
            });
    contents.remove({}); // patients about whom nothing was saved
    collect(clinical, QStringLiteral("SELECT cod_paz, SEQDATI FROM AIR15_7") + theirs, contents,
            [](dao::Recordset &row) {
                static const QRegularExpression tag("w\\d+-\\d{6}");
                return QStringList{tag.match(row.Fields(1).text()).captured(), row.Fields(0).text()};
            });
    collect(*practice.environment().events,
            QStringLiteral("SELECT codPaz, chiave, chiave1 FROM Eventi WHERE codPaz >= %1").arg(firstPatient),
            contents, [](dao::Recordset &row) {
                return QStringList{row.Fields(1).text(), row.Fields(0).text(), row.Fields(2).text()};
            });
    return contents;
}

// Keys that no index keeps apart, or that an index would have to: each value once.
void findDoubles(orvale::Practice &practice, QStringList &faults)
{
    static const QStringList keys{"VISITAPROBL|IdVisitaProbl", "PROBLEMS|idProblems",
                                  "ricoveri2|idRicovero",      "AIR15_7|idTipo, idScheda",
                                  "VISITAPROBL|sRecordUid",    "PROBLEMS|sRecordUid",
                                  "sedericov|denominazione"};
    for (const QString &key : keys) {
        const QString table = key.section(u'|', 0, 0), fields = key.section(u'|', 1);
        const auto rows = practice.environment().clinical->OpenRecordset(
            QStringLiteral("SELECT %1, count(*) FROM %2 WHERE %3 IS NOT NULL GROUP BY %1 HAVING count(*) > 1")
                .arg(fields, table, fields.section(u',', 0, 0)),
            dao::RecordsetType::Snapshot);
        for (; !rows->Eof(); rows->MoveNext())
            faults.append(QStringLiteral("doppio: %1.%2 = %3").arg(table, fields, rows->Fields(0).text()));
    }
}

} // namespace

QStringList compare(const QList<Account> &accounts, orvale::Practice &practice)
{
    QStringList faults;
    Contents stored = storedIn(practice);
    for (const Account &account : accounts) {
        for (const Account::Entry &entry : account.entries) {
            const QString name = entry.save.tag, tag = tagOf(entry.save);
            const QStringList found = stored.values(tag);
            stored.remove(tag);
            if (found.isEmpty() && entry.isAcknowledged)
                faults.append(QStringLiteral("perso: ") + name);
            else if (found.size() > 1)
                faults.append(QStringLiteral("salvato %1 volte: %2").arg(found.size()).arg(name));
            else if (!found.isEmpty() && found.first() != expected(entry.save))
                faults.append(QStringLiteral("%1 non è intero: %2 invece di %3")
                                  .arg(name, found.first().left(300), expected(entry.save).left(300)));
        }
    }
    for (auto it = stored.cbegin(); it != stored.cend(); ++it)
        faults.append(QStringLiteral("di nessuno: %1 %2").arg(it.key(), it.value().left(100)));
    findDoubles(practice, faults);
    return faults;
}

} // namespace workstations
