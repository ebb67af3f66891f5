// SPDX-License-Identifier: Apache-2.0
#include "controls/DatePicker.h"

#include <QCalendarWidget>
#include <QFrame>
#include <QKeyEvent>
#include <QScreen>
#include <QVBoxLayout>

namespace clivara {

DatePicker::DatePicker(QWidget *parent)
    : QToolButton(parent)
{
    setArrowType(Qt::DownArrow);
    setFocusPolicy(Qt::NoFocus);
    setAccessibleName(QStringLiteral("Apri il calendario"));
    setToolTip(QStringLiteral("Calendario (F4)"));
    connect(this, &QToolButton::clicked, this, &DatePicker::open);
}

void DatePicker::createPopup()
{
    m_popup = new QFrame(this, Qt::Popup);
    m_popup->setFrameShape(QFrame::StyledPanel);
    m_calendar = new QCalendarWidget(m_popup);
    m_calendar->setLocale(QLocale(QLocale::Italian, QLocale::Italy));
    m_calendar->setFirstDayOfWeek(Qt::Monday);
    m_calendar->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
    auto *layout = new QVBoxLayout(m_popup);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_calendar);
    m_popup->setFocusProxy(m_calendar);
    m_popup->installEventFilter(this);
    for (QWidget *const part : m_calendar->findChildren<QWidget *>())
        part->installEventFilter(this);
    connect(m_calendar, &QCalendarWidget::activated, this, &DatePicker::pick);
    connect(m_calendar, &QCalendarWidget::clicked, this, &DatePicker::pick);
}

void DatePicker::open()
{
    emit aboutToOpen();
    if (!m_popup)
        createPopup();
    m_calendar->setSelectedDate(m_date);
    m_popup->adjustSize();
    QPoint corner = mapToGlobal(QPoint(width() - m_popup->width(), height()));
    const QRect room = screen()->availableGeometry();
    if (corner.y() + m_popup->height() > room.bottom())
        corner.setY(mapToGlobal(QPoint()).y() - m_popup->height());
    m_popup->move(qMax(room.left(), corner.x()), corner.y());
    m_popup->show();
    m_calendar->setFocus();
}

void DatePicker::pick(QDate date)
{
    if (!m_popup->isVisible())
        return; // a click is followed by an activation of the same day
    m_popup->close();
    emit picked(date);
}

bool DatePicker::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape) {
        m_popup->close();
        emit dismissed();
        return true;
    }
    return QToolButton::eventFilter(watched, event);
}

} // namespace clivara
