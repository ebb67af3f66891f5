// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDateTime>
#include <QList>
#include <QString>
#include <QVariant>

namespace orvale {

class DemoWriter;
struct DemoPatient;

// One row of riepil to be: a medicine, a laboratory order or another service. Rows are written by date.
struct DemoOrder {
    QDate day;
    int tipo = 0;
    QString medicine; // SPEFAR.CODSPE of a medicine; other orders are keyed when they are written
    QVariant packs;
    QVariant diagnosis;
    bool undated = false; // da_pre stays empty
    bool hospital = false; // suggested by a hospital specialist
    QList<QVariantList>
        results; // of riepil2: codice, esame, unita, risposta, risposta_e, unita_Mis, data_eff, numter
};

// Each writes the rows of one domain; the patients' domains are written patient by patient, in this order.
void writeCatalogues(DemoWriter &writer); // code tables, doctors, risk chart
DemoPatient writePerson(DemoWriter &writer, int code,
                        bool rich); // archivio, inf_gen; decides the patient's diseases
void writeProblems(DemoWriter &writer, DemoPatient &patient); // PROBLEMS and the diagnosis lists
void writeVisits(DemoWriter &writer, const DemoPatient &patient); // VISITAPROBL
void writeMeasurements(DemoWriter &writer, const DemoPatient &patient); // esa_ob, ESAME_OB
QList<DemoOrder> therapies(DemoWriter &writer, const DemoPatient &patient);
QList<DemoOrder> laboratoryAndServices(DemoWriter &writer, const DemoPatient &patient);
void writeOrders(DemoWriter &writer, const DemoPatient &patient,
                 QList<DemoOrder> orders); // riepil, riepil2, SUGGERIT
void writeEvaluations(DemoWriter &writer, const DemoPatient &patient); // Rischio_Cardio, SindrMetabolica
void writeSheets(DemoWriter &writer, const DemoPatient &patient); // AIR15_7
void writeStaysAndSheets(DemoWriter &writer, const DemoPatient &patient); // ricoveri2, AIR15_7
void writeJournals(DemoWriter &writer, const QList<DemoPatient> &patients); // Modifiche, DELETIONS, Eventi

// Values of a patient on a day, by age, diseases and treatment, without the day's own variation.
double systolicOn(const DemoPatient &patient, QDate day); // mmHg
double glucoseOn(const DemoPatient &patient, QDate day); // mg/dl
double cholesterolOn(const DemoPatient &patient, QDate day); // mg/dl
double creatinineOn(const DemoPatient &patient, QDate day); // mg/dl
double triglyceridesOn(const DemoPatient &patient, QDate day); // mg/dl
double waistOn(const DemoPatient &patient, QDate day); // cm

} // namespace orvale
