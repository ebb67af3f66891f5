// SPDX-License-Identifier: Apache-2.0
#include "history/InfectionCode.h"

#include "data/CodePairs.h"

namespace clivara {

namespace {

constexpr int blockLength = pairLength + infectionNoteLength;
static_assert(plainInfections * pairLength + notedInfections * blockLength == infectionCodeLength);

// Where the pair of a disease stands.
constexpr qsizetype pairPosition(int infection)
{
    return infection < plainInfections ? qsizetype(infection) * pairLength
                                       : qsizetype(plainInfections) * pairLength
                                             + qsizetype(infection - plainInfections) * blockLength;
}

QString packedNote(const QString &note)
{
    QString text =
        withoutOuterBlanks(note.normalized(QString::NormalizationForm_C)).left(infectionNoteLength);
    // Half a character is none.
    if (text.size() == infectionNoteLength && text.back().isHighSurrogate())
        text.chop(1);
    return text.leftJustified(infectionNoteLength);
}

} // namespace

QString encodeInfections(const InfectionAnswers &answers)
{
    QString code;
    code.reserve(infectionCodeLength);
    for (int infection = 0; infection < plainInfections; ++infection)
        code += codePair(answers.had[std::size_t(infection)], infection);
    for (int block = 0; block < notedInfections; ++block) {
        code += codePair(answers.had[std::size_t(plainInfections + block)], block);
        code += packedNote(answers.notes[std::size_t(block)]);
    }
    return code;
}

InfectionAnswers decodeInfections(const QString &code)
{
    InfectionAnswers answers;
    if (withoutOuterBlanks(code).isEmpty())
        return answers;
    for (int infection = 0; infection < infectionCount; ++infection)
        answers.had[std::size_t(infection)] = isSelectedPair(code, pairPosition(infection));
    for (int block = 0; block < notedInfections; ++block) {
        const qsizetype position = pairPosition(plainInfections + block) + pairLength;
        answers.notes[std::size_t(block)] = withoutOuterBlanks(code.mid(position, infectionNoteLength));
    }
    return answers;
}

bool isIntactInfectionCode(const QString &code)
{
    bool intact = withoutOuterBlanks(code.mid(infectionCodeLength)).isEmpty();
    for (int infection = 0; intact && infection < infectionCount; ++infection)
        intact = isIntactPair(code, pairPosition(infection));
    return intact;
}

} // namespace clivara
