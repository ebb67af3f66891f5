// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <stdexcept>

namespace orvale {

// Something a person asked for cannot be done; the text is one clear Italian line.
class UserError : public std::runtime_error {
public:
    explicit UserError(const QString &text)
        : std::runtime_error(text.toStdString())
        , m_text(text)
    {
    }
    QString text() const { return m_text; }

private:
    QString m_text;
};

} // namespace orvale
