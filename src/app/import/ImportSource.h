// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetfile/JetFileReader.h"

#include <QString>
#include <memory>
#include <vector>

namespace orvale {

// One Jet file of a practice that is to be imported.
struct SourceFile {
    QString database; // the role: "clinical"...
    QString fileName; // "Orvale.mdb"; as it is written in the folder when it is there
    std::unique_ptr<jetfile::JetFileReader> reader; // null when the folder does not have it
};

// The Jet files of a folder, in the order of practiceFiles(), their definitions read. Names are matched
// without regard to case. Throws UserError: no such folder, no Orvale.mdb, two files of one name, a file that
// cannot be read.
std::vector<SourceFile> openSource(const QString &folder);

} // namespace orvale
