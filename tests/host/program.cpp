// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The built program `talvenhr` as a process.
#include "program.h"

#include <QElapsedTimer>

#include <csignal>

namespace {

const int patience = 30000; // milliseconds

} // namespace

Program::Program(const QStringList &arguments, const QString &home)
{
    process.setProgram(path());
    process.setArguments(arguments);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"ENABLED", "TIMERINTERVAL", "SYNCINTERVAL", "TESTMODE", "IMPORTFILE",
                             "DELETEFILE", "SYNCCOMMAND", "SYNCCOMMANDRUN", "DEPARTMENTID",
                             "TALVENHR_PASSWORD", "XDG_DATA_HOME", "LANG", "LC_CTYPE"})
        environment.remove(QLatin1String(name));
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    environment.insert(QStringLiteral("QT_LOGGING_RULES"),
                       QStringLiteral("*.debug=false;*.info=false"));
    if (!home.isEmpty())
        environment.insert(QStringLiteral("HOME"), home);
    process.setProcessEnvironment(environment);
}

Program::~Program()
{
    if (process.state() != QProcess::NotRunning) {
        process.kill();
        process.waitForFinished(patience);
    }
}

void Program::setEnvironment(const QString &name, const QString &value)
{
    QProcessEnvironment environment = process.processEnvironment();
    environment.insert(name, value);
    process.setProcessEnvironment(environment);
}

void Program::setErrorFile(const QString &path)
{
    process.setStandardErrorFile(path);
}

void Program::start()
{
    process.start();
    process.waitForStarted(patience);
}

bool Program::waitForLine(const QString &text)
{
    process.setReadChannel(QProcess::StandardError);
    QElapsedTimer timer;
    timer.start();
    while (linesWith(text).isEmpty()) {
        const bool more = process.waitForReadyRead(patience);
        if ((!more && process.state() == QProcess::NotRunning) || timer.elapsed() > patience)
            return !linesWith(text).isEmpty();
    }
    return true;
}

void Program::sendSignal(int number)
{
    ::kill(static_cast<pid_t>(process.processId()), number);
}

int Program::finish()
{
    if (process.state() == QProcess::NotRunning)
        process.start();
    if (!process.waitForFinished(patience) && process.state() != QProcess::NotRunning)
        return -1;
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

QStringList Program::lines()
{
    standardError += process.readAllStandardError();
    return QString::fromUtf8(standardError).split(QLatin1Char('\n'), QString::SkipEmptyParts);
}

QStringList Program::linesWith(const QString &text)
{
    return lines().filter(text);
}

QString Program::lastLine()
{
    const QStringList all = lines();
    return all.isEmpty() ? QString() : all.last();
}

QString Program::output()
{
    standardOutput += process.readAllStandardOutput();
    return QString::fromUtf8(standardOutput);
}

QString Program::path()
{
    return QStringLiteral(TALVENHR_PROGRAM);
}

QString Program::pluginPath()
{
    return QStringLiteral(TALVENHR_PLUGIN);
}
