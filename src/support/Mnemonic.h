// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QRegularExpression>
#include <QString>

namespace clivara {

// A caption as it is read: "&&" is a real ampersand, a lone one only marks the letter after it.
inline QString withoutMnemonic(QString caption)
{
    static const QRegularExpression mark(QStringLiteral("&(.)"));
    return caption.replace(mark, QStringLiteral("\\1"));
}

} // namespace clivara
