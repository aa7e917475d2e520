// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A MariaDB server of one's own, for trying and testing.
#include "host/server/privateserver.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QThread>

#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

const int startPatience = 60000; // milliseconds
const int stopPatience = 60000; // milliseconds

/// The path of a program, also where only administrators have it in their PATH.
QString findProgram(const QString &name, QString *error)
{
    QString program = QStandardPaths::findExecutable(name);
    if (program.isEmpty())
        program = QStandardPaths::findExecutable(
            name, {QStringLiteral("/usr/sbin"), QStringLiteral("/usr/local/sbin")});
    if (program.isEmpty())
        *error = QStringLiteral("%1 was not found; a private database needs the packages "
                                "mariadb-server-core and mariadb-client-core")
                     .arg(name);
    return program;
}

bool answers(const QString &socketPath)
{
    const QByteArray path = QFile::encodeName(socketPath);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (path.size() >= static_cast<int>(sizeof(address.sun_path)))
        return false;
    std::memcpy(address.sun_path, path.constData(), static_cast<size_t>(path.size()));

    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0)
        return false;
    bool greeted = false;
    if (::connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof(address)) == 0) {
        // The server speaks first.
        pollfd greeting = {descriptor, POLLIN, 0};
        char byte;
        greeted = ::poll(&greeting, 1, startPatience) == 1 && ::recv(descriptor, &byte, 1, 0) == 1;
    }
    ::close(descriptor);
    return greeted;
}

/// Waits for the end of a process that was started.
bool endedWell(QProcess *process)
{
    process->waitForFinished(-1);
    return process->error() != QProcess::FailedToStart
        && process->exitStatus() == QProcess::NormalExit && process->exitCode() == 0;
}

/// For a server that is to start in a moment and to stay small.
QStringList sizeOptions()
{
    QStringList options {QStringLiteral("--innodb-log-file-size=16M"),
                         QStringLiteral("--innodb-buffer-pool-size=32M"),
                         QStringLiteral("--aria-pagecache-buffer-size=2M"),
                         QStringLiteral("--key-buffer-size=1M"),
                         QStringLiteral("--max-connections=50"),
                         QStringLiteral("--table-open-cache=400")};
    // It refuses to run as the superuser without being told to.
    if (::geteuid() == 0)
        options.append(QStringLiteral("--user=root"));
    return options;
}

/// The client quotes the statement before it tells what is wrong with it.
QString faultLine(const QByteArray &output)
{
    const QStringList lines = QString::fromLocal8Bit(output.trimmed()).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (line.startsWith(QStringLiteral("ERROR")))
            return line;
    }
    return lines.last();
}

} // namespace

PrivateServer::PrivateServer(const QString &directory, QObject *parent) :
    QObject(parent),
    folder(directory)
{
    connect(&server, SIGNAL(finished(int, QProcess::ExitStatus)), this,
            SLOT(handleEnd(int, QProcess::ExitStatus)));
}

PrivateServer::~PrivateServer()
{
    stop();
}

void PrivateServer::setServerOptions(const QStringList &options)
{
    furtherOptions = options;
}

bool PrivateServer::start(QString *error)
{
    if (isRunning())
        return true;
    const QString mariadbd = findProgram(QStringLiteral("mariadbd"), error);
    if (mariadbd.isEmpty() || !folder.take(error))
        return false;
    if (!folder.hasData() && !makeData(error)) {
        folder.release();
        return false;
    }

    // Whatever ends it before it answers is told by the result.
    endWanted = true;
    server.setStandardInputFile(QProcess::nullDevice());
    server.setStandardOutputFile(QProcess::nullDevice());
    // Its complaints from before it opens its log.
    server.setStandardErrorFile(folder.logPath(), QIODevice::Append);
    server.start(mariadbd, serverOptions() + furtherOptions);
    server.waitForStarted(-1);
    if (waitUntilItAnswers(error)) {
        endWanted = false;
        return true;
    }
    kill();
    return false;
}

bool PrivateServer::startOrJoin(QString *error)
{
    if (!folder.isKnown()) {
        *error = QStringLiteral("there is no private database in '%1'; 'talvenhr run' makes one")
                     .arg(folder.name());
        return false;
    }
    joinedSocket = folder.socketOfHolder();
    if (joinedSocket.isEmpty())
        return start(error);

    // It may be just starting.
    QElapsedTimer timer;
    timer.start();
    while (!answers(joinedSocket)) {
        if (timer.elapsed() > startPatience) {
            *error = QStringLiteral("the private server at '%1' does not answer").arg(joinedSocket);
            return false;
        }
        QThread::msleep(10);
    }
    return true;
}

void PrivateServer::stop()
{
    endWanted = true;
    if (isRunning()) {
        server.terminate();
        if (!server.waitForFinished(stopPatience))
            kill();
    }
    folder.release();
}

void PrivateServer::kill()
{
    endWanted = true;
    if (isRunning()) {
        server.kill();
        server.waitForFinished(-1);
    }
    folder.release();
}

bool PrivateServer::isRunning() const
{
    return server.state() == QProcess::Running;
}

bool PrivateServer::createDatabase(const QString &name, QString *error)
{
    return execute(QString(),
                   QStringLiteral("CREATE DATABASE `%1` CHARACTER SET utf8mb4").arg(name), error);
}

