// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "controls/ChoiceBox.h"

namespace clivara {

// A list of names in which one that is not there may be typed. While typing it proposes the names that
// contain what is typed, in whatever case. It takes a text of any length: judging it is the form's part, so
// that nothing of a pasted text is cut unseen.
class CompletingBox : public ChoiceBox {
    Q_OBJECT

public:
    explicit CompletingBox(QWidget *parent = nullptr);

    // Shows the text from its beginning.
    void showText(const QString &text);
    // What stands there, without the blanks around it.
    QString text() const { return currentText().trimmed(); }
};

} // namespace clivara
