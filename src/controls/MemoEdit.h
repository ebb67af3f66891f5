// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QPlainTextEdit>

namespace clivara {

// A field for a long text as the practice stores it, with CR LF at the line ends. What the doctor does not
// edit goes back as it came, to the last sign. Tab leads to the next field.
class MemoEdit : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit MemoEdit(QWidget *parent = nullptr);

    void setStoredText(const QString &text);
    QString storedText() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

private:
    QSize sizeForLines(int lines) const;

    QString m_stored;
};

} // namespace clivara
