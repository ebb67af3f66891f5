// SPDX-License-Identifier: Apache-2.0
#include "regional/SheetForm.h"

#include "FormFixture.h"
#include "FormNotes.h"
#include "SheetFixture.h"
#include "TestConflicts.h"
#include "regional/AIR15_Gestione.h"
#include "regional/SheetData.h"
#include "regional/SheetPrint.h"

#include <QTreeView>
#include <gmock/gmock.h>

namespace clivara {
namespace {

using testing::HasSubstr;

class SheetFormTest : public FormFixture<SheetFixture> {
protected:
    SheetFormTest() { state.forms = &forms; }

    void openSheet(int type, int number, const std::function<void()> &act)
    {
        asked = {};
        asked.sheet = number;
        SheetForm form(state, *sheetLayout(type));
        form.take(asked);
        open(form, act);
    }

    QStringList stored() { return clinical("SELECT * FROM AIR15_7 ORDER BY idTipo, idScheda"); }
    // The fields give way to the stored string.
    void expectReadOnly() const
    {
        for (const char *name : {"ctrlButt_1", "ctrlButt_2", "ctrlButt_3", "DTPicker1"})
            EXPECT_FALSE(control(name)->isEnabled()) << name;
        EXPECT_FALSE(control("cmbFumo")->isVisible());
        EXPECT_TRUE(control("txtRegistrato")->isVisible());
    }
    std::string sequences(int type)
    {
        return clinical(QStringLiteral("SELECT SEQDATI FROM AIR15_7 WHERE idTipo = %1").arg(type))
            .join(u',')
            .toStdString();
    }
    static QString blank(int type) { return CreaStringaDati(SheetData(*sheetLayout(type))); }

