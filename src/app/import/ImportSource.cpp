// SPDX-License-Identifier: Apache-2.0
#include "app/import/ImportSource.h"

#include "app/practice/Schema.h"
#include "app/practice/UserError.h"

#include <QDir>
#include <QFileInfo>
#include <future>

namespace orvale {

namespace {

// The file's name in the folder, matched without regard to case; empty when there is none.
QString nameIn(const QDir &folder, const QString &name)
{
    const QStringList names = folder.entryList(QDir::Files | QDir::Hidden | QDir::System);
    QStringList found;
    for (const QString &candidate : names) {
        if (candidate.compare(name, Qt::CaseInsensitive) == 0)
            found.append(candidate);
    }
    if (found.size() > 1)
        throw UserError(QStringLiteral("Nella cartella %1 ci sono più file di nome %2 (%3).")
                            .arg(folder.path(), name, found.join(QStringLiteral(", "))));
    return found.value(0);
}

} // namespace

std::vector<SourceFile> openSource(const QString &folder)
{
    const QFileInfo info(folder);
    if (folder.trimmed().isEmpty() || !info.exists())
        throw UserError(QStringLiteral("La cartella %1 non esiste.").arg(folder));
    if (!info.isDir())
        throw UserError(
            QStringLiteral("%1 non è una cartella: indicare quella che contiene Orvale.mdb.").arg(folder));
    const QDir source(info.absoluteFilePath());
    std::vector<SourceFile> files;
    // The reader programs are started in parallel.
    std::vector<std::future<std::unique_ptr<jetfile::JetFileReader>>> readers;
    for (const PracticeFile &file : practiceFiles()) {
        const QString name = QFileInfo(file.fileName).completeBaseName() + QStringLiteral(".mdb");
        const QString found = nameIn(source, name);
        if (found.isEmpty() && file.database == QLatin1String("clinical"))
            throw UserError(QStringLiteral("Nella cartella %1 manca il file %2.").arg(folder, name));
        files.push_back({file.database, found.isEmpty() ? name : found, nullptr});
        readers.push_back(
            std::async(std::launch::async, [path = found.isEmpty() ? QString() : source.filePath(found)] {
                return path.isEmpty() ? nullptr : std::make_unique<jetfile::JetFileReader>(path);
            }));
    }
    try {
        for (size_t i = 0; i < files.size(); ++i)
            files[i].reader = readers[i].get();
    } catch (const jetfile::SourceError &error) {
        throw UserError(error.text());
    }
    return files;
}

} // namespace orvale
