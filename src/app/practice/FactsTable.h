// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QIcon>
#include <QTableWidget>

namespace orvale {

// What stands in one cell.
struct Fact {
    Fact(const QString &shown)
        : text(shown)
    {
    }
    QString text;
    QIcon icon = {};
    QString meaning = {}; // of icon or mark, in words: for the tool tip and for a screen reader
    bool isMarked = false; // to be noticed: its text begins with a sign, and it is bold
};

// A table of texts to read, part of the patient panel. In a narrow place its last column makes room for the
// others, and then it scrolls sideways: the column that takes what is left always keeps its names readable.
class FactsTable final : public QTableWidget {
    Q_OBJECT

public:
    explicit FactsTable(QWidget *parent = nullptr);

    // The column `stretched` takes the width that the others leave. The last column shows from a width of
    // `fullCharacters` average characters on; 0: always.
    void setTitles(const QStringList &titles, int stretched, int fullCharacters = 0);
    // By row and column; each text is its own tool tip, for when it is cut. Without rows the line `nothing`
    // shows.
    void setRows(const QList<QList<Fact>> &rows, const QString &nothing);

    // No more than the smallest height: the panel shares out what is left.
    QSize sizeHint() const override { return minimumSize(); }

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void fitColumns();

    int m_fullCharacters = 0;
    int m_stretched = 0;
};

} // namespace orvale
