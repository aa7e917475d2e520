// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The program `talvenhr`.
#include "host/cli/shell.h"
#include "host/commands/commands.h"

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    return runShell(allCommands(), QCoreApplication::arguments());
}
