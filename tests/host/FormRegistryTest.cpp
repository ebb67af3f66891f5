// SPDX-License-Identifier: Apache-2.0
#include "host/AllForms.h"

#include "host/HostFixture.h"
#include "host/Sections.h"
#include "jetsql/Error.h"

#include <QFile>
#include <QRegularExpression>

namespace {

using namespace clivara;

class FormRegistryTest : public HostFixture {
protected:
    const FormRegistry registry = allForms();
    WorkingState state{services()};
};

TEST_F(FormRegistryTest, OpensTheFormOfTheCodeInTheModeOfTheCaller)
{
    struct Case {
        qint16 code;
        QVariant param;
        const char *form;
        qint16 mode;
        qint32 selector;
    };
    constexpr qint16 m = 77; // values from before
    constexpr qint32 s = 88;
    const Case cases[]{
        {0, {}, "InfGen", m, s},
        {1, {}, "Anagrafica", m, s},
        {2, {}, "Zoom", 1, s},
        {2, 69, "Zoom", 1, s},
        {3, 3, "Problemi", 3, 0},
        {3, "3", "Problemi", 3, 0},
        {3, 1, "Visite2", 1, s},
        {3, {}, "Visite2", 0, s},
        {3, 2.5, "Visite2", 2, s},
        {4, {}, "PrGraph", m, s},
        {5, {}, "Problemi", m, s},
        {6, {}, "CRONIC", m, s},
        {7, {}, "Esenzioni", 9, s},
        {8, {}, "Monitoraggio", m, s},
        {9, "fumatore", "Anamfis", m, s},
        {10, {}, "Family", m, s},
        {11, {}, "RAF", m, s},
        {12, {}, "Allergie", m, s},
        {13, {}, "Rischio_Cardio", m, s},
        {16, {}, "Problemi", m, 0},
        {17, {}, "Visite2", m, s},
        {18, {}, "Domiciliari_Gestione", m, s},
        {19, {}, "Ricoveri_Gestione", m, s},
        {20, {}, "SindrMetabolica", m, s},
        {21, 70000, "Problemi", m, 70000},
        {21, "-1", "Problemi", m, -1},
        {21, {}, "Problemi", m, 0},
        {24, {}, "SelezProblema", m, s},
        {25, {}, "AIR15_Gestione", m, s},
        {80, {}, "calcLDL", m, s},
        {81, {}, "calcCockCroft", m, s},
        {82, {}, "calcFiltGlom", m, s},
    };
    for (const Case &c : cases) {
        state.callerMode = m;
        state.selected.id = s;
        const auto [form, action] = registry.opened(c.code, c.param);
        ASSERT_NE(form, nullptr) << c.code;
        if (action->prepare)
            action->prepare(state, c.param);
        EXPECT_EQ(form->name, c.form) << c.code;
        EXPECT_EQ(state.callerMode, c.mode) << c.code;
        EXPECT_EQ(state.selected.id, c.selector) << c.code;
    }
}

TEST_F(FormRegistryTest, KnowsNoOtherCode)
{
    for (int code = -3; code <= 300; ++code) {
        const bool known = (code >= 0 && code <= 13) || (code >= 16 && code <= 21) || code == 24 || code == 25
                           || (code >= 80 && code <= 82);
        EXPECT_EQ(registry.opened(static_cast<qint16>(code), {}).form != nullptr, known) << code;
    }
}

TEST_F(FormRegistryTest, RefusesAParameterOutOfRange)
{
    EXPECT_THROW(registry.opened(3, 40000).action->prepare(state, 40000), dao::Error);
    EXPECT_THROW(registry.opened(21, 3e9).action->prepare(state, 3e9), dao::Error);
}

TEST_F(FormRegistryTest, UnloadsTheFormsOfCode99InTheirOrder)
{
    EXPECT_EQ(registry.unloadOrder().join(u' ').toStdString(),
              "InfGen Anagrafica Zoom Visita2 PrGraph Problemi Probl1 CRONIC Esenzioni Monitoraggio Anamfis "
              "Family RAF Allergie Rischio_Cardio Domiciliari_Gestione");
}

// A name, a place in the unloading, a key and a letter of the launcher belong to one form each.
TEST_F(FormRegistryTest, NoTwoFormsShareWhatIsTheirs)
{
    QSet<QString> seen;
    const auto isFirst = [&seen](const QString &thing) {
        const bool isNew = !seen.contains(thing);
        seen.insert(thing);
        return isNew;
    };
    for (const FormRow &row : registry.rows()) {
        SCOPED_TRACE(row.name.toStdString());
        EXPECT_TRUE(isFirst(row.name));
        if (row.unloadOrder > 0) {
            EXPECT_TRUE(isFirst(QString::number(row.unloadOrder)));
        }
        if (!row.key.isEmpty()) {
            EXPECT_TRUE(isFirst(row.key.toString()));
        }
        static const QRegularExpression letter(QStringLiteral("&\\w"));
        // The launcher does not offer itself.
        if (const auto match = letter.match(row.title); match.hasMatch() && row.name != "InfGen") {
            EXPECT_TRUE(isFirst(match.captured().toLower()));
        }
        EXPECT_EQ(row.kind.has_value(), !row.title.isEmpty());
        EXPECT_FALSE(!row.icon.isEmpty() && row.actions.empty()) << "the host could not open it";
    }
}

// The guide's list of sections is what the host offers.
TEST_F(FormRegistryTest, TheGuideListsTheSections)
{
    QStringList rows;
    for (const SectionGroup &group : sectionGroups()) {
        for (const Section &section : group.sections) {
            EXPECT_TRUE(QFile::exists(section.icon)) << section.icon.toStdString();
            QString key =
                section.shortcut.toString().replace(QStringLiteral("Shift"), QStringLiteral("Maiusc"));
            rows.append(QStringLiteral("| %1 | %2 | %3 |").arg(group.title, section.plainTitle(), key));
        }
    }
    QFile guide(QStringLiteral(CLIVARA_DOCS "/guida.md"));
    ASSERT_TRUE(guide.open(QIODevice::ReadOnly));
    EXPECT_TRUE(QString::fromUtf8(guide.readAll()).contains(rows.join(u'\n')))
        << "the guide lacks this table:\n"
        << rows.join(u'\n').toStdString();
}

} // namespace
