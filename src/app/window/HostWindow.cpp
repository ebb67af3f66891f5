// SPDX-License-Identifier: Apache-2.0
#include "app/window/HostWindow.h"

#include "app/patients/PatientLoader.h"
#include "app/practice/Practice.h"
#include "app/practice/ResourceText.h"
#include "app/window/PatientPanel.h"
#include "app/window/PatientSearch.h"
#include "chart/WorkingState.h"
#include "host/Class3.h"
#include "host/Sections.h"
#include "ui_HostWindow.h"
#include "values/JetValues.h"

#include <QComboBox>
#include <QDir>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTimer>

namespace orvale {

namespace {

constexpr int messageMilliseconds = 12000;

// The search list's width at first, in average characters.
constexpr int searchCharacters = 64;

QString styleSheetText()
{
    return resourceText(QStringLiteral(":/orvale/host.qss"));
}

constexpr int doctorCharacters = 16;

constexpr qint16 generalInformation = 0;

void describe(QWidget &control, const QString &text)
{
    control.setToolTip(text);
    control.setAccessibleDescription(text);
}

// A button of the side panel that stands for a menu action.
QPushButton *buttonFor(QAction &action, const QString &title, QWidget *parent)
{
    const auto button = new QPushButton(action.icon(), title, parent);
    button->setProperty("section", true);
    button->setIconSize(QSize(20, 20));
    button->setAccessibleName(title);
    const auto follow = [button, &action] {
        button->setEnabled(action.isEnabled());
        describe(*button, action.toolTip());
    };
    follow();
    QObject::connect(&action, &QAction::changed, button, follow);
    QObject::connect(button, &QPushButton::clicked, &action, &QAction::trigger);
    return button;
}

} // namespace

HostWindow::HostWindow(Practice &practice, const clivara::Services &services, HostSession::Chart chart)
    : m_practice(practice)
    , m_clock(services.clock)
    , m_prompts(services.prompts)
    , m_session(practice, services, std::move(chart))
    , m_records(practice.environment())
    , m_ui(std::make_unique<Ui::HostWindow>())
{
    m_ui->setupUi(this);
    setStyleSheet(styleSheetText());
    m_loader = new PatientLoader(m_records, m_index, this);
    m_search = new PatientSearch(m_index, this);
    m_panel = new PatientPanel(this);
    m_ui->splitter->addWidget(m_search);
    m_ui->splitter->addWidget(m_panel);
    m_ui->splitter->setStretchFactor(1, 1);
    m_ui->splitter->setSizes({searchCharacters * fontMetrics().averageCharWidth(), width()});
    m_search->setMinimumWidth(256);

    makeArchiveMenu();
    makePatientMenu();
    makeSections();
    enableSections();
    makeDoctorBar();
    showPractice();

    connect(m_search, &PatientSearch::picked, this, &HostWindow::selectPatient);
    connect(m_loader, &PatientLoader::advanced, this, [this] { showPatients(true); });
    connect(m_loader, &PatientLoader::finished, this, [this] {
        showPatients(false);
        emit patientsLoaded();
    });
    connect(m_loader, &PatientLoader::failed, this, [this](const QString &reason) {
        showPatients(false);
        warn(QStringLiteral("Non è stato possibile leggere tutti i pazienti.\n\n%1\n\nCon Ctrl+R si riprova.")
                 .arg(reason));
    });
    m_loader->start();
    m_search->focusQuery();
}

HostWindow::~HostWindow() = default;

bool HostWindow::isLoadingPatients() const
{
    return m_loader->isLoading();
}

void HostWindow::makeArchiveMenu()
{
    QMenu *menu = m_ui->menubar->addMenu(QStringLiteral("Arch&ivio"));
    menu->addAction(QStringLiteral("&Importa da file Jet…"), this, &HostWindow::importAsked)
        ->setObjectName(QStringLiteral("importFromJet"));
}

void HostWindow::makePatientMenu()
{
    QMenu *menu = m_ui->menubar->addMenu(QStringLiteral("&Paziente"));
    menu->addAction(QStringLiteral("&Cerca"), QKeySequence(Qt::CTRL | Qt::Key_F), this,
                    [this] { m_search->focusQuery(); });
    menu->addAction(QStringLiteral("&Rileggi l'elenco"), QKeySequence(Qt::CTRL | Qt::Key_R), this,
                    [this] { m_loader->start(); })
        ->setObjectName(QStringLiteral("reload"));
    menu->addSeparator();
    menu->addAction(QStringLiteral("&Esci"), QKeySequence(Qt::CTRL | Qt::Key_Q), this, &QWidget::close);
}

void HostWindow::makeSections()
{
    const QList<clivara::SectionGroup> groups = clivara::sectionGroups();
    for (const clivara::SectionGroup &group : groups) {
        QMenu *menu = m_ui->menubar->addMenu(group.menu);
        menu->setToolTipsVisible(true);
        const auto title = new QLabel(group.title, m_ui->sectionsContents);
        title->setProperty("cardTitle", true);
        title->setContentsMargins(8, m_sectionActions.isEmpty() ? 4 : 10, 8, 2);
        m_ui->sectionsLayout->addWidget(title);
        for (const clivara::Section &section : group.sections) {
            QAction *action = menu->addAction(QIcon(section.icon), section.title, this,
                                              [this, section] { openSection(section); });
            action->setShortcut(section.shortcut);
            action->setObjectName(QStringLiteral("action_%1").arg(section.action));
            m_sectionActions.insert(section.action, action);
            QPushButton *button = buttonFor(*action, section.plainTitle(), m_ui->sectionsContents);
            button->setObjectName(QStringLiteral("section_%1").arg(section.action));
            m_ui->sectionsLayout->addWidget(button);
        }
    }
    m_ui->sectionsLayout->addStretch(1);
    m_ui->sections->setMinimumWidth(m_ui->sectionsContents->sizeHint().width() + 8);
}

void HostWindow::makeDoctorBar()
{
    auto *const bar = new QWidget(m_ui->menubar);
    auto *const title = new QLabel(QStringLiteral("&Medico"), bar);
    m_doctor = new QComboBox(bar);
    m_doctor->setObjectName(QStringLiteral("doctor"));
    m_doctor->setAccessibleName(QStringLiteral("Medico che lavora"));
    m_doctor->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_doctor->setMinimumContentsLength(doctorCharacters);
    m_doctor->setPlaceholderText(QStringLiteral("nessun medico"));
    m_doctor->installEventFilter(this);
    title->setBuddy(m_doctor);
    m_confirmDoctor = new QPushButton(QStringLiteral("⚠ C&onferma"), bar);
    m_confirmDoctor->setObjectName(QStringLiteral("confirmDoctor"));
    m_confirmDoctor->setAccessibleName(QStringLiteral("Conferma il medico che lavora"));
    describe(*m_confirmDoctor,
             QStringLiteral("Nessuno ha ancora detto chi lavora in questo archivio: sceglierlo "
                            "dall'elenco, o confermare quello mostrato"));
    auto *const layout = new QHBoxLayout(bar);
    layout->setContentsMargins(8, 0, 8, 0);
    for (QWidget *const each : {static_cast<QWidget *>(title), static_cast<QWidget *>(m_doctor),
                                static_cast<QWidget *>(m_confirmDoctor)})
        layout->addWidget(each);

    const WorkingDoctor &doctor = m_session.doctor();
    for (const GroupDoctor &each : doctor.group())
        m_doctor->addItem(each.name, each.code);
    m_doctor->setCurrentIndex(m_doctor->findData(doctor.current().code));
    m_doctor->setEnabled(!doctor.group().isEmpty());
    describe(*m_doctor,
             doctor.group().isEmpty()
                 ? QStringLiteral("L'archivio non ha medici: quanto viene salvato resta senza firma")
                 : QStringLiteral("Firma quanto viene salvato e intesta le stampe; resta quello scelto "
                                  "in questo archivio"));
    m_confirmDoctor->setVisible(!doctor.isChosen());
    m_ui->menubar->setCornerWidget(bar);
    connect(m_doctor, &QComboBox::activated, this, &HostWindow::chooseDoctor);
    connect(m_confirmDoctor, &QPushButton::clicked, this, [this] {
        m_doctor->setFocus();
        chooseDoctor(m_doctor->currentIndex());
    });
}

void HostWindow::chooseDoctor(int index)
{
    m_session.chooseDoctor(m_doctor->itemData(index).toString());
    m_confirmDoctor->setVisible(!m_session.doctor().isChosen());
    m_ui->statusbar->showMessage(
        QStringLiteral("Medico che lavora: %1").arg(m_session.doctor().current().name), messageMilliseconds);
}

// The wheel over the list of doctors changes nothing.
bool HostWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_doctor && event->type() == QEvent::Wheel) {
        event->ignore();
        return true;
    }
    return QMainWindow::eventFilter(watched, event);
}

