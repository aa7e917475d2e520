// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What folders tell of exports and passes.
#include "host/changes/changesjson.h"
#include "host/status/folderstatus.h"
#include "host/status/statusreport.h"
#include "support/passchanges.h"
#include "support/status/madestatus.h"

#include <QDir>
#include <QFile>
#include <QtTest>

class tst_Status : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void export_isReadOnceItIsGone();
    void export_ofALongIntervalIsReadOnceItsPassIsOver();
    void lastExport_isTheNewestOfSeveral();
    void export_inPlaceIsUnread();
    void export_thatStaysIsReadAfterAnInterval();
    void supersededExports_wereNeverRead();
    void pass_comesFromItsChanges();
    void pass_comesFromThePlace();
    void pass_ranBetweenWhatTheGateHasSeen();
    void rehearsals_ofPassesThatOverlapAreSettled();
    void damagedFiles_areNamed();
    void rehearsals_areThoseOfExportsThatWereRead();
    void settledFile_isThatOfAnExportThatPassed();
    void folders_tellWhatTheyHold();
    void damagedRecord_hidesNoOther();
    void manyRecords_areAllRead();
};

void tst_Status::export_isReadOnceItIsGone()
{
    const GateFolder folder;
    const GateRecord record = folder.record(2, "a");
    folder.keep(record);
    QCOMPARE(readExports(folder.status()), QStringList {record.name});
    QVERIFY(newestIsJudged(folder.status()));

    // Its pass may still be at work.
    const GateRecord young = folder.record(0, "b");
    folder.keep(young);
    folder.age(QStringLiteral("site"), 0);
    QCOMPARE(readExports(folder.status()), QStringList {record.name});
    QVERIFY(!newestIsJudged(folder.status()));
}

void tst_Status::export_ofALongIntervalIsReadOnceItsPassIsOver()
{
    const GateFolder folder;
    const GateRecord record = folder.record(5, "a");
    folder.keep(record);
    folder.age(QStringLiteral("site"), 0);
    StatusSources sources = folder.sources();
    sources.passSeconds = 6 * 3600;
    QCOMPARE(readExports(readStatus(sources, folder.now())), QStringList());
    sources.passSeconds = 0;
    QCOMPARE(readExports(readStatus(sources, folder.now())), QStringList());
    // Something else changes the folder all the time.
    sources.passSeconds = 4 * 3600;
    QCOMPARE(readExports(readStatus(sources, folder.now())), QStringList {record.name});
}

/// In the order in which a gate decides on them: the newest first.
void tst_Status::lastExport_isTheNewestOfSeveral()
{
    const GateFolder folder;
    GateRecord newest = refused(folder.record(5, "a", GateRecord::Refused));
    newest.fileTime = folder.now().addSecs(-60);
    const GateRecord sound = folder.record(4, "b");
    const GateRecord oldest = folder.record(3, "c", GateRecord::Superseded);
    for (const GateRecord &record : {newest, sound, oldest})
        folder.keep(record);
    const Status status = folder.status();
    QCOMPARE(lastRecord(status)->name, newest.name);
    QCOMPARE(lastPassed(status.records)->name, sound.name);
    QCOMPARE(firstConcern(status),
             QStringLiteral("CRITICAL the last export was refused: too many | ends"));

    newest.fileTime = sound.fileTime.addSecs(-60);
    folder.keep(newest);
    QCOMPARE(lastRecord(folder.status())->name, sound.name);

    newest.fileTime = folder.now();
    newest.reasons = {{QStringLiteral("foreign"), QStringLiteral("it lay there"), {}}};
    folder.keep(newest);
    QCOMPARE(lastRecord(folder.status())->name, sound.name);
}

void tst_Status::export_inPlaceIsUnread()
{
    const GateFolder folder;
    const GateRecord record = folder.record(2, "a");
    folder.keep(record);
    folder.write(QStringLiteral("site/ron.data"), "a", 2);
    Status status = folder.status();
    QCOMPARE(readExports(status), QStringList());
    QCOMPARE(status.place.record, record.name);
    QVERIFY(isUnread(status));
    QCOMPARE(firstConcern(status), QString());
    folder.write(QStringLiteral("site/ron.data"), "a", 3);
    QCOMPARE(firstConcern(folder.status()),
             QStringLiteral("CRITICAL the export in place has not been read for 3 h 0 min"));
    folder.write(QStringLiteral("site/ron.data"), "else", 1);
    status = folder.status();
    QCOMPARE(status.place.record, QString());
    QCOMPARE(firstConcern(status),
             QStringLiteral("WARNING what lies in place has not come through the gate"));
}

