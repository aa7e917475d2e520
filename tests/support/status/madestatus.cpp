// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Exports, passes and losses that a test makes up.
#include "support/status/madestatus.h"

#include "host/changes/changesjson.h"
#include "host/status/concerns.h"
#include "support/passchanges.h"

#include <QtTest>

GateRecord rehearsed(GateRecord record, int added, int errors)
{
    record.rehearsal = RehearsedFigures {0, added, QStringLiteral("abc"), KindCounts()};
    record.rehearsal->summary[ChangeKind::Added] = added;
    record.rehearsal->summary[ChangeKind::Errors] = errors;
    return record;
}

GateRecord refused(GateRecord record)
{
    record.reasons = {{QStringLiteral("limit:ended"), QStringLiteral("too many | ends"), {}}};
    return record;
}

void keepPass(const GateFolder &folder, int hoursAgo, const PassTold &told)
{
    Changes changes = changesBy(told);
    changes.header.how = ChangesHeader::Run;
    changes.header.when = GateFolder::now().addSecs(-3600 * hoursAgo);
    changes.header.since = changes.header.when.addSecs(-7);
    const QString path = folder.path(QStringLiteral("archive/"))
        + changes.header.when.toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z-1.changes.json'"));
    if (const Failure failure = writeChangesFile(changes, path))
        QTest::qFail(qPrintable(failure.text), __FILE__, __LINE__);
}

PassTold toldError()
{
    PassTold told;
    ToldMessage message;
    message.message = {true, QDateTime(), QStringLiteral("dbAddPerson(x) - SQL ERROR [1062]: no")};
    told.messages = {message};
    told.waiting = 2;
    return told;
}

QString firstConcern(const Status &status)
{
    const QVector<Concern> concerns = concernsOf(status);
    return concerns.isEmpty()
        ? QString()
        : levelName(concerns.constFirst().level) + QLatin1Char(' ') + concerns.constFirst().text;
}

LostPerson lostEva()
{
    LostPerson lost;
    lost.person = {7, QStringLiteral("1001.1"), QStringLiteral("Eva Malá")};
    lost.record = QStringLiteral("20261122T100000Z-1");
    lost.missing.kinds.add(ChangeKind::Added);
    lost.remedies = {Remedy::Force};
    return lost;
}
