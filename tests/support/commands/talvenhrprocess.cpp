// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The built program `talvenhr` as a process.
#include "support/commands/talvenhrprocess.h"

#include <QElapsedTimer>

#include <csignal>

TalvenhrProcess::TalvenhrProcess(const QStringList &arguments, const QString &home)
{
    process.setProgram(path());
    process.setArguments(arguments);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"ENABLED", "TIMERINTERVAL", "SYNCINTERVAL", "TESTMODE", "IMPORTFILE",
                             "DELETEFILE", "SYNCCOMMAND", "SYNCCOMMANDRUN", "DEPARTMENTID",
                             "XDG_DATA_HOME", "XDG_CONFIG_HOME", "LANG", "LC_CTYPE"})
        environment.remove(QLatin1String(name));
    const QStringList names = environment.keys();
    for (const QString &name : names.filter(QStringLiteral("TALVENHR_")))
        environment.remove(name);
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    environment.insert(QStringLiteral("QT_LOGGING_RULES"),
                       QStringLiteral("*.debug=false;*.info=false"));
    if (!home.isEmpty())
        environment.insert(QStringLiteral("HOME"), home);
    process.setProcessEnvironment(environment);
}

TalvenhrProcess::~TalvenhrProcess()
{
    if (process.state() != QProcess::NotRunning) {
        process.kill();
        process.waitForFinished(longestWait);
    }
}

void TalvenhrProcess::setEnvironment(const QString &name, const QString &value)
{
    QProcessEnvironment environment = process.processEnvironment();
    environment.insert(name, value);
    process.setProcessEnvironment(environment);
}

void TalvenhrProcess::setErrorFile(const QString &path)
{
    process.setStandardErrorFile(path);
}

void TalvenhrProcess::start()
{
    process.start();
    process.waitForStarted(longestWait);
}

bool TalvenhrProcess::waitForLine(const QString &text)
{
    process.setReadChannel(QProcess::StandardError);
    QElapsedTimer timer;
    timer.start();
    while (linesWith(text).isEmpty()) {
        const bool more = process.waitForReadyRead(longestWait);
        if ((!more && process.state() == QProcess::NotRunning) || timer.elapsed() > longestWait)
            return !linesWith(text).isEmpty();
    }
    return true;
}

bool TalvenhrProcess::waitForOutput(const QString &text)
{
    process.setReadChannel(QProcess::StandardOutput);
    QElapsedTimer timer;
    timer.start();
    while (!output().contains(text)) {
        const bool more = process.waitForReadyRead(longestWait);
        if ((!more && process.state() == QProcess::NotRunning) || timer.elapsed() > longestWait)
            return output().contains(text);
    }
    return true;
}

void TalvenhrProcess::send(const QByteArray &text)
{
    process.write(text);
    process.waitForBytesWritten(longestWait);
}

void TalvenhrProcess::endInput()
{
    process.closeWriteChannel();
}

void TalvenhrProcess::sendSignal(int number)
{
    ::kill(static_cast<pid_t>(process.processId()), number);
}

bool TalvenhrProcess::hasEnded()
{
    process.waitForFinished(0);
    return process.state() == QProcess::NotRunning;
}

int TalvenhrProcess::finish(int milliseconds)
{
    if (process.state() == QProcess::NotRunning)
        process.start();
    if (!process.waitForFinished(milliseconds) && process.state() != QProcess::NotRunning)
        return -1;
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

QStringList TalvenhrProcess::lines()
{
    standardError += process.readAllStandardError();
    return QString::fromUtf8(standardError).split(QLatin1Char('\n'), QString::SkipEmptyParts);
}

QStringList TalvenhrProcess::linesWith(const QString &text)
{
    return lines().filter(text);
}

QString TalvenhrProcess::lastLine()
{
    const QStringList all = lines();
    return all.isEmpty() ? QString() : all.last();
}

QString TalvenhrProcess::output()
{
    standardOutput += process.readAllStandardOutput();
    return QString::fromUtf8(standardOutput);
}

QString TalvenhrProcess::path()
{
    return QStringLiteral(TALVENHR_PROGRAM);
}

QString TalvenhrProcess::pluginPath()
{
    return QStringLiteral(TALVENHR_PLUGIN);
}
