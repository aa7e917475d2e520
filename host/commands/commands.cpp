// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// All commands of `talvenhr`.
#include "host/commands/commands.h"

#include "host/commands/checkcommand.h"
#include "host/commands/configcommand.h"
#include "host/commands/doctorcommand.h"
#include "host/commands/explaincommand.h"
#include "host/commands/gatecommand.h"
#include "host/commands/infocommand.h"
#include "host/commands/rehearsecommand.h"
#include "host/commands/runcommand.h"
#include "host/commands/sandboxcommand.h"
#include "host/commands/sqlcommand.h"
#include "host/commands/statuscommand.h"
#include "host/commands/undocommand.h"

QVector<Command> allCommands()
{
    return {runCommand(),    checkCommand(),   rehearseCommand(), gateCommand(),
            statusCommand(), explainCommand(), undoCommand(),     doctorCommand(),
            sqlCommand(),    infoCommand(),    configCommand(),   sandboxCommand()};
}
