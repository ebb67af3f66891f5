// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <atomic>
#include <thread>
#include <vector>

// Stands between programs and the tests' database server. Told to, it lets a statement through and then cuts
// the connection before the server's answer comes back, or before the statement reaches the server; or it
// does not cut it, and nothing comes back any more.
class LosingServer {
public:
    enum class Loses { Nothing, Answer, Statement };
    enum class Then { Cuts, IsSilent };

    // Listens on a socket in `folder` and passes everything on to the one in `serverFolder`.
    LosingServer(const QByteArray &folder, const QByteArray &serverFolder);
    ~LosingServer();

    // The next message with that text in it is lost, or its answer; all before and after go through.
    void lose(Loses what, const QByteArray &text, Then then = Then::Cuts);
    // Who connects from now on is cut off at once.
    void refuseFurtherConnections() { m_refuses = true; }

private:
    void serve();
    void pass(int client);

    QByteArray m_serverSocket;
    QByteArray m_text; // written before m_loses, as is what follows
    Then m_then = Then::Cuts;
    std::atomic<Loses> m_loses = Loses::Nothing;
    std::atomic<bool> m_stopping = false;
    std::atomic<bool> m_refuses = false;
    int m_listening = -1;
    std::thread m_thread;
    std::vector<std::thread> m_connections;
};
