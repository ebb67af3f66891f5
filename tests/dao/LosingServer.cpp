// SPDX-License-Identifier: Apache-2.0
#include "LosingServer.h"

#include <array>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

constexpr int stepMs = 20;

sockaddr_un addressOf(const QByteArray &path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (std::size_t(path.size()) >= sizeof address.sun_path)
        throw std::runtime_error("the socket's path is too long");
    std::copy(path.begin(), path.end(), address.sun_path);
    return address;
}

bool isReadable(int socket)
{
    pollfd waiting{socket, POLLIN, 0};
    return ::poll(&waiting, 1, stepMs) == 1;
}

// Passes on what has come; empty when the other side has closed.
QByteArray received(int socket)
{
    std::array<char, 65536> buffer;
    const ssize_t size = ::recv(socket, buffer.data(), buffer.size(), 0);
    return size > 0 ? QByteArray(buffer.data(), size) : QByteArray();
}

} // namespace

LosingServer::LosingServer(const QByteArray &folder, const QByteArray &serverFolder)
    : m_serverSocket(serverFolder + "/.s.PGSQL.5432")
    , m_listening(::socket(AF_UNIX, SOCK_STREAM, 0))
{
    const sockaddr_un address = addressOf(folder + "/.s.PGSQL.5432");
    if (::bind(m_listening, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0
        || ::listen(m_listening, 8) != 0)
        throw std::runtime_error("the proxy cannot listen");
    m_thread = std::thread([this] { serve(); });
}

LosingServer::~LosingServer()
{
    m_stopping = true;
    m_thread.join();
    for (std::thread &connection : m_connections)
        connection.join();
    ::close(m_listening);
}

void LosingServer::lose(Loses what, const QByteArray &text, Then then)
{
    m_text = text;
    m_then = then;
    m_loses = what;
}

void LosingServer::serve()
{
    while (!m_stopping) {
        if (isReadable(m_listening))
            m_connections.emplace_back(
                [this, client = ::accept(m_listening, nullptr, nullptr)] { pass(client); });
    }
}

void LosingServer::pass(int client)
{
    const int server = ::socket(AF_UNIX, SOCK_STREAM, 0);
    const sockaddr_un address = addressOf(m_serverSocket);
    bool open =
        !m_refuses && ::connect(server, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    while (open && !m_stopping) {
        if (isReadable(client)) {
            const QByteArray message = received(client);
            const Loses loses = m_loses != Loses::Nothing && message.contains(m_text)
                                    ? m_loses.exchange(Loses::Nothing)
                                    : Loses::Nothing;
            if (loses != Loses::Statement)
                ::send(server, message.constData(), std::size_t(message.size()), MSG_NOSIGNAL);
            if (loses == Loses::Answer)
                received(server); // it has been done
            if (loses != Loses::Nothing && m_then == Then::IsSilent) {
                while (!m_stopping && !(isReadable(client) && received(client).isEmpty())) { }
                break;
            }
            open = loses == Loses::Nothing && !message.isEmpty();
        }
        if (open && isReadable(server)) {
            const QByteArray answer = received(server);
            ::send(client, answer.constData(), std::size_t(answer.size()), MSG_NOSIGNAL);
            open = !answer.isEmpty();
        }
    }
    ::close(server);
    ::close(client);
}
