// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace orvale {

class Practice;

// One kind of thing found in a practice.
struct Finding {
    // An inconsistency has to be put right; what is only worth knowing is as it may be.
    enum class Kind { Inconsistency, WorthKnowing };
    Kind kind = Kind::Inconsistency;
    QString text; // what it is, in one line that ends with the names of the fields that the keys are of
    int count = 0;
    QStringList keys; // in order; the fields of a key are joined by " / "
};

// Reads a practice through: pages and indexes of its files, rows that belong to nothing, code strings of
// wrong length, keys that stand twice, problems of unknown state, rows that an import refused. Empty when
// there is nothing to tell. Of each finding at most `mostKeys` keys are kept. Throws dao::Error when the
// practice cannot be read.
QList<Finding> checkPractice(Practice &practice, int mostKeys = 20);

} // namespace orvale
