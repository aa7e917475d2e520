// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// One rehearsal from the copy to what is told of it.
#include "host/commands/rehearsalsession.h"

#include "host/base/signalwatch.h"
#include "host/changes/changesjson.h"
#include "host/changes/changestext.h"
#include "host/changes/planhash.h"
#include "host/commands/databaselook.h"
#include "host/commands/rehearsalpage.h"
#include "host/copy/databasecopy.h"
#include "host/report/htmlpage.h"
#include "host/report/logwriter.h"
#include "host/report/textreport.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(RehearsalSession)
};

const int shownPeople = 20;

} // namespace

RehearsalSession::RehearsalSession(const RehearsalOptions &rehearsalOptions) :
    options(rehearsalOptions)
{ }

Failure RehearsalSession::run()
{
    if (const Failure failure = rehearse())
        return failure;
    if (const Failure failure = tell())
        return failure;
    return {exitCode(), QString()};
}

Failure RehearsalSession::checkPlan(const QString &plan)
{
    if (const Failure failure = rehearse())
        return failure;
    if (isSameChange(plan, changes.plan.change))
        return {};
    return {ExitRefused,
            Text::tr("something else would change now than what was planned: look at it with "
                     "'talvenhr rehearse'; the plan is %1 now")
                .arg(changes.plan.hash)};
}

Failure RehearsalSession::rehearse()
{
    const Failure failure = copyAndRun();
    changes.plan.read = readHash(changes.header);
    changes.plan.hash = planHash(changes.plan.read, changes.plan.change);
    limits = limitOutcomes(options.limits, changes);
    return failure;
}

Failure RehearsalSession::copyAndRun()
{
    if (!options.keep.isEmpty())
        return copyAndRunIn(options.keep);
    const QTemporaryDir folder;
    if (!folder.isValid())
        return {ExitUsage,
                Text::tr("cannot make a temporary folder: %1").arg(folder.errorString())};
    return copyAndRunIn(folder.path());
}

Failure RehearsalSession::copyAndRunIn(const QString &folder)
{
    const SignalWatch signalWatch;
    const auto interrupted = [&signalWatch] { return signalWatch.hasCaught(); };
    LogWriter writer(LogFormat::Text);
    const auto show = [&writer](const QString &what) {
        if (ProgressBar::isPossible())
            writer.activity(what);
    };
    DatabaseLook source;
    if (const Failure failure = source.open(options.database))
        return failure;
    DatabaseCopy copy(folder);
    copy.setInterruption(interrupted);
    QObject::connect(&copy, &DatabaseCopy::progress, show);
    if (const Failure failure = copy.make(source.parameters(), options.copy, &copied))
        return failure;
    show(Text::tr("running the pass on the copy"));
    Rehearsal rehearsal(options.wishes);
    rehearsal.setInterruption(interrupted);
    const Failure failure = rehearsal.run(copy.parameters(), copy.administratorParameters(),
                                          &changes);
    changes.header.state = QString::fromLatin1(copied.digest);
    writer.wipeProgress();
    copy.stop();
    return failure;
}

Failure RehearsalSession::tell() const
{
    if (!options.changesFile.isEmpty()) {
        if (const Failure failure = writeChangesFile(changes, options.changesFile))
            return failure;
    }
    if (!options.html.isEmpty()) {
        if (const Failure failure = writeHtmlPage(options.html, QStringLiteral("rehearsal"),
                                                  rehearsalHtmlValues(changes, limits, copied)))
            return failure;
    }
    if (options.form == ReportForm::Json) {
        writeChanges(changes, printBytes);
        flushOutput();
        return {};
    }
    if (!options.person.isEmpty())
        return tellPerson();
    if (options.isQuiet)
        printText(verdictLine() + QLatin1Char('\n'));
    else
        tellPage();
    return {};
}

Failure RehearsalSession::tellPerson() const
{
    const auto found = std::find_if(
        changes.people.cbegin(), changes.people.cend(),
        [this](const ChangedPerson &person) { return person.person.pamId == options.person; });
    if (found == changes.people.cend())
        printText(Text::tr("Nothing changes for %1.\n").arg(options.person));
    else
        printText(personText(*found, changes.names, outputWidth()));
    return {};
}

void RehearsalSession::tellPage() const
{
    const int width = outputWidth();
    printText(summaryText(changes, width));
    const QStringList notes = copied.warnings + copied.leftOut + exceeded();
    for (const QString &note : notes)
        printText(QLatin1Char('\n') + wrapped(note, width, 0) + QLatin1Char('\n'));
    const QVector<int> places = worstFirst(changes);
    for (const int place : places.mid(0, shownPeople))
        printText(QLatin1Char('\n') + personText(changes.people.at(place), changes.names, width));
    if (places.size() > shownPeople)
        printText(Text::tr("\nand %1 more people; --person shows one, --html or --changes all\n")
                      .arg(places.size() - shownPeople));
    printText(QLatin1Char('\n') + wrapped(verdictLine(), width, 0) + QLatin1Char('\n'));
}

QStringList RehearsalSession::exceeded() const
{
    QStringList lines;
    for (const LimitOutcome &outcome : limits) {
        if (outcome.isExceeded())
            lines.append(Text::tr("Limit: %1.").arg(exceededText(outcome)));
    }
    return lines;
}

QString RehearsalSession::verdictLine() const
{
    const int beyond = exceeded().size();
    const qint64 errors = changes.summary[ChangeKind::Errors];
    const QString counts = Text::tr("people who change: %1, errors: %2, plan: %3")
                               .arg(changes.people.size())
                               .arg(errors)
                               .arg(changes.plan.hash);
    // Without the plan, which would let the pass through.
    if (beyond > 0)
        return Text::tr("Refused, limits exceeded: %1; people who change: %2, errors: %3")
            .arg(beyond)
            .arg(changes.people.size())
            .arg(errors);
    if (errors > 0)
        return Text::tr("The pass has errors; %1").arg(counts);
    return changes.people.isEmpty() && changes.others.isEmpty()
        ? Text::tr("Nothing would change; %1").arg(counts)
        : Text::tr("Within the limits; %1").arg(counts);
}

ExitCode RehearsalSession::exitCode() const
{
    if (!exceeded().isEmpty())
        return ExitRefused;
    if (changes.summary[ChangeKind::Errors] > 0)
        return ExitErrors;
    const bool isChanged = !changes.people.isEmpty() || !changes.others.isEmpty();
    return isChanged && options.tellsChanges ? ExitChanged : ExitClean;
}
