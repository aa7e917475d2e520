// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a private server is given to do through the client program.
#include "host/server/privateserver.h"

#include "host/server/serverprograms.h"

#include <QDir>
#include <QFile>

namespace {

const int longPause = 50; // milliseconds
const qint64 mostWaiting = 512 * 1024; // bytes

} // namespace

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
            *error = tr("cannot read '%1': %2").arg(name, file.errorString());
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

bool PrivateServer::runClient(const QString &database, const QByteArray &input, QString *error)
{
    const QString client = findProgram(QStringLiteral("mariadb"), error);
    if (client.isEmpty())
        return false;

    ChildProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(client, clientOptions(database) << QStringLiteral("--batch"));
    process.write(input);
    process.closeWriteChannel();
    return endClient(&process, error);
}

bool PrivateServer::feed(const QString &database, const QString &statements,
                         const std::function<QByteArray()> &nextPiece, QByteArray *output,
                         QString *error)
{
    const QString client = findProgram(QStringLiteral("mariadb"), error);
    if (client.isEmpty())
        return false;

    ChildProcess process;
    process.start(client,
                  clientOptions(database)
                      << QStringLiteral("--batch") << QStringLiteral("--skip-column-names")
                      << QStringLiteral("--local-infile=1")
                      << QStringLiteral("--max-allowed-packet=1G") << QStringLiteral("--execute")
                      << statements);
    // Before that it leads no group that could be killed.
    process.waitForStarted(-1);
    if (!sendPieces(&process, nextPiece, error)) {
        process.killAll();
        stop();
        return false;
    }
    process.closeWriteChannel();
    if (!endClient(&process, error))
        return false;
    *output = process.readAllStandardOutput();
    return true;
}

/// No more than a few pieces wait for the client. False, with the reason, if waiting was hopeless.
bool PrivateServer::sendPieces(ChildProcess *process, const std::function<QByteArray()> &nextPiece,
                               QString *error)
{
    for (QByteArray piece = nextPiece(); !piece.isEmpty(); piece = nextPiece()) {
        process->write(piece);
        QElapsedTimer timer;
        timer.start();
        do {
            if (isHopeless(log.text(), timer, error))
                return false;
            process->waitForBytesWritten(longPause);
            // A client that has ended says why.
            if (process->state() == QProcess::NotRunning)
                return true;
        } while (process->bytesToWrite() > mostWaiting);
    }
    return true;
}

/// Waits for a client that has got all of its input. False, with what it says, if it has failed.
bool PrivateServer::endClient(ChildProcess *process, QString *error)
{
    const QString what = tr("filling the private database in '%1'").arg(folder.name());
    const auto text = [this] { return log.text(); };
    if (!attend(process, what, text, error)) {
        // It may still be at work on what the client sent.
        stop();
        return false;
    }
    if (startedAndEndedWell(*process))
        return true;
    *error = withRemedy(faultLine(process->readAllStandardError()));
    if (error->isEmpty())
        *error = process->errorString();
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
    if (process.error() == QProcess::FailedToStart) {
        *error = tr("cannot start '%1': %2").arg(client, process.errorString());
        return false;
    }
    *exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : 1;
    return true;
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
