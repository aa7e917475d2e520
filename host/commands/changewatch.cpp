// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the passes of a run change: on standard output, and in files.
#include "host/commands/changewatch.h"

#include "host/base/ownerfile.h"
#include "host/changes/changesbuilder.h"
#include "host/changes/changesfolder.h"
#include "host/changes/changesjson.h"
#include "host/database/changetext.h"
#include "host/report/console.h"
#include "host/report/textreport.h"

#include <QCoreApplication>
#include <QMutexLocker>
#include <QRegularExpression>
#include <QSqlQuery>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ChangeWatch)
};

const int outputWidth = 100;
const int continuation = 6; // blanks before what does not fit into a line

/// "Pass 3", or "Passes 2 to 3".
QString passesText(int first, int last)
{
    return first == last ? Text::tr("Pass %1").arg(last)
                         : Text::tr("Passes %1 to %2").arg(first).arg(last);
}

QString titleOf(const QString &passes, int rows)
{
    if (rows == 0)
        return Text::tr("%1: no rows changed").arg(passes);
    return rows == 1 ? Text::tr("%1: 1 row changed").arg(passes)
                     : Text::tr("%1: %2 rows changed").arg(passes).arg(rows);
}

/// Broken between cells only.
QString broken(const QString &line)
{
    static const QRegularExpression betweenCells(QStringLiteral("(?<=,) "));
    return wrapped(line.split(betweenCells), outputWidth - continuation, continuation);
}

QString pageOf(const QVector<PersonChanges> &persons)
{
    QString page;
    for (const PersonChanges &changes : persons) {
        page += QStringLiteral("\n%1\n").arg(changes.person);
        for (const QString &line : changes.lines)
            page += QStringLiteral("  %1\n").arg(broken(line));
    }
    return page;
}

/// There was no export, and the plugin has said no more than that.
bool hadNothingToDo(const PassTold &told)
{
    return told.exported.digest.isEmpty()
        && std::none_of(told.messages.cbegin(), told.messages.cend(),
                        [](const ToldMessage &message) { return message.message.isError; });
}

Failure cannotBeShown(Failure failure)
{
    failure.text = Text::tr("changes cannot be shown: %1").arg(failure.text);
    return failure;
}

} // namespace

ChangeWatch::ChangeWatch(const ChangeWishes &changeWishes) :
    wishes(changeWishes)
{ }

Failure ChangeWatch::begin(const ConnectionParameters &connectionParameters)
{
    if (!wishes.folder.isEmpty()) {
        if (const Failure failure = makeOwnerFolder(wishes.folder))
            return failure;
    }
    parameters = connectionParameters;
    Connection connection(QStringLiteral("talvenhr.changes"));
    if (const Failure failure = connection.open(parameters))
        return failure;
    {
        QSqlQuery query(connection.handle());
        if (query.exec(QStringLiteral("SELECT VERSION()")) && query.next())
            serverVersion = query.value(0).toString();
    }
    lastMoment = QDateTime::currentDateTime();
    const Failure failure = readSnapshot(connection.handle(), SnapshotRows::Touchable, &last);
    return failure ? cannotBeShown(failure) : failure;
}

void ChangeWatch::look(int pass, PassNotes *notes)
{
    Look look;
    look.pass = pass;
    look.moment = QDateTime::currentDateTime();
    Connection connection(QStringLiteral("talvenhr.changes.pass"));
    look.done = !read(&connection, &look.snapshot);
    if (look.done)
        look.told = notes->take();
    const QMutexLocker locker(&mutex);
    looks.append(look);
}

QStringList ChangeWatch::tell(PassNotes *notes, const ChangesHeader &known)
{
    QVector<Look> taken;
    {
        const QMutexLocker locker(&mutex);
        qSwap(taken, looks);
    }
    QStringList troubles;
    for (const Look &look : qAsConst(taken)) {
        missedPass = look.done ? 0 : look.pass;
        if (look.done)
            troubles += tellOf(look, known);
    }
    if (missedPass == 0)
        return troubles;
    Look late;
    late.pass = missedPass;
    late.moment = QDateTime::currentDateTime();
    Connection connection(QStringLiteral("talvenhr.changes"));
    if (const Failure failure = read(&connection, &late.snapshot))
        return troubles << failure.text;
    late.told = notes->take();
    missedPass = 0;
    return troubles + tellOf(late, known);
}

QStringList ChangeWatch::tellOf(const Look &now, const ChangesHeader &known)
{
    ChangesHeader header = known;
    header.server = serverVersion;
    header.since = lastMoment;
    header.when = now.moment;
    header.firstPass = lastPass + 1;
    header.lastPass = now.pass;
    const QVector<Change> changes = difference(last, now.snapshot);
    QStringList troubles;
    if (wishes.shown && !outputLost) {
        if (const Failure failure = show(now.pass, changes, now.snapshot.names))
            troubles.append(failure.text);
    }
    if (!wishes.folder.isEmpty()) {
        if (const Failure failure = write(changes, now, header))
            troubles.append(failure.text);
    }
    last = now.snapshot;
    lastMoment = now.moment;
    lastPass = now.pass;
    return troubles;
}

Failure ChangeWatch::show(int pass, const QVector<Change> &changes, const IdNames &names)
{
    printText(titleOf(passesText(lastPass + 1, pass), changes.size()) + QLatin1Char('\n')
              + pageOf(changeTexts(changes, names)) + QLatin1Char('\n'));
    if (outputTrouble().isEmpty())
        return {};
    outputLost = true;
    return {ExitErrors,
            Text::tr("changes cannot be shown: standard output cannot be written: %1")
                .arg(outputTrouble())};
}

Failure ChangeWatch::write(const QVector<Change> &changes, const Look &now,
                           const ChangesHeader &header)
{
    if (changes.isEmpty() && hadNothingToDo(now.told))
        return {};
    Failure failure = writeChangesFile(changesFrom(changes, last, now.snapshot, now.told, header),
                                       newChangesPath(wishes.folder, header));
    if (failure) {
        fileMissing = true;
        failure.text = Text::tr("the changes of pass %1 are lost: %2")
                           .arg(header.lastPass)
                           .arg(failure.text);
    }
    return failure;
}

Failure ChangeWatch::read(Connection *connection, Snapshot *snapshot) const
{
    Failure failure = connection->open(parameters);
    if (!failure)
        failure = readSnapshot(connection->handle(), SnapshotRows::Touchable, snapshot);
    connection->close();
    return failure ? cannotBeShown(failure) : failure;
}
