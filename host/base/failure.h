// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What went wrong, in a line for the user, and the exit code that tells it to scripts.
#pragma once

#include <QString>

/// The exit codes of all commands; their --help lists them.
enum ExitCode {
    ExitClean = 0,
    ExitErrorsLogged = 1, ///< a pass logged errors
    ExitUsage = 2, ///< bad command line, plugin or settings
    ExitDatabase = 3, ///< no database, or not a usable one
    ExitTimeout = 4,
};

/// The result of an operation that can fail: default-constructed it is none.
struct Failure
{
    ExitCode exitCode = ExitClean;
    QString text; ///< what is wrong and what to do, without a full stop

    explicit operator bool() const { return exitCode != ExitClean; }
};
