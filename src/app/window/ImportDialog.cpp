// SPDX-License-Identifier: Apache-2.0
#include "app/window/ImportDialog.h"

#include "app/practice/Regions.h"
#include "app/practice/Schema.h"
#include "app/window/ImportSummary.h"
#include "app/window/WorkDialog.h"
#include "support/Prompts.h"
#include "support/ui/FileChoice.h"
#include "ui_ImportDialog.h"

#include <QDir>
#include <QIcon>
#include <QLocale>
#include <QPushButton>

namespace orvale {

namespace {

constexpr int iconPixels = 24;

QString folderOf(const QLineEdit &field)
{
    const QString text = field.text().trimmed();
    return text.isEmpty() ? QString()
                          : QDir(QDir::cleanPath(QDir::fromNativeSeparators(text))).absolutePath();
}

// A folder, or a server's address as it was typed.
QString targetOf(const QLineEdit &field)
{
    const QString text = field.text().trimmed();
    return isOnServer(text) ? text : folderOf(field);
}

bool isPractice(const QString &folder)
{
    return QFileInfo::exists(QDir(folder).filePath(practiceFiles().first().fileName));
}

// The path without links and "..", also of a folder that does not exist yet.
QString truePath(const QString &folder)
{
    const QFileInfo info(folder);
    if (const QString path = info.canonicalFilePath(); !path.isEmpty())
        return path;
    const QString above = info.absolutePath();
    return above == folder ? folder : QDir(truePath(above)).filePath(info.fileName());
}

bool isWithin(const QString &folder, const QString &other)
{
    const QString path = truePath(folder);
    const QString above = truePath(other);
    return path == above || path.startsWith(above + u'/');
}

QString freeFolder(const QDir &parent)
{
    const QString name = QStringLiteral("archivio-importato");
    QString path = parent.filePath(name);
    for (int number = 2; QFileInfo::exists(path); ++number)
        path = parent.filePath(QStringLiteral("%1-%2").arg(name).arg(number));
    return path;
}

// Where looking for a folder begins: the nearest one above that is there, at home without any.
QString startFolder(const QString &folder)
{
    if (folder.isEmpty())
        return QDir::homePath();
    const QFileInfo info(folder);
    return info.isDir() || info.isRoot() ? folder : startFolder(info.absolutePath());
}

// "clinical.riepil" without its database, which a doctor need not know of.
QString progressText(const ImportProgress &progress)
{
    if (progress.table.isEmpty())
        return QStringLiteral("L'archivio va al suo posto…");
    return (progress.proving ? QStringLiteral("Verifica della tabella %1…")
                             : QStringLiteral("Lettura della tabella %1…"))
        .arg(progress.table.section(u'.', 1));
}

QString rowsText(const ImportProgress &progress)
{
    if (progress.table.isEmpty())
        return {};
    return QStringLiteral("%1 di %2 righe")
        .arg(QLocale().toString(progress.tableDone), QLocale().toString(progress.tableTotal));
}

} // namespace

ImportDialog::ImportDialog(const QString &openPractice, clivara::Prompts &prompts, Importer importer,
                           QWidget *parent)
    : QDialog(parent)
    , m_openPractice(openPractice)
    , m_prompts(prompts)
    , m_importer(std::move(importer))
    , m_ui(std::make_unique<Ui::ImportDialog>())
{
    m_ui->setupUi(this);
    m_ui->target->setText(QDir::toNativeSeparators(proposedTarget(openPractice)));
    m_ui->region->addItem(QStringLiteral("non indicata"), QString());
    for (const Region &region : regions())
        m_ui->region->addItem(QStringLiteral("%1 – %2").arg(region.code, region.name), region.code);
    m_ui->warningIcon->setPixmap(
        QIcon(QStringLiteral(":/orvale/icons/warning.svg")).pixmap(iconPixels, iconPixels));
    // The warning keeps its space while hidden, so that nothing moves when the box is ticked.
    QSizePolicy policy = m_ui->warning->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_ui->warning->setSizePolicy(policy);
    explainReplace();

    connect(m_ui->browseSource, &QPushButton::clicked, this, &ImportDialog::browseSource);
    connect(m_ui->browseTarget, &QPushButton::clicked, this, &ImportDialog::browseTarget);
    connect(m_ui->replace, &QCheckBox::toggled, this, &ImportDialog::explainReplace);
    connect(m_ui->start, &QPushButton::clicked, this, &ImportDialog::import);
    connect(m_ui->cancel, &QPushButton::clicked, this, &QDialog::reject);
}

ImportDialog::~ImportDialog() = default;

QString ImportDialog::proposedTarget(const QString &openPractice)
{
    return freeFolder(isOnServer(openPractice) ? QDir::home()
                                               : QFileInfo(QDir::cleanPath(openPractice)).absoluteDir());
}

QString ImportDialog::targetWithin(const QString &folder)
{
    return QDir(folder).isEmpty() || isPractice(folder) ? folder : freeFolder(QDir(folder));
}

void ImportDialog::browseSource()
{
    const QString folder =
        clivara::chooseFolder(this, QStringLiteral("Cartella dei file Jet"), folderOf(*m_ui->source));
    if (!folder.isEmpty())
        m_ui->source->setText(QDir::toNativeSeparators(folder));
}

void ImportDialog::browseTarget()
{
    const QString folder = clivara::chooseFolder(this, QStringLiteral("Dove mettere il nuovo archivio"),
                                                 startFolder(folderOf(*m_ui->target)));
    if (!folder.isEmpty())
        m_ui->target->setText(QDir::toNativeSeparators(targetWithin(folder)));
}

void ImportDialog::explainReplace()
{
    m_ui->warning->setVisible(m_ui->replace->isChecked());
}

QString ImportDialog::region() const
{
    return m_ui->region->currentData().toString();
}

ImportOptions ImportDialog::options() const
{
    ImportOptions options;
    options.source = folderOf(*m_ui->source);
    options.target = targetOf(*m_ui->target);
    options.region = region();
    options.replace = m_ui->replace->isChecked();
    return options;
}

bool ImportDialog::acceptsFields(const ImportOptions &options)
{
    const auto refuse = [this](QWidget &field, const QString &text) {
        m_prompts.warn(text);
        field.setFocus();
        return false;
    };
    if (options.source.isEmpty())
        return refuse(*m_ui->source, QStringLiteral("Indicare la cartella che contiene i file Jet."));
    if (options.target.isEmpty())
        return refuse(*m_ui->target, QStringLiteral("Indicare la cartella del nuovo archivio."));
    // A server's database that holds anything is refused by the import itself.
    if (!isOnServer(options.target) && isWithin(options.target, m_openPractice))
        return refuse(*m_ui->target,
                      QStringLiteral("L'archivio %1 è aperto in questa finestra: non si può importare al suo "
                                     "posto.\n\nIndicare un'altra cartella per il nuovo archivio.")
                          .arg(QDir::toNativeSeparators(m_openPractice)));
    if (!options.replace || !isPractice(options.target))
        return true;
    clivara::Prompt question;
    question.title = QStringLiteral("Attenzione!");
    question.text = QStringLiteral("Sostituire l'archivio %1?\n\nI pazienti e tutti i dati che contiene ora "
                                   "andranno persi: al loro posto ci saranno quelli importati.")
                        .arg(QDir::toNativeSeparators(options.target));
    question.icon = clivara::PromptIcon::Warning;
    question.buttons = {clivara::PromptButton::Yes, clivara::PromptButton::No};
    question.defaultButton = clivara::PromptButton::No;
    return m_prompts.ask(question) == clivara::PromptButton::Yes;
}

void ImportDialog::import()
{
    const ImportOptions wanted = options();
    if (!acceptsFields(wanted))
        return;
    ImportReport report;
    try {
        WorkDialog work(QStringLiteral("Importazione"), QStringLiteral("Apertura dei file…"), this);
        const bool isDone = work.run([&](const WorkDialog::Report &tell) {
            report = m_importer(wanted, [&tell](const ImportProgress &progress) {
                tell({progressText(progress), rowsText(progress), progress.done, progress.total});
            });
        });
        if (!isDone)
            return; // given up: what was typed is still there
    } catch (const UserError &error) {
        m_prompts.warn(error.text());
        return;
    } catch (const std::exception &error) {
        m_prompts.warn(
            QStringLiteral("L'importazione non è riuscita.\n\n%1").arg(QString::fromLocal8Bit(error.what())));
        return;
    }
    hide();
    ImportSummary summary(report, parentWidget());
    if (summary.exec() == Accepted)
        m_practiceToOpen = isOnServer(wanted.target) ? wanted.target : report.practice; // with its password
    done(m_practiceToOpen.isEmpty() ? Rejected : Accepted);
}

} // namespace orvale
