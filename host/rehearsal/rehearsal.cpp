// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The next pass, run on a copy.
#include "host/rehearsal/rehearsal.h"

#include "host/base/childprocess.h"
#include "host/changes/changesfolder.h"
#include "host/changes/passnotes.h"
#include "host/plugin/settingsfile.h"
#include "host/rehearsal/childwords.h"
#include "host/rehearsal/pretendedday.h"
#include "host/rehearsal/realnames.h"
#include "host/rehearsal/rehearsalsite.h"
#include "host/rehearsal/serverlife.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Rehearsal)
};

const int pollInterval = 50; // milliseconds

QString tracePath(const QString &folder)
{
    return folder + QStringLiteral("/trace");
}

} // namespace

Rehearsal::Rehearsal(const RehearsalWishes &rehearsalWishes) :
    wishes(rehearsalWishes)
{ }

Failure Rehearsal::run(const ConnectionParameters &copy, const ConnectionParameters &administrator,
                       Changes *changes)
{
    RehearsalSite site;
    Failure failure = site.make(wishes.settingsFile, wishes.exportFile);
    if (!failure)
        failure = runOn(copy, administrator, &site, changes);
    const RealNames names(site, wishes);
    failure.text = names.in(failure.text);
    if (failure)
        return failure;
    names.putInto(&steps);
    names.putInto(changes);
    changes->header.how = ChangesHeader::Rehearsed;
    // That of the copy is another one each time, for the name of the export.
    changes->header.settings = SettingsFile(wishes.settingsFile).values().digest;
    changes->header.exported.name = QFileInfo(names.exportFile()).fileName();
    for (const QString &file : wishes.after)
        changes->header.after.append(identityOf(file));
    return {};
}

Failure Rehearsal::runOn(const ConnectionParameters &copy,
                         const ConnectionParameters &administrator, RehearsalSite *site,
                         Changes *changes)
{
    if (wishes.today.isValid()) {
        if (const Failure failure = pretendDay(administrator, wishes.today))
            return failure;
    }
    if (const Failure failure = wishes.after.isEmpty()
            ? runFresh(copy, *site, changes)
            : runAfterOthers(copy, administrator, site, changes))
        return failure;
    return wishes.traced ? readTrace(tracePath(site->path()), &steps) : Failure();
}

Failure Rehearsal::runFresh(const ConnectionParameters &copy, const RehearsalSite &site,
                            Changes *changes)
{
    if (const Failure failure = runProcess(copy, site))
        return failure;
    return readChangesOfPass(site.changesFolder(), 1, changes);
}

Failure Rehearsal::runAfterOthers(const ConnectionParameters &copy,
                                  const ConnectionParameters &administrator, RehearsalSite *site,
                                  Changes *changes)
{
    QStringList words = arguments(copy, site->path());
    words.removeAll(QStringLiteral("--once"));
    words.removeAll(QStringLiteral("--force"));
    words.append(QStringLiteral("--hold"));
    ServerLife life(wishes, site, administrator);
    life.setInterruption(isInterrupted);
    return life.run(words, changes);
}

/// Without a configuration: the one of the user names the source, which would be the database then.
QStringList Rehearsal::arguments(const ConnectionParameters &copy, const QString &folder) const
{
    QStringList words {QStringLiteral("run"),        QStringLiteral("--once"),
                       QStringLiteral("--config"),   QProcess::nullDevice(),
                       QStringLiteral("--data-dir"), folder,
                       QStringLiteral("--plugin"),   wishes.pluginFile,
                       QStringLiteral("--socket"),   copy.socket,
                       QStringLiteral("--database"), copy.database,
                       QStringLiteral("--user"),     copy.user,
                       QStringLiteral("--changes"),  RehearsalSite::changesFolder(folder),
                       QStringLiteral("--timeout"),  QString::number(wishes.timeout)};
    if (wishes.traced)
        words << QStringLiteral("--trace") << tracePath(folder);
    // At level 3 each record has its own message.
    words << QStringLiteral("--log-level")
          << (wishes.traced ? QStringLiteral("3") : QStringLiteral("0"));
    if (wishes.force)
        words.append(QStringLiteral("--force"));
    return words;
}

Failure Rehearsal::runProcess(const ConnectionParameters &copy, const RehearsalSite &site)
{
    ChildProcess process;
    process.dieWithHost();
    process.setProcessEnvironment(environmentOfDay(wishes.today));
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(QCoreApplication::applicationFilePath(), arguments(copy, site.path()));
    while (!process.waitForFinished(pollInterval) && process.state() != QProcess::NotRunning) {
        if (isInterrupted && isInterrupted()) {
            process.killAll();
            return {ExitInterrupted, Text::tr("interrupted while the pass was rehearsed")};
        }
    }
    const int code = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    // 1 is a pass with errors, and those are what a rehearsal is for.
    if (code == ExitClean || code == ExitErrors)
        return {};
    return {code < 0 ? ExitErrors : static_cast<ExitCode>(code),
            Text::tr("the rehearsed pass did not come to its end: %1")
                .arg(lastWords(process.readAllStandardError()))};
}
