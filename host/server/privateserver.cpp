// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A MariaDB server of one's own, for trying and testing.
#include "host/server/privateserver.h"

#include "host/server/folderowner.h"
#include "host/server/serverprograms.h"

#include <QFile>
#include <QProcessEnvironment>
#include <QThread>

namespace {

const int stopPatience = 60000; // milliseconds
const int joinerPatience = 30000; // milliseconds
const int silentWait = 2000; // milliseconds
const int pause = 5; // milliseconds
const int longPause = 50; // milliseconds

void keepOutput(const QString &path, const QByteArray &output)
{
    QFile file(path);
    // Nothing depends on it, and what was decisive is told.
    if (file.open(QIODevice::WriteOnly))
        file.write(output);
}

QString lastLine(const QByteArray &log)
{
    return QString::fromLocal8Bit(log.trimmed().split('\n').last());
}

} // namespace

PrivateServer::PrivateServer(const QString &directory, QObject *parent) :
    QObject(parent),
    folder(directory),
    log(folder.logPath())
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

void PrivateServer::setInterruption(const std::function<bool()> &wanted)
{
    isInterrupted = wanted;
}

void PrivateServer::setPatience(int milliseconds)
{
    patience = milliseconds;
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
    log = LogSection(folder.logPath());
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
    if (!folder.isKnown(error))
        return false;
    QElapsedTimer timer;
    timer.start();
    // The holder may be just starting, or just ending; so may others who wait for its end.
    while (!tryToJoin()) {
        if (joinedSocket.isEmpty()) {
            if (start(error))
                return true;
            if (!folder.isInUse())
                return false;
        }
        if (!waitForHolder(timer, error))
            return false;
    }
    return true;
}

/// False without a joined socket if nobody has the folder.
bool PrivateServer::tryToJoin()
{
    joinedSocket = folder.socketOfHolder();
    // In this order: who has joined keeps a server that answers.
    if (!joinedSocket.isEmpty() && folder.join() && answers(joinedSocket))
        return true;
    folder.leave();
    return false;
}

bool PrivateServer::waitForHolder(const QElapsedTimer &waiting, QString *error)
{
    if (isHopeless(QByteArray(), waiting, error))
        return false;
    if (waiting.elapsed() > patience) {
        *error = tr("the private server of another process in '%1' has not answered for %2 s; its "
                    "log is '%3'")
                     .arg(folder.name())
                     .arg(patience / 1000)
                     .arg(folder.logPath());
        return false;
    }
    if (waiting.elapsed() > silentWait)
        Q_EMIT progress(
            tr("waiting for the private server of another process in '%1'").arg(folder.name()));
    QThread::msleep(pause);
    return true;
}

void PrivateServer::waitForJoiners()
{
    QElapsedTimer timer;
    timer.start();
    while (isRunning() && !(isInterrupted && isInterrupted()) && !folder.shutOthersOut()
           && timer.elapsed() < joinerPatience)
        QThread::msleep(pause);
}

