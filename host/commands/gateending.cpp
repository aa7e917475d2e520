// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a gate leaves for those who look from outside: its failure, figures and site.
#include "host/commands/gateending.h"

#include "host/base/ownerfile.h"
#include "host/cli/options.h"
#include "host/commands/gateoptions.h"
#include "host/commands/gateowner.h"
#include "host/commands/statussettings.h"
#include "host/gate/gatefailure.h"
#include "host/report/logwriter.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(GateEnding)
};

QStringList keepAndTell(const GateOptions &gate, const Failure &failure)
{
    keepGateFailure(gate.settings.state, failure);
    const QString trouble = tellGateFailure(gate.settings.state, gate.hooks.failed, failure);
    if (trouble.isEmpty())
        return {};
    return {Text::tr("the hook '%1': %2").arg(gate.hooks.failed, trouble)};
}

/// To figures and site, as far as their settings can be read.
QStringList publishFailure(const Options &options)
{
    StatusSettings status;
    readStatusSettings(options, &status);
    status.whyNoDatabase = Text::tr("the gate did not come so far");
    const Failure failure = publishStatus(status);
    return failure ? QStringList {failure.text} : QStringList();
}

} // namespace

QStringList noteGateEnd(const GateOptions &gate, const Failure &failure)
{
    // A person sees how a release ends, and it says nothing of the next gate.
    if (gate.release || failure.exitCode == ExitRefused)
        return {};
    if (failure)
        return keepAndTell(gate, failure);
    forgetGateFailure(gate.settings.state);
    return {};
}

QStringList publishGate(const Options &options, const GateOptions &gate)
{
    StatusSettings status;
    Failure failure = readStatusSettings(options, &status);
    // The environment has lost its password to the gate's own reading.
    status.database = gate.database;
    status.sources.namesDatabase = !gate.database.isDefault;
    // The plugin's own search may have found its settings.
    status.sources.place = gate.settings.place;
    status.sources.staysInPlace = !gate.settings.isRemovedWhenRead;
    if (!failure)
        failure = publishStatus(status);
    return failure ? QStringList {failure.text} : QStringList();
}

void endBeforeBegin(const Options &options, const GateOptions &gate, const Failure &failure)
{
    const GateSettings &settings = gate.settings;
    // Settings that do not even tell the folders have a hook all the same.
    const bool isKnown = !settings.state.isEmpty();
    if (isForOneExport(options) || (isKnown && checkGateOwner(settings)))
        return;
    Failure notMade;
    if (isKnown && !checkIncoming(settings.incoming.folder))
        notMade = makeOwnerFolder(settings.state);
    QStringList warnings = keepAndTell(gate, failure);
    if (notMade)
        warnings.append(notMade.text);
    if (isKnown)
        warnings += publishFailure(options);
    LogWriter writer(LogFormat::Text);
    for (const QString &warning : qAsConst(warnings))
        writer.warn(warning);
}
