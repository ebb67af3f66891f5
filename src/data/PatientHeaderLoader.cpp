// SPDX-License-Identifier: Apache-2.0
#include "data/PatientHeaderLoader.h"

#include "dao/Dao.h"
#include "support/Clock.h"
#include "support/PatientHeader.h"
#include "support/SettingsStore.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

constexpr qint32 nobody = -1;

// The row of a patient in a table, or null.
std::unique_ptr<dao::Recordset> seekPatient(dao::Database &clinical, const QString &table,
                                            const QString &index, qint32 patientCode)
{
    auto rows = clinical.OpenRecordset(table, dao::RecordsetType::Table);
    rows->setIndex(index);
    rows->Seek(QStringLiteral("="), patientCode);
    return rows->NoMatch() ? nullptr : std::move(rows);
}

// Copies a field that is not null into a value of fixed width.
void take(dao::Recordset &row, const char *field, QString &value, int width)
{
    const QVariant stored = row.Fields(QLatin1String(field)).Value();
    if (stored.isValid())
        value = PatientHeader::fixed(stored.toString(), width);
}

QString telephone(dao::Recordset &row)
{
    QStringList parts{row.Fields(QStringLiteral("prefisso")).text().trimmed(),
                      row.Fields(QStringLiteral("telefono")).text().trimmed()};
    parts.removeAll(QString());
    return parts.join(QLatin1Char(' '));
}

void loadGeneralInformation(PatientHeader &header, dao::Database &clinical)
{
    const auto row =
        seekPatient(clinical, QStringLiteral("inf_gen"), QStringLiteral("inf_paz"), header.patientCode);
    if (!row) {
        header.fiscalCode = PatientHeader::blank(16);
        header.telephone = PatientHeader::blank(18);
        header.birthplace = PatientHeader::blank(30);
        return;
    }
    header.identity.fiscalCode = row->Fields(QStringLiteral("cod_fisc")).text();
    take(*row, "cod_fisc", header.fiscalCode, 16);
    if (const QString number = telephone(*row); !number.isEmpty())
        header.telephone = PatientHeader::fixed(number, 18);
    take(*row, "luogo_nas", header.birthplace, 30);
}

void loadRegistry(PatientHeader &header, dao::Database &clinical, QDate today)
{
    const auto row =
        seekPatient(clinical, QStringLiteral("archivio"), QStringLiteral("cod_paz"), header.patientCode);
    if (!row)
        return;
    if (const auto surname = row->Fields(QStringLiteral("cognome")); !surname.isNull())
        header.surname = header.identity.surname = surname.text();
    if (const auto name = row->Fields(QStringLiteral("nome")); !name.isNull())
        header.name = header.identity.name = name.text();
    if (const QDateTime birth = row->Fields(QStringLiteral("Data_Nasc")).date(); birth.isValid()) {
        header.birthDay = birth.date();
        header.birthDate = PatientHeader::fixed(jet::formatDate(birth, u"dd/mm/yyyy"), 10);
        // Calendar years, on purpose: whoever was born on 31 December is one year old the day after.
        header.age = PatientHeader::fixed(QString::number(today.year() - birth.date().year()), 3);
    }
    take(*row, "indirizzo", header.address, 35);
    if (const auto city = row->Fields(QStringLiteral("citta")); !city.isNull())
        header.city = PatientHeader::fixed(city.text().trimmed(), 30);
    take(*row, "prov", header.province, 2);
    take(*row, "sesso", header.sex, 1);
    header.sex = header.sex.toUpper();
    header.identity.sex = row->Fields(QStringLiteral("sesso")).text().toUpper();
    take(*row, "num_tes", header.healthCard, 16);
    take(*row, "ESENZ_PAT", header.exemptionPathology, 1);
    take(*row, "ESENZ_INV", header.exemptionInvalidity, 1);
    header.identified = header.patientCode > 0;
}

// The code of a patient as the host writes it, a whole number; nobody's for anything else. No part of a text
// and no rounded number is taken: it would be another patient's code.
qint32 patientCode(const QString &text)
{
    bool isCode = false;
    const qint32 code = text.trimmed().toInt(&isCode);
    return isCode ? code : nobody;
}

} // namespace

void loadPatientHeader(PatientHeader &header, const SettingsStore &settings, dao::Database &clinical,
                       const Clock &clock)
{
    header.identified = false;
    header.identity = {};
    header.patientCode = patientCode(settings.text(QStringLiteral("CODICE PAZIENTE")));
    if (header.patientCode == nobody)
        return;
    header.birthDay = QDate();
    try {
        loadGeneralInformation(header, clinical);
        loadRegistry(header, clinical, clock.today());
    } catch (const dao::Error &) {
        // The rest of the header keeps its values.
    }
}

} // namespace clivara
