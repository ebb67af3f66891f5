// SPDX-License-Identifier: Apache-2.0
#include "app/practice/Practice.h"

#include "app/practice/PracticeBuild.h"
#include "app/practice/PracticeProbe.h"
#include "dao/postgres/PostgresAddress.h"
#include "support/Seams.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace orvale {

namespace {

UserError cannotOpen(const QString &path, const dao::Error &error)
{
    if (isOnServer(path))
        return UserError(error.text());
    if (error.number() == dao::Corrupt || error.number() == dao::NotADatabase)
        return UserError(QStringLiteral("L'archivio %1 è danneggiato: %2").arg(path, error.text()));
    return UserError(QStringLiteral("L'archivio %1 non si apre: %2").arg(path, error.text()));
}

} // namespace

Practice::Practice(const QString &path, const QString &given)
    : m_path(path)
    , m_engine(std::make_unique<dao::DBEngine>())
{
    m_environment.programFolder = QCoreApplication::applicationDirPath();
    m_environment.dataFolder = workstationFolder();
    if (isOnServer(path)) {
        const dao::Account account = accountOf(given.isEmpty() ? path : given);
        m_engine->setDefaultUser(account.user);
        m_engine->setDefaultPassword(account.password);
    }
}

QString Practice::workstationFolder() const
{
    return isOnServer(m_path) ? QFileInfo(defaultPracticePath()).path() : m_path;
}

Practice::~Practice() = default;

void Practice::openDatabases(bool create)
{
    dao::Workspace &workspace = m_engine->DefaultWorkspace();
    m_environment.workspace = &workspace;
    const auto file = [&](int position) {
        const QString path = databaseName(m_path, practiceFiles().at(position));
        return create ? workspace.CreateDatabase(path) : workspace.OpenDatabase(path);
    };
    m_environment.clinical = file(0);
    m_environment.codes = file(1);
    m_environment.third = file(2);
    m_environment.doctors = file(3);
    m_environment.local = file(4);
    m_environment.events = file(5);
}

QMap<QString, std::shared_ptr<dao::Database>> Practice::databases() const
{
    return {{QStringLiteral("clinical"), m_environment.clinical},
            {QStringLiteral("codes"), m_environment.codes},
            {QStringLiteral("third"), m_environment.third},
            {QStringLiteral("doctors"), m_environment.doctors},
            {QStringLiteral("local"), m_environment.local},
            {QStringLiteral("events"), m_environment.events}};
}

QString Practice::damagedFile(const QString &path)
{
    if (isOnServer(path))
        return {}; // a server watches over its own pages
    dao::DBEngine engine;
    for (const PracticeFile &file : practiceFiles()) {
        const QString name = QDir(path).filePath(file.fileName);
        try {
            if (!engine.OpenDatabase(name, true)->damage(dao::Thoroughness::Pages, 1).isEmpty())
                return name;
        } catch (const dao::Error &) {
            return name;
        }
    }
    return {};
}

std::unique_ptr<Practice> Practice::open(const QString &path, const Schema &schema, Pages pages)
{
    const QString folder = practicePath(path);
    if (!isOnServer(folder))
        probePractice(folder, schema);
    std::unique_ptr<Practice> practice(new Practice(folder, path));
    try {
        practice->openDatabases(false);
        const auto databases = practice->databases();
        if (const QString damaged = pages == Pages::ReadAll ? damagedFile(folder) : QString();
            !damaged.isEmpty())
            throw UserError(QStringLiteral("Il file %1 è danneggiato.").arg(damaged));
        if (!databases.value(QStringLiteral("clinical"))
                 ->TableDefs()
                 .contains(QStringLiteral("orvale_properties")))
            throw UserError(QStringLiteral("%1 non è un archivio di Orvale.").arg(folder));
        const int version = practice->property(QStringLiteral("schema_version")).toInt();
        checkVersion(folder, version, schema);
        if (version < schema.version())
            schema.apply(practice->m_engine->DefaultWorkspace(), databases, version);
    } catch (const dao::Error &error) {
        throw cannotOpen(folder, error);
    }
    return practice;
}

void Practice::build(const QString &path, const std::function<void(Practice &)> &fill)
{
    try {
        PracticeBuild build(path);
        fill(build.practice());
        build.finish();
        build.place();
    } catch (const dao::Error &error) {
        throw UserError(
            QStringLiteral("L'archivio %1 non si può creare: %2").arg(practicePath(path), error.text()));
    }
}

std::unique_ptr<Practice> Practice::create(const QString &path)
{
    build(path, [](Practice &) {});
    return open(path);
}

QString Practice::firstDoctor() const
{
    const auto row = m_environment.doctors->OpenRecordset(
        QStringLiteral("SELECT TOP 1 cod_smi FROM medici_gruppo WHERE cod_smi IS NOT NULL "
                       "ORDER BY cod_smi"),
        dao::RecordsetType::Snapshot);
    return row->Eof() ? QString() : row->Fields(0).text();
}

QString Practice::property(const QString &name) const
{
    return readProperty(*m_environment.clinical, name);
}

void Practice::setProperty(const QString &name, const QString &value)
{
    writeProperty(*m_environment.clinical, name, value);
}

dao::Account accountOf(const QString &address)
{
    const auto parsed = dao::PostgresAddress::parse(address);
    if (!parsed.password.isEmpty())
        return {parsed.user, parsed.password};
    clivara::SystemMiddleware middleware;
    return {middleware.account(QStringLiteral("U")), middleware.account(QStringLiteral("P"))};
}

QString shownPractice(const QString &path)
{
    return isOnServer(path) ? practicePath(path) : path;
}

QString practicePath(const QString &path)
{
    if (isOnServer(path)) {
        try {
            auto address = dao::PostgresAddress::parse(path);
            address.schema.clear();
            return address.name();
        } catch (const dao::Error &error) {
            throw UserError(error.text());
        }
    }
    if (path.trimmed().isEmpty())
        throw UserError(QStringLiteral("Indicare la cartella dell'archivio."));
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

QString defaultPracticePath()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation))
        .filePath(QStringLiteral("orvale/practice"));
}

} // namespace orvale
