// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The programs of MariaDB that a private server consists of.
#include "host/server/serverprograms.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ServerPrograms)
};

const int greetingPatience = 1000; // milliseconds

} // namespace

QString findProgram(const QString &name, QString *error)
{
    QString program = QStandardPaths::findExecutable(name);
    if (program.isEmpty())
        program = QStandardPaths::findExecutable(
            name, {QStringLiteral("/usr/sbin"), QStringLiteral("/usr/local/sbin")});
    if (program.isEmpty())
        *error = Text::tr("%1 was not found; a private database needs the packages "
                          "mariadb-server-core and mariadb-client-core")
                     .arg(name);
    return program;
}

QStringList sizeOptions()
{
    QStringList options {QStringLiteral("--innodb-log-file-size=16M"),
                         QStringLiteral("--innodb-buffer-pool-size=32M"),
                         QStringLiteral("--aria-pagecache-buffer-size=2M"),
                         QStringLiteral("--key-buffer-size=1M"),
                         QStringLiteral("--max-connections=50"),
                         QStringLiteral("--table-open-cache=400")};
    // It refuses to run as the superuser without being told to.
    // Written so, the script that makes the data leaves it to the server; it would look after the
    // owner of files by itself otherwise, also of some that belong to the machine's own server.
    if (::geteuid() == 0)
        options.append(QStringLiteral("-uroot"));
    return options;
}

bool answers(const QString &socketPath)
{
    const QByteArray path = QFile::encodeName(socketPath);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (path.size() >= static_cast<int>(sizeof(address.sun_path)))
        return false;
    std::memcpy(address.sun_path, path.constData(), static_cast<size_t>(path.size()));

    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (descriptor < 0)
        return false;
    bool greeted = false;
    if (::connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof(address)) == 0) {
        // The server speaks first.
        pollfd greeting = {descriptor, POLLIN, 0};
        char byte;
        greeted = ::poll(&greeting, 1, greetingPatience) == 1
            && ::recv(descriptor, &byte, 1, 0) == 1;
    }
    ::close(descriptor);
    return greeted;
}

bool startedAndEndedWell(const QProcess &process)
{
    return process.error() != QProcess::FailedToStart
        && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

QString faultLine(const QByteArray &output)
{
    const QStringList lines = QString::fromLocal8Bit(output.trimmed()).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (line.startsWith(QStringLiteral("ERROR")))
            return line;
    }
    return lines.last();
}
