// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regional/SheetData.h"

#include <QHash>
#include <QWidget>

class QGridLayout;
class QLineEdit;

namespace clivara {

class Clock;

// The controls of a sheet, made from its layout: groups of captions and fields in two columns, the last group across
// both. A list's control is called "cmb" and the field's name, a text's "txt", a number's "me_", a date's "dt", that of
// a total or band "lbl".
class SheetFields : public QWidget {
    Q_OBJECT

public:
    // Layout and clock must outlive the object.
    SheetFields(const SheetLayout &layout, const Clock &clock, QWidget *parent = nullptr);

    void showData(const SheetData &sheet);
    // What the controls say; what does not fit its field is empty there.
    SheetData entered() const;
    // The first field whose text does not fit it, and why, for the doctor; empty when all fit.
    struct Misfit {
        QWidget *control = nullptr;
        QString text;
    };
    std::optional<Misfit> misfit() const;
    // The texts in the controls as they stand, to tell whether anything was changed.
    QStringList texts() const;

    // Says of the fields where the values that they show come from, until the doctor changes them; takes back
    // what was said before.
    void setOrigins(const QHash<int, QString> &origins);
    void focusFirst();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    void edited(); // the doctor changed a field; totals and bands are up to date

private:
    void addGroup(const QString &group, QWidget *box);
    void addField(int field, QGridLayout *grid, int row);
    QWidget *makeControl(int field);
    QString text(int field) const;
    // The control's text as the field's value; empty when it does not fit.
    std::optional<QString> fitted(int field) const;
    void refreshTotals();
    void showOrigins();

    const SheetLayout &m_layout;
    const Clock &m_clock;
    QList<QWidget *> m_controls; // by field; null for one that is kept
    SheetData m_shown; // as it was shown: what is kept comes from here
    QHash<int, QString> m_origins;
    QStringList m_proposed; // the texts that the origins are about
    bool m_showing = false;
};

} // namespace clivara
