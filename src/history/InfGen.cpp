// SPDX-License-Identifier: Apache-2.0
#include "history/InfGen.h"

#include "chart/FormOpener.h"
#include "chart/FormRegistry.h"
#include "chart/WorkingState.h"
#include "support/ui/Opener.h"
#include "ui_InfGen.h"

#include <QGroupBox>

namespace clivara {

namespace {

// The sections of two kinds may stand in one frame.
struct Frame {
    const char16_t *title;
    std::initializer_list<SectionKind> kinds;
};
const Frame frames[]{
    {u"Anamnesi", {SectionKind::History}},
    {u"Cartella clinica", {SectionKind::Record}},
    {u"Rischio e calcolatori", {SectionKind::Risk, SectionKind::Calculators}},
    {u"Ricoveri e schede", {SectionKind::Stays, SectionKind::Sheets}},
};

} // namespace

InfGen::InfGen(WorkingState &state)
    : SectionForm(QStringLiteral("InfGen"), state)
    , m_ui(std::make_unique<Ui::InfGen>())
{
    m_ui->setupUi(contents());
    setWindowTitle(QStringLiteral("Informazioni generali"));
    int column = 0;
    for (const Frame &each : frames) {
        auto *const frame = new QGroupBox(QString::fromUtf16(each.title), contents());
        auto *const layout = new QVBoxLayout(frame);
        layout->setContentsMargins(16, 8, 16, 16);
        layout->setSpacing(8);
        for (const SectionKind kind : each.kinds) {
            for (const FormRow &section : state.forms->registry().rows()) {
                if (section.kind == kind && section.name != objectName())
                    addButton(layout, section);
            }
        }
        layout->addStretch(1);
        m_ui->groups->addWidget(frame, 0, column++);
    }
    setTabOrder(m_buttons.last(), m_ui->Uscita);
    connect(m_ui->Uscita, &QPushButton::clicked, this, &InfGen::reject);
}

void InfGen::addButton(QBoxLayout *layout, const FormRow &section)
{
    auto *const button = new QPushButton(section.title);
    button->setObjectName(QStringLiteral("Apri_") + section.name);
    button->setMinimumSize(208, 32);
    button->setAutoDefault(true);
    enableOpener(*button, bool(section.create), QStringLiteral("Non ancora disponibile"));
    connect(button, &QPushButton::clicked, this, [this, form = section.name] { openSection(form); });
    layout->addWidget(button);
    if (!m_buttons.isEmpty())
        setTabOrder(m_buttons.last(), button);
    m_buttons.append(button);
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
