// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/SectionForm.h"

#include <QColor>

class QLabel;

namespace clivara {

void setForeColour(QLabel *label, QColor colour);
// A quieter text, smaller and grey.
void makeQuiet(QLabel *label);
constexpr QColor blackText(0, 0, 0);
constexpr QColor darkRedText(192, 0, 0);

// A form that remarks things in labels beside its fields and grows for them, as far as the screen has room. Whoever
// drags the window to a size of his own keeps it until there is something else to read.
class RemarkForm : public SectionForm {
    Q_OBJECT

protected:
    using SectionForm::SectionForm;

    // The lines with a sign each; without any the label is hidden.
    void showRemarks(QLabel *label, const QStringList &lines);
    // Takes back what the form has grown by.
    void shrink();

    bool event(QEvent *event) override;

private:
    void growForRemarks();

    bool m_mayGrow = true; // the remarks are others since somebody dragged the window
    int m_grownBy = 0; // pixels, for the remarks
};

} // namespace clivara
