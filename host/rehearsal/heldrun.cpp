// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A plugin in a process of its own that lives for as many passes as are wanted.
#include "host/rehearsal/heldrun.h"

#include "host/changes/changesfolder.h"
#include "host/rehearsal/childwords.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(HeldRun)
};

const int pollInterval = 50; // milliseconds

} // namespace

HeldRun::HeldRun(const QString &changesFolder) :
    folder(changesFolder)
{
    process.dieWithHost();
}

/// What it would still do is of no use to anybody.
HeldRun::~HeldRun()
{
    process.killAll();
}

void HeldRun::start(const QStringList &arguments, const QProcessEnvironment &environment)
{
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(), arguments);
}

/// It says nothing else on standard output.
Failure HeldRun::waitForPass()
{
    while (!process.canReadLine()) {
        process.waitForReadyRead(pollInterval);
        if (isInterrupted && isInterrupted()) {
            process.killAll();
            return {ExitInterrupted, Text::tr("interrupted while the pass was rehearsed")};
        }
        if (process.state() == QProcess::NotRunning)
            return failure();
    }
    process.readLine();
    ++passes;
    return {};
}

Failure HeldRun::readChanges(Changes *changes) const
{
    return readChangesOfPass(folder, passes, changes);
}

void HeldRun::goOn()
{
    process.write("\n");
}

Failure HeldRun::failure()
{
    const int code = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : ExitErrors;
    return {code == ExitClean ? ExitErrors : static_cast<ExitCode>(code),
            Text::tr("the rehearsed pass did not come to its end: %1")
                .arg(lastWords(process.readAllStandardError()))};
}