void tst_Status::export_thatStaysIsReadAfterAnInterval()
{
    const GateFolder folder;
    const GateRecord record = folder.record(1, "a");
    folder.keep(record);
    folder.write(QStringLiteral("site/ron.data"), "a", 1);
    StatusSources sources = folder.sources();
    sources.staysInPlace = true;
    const Status young = readStatus(sources, folder.now());
    QVERIFY(!isUnread(young));
    QCOMPARE(readExports(young), QStringList());
    QCOMPARE(readExports(readStatus(sources, folder.now().addSecs(1200))),
             QStringList {record.name});
}

void tst_Status::supersededExports_wereNeverRead()
{
    const GateFolder folder;
    const GateRecord first = folder.record(5, "a", GateRecord::Superseded);
    const GateRecord second = folder.record(4, "b");
    GateRecord third = folder.record(3, "c");
    third.replaced = second.name;
    const GateRecord fourth = folder.record(2, "d", GateRecord::Refused);
    for (const GateRecord &record : {first, second, third, fourth})
        folder.keep(record);
    QCOMPARE(readExports(folder.status()), QStringList {third.name});
}

void tst_Status::pass_comesFromItsChanges()
{
    const GateFolder folder;
    folder.keep(folder.record(5, "a"));
    keepPass(folder, 4, PassTold());
    keepPass(folder, 3, toldError());
    const Status status = folder.status();
    QCOMPARE(status.pass.source, PassStatus::FromChanges);
    QCOMPARE(status.pass.when, folder.now().addSecs(-3 * 3600));
    QCOMPARE(status.pass.errors.value(QStringLiteral("1062")), 1);
    QCOMPARE((*status.pass.summary)[ChangeKind::Waiting], Q_INT64_C(2));
    QCOMPARE(nextPassDue(status), folder.now().addSecs(-2 * 3600));

    // The place tells of a newer one.
    folder.keep(rehearsed(folder.record(2, "b"), 4));
    QCOMPARE(folder.status().pass.source, PassStatus::FromPlace);
}

void tst_Status::pass_comesFromThePlace()
{
    const GateFolder folder;
    const GateRecord record = rehearsed(folder.record(3, "a"), 4);
    folder.keep(record);
    folder.age(QStringLiteral("site"), 2);
    PassTold told;
    told.leave = {{10011, NotDone::LeaveNotAtRest, QStringLiteral("not at rest")}};
    told.messages = toldError().messages;
    told.statements = 42;
    folder.keep(record, changesBy(told));
    const Status status = folder.status();
    QCOMPARE(status.pass.file, record.name);
    QCOMPARE(status.pass.notBefore, record.when);
    QCOMPARE(status.pass.when, folder.now().addSecs(-2 * 3600));
    QCOMPARE((*status.pass.summary)[ChangeKind::Added], Q_INT64_C(4));
    QCOMPARE(status.pass.errors.value(QStringLiteral("1062")), 1);
    QCOMPARE(status.pass.statements, 42);
    QCOMPARE(status.waiting.size(), 1);
    QVERIFY(!waitsForSomebody(status.waiting.constFirst()));

    // One that has only just begun is the last one already.
    const GateRecord newer = folder.record(1, "b");
    folder.keep(newer);
    folder.age(QStringLiteral("site"), 0);
    QCOMPARE(folder.status().pass.file, newer.name);
}

/// Whatever else comes to the folder: a server that is dead does not look alive.
void tst_Status::pass_ranBetweenWhatTheGateHasSeen()
{
    const GateFolder folder;
    const GateRecord record = folder.record(5, "a");
    folder.keep(record);
    const QString state = folder.sources().state;
    const auto hoursAgo = [](int hours) { return GateFolder::now().addSecs(-3600 * hours); };
    QVERIFY(!notePlace(state, record.name, true, hoursAgo(5), hoursAgo(4)));
    QVERIFY(!notePlace(state, record.name, false, hoursAgo(3), hoursAgo(2)));
    QVERIFY(!notePlace(state, record.name, false, hoursAgo(1), hoursAgo(1)));
    folder.age(QStringLiteral("site"), 0);
    Status status = folder.status();
    QCOMPARE(status.pass.notBefore, hoursAgo(4));
    QCOMPARE(status.pass.when, hoursAgo(3));
    QCOMPARE(readExports(status), QStringList {record.name});
    QVERIFY(newestIsJudged(status));

    // Somebody has put it there again.
    QVERIFY(!notePlace(state, record.name, true, hoursAgo(1), hoursAgo(1)));
    status = folder.status();
    QCOMPARE(status.pass.notBefore, hoursAgo(1));
    QCOMPARE(status.pass.when, hoursAgo(0));
    // A clock was set back: the gate's own moment counts.
    QVERIFY(!notePlace(state, record.name, false, hoursAgo(3), hoursAgo(0)));
    QCOMPARE(folder.status().pass.when, hoursAgo(0));
}

