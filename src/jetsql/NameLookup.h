// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <functional>

namespace dao {

// Does the work in a thread of its own and waits for it for so long. False when it has not ended by then: it goes on, and
// may use nothing but its own.
bool endsWithin(int milliseconds, std::function<void()> work);

// False when a server's name is looked up for longer than a connection may take, as when the network is gone: whoever
// needs its address would wait for as long again. True for addresses, sockets' folders, and names that nobody has.
bool isNameAnswered(const QByteArray &host);

} // namespace dao
