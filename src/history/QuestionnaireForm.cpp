// SPDX-License-Identifier: Apache-2.0
#include "history/QuestionnaireForm.h"

#include "chart/WorkingState.h"
#include "data/CodePairs.h"

#include <QLabel>

namespace clivara {

QuestionnaireForm::QuestionnaireForm(const QString &name, WorkingState &state,
                                     std::shared_ptr<QString> loadedCode, QuestionnaireKind kind)
    : SectionForm(name, state)
    , m_loadedCode(std::move(loadedCode))
    , m_kind(kind)
{
}

void QuestionnaireForm::setNotices(QLabel *label)
{
    m_notices = label;
    label->hide();
}

void QuestionnaireForm::addNotice(const QString &text)
{
    const QString before = m_notices->text();
    m_notices->setText((before.isEmpty() ? QString() : before + u'\n') + QStringLiteral("⚠  ") + text);
    m_notices->show();
}

QuestionnaireForm::Loaded QuestionnaireForm::loadCode(bool (*isIntact)(const QString &code))
{
    m_notices->clear();
    m_notices->hide();
    m_isForeign = false;
    const StoredCode stored = readCode(m_state.clinical(), m_state.header.patientCode, m_kind);
    m_read = stored;
    if (!stored.exists)
        return Loaded::NoRow;
    if (stored.code)
        *m_loadedCode = *stored.code;
    if (withoutOuterBlanks(*m_loadedCode).isEmpty())
        return Loaded::Blank;
    m_isForeign = !stored.code || !isIntact(*m_loadedCode);
    if (!stored.code) {
        addNotice(QStringLiteral("La scheda registrata di questo paziente è vuota: le voci segnate vengono "
                                 "dall'ultima scheda aperta, forse di un altro paziente."));
    } else if (m_isForeign) {
        addNotice(QStringLiteral(
            "La scheda registrata non è integra: le voci segnate vanno verificate prima di salvare."));
    }
    return Loaded::Code;
}

bool QuestionnaireForm::isChangedCode(const QString &code) const
{
    return withoutOuterBlanks(code) != withoutOuterBlanks(*m_loadedCode);
}

WriteResult QuestionnaireForm::writeAll(const std::function<WriteResult()> &write)
{
    return writeTogether(m_state, QStringLiteral("%1.%2.Salva").arg(m_state.componentName, objectName()),
                         write);
}

bool QuestionnaireForm::isCodeReplaced(const QString &code)
{
    const StoredCode stored = readCode(m_state.clinical(), m_state.header.patientCode, m_kind);
    const auto said = [](const StoredCode &row) { return withoutOuterBlanks(row.code.value_or(QString())); };
    m_elsewhere = stored;
    return said(stored) != said(m_read) && said(stored) != withoutOuterBlanks(code);
}

} // namespace clivara
