// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The built program `talvenhr` as a process.
#pragma once

#include "support/patience.h"

#include <QProcess>
#include <QStringList>

/// Runs the program with a known environment: UTF-8, a home of the test's own, nothing that would
/// stand in for the plugin's settings, and Qt's rules set against the lines by which the program
/// counts passes, for it must not depend on them.
///
/// Made on the stack of a test function. A process that is still running at the end is killed.
class TalvenhrProcess
{
public:
    explicit TalvenhrProcess(const QStringList &arguments, const QString &home = QString());
    ~TalvenhrProcess();

    void setEnvironment(const QString &name, const QString &value);
    /// Standard error goes to this file or terminal instead; lines() stays empty then.
    void setErrorFile(const QString &path);

    void start();
    /// Waits until a line of standard error holds the text. False when none came.
    bool waitForLine(const QString &text);
    /// The same for standard output.
    bool waitForOutput(const QString &text);
    /// To standard input.
    void send(const QByteArray &text);
    void endInput();
    void sendSignal(int number);
    bool hasEnded();
    /// Waits for the end, having started the program if it was not. The exit code, -1 for a crash.
    int finish(int milliseconds = longestWait);

    /// The lines of standard error so far.
    QStringList lines();
    /// Those that hold the text.
    QStringList linesWith(const QString &text);
    /// The last line, which after a run is its summary.
    QString lastLine();
    /// Standard output so far.
    QString output();

    static QString path();
    static QString pluginPath();

private:
    QProcess process;
    QByteArray standardError;
    QByteArray standardOutput;
};
