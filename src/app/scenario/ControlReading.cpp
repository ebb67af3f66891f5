// SPDX-License-Identifier: Apache-2.0
#include "app/scenario/ControlReading.h"

#include "app/practice/UserError.h"
#include "support/Mnemonic.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QTextDocument>
#include <QTextEdit>
#include <QTreeView>
#include <algorithm>

namespace orvale {

namespace {

QString labelText(const QLabel &label)
{
    const bool rich = label.textFormat() == Qt::RichText
                      || (label.textFormat() == Qt::AutoText && Qt::mightBeRichText(label.text()));
    if (rich) {
        QTextDocument document;
        document.setHtml(label.text());
        return document.toPlainText();
    }
    return label.buddy() ? clivara::withoutMnemonic(label.text()) : label.text();
}

bool isField(const QWidget &control)
{
    return qobject_cast<const QLineEdit *>(&control) || qobject_cast<const QTextEdit *>(&control)
           || qobject_cast<const QPlainTextEdit *>(&control)
           || qobject_cast<const QAbstractSpinBox *>(&control);
}

// The header of a view with columns; null for a plain list.
const QHeaderView *columnHeader(const QAbstractItemView &view)
{
    if (const auto table = qobject_cast<const QTableView *>(&view))
        return table->horizontalHeader();
    if (const auto tree = qobject_cast<const QTreeView *>(&view))
        return tree->header();
    return nullptr;
}

// The visible columns from left to right.
QList<int> displayedColumns(const QAbstractItemView &view)
{
    if (const auto list = qobject_cast<const QListView *>(&view))
        return {list->modelColumn()};
    QList<int> columns;
    const QHeaderView *header = columnHeader(view);
    for (int position = 0; header && position < header->count(); ++position) {
        const int column = header->logicalIndex(position);
        if (!header->isSectionHidden(column))
            columns.append(column);
    }
    return columns;
}

bool isRowHidden(const QAbstractItemView &view, int row, const QModelIndex &parent)
{
    if (const auto table = qobject_cast<const QTableView *>(&view))
        return table->isRowHidden(row);
    if (const auto tree = qobject_cast<const QTreeView *>(&view))
        return tree->isRowHidden(row, parent);
    if (const auto list = qobject_cast<const QListView *>(&view))
        return list->isRowHidden(row);
    return false;
}

void appendRows(const QAbstractItemView &view, int column, const QModelIndex &parent,
                QList<QModelIndex> &rows)
{
    const QAbstractItemModel *model = view.model();
    for (int row = 0; row < model->rowCount(parent); ++row) {
        if (isRowHidden(view, row, parent))
            continue;
        const QModelIndex index = model->index(row, column, parent);
        rows.append(index);
        if (qobject_cast<const QTreeView *>(&view))
            appendRows(view, column, index.siblingAtColumn(0), rows);
    }
}

QString cellText(const QAbstractItemView &view, const QModelIndex &index)
{
    const QVariant value = index.data(Qt::DisplayRole);
    if (const auto delegate = qobject_cast<QStyledItemDelegate *>(view.itemDelegateForIndex(index)))
        return delegate->displayText(value, view.locale());
    return value.toString();
}

int selectedRow(const QAbstractItemView &view, const QList<QModelIndex> &rows)
{
    const QItemSelectionModel *selection = view.selectionModel();
    const QModelIndex current = selection->currentIndex();
    int first = -1;
    for (int row = 0; row < rows.size(); ++row) {
        const QModelIndex &index = rows.at(row);
        if (!selection->rowIntersectsSelection(index.row(), index.parent()))
            continue;
        if (current.row() == index.row() && current.parent() == index.parent())
            return row;
        if (first < 0)
            first = row;
    }
    return first;
}

ShownRows comboRows(const QComboBox &combo)
{
    ShownRows shown;
    shown.columns = QStringList{QString()};
    for (int row = 0; row < combo.count(); ++row)
        shown.rows.append({combo.itemText(row)});
    shown.selected = combo.currentIndex();
    return shown;
}

} // namespace

QWidget *fieldOf(QWidget &control)
{
    if (isField(control))
        return &control;
    if (const auto combo = qobject_cast<QComboBox *>(&control))
        return combo->lineEdit();
    const auto children = control.findChildren<QWidget *>();
    const auto field = std::find_if(children.begin(), children.end(), [](const QWidget *child) {
        // The entries of lists and calendars have fields of their own that are no part of the control's text.
        return isField(*child) && child->objectName() != QLatin1String("qt_spinbox_lineedit")
               && !child->isHidden();
    });
    return field == children.end() ? nullptr : *field;
}

QString shownText(const QWidget &control)
{
    if (const auto label = qobject_cast<const QLabel *>(&control))
        return labelText(*label);
    if (const auto line = qobject_cast<const QLineEdit *>(&control))
        return line->displayText();
    if (const auto button = qobject_cast<const QAbstractButton *>(&control))
        return clivara::withoutMnemonic(button->text());
    if (const auto combo = qobject_cast<const QComboBox *>(&control))
        return combo->currentText();
    if (const auto plain = qobject_cast<const QPlainTextEdit *>(&control))
        return plain->toPlainText();
    if (const auto rich = qobject_cast<const QTextEdit *>(&control))
        return rich->toPlainText();
    if (const auto group = qobject_cast<const QGroupBox *>(&control))
        return clivara::withoutMnemonic(group->title());
    if (const auto spin = qobject_cast<const QAbstractSpinBox *>(&control))
        return spin->text();
    if (const auto progress = qobject_cast<const QProgressBar *>(&control))
        return progress->text();
    if (const auto view = qobject_cast<const QAbstractItemView *>(&control)) {
        const QModelIndex current = view->currentIndex();
        return current.isValid() ? cellText(*view, current) : QString();
    }
    const QWidget *field = fieldOf(const_cast<QWidget &>(control));
    return field && field != &control ? shownText(*field) : QString();
}

QColor shownColor(const QWidget &control)
{
    control.ensurePolished();
    QPalette::ColorRole role = control.foregroundRole();
    if (isField(control) || qobject_cast<const QAbstractItemView *>(&control))
        role = QPalette::Text;
    else if (const QWidget *field = fieldOf(const_cast<QWidget &>(control)); field)
        return shownColor(*field);
    const auto group = control.isEnabled() ? QPalette::Active : QPalette::Disabled;
    return control.palette().color(group, role);
}

std::optional<bool> shownChecked(const QWidget &control)
{
    if (const auto button = qobject_cast<const QAbstractButton *>(&control); button && button->isCheckable())
        return button->isChecked();
    if (const auto group = qobject_cast<const QGroupBox *>(&control); group && group->isCheckable())
        return group->isChecked();
    return std::nullopt;
}

ShownRows shownRows(const QWidget &control)
{
    if (const auto combo = qobject_cast<const QComboBox *>(&control))
        return comboRows(*combo);
    const auto view = qobject_cast<const QAbstractItemView *>(&control);
    if (!view)
        throw UserError(QStringLiteral("%1 non ha righe").arg(control.objectName()));
    if (!view->model())
        return {};
    ShownRows shown;
    const QList<int> columns = displayedColumns(*view);
    for (const int column : columns) {
        const bool hasHeadings = columnHeader(*view);
        shown.columns.append(hasHeadings ? view->model()->headerData(column, Qt::Horizontal).toString()
                                         : QString());
    }
    const QList<QModelIndex> rows = displayedRows(*view);
    for (const QModelIndex &row : rows) {
        QStringList texts;
        for (const int column : columns)
            texts.append(cellText(*view, row.siblingAtColumn(column)));
        shown.rows.append(texts);
    }
    shown.selected = selectedRow(*view, rows);
    return shown;
}

QList<QModelIndex> displayedRows(const QAbstractItemView &view)
{
    const QList<int> columns = displayedColumns(view);
    QList<QModelIndex> rows;
    if (view.model() && !columns.isEmpty())
        appendRows(view, columns.first(), view.rootIndex(), rows);
    return rows;
}

} // namespace orvale
