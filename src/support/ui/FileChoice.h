// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

class QWidget;

namespace clivara {

// Dialogs in which a person chooses where something is to be. They list names and look into no file: the
// system's own dialogs, and Qt's without care, open files to find out their kind, and a practice's databases
// lose the locks that this program holds on them as soon as it closes them again. Empty when nothing was
// chosen.
QString chooseFileToSave(QWidget *parent, const QString &title, const QString &proposed,
                         const QString &filters);
QString chooseFolder(QWidget *parent, const QString &title, const QString &start);

} // namespace clivara
