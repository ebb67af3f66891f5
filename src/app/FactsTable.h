// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QTableWidget>

namespace orvale {

// A table of texts to read, part of the patient panel. In a narrow place its last column makes room for the
// others.
class FactsTable final : public QTableWidget {
    Q_OBJECT

public:
    explicit FactsTable(QWidget *parent = nullptr);

    // The column `stretched` takes the width that the others leave. The last column shows from a width of
    // `fullCharacters` average characters on; 0: always.
    void setTitles(const QStringList &titles, int stretched, int fullCharacters = 0);
    // Texts by row and column; each is its own tool tip, for when it is cut. Without rows the line `nothing`
    // shows.
    void setRows(const QList<QStringList> &rows, const QString &nothing);

    // No more than the smallest height: the panel shares out what is left.
    QSize sizeHint() const override { return minimumSize(); }

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    int m_fullCharacters = 0;
};

} // namespace orvale
