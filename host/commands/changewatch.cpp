// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the passes of a run change: on standard output, and in files.
#include "host/commands/changewatch.h"

#include "host/changes/changesbuilder.h"
#include "host/changes/changesfolder.h"
#include "host/changes/changesjson.h"
#include "host/database/changetext.h"
#include "host/report/console.h"
#include "host/report/textreport.h"

#include <QRegularExpression>
#include <QSqlQuery>

namespace {

const int outputWidth = 100;
const int continuation = 6; // blanks before what does not fit into a line

/// "Pass 3", or "Passes 2 to 3".
QString passesText(int first, int last)
{
    return first == last ? QStringLiteral("Pass %1").arg(last)
                         : QStringLiteral("Passes %1 to %2").arg(first).arg(last);
}

QString titleOf(const QString &passes, const QVector<Change> &changes)
{
    if (changes.isEmpty())
        return passes + QStringLiteral(": no rows changed\n");
    return QStringLiteral("%1: %2 changed\n")
        .arg(passes,
             changes.size() == 1 ? QStringLiteral("1 row")
                                 : QStringLiteral("%1 rows").arg(changes.size()));
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

} // namespace

ChangeWatch::ChangeWatch(const ChangeWishes &changeWishes) :
    wishes(changeWishes),
    connection(QStringLiteral("talvenhr.changes"))
{ }

Failure ChangeWatch::begin(const ConnectionParameters &parameters)
{
    if (!wishes.folder.isEmpty()) {
        if (const Failure failure = makeChangesFolder(wishes.folder))
            return failure;
    }
    if (const Failure failure = connection.open(parameters))
        return failure;
    QSqlQuery query(connection.handle());
    if (query.exec(QStringLiteral("SELECT VERSION()")) && query.next())
        serverVersion = query.value(0).toString();
    query.finish();
    lastMoment = QDateTime::currentDateTime();
    return read(&last);
}

QStringList ChangeWatch::tell(int pass, PassNotes *notes, const ChangesHeader &known)
{
    if (pass == lastPass)
        return {};
    ChangesHeader header = known;
    header.server = serverVersion;
    header.since = lastMoment;
    header.when = QDateTime::currentDateTime();
    header.firstPass = lastPass + 1;
    header.lastPass = pass;
    Snapshot now;
    if (const Failure failure = read(&now))
        return {failure.text};
    const QVector<Change> changes = difference(last, now);
    QStringList troubles;
    if (wishes.shown) {
        if (const Failure failure = show(pass, changes, now.names))
            troubles.append(failure.text);
    }
    if (!wishes.folder.isEmpty()) {
        if (const Failure failure = write(changes, now, notes->take(), header))
            troubles.append(failure.text);
    }
    last = now;
    lastMoment = header.when;
    lastPass = pass;
    return troubles;
}

Failure ChangeWatch::show(int pass, const QVector<Change> &changes, const IdNames &names)
{
    printText(titleOf(passesText(lastPass + 1, pass), changes) + pageOf(changeTexts(changes, names))
              + QLatin1Char('\n'));
    if (outputTrouble().isEmpty())
        return {};
    outputLost = true;
    wishes.shown = false;
    return {ExitErrors,
            QStringLiteral("changes cannot be shown: standard output cannot be written: %1")
                .arg(outputTrouble())};
}

Failure ChangeWatch::write(const QVector<Change> &changes, const Snapshot &now,
                           const PassTold &told, const ChangesHeader &header)
{
    Failure failure = writeChangesFile(changesFrom(changes, last, now, told, header),
                                       newChangesPath(wishes.folder, header));
    if (failure) {
        fileMissing = true;
        failure.text = QStringLiteral("the changes of pass %1 are lost: %2")
                           .arg(header.lastPass)
                           .arg(failure.text);
    }
    return failure;
}

Failure ChangeWatch::read(Snapshot *snapshot)
{
    Failure failure = connection.open();
    if (!failure)
        failure = readSnapshot(connection.handle(), SnapshotRows::Touchable, snapshot);
    connection.close();
    if (failure)
        failure.text.prepend(QStringLiteral("changes cannot be shown: "));
    return failure;
}
