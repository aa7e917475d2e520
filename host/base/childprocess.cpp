// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A program of the host's own that the terminal's signals do not reach.
#include "host/base/childprocess.h"

#include <csignal>
#include <unistd.h>
#ifdef Q_OS_LINUX
#include <sys/prctl.h>
#endif

void ChildProcess::killAll()
{
    if (state() == NotRunning)
        return;
    // It leads the group of its session.
    ::kill(-static_cast<pid_t>(processId()), SIGKILL);
    waitForFinished(-1);
}

// Runs in the child, between fork and exec: system calls only.
void ChildProcess::setupChildProcess()
{
    ::setsid();
#ifdef Q_OS_LINUX
    ::prctl(PR_SET_PDEATHSIG, diesWithHost ? SIGKILL : SIGTERM);
    // The host may have died before that; a foster parent would not tell.
    if (::getppid() != static_cast<pid_t>(host))
        ::_exit(1);
#endif
}
