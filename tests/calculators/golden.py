#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Computes the tables that the formulas of the calculators are compared with.

usage: golden.py TABLE

TABLE is risk, cockcroft, mdrd, ldl or metabolic. One case a line: the inputs, then the result, between
blanks. Computed from the published formulas in decimal arithmetic of 40 digits, so that nothing is shared
with the program but the formulas: no code, no mathematical library, no rounding of binary numbers. Results
have 20 digits.
"""

import itertools
import sys
from decimal import ROUND_HALF_EVEN, Decimal, getcontext

getcontext().prec = 40

AGES = range(30, 81)
SEXES = ("M", "F")


def show(value):
    return f"{value:.20g}"


# Ten-year risk of a first major cardiovascular event: 1 - S ** exp(sum of coefficient * input - centre).
RISK = {
    # age, systolic, total cholesterol, HDL, smoker, diabetic, treated; centre; survival
    "M": (("0.076", "0.013", "0.006", "-0.013", "0.508", "0.462", "0.49"), "6.583", "0.953"),
    "F": (("0.079", "0.016", "0.003", "-0.015", "0.773", "0.339", "0.59"), "6.016", "0.989"),
}


def risk():
    edges = itertools.product((90, 200), (130, 320), (20, 100))
    factors = list(itertools.product((0, 1), repeat=3))
    for (pressure, cholesterol, hdl), age, sex, (smoker, diabetic, treated) in itertools.product(
        edges, AGES, SEXES, factors
    ):
        coefficients, centre, survival = RISK[sex]
        inputs = (age, pressure, cholesterol, hdl, smoker, diabetic, treated)
        score = sum(Decimal(c) * v for c, v in zip(coefficients, inputs)) - Decimal(centre)
        yield (sex, *inputs, show(1 - Decimal(survival) ** score.exp()))


# Cockcroft and Gault 1976: (140 - age) * weight / (72 * creatinine), women * 0.85; ml/min.
def cockcroft():
    for age, sex, weight, creatinine in itertools.product(
        AGES, SEXES, ("35", "70", "70.5", "150"), ("0.3", "0.9", "1", "1.25", "12")
    ):
        clearance = (140 - age) * Decimal(weight) / (72 * Decimal(creatinine))
        yield sex, age, weight, creatinine, show(clearance * Decimal("0.85") if sex == "F" else clearance)


# Simplified MDRD (constant 186): creatinine ** -1.154 * age ** -0.203, women * 0.742, African origin * 1.212.
def mdrd():
    for age, sex, creatinine, african in itertools.product(
        AGES, SEXES, ("0.3", "0.9", "1", "1.25", "12"), (0, 1)
    ):
        rate = 186 * Decimal(creatinine) ** Decimal("-1.154") * Decimal(age) ** Decimal("-0.203")
        rate *= Decimal("0.742") if sex == "F" else 1
        rate *= Decimal("1.212") if african else 1
        yield sex, age, creatinine, african, show(rate)


# Friedewald 1972: total - HDL - triglycerides / 5, triglycerides as a whole number, halves to even; mg/dl.
def ldl():
    for total, hdl, triglycerides in itertools.product(
        ("130", "200", "212.6", "320"),
        ("20", "39.5", "50", "100"),
        ("35", "149.5", "150", "150.5", "151.5", "152.5", "400", "401", "1000000"),
    ):
        whole = Decimal(triglycerides).quantize(Decimal(1), rounding=ROUND_HALF_EVEN)
        yield total, hdl, triglycerides, show(Decimal(total) - (Decimal(hdl) + whole / 5))


# The metabolic syndrome: three criteria of six, every one at its threshold and one unit either side of it.
def metabolic():
    def around(threshold):
        return threshold - 1, threshold, threshold + 1

    for sex, (region, age) in itertools.product(
        ("M", "F", "?"), (("16", 24), ("16", 25), ("16", 70), ("16", 71), ("03", 24), ("03", 71))
    ):
        man = sex == "M"
        for waist, systolic, diastolic, glucose, hdl, triglycerides in itertools.product(
            around(102 if man else 88), around(130), around(85), around(110), around(40 if man else 50), around(150)
        ):
            criteria = (
                waist >= (102 if man else 88),
                systolic >= 130,
                diastolic >= 85,
                glucose >= 110,
                hdl < (40 if man else 50),
                triglycerides > 150,
            )
            outside = region == "16" and not 25 <= age <= 70
            verdict = int(sum(criteria) >= 3 and not outside)
            yield sex, age, region, waist, systolic, diastolic, glucose, hdl, triglycerides, verdict


TABLES = {"risk": risk, "cockcroft": cockcroft, "mdrd": mdrd, "ldl": ldl, "metabolic": metabolic}


def main():
    if len(sys.argv) != 2 or sys.argv[1] not in TABLES:
        sys.exit(__doc__.strip())
    for case in TABLES[sys.argv[1]]():
        print(*case)


if __name__ == "__main__":
    main()