/// What a pass has done after the rehearsal of the next one, the next pass may take back.
void tst_Status::rehearsals_ofPassesThatOverlapAreSettled()
{
    const GateFolder folder;
    const GateRecord first = folder.record(5, "a");
    const GateRecord second = folder.record(3, "b");
    const GateRecord third = folder.record(1, "c");
    for (const GateRecord &record : {first, second, third}) {
        folder.keep(record);
        folder.keep(record, changesBy(PassTold()));
    }
    folder.age(QStringLiteral("site"), 1);
    const auto settled = [&folder] {
        QVector<bool> all;
        const QVector<RehearsedExport> rehearsals = readRehearsals(folder.status());
        for (const RehearsedExport &rehearsed : rehearsals)
            all.append(rehearsed.isSettled && rehearsed.isOverlapped);
        return all;
    };
    QCOMPARE(settled(), QVector<bool>({false, false, false}));
    const QString state = folder.sources().state;
    // One was gone long before, the other one only while the next one was looked at.
    QVERIFY(!notePlace(state, first.name, false, first.when.addSecs(60), second.when));
    QVERIFY(!notePlace(state, second.name, true, second.when, third.when));
    QCOMPARE(settled(), QVector<bool>({false, true, false}));
    QVERIFY(!notePlace(state, second.name, false, third.when.addSecs(-60), third.when));
    QCOMPARE(settled(), QVector<bool>({false, true, false}));
    QVERIFY(!notePlace(state, second.name, true, second.when, second.when));
    QVERIFY(!notePlace(state, second.name, false, third.when.addSecs(-3600), third.when));
    QCOMPARE(settled(), QVector<bool>({false, false, false}));
}

void tst_Status::damagedFiles_areNamed()
{
    const GateFolder folder;
    folder.keep(folder.record(3, "a"));
    folder.write(QStringLiteral("archive/1.gate.json"), "{");
    folder.write(QStringLiteral("archive/2-1.changes.json"), "{");
    StatusSources sources = folder.sources();
    sources.refused = folder.path(QStringLiteral("nowhere"));
    const Status status = readStatus(sources, folder.now());
    QCOMPARE(status.records.size(), 1);
    QCOMPARE(status.unknown.size(), 3);
    QCOMPARE(status.unknown.constFirst().reason, QStringLiteral("it is not there"));
    QCOMPARE(levelOf(concernsOf(status)), Level::Unknown);
    QCOMPARE(exitCodeOf(status), ExitErrors);
}

void tst_Status::rehearsals_areThoseOfExportsThatWereRead()
{
    const GateFolder folder;
    const GateRecord old = folder.record(24 * 20, "o");
    const GateRecord read = folder.record(5, "a");
    const GateRecord unread = folder.record(2, "b");
    for (const GateRecord &record : {old, read, unread}) {
        folder.keep(record);
        folder.keep(record, changesBy(PassTold()));
    }
    folder.write(QStringLiteral("site/ron.data"), "b", 2);
    const QVector<RehearsedExport> rehearsals = readRehearsals(folder.status());
    QCOMPARE(rehearsals.size(), 1);
    QCOMPARE(rehearsals.constFirst().record, read.name);

    // Its pass may be at work: what it says of a row counts as settled until it is over.
    QVERIFY(QFile::remove(folder.place()));
    folder.age(QStringLiteral("site"), 0);
    StatusSources slow = folder.sources();
    slow.passSeconds = 6 * 3600;
    const QVector<RehearsedExport> atWork = readRehearsals(readStatus(slow, folder.now()));
    QCOMPARE(atWork.size(), 2);
    QVERIFY(!atWork.constFirst().isSettled);
    QVERIFY(atWork.constLast().isSettled);
    folder.age(QStringLiteral("site"), 1);
    QVERIFY(!readRehearsals(readStatus(slow, folder.now())).constLast().isSettled);
    folder.write(QStringLiteral("site/ron.data"), "b", 2);

    const GateRecord next = folder.record(3, "c");
    folder.keep(next);
    folder.keep(next, changesBy(PassTold()));
    folder.write(QStringLiteral("archive/%1.settled").arg(read.name), QByteArray());
    const QVector<RehearsedExport> later = readRehearsals(folder.status());
    QCOMPARE(later.size(), 2);
    QCOMPARE(later.constFirst().record, read.name);
    QVERIFY(later.constFirst().isSettled);
    QVERIFY(!later.constLast().isSettled);
}