bool PrivateServer::loadFiles(const QString &database, const QStringList &files, QString *error)
{
    for (const QString &name : files) {
        QFile file(name);
        if (!file.open(QIODevice::ReadOnly)) {
            *error = QStringLiteral("cannot read '%1': %2").arg(name, file.errorString());
            return false;
        }
        if (!runClient(database, file.readAll(), error)) {
            error->prepend(QStringLiteral("'%1': ").arg(name));
            return false;
        }
    }
    return true;
}

bool PrivateServer::execute(const QString &database, const QString &statements, QString *error)
{
    return runClient(database, statements.toUtf8(), error);
}

bool PrivateServer::runClient(const QString &database, const QByteArray &input,
                              QString *error) const
{
    const QString client = findProgram(QStringLiteral("mariadb"), error);
    if (client.isEmpty())
        return false;

    ChildProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(client, clientOptions(database) << QStringLiteral("--batch"));
    process.write(input);
    process.closeWriteChannel();
    if (endedWell(&process))
        return true;
    *error = faultLine(process.readAllStandardError());
    if (error->isEmpty())
        *error = process.errorString();
    return false;
}

bool PrivateServer::converse(const QString &database, const QString &statements, int *exitCode,
                             QString *error)
{
    const QString client = findProgram(QStringLiteral("mariadb"), error);
    if (client.isEmpty())
        return false;
    QStringList arguments = clientOptions(database);
    if (!statements.isEmpty())
        arguments << QStringLiteral("--execute") << statements;

    // Not a ChildProcess: the terminal's signals are for the client.
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.setInputChannelMode(QProcess::ForwardedInputChannel);
    process.start(client, arguments);
    process.waitForFinished(-1);
    *exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : 1;
    return true;
}

/// Also after an attempt that was broken off: whatever that left is removed.
bool PrivateServer::makeData(QString *error)
{
    const QString install = findProgram(QStringLiteral("mariadb-install-db"), error);
    if (install.isEmpty() || !folder.clearData(error))
        return false;

    QStringList arguments {
        QStringLiteral("--no-defaults"), QStringLiteral("--auth-root-authentication-method=normal"),
        QStringLiteral("--skip-test-db"), QStringLiteral("--datadir=") + folder.dataPath()};
    arguments += sizeOptions();
    // Everything is on the disk when it ends.
    arguments.append(QStringLiteral("--innodb-flush-log-at-trx-commit=0"));
    ChildProcess process;
    // Not as an option: the script would cut it at a blank.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TMPDIR"), folder.temporaryPath());
    process.setProcessEnvironment(environment);
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(folder.installLogPath());
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(install, arguments);
    if (!endedWell(&process)) {
        *error = QStringLiteral("the data of the private server could not be made; see '%1'")
                     .arg(folder.installLogPath());
        return false;
    }
    firstUse = true;
    return folder.setHasData(error);
}

bool PrivateServer::waitUntilItAnswers(QString *error)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < startPatience) {
        if (answers(socketPath()))
            return true;
        // Sees the server's end, and rests a little otherwise.
        if (server.waitForFinished(2) || server.state() == QProcess::NotRunning) {
            *error = QStringLiteral("the private server did not start; see the end of '%1'")
                         .arg(folder.logPath());
            return false;
        }
    }
    *error = QStringLiteral("the private server does not answer; see the end of '%1'")
                 .arg(folder.logPath());
    return false;
}

QStringList PrivateServer::clientOptions(const QString &database) const
{
    QStringList options {QStringLiteral("--no-defaults"),
                         QStringLiteral("--default-character-set=utf8mb4"),
                         QStringLiteral("--user=root"), QStringLiteral("--socket=") + socketPath()};
    if (!database.isEmpty())
        options.append(QStringLiteral("--database=") + database);
    return options;
}

QStringList PrivateServer::serverOptions() const
{
    // The machine's own settings are for its own server.
    return QStringList {QStringLiteral("--no-defaults")} + sizeOptions()
        + QStringList {
            QStringLiteral("--skip-networking"), QStringLiteral("--datadir=") + folder.dataPath(),
            QStringLiteral("--tmpdir=") + folder.temporaryPath(),
            QStringLiteral("--socket=") + socketPath(),
            QStringLiteral("--pid-file=") + folder.pidPath(),
            QStringLiteral("--log-error=") + folder.logPath(),
            // Without a line for each look whether the server answers.
            QStringLiteral("--log-warnings=1"), QStringLiteral("--character-set-server=utf8mb4"),
            // A power failure may cost the last second, the death of a process nothing.
            QStringLiteral("--innodb-flush-log-at-trx-commit=2")};
}

void PrivateServer::handleEnd(int exitCode, QProcess::ExitStatus status)
{
    if (endWanted)
        return;
    Q_EMIT died(status == QProcess::CrashExit
                    ? QStringLiteral("the private server was killed or crashed")
                    : QStringLiteral("the private server ended by itself with exit code %1; "
                                     "see the end of '%2'")
                          .arg(exitCode)
                          .arg(folder.logPath()));
}

QStringList databaseFiles(const QString &databaseFolder, const QStringList &parts)
{
    QStringList files;
    for (const QString &part : parts) {
        const QDir folder(databaseFolder + QLatin1Char('/') + part);
        const QStringList names = folder.entryList({QStringLiteral("*.sql")}, QDir::Files,
                                                   QDir::Name);
        for (const QString &name : names)
            files.append(folder.filePath(name));
    }
    return files;
}
