// SPDX-License-Identifier: Apache-2.0
#include "app/commands/TerminalProgress.h"

#include "app/import/Import.h"

#include <algorithm>
#include <cstdio>
#include <unistd.h>

namespace orvale {

TerminalProgress::TerminalProgress()
    : m_isTerminal(isatty(STDERR_FILENO) == 1)
{
}

void TerminalProgress::show(const QString &text, qint64 done, qint64 total)
{
    if (!m_isTerminal)
        return;
    constexpr int width = 30;
    const int percent = total > 0 ? int(std::clamp<qint64>(done * 100 / total, 0, 100)) : 100;
    if (text == m_text && percent == m_percent && m_isOpen)
        return;
    if (text != m_text)
        end();
    m_text = text;
    m_percent = percent;
    m_isOpen = true;
    const int filled = percent * width / 100;
    std::fprintf(stderr, "\r[%s%s] %3d%% %s", std::string(size_t(filled), '#').c_str(),
                 std::string(size_t(width - filled), '.').c_str(), percent, text.toUtf8().constData());
    std::fflush(stderr);
}

void TerminalProgress::show(const ImportProgress &progress)
{
    if (!progress.table.isEmpty())
        show((progress.proving ? QStringLiteral("prova ") : QStringLiteral("copia ")) + progress.table,
             progress.tableDone, progress.tableTotal);
}

void TerminalProgress::end()
{
    if (!m_isOpen)
        return;
    std::fputc('\n', stderr);
    std::fflush(stderr);
    m_isOpen = false;
}

} // namespace orvale
