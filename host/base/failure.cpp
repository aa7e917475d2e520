// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What went wrong, in a line for the user, and the exit code that tells it to scripts.
#include "host/base/failure.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ExitCode)
};

} // namespace

QVector<ExitMeaning> exitMeanings()
{
    return {
        {ExitClean, Text::tr("no errors")},
        {ExitErrors,
         Text::tr(
             "errors: logged by the plugin, a statement, a useless export, too few passes, output")},
        {ExitUsage, Text::tr("wrong usage, settings missing or wrong, plugin cannot be loaded")},
        {ExitDatabase, Text::tr("database cannot be reached or used")},
        {ExitTimeout, Text::tr("timed out")},
        {ExitRefused,
         Text::tr("refused: another run is in progress, a limit is exceeded, a copy is not whole")},
        {ExitChanged, Text::tr("something would change, and --exit-code asks for it")},
        {ExitInterrupted,
         Text::tr("cut by signals: a running pass by the second, the making of a private database "
                  "by the first")},
    };
}
