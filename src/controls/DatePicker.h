// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDate>
#include <QToolButton>

class QCalendarWidget;
class QFrame;

namespace clivara {

// A button that drops down a calendar. Arrows, Page Up and Page Down move in it, Enter or a click picks the
// day, Esc closes it.
class DatePicker : public QToolButton {
    Q_OBJECT

public:
    explicit DatePicker(QWidget *parent = nullptr);

    QDate date() const { return m_date; }
    void setDate(QDate date) { m_date = date; }
    // Drops the calendar down at the picker's date, after aboutToOpen().
    void open();

signals:
    void aboutToOpen();
    void picked(QDate date); // what the doctor picked; date() is still the one before
    void dismissed(); // by Esc

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void createPopup();
    void pick(QDate date);

    QDate m_date;
    QFrame *m_popup = nullptr; // created when first opened: a calendar is slow to make
    QCalendarWidget *m_calendar = nullptr;
};

} // namespace clivara
