// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The next pass of a server that has taken exports before.
#include "host/rehearsal/serverlife.h"

#include "host/database/attendance.h"
#include "host/database/errortext.h"
#include "host/rehearsal/pretendedday.h"
#include "host/rehearsal/uncertainty.h"

#include <QCoreApplication>
#include <QSqlQuery>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ServerLife)
};

/// Nothing else says that a membership or a plan was wanted and is not there.
bool tellsOfUndone(const PassMessage &message)
{
    return message.text.startsWith(QLatin1String("BranchesRepository::addPeopleToBranch - ERROR"))
        || message.text.startsWith(QLatin1String("THRWorker: can't add record '"));
}

} // namespace

ServerLife::ServerLife(const RehearsalWishes &rehearsalWishes, const RehearsalSite *rehearsalSite,
                       const ConnectionParameters &administratorParameters) :
    wishes(rehearsalWishes),
    site(rehearsalSite),
    parameters(administratorParameters),
    administrator(QStringLiteral("talvenhr.life")),
    plugin(rehearsalSite->changesFolder())
{ }

Failure ServerLife::run(const QStringList &arguments, Changes *changes)
{
    if (const Failure failure = prepare())
        return failure;
    if (const Failure failure = replay(arguments))
        return failure;
    if (const Failure failure = site->replaceExport(wishes.exportFile))
        return failure;
    if (const Failure failure = letWrite(true))
        return failure;
    plugin.goOn();
    if (const Failure failure = plugin.waitForPass())
        return failure;
    if (const Failure failure = plugin.readChanges(changes))
        return failure;
    // It looks at everybody, whatever the server remembers.
    return changes->header.forced ? Failure() : mark(changes);
}

Failure ServerLife::prepare()
{
    for (const QString &file : wishes.after) {
        if (const Failure failure = memory.take(file))
            return failure;
    }
    if (const Failure failure = memory.compare(wishes.exportFile, &seen))
        return failure;
    if (const Failure failure = administrator.open(parameters))
        return failure;
    if (const Failure failure = commitEach())
        return failure;
    if (const Failure failure = readLeaveDoubts(administrator.handle(), seen, &doubts))
        return failure;
    // The earlier passes are forced as well then, which makes no difference to what is remembered
    // of a database that stays as it is. None of them can take the mark back.
    return wishes.force ? forceNextPass(administrator.handle()) : Failure();
}

Failure ServerLife::replay(const QStringList &arguments)
{
    if (const Failure failure = letWrite(false))
        return failure;
    bool isRunning = false;
    for (const QString &file : wishes.after) {
        if (const Failure failure = site->replaceExport(file))
            return failure;
        if (isRunning)
            plugin.goOn();
        else
            plugin.start(arguments, environmentOfDay(wishes.today));
        isRunning = true;
        if (Failure failure = plugin.waitForPass()) {
            failure.text.replace(site->exportFile(), file);
            return failure;
        }
        if (const Failure failure = noteUndone())
            return failure;
    }
    return {};
}

/// By what the plugin complains of while it cannot write.
Failure ServerLife::noteUndone()
{
    Changes changes;
    if (const Failure failure = plugin.readChanges(&changes))
        return failure;
    for (const ChangedPerson &person : qAsConst(changes.people)) {
        if (person.person.uid != 0
            && std::any_of(person.messages.cbegin(), person.messages.cend(), tellsOfUndone))
            undone.insert(person.pid, person.person);
    }
    return {};
}

Failure ServerLife::mark(Changes *changes)
{
    const QVector<LeaveDoubt> open = stillOpen(doubts, *changes);
    Changes otherwise;
    if (const Failure failure = runOtherwise(open, &otherwise))
        return failure;
    markDoubts(open, otherwise, changes);
    QHash<qlonglong, Person> missing;
    for (const SeenPerson &person : qAsConst(seen)) {
        const auto found = undone.constFind(person.pid);
        if (person.isUnchanged && found != undone.constEnd())
            missing.insert(person.pid, *found);
    }
    markUndone(missing, changes);
    return {};
}

/// Only people of whom the pass had nothing to do: nothing of them has changed in between.
Failure ServerLife::runOtherwise(const QVector<LeaveDoubt> &open, Changes *otherwise)
{
    QByteArray lines;
    for (const LeaveDoubt &doubt : open) {
        if (doubt.person.isUnchanged)
            lines += doubt.person.lines;
    }
    if (lines.isEmpty())
        return {};
    if (const Failure failure = site->replaceExport(lines))
        return failure;
    if (const Failure failure = forceNextPass(administrator.handle()))
        return failure;
    plugin.goOn();
    if (const Failure failure = plugin.waitForPass())
        return failure;
    return plugin.readChanges(otherwise);
}

/// Whatever sessions of the source begin with: the mark of a forced pass would be seen by nobody,
/// and the plugin would wait for its row.
Failure ServerLife::commitEach() const
{
    QSqlQuery query(administrator.handle());
    if (query.exec(QStringLiteral("SET SESSION autocommit = 1")))
        return {};
    return {ExitDatabase,
            Text::tr("the copy cannot be written: %1").arg(errorText(query.lastError()))};
}

/// From the connections on that are opened next, whosever they are. The plugin opens one for each
/// pass.
Failure ServerLife::letWrite(bool write) const
{
    QSqlQuery query(administrator.handle());
    const QString statement = write ? QStringLiteral("SET GLOBAL TRANSACTION READ WRITE")
                                    : QStringLiteral("SET GLOBAL TRANSACTION READ ONLY");
    if (query.exec(statement))
        return {};
    return {
        ExitDatabase,
        Text::tr("the copy cannot be kept from changing: %1").arg(errorText(query.lastError()))};
}
