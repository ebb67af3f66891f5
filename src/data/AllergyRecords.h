// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/Dao.h"
#include "data/AllergyCode.h"
#include "support/Allergies.h"

#include <QList>
#include <memory>
#include <optional>
#include <vector>

// What the clinical database holds of a patient's allergies. Reading throws dao::Error.
namespace clivara {

// One row of the catalogue of allergens.
struct CatalogueEntry {
    QString group; // ALLERGIE.Tipo, as stored
    int position = 0; // in the group, from 1; 0 when its text is no such number
    QString name;
};
QList<CatalogueEntry> readCatalogue(dao::Database &clinical);
// By the allergens' numbers; empty where the catalogue has none. An item beyond its group is left out.
std::vector<QString> catalogueNames(const QList<CatalogueEntry> &entries);

// The rows of a patient's questionnaire of a kind (ESAME_OB.tipo_dati), positioned on the one that speaks:
// the one with an empty key, else the first. At the end when there is none.
std::unique_ptr<dao::Recordset> openQuestionnaire(dao::Database &clinical, qint32 patientCode,
                                                  const QString &kind,
                                                  dao::RecordsetType type = dao::RecordsetType::Dynaset);

// The patient's row of the general information (inf_gen); at the end when there is none.
std::unique_ptr<dao::Recordset> openGeneralInformation(dao::Database &clinical, qint32 patientCode,
                                                       dao::RecordsetType type = dao::RecordsetType::Dynaset);

// The patient's free text of allergies; Null is an empty text, empty means that the patient has no general
// information (inf_gen), so that a text cannot be written.
std::optional<QString> readFreeText(dao::Database &clinical, qint32 patientCode);

// What the host's panel and the strip of every form say of them.
Allergies readAllergies(dao::Database &clinical, qint32 patientCode);

} // namespace clivara
