// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "FormFixture.h"
#include "data/AllergyCode.h"
#include "data/RefusedRows.h"
#include "history/InfectionCode.h"

namespace clivara {

// A practice with a small catalogue of allergens and two patients: 17, who is current, and 18.
class GeneralInfoFixture : public FormFixture<> {
protected:
    GeneralInfoFixture()
    {
        createClinical();
        for (const int patient : {17, 18})
            execute(QStringLiteral("INSERT INTO archivio (cod_paz) VALUES (%1)").arg(patient));
        for (const char *row : {"ALLERGIE VALUES ('GRAMINACEE', '01', 'Agrostis')",
                                "ALLERGIE VALUES ('GRAMINACEE', '17', 'Canna & giunco')",
                                "ALLERGIE VALUES ('GRAMINACEE', '18', 'Una di troppo')",
                                "ALLERGIE VALUES ('GRAMINACEE', '0', 'Una di troppo poco')",
                                "ALLERGIE VALUES ('ALIMENTI', '2', 'Latte di vacca')",
                                "ALLERGIE VALUES ('ALIMENTI', '11', 'Caffè')",
                                "ALLERGIE VALUES ('EPITELI', ' 4', 'Penne d''uccelli')",
                                "ALLERGIE VALUES ('epiteli', '1', 'Minuscole')",
                                "ALLERGIE VALUES ('MUFFE', '1', 'Gruppo sconosciuto')",
                                "inf_gen (cod_paz, Allergie) VALUES (17, 'Nichel')"})
            execute(QStringLiteral("INSERT INTO ") + QString::fromUtf8(row));
        environment.events = create("Eventi.sqlite", {});
        state.header.identity.surname = "Dell'Orto";
        state.header.identity.name = "Niccolò";
    }

    // A row of ESAME_OB of patient 17; the code is put between quotes unless it is Null.
    void store(const char *kind, const QString &code, const char *key = "''")
    {
        execute(QStringLiteral(
                    "INSERT INTO ESAME_OB (cod_paz, tipo_dati, chiave, dati_paz) VALUES (17, '%1', %2, %3)")
                    .arg(kind, key, code == QLatin1String("Null") ? code : u'\'' + code + u'\''));
    }
    QStringList codes(const char *kind)
    {
        return clinical(
            QStringLiteral("SELECT dati_paz FROM ESAME_OB WHERE cod_paz = %1 AND tipo_dati = '%2'")
                .arg(state.header.patientCode)
                .arg(kind));
    }
    QStringList freeText() { return clinical("SELECT Allergie FROM inf_gen WHERE cod_paz = 17"); }
    QStringList journal()
    {
        return clinical("SELECT Tipo, data_mod, cod_paz, codice1, codice2, cancellazione FROM Modifiche "
                        "ORDER BY idModifica");
    }
    QString mailbox() { return settings.text("AGGIORNA_DIARIO"); }

    bool isChecked(const QString &name) const { return control<QAbstractButton>(name)->isChecked(); }
    // Closes with Esc; for each box that comes there is an answer.
    void esc(std::initializer_list<PromptButton> answers = {})
    {
        for (const PromptButton answer : answers)
            prompts.queue(answer);
        QTest::keyClick(m_form, Qt::Key_Escape);
    }
    bool isOpen() const { return m_form->isLoaded(); }
    // What the form tells the doctor at its top; empty when there is nothing.
    QString notices() const
    {
        const auto *const label = control<QLabel>("avvisi");
        return label->isVisible() ? label->text() : QString();
    }

    static QString nines(int pairs) { return QStringLiteral("99").repeated(pairs); }
};

} // namespace clivara
