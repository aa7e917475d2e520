// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Signals of the operating system that ask the program to end.
#include "host/base/signalwatch.h"

#include <QSocketNotifier>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

const int endingSignals[] = {SIGINT, SIGTERM, SIGHUP};

int writingEnd = -1;
volatile std::sig_atomic_t wasCaught = 0;

extern "C" void handleSignal(int)
{
    // Little is allowed here; the event loop does the rest.
    const int savedError = errno;
    wasCaught = 1;
    const char byte = 0;
    const ssize_t written = ::write(writingEnd, &byte, 1);
    Q_UNUSED(written); // A full pipe has told enough.
    errno = savedError;
}

/// Sets a handler and gives what was there before.
struct sigaction setHandler(int number, void (*handler)(int))
{
    struct sigaction action = {};
    struct sigaction before = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    ::sigaction(number, &action, &before);
    return before;
}

} // namespace

SignalWatch::SignalWatch(QObject *parent) :
    QObject(parent)
{
    if (::pipe2(pipeEnds, O_CLOEXEC | O_NONBLOCK) != 0)
        qFatal("no pipe for signals");
    writingEnd = pipeEnds[1];
    wasCaught = 0;
    notifier = new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, this);
    connect(notifier, SIGNAL(activated(int)), this, SLOT(readPipe()));
    setHandler(SIGPIPE, SIG_IGN);
    resume();
}

SignalWatch::~SignalWatch()
{
    pause();
    setHandler(SIGPIPE, SIG_DFL);
    delete notifier;
    ::close(pipeEnds[0]);
    ::close(pipeEnds[1]);
    writingEnd = -1;
}

void SignalWatch::pause()
{
    for (const WatchedSignal &watched : qAsConst(watchedSignals))
        ::sigaction(watched.number, &watched.before, nullptr);
    watchedSignals.clear();
}

/// What was ignored stays so: nohup and background jobs rely on it.
void SignalWatch::resume()
{
    for (const int number : endingSignals) {
        const struct sigaction before = setHandler(number, handleSignal);
        if (before.sa_handler == SIG_IGN)
            ::sigaction(number, &before, nullptr);
        else
            watchedSignals.append({number, before});
    }
}

bool SignalWatch::hasCaught() const
{
    return wasCaught != 0;
}

void SignalWatch::readPipe()
{
    char byte;
    while (::read(pipeEnds[0], &byte, 1) == 1)
        Q_EMIT caught();
}
