// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QList>
#include <QTreeView>

namespace clivara {

// What a report's model says of a row besides the usual roles; see ReportDelegate for how it looks.
enum ReportRole {
    ToneRole = Qt::UserRole, // ReportTone; Plain when missing
    LabelRole, // int: so many characters at the text's beginning are its label
    HintRole, // stands, quiet and slanted, in a cell that has no text
    ValueRole, // int: from this character on the text is what it tells; missing: nothing stands out
};
enum class ReportTone { Plain, Strong, Quiet };

// A list or tree of whole rows for the keyboard as much as for the mouse. Ins, Enter and Del ask for what the
// buttons beside a report do; the blank bar shows the row's tool tip, or its text in full; the menu key and
// the right button ask for the context menu. Rows may be of different heights.
class ReportView : public QTreeView {
    Q_OBJECT

public:
    explicit ReportView(QWidget *parent = nullptr);

    struct Column {
        int share; // of the width, relative to the other columns' (twips of the design); 0: hidden
        QString sample; // a text that has to fit whatever the share
    };
    // The columns in the model's order; they fill the view until the doctor drags one.
    void setColumns(const QList<Column> &columns);
    // The column whose texts go on to further lines, up to `most` lines, and that the blank bar shows.
    void setTextColumn(int column, int most);
    int textColumn() const { return m_textColumn; }
    int textLines() const { return m_textLines; }
    // The view's colours; without the focus the selected row is paler, so that it is plain which list the
    // keys act on.
    QPalette rowPalette() const;
    // Stands in the view while it has no rows.
    void setPlaceholder(const QString &text);
    // The rows could not be read: the view says so, whatever it shows, so that no row is not taken for
    // nothing there.
    void setUnread(bool unread);
    bool isUnread() const { return m_unread; }

    void scrollTo(const QModelIndex &index, ScrollHint hint = EnsureVisible) override;

signals:
    void insertRequested();
    void editRequested(); // Enter, or a double click on the row that is then the current one
    void deleteRequested();
    void menuRequested(const QPoint &globalPosition);
    // A left click with Shift, Ctrl and Alt held on a row, which need not be the current one.
    void identifierRequested(const QModelIndex &row);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void drawBranches(QPainter *painter, const QRect &rect, const QModelIndex &index) const override;
    void drawRow(QPainter *painter, const QStyleOptionViewItem &option,
                 const QModelIndex &index) const override;

private:
    void layOutColumns();
    void takeDraggedWidths();
    void showWholeText();

    QList<Column> m_columns;
    int m_textColumn = 0;
    int m_textLines = 1;
    QString m_placeholder;
    bool m_unread = false;
    bool m_layingOut = false;
};

// The text for a tool tip, as rich text that wraps; what is longer than a tool tip can show is cut, and it
// says so. Empty for an empty text.
QString wholeTextTip(const QString &text);

} // namespace clivara
