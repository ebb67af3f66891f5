// SPDX-License-Identifier: Apache-2.0
#include "app/window/Tour.h"

#include "app/patients/PatientRecords.h"
#include "app/practice/Practice.h"
#include "app/window/HostWindow.h"
#include "chart/WorkingState.h"
#include "dao/Dao.h"
#include "data/Identity.h"
#include "host/Class3.h"
#include "host/Sections.h"
#include "support/ui/ChartForm.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLineEdit>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QTimer>

namespace orvale {

namespace {

constexpr QSize windowSize(1366, 728);
constexpr int patientsWaitMilliseconds = 60000;
// Long enough for a form to be laid out and painted.
constexpr int settleMilliseconds = 150;
constexpr int formPollMilliseconds = 20;

// A tour answers every message box by its default. A box that asks nothing is a finding of the tour: its text
// is remembered.
class TourPrompts final : public clivara::Prompts {
public:
    clivara::PromptButton ask(const clivara::Prompt &prompt) override
    {
        if (prompt.buttons.size() == 1)
            m_texts << prompt.text;
        return prompt.defaultButton;
    }
    QStringList takeTexts() { return std::exchange(m_texts, {}); }

private:
    QStringList m_texts;
};

void settle()
{
    QEventLoop loop;
    QTimer::singleShot(settleMilliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

class Pictures {
public:
    explicit Pictures(const QString &folder)
        : m_folder(folder)
    {
        if (!m_folder.mkpath(QStringLiteral(".")))
            throw UserError(QStringLiteral("La cartella %1 non si può creare.").arg(folder));
    }

    void save(QWidget &widget, const QString &name)
    {
        const QString path = m_folder.filePath(
            QStringLiteral("%1_%2.png").arg(m_written.size() + 1, 2, 10, QLatin1Char('0')).arg(name));
        if (!widget.grab().save(path))
            throw UserError(QStringLiteral("La figura %1 non si può scrivere.").arg(path));
        m_written << path;
    }
    QStringList written() const { return m_written; }

private:
    QDir m_folder;
    QStringList m_written;
};

// Selects the problem under which most is filed.
void showRichestProblem(QAbstractItemView &problems, const QAbstractItemModel &items)
{
    int most = -1;
    QModelIndex richest;
    // Below the row of what is filed under none.
    for (int row = 1; row < problems.model()->rowCount(); ++row) {
        problems.setCurrentIndex(problems.model()->index(row, 0));
        if (items.rowCount() > most) {
            most = items.rowCount();
            richest = problems.currentIndex();
        }
    }
    if (richest.isValid())
        problems.setCurrentIndex(richest);
}

// What the doctor measures at the visit where the records have nothing recent, so that an evaluation is
// complete.
constexpr std::pair<const char *, const char *> measuredNow[]{
    {"me_ca", "96"},   {"me_pas", "135"}, {"me_pad", "85"},   {"me_glic", "98"},
    {"me_col", "205"}, {"me_hdl", "48"},  {"me_trigl", "140"}};

void completeEvaluation(QWidget &form)
{
    for (const auto &[name, value] : measuredNow) {
        const auto edit = form.findChild<QLineEdit *>(QLatin1String(name));
        if (edit && edit->text().trimmed().isEmpty())
            edit->setText(QLatin1String(value));
    }
}

// The control by which a form opens one that is no section of its own.
struct DialogOpener {
    const char *form;
    const char *control;
};
constexpr DialogOpener dialogOpeners[]{
    {"Problemi", "bt_Probl_2"},     {"Problemi", "bt_Visita_2"},
    {"Probl1", "Problema"},         {"Visita2", "Problema"},
    {"InfGen", "Apri_PregMalInf"},  {"Ricoveri_Gestione", "Btn_Modif_Dom"},
    {"AIR15_Gestione", "Btm_Apri"}, {"AIR15_Gestione", "chameleonButton1_1"}};

// What another workstation is made to have written of the patient's visits while one is open, until the
// object goes away: a tour writes nothing.
class OtherWorkstation {
public:
    OtherWorkstation(const clivara::HostEnvironment &practice, clivara::Clock &clock, qint32 patient)
        : m_transaction(*practice.workspace)
    {
        QString author;
        for (const auto doctors = practice.doctors->OpenRecordset(QStringLiteral("medici_gruppo"));
             !doctors->Eof(); doctors->MoveNext())
            author = clivara::normaliseUid(doctors->Fields(QStringLiteral("idRowGuid")).text());
        const auto visits = practice.clinical->OpenRecordset(
            {QStringLiteral("SELECT * FROM VISITAPROBL WHERE cod_paz = [patient]"), {{"patient", patient}}});
        for (; !visits->Eof(); visits->MoveNext()) {
            visits->Edit();
            const auto set = [&](const char *field, const QVariant &value) {
                visits->Fields(QString::fromLatin1(field)).setValue(value);
            };
            const QString history = visits->Fields(QStringLiteral("anamnesi")).text();
            set("anamnesi", (history + QStringLiteral(" Nega febbre e calo di peso.")).trimmed());
            set("pianificazione", QStringLiteral("Controllo tra un mese con gli esami."));
            set("sAuthorUid", author);
            set("dLastModifiedDate", clock.local());
            visits->Update();
        }
    }

private:
    dao::Transaction m_transaction;
};

// Waits inside the form's own event loop until it is open, has it show what it can and takes its picture,
// then those of the dialogs that open out of it; closes it in any case.
class FormVisit {
public:
    // `beneath` is the form that the visited one opens over; null for a section.
    // `meanwhile` makes what another workstation writes while a visit is open.
    using Meanwhile = std::function<std::unique_ptr<OtherWorkstation>()>;
    FormVisit(Pictures &pictures, const QWidget *beneath, Meanwhile meanwhile)
        : m_pictures(pictures)
        , m_beneath(beneath)
        , m_meanwhile(std::move(meanwhile))
    {
        QObject::connect(&m_poll, &QTimer::timeout, &m_poll, [this] { look(); });
        m_poll.start(formPollMilliseconds);
    }

    bool tookPicture() const { return m_tookPicture; }
    void rethrow() const
    {
        if (m_error)
            std::rethrow_exception(m_error);
    }

private:
    void look()
    {
        QWidget *form = QApplication::activeModalWidget();
        if (!form || form == m_beneath || !form->isVisible())
            return;
        m_poll.stop();
        try {
            // The screen of a tour without a display is smaller than any real one.
            form->resize(form->size().expandedTo(form->sizeHint()).boundedTo(windowSize));
            prepare(*form);
            settle();
            m_pictures.save(*form, form->objectName());
            m_tookPicture = true;
            visitDialogs(*form);
            if (form->objectName() == QLatin1String("Visita2"))
                visitConflict(*form);
        } catch (const UserError &) {
            m_error = std::current_exception();
        }
        // The tour abandons forms, since some save when closed.
        if (const auto chart = qobject_cast<clivara::ChartForm *>(form))
            chart->abandon();
        else
            form->close();
    }

    static void prepare(QWidget &form)
    {
        if (form.findChild<QWidget *>(QStringLiteral("Grid1")))
            completeEvaluation(form);
        // The first of a calculator's buttons computes.
        if (const auto compute = form.findChild<QAbstractButton *>(QStringLiteral("Button2_0")))
            compute->click();
        const auto problems = form.findChild<QAbstractItemView *>(QStringLiteral("ReportControl1_0"));
        const auto items = form.findChild<QAbstractItemView *>(QStringLiteral("ReportControl1_1"));
        if (!problems || !items)
            return;
        showRichestProblem(*problems, *items->model());
        items->setCurrentIndex(items->model()->index(0, 0));
    }

    void visitDialogs(QWidget &form)
    {
        for (const DialogOpener &opener : dialogOpeners) {
            if (form.objectName() != QLatin1String(opener.form))
                continue;
            if (const auto control = form.findChild<QAbstractButton *>(QLatin1String(opener.control))) {
                FormVisit dialog(m_pictures, &form, m_meanwhile);
                control->click();
                dialog.rethrow();
            }
        }
    }

    void visitConflict(QWidget &visit)
    {
        const auto history = visit.findChild<QPlainTextEdit *>(QStringLiteral("Text1_0"));
        const auto save = visit.findChild<QAbstractButton *>(QStringLiteral("chameleonButton1_0"));
        if (!history || !save)
            return;
        history->appendPlainText(QStringLiteral("Riferisce anche astenia nelle ultime settimane."));
        const auto other = m_meanwhile();
        FormVisit conflict(m_pictures, &visit, m_meanwhile);
        save->click();
        conflict.rethrow();
    }

    Pictures &m_pictures;
    const QWidget *m_beneath;
    Meanwhile m_meanwhile;
    QTimer m_poll;
    bool m_tookPicture = false;
    std::exception_ptr m_error;
};

void waitForPatients(HostWindow &window)
{
    if (!window.isLoadingPatients())
        return;
    QEventLoop loop;
    QObject::connect(&window, &HostWindow::patientsLoaded, &loop, &QEventLoop::quit);
    QTimer::singleShot(patientsWaitMilliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace

QStringList takeTour(Practice &practice, clivara::Clock &clock, const QString &folder)
{
    Pictures pictures(folder);
    clivara::MemorySettings settings;
    TourPrompts prompts;
    clivara::SystemPauses pauses;
    clivara::SystemGuids guids;
    clivara::SystemMiddleware middleware;
    HostWindow window(practice, {settings, clock, prompts, pauses, guids, middleware});
    window.resize(windowSize);
    window.show();
    waitForPatients(window);

    const PatientRecords records(practice.environment());
    const qint32 patient = records.instructivePatient(clock.today().addYears(-1));
    if (patient < 0)
        throw UserError(QStringLiteral("L'archivio %1 non ha pazienti da mostrare.").arg(practice.path()));
    if (const auto query = window.findChild<QLineEdit *>(QStringLiteral("query")))
        query->setText(records.entry(patient)->surname.left(2).toLower());
    window.selectPatient(patient);
    settle();
    pictures.save(window, QStringLiteral("finestra"));

    const QList<clivara::SectionGroup> groups = clivara::sectionGroups();
    for (const clivara::SectionGroup &group : groups) {
        for (const clivara::Section &section : group.sections) {
            if (!clivara::Class3::isBuilt(section.action))
                continue;
            FormVisit visit(pictures, nullptr, [&] {
                return std::make_unique<OtherWorkstation>(practice.environment(), clock, patient);
            });
            window.openSection(section);
            visit.rethrow();
            if (!visit.tookPicture())
                throw UserError(QStringLiteral("La sezione %1 non si è aperta.").arg(section.plainTitle()));
            if (const QStringList texts = prompts.takeTexts(); !texts.isEmpty())
                throw UserError(QStringLiteral("La sezione %1 ha avvisato: %2")
                                    .arg(section.plainTitle(), texts.join(u' ')));
        }
    }
    return pictures.written();
}

} // namespace orvale
