// SPDX-License-Identifier: Apache-2.0
#include "data/AllergyRecords.h"

#include "data/CodePairs.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

const auto allergyKind = QStringLiteral("X");

QStringList namesOf(dao::Database &clinical, const AllergenSelection &selection)
{
    if (selection.none())
        return {};
    const std::vector<QString> catalogue = catalogueNames(readCatalogue(clinical));
    QStringList names;
    for (std::size_t allergen = 0; allergen < selection.size(); ++allergen) {
        if (selection[allergen])
            names.append(allergenName(int(allergen), catalogue[allergen]));
    }
    return names;
}

} // namespace

QList<CatalogueEntry> readCatalogue(dao::Database &clinical)
{
    QList<CatalogueEntry> entries;
    const auto rows = clinical.OpenRecordset(QStringLiteral("SELECT * FROM ALLERGIE ORDER BY tipo , codice"),
                                             dao::RecordsetType::Snapshot);
    for (; !rows->Eof(); rows->MoveNext()) {
        const double number = jet::leadingNumber(rows->Fields(QStringLiteral("codice")).text());
        entries.append({rows->Fields(QStringLiteral("Tipo")).text(), jet::toLong(number).value_or(0),
                        rows->Fields(QStringLiteral("descr")).text()});
    }
    return entries;
}

std::vector<QString> catalogueNames(const QList<CatalogueEntry> &entries)
{
    std::vector<QString> names{std::size_t(allergenCount)};
    for (std::size_t group = 0; group < allergenGroups.size(); ++group) {
        const AllergenGroup &known = allergenGroups[group];
        for (const CatalogueEntry &entry : entries) {
            if (entry.group == QStringView(known.key) && entry.position >= 1 && entry.position <= known.items)
                names[std::size_t(firstAllergen(group) + entry.position - 1)] = entry.name;
        }
    }
    return names;
}

std::unique_ptr<dao::Recordset> openQuestionnaire(dao::Database &clinical, qint32 patientCode,
                                                  const QString &kind, dao::RecordsetType type)
{
    auto rows = clinical.OpenRecordset(
        {QStringLiteral("SELECT * FROM esame_ob WHERE tipo_dati = [kind] AND cod_paz = [patient]"),
         {{"kind", kind}, {"patient", patientCode}}},
        type);
    for (; !rows->Eof(); rows->MoveNext()) {
        const QVariant key = rows->Fields(QStringLiteral("chiave")).Value();
        if (key.isValid() && key.toString().isEmpty())
            return rows;
    }
    if (rows->RecordCount() > 0)
        rows->MoveFirst();
    return rows;
}

std::unique_ptr<dao::Recordset> openGeneralInformation(dao::Database &clinical, qint32 patientCode,
                                                       dao::RecordsetType type)
{
    return clinical.OpenRecordset(
        {QStringLiteral("SELECT * FROM Inf_gen WHERE cod_paz = [patient]"), {{"patient", patientCode}}},
        type);
}

std::optional<QString> readFreeText(dao::Database &clinical, qint32 patientCode)
{
    const auto rows = openGeneralInformation(clinical, patientCode, dao::RecordsetType::Snapshot);
    if (rows->Eof())
        return std::nullopt;
    return rows->Fields(QStringLiteral("Allergie")).text();
}

Allergies readAllergies(dao::Database &clinical, qint32 patientCode)
{
    const QString text = readFreeText(clinical, patientCode).value_or(QString());
    const auto rows = openQuestionnaire(clinical, patientCode, allergyKind, dao::RecordsetType::Snapshot);
    const QString code = rows->Eof() ? QString() : rows->Fields(QStringLiteral("dati_paz")).text();
    const bool isAnswered = !withoutOuterBlanks(code).isEmpty();
    return judgedAllergies(namesOf(clinical, legibleAllergies(code)), isAnswered,
                           !isAnswered || isIntactAllergyCode(code), text);
}

} // namespace clivara
