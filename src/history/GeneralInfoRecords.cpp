// SPDX-License-Identifier: Apache-2.0
#include "history/GeneralInfoRecords.h"

#include "chart/RecordFields.h"
#include "chart/WorkingState.h"

namespace clivara {

namespace {

QString letterOf(QuestionnaireKind kind)
{
    return QString(QChar(char16_t(kind)));
}

// The day of the last save, as the journal has it; Null when it has none or cannot be read.
QVariant journalledDay(dao::Database &clinical, qint32 patientCode, QuestionnaireKind kind)
{
    try {
        return dateValue(ChangeJournal::lastChange(clinical, Questionnaire, patientCode, letterOf(kind)));
    } catch (const dao::Error &) {
        return {};
    }
}

} // namespace

StoredCode readCode(dao::Database &clinical, qint32 patientCode, QuestionnaireKind kind)
{
    const auto rows = openQuestionnaire(clinical, patientCode, letterOf(kind));
    if (rows->Eof())
        return {};
    const dao::Field code = rows->Fields(QStringLiteral("dati_paz"));
    const QVariant time = kind == QuestionnaireKind::Infections
                              ? rows->Fields(QStringLiteral("data_reg")).Value()
                              : journalledDay(clinical, patientCode, kind);
    return {true, code.isNull() ? std::nullopt : std::optional(code.text()), {{}, time.toDateTime()}};
}

void writeCode(WorkingState &state, QuestionnaireKind kind, const QString &code, const QDateTime &time)
{
    const qint32 patientCode = state.header.patientCode;
    const auto rows = openQuestionnaire(state.clinical(), patientCode, letterOf(kind));
    const bool isNew = rows->Eof();
    if (isNew)
        state.operations.addNew(*rows);
    else
        state.operations.edit(*rows);
    rows->Fields(QStringLiteral("cod_paz")).setValue(patientCode);
    rows->Fields(QStringLiteral("dati_paz")).setValue(code);
    rows->Fields(QStringLiteral("tipo_dati")).setValue(letterOf(kind));
    if (time.isValid())
        rows->Fields(QStringLiteral("data_reg")).setValue(time);
    // Who seeks the row by the index looks for an empty key, not for Null.
    if (isNew)
        rows->Fields(QStringLiteral("chiave")).setValue(QStringLiteral(""));
    state.operations.update(*rows);
    state.changeJournal().recordChange(Questionnaire, patientCode, letterOf(kind), false);
}

bool writeFreeText(WorkingState &state, const QString &text)
{
    const qint32 patientCode = state.header.patientCode;
    const auto rows = openGeneralInformation(state.clinical(), patientCode);
    if (rows->Eof())
        return false;
    state.operations.edit(*rows);
    rows->Fields(QStringLiteral("Allergie")).setValue(text);
    state.operations.update(*rows);
    state.changeJournal().recordChange(GeneralInformation, patientCode, {}, false);
    return true;
}

} // namespace clivara
