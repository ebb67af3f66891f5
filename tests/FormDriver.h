// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/ui/ChartForm.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>
#include <QTimer>
#include <functional>
#include <gtest/gtest.h>

namespace clivara {

// Acts in the form that showModal() is about to open. The form is closed afterwards, without saving, when it
// is still open: a failing test never hangs.
inline void inside(ChartForm &form, const std::function<void()> &act)
{
    QTimer::singleShot(0, &form, [&form, act] {
        try {
            act();
        } catch (const std::exception &error) { // must not cross the event loop
            ADD_FAILURE() << error.what();
        }
        form.abandon();
    });
}

// Drives the form that is open by its controls. A control that is not there ends the act and fails the test.
class FormDriver {
protected:
    void open(ChartForm &form, const std::function<void()> &act)
    {
        ChartForm *const outer = std::exchange(m_form, &form);
        inside(form, [&] {
            QApplication::setActiveWindow(&form);
            act();
        });
        form.showModal();
        m_form = outer;
    }

    template <typename Control = QWidget>
    Control *control(const QString &name) const
    {
        auto *const found = m_form->findChild<Control *>(name);
        if (!found)
            throw std::runtime_error(name.toStdString());
        return found;
    }
    // What of a control takes the keys: of a date its text, beside which there is a picker.
    QWidget *field(const QString &name) const
    {
        QWidget *const whole = control(name);
        auto *const date = whole->findChild<QLineEdit *>("dtEdit");
        return date ? date : whole;
    }
    void click(const QString &button) const { control<QAbstractButton>(button)->click(); }
    void choose(const QString &list, const QString &entry) const
    {
        auto *const box = control<QComboBox>(list);
        const int index = box->findText(entry);
        ASSERT_GE(index, 0) << entry.toStdString();
        box->setCurrentIndex(index);
    }
    // Enters a field, replaces its text by typing and stays there; CR is a line end.
    void type(const QString &name, const QString &text) const
    {
        QWidget *const field = this->field(name);
        field->setFocus(Qt::TabFocusReason);
        auto *const line = qobject_cast<QLineEdit *>(field);
        if (line)
            line->selectAll();
        else
            control<QPlainTextEdit>(name)->selectAll();
        QTest::keyClick(field, Qt::Key_Delete);
        if (line)
            line->home(false);
        for (const QChar sign : text) {
            if (sign == u'\r')
                QTest::keyClick(field, Qt::Key_Return);
            else if (sign.unicode() < 0x80)
                QTest::keyClick(field, sign.toLatin1());
            else // a sign without a key of its own
                QTest::sendKeyEvent(QTest::Click, field, Qt::Key_unknown, QString(sign), Qt::NoModifier);
        }
    }
    // Several fields, one text each; both lists are separated by blanks.
    void typeEach(const QString &names, const QString &texts) const
    {
        const QStringList fields = names.split(u' ');
        const QStringList values = texts.split(u' ');
        ASSERT_EQ(fields.size(), values.size());
        for (qsizetype i = 0; i < fields.size(); ++i)
            type(fields[i], values[i]);
    }
    std::string text(const QString &label) const { return control<QLabel>(label)->text().toStdString(); }
    // What a field, a list, a label or a button shows; of a check box "x" or nothing.
    std::string value(const QString &name) const
    {
        QWidget *const field = this->field(name);
        if (const auto *label = qobject_cast<QLabel *>(field))
            return label->text().toStdString();
        if (const auto *box = qobject_cast<QCheckBox *>(field))
            return box->isChecked() ? "x" : "";
        if (const auto *line = qobject_cast<QLineEdit *>(field))
            return line->displayText().toStdString();
        if (const auto *list = qobject_cast<QComboBox *>(field))
            return list->currentText().toStdString();
        if (const auto *button = qobject_cast<QAbstractButton *>(field))
            return button->text().toStdString();
        return control<QPlainTextEdit>(name)->toPlainText().toStdString();
    }

    // The values of several controls, whose names are separated by blanks, joined by '|'.
    std::string values(const QString &names) const
    {
        QStringList all;
        for (const QString &name : names.split(u' '))
            all.append(QString::fromStdString(value(name)));
        return all.join(u'|').toStdString();
    }

    ChartForm *m_form = nullptr;
};

} // namespace clivara
