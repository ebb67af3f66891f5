// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

namespace jetfile {

// What the first page of a Jet file says about the whole file.
struct JetHeader {
    int jetVersion = 0; // 3 or 4
    qint64 pages = 0;

    // Throws SourceError, with a line that names the file, when there is no file to read, it is no Jet file
    // or of a newer format, it is cut off in the middle of a page, encrypted or protected by a password.
    static JetHeader read(const QString &path);
};

} // namespace jetfile
