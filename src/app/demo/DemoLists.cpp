// SPDX-License-Identifier: Apache-2.0
#include "app/demo/DemoLists.h"

#include "app/practice/ResourceText.h"

#include <stdexcept>

// The resource stands in a static library; naming it here keeps it in the program.
static void useDemoResource()
{
    Q_INIT_RESOURCE(demo);
}

namespace orvale {

DemoLists::DemoLists()
{
    useDemoResource();
    for (const QString &name :
         {QStringLiteral(":/demo/words.txt"), QStringLiteral(":/demo/catalogues.txt")}) {
        QString section;
        const QStringList lines = resourceText(name).split(u'\n', Qt::SkipEmptyParts);
        for (const QString &line : lines) {
            if (line.startsWith(u'['))
                section = line.mid(1, line.size() - 2);
            else if (!line.startsWith(u'#'))
                m_sections[section].append(line);
        }
    }
}

const QStringList &DemoLists::words(const QString &section) const
{
    const auto found = m_sections.constFind(section);
    if (found == m_sections.constEnd())
        throw std::out_of_range("no word list " + section.toStdString());
    return *found;
}

QList<QStringList> DemoLists::rows(const QString &section) const
{
    QList<QStringList> rows;
    for (const QString &line : words(section))
        rows.append(line.split(u'|'));
    return rows;
}

} // namespace orvale
