// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

namespace clivara {

class SheetData;

// What the values of a sheet say of the therapy: the entry of its list "Criteri" and the reasons in words.
struct TherapyCriteria {
    int entry = 0; // 0 cannot be told, 1 goal reached or adequate, 2 not
    QStringList reasons;
};

// Diabetes: glycated haemoglobin at most 7.0 %, or 8.0 % from 75 years on and with heart, brain or kidney disease
// (individual goals of the Italian standards of care); what is missing of the protection of heart and kidney.
// `age` in completed years, -1 when unknown.
TherapyCriteria CriteriTerapiaDiabete(const SheetData &data, int age);

// The respiratory sheets. Asthma: control of the last four weeks by symptoms, else by the ACT score; beta-2 agonists
// without inhaled steroids. COPD: groups A, B, E by dyspnoea, CAT score and exacerbations of a year; long-acting
// bronchodilators where the group asks for them. By the international reports on both diseases.
TherapyCriteria CriteriTerapiaMalattieRespiratorie(const SheetData &data);

// The group of a COPD sheet's values as the entry of its list "Gruppo": 1 A, 2 B, 3 E; 0 when dyspnoea and CAT score are
// both missing.
int copdGroup(const SheetData &data);

// The criteria that the sheet's layout names; entry 0 without reasons for a sheet that has none.
TherapyCriteria therapyCriteria(const SheetData &data, int age);

// What follows from the values, in words: the criteria's reasons, and the band that each total falls into.
QStringList sheetConclusions(const SheetData &data, int age);

} // namespace clivara
