// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the passes of a run change, on standard output.
#include "host/commands/changewatch.h"

#include "host/database/changetext.h"
#include "host/report/console.h"
#include "host/report/textreport.h"

#include <QRegularExpression>

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

ChangeWatch::ChangeWatch() :
    connection(QStringLiteral("talvenhr.changes"))
{ }

Failure ChangeWatch::begin(const ConnectionParameters &parameters)
{
    const Failure failure = connection.open(parameters);
    return failure ? failure : read(&shown);
}

Failure ChangeWatch::show(int pass)
{
    if (pass == shownPass)
        return {};
    Snapshot now;
    if (const Failure failure = read(&now))
        return failure;
    const QVector<Change> changes = difference(shown, now);
    const QString text = titleOf(passesText(shownPass + 1, pass), changes)
        + pageOf(changeTexts(changes, now.names)) + QLatin1Char('\n');
    printText(text);
    if (!outputTrouble().isEmpty())
        return {ExitErrors,
                QStringLiteral("changes cannot be shown: standard output cannot be written: %1")
                    .arg(outputTrouble())};
    shown = now;
    shownPass = pass;
    return {};
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