/// Only what an export that went through has changed is ever looked for.
void tst_Status::settledFile_isThatOfAnExportThatPassed()
{
    const GateFolder folder;
    GateRecord record = folder.record(5, "a");
    const QString stem = folder.path(QStringLiteral("archive/")) + record.name;
    const QString changes = stem + QStringLiteral(".changes.json");
    QCOMPARE(settledFileOf(changes), QString());
    folder.keep(record);
    QCOMPARE(settledFileOf(changes), stem + QStringLiteral(".settled"));
    QCOMPARE(settledFileOf(stem + QStringLiteral(".export.gz")), QString());
    folder.write(QStringLiteral("archive/%1.settled").arg(record.name), QByteArray());
    QCOMPARE(settledFileOf(changes), QString());
    record = folder.record(4, "b");
    record.outcome = GateRecord::Superseded;
    folder.keep(record);
    QCOMPARE(settledFileOf(folder.path(QStringLiteral("archive/%1.changes.json").arg(record.name))),
             QString());
}

void tst_Status::folders_tellWhatTheyHold()
{
    const GateFolder folder;
    QVERIFY(QDir(folder.path(QStringLiteral("archive"))).mkdir(QStringLiteral("sub")));
    folder.write(QStringLiteral("archive/sub/.hidden"), "12345");
    folder.write(QStringLiteral("archive/a"), "123");
    folder.write(QStringLiteral("incoming/b"), "1");
    QVERIFY(QFile::link(folder.path(QStringLiteral("archive/a")),
                        folder.path(QStringLiteral("archive/link"))));
    Status status = folder.status();
    QCOMPARE(status.folders.size(), 4);
    QCOMPARE(status.folders.at(0).name, QStringLiteral("incoming"));
    QCOMPARE(status.incomingFiles, 1);
    QCOMPARE(status.folders.at(1).files, 2);
    QCOMPARE(status.folders.at(1).bytes, Q_INT64_C(8));
    QCOMPARE(status.folders.at(2).files, 0);

    // A file is no folder, and not named is not missing.
    StatusSources sources = folder.sources();
    sources.refused = folder.path(QStringLiteral("incoming/b"));
    sources.state.clear();
    status = readStatus(sources, folder.now());
    QCOMPARE(status.folders.size(), 2);
    QCOMPARE(status.unknown.size(), 1);
    QVERIFY(status.unknown.constFirst().about.contains(QStringLiteral("incoming/b")));
}

void tst_Status::damagedRecord_hidesNoOther()
{
    const GateFolder folder;
    folder.keep(folder.record(5, "a"));
    folder.keep(refused(folder.record(3, "b", GateRecord::Refused)));
    const QByteArray whole = folder.read(
        QStringLiteral("archive/%1%2").arg(folder.record(5, "a").name, recordEnding()));
    const QVector<QByteArray> damages {"",
                                       "null",
                                       "[]",
                                       "{}",
                                       whole.left(whole.size() / 2),
                                       QByteArray(whole).replace("passed", "p\\u0000")};
    for (int i = 0; i < damages.size(); ++i)
        folder.write(QStringLiteral("archive/x%1.gate.json").arg(i), damages.at(i));
    const Status status = folder.status();
    QCOMPARE(status.records.size(), 2);
    QCOMPARE(status.unknown.size(), damages.size());
    QVERIFY(
        firstConcern(status).startsWith(QStringLiteral("CRITICAL the last export was refused")));
    QVERIFY(lastPassed(status.records));
}

/// Twenty-seven years of a gate that runs daily.
void tst_Status::manyRecords_areAllRead()
{
    const GateFolder folder;
    const GateRecord first = folder.record(1, "a");
    folder.keep(first);
    const QString name = QStringLiteral("archive/%1") + recordEnding();
    const QByteArray text = folder.read(name.arg(first.name));
    const int count = 10000;
    for (int day = 1; day < count; ++day) {
        const GateRecord record = folder.record(1 + 24 * day, "a");
        QByteArray other = text;
        other.replace(first.name.toUtf8(), record.name.toUtf8());
        other.replace(first.when.toUTC().toString(Qt::ISODateWithMs).toUtf8(),
                      record.when.toUTC().toString(Qt::ISODateWithMs).toUtf8());
        folder.write(name.arg(record.name), other);
    }
    const Status status = folder.status();
    QCOMPARE(status.records.size(), count);
    QCOMPARE(lastPassed(status.records)->name, first.name);
    QCOMPARE(readExports(status).size(), count);
    QCOMPARE(readRehearsals(status).size(), 0);
    QCOMPARE(firstConcern(status), QString());
}

QTEST_GUILESS_MAIN(tst_Status)
#include "tst_status.moc"
