// SPDX-License-Identifier: Apache-2.0
#include "host/Sections.h"

#include "host/AllForms.h"
#include "support/Mnemonic.h"

namespace clivara {

namespace {

struct GroupTitle {
    SectionKind kind;
    const char16_t *title;
    const char16_t *menu; // with its mnemonic
};
constexpr GroupTitle groupTitles[]{
    {SectionKind::Record, u"Cartella clinica", u"Ca&rtella clinica"},
    {SectionKind::History, u"Anamnesi", u"&Anamnesi"},
    {SectionKind::Risk, u"Rischio", u"Ri&schio"},
    {SectionKind::Calculators, u"Calcolatori", u"&Calcolatori"},
    {SectionKind::Stays, u"Ricoveri e domiciliari", u"Rico&veri"},
    {SectionKind::Sheets, u"Schede regionali", u"Sche&de"},
};

} // namespace

QString Section::plainTitle() const
{
    return withoutMnemonic(title);
}

QList<SectionGroup> sectionGroups()
{
    const FormRegistry registry = allForms();
    QList<SectionGroup> groups;
    for (const GroupTitle &titles : groupTitles) {
        SectionGroup group{QString::fromUtf16(titles.title), QString::fromUtf16(titles.menu), {}};
        for (const FormRow &row : registry.rows()) {
            if (row.kind == titles.kind && !row.icon.isEmpty())
                group.sections.append({row.actions.back().code, row.name, row.title,
                                       QStringLiteral(":/clivara/icons/%1.svg").arg(row.icon), row.key});
        }
        groups.append(group);
    }
    return groups;
}

} // namespace clivara
