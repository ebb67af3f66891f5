// SPDX-License-Identifier: Apache-2.0
#include "support/ui/FileChoice.h"

#include <QFileDialog>
#include <QFileIconProvider>
#include <QFileInfo>

namespace clivara {

namespace {

// Tells a file's kind by its name alone.
class NameIcons final : public QFileIconProvider {
public:
    QIcon icon(const QFileInfo &file) const override
    {
        return QFileIconProvider::icon(file.isDir() ? Folder : File);
    }
    QString type(const QFileInfo &file) const override
    {
        return file.isDir() ? QStringLiteral("Cartella") : file.suffix().toUpper();
    }
};

// `icons` lives as long as the dialog, which asks it in a thread of its own.
QString chosen(QFileDialog &dialog, NameIcons &icons)
{
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setIconProvider(&icons);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

} // namespace

QString chooseFileToSave(QWidget *parent, const QString &title, const QString &proposed,
                         const QString &filters)
{
    NameIcons icons;
    QFileDialog dialog(parent, title, QFileInfo(proposed).path(), filters);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QFileInfo(proposed).suffix());
    dialog.selectFile(QFileInfo(proposed).fileName());
    return chosen(dialog, icons);
}

QString chooseFolder(QWidget *parent, const QString &title, const QString &start)
{
    NameIcons icons;
    QFileDialog dialog(parent, title, start);
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    return chosen(dialog, icons);
}

} // namespace clivara
