// SPDX-License-Identifier: Apache-2.0
#include "controls/ChoiceBox.h"

#include <QKeyEvent>
#include <QWheelEvent>

namespace clivara {

ChoiceBox::ChoiceBox(QWidget *parent)
    : QComboBox(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QComboBox::currentIndexChanged, this, [this] { m_chosen = true; });
}

void ChoiceBox::showIndex(int index)
{
    setCurrentIndex(index);
    m_chosen = false;
}

void ChoiceBox::wheelEvent(QWheelEvent *event)
{
    if (hasFocus())
        QComboBox::wheelEvent(event);
    else
        event->ignore();
}

void ChoiceBox::keyPressEvent(QKeyEvent *event)
{
    if (m_optional && (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace)) {
        setCurrentIndex(-1);
        m_chosen = true; // also when it showed none: a code that the list does not have
    } else {
        QComboBox::keyPressEvent(event);
    }
}

} // namespace clivara
