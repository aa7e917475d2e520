// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr run --plan`: a pass only if it does what was rehearsed.
#include "host/commands/plancheck.h"

#include "host/base/shellword.h"
#include "host/changes/changesjson.h"
#include "host/changes/planhash.h"
#include "host/cli/databaseoptions.h"
#include "host/cli/options.h"
#include "host/cli/pluginoptions.h"
#include "host/cli/reportoptions.h"
#include "host/commands/limitoptions.h"
#include "host/commands/rehearsalsession.h"
#include "host/commands/rehearsalwishes.h"
#include "host/commands/runsession.h"
#include "host/plugin/settingsfile.h"
#include "host/rehearsal/plandifference.h"
#include "host/rehearsal/verdict.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(PlanCheck)
};

/// What the user has named.
struct Plan
{
    QString hash;
    bool isWhole = false; ///< the changes are known
    Changes changes;
};

QString planName()
{
    return QStringLiteral("plan");
}

Failure readPlan(const Options &options, Plan *plan)
{
    plan->hash = options.value(planName());
    if (isPlanHash(plan->hash))
        return {};
    if (!QFileInfo(plan->hash).isFile())
        return options.usageFailure(
            Text::tr("--plan takes the hash in the last line of 'talvenhr rehearse' (16 letters, "
                     "'-', 32 letters), or the file of its --changes; '%1' is neither")
                .arg(plan->hash));
    if (const Failure failure = readChangesFile(plan->hash, &plan->changes))
        return failure;
    plan->isWhole = true;
    plan->hash = plan->changes.plan.hash;
    if (isPlanHash(plan->hash))
        return {};
    return options.usageFailure(
        Text::tr("the changes '%1' are not those of a rehearsal").arg(options.value(planName())));
}

Failure checkSettings(const QString &settingsFile)
{
    const SettingsFile settings(settingsFile);
    if (const Failure failure = settings.check())
        return failure;
    if (static_cast<quint8>(settings.toUInt(QStringLiteral("syncCommandRun"))) == 0)
        return {};
    return {ExitUsage,
            Text::tr("--plan does not go with an export command, which may bring another export "
                     "than was rehearsed; set syncCommandRun=0 in '%1' for this pass")
                .arg(settings.path())};
}

/// The options of this command line that `rehearse` has, too, in the same words.
QString rehearseCommandLine(const Options &options)
{
    QString line = QStringLiteral("talvenhr rehearse");
    QVector<Option> shared {{QStringLiteral("config"), QStringLiteral("FILE"), QString()},
                            {QStringLiteral("force"), QString(), QString()}};
    shared += pluginOptions().options + databaseOptions().options + planRehearsalOptions();
    for (const Option &option : qAsConst(shared)) {
        if (!options.isSet(option.name))
            continue;
        if (option.valueName.isEmpty())
            line += QStringLiteral(" --") + option.name;
        const QStringList values = option.valueName.isEmpty() ? QStringList()
                                                              : options.values(option.name);
        for (const QString &value : values)
            line += QStringLiteral(" --%1 %2").arg(option.name, shellWord(value));
    }
    return line;
}

Failure refusal(const Plan &plan, const Changes &now, const Options &options)
{
    LogWriter writer(logFormat(options));
    const QStringList lines = plan.isWhole ? planDifference(plan.changes, now)
                                           : planDifference(plan.hash, now);
    for (const QString &line : lines)
        writer.say(line);
    return {ExitRefused,
            Text::tr("something else would change now than what was planned, so nothing was "
                     "changed; look at it, and take its plan: %1")
                .arg(rehearseCommandLine(options))};
}

} // namespace

Option planOption()
{
    return {planName(), QStringLiteral("PLAN"),
            Text::tr("rehearse the pass first, and run it only if it keeps to the limits and still "
                     "changes what this plan says: the hash that 'talvenhr rehearse' shows, or the "
                     "file of its --changes")};
}

QVector<Option> planRehearsalOptions()
{
    return copyOptions() + limitOptions().options;
}

Failure checkPlanOptions(const Options &options, const RunOptions &run)
{
    if (!options.isSet(planName())) {
        const QVector<Option> others = planRehearsalOptions();
        for (const Option &option : others) {
            if (options.isSet(option.name))
                return options.usageFailure(
                    Text::tr("--%1 takes --plan beside it").arg(option.name));
        }
        return {};
    }
    if (run.passes != 1 || run.dataDirectory.isEmpty())
        return options.usageFailure(Text::tr("--plan takes --once and --data-dir beside it"));
    return {};
}

Failure checkPlan(const Options &options, RunLock *lock, RunOptions *run)
{
    Plan plan;
    if (const Failure failure = readPlan(options, &plan))
        return failure;
    RehearsalOptions rehearsal;
    rehearsal.wishes.pluginFile = run->pluginFile;
    rehearsal.wishes.settingsFile = QDir(run->dataDirectory)
                                        .filePath(QStringLiteral("TalvenHR.ini"));
    rehearsal.wishes.force = run->force;
    rehearsal.database = run->database;
    rehearsal.copy = readCopyWishes(options);
    if (const Failure failure = readLimits(options, &rehearsal.limits))
        return failure;
    if (const Failure failure = checkSettings(rehearsal.wishes.settingsFile))
        return failure;
    if (const Failure failure = checkInputs(QString(), &rehearsal.wishes))
        return failure;
    if (run->database.privateFolder.isEmpty()) {
        if (const Failure failure = lock->take(run->database.connection))
            return failure;
    }
    RehearsalSession session(rehearsal);
    if (const Failure failure = session.rehearse())
        return failure;
    const Changes &now = session.result();
    if (!isSameChange(plan.hash, now.plan.change))
        return refusal(plan, now, options);
    QStringList exceeded;
    const QVector<LimitOutcome> limits = exceededLimits(now);
    for (const LimitOutcome &outcome : limits)
        exceeded.append(exceededText(outcome));
    run->plannedExport = now.header.exported.digest;
    if (exceeded.isEmpty())
        return {};
    return {ExitRefused,
            Text::tr("the pass would go beyond the limits, so nothing was changed: %1")
                .arg(exceeded.join(QStringLiteral("; ")))};
}
