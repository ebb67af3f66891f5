// SPDX-License-Identifier: Apache-2.0
#include "jetfile/ReaderProgram.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

namespace jetfile {

namespace {

// The folder of the running program. Readers are started from several threads at once, which
// QCoreApplication::applicationDirPath() does not bear at its first call; nor is there always an application
// object.
QString programFolder()
{
    return QFileInfo(QFile::symLinkTarget(QStringLiteral("/proc/self/exe"))).path();
}

class FileActions {
public:
    FileActions() { posix_spawn_file_actions_init(&m_actions); }
    ~FileActions() { posix_spawn_file_actions_destroy(&m_actions); }
    FileActions(const FileActions &) = delete;
    FileActions &operator=(const FileActions &) = delete;
    posix_spawn_file_actions_t *get() { return &m_actions; }

private:
    posix_spawn_file_actions_t m_actions;
};

// A child of its own process group: Ctrl-C on the terminal is for this program to handle. Signals are as a
// fresh program expects them, whatever this thread has blocked.
class Attributes {
public:
    Attributes()
    {
        posix_spawnattr_init(&m_attributes);
        sigset_t set;
        sigemptyset(&set);
        posix_spawnattr_setsigmask(&m_attributes, &set);
        for (const int signal : {SIGPIPE, SIGALRM, SIGINT, SIGTERM})
            sigaddset(&set, signal);
        posix_spawnattr_setsigdefault(&m_attributes, &set);
        posix_spawnattr_setpgroup(&m_attributes, 0);
        posix_spawnattr_setflags(&m_attributes,
                                 POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP);
    }
    ~Attributes() { posix_spawnattr_destroy(&m_attributes); }
    Attributes(const Attributes &) = delete;
    Attributes &operator=(const Attributes &) = delete;
    posix_spawnattr_t *get() { return &m_attributes; }

private:
    posix_spawnattr_t m_attributes;
};

} // namespace

ReaderProgram::ReaderProgram(const QString &file, std::chrono::milliseconds patience)
    : m_patience(patience)
{
    const QByteArray program = QFile::encodeName(programFolder() + QStringLiteral("/orvale-jet-reader"));
    // The path is made absolute so that it can never be taken for an option.
    QByteArray argument = QFile::encodeName(QFileInfo(file).absoluteFilePath());
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        throw StartError(qt_error_string(errno));
    m_pipe = ends[0];
    ::fcntl(m_pipe, F_SETPIPE_SZ, 1 << 20); // fewer changes between the two programs; not needed to work

    FileActions actions;
    posix_spawn_file_actions_addopen(actions.get(), STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(actions.get(), ends[1], STDOUT_FILENO);
    Attributes attributes;
    QByteArray name = program;
    char *const arguments[] = {name.data(), argument.data(), nullptr};
    const int failure =
        ::posix_spawn(&m_process, program.constData(), actions.get(), attributes.get(), arguments, environ);
    ::close(ends[1]);
    if (failure != 0) {
        ::close(m_pipe);
        throw StartError(QStringLiteral("%1: %2").arg(QFile::decodeName(program), qt_error_string(failure)));
    }
}

ReaderProgram::~ReaderProgram()
{
    ::close(m_pipe);
    ::kill(m_process, SIGKILL);
    while (::waitpid(m_process, nullptr, 0) == -1 && errno == EINTR) { }
}

void ReaderProgram::receive(Frame &frame)
{
    QByteArray header(wire::headerSize, Qt::Uninitialized);
    read(header.data(), header.size());
    wire::Reader reader(header);
    const qsizetype size = reader.take<quint32>();
    frame.kind = reader.take<wire::Kind>();
    if (size > wire::longestFrame)
        throw wire::Error("frame too long");
    if (frame.payload.capacity() > 4 * wire::fullBatch && size < wire::fullBatch)
        frame.payload = QByteArray(); // gives back the room of a giant row
    frame.payload.resize(size);
    read(frame.payload.data(), size);
}

void ReaderProgram::read(char *bytes, qsizetype size)
{
    while (size > 0) {
        pollfd waiting{m_pipe, POLLIN, 0};
        const int ready = ::poll(&waiting, 1, int(m_patience.count()));
        if (ready == 0)
            throw Broken("nothing was sent for too long");
        if (ready < 0) {
            if (errno == EINTR)
                continue;
            throw Broken("the pipe cannot be waited for");
        }
        const ssize_t received = ::read(m_pipe, bytes, size_t(size));
        if (received == 0)
            throw Broken("the program ended too early");
        if (received < 0) {
            if (errno == EINTR)
                continue;
            throw Broken("the pipe cannot be read");
        }
        bytes += received;
        size -= received;
    }
}

} // namespace jetfile
