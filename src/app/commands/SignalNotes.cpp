// SPDX-License-Identifier: Apache-2.0
#include "app/commands/SignalNotes.h"

namespace orvale {

namespace {

volatile std::sig_atomic_t caughtSignal = 0;

void noteSignal(int signal)
{
    caughtSignal = signal;
}

} // namespace

SignalNotes::SignalNotes()
{
    caughtSignal = 0;
    struct sigaction action = {};
    action.sa_handler = noteSignal;
    action.sa_flags = SA_RESETHAND | SA_RESTART;
    sigaction(SIGINT, &action, &m_interrupt);
    sigaction(SIGTERM, &action, &m_terminate);
}

SignalNotes::~SignalNotes()
{
    sigaction(SIGINT, &m_interrupt, nullptr);
    sigaction(SIGTERM, &m_terminate, nullptr);
}

void SignalNotes::check() const
{
    if (caughtSignal != 0)
        throw Interrupted();
}

int SignalNotes::status() const
{
    return 128 + caughtSignal;
}

} // namespace orvale