ExitCode PrivateServer::failureCode() const
{
    if (brokenOff)
        return ExitInterrupted;
    return folder.isInUse() ? ExitRefused : ExitDatabase;
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

/// Also after an attempt that was broken off: whatever that left is removed.
bool PrivateServer::makeData(QString *error)
{
    const QString install = findProgram(QStringLiteral("mariadb-install-db"), error);
    if (install.isEmpty() || !folder.clearData(error))
        return false;

    const QString what = tr("making a private database in '%1'").arg(folder.name());
    Q_EMIT progress(what);
    ChildProcess process;
    QByteArray output;
    startInstallation(install, &process);
    const auto text = [&] {
        output += process.readAllStandardOutput();
        return output;
    };
    const bool ended = attend(&process, what, text, error);
    output += process.readAllStandardOutput();
    if (ended && startedAndEndedWell(process)) {
        keepOutput(folder.installLogPath(), output);
        firstUse = true;
        return folder.setHasData(error);
    }

    if (ended)
        *error = withRemedy(reason(output, process));
    // What there is of them may be what fills the disk.
    QString ignored;
    folder.clearData(&ignored);
    keepOutput(folder.installLogPath(), output);
    *error = tr("the private database in '%1' could not be made: %2; see '%3'")
                 .arg(folder.name(), *error, folder.installLogPath());
    return false;
}

void PrivateServer::startInstallation(const QString &install, ChildProcess *process) const
{
    QStringList arguments {QStringLiteral("--no-defaults"),
                           QStringLiteral("--auth-root-authentication-method=normal"),
                           QStringLiteral("--skip-test-db"),
                           // Without looking names up: none is needed for a socket.
                           QStringLiteral("--force"),
                           // The script cuts a path at its blanks, so it gets one without any.
                           QStringLiteral("--datadir=./") + PrivateFolder::dataName()};
    arguments += sizeOptions();
    // Everything is on the disk when it ends.
    arguments.append(QStringLiteral("--innodb-flush-log-at-trx-commit=0"));
    arguments += dataOptions;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TMPDIR"), folder.temporaryPath());
    process->setProcessEnvironment(environment);
    process->setWorkingDirectory(folder.name());
    process->setStandardInputFile(QProcess::nullDevice());
    process->setProcessChannelMode(QProcess::MergedChannels);
    process->start(install, arguments);
}

/// Waits for the end of a process, and tells what it does if that takes long. False, with the
/// reason, if waiting was hopeless: the process is killed then. `text` is what the server has
/// logged.
bool PrivateServer::attend(ChildProcess *process, const QString &what,
                           const std::function<QByteArray()> &text, QString *error)
{
    QElapsedTimer timer;
    timer.start();
    while (process->state() != QProcess::NotRunning && !process->waitForFinished(longPause)) {
        if (isHopeless(text(), timer, error)) {
            process->killAll();
            return false;
        }
        if (timer.elapsed() > silentWait)
            Q_EMIT progress(what);
    }
    return true;
}

/// Nobody wants the result any more, or it cannot come.
bool PrivateServer::isHopeless(const QByteArray &text, const QElapsedTimer &waiting, QString *error)
{
    brokenOff = isInterrupted && isInterrupted();
    *error = brokenOff ? tr("interrupted; what was begun is made anew by the next run")
                       : withRemedy(diskTrouble(text, waiting));
    return !error->isEmpty();
}

/// Why the server waits for its disk; empty if it does not. A full disk may have no room for a line
/// of the log either, so it is asked itself when the waiting gets long.
QString PrivateServer::diskTrouble(const QByteArray &text, const QElapsedTimer &waiting) const
{
    if (waitsForSpace(text))
        return decisiveLine(text);
    return waiting.elapsed() > silentWait ? writeTroubleIn(folder.name()) : QString();
}

/// Why a process did not do its work. On a full disk there may be nothing of it in the log.
QString PrivateServer::reason(const QByteArray &text, const QProcess &process) const
{
    if (process.error() == QProcess::FailedToStart)
        return process.errorString();
    const QString line = decisiveLine(text);
    const QString trouble = line.isEmpty() ? writeTroubleIn(folder.name()) : QString();
    if (!trouble.isEmpty())
        return trouble;
    return line.isEmpty() ? tr("it gives no reason") : line;
}

bool PrivateServer::waitUntilItAnswers(QString *error)
{
    QElapsedTimer timer;
    timer.start();
    while (!answers(socketPath())) {
        // Sees the server's end, and rests a little otherwise.
        if (server.waitForFinished(pause) || server.state() == QProcess::NotRunning) {
            *error = tr("the private server did not start: %1; its log is '%2'")
                         .arg(withRemedy(reason(log.text(), server)), folder.logPath());
            return false;
        }
        if (isHopeless(log.text(), timer, error))
            return false;
        if (timer.elapsed() > patience) {
            *error = tr("the private server, process %1, has not answered for %2 s; its log '%3' "
                        "ends with: %4")
                         .arg(server.processId())
                         .arg(patience / 1000)
                         .arg(folder.logPath(), lastLine(log.text()));
            return false;
        }
        if (timer.elapsed() > silentWait)
            Q_EMIT progress(tr("waiting for the private server, process %1, to answer; its log is "
                               "'%2'")
                                .arg(server.processId())
                                .arg(folder.logPath()));
    }
    return true;
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
                    ? tr("the private server was killed or crashed")
                    : tr("the private server ended by itself with exit code %1; see the end of "
                         "'%2'")
                          .arg(exitCode)
                          .arg(folder.logPath()));
}
