// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Holds a plugin between two passes.
#include "host/commands/passhold.h"

#include "host/report/console.h"

#include <poll.h>
#include <unistd.h>

namespace {

const int pollInterval = 50; // milliseconds

} // namespace

void PassHold::tell(int pass) const
{
    printText(QStringLiteral("pass %1 is over\n").arg(pass));
}

/// Byte by byte, so that what is behind the line stays there for the next pass.
bool PassHold::waitForLine()
{
    while (!isReleased) {
        pollfd input = {STDIN_FILENO, POLLIN, 0};
        if (::poll(&input, 1, pollInterval) <= 0)
            continue;
        char byte;
        if (::read(STDIN_FILENO, &byte, 1) != 1)
            return false;
        if (byte == '\n')
            return true;
    }
    return false;
}
