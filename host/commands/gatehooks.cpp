// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The hooks that talvenhr.conf names.
#include "host/commands/gatehooks.h"

#include "host/cli/options.h"

#include <QCoreApplication>
#include <QProcess>
#include <QStandardPaths>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(GateHooks)
};

} // namespace

QStringList hookSettings()
{
    return {QStringLiteral("hooks/passed"), QStringLiteral("hooks/refused"),
            QStringLiteral("hooks/late"), QStringLiteral("hooks/failed")};
}

GateHooks readHooks(const Options &options)
{
    const Configuration &file = options.configuration();
    return {file.entry(QStringLiteral("hooks/passed")).value,
            file.entry(QStringLiteral("hooks/refused")).value,
            file.entry(QStringLiteral("hooks/late")).value,
            file.entry(QStringLiteral("hooks/failed")).value};
}

QStringList hookTroubles(const GateHooks &hooks)
{
    QStringList troubles;
    for (const QString &command : {hooks.passed, hooks.refused, hooks.late, hooks.failed}) {
        const QString program = QProcess::splitCommand(command).value(0);
        if (!program.isEmpty() && QStandardPaths::findExecutable(program).isEmpty())
            troubles.append(Text::tr("the program of the hook '%1' is not there, or cannot be run")
                                .arg(command));
    }
    return troubles;
}
