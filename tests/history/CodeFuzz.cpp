// SPDX-License-Identifier: Apache-2.0
// Feeds both decoders with damaged and with random code strings and holds them to what must be true of any string.
//
// usage: code_fuzz [ROUNDS [SEED]]
//
// Equal arguments give equal strings. A fault prints the string (as hexadecimal UTF-16) and ends with status 1.

#include "data/AllergyCode.h"
#include "history/InfectionCode.h"

#include <QStringList>
#include <cstdio>
#include <random>

namespace {

using clivara::AllergenSelection;
using clivara::InfectionAnswers;

class Strings {
public:
    explicit Strings(quint32 seed)
        : m_random(seed)
    {
    }

    int below(int bound) { return int(m_random() % quint32(bound)); }

    QString next()
    {
        switch (below(4)) {
        case 0:
            return random(below(300));
        case 1:
            return damaged(validAllergies());
        case 2:
            return damaged(validInfections());
        default:
            return below(2) ? validAllergies() : validInfections();
        }
    }

private:
    QChar character()
    {
        // What stands in codes, what is typed in notes, and what nobody expects: control characters, half
        // surrogate pairs, accents on their own, characters that lower case makes longer.
        static const QString usual = QString::fromUtf8("0123456789999999999   abcXYZ'\"%àÈ€");
        static constexpr char16_t unusual[] = {u'\0',  u'\r',  u'\n',  u'\t',  0x0130, 0x0301,
                                               0x0323, 0x0327, 0x1e9b, 0x200b, 0x202e, 0x212b,
                                               0xd83d, 0xde00, 0xd800, 0xdc00, 0xfeff, 0xffff};
        return below(6) ? usual[below(int(usual.size()))] : QChar(unusual[below(int(std::size(unusual)))]);
    }
    QString random(int length)
    {
        QString text;
        while (text.size() < length)
            text += character();
        return text;
    }
    QString validAllergies()
    {
        AllergenSelection selection;
        for (std::size_t i = 0; i < selection.size(); ++i)
            selection[i] = below(5) == 0;
        return clivara::encodeAllergies(selection);
    }
    QString validInfections()
    {
        InfectionAnswers answers;
        for (std::size_t i = 0; i < answers.had.size(); ++i)
            answers.had[i] = below(3) == 0;
        for (QString &note : answers.notes)
            note = below(2) ? random(below(40)) : QString();
        return clivara::encodeInfections(answers);
    }
    QString damaged(QString code)
    {
        for (int damages = 1 + below(6); damages > 0; --damages) {
            const int place = below(int(code.size()) + 1);
            switch (below(5)) {
            case 0:
                code.insert(place, random(1 + below(4)));
                break;
            case 1:
                code.remove(place, 1 + below(4));
                break;
            case 2:
                code.replace(place, 1, QString(character()));
                break;
            case 3:
                code.truncate(place);
                break;
            default:
                code += code.mid(place);
            }
        }
        return code;
    }

    std::mt19937 m_random;
};

// What is wrong with how the decoders take the string; empty when nothing is.
QString faultOf(const QString &code)
{
    const AllergenSelection selection = clivara::decodeAllergies(code);
    const QString allergies = clivara::encodeAllergies(selection);
    if (allergies.size() != clivara::allergyCodeLength)
        return QStringLiteral("allergies: length");
    if (!clivara::isIntactAllergyCode(allergies))
        return QStringLiteral("allergies: not intact");
    if (clivara::decodeAllergies(allergies) != selection)
        return QStringLiteral("allergies: round trip");
    // By the definition, pair by pair.
    const bool blank = QString(code).remove(u' ').isEmpty();
    for (int i = 0; i < clivara::allergenCount; ++i) {
        if (selection[std::size_t(i)] != (!blank && code.mid(2 * i, 2) != QLatin1String("99")))
            return QStringLiteral("allergies: item %1").arg(i);
    }

    const InfectionAnswers answers = clivara::decodeInfections(code);
    const QString infections = clivara::encodeInfections(answers);
    if (infections.size() != clivara::infectionCodeLength)
        return QStringLiteral("infections: length");
    if (!clivara::isIntactInfectionCode(infections))
        return QStringLiteral("infections: not intact");
    const InfectionAnswers again = clivara::decodeInfections(infections);
    if (again.had != answers.had)
        return QStringLiteral("infections: round trip");
    // Once written, notes stay as they are.
    if (clivara::decodeInfections(clivara::encodeInfections(again)) != again)
        return QStringLiteral("infections: notes");
    return {};
}

} // namespace

int main(int argc, char **argv)
{
    constexpr int shortRun = 20000;
    const int rounds = argc > 1 ? std::atoi(argv[1]) : shortRun;
    const auto seed = quint32(argc > 2 ? std::atoi(argv[2]) : 1);
    if (rounds < 1) {
        std::fputs("usage: code_fuzz [ROUNDS [SEED]]\n", stderr);
        return 2;
    }
    Strings strings(seed);
    for (int round = 0; round < rounds; ++round) {
        const QString code = strings.next();
        if (const QString fault = faultOf(code); !fault.isEmpty()) {
            QStringList units;
            for (const QChar unit : code)
                units += QString::number(unit.unicode(), 16);
            std::fprintf(stderr, "round %d: %s\n%s\n", round, qPrintable(fault),
                         qPrintable(units.join(u' ')));
            return 1;
        }
    }
    std::printf("%d strings, seed %u\n", rounds, seed);
    return 0;
}
