// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QKeySequence>
#include <QList>
#include <QString>

namespace clivara {

// A section of the chart as a host offers it.
struct Section {
    qint16 action; // the code that opens it
    QString form; // the form that the code opens
    QString title; // with its mnemonic
    QString icon; // resource path
    QKeySequence shortcut;

    QString plainTitle() const; // without the mnemonic
};

struct SectionGroup {
    QString title;
    QString menu; // what its menu is called, with its mnemonic
    QList<Section> sections;
};

// All sections of this build in the order of a menu; each action code once.
QList<SectionGroup> sectionGroups();

} // namespace clivara
