// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QComboBox>

namespace clivara {

// A drop-down list in a form that people scroll and type in all day: the wheel moves it only while it has the
// focus, so that a choice never changes unnoticed; Del empties it when it need not have a value. It tells a
// value that the program showed from one that the doctor chose.
class ChoiceBox : public QComboBox {
    Q_OBJECT
    Q_PROPERTY(bool optional READ isOptional WRITE setOptional)

public:
    explicit ChoiceBox(QWidget *parent = nullptr);

    bool isOptional() const { return m_optional; }
    void setOptional(bool optional) { m_optional = optional; }

    // Shows an entry (-1: none) that nobody has chosen.
    void showIndex(int index);
    // The value was changed since, by the doctor.
    bool isChosen() const { return m_chosen; }

protected:
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    bool m_optional = false;
    bool m_chosen = false;
};

} // namespace clivara
