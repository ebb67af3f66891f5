// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QColor>
#include <QDate>
#include <QWidget>

namespace clivara {

class Clock;
class DatePicker;
class MaskedDateEdit;

// The date field of the forms: a masked edit ("dtEdit") for typing and a drop-down calendar ("dtPick") for
// picking, kept in step. Dates are shown as "dd/mm/yyyy", an empty field as "__/__/____". F4 or Alt+Down
// opens the calendar.
class MyDateControl : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QColor BackColor READ BackColor WRITE setBackColor NOTIFY backColorChanged)

public:
    explicit MyDateControl(QWidget *parent = nullptr);

    // Where today's date comes from; the workstation's date until a clock is set. The clock must outlive the
    // control. A form sets it before it sets a date.
    void setClock(const Clock &clock);

    // The control's own flag, set with setEnabled(); both parts follow it.
    bool Enabled() const { return !testAttribute(Qt::WA_ForceDisabled); }
    // The date that the edit shows; the zero date (30/12/1899) when it shows none.
    QDate Value() const;
    void setValue(QDate date);
    // Nothing is typed: neither a date nor the beginning of one.
    bool isEmpty() const;
    QString typedText() const; // as it stands there: "31/02/2026"
    QColor BackColor() const { return m_backColor; }
    void setBackColor(const QColor &colour);

    // Shows the date that the text is. A text that is no date empties the control, a date on or before the
    // zero date changes nothing.
    void SetTextValue(const QString &text);
    // Empties the edit and sets the picker to today.
    void SetEmptyValue();

signals:
    // The control changed the edit's text or the picker's date; typing alone is no change until it is
    // committed.
    void changed();
    void textChanged(); // what the edit shows is another text, typing included
    void backColorChanged();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QDate today() const;
    void commit();
    void prepareCalendar();
    void setEditText(const QString &text);
    void showDate(QDate date);
    void setPicker(QDate date);

    MaskedDateEdit *m_edit;
    DatePicker *m_picker;
    const Clock *m_clock = nullptr;
    QColor m_backColor;
};

// A message that asks for the date of a control that holds none. When something stands there all the same, it
// says that this is impossible.
QString dateRequest(const QString &request, const MyDateControl &control);

} // namespace clivara
