// SPDX-License-Identifier: Apache-2.0
#include "history/AllergenPanel.h"

#include "history/AllergenBox.h"
#include "history/AllergenSearch.h"
#include "support/Mnemonic.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QScrollBar>
#include <QVBoxLayout>

namespace clivara {

namespace {

constexpr int frameGap = 8;
constexpr int rowGap = 0;

// The groups by their place in allergenGroups.
enum Group : std::size_t { Grasses, Mites, Dusts, Foods, Moulds, Composites, Trees, Herbs, Epithelia };

// A frame, and in how many columns its boxes stand.
struct Place {
    Group group;
    int columns;
};
using Line = std::vector<Place>; // frames side by side
using Stack = std::vector<Line>; // lines on top of each other
using Arrangement = std::vector<Stack>; // stacks side by side

// The widest first. All stacks of an arrangement are about equally high.
const std::vector<Arrangement> &arrangements()
{
    static const std::vector<Arrangement> all{
        {{{{Grasses, 1}}},
         {{{Foods, 3}}, {{Mites, 1}, {Epithelia, 1}}},
         {{{Moulds, 1}}, {{Dusts, 1}}},
         {{{Trees, 1}}},
         {{{Composites, 1}}, {{Herbs, 1}}}},
        {{{{Grasses, 1}}, {{Mites, 1}}, {{Dusts, 1}}},
         {{{Foods, 2}}, {{Epithelia, 2}}},
         {{{Moulds, 1}}, {{Herbs, 1}}},
         {{{Trees, 1}}, {{Composites, 1}}}},
        {{{{Grasses, 1}}, {{Mites, 1}}, {{Trees, 1}}, {{Herbs, 1}}},
         {{{Foods, 1}}},
         {{{Moulds, 1}}, {{Composites, 1}}, {{Dusts, 1}}, {{Epithelia, 1}}}},
    };
    return all;
}

// Parts a layout from the widgets that it holds, which stay.
void dissolve(QLayout *layout)
{
    if (!layout)
        return;
    while (QLayoutItem *const item = layout->takeAt(0)) {
        if (QLayout *const inner = item->layout())
            dissolve(inner); // deletes the item too
        else
            delete item;
    }
    delete layout;
}

} // namespace

AllergenPanel::AllergenPanel(QWidget *parent)
    : QScrollArea(parent)
    , m_page(new QWidget(this))
{
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    for (const AllergenGroup &group : allergenGroups) {
        auto *const frame = new QGroupBox(QString::fromUtf16(group.caption), m_page);
        frame->setObjectName(QStringLiteral("frame_") + QLatin1String(group.control));
        m_frames.push_back(frame);
        for (int item = 0; item < group.items; ++item) {
            auto *const box = new AllergenBox(frame);
            box->setObjectName(QStringLiteral("%1_%2").arg(QLatin1String(group.control)).arg(item));
            connect(box, &QCheckBox::toggled, this, &AllergenPanel::selectionChanged);
            m_boxes.push_back(box);
        }
    }
    setCatalogue({});
    setWidget(m_page);
}

AllergenPanel::~AllergenPanel() = default;

void AllergenPanel::setCatalogue(const QList<CatalogueEntry> &entries)
{
    const std::vector<QString> names = catalogueNames(entries);
    for (std::size_t allergen = 0; allergen < m_boxes.size(); ++allergen)
        m_boxes[allergen]->setAllergen(int(allergen), names[allergen]);
    m_widths.clear();
    for (std::size_t i = 0; i < arrangements().size(); ++i) {
        arrange(i);
        m_widths.push_back(m_page->minimumSizeHint().width());
        if (i == 0)
            m_usual = m_page->minimumSizeHint();
    }
    updateGeometry();
    fit();
}

void AllergenPanel::setSelection(const AllergenSelection &selection)
{
    for (std::size_t allergen = 0; allergen < m_boxes.size(); ++allergen)
        m_boxes[allergen]->setChecked(selection[allergen]);
}

AllergenSelection AllergenPanel::selection() const
{
    AllergenSelection selection;
    for (std::size_t allergen = 0; allergen < m_boxes.size(); ++allergen)
        selection[allergen] = m_boxes[allergen]->isChecked();
    return selection;
}

QStringList AllergenPanel::namesOf(const AllergenSelection &selection) const
{
    QStringList names;
    for (std::size_t number = 0; number < m_boxes.size(); ++number) {
        if (selection[number])
            names.append(m_boxes[number]->allergen());
    }
    return names;
}

int AllergenPanel::search(const QString &typed)
{
    const AllergenSearch words(typed);
    int found = 0;
    for (std::size_t group = 0; group < allergenGroups.size(); ++group) {
        const AllergenGroup &known = allergenGroups[group];
        const QString about = withoutMnemonic(QString::fromUtf16(known.caption)) + u' '
                              + QString::fromUtf16(known.searchWords) + u' ';
        for (int item = 0; item < known.items; ++item) {
            AllergenBox *const box = m_boxes[std::size_t(firstAllergen(group) + item)];
            const bool hit = words.finds(about + box->allergen());
            found += hit ? 1 : 0;
            box->setSearch(words.isEmpty() ? AllergenBox::Search::None
                           : hit           ? AllergenBox::Search::Found
                                           : AllergenBox::Search::Other);
        }
    }
    if (AllergenBox *const first = firstFound())
        ensureWidgetVisible(first);
    return found;
}

AllergenBox *AllergenPanel::firstFound() const
{
    const auto found = std::find_if(m_boxes.begin(), m_boxes.end(), [](const AllergenBox *box) {
        return box->search() == AllergenBox::Search::Found;
    });
    return found == m_boxes.end() ? nullptr : *found;
}

void AllergenPanel::focusFound()
{
    if (AllergenBox *const first = firstFound())
        first->setFocus(Qt::TabFocusReason);
}

QSize AllergenPanel::sizeHint() const
{
    return m_usual + QSize(verticalScrollBar()->sizeHint().width(), 0);
}

void AllergenPanel::resizeEvent(QResizeEvent *event)
{
    QScrollArea::resizeEvent(event);
    fit();
}

void AllergenPanel::fit()
{
    // The vertical bar may come and go with the arrangement; its room is always left.
    const int room = width() - verticalScrollBar()->sizeHint().width();
    const auto fitting =
        std::find_if(m_widths.begin(), m_widths.end(), [room](int needed) { return needed <= room; });
    const auto chosen = std::size_t(fitting - m_widths.begin()) - (fitting == m_widths.end() ? 1 : 0);
    if (chosen != m_arrangement)
        arrange(chosen);
}

void AllergenPanel::arrange(std::size_t arrangement)
{
    m_arrangement = arrangement;
    dissolve(m_page->layout());
    auto *const page = new QHBoxLayout(m_page);
    page->setContentsMargins(0, 0, 0, 0);
    page->setSpacing(frameGap);
    QWidget *before = nullptr;
    for (const Stack &stack : arrangements()[arrangement]) {
        auto *const lines = new QVBoxLayout;
        lines->setSpacing(frameGap);
        for (const Line &line : stack) {
            auto *const frames = new QHBoxLayout;
            frames->setSpacing(frameGap);
            for (const Place &place : line) {
                QGroupBox *const frame = m_frames[place.group];
                dissolve(frame->layout());
                auto *const grid = new QGridLayout(frame);
                grid->setContentsMargins(frameGap, frameGap / 2, frameGap, frameGap / 2);
                grid->setHorizontalSpacing(frameGap);
                grid->setVerticalSpacing(rowGap);
                const int items = allergenGroups[place.group].items;
                const int rows = (items + place.columns - 1) / place.columns;
                for (int item = 0; item < items; ++item) {
                    AllergenBox *const box = m_boxes[std::size_t(firstAllergen(place.group) + item)];
                    grid->addWidget(box, item % rows, item / rows);
                    // From box to box as they are seen.
                    if (before)
                        setTabOrder(before, box);
                    before = box;
                }
                grid->setRowStretch(rows, 1); // a frame beside a higher one
                frames->addWidget(frame);
            }
            lines->addLayout(frames);
        }
        lines->addStretch(1);
        page->addLayout(lines);
    }
}

} // namespace clivara
