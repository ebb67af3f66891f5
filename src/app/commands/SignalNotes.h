// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <csignal>

namespace orvale {

// While this lives, SIGINT and SIGTERM only set a flag, so that unfinished work can be rolled back. The
// second of its kind ends the program at once.
class SignalNotes {
public:
    // Thrown through the work, which then rolls back.
    struct Interrupted { };

    SignalNotes();
    ~SignalNotes();
    SignalNotes(const SignalNotes &) = delete;
    SignalNotes &operator=(const SignalNotes &) = delete;

    void check() const; // throws Interrupted when a signal has come
    int status() const; // of a program that ends because of it

private:
    struct sigaction m_interrupt = {};
    struct sigaction m_terminate = {};
};

} // namespace orvale
