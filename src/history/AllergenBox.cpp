// SPDX-License-Identifier: Apache-2.0
#include "history/AllergenBox.h"

#include "data/AllergyCode.h"

#include <QPainter>
#include <QStyleOptionButton>

namespace clivara {

namespace {

constexpr QColor black(0, 0, 0);
constexpr QColor darkRed(128, 0, 0);
constexpr QColor marker(0xff, 0xe5, 0x8a);
constexpr qreal dimmed = 0.3;
constexpr qreal cornerRadius = 3;

} // namespace

AllergenBox::AllergenBox(QWidget *parent)
    : QCheckBox(parent)
{
    connect(this, &QCheckBox::toggled, this, &AllergenBox::updateColour);
    updateColour();
}

void AllergenBox::setAllergen(int allergen, const QString &name)
{
    m_name = allergenName(allergen, name);
    setText(QString(name).replace(u'&', QStringLiteral("&&")));
    setAccessibleName(m_name);
    setToolTip(name.isEmpty() ? m_name + QStringLiteral(": non è in catalogo") : QString());
}

void AllergenBox::setSearch(Search search)
{
    m_search = search;
    update();
}

void AllergenBox::updateColour()
{
    QPalette colours = palette();
    colours.setColor(foregroundRole(), isChecked() ? darkRed : black);
    setPalette(colours);
}

void AllergenBox::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (m_search == Search::Found) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(marker);
        painter.drawRoundedRect(rect(), cornerRadius, cornerRadius);
    } else if (m_search == Search::Other) {
        painter.setOpacity(dimmed);
    }
    QStyleOptionButton option;
    initStyleOption(&option);
    style()->drawControl(QStyle::CE_CheckBox, &option, &painter, this);
}

} // namespace clivara
