// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PracticeFixture.h"
#include "chart/WorkingState.h"

#include <QStringList>

// Message boxes that are noted and answered by their default.
class NotedPrompts final : public clivara::Prompts {
public:
    clivara::PromptButton ask(const clivara::Prompt &prompt) override
    {
        texts << prompt.text;
        return prompt.defaultButton;
    }
    QStringList texts;
};

// A practice of three patients and one doctor, seen on 21/11/2026.
class SmallPractice : public PracticeFixture {
protected:
    void SetUp() override
    {
        m_practice = orvale::Practice::create(path("practice"));
        m_practice->setProperty("region", "15");
        doctors("INSERT INTO medici_gruppo (cod_smi, cognome) VALUES (102, 'Fornò')");
        doctors("INSERT INTO medici_gruppo (cod_smi, cognome) VALUES (101, 'Cortellazzi')");
        codes("INSERT INTO TIPOVISITA (IdTipo, descr_tipo) VALUES (1, 'Visita ambulatoriale')");
        clinical(
            "INSERT INTO archivio (cod_paz, cognome, nome, sesso, Data_Nasc, indirizzo, citta, prov, cap, "
            "ESENZ_PAT) VALUES (11, 'D''Ambrogio', 'Mariangela', 'f', cdate('12/03/1956'), 'Via Roma 1', "
            "'Sant''Anna', 'NA', '80199', 'S')");
        clinical("INSERT INTO inf_gen (cod_paz, cod_fisc, prefisso, telefono, luogo_nas, Allergie) VALUES "
                 "(11, 'DMBMNG56C52F839X', '081', '5550101 ', 'Montefosco', 'Penicillina')");
        clinical("INSERT INTO archivio (cod_paz, cognome, nome, sesso, Data_Nasc) VALUES "
                 "(12, 'Fornò', 'Giacomo', 'M', cdate('01/01/1990'))");
        clinical("INSERT INTO archivio (cod_paz, cognome) VALUES (20, 'Zanchetta')");

        clinical("INSERT INTO PROBLEMS (cod_paz, DataInizio, CodICDSospetto, descr_mal, stato_probl) VALUES "
                 "(11, cdate('04/03/2012'), '401.9', 'Ipertensione', 1)");
        clinical("INSERT INTO PROBLEMS (cod_paz, DataInizio, descr_mal, stato_probl) VALUES "
                 "(11, cdate('01/02/2015'), 'Frattura', 2)");
        visit(1, "10/01/2026", "'anamnesi', ''");
        visit(2, "20/11/2026", "'anamnesi', 'Buon  compenso'");
        result(1, "90.14.3", "Colesterolo", "204", "03/09/2026");
        result(2, "90.14.3", "Colesterolo", "221", "01/03/2026");
        result(3, "90.14.3", "Colesterolo", "230", "01/03/2025");
        result(4, "90.14.1", "Colesterolo HDL", "  ", "03/09/2026");
        result(5, "90.14.1", "Colesterolo HDL", "51", "02/09/2025");
        clinical("INSERT INTO esa_ob (cod_paz, data_ob, presmax, presmin) VALUES (11, cdate('01/10/2026'), "
                 "140, 85)");
    }

    void clinical(const QString &sql) { m_practice->environment().clinical->Execute(sql); }
    void codes(const QString &sql) { m_practice->environment().codes->Execute(sql); }
    void doctors(const QString &sql) { m_practice->environment().doctors->Execute(sql); }
    void visit(int key, const char *date, const char *anamnesiAndConclusions)
    {
        clinical(
            QStringLiteral(
                "INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz, DataReg, idtipo, anamnesi, conclusioni) "
                "VALUES (%1, 11, cdate('%2'), 1, %3)")
                .arg(key)
                .arg(date, anamnesiAndConclusions));
    }
    void result(int key, const char *code, const char *exam, const char *value, const char *date)
    {
        clinical(QStringLiteral(
                     "INSERT INTO riepil (cod_pre, cod_paz, tipo, minsan, da_pre) VALUES (%1, 11, 1, 'E%1', "
                     "cdate('%2'))")
                     .arg(key)
                     .arg(date));
        clinical(
            QStringLiteral("INSERT INTO riepil2 (idriepil2, cod_rie, codice, esame, unita, unita_Mis) VALUES "
                           "(%1, 'E%1', '%2', '%3', '%4', 'mg/dl')")
                .arg(key)
                .arg(code, exam, value));
    }
    clivara::Services services() { return {m_settings, m_clock, m_prompts, m_pauses, m_guids, m_middleware}; }

    std::unique_ptr<orvale::Practice> m_practice;
    clivara::MemorySettings m_settings;
    clivara::FixedClock m_clock{QDate(2026, 11, 21)};
    NotedPrompts m_prompts;
    clivara::SystemPauses m_pauses;
    clivara::SystemGuids m_guids;
    clivara::SystemMiddleware m_middleware;
};
