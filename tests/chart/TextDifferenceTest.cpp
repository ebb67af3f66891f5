// SPDX-License-Identifier: Apache-2.0
#include "chart/TextDifference.h"

#include <QStringList>
#include <gtest/gtest.h>

namespace clivara {
namespace {

// The text with what differs in brackets.
std::string marked(const QString &text, const QList<TextDifference> &differences, bool isFirst)
{
    QString shown;
    qsizetype at = 0;
    for (const TextDifference &difference : differences) {
        const qsizetype from = isFirst ? difference.firstAt : difference.secondAt;
        const qsizetype length = isFirst ? difference.firstLength : difference.secondLength;
        shown += text.mid(at, from - at) + u'[' + text.mid(from, length) + u']';
        at = from + length;
    }
    return (shown + text.mid(at)).toStdString();
}

TEST(TextDifference, FindsTheWordsThatDiffer)
{
    struct Case {
        const char *first, *second;
        const char *inFirst, *inSecond;
    };
    const Case cases[]{
        {"", "", "", ""},
        {"uguale, sì.", "uguale, sì.", "uguale, sì.", "uguale, sì."},
        {"", "tosse", "[]", "[tosse]"},
        {"tosse da ieri", "tosse", "tosse[ da ieri]", "tosse[]"},
        {"tosse secca", "tosse grassa", "tosse [secca]", "tosse [grassa]"},
        {"PA 130/80, FC 72", "PA 135/80, FC 72", "PA [130]/80, FC 72", "PA [135]/80, FC 72"},
        {"uno due tre quattro", "uno DUE tre 4", "uno [due] tre [quattro]", "uno [DUE] tre [4]"},
        {"Attività fisica regolare.", "Controllo tra un mese.", "[Attività fisica regolare].",
         "[Controllo tra un mese]."},
        {"prima\nseconda", "prima\nnuova\nseconda", "prima\n[]seconda", "prima\n[nuova\n]seconda"},
        {"età", "eta", "[età]", "[eta]"},
        {"no no no", "no no", "no no[ no]", "no no[]"},
        {"tutto altro", "niente", "[tutto altro]", "[niente]"},
        {"🙂 bene", "🙂 male", "🙂 [bene]", "🙂 [male]"},
    };
    for (const Case &c : cases) {
        const QString first = QString::fromUtf8(c.first);
        const QString second = QString::fromUtf8(c.second);
        const QList<TextDifference> found = textDifferences(first, second);
        EXPECT_EQ(marked(first, found, true), c.inFirst);
        EXPECT_EQ(marked(second, found, false), c.inSecond);
    }
}

// Whatever the texts are, they are the same but for what is said to differ, and they are compared in no time.
TEST(TextDifference, LeavesNothingOutOfAnyTexts)
{
    const QString text = QStringLiteral("visita di controllo, PA 130/80; terapia invariata\n").repeated(400);
    QString changed = text;
    changed.replace(text.size() / 3, 7, "altro");
    changed.insert(text.size() / 2, "aggiunto ");
    QStringList texts{text, changed, QString(text).remove(u'i'), text.mid(11), QString(), " "};
    std::uint32_t seed = 7;
    for (int i = 0; i < 30; ++i) {
        QString random;
        for (int k = 0; k < 40; ++k)
            random += "ab \n."[qsizetype((seed = seed * 1664525u + 1013904223u) >> 24) % 5];
        texts.append(random);
    }
    for (const QString &first : texts) {
        for (const QString &second : texts) {
            qsizetype a = 0;
            qsizetype b = 0;
            for (const TextDifference &difference : textDifferences(first, second)) {
                ASSERT_EQ(first.mid(a, difference.firstAt - a), second.mid(b, difference.secondAt - b));
                ASSERT_TRUE(difference.firstLength + difference.secondLength > 0);
                a = difference.firstAt + difference.firstLength;
                b = difference.secondAt + difference.secondLength;
            }
            ASSERT_EQ(first.mid(a), second.mid(b));
        }
    }
    EXPECT_EQ(textDifferences(text, changed).size(), 2);
}

} // namespace
} // namespace clivara
