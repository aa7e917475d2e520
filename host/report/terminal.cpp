// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What stands behind a standard stream.
#include "host/report/terminal.h"

#include <sys/ioctl.h>

int terminalWidth(int descriptor, int otherwise)
{
    winsize size = {};
    const bool known = ::ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : otherwise;
}