    FormNotes forms;
    SheetCall asked;
};

constexpr auto save = "ctrlButt_1";
constexpr auto leave = "ctrlButt_0";

TEST_F(SheetFormTest, WhatIsTypedIsStoredAndShownAgain)
{
    const auto note = "l'ètà \"100%\" € _x";
    openSheet(1, 0, [&] {
        choose("cmbRetinopatia", "sì");
        typeEach("me_Glicata dtDataFondo DTPicker1", "7,25 29/02/2024 01/02/2026");
        type("txtNote", note);
        click(save);
        click(leave);
    });
    const QStringList rows = stored();
    ASSERT_EQ(rows.size(), 1);
    EXPECT_TRUE(rows[0].startsWith("1|17|1|2026-02-01 00:00:00|"));
    clock.set(QDateTime(QDate(2026, 12, 1), QTime(9, 0), Qt::UTC));
    openSheet(1, 1, [&] {
        EXPECT_EQ(values("Label2 cmbRetinopatia me_Glicata dtDataFondo txtNote"),
                  "Scheda n. 1 del 01/02/2026|sì|7.3|29/02/2024|" + std::string(note));
        click(save); // unchanged: the row stays what it is
        EXPECT_EQ(stored(), rows);
        type("me_Glicata", "");
        click(save);
    });
    EXPECT_EQ(QString(stored()[0]).replace("00.000.0", "07.300.0"), rows[0]);
}

TEST_F(SheetFormTest, AValueThatWasChangedHasNoOrigin)
{
    execute("INSERT INTO ESAME_OB (cod_paz, tipo_dati, chiave, data_reg, dati_paz) VALUES (17, 'A', '1', "
            "#6/1/2026#, '170112.3')");
    openSheet(1, 0, [&] {
        QWidget *const weight = control("me_Peso");
        const QString origin = weight->toolTip();
        EXPECT_TRUE(origin.contains("01/06/2026")) << origin.toStdString();
        EXPECT_EQ(weight->accessibleDescription(), origin);
        type("me_Peso", "98,5");
        EXPECT_EQ(weight->toolTip(), "Al massimo 999.9");
        EXPECT_EQ(weight->accessibleDescription(), "");
        boxOf(leave, PromptButton::No);
    });
}

TEST_F(SheetFormTest, WhatDoesNotFitIsSaidAndNotStored)
{
    openSheet(1, 0, [&] {
        const struct {
            const char *field, *text, *wanted, *box;
        } cases[] = {
            {"me_Peso", "1123", "112.3", "Peso (kg): il numero non entra nel campo (al massimo 999.9)."},
            {"me_Peso", "1e1", "80", "Peso (kg): «1e1» non è un numero."},
            {"me_Peso", "80/90", "80", "Peso (kg): «80/90» non è un numero."},
            {"dtDataEcg", "31/02/2026", "01/02/2026", "Ultimo elettrocardiogramma: la data non è valida."},
            {"DTPicker1", "", "21/11/2026", "Inserire la data della scheda."},
            {"DTPicker1", "31/11/2026", "21/11/2026",
             "Inserire la data della scheda.\nQuella scritta, 31/11/2026, è impossibile."},
        };
        for (const auto &[field, text, wanted, box] : cases) {
            type(field, text);
            EXPECT_EQ(boxOf(save), "Attenzione!|" + std::string(box) + "|warning");
            EXPECT_TRUE(stored().isEmpty());
            type(field, wanted);
        }
        click(save);
        EXPECT_EQ(stored().size(), 1);
    });
}

TEST_F(SheetFormTest, ClosingAsksForWhatWasChanged)
{
    addSheetRow(2, 1, "#1/1/2026#", quoted(blank(2)));
    openSheet(2, 1, [&] {
        choose("cmbAderenza", "buona");
        EXPECT_EQ(boxOf(leave, PromptButton::Cancel),
                  "Attenzione!|La scheda è stata modificata. Salvarla prima di chiudere?|question");
        boxOf(leave, PromptButton::No);
    });
    EXPECT_EQ(sequences(2), blank(2).toStdString());
    openSheet(2, 1, [&] {
        type("me_SistolicaMax", "9999");
        prompts.queue(PromptButton::Yes);
        prompts.queue(); // it does not fit: the form stays open
        click(leave);
        type("me_SistolicaMax", "");
        choose("cmbAderenza", "buona");
        boxOf(leave, PromptButton::Yes);
    });
    EXPECT_EQ(sequences(2), blank(2).replace(23, 1, "1").toStdString());
}

TEST_F(SheetFormTest, ASheetThatIsGoneIsSaidAndNotOpened)
{
    addSheetRow(1, 3, "#1/1/2026#", quoted(blank(1)), 18); // another patient's
    addSheetRow(2, 4, "#1/1/2026#", quoted(blank(2))); // another type's
    for (const int number : {3, 4, 99}) {
        prompts.queue();
        bool opened = false;
        EXPECT_THROW(openSheet(1, number, [&] { opened = true; }), dao::Error);
        EXPECT_EQ(prompts.last(),
                  QStringLiteral("Attenzione|Errore nella lettura della scheda id=%1|critical").arg(number));
        EXPECT_FALSE(opened);
    }
    // The driver of a form that never opened must not act in a later one.
    QCoreApplication::sendPostedEvents();
}

TEST_F(SheetFormTest, AStringThatDoesNotFitIsShownAndNeverWritten)
{
    const QString zeros = QString(blank(1)).replace(109, 8, "00000000");
    addSheetRow(1, 1, "#1/1/2026#", quoted(blank(1).left(120)));
    addSheetRow(1, 2, "#1/1/2026#", "Null");
    addSheetRow(1, 3, "Null", quoted(zeros));
    addSheetRow(1, 4, "#1/1/2026#", quoted(QString(blank(1)).replace(109, 8, "31022026")));
    const QStringList before = stored();
    const struct {
        int number;
        const char *fault;
    } cases[] = {{1, "i dati hanno 120 caratteri invece di 168"},
                 {2, "i dati mancano"},
                 {4, "«31022026» al carattere 110 non è un valore di «Data della glicata»"}};
    for (const auto &[number, fault] : cases) {
        openSheet(1, number, [&] {
            EXPECT_EQ(text("message"), "La scheda non corrisponde al suo modello: " + std::string(fault)
                                           + ". È mostrata com'è registrata e non si può modificare.");
            expectReadOnly();
            EXPECT_TRUE(control<QPlainTextEdit>("txtRegistrato")->isReadOnly());
            QTest::keyClick(control("txtRegistrato"), Qt::Key_S, Qt::ControlModifier);
            click(leave); // nothing is asked
        });
    }
    EXPECT_EQ(stored(), before);
    openSheet(1, 3, [&] { // a date of zeros is none, and a sheet may have no date yet
        EXPECT_TRUE(control("cmbFumo")->isVisible());
        EXPECT_EQ(values("Label2 dtDataGlicata"), "Scheda n. 3|__/__/____");
        click(leave);
    });
    EXPECT_EQ(stored(), before);
}

TEST_F(SheetFormTest, OtherWorkstationsAreNotOverwrittenUnasked)
{
    addSheetRow(2, 1, "#1/1/2026#", quoted(blank(2)));
    const auto adherence = [&] {
        return clinical("SELECT mid(SEQDATI, 24, 1) FROM AIR15_7 WHERE idTipo = 2").join(',').toStdString();
    };
    const auto otherWrites = [&](const char *entry = "3") {
        QString other = blank(2);
        other[23] = QLatin1Char(*entry);
        execute("UPDATE AIR15_7 SET SEQDATI = '" + other + "'");
    };
    std::string told;
    ConflictChoice choice = ConflictChoice::BackToEditing;
    forms.act = [&] {
        EXPECT_EQ(forms.take(), "Conflitto");
        auto &call = forms.call<ConflictCall>();
        told = toldOf(state, call.conflict);
        call.choice = choice;
    };
    openSheet(2, 1, [&] {
        choose("cmbAderenza", "buona");
        choose("cmbFumo", "fuma");
        otherWrites();
        click(save);
        EXPECT_EQ(told,
                  "La scheda è stata salvata da un'altra postazione mentre era in questa finestra. Chi e "
                  "quando non è registrato.\nFumo|fuma|non rilevato\nAderenza|buona|scarsa");
        EXPECT_EQ(adherence(), "3");
        choice = ConflictChoice::Theirs;
        click(save);
        EXPECT_EQ(values("cmbAderenza cmbFumo"), "scarsa|non rilevato") << "shown as it is stored";
        otherWrites("2");
        choose("cmbFumo", "fuma");
        choice = ConflictChoice::Mine;
        click(save);
        EXPECT_EQ(adherence(), "2") << "what was changed only there";
        EXPECT_EQ(value("cmbFumo"), "fuma");
        choose("cmbAderenza", "buona");
        told.clear();
        click(save);
        EXPECT_EQ(adherence() + told, "1");
        // Deleted meanwhile: nothing comes back unless the doctor wants it.
        execute("DELETE FROM AIR15_7");
        boxOf(save, PromptButton::No);
        EXPECT_EQ(adherence(), "");
        boxOf(save, PromptButton::Yes);
        EXPECT_EQ(adherence(), "1");
        click(leave);
    });
    // The number that a new sheet shows was given to another one before it was saved.
    openSheet(2, 0, [&] {
        EXPECT_EQ(text("Label2"), "Scheda n. 2 del 21/11/2026 (nuova)");
        addSheetRow(2, 2, "#1/1/2026#", quoted(blank(2)), 18);
        click(save);
        EXPECT_EQ(text("Label2"), "Scheda n. 3 del 21/11/2026");
        click(leave);
    });
    EXPECT_EQ(clinical("SELECT idScheda, cod_paz FROM AIR15_7 WHERE idTipo = 2 ORDER BY idScheda"),
              (QStringList{"1|17", "2|18", "3|17"}));
}

TEST_F(SheetFormTest, AFieldThatIsEnteredIsSelected)
{
    addSheetRow(1, 1, "#1/1/2026#", quoted(QString(blank(1)).replace(97, 4, "07.2").replace(18, 4, "nota")));
    openSheet(1, 1, [&] {
        for (const char *name : {"me_Glicata", "txtNote"}) {
            control("ctrlButt_0")->setFocus();
            auto *const line = control<QLineEdit>(name);
            QTest::mouseClick(line, Qt::LeftButton);
            QCoreApplication::processEvents();
            EXPECT_EQ(line->selectedText(), line->text()) << name;
            EXPECT_FALSE(line->text().isEmpty());
        }
        // Enter leads on, and closes nothing.
        QTest::keyClick(field("me_Glicata"), Qt::Key_Return);
        EXPECT_TRUE(control("cmbFumo")->isVisible());
        click(leave);
    });
}

TEST_F(SheetFormTest, AFailedSaveKeepsEverything)
{
    openSheet(1, 0, [&] {
        type("me_Glicata", "8");
        execute("DROP TABLE AIR15_7");
        EXPECT_TRUE(boxOf(save).starts_with("Attenzione!|Salvataggio non riuscito"));
        EXPECT_EQ(value("me_Glicata"), "8");
    });
}

TEST_F(SheetFormTest, SavesAPdfWhereTheSettingSays)
{
    settings.write("CARTELLA_PDF", folder.path());
    const QString file =
        folder.filePath("Scheda diabetologica (Art. 7) - D'Amico & figli Niccolò - 2026-11-21.pdf");
    openSheet(1, 0, [&] {
        click(save);
        click("ctrlButt_3");
        EXPECT_EQ(control<QLabel>("message")->text(), "PDF salvato: " + QDir::toNativeSeparators(file));
        QFile pdf(file);
        ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
        EXPECT_TRUE(pdf.readAll().startsWith("%PDF-"));
        settings.write("CARTELLA_PDF", folder.filePath("manca"));
        EXPECT_THAT(boxOf("ctrlButt_3"), HasSubstr("non si può scrivere"));
        click(leave);
    });
}

TEST_F(SheetFormTest, OnlyWhatIsStoredGoesOnPaper)
{
    settings.write("CARTELLA_PDF", folder.path());
    const auto written = [&] { return QDir(folder.path()).entryList({"*.pdf"}).size(); };
    openSheet(1, 0, [&] {
        for (const char *button : {"ctrlButt_2", "ctrlButt_3"}) { // printing would open a dialog
            EXPECT_THAT(boxOf(button, PromptButton::No), HasSubstr("La scheda non è salvata"));
        }
        EXPECT_TRUE(stored().isEmpty());
        EXPECT_EQ(written(), 0);
        boxOf("ctrlButt_3", PromptButton::Yes);
        EXPECT_EQ(stored().size(), 1);
        EXPECT_EQ(written(), 1);
        // Changed since, and what is typed cannot be saved.
        QFile::remove(folder.filePath(QDir(folder.path()).entryList({"*.pdf"}).value(0)));
        type("me_Peso", "1123");
        prompts.queue(PromptButton::Yes);
        prompts.queue();
        click("ctrlButt_3");
        EXPECT_EQ(written(), 0);
        type("me_Peso", "112,3");
        boxOf("ctrlButt_3", PromptButton::Yes);
        EXPECT_EQ(written(), 1);
        EXPECT_TRUE(stored()[0].endsWith("112.3CLV2"));
        prompts.boxes.clear();
        click("ctrlButt_3");
        EXPECT_TRUE(prompts.boxes.isEmpty());
        click(leave);
    });
}

TEST_F(SheetFormTest, ASheetWithoutTheMarkOpensAsItIsUntilTheDoctorVouchesForIt)
{
    const QString earlier = blank(1).left(159).replace(105, 4, "72.5");
    addSheetRow(1, 1, "#1/1/2026#", quoted(earlier));
    addSheetRow(2, 1, "#1/1/2026#", quoted("x"));
    settings.write("CARTELLA_PDF", folder.path());
    const QStringList before = stored();
    openSheet(2, 1, [&] { EXPECT_FALSE(control("btnModello")->isVisible()); });
    openSheet(1, 1, [&] {
        EXPECT_TRUE(text("message").starts_with("La scheda non ha il segno di questo programma"));
        EXPECT_EQ(control<QPlainTextEdit>("txtRegistrato")->toPlainText(), earlier);
        expectReadOnly();
        boxOf("btnModello", PromptButton::No);
        EXPECT_EQ(prompts.boxes.last().defaultButton, PromptButton::No);
        expectReadOnly();
        boxOf("btnModello", PromptButton::Yes);
        EXPECT_FALSE(control("btnModello")->isVisible());
        EXPECT_EQ(value("me_Peso"), "72.5");
        EXPECT_THAT(boxOf("ctrlButt_3", PromptButton::No), HasSubstr("La scheda non è salvata"))
            << "as it is read here";
        click(leave); // nothing was changed
    });
    EXPECT_EQ(stored(), before) << "looking marks nothing";
    openSheet(1, 1, [&] {
        boxOf("btnModello", PromptButton::Yes);
        choose("cmbFumo", "fuma");
        click(save);
        click(leave);
    });
    EXPECT_EQ(sequences(1), (QString(earlier).replace(2, 1, "2") + "072.5CLV2").toStdString());
}

TEST_F(SheetFormTest, TheFormKeepsNothingOfThePatientBefore)
{
    execute("INSERT INTO PROBLEMS (cod_paz, stato_probl, CodICDSospetto) VALUES (17, 1, '401.9')");
    const QString earlier = blank(1).left(159).replace(105, 4, "72.5");
    addSheetRow(1, 1, "#1/1/2026#", quoted(earlier));
    addSheetRow(1, 2, "#1/1/2026#", quoted(earlier), 18);
    addSheetRow(1, 3, "#1/1/2026#", quoted(blank(1)), 18);
    SheetForm form(state, *sheetLayout(1));
    const auto openFor = [&](int patient, int number, const std::function<void()> &act) {
        state.header.patientCode = patient;
        asked.sheet = number;
        form.take(asked);
        open(form, act);
    };
    openFor(17, 1, [&] {
        boxOf("btnModello", PromptButton::Yes);
        EXPECT_TRUE(control("me_Peso")->isVisible());
        click(leave);
    });
    openFor(18, 2, [&] {
        EXPECT_EQ(control<QPlainTextEdit>("txtRegistrato")->toPlainText(), earlier);
        EXPECT_FALSE(control("me_Peso")->isVisible()) << "nobody has vouched for this one";
        click(leave);
    });
    openFor(17, 0, [&] {
        EXPECT_EQ(control("cmbIpertensione")->toolTip(), "Problema 401.9");
        EXPECT_TRUE(control(save)->isEnabled() && control("me_Peso")->isVisible());
        EXPECT_FALSE(control("txtRegistrato")->isVisible());
        click(leave);
    });
    openFor(18, 3, [&] {
        EXPECT_TRUE(control("me_Peso")->isVisible());
        EXPECT_EQ(control("cmbIpertensione")->toolTip(), "");
        EXPECT_EQ(control("cmbIpertensione")->accessibleDescription(), "");
        click(leave);
    });
}

TEST_F(SheetFormTest, PaperHasHeadingPatientDateAndEveryValue)
{
    state.group.heading = "STUDIO <MEDICO>";
    state.group.address1 = "Via Sant'Anna 3";
    SheetData sheet(*sheetLayout(1));
    sheet.setValue(sheetLayout(1)->indexOf("Retinopatia"), "2");
    sheet.setValue(sheetLayout(1)->indexOf("Glicata"), "7.3");
    sheet.setValue(sheetLayout(1)->indexOf("Note"), "peso < 80 & in calo");
    const QString html = sheetHtml(sheet, sheetPaper(state, 12, QDate(2026, 2, 1)));
    for (const char *text :
         {"STUDIO &lt;MEDICO&gt;<br>Via Sant'Anna 3", "Scheda n. 12 del 01/02/2026",
          "D'Amico &amp; figli Niccolò<br>Sesso M · Nato il 21/11/1966 · C.F. DMCNCL66S21F839K",
          "peso &lt; 80 &amp; in calo", "class=\"value\">sì</td>", "class=\"value\">7.3</td>"})
        EXPECT_TRUE(html.contains(text)) << text;
    for (const SheetField &field : sheetLayout(1)->fields)
        EXPECT_EQ(html.contains(field.caption.toHtmlEscaped()), isShown(field.kind))
            << field.caption.toStdString();
}

TEST_F(SheetFormTest, TheManagerListsOpensAndDeletes)
{
    addSheetRow(1, 1, "#1/1/2026#", quoted(blank(1)));
    addSheetRow(4, 1, "#2/1/2026#", "Null");
    addSheetRow(9, 1, "Null", "Null"); // a type that this program does not know
    addSheetRow(1, 2, "#3/1/2026#", quoted(blank(1)), 18);
    AIR15_Gestione manager(state);
    open(manager, [&] {
        auto *const list = control<QTreeView>("MSFlexGrid1");
        const auto select = [&](int row) { list->setCurrentIndex(list->model()->index(row, 0)); };
        const auto rows = [&] {
            QStringList texts;
            for (int row = 0; row < list->model()->rowCount(); ++row)
                texts << list->model()->index(row, 0).data().toString() + '|'
                             + list->model()->index(row, 1).data().toString();
            return texts;
        };
        EXPECT_EQ(rows(), (QStringList{"01/02/2026|Scheda valutazione fragilità (Art. 13)",
                                       "01/01/2026|Scheda diabetologica (Art. 7)", "senza data|"}));
        forms.act = [&] { EXPECT_EQ(forms.call<SheetCall>().sheet, 1); };
        click("Btm_Apri");
        EXPECT_EQ(forms.take(), "AIR15_7_4");

        QWidget &openIt = *control("Btm_Apri");
        select(2);
        EXPECT_FALSE(openIt.isEnabled());
        EXPECT_EQ(openIt.toolTip(), "Il programma non conosce le schede di questo tipo");
        EXPECT_EQ(openIt.accessibleDescription(), openIt.toolTip());
        select(0);
        EXPECT_TRUE(openIt.isEnabled());
        EXPECT_EQ(openIt.toolTip(), "");

        // A new one of the chosen type; the list then shows it.
        click("optTipo_6");
        forms.act = [&] {
            auto &call = forms.call<SheetCall>();
            EXPECT_EQ(call.sheet, 0);
            addSheetRow(6, 5, "#4/1/2026#", "Null");
            call.saved = 5;
        };
        click("chameleonButton1_1");
        EXPECT_EQ(forms.take(), "AIR15_7_6");
        EXPECT_EQ(rows().first(), "01/04/2026|Scheda malattie respiratorie (Art. 7) - Asma");
        EXPECT_EQ(list->currentIndex().row(), 0);

        select(2);
        EXPECT_EQ(boxOf("Btm_Elimina", PromptButton::No), "Attenzione|Confermi l'eliminazione?|question");
        EXPECT_EQ(rows().size(), 4);
        boxOf("Btm_Elimina", PromptButton::Yes);
        EXPECT_EQ(rows().size(), 3);
        // Saved by another workstation since the list was read: asked again, and seen then.
        execute("UPDATE AIR15_7 SET SEQDATI = 'x' WHERE idTipo = 4");
        select(1);
        prompts.queue(PromptButton::Yes);
        prompts.queue(PromptButton::No);
        click("Btm_Elimina");
        EXPECT_TRUE(prompts.last().startsWith(QString::fromUtf8("Attenzione!|La scheda è stata salvata")))
            << qPrintable(prompts.last());
        EXPECT_EQ(rows().size(), 3);
        // Gone already: the list says so, without a box.
        execute("DELETE FROM AIR15_7 WHERE idTipo = 9");
        select(2);
        boxOf("Btm_Elimina", PromptButton::Yes);
        EXPECT_EQ(rows().size(), 2);
        settings.write("AGGIORNA_DIARIO", "");
        click("Btm_Uscita");
    });
    EXPECT_EQ(settings.read("AGGIORNA_DIARIO").toString(), "PREVENZIONE");
    EXPECT_EQ(clinical("SELECT idTipo, idScheda, cod_paz FROM AIR15_7 ORDER BY idTipo, idScheda"),
              (QStringList{"1|2|18", "4|1|17", "6|5|17"}));
}

} // namespace
} // namespace clivara
