// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "FormDriver.h"
#include "TestPrompts.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QVariant>

namespace clivara {

// Opens a form of the fixture's patient and acts in it by its controls.
template <typename Fixture>
class FormControls : public Fixture {
protected:
    template <typename Form>
    void open(Form &form, const std::function<void()> &act)
    {
        m_form = &form;
        inside(form, [&] {
            QApplication::setActiveWindow(&form);
            act();
        });
        form.showModal();
    }

    template <typename Widget>
    Widget *control(const char *name) const
    {
        auto *found = m_form->template findChild<Widget *>(QLatin1String(name));
        if (!found)
            throw std::runtime_error(name);
        return found;
    }
    std::string text(const char *label) const { return control<QLabel>(label)->text().toStdString(); }
    std::string value(const char *edit) const { return control<QLineEdit>(edit)->text().toStdString(); }
    std::string colour(const char *label) const
    {
        return control<QLabel>(label)
            ->palette()
            .color(QPalette::Active, QPalette::WindowText)
            .name()
            .toStdString();
    }
    void type(const char *edit, const char *keys) const
    {
        auto *target = control<QLineEdit>(edit);
        target->setFocus();
        target->selectAll();
        QTest::keyClick(target, Qt::Key_Delete);
        QTest::keyClicks(target, QString::fromUtf8(keys));
    }
    void click(const char *button) const { control<QAbstractButton>(button)->click(); }
    bool enabled(const char *name) const { return control<QWidget>(name)->isEnabled(); }
    // Presses the compute button, which warns and puts the focus on the field that lacks its value.
    void expectWarning(const char *warning, const char *field, const char *box = "Attenzione!|%|warning")
    {
        this->prompts.queue();
        click("Button2_0");
        EXPECT_EQ(this->prompts.last().toStdString(),
                  QString::fromUtf8(box).replace('%', QString::fromUtf8(warning)).toStdString());
        EXPECT_EQ(m_form->focusWidget(), control<QWidget>(field));
    }
    // The name and the number, as the host gets them.
    QString handedBack() const
    {
        const QVariantList list = this->state.result.toList();
        return list.size() == 2 ? list[0].toString() + ' ' + QString::number(list[1].toDouble(), 'f', 2)
                                : QStringLiteral("?");
    }

    ChartForm *m_form = nullptr;
};

} // namespace clivara
