// SPDX-License-Identifier: Apache-2.0
#include "history/InfGen.h"

#include "chart/FormOpener.h"
#include "chart/WorkingState.h"
#include "support/ui/Opener.h"
#include "ui_InfGen.h"

#include <QGroupBox>

namespace clivara {

namespace {

struct Section {
    const char *form;
    const char16_t *title; // with its mnemonic
};

struct SectionGroup {
    const char16_t *title;
    std::vector<Section> sections;
};

const std::vector<SectionGroup> &sectionGroups()
{
    static const std::vector<SectionGroup> groups{
        {u"Anamnesi",
         {{"Anagrafica", u"A&nagrafica"},
          {"Anamfis", u"Anamnesi fisiolo&gica"},
          {"Family", u"Anamnesi &familiare"},
          {"PregMalInf", u"Malattie &infettive pregresse"},
          {"Allergie", u"&Allergie"},
          {"RAF", u"RAF"},
          {"Esenzioni", u"Esen&zioni"}}},
        {u"Cartella clinica",
         {{"Problemi", u"&Problemi"},
          {"Visite2", u"&Visite"},
          {"CRONIC", u"Patologie cr&oniche"},
          {"Monitoraggio", u"Moni&toraggio"},
          {"PrGraph", u"Grafici"},
          {"Zoom", u"Zoo&m"}}},
        {u"Rischio e calcolatori",
         {{"Rischio_Cardio", u"Risc&hio cardiovascolare"},
          {"SindrMetabolica", u"Sindrome meta&bolica"},
          {"calcLDL", u"Colesterolo L&DL"},
          {"calcCockCroft", u"&Clearance della creatinina"},
          {"calcFiltGlom", u"Filtrato glom&erulare"}}},
        {u"Ricoveri e schede",
         {{"Ricoveri_Gestione", u"&Ricoveri"},
          {"Domiciliari_Gestione", u"Assistenza domici&liare"},
          {"AIR15_Gestione", u"&Schede regionali"}}},
    };
    return groups;
}

} // namespace

InfGen::InfGen(WorkingState &state, const std::function<bool(const QString &form)> &isBuilt)
    : ChartForm(QStringLiteral("InfGen"), state.header, state.clock)
    , m_state(state)
    , m_ui(std::make_unique<Ui::InfGen>())
{
    m_ui->setupUi(contents());
    setWindowTitle(QStringLiteral("Informazioni generali"));
    int column = 0;
    for (const SectionGroup &group : sectionGroups()) {
        auto *const frame = new QGroupBox(QString::fromUtf16(group.title), contents());
        auto *const layout = new QVBoxLayout(frame);
        layout->setContentsMargins(16, 8, 16, 16);
        layout->setSpacing(8);
        for (const Section &section : group.sections) {
            const QString form = QLatin1String(section.form);
            auto *const button = new QPushButton(QString::fromUtf16(section.title));
            button->setObjectName(QStringLiteral("Apri_") + form);
            button->setMinimumSize(208, 32);
            button->setAutoDefault(true);
            enableOpener(*button, isBuilt(form), QStringLiteral("Non ancora disponibile"));
            connect(button, &QPushButton::clicked, this, [this, form] { openSection(form); });
            layout->addWidget(button);
            if (!m_buttons.isEmpty())
                setTabOrder(m_buttons.last(), button);
            m_buttons.append(button);
        }
        layout->addStretch(1);
        m_ui->groups->addWidget(frame, 0, column++);
    }
    setTabOrder(m_buttons.last(), m_ui->Uscita);
    connect(m_ui->Uscita, &QPushButton::clicked, this, &InfGen::reject);
}

InfGen::~InfGen() = default;

void InfGen::load()
{
    const auto first = std::find_if(m_buttons.begin(), m_buttons.end(),
                                    [](const QPushButton *button) { return button->isEnabled(); });
    if (first != m_buttons.end())
        (*first)->setFocus();
}

void InfGen::openSection(const QString &form)
{
    m_state.forms->showForm(form);
    showPatient(); // the allergies may be others now
}

} // namespace clivara
