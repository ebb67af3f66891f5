// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QPlainTextEdit>

namespace clivara {

// Shows one version of a text, to be read and copied, with the parts in which it differs from the other one marked by
// colour and by a line. It is as high as its text, up to some lines; a longer text scrolls.
class VersionPane : public QPlainTextEdit {
    Q_OBJECT

public:
    // A part of the text, in characters; an empty one is where the other version has more.
    struct Part {
        qsizetype at, length;
    };

    explicit VersionPane(QWidget *parent = nullptr);

    void showVersion(const QString &text, const QList<Part> &differences);
    // Brings a part into sight.
    void showPart(qsizetype index);
    // Sets a part off from the others; -1 for none.
    void mark(qsizetype current);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

private:
    QList<Part> m_differences;
};

} // namespace clivara
