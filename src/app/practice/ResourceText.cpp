// SPDX-License-Identifier: Apache-2.0
#include "app/practice/ResourceText.h"

#include <QFile>
#include <stdexcept>

namespace orvale {

QString resourceText(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::logic_error("missing resource " + path.toStdString());
    return QString::fromUtf8(file.readAll());
}

} // namespace orvale
