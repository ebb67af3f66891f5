// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "FormDriver.h"
#include "TestPrompts.h"
#include "data/CountedPauses.h"
#include "data/DataFixture.h"
#include "data/NumberedGuids.h"
#include "general_info/AllergyCode.h"
#include "general_info/InfectionCode.h"
#include "host/working_state/WorkingState.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QSqlQuery>
#include <QTest>

namespace clivara {

// A practice with a small catalogue of allergens and two patients: 17, who is current, and 18.
class GeneralInfoFixture : public DataFixture {
protected:
    GeneralInfoFixture()
    {
        environment.clinical = create(
            "Orvale.sqlite",
            {"CREATE TABLE inf_gen (cod_paz LONG, cod_fisc TEXT(16), Allergie MEMO)",
             "CREATE UNIQUE INDEX inf_paz ON inf_gen (cod_paz) WITH PRIMARY",
             "CREATE TABLE ESAME_OB (cod_paz LONG, tipo_dati TEXT(1), chiave TEXT(10), data_reg DATETIME, "
             "dati_paz MEMO)",
             "CREATE INDEX cod_tipo ON ESAME_OB (cod_paz, tipo_dati, chiave)",
             "CREATE TABLE ALLERGIE (Tipo TEXT(20), codice TEXT(5), descr TEXT(40))",
             "CREATE TABLE Modifiche (idModifica COUNTER, Tipo SHORT, data_mod DATETIME, cod_paz LONG, "
             "codice1 TEXT(15), codice2 TEXT(15), cancellazione YESNO)",
             "INSERT INTO ALLERGIE VALUES ('GRAMINACEE', '01', 'Agrostis')",
             "INSERT INTO ALLERGIE VALUES ('GRAMINACEE', '17', 'Canna & giunco')",
             "INSERT INTO ALLERGIE VALUES ('GRAMINACEE', '18', 'Una di troppo')",
             "INSERT INTO ALLERGIE VALUES ('GRAMINACEE', '0', 'Una di troppo poco')",
             "INSERT INTO ALLERGIE VALUES ('ALIMENTI', '2', 'Latte di vacca')",
             "INSERT INTO ALLERGIE VALUES ('ALIMENTI', '11', 'Caffè')",
             "INSERT INTO ALLERGIE VALUES ('EPITELI', ' 4', 'Penne d''uccelli')",
             "INSERT INTO ALLERGIE VALUES ('epiteli', '1', 'Minuscole')",
             "INSERT INTO ALLERGIE VALUES ('MUFFE', '1', 'Gruppo sconosciuto')",
             "INSERT INTO inf_gen (cod_paz, Allergie) VALUES (17, 'Nichel')"});
        environment.events = create("Eventi.sqlite", {});
        environment.workspace = &engine.DefaultWorkspace();
        state.environment = &environment;
        state.header.patientCode = 17;
        state.header.identity.surname = QStringLiteral("Dell'Orto");
        state.header.identity.name = QStringLiteral("Niccolò");
        state.log.start(settings, "start");
    }

    void execute(const QString &sql) { environment.clinical->Execute(sql); }
    QStringList clinical(const QString &sql) { return rowsOf(*environment.clinical, sql); }
    // A row of ESAME_OB of patient 17; the code is put between quotes unless it is Null.
    void store(const char *kind, const QString &code, const char *key = "''")
    {
        execute(QStringLiteral(
                    "INSERT INTO ESAME_OB (cod_paz, tipo_dati, chiave, dati_paz) VALUES (17, '%1', %2, %3)")
                    .arg(QLatin1String(kind), QLatin1String(key),
                         code == QLatin1String("Null") ? code : u'\'' + code + u'\''));
    }
    QStringList codes(const char *kind)
    {
        return clinical(
            QStringLiteral("SELECT dati_paz FROM ESAME_OB WHERE cod_paz = %1 AND tipo_dati = '%2'")
                .arg(state.header.patientCode)
                .arg(QLatin1String(kind)));
    }
    QStringList freeText() { return clinical("SELECT Allergie FROM inf_gen WHERE cod_paz = 17"); }
    QStringList journal()
    {
        return clinical("SELECT Tipo, data_mod, cod_paz, codice1, codice2, cancellazione FROM Modifiche "
                        "ORDER BY idModifica");
    }
    QString mailbox() { return settings.text("AGGIORNA_DIARIO"); }

    // No row of ESAME_OB can be written any more.
    void refuseCodes()
    {
        for (const char *event : {"INSERT", "UPDATE"}) {
            QSqlQuery query(environment.clinical->nativeConnection());
            EXPECT_TRUE(query.exec(
                QStringLiteral("CREATE TRIGGER \"%1\".refuse_%2 BEFORE %2 ON ESAME_OB BEGIN SELECT "
                               "RAISE(ABORT, 'no'); END")
                    .arg(environment.clinical->nativeSchema(), QLatin1String(event))));
        }
    }

    // Opens the form and acts in it; what is still open then is closed without saving.
    void open(ChartForm &form, const std::function<void()> &act)
    {
        m_form = &form;
        inside(form, [&] {
            QApplication::setActiveWindow(&form);
            try {
                act();
            } catch (const std::exception &error) { // must not cross the event loop
                ADD_FAILURE() << error.what();
            }
        });
        form.showModal();
    }
    template <typename Widget = QWidget>
    Widget *control(const QString &name) const
    {
        auto *found = m_form->findChild<Widget *>(name);
        if (!found)
            throw std::runtime_error(name.toStdString());
        return found;
    }
    void click(const QString &name) const { control<QAbstractButton>(name)->click(); }
    bool isChecked(const QString &name) const { return control<QAbstractButton>(name)->isChecked(); }
    void esc() const { QTest::keyClick(m_form, Qt::Key_Escape); }
    bool isOpen() const { return m_form->isLoaded(); }
    // What the form tells the doctor at its top; empty when there is nothing.
    QString notices() const
    {
        const auto *const label = control<QLabel>("avvisi");
        return label->isVisible() ? label->text() : QString();
    }

    static QString nines(int pairs) { return QStringLiteral("99").repeated(pairs); }

    TestPrompts prompts;
    struct NoAccount : Middleware {
        QString account(const QString &) override { return {}; }
    } middleware;
    CountedPauses pauses;
    NumberedGuids guids;
    HostEnvironment environment;
    WorkingState state{Services{settings, clock, prompts, pauses, guids, middleware}};

private:
    ChartForm *m_form = nullptr;
};

} // namespace clivara