void HostWindow::enableSections()
{
    const bool hasPatient = m_session.currentPatient() >= 0;
    for (auto each = m_sectionActions.cbegin(); each != m_sectionActions.cend(); ++each) {
        const bool isBuilt = clivara::Class3::isBuilt(each.key());
        QAction &action = **each;
        action.setEnabled(isBuilt && hasPatient);
        action.setToolTip(!isBuilt      ? QStringLiteral("Sezione non ancora disponibile")
                          : !hasPatient ? QStringLiteral("Scegliere prima un paziente")
                                        : action.shortcut().toString(QKeySequence::NativeText));
    }
}

void HostWindow::showPatients(bool loading)
{
    m_search->refresh(m_clock.today(), loading);
}

void HostWindow::selectPatient(qint32 code)
{
    guarded(QStringLiteral("aprire la scheda del paziente"), [this, code] {
        const auto summary = m_records.summary(code);
        if (!summary || !m_session.selectPatient(code)) {
            warn(QStringLiteral("Il paziente con codice %1 non è in archivio.").arg(code));
            return;
        }
        m_panel->showPatient(*summary, m_clock.today());
        const PatientRegistry &patient = summary->registry;
        setWindowTitle(QStringLiteral("%1 %2 – Orvale").arg(patient.surname, patient.name));
        m_ui->statusbar->clearMessage();
        enableSections();
    });
    // The highlight stays on the patient that the panel shows.
    m_search->mark(m_session.currentPatient());
}

