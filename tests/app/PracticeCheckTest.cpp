// SPDX-License-Identifier: Apache-2.0
#include "app/PracticeCheck.h"
#include "PracticeFixture.h"

namespace {

using orvale::Practice;

class PracticeCheckTest : public PracticeFixture { };

// One fault a case: the statements that make it, a word of the line that tells it, and its keys.
TEST_F(PracticeCheckTest, FindsEachFault)
{
    const QString codes = QString(230, u'9');
    const QString infections = QString(190, u'9');
    const struct {
        QStringList statements;
        const char *text;
        const char *keys;
    } cases[] = {
        {{QStringLiteral("INSERT INTO inf_gen (cod_paz) VALUES (8)"),
          QStringLiteral("INSERT INTO inf_gen (cod_paz) VALUES (9)")},
         "inf_gen: righe di un paziente",
         "8,9"},
        {{QStringLiteral("INSERT INTO esa_ob (cod_paz, presmax) VALUES (8, 120)")},
         "esa_ob: righe di un paziente",
         "8"},
        {{QStringLiteral("INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz, id_Probl) VALUES (5, 1, 77)")},
         "problema che non esiste",
         "5"},
        {{QStringLiteral("INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz, id_Probl) VALUES (6, 2, 1)")},
         "problema di un altro paziente",
         "6"},
        {{QStringLiteral("INSERT INTO riepil2 (idriepil2, cod_rie) VALUES (3, 'E7')")},
         "risultati senza la richiesta",
         "3"},
        {{QStringLiteral("INSERT INTO riepil (cod_pre, cod_paz, tipo, minsan) VALUES (4, 1, 0, '094')")},
         "farmaco che non è in elenco",
         "4"},
        {{QStringLiteral("INSERT INTO SUGGERIT (COD_PRE) VALUES (12)")},
         "suggerimenti senza la prescrizione",
         "12"},
        {{QStringLiteral("INSERT INTO riepil (cod_pre, cod_paz, tipo, minsan) VALUES (4, 1, 1, 'E1')"),
          QStringLiteral("INSERT INTO riepil (cod_pre, cod_paz, tipo, minsan) VALUES (5, 1, 2, 'E1')")},
         "minsan ripetuto",
         "E1"},
        {{QStringLiteral("UPDATE archivio SET idRowGuid = '{0F8FAD5B-D9CB-469F-A165-70867728950E}'")},
         "idRowGuid ripetuto",
         "{0F8FAD5B-D9CB-469F-A165-70867728950E}"},
        {{QStringLiteral("INSERT INTO ESAME_OB (cod_paz, tipo_dati, dati_paz) VALUES (2, 'X', '%1')")
              .arg(codes.chopped(2))},
         "allergie non lunghe 230",
         "2"},
        {{QStringLiteral("INSERT INTO ESAME_OB (cod_paz, tipo_dati, dati_paz) VALUES (1, 'M', '%1')")
              .arg(infections + u'9')},
         "infettive non lunghe 190",
         "1"},
        {{QStringLiteral("INSERT INTO ESAME_OB (cod_paz, tipo_dati) VALUES (1, 'X')"),
          QStringLiteral("INSERT INTO ESAME_OB (cod_paz, tipo_dati) VALUES (1, 'X')")},
         "più schede delle allergie",
         "1"},
        {{QStringLiteral("UPDATE PROBLEMS SET stato_probl = 4")}, "stato sconosciuto", "1"},
        {{QStringLiteral("UPDATE PROBLEMS SET stato_probl = Null")}, "stato sconosciuto", "1"},
        // Nothing wrong: texts never filled in, visits of no problem, medicines in the list.
        {{QStringLiteral("INSERT INTO ESAME_OB (cod_paz, tipo_dati, dati_paz) VALUES (1, 'X', '%1')")
              .arg(codes),
          QStringLiteral("INSERT INTO ESAME_OB (cod_paz, tipo_dati, dati_paz) VALUES (2, 'X', '  ')"),
          QStringLiteral("INSERT INTO ESAME_OB (cod_paz, tipo_dati) VALUES (1, 'M')"),
          QStringLiteral("INSERT INTO ESAME_OB (cod_paz, tipo_dati, dati_paz) VALUES (1, 'A', '17070.1')"),
          QStringLiteral("INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz, id_Probl) VALUES (1, 1, 1)"),
          QStringLiteral("INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz, id_Probl) VALUES (2, 1, -1)"),
          QStringLiteral("INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz) VALUES (3, 1)"),
          QStringLiteral("INSERT INTO SPEFAR (CODSPE) VALUES ('094')"),
          QStringLiteral("INSERT INTO riepil (cod_pre, cod_paz, tipo, minsan) VALUES (4, 1, 0, '094')"),
          QStringLiteral("INSERT INTO riepil (cod_pre, cod_paz, tipo, minsan) VALUES (5, 1, 0, '094')")},
         "",
         ""},
    };
    int number = 0;
    for (const auto &c : cases) {
        SCOPED_TRACE(c.statements.first().toStdString());
        const auto practice = Practice::create(path(QStringLiteral("p%1").arg(++number)));
        dao::Database &clinical = *practice->environment().clinical;
        clinical.Execute(QStringLiteral("INSERT INTO archivio (cod_paz, cognome) VALUES (1, 'Uno')"));
        clinical.Execute(QStringLiteral("INSERT INTO archivio (cod_paz, cognome) VALUES (2, 'Due')"));
        clinical.Execute(QStringLiteral("INSERT INTO PROBLEMS (cod_paz, stato_probl) VALUES (1, 3)"));
        for (const QString &statement : c.statements)
            clinical.Execute(statement);
        const auto found = orvale::checkPractice(*practice);
        if (*c.text == '\0') {
            EXPECT_TRUE(found.isEmpty()) << found.value(0).text.toStdString();
            continue;
        }
        ASSERT_EQ(found.size(), 1);
        EXPECT_NE(found.first().text.toStdString().find(c.text), std::string::npos)
            << found.first().text.toStdString();
        EXPECT_EQ(found.first().keys.join(u',').toStdString(), c.keys);
        EXPECT_EQ(found.first().count, found.first().keys.size());
    }
}

TEST_F(PracticeCheckTest, ShowsTheFirstKeysOfMany)
{
    const auto practice = Practice::create(path(QStringLiteral("p")));
    for (int i = 1; i <= 23; ++i)
        practice->environment().clinical->Execute(
            QStringLiteral("INSERT INTO inf_gen (cod_paz) VALUES (%1)").arg(i));
    const auto found = orvale::checkPractice(*practice);
    ASSERT_EQ(found.size(), 1);
    EXPECT_EQ(found.first().count, 23);
    EXPECT_EQ(found.first().keys.size(), 20);
    EXPECT_EQ(found.first().keys.last(), QStringLiteral("20"));
}

} // namespace
