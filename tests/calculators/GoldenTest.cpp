// SPDX-License-Identifier: Apache-2.0
#include "evaluations/CardiovascularRules.h"
#include "evaluations/MetabolicRules.h"
#include "inputs/CalculatorRules.h"

#include <QProcess>
#include <cmath>
#include <gtest/gtest.h>

// The formulas against tables that golden.py computes from the same publications with its own arithmetic.
namespace clivara {
namespace {

constexpr double tolerance = 1e-12;

QList<QStringList> table(const QString &name)
{
    QProcess script;
    script.start(QStringLiteral(PYTHON), {QStringLiteral(GOLDEN_SCRIPT), name});
    EXPECT_TRUE(script.waitForFinished(60000)) << script.errorString().toStdString();
    EXPECT_EQ(script.exitCode(), 0) << script.readAllStandardError().toStdString();
    QList<QStringList> cases;
    for (const QString &line :
         QString::fromLatin1(script.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts))
        cases.append(line.split(' '));
    return cases;
}

// Every case of a table: the result of the program, from its inputs, against the last column.
template <typename Compute>
void compare(const char *name, qsizetype count, const Compute &compute)
{
    const auto cases = table(name);
    EXPECT_EQ(cases.size(), count);
    int wrong = 0;
    for (const QStringList &inputs : cases) {
        const double expected = inputs.last().toDouble();
        const double result = compute(inputs);
        if (std::abs(result - expected) <= tolerance)
            continue;
        if (++wrong <= 5)
            ADD_FAILURE() << inputs.join(' ').toStdString() << ", not " << std::setprecision(17) << result;
    }
    EXPECT_EQ(wrong, 0);
}

TEST(Golden, CardiovascularRisk)
{
    compare("risk", 8 * 51 * 2 * 8, [](const QStringList &of) {
        return CalcolaRCV(riskRow(of[0]), of[1].toInt(), of[5].toInt(), of[2].toInt(), of[3].toInt(),
                          of[4].toInt(), of[6].toInt(), of[7].toInt());
    });
}

TEST(Golden, CreatinineClearance)
{
    compare("cockcroft", 51 * 2 * 4 * 5, [](const QStringList &of) {
        return cockcroftClearanceMlMin(sexFromText(of[0]), of[1].toDouble(), of[2].toDouble(),
                                       of[3].toDouble())
            .value_or(NAN);
    });
}

TEST(Golden, FiltrationRate)
{
    compare("mdrd", 51 * 2 * 5 * 2, [](const QStringList &of) {
        return mdrdGfrMlMin(sexFromText(of[0]), of[1].toDouble(), of[2].toDouble(), of[3] == u"1")
            .value_or(NAN);
    });
}

TEST(Golden, LdlCholesterol)
{
    compare("ldl", 4 * 4 * 9, [](const QStringList &of) {
        return ldlMgDl(of[0].toDouble(), of[1].toDouble(), of[2].toDouble()).value_or(NAN);
    });
}

TEST(Golden, MetabolicSyndrome)
{
    compare("metabolic", 3 * 6 * 729, [](const QStringList &of) {
        return CalcolaSM(
            of[0], of[1].toInt(),
            {of[3].toInt(), of[4].toInt(), of[5].toInt(), of[6].toInt(), of[7].toInt(), of[8].toInt()},
            of[2]);
    });
}

} // namespace
} // namespace clivara
