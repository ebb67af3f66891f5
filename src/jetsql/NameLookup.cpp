// SPDX-License-Identifier: Apache-2.0
#include "jetsql/NameLookup.h"

#include <chrono>
#include <future>
#include <netdb.h>
#include <thread>

namespace dao {
namespace {

constexpr int longestLookupMs = 3000; // as long as the connecting itself

} // namespace

bool endsWithin(int milliseconds, std::function<void()> work)
{
    std::packaged_task<void()> task(std::move(work));
    const std::future<void> end = task.get_future();
    std::thread(std::move(task)).detach();
    return end.wait_for(std::chrono::milliseconds(milliseconds)) == std::future_status::ready;
}

bool isNameAnswered(const QByteArray &host)
{
    if (host.isEmpty() || host.startsWith('/'))
        return true;
    return endsWithin(longestLookupMs, [host] {
        addrinfo *found = nullptr;
        if (::getaddrinfo(host.constData(), nullptr, nullptr, &found) == 0)
            ::freeaddrinfo(found);
    });
}

} // namespace dao
