// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What went wrong, in a line for the user, and the exit code that tells it to scripts.
#pragma once

#include <QString>
#include <QVector>

/// The exit codes of all commands.
enum ExitCode {
    ExitClean = 0,
    ExitErrors = 1,
    ExitUsage = 2,
    ExitDatabase = 3,
    ExitTimeout = 4,
    ExitRefused = 5,
    ExitChanged = 6,
    ExitInterrupted = 130, ///< as shells tell of SIGINT
};

struct ExitMeaning
{
    ExitCode code;
    QString meaning; ///< a few words, without a full stop
};

/// The one table of the exit codes: --help, the manual page and README show it.
QVector<ExitMeaning> exitMeanings();

/// The result of an operation that can fail: default-constructed it is none.
struct Failure
{
    ExitCode exitCode = ExitClean;
    QString
        text; ///< what is wrong and what to do, without a full stop; empty if it was told already

    explicit operator bool() const { return exitCode != ExitClean; }
};
