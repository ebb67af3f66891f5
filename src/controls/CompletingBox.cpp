// SPDX-License-Identifier: Apache-2.0
#include "controls/CompletingBox.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QFocusEvent>
#include <QLineEdit>

namespace clivara {

namespace {

constexpr int longestText = 1000000;

// Its list goes when the field is left: by default it would stay and take the keys meant for the next field.
class LeavingCompleter final : public QCompleter {
public:
    using QCompleter::QCompleter;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::FocusOut && watched == widget()) {
            const auto reason = static_cast<const QFocusEvent *>(event)->reason();
            if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason)
                popup()->hide();
        }
        return QCompleter::eventFilter(watched, event);
    }
};

} // namespace

CompletingBox::CompletingBox(QWidget *parent)
    : ChoiceBox(parent)
{
    setEditable(true);
    setInsertPolicy(NoInsert);
    lineEdit()->setMaxLength(longestText);
    auto *const names = new LeavingCompleter(model(), this);
    names->setCaseSensitivity(Qt::CaseInsensitive);
    names->setFilterMode(Qt::MatchContains);
    names->setCompletionMode(QCompleter::PopupCompletion);
    setCompleter(names);
}

void CompletingBox::showText(const QString &text)
{
    showIndex(findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive));
    setEditText(text);
    lineEdit()->home(false);
}

} // namespace clivara
