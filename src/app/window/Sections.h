// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QKeySequence>
#include <QList>
#include <QString>

namespace orvale {

// A section of the chart as the host offers it.
struct Section {
    qint16 action; // the code that opens it
    QString title; // with its mnemonic
    QString icon; // resource path
    QKeySequence shortcut;
};

struct SectionGroup {
    QString title;
    QString menu; // the title with its mnemonic
    QList<Section> sections;
};

// All sections in the order of the menu; each action code once.
QList<SectionGroup> sectionGroups();

// The title without its mnemonic.
QString plainTitle(const Section &section);

} // namespace orvale
