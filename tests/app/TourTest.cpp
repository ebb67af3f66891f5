// SPDX-License-Identifier: Apache-2.0
#include "app/window/Tour.h"
#include "SmallPractice.h"
#include "app/window/HostStyle.h"
#include "host/Class3.h"
#include "host/Sections.h"
#include "support/ui/ChartForm.h"

#include <QApplication>
#include <QImage>
#include <QMap>
#include <QSet>

// The least size of each form that is shown.
class LeastSizes final : public QObject {
public:
    LeastSizes() { qApp->installEventFilter(this); }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (const auto form = qobject_cast<const clivara::ChartForm *>(watched);
            form && event->type() == QEvent::Show)
            sizes.insert(form->objectName(), form->minimumSizeHint());
        return false;
    }

    QMap<QString, QSize> sizes;
};

class TourTest : public SmallPractice {
protected:
    static void SetUpTestSuite() { orvale::applyHostStyle(*qApp); }
};

TEST_F(TourTest, SavesThePictureOfTheWindowAndOfEveryBuiltSection)
{
    clinical("UPDATE riepil2 SET unita = '52' WHERE idriepil2 = 4");
    result(6, "90.43.2", "Trigliceridi", "150", "03/09/2026");
    result(7, "90.16.04", "Creatinina", "1.1", "03/09/2026");
    result(8, "90.16.4", "Creatinina", "1.1", "03/09/2026");
    clinical("INSERT INTO DEFCAMPI (Tiporec, Formapp, descrizione, offset, lunghezza) VALUES "
             "('A', 'EOG', 'peso', 4, 5)");
    clinical("INSERT INTO ESAME_OB (cod_paz, tipo_dati, chiave, data_reg, dati_paz) VALUES "
             "(11, 'A', '20260903', cdate('03/09/2026'), '165 70.0')");
    clinical("UPDATE VISITAPROBL SET id_Probl = 1");
    clinical("INSERT INTO ricoveri2 (cod_paz, data_accesso, sede, reparto) VALUES "
             "(11, cdate('20/11/2026'), 'Ospedale Sant''Anna', 'Cardiologia')");
    const QString folder = path("pictures/of the tour");
    const LeastSizes least;
    const QStringList written = orvale::takeTour(*m_practice, m_clock, folder);

    // Every form fits a screen of 1366 x 768 at 125 %, beside a title bar and a task bar.
    const QSize room(1088, 556);
    for (auto form = least.sizes.cbegin(); form != least.sizes.cend(); ++form)
        EXPECT_EQ(form->expandedTo(room), room) << form.key().toStdString();
    QStringList names;
    for (const QString &file : written)
        names << QFileInfo(file).fileName();
    QStringList sections;
    for (const clivara::SectionGroup &group : clivara::sectionGroups()) {
        for (const clivara::Section &section : group.sections)
            sections << section.form;
    }
    const QStringList dialogs{"Probl1",     "RicercaDiagnosi",      "Visita2",   "SelezProblema",
                              "PregMalInf", "Ricoveri_Inserimento", "AIR15_7_1", "Conflitto"};
    ASSERT_EQ(names.size(), 1 + sections.size() + dialogs.size());
    EXPECT_EQ(least.sizes.size(), sections.size() + dialogs.size());
    EXPECT_EQ(names.first(), "01_finestra.png");
    for (const QString &form : sections + dialogs)
        EXPECT_EQ(names.filter(QStringLiteral("_%1.png").arg(form)).size(), 1) << form.toStdString();
    for (const QString &file : written) {
        const QImage picture(file);
        ASSERT_FALSE(picture.isNull()) << file.toStdString();
        QSet<QRgb> colours;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x)
                colours.insert(picture.pixel(x, y));
        }
        EXPECT_GT(colours.size(), 20) << file.toStdString();
    }
    // Forms that save when they are closed have not saved.
    const auto answers = m_practice->environment().clinical->OpenRecordset(
        "SELECT count(*) FROM ESAME_OB WHERE tipo_dati <> 'A'");
    EXPECT_EQ(answers->Fields(0).number(), 0);
}

TEST_F(TourTest, RefusesAFolderItCannotWrite)
{
    writeFile("file", "x");
    EXPECT_NE(refusal([this] { orvale::takeTour(*m_practice, m_clock, path("file/pictures")); }), "");
    clinical("DELETE * FROM archivio");
    EXPECT_NE(
        refusal([this] { orvale::takeTour(*m_practice, m_clock, path("pictures")); }).find("non ha pazienti"),
        std::string::npos);
}
