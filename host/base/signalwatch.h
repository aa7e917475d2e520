// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Signals of the operating system that ask the program to end.
#pragma once

#include <QObject>
#include <QVector>

#include <csignal>

class QSocketNotifier;

/// Turns SIGINT, SIGTERM and SIGHUP into a signal of Qt's while it lives, so that none of them ends
/// the process in the middle of a pass; but for those that the process ignores from its start. A
/// closed pipe (SIGPIPE) does not end it either.
///
/// One at a time, owned by the command and living on its thread, which runs an event loop if it
/// is to hear of them by caught().
class SignalWatch : public QObject
{
    Q_OBJECT

public:
    explicit SignalWatch(QObject *parent = nullptr);
    ~SignalWatch() override;

    /// Leaves the signals to what was there before: they end the process at once, as a rule. For a
    /// time without an event loop.
    void pause();
    void resume();

    /// One of the signals has come since the object was made; also known without an event loop.
    bool hasCaught() const;

Q_SIGNALS:
    /// Also for one that came before the event loop ran.
    void caught();

private Q_SLOTS:
    void readPipe();

private:
    struct WatchedSignal
    {
        int number;
        struct sigaction before;
    };

    QVector<WatchedSignal> watchedSignals;
    int pipeEnds[2] = {-1, -1};
    QSocketNotifier *notifier = nullptr;
};
