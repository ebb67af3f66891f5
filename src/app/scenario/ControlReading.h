// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QColor>
#include <QList>
#include <QModelIndex>
#include <QString>
#include <QStringList>
#include <optional>

class QAbstractItemView;
class QWidget;

// What a person reads from the controls of a form.
namespace orvale {

// The text as it stands on the screen: without mnemonics and formatting, with the mask of an empty masked
// field. A control made of several shows the text of its first field. Empty for a control without text.
QString shownText(const QWidget &control);
// The colour in which the text is drawn, from the widget's palette as its style sheet has left it.
QColor shownColor(const QWidget &control);
// Empty for what cannot be checked.
std::optional<bool> shownChecked(const QWidget &control);

struct ShownRows {
    QStringList columns; // headings of the visible columns, from left to right
    QList<QStringList> rows;
    int selected = -1;
};

// The rows of a grid, list, tree or combo box. Throws UserError for another control.
ShownRows shownRows(const QWidget &control);

// The field inside a control made of several; the control itself when it is a field. Null without one.
QWidget *fieldOf(QWidget &control);

// One index for each visible row, in the first visible column, in the order on the screen; the rows below a
// row of a tree follow it, whether it is open or not.
QList<QModelIndex> displayedRows(const QAbstractItemView &view);

} // namespace orvale