void HostWindow::openSection(const clivara::Section &section)
{
    if (m_session.currentPatient() < 0)
        return;
    const SectionOutcome outcome = m_session.openSection(section.action);
    // From the general information several sections may have been opened, of which the last alone is named.
    const bool mayHaveChangedAll = section.action == generalInformation || !outcome.failure.isEmpty();
    if (!outcome.failure.isEmpty()) {
        QGuiApplication::restoreOverrideCursor();
        warn(QStringLiteral("Non è stato possibile aprire la sezione %1.\n\n%2")
                 .arg(section.plainTitle(), outcome.failure));
    }
    if (outcome.patient)
        selectPatient(*outcome.patient);
    else if (mayHaveChangedAll)
        refreshAll();
    else if (!outcome.view.isEmpty())
        refreshView(outcome.view);

    if (!outcome.diagnosisCode.isEmpty() || !outcome.diagnosis.isEmpty()) {
        m_ui->statusbar->showMessage(
            QStringLiteral("Problema scelto: %1 %2").arg(outcome.diagnosisCode, outcome.diagnosis),
            messageMilliseconds);
    } else if (outcome.evaluation && *outcome.evaluation != 0) {
        m_ui->statusbar->showMessage(
            QStringLiteral("%1: %2").arg(section.plainTitle(),
                                         clivara::jet::formatNumber(*outcome.evaluation, u"0.00")),
            messageMilliseconds);
    }
}

void HostWindow::refreshView(const QString &view)
{
    guarded(QStringLiteral("aggiornare la scheda del paziente"), [this, &view] {
        const qint32 code = m_session.currentPatient();
        if (view == QLatin1String("ANAGRAFICA") || view == QLatin1String("ESENZIONI")
            || view == QLatin1String("RAF")) {
            refreshRegistry();
        } else if (view == QLatin1String("PREVENZIONE")) {
            m_panel->showLaboratory(m_records.lastLaboratory(code), m_records.lastPressure(code));
            m_panel->showVisits(m_records.lastVisits(code)); // home care ends with this view, too
        } else if (view == QLatin1String("DIARIO")) {
            m_panel->showVisits(m_records.lastVisits(code));
        } else if (view == QLatin1String("PROBLEMI") || view == QLatin1String("COMMAND1")) {
            m_panel->showProblems(m_records.openProblems(code));
            m_panel->showVisits(m_records.lastVisits(code));
        } else if (const auto summary = m_records.summary(code)) {
            // A view that the host has no part of its own for.
            m_panel->showPatient(*summary, m_clock.today());
        }
    });
}

void HostWindow::refreshAll()
{
    guarded(QStringLiteral("aggiornare la scheda del paziente"), [this] {
        if (const auto summary = m_records.summary(m_session.currentPatient()))
            m_panel->showPatient(*summary, m_clock.today());
        refreshRegistry();
    });
}

void HostWindow::refreshRegistry()
{
    const qint32 code = m_session.currentPatient();
    const auto patient = m_records.registry(code);
    const auto entry = m_records.entry(code);
    if (!patient || !entry)
        return;
    m_panel->showRegistry(*patient, m_clock.today());
    // The exemptions may have changed.
    m_session.selectPatient(code);
    m_index.replace(*entry);
    m_index.sort();
    showPatients(m_loader->isLoading());
}

void HostWindow::showPractice()
{
    setWindowTitle(QStringLiteral("Orvale"));
    const auto label = new QLabel(QDir(m_practice.path()).dirName(), this);
    label->setToolTip(QDir::toNativeSeparators(m_practice.path()));
    label->setContentsMargins(8, 0, 8, 0);
    m_ui->statusbar->addPermanentWidget(label);
}

void HostWindow::guarded(const QString &purpose, const std::function<void()> &task)
{
    try {
        task();
    } catch (const dao::Error &error) {
        warn(QStringLiteral("Non è stato possibile %1.\n\n%2").arg(purpose, error.text()));
    }
}

void HostWindow::warn(const QString &text)
{
    m_prompts.warn(text);
}

} // namespace orvale
