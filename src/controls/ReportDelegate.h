// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStyledItemDelegate>

class QTextLayout;

namespace clivara {

class ReportView;

// Draws the cells of a report: the icon beside the first line; the text column over several lines, the last
// one elided; strong and quiet rows; a text's label quieter than the rest and its value stronger. A tool tip
// has the whole text where the cell does not.
class ReportDelegate final : public QStyledItemDelegate {
    Q_OBJECT

public:
    static constexpr int horizontalPadding = 6; // pixels, left and right of a cell's text

    explicit ReportDelegate(ReportView &view);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override;

private:
    QFont fontOf(const QModelIndex &index) const;
    int textWidth(const QModelIndex &index) const;
    void drawLines(QPainter &painter, const QRect &area, const QModelIndex &index, bool selected) const;

    ReportView &m_view;
};

} // namespace clivara
