// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>
#include <QStyledItemDelegate>

namespace clivara {

// Beginnings of the words of a text, as positions and lengths in it, that are what was searched for; without regard
// to case and accents, in the order of the text and not overlapping.
struct Match {
    qsizetype position;
    qsizetype length;
    bool operator==(const Match &) const = default;
};
QList<Match> wordMatches(const QString &text, const QString &searched);

// Draws the entries of a list with the beginnings of words that were searched for in bold.
class MatchDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void setSearched(const QString &text) { m_searched = text; }

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    QString m_searched;
};

} // namespace clivara
