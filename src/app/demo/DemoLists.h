// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

namespace orvale {

// The word lists and code tables of the demo practice, built into the program as text: "[section]" lines,
// then one row a line; lines that begin with '#' are comments.
class DemoLists {
public:
    DemoLists();

    // The lines of a section. Throws std::out_of_range for an unknown one.
    const QStringList &words(const QString &section) const;
    // The rows of a section, their fields divided by '|'.
    QList<QStringList> rows(const QString &section) const;

private:
    QHash<QString, QStringList> m_sections;
};

} // namespace orvale
