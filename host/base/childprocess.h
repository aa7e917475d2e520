// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A program of the host's own that the terminal's signals do not reach.
#pragma once

#include <QCoreApplication>
#include <QProcess>

/// A process in a session of its own: Ctrl+C at the terminal does not end it. On Linux it is asked
/// to end when the host dies, however that happens.
///
/// To be started on a thread that lives as long as the process is wanted: the system looks at the
/// end of the starting thread. Owned and used as any QProcess.
class ChildProcess : public QProcess
{
    Q_OBJECT

public:
    using QProcess::QProcess;

    /// To be killed when the host dies, for what nobody needs any more then. Before the start.
    void dieWithHost() { diesWithHost = true; }
    /// Kills it with all that it has started, and waits for its end.
    void killAll();

protected:
    void setupChildProcess() override;

private:
    const qint64 host = QCoreApplication::applicationPid();
    bool diesWithHost = false;
};
