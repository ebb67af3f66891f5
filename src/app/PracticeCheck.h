// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace orvale {

class Practice;

// One kind of inconsistency found in a practice.
struct Inconsistency {
    QString text; // what is wrong, in one line
    int count = 0;
    QStringList keys; // of the first 20, in order
};

// Reads a practice through: pages and indexes of its files, rows that belong to nothing, code strings of
// wrong length, keys that stand twice, problems of unknown state. Empty when all is well. Throws dao::Error
// when the practice cannot be read.
QList<Inconsistency> checkPractice(Practice &practice);

} // namespace orvale
