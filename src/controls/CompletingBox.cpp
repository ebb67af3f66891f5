// SPDX-License-Identifier: Apache-2.0
#include "controls/CompletingBox.h"

#include <QCompleter>
#include <QLineEdit>

namespace clivara {

namespace {

constexpr int longestText = 1000000;

} // namespace

CompletingBox::CompletingBox(QWidget *parent)
    : ChoiceBox(parent)
{
    setEditable(true);
    setInsertPolicy(NoInsert);
    lineEdit()->setMaxLength(longestText);
    completer()->setCaseSensitivity(Qt::CaseInsensitive);
    completer()->setFilterMode(Qt::MatchContains);
    completer()->setCompletionMode(QCompleter::PopupCompletion);
}

void CompletingBox::showText(const QString &text)
{
    showIndex(findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive));
    setEditText(text);
    lineEdit()->home(false);
}

} // namespace clivara
