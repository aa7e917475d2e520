// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The road of an export: what goes through, what is refused, and what lies where afterwards.
#include "host/company/exportwriter.h"
#include "support/gate/gatesite.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtTest>

namespace {

const Release byHand {QStringLiteral("anna"), QStringLiteral("the branch is closed"), {}};

/// The first lines of an export.
QByteArray cutOff(const QByteArray &content, int lines)
{
    return content.split('\n').mid(0, lines).join('\n') + '\n';
}

QStringList codesOf(const GateRecord &record)
{
    QStringList codes;
    for (const RefusalReason &reason : record.reasons)
        codes.append(reason.code);
    return codes;
}

/// The endings of all files about a record.
QStringList endingsOf(const GateRecord &record, const QString &folder)
{
    QStringList endings;
    const QStringList files = QDir(folder).entryList({record.name + QStringLiteral("*")},
                                                     QDir::Files, QDir::Name);
    for (const QString &file : files)
        endings.append(file.mid(record.name.size()));
    return endings;
}

} // namespace

class tst_Gate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingDelivered_nothingHappens();
    void firstExport_goesThrough();
    void firstExport_isHeldWhereThatIsWished();
    void nextDay_isComparedWithTheLastGoodOne();
    void unreadExport_isReplaced();
    void exportThatStays_isNotCalledUnread();
    void refusedExport_leavesWhatLiesInPlace();
    void cutOffExport_isRefusedForItsLines();
    void errorInALine_isRefused();
    void refuseWords_decideWhatRefuses();
    void sameBytes_areRefused();
    void olderExport_isRefused();
    void severalDeliveries_newestGoesThrough();
    void severalDeliveries_olderGoesThroughWhereTheNewestIsDamaged();
    void foreignFileInPlace_isTakenAway();
    void earlierExportInPlace_isTakenAway();
    void unreadablePlace_isTold();
    void lastGoodExportGone_holdsTheNext();
    void deliveryThatCannotBeRead_stays();
    void unwholeDelivery_waits_data();
    void unwholeDelivery_waits();
    void deliveryWrittenAnew_isNotRemoved();
    void release_letsThroughAsItIs();
    void allow_raisesOneLimit();
    void release_takesThePathOfARefusedOne();
    void release_ofNothingKnown_isNamed();
    void rehearsal_isMeasured();
    void rehearsal_comesAfterWhatTheServerHasTaken();
    void rehearsalThatFails_leavesTheDelivery();
    void refusedByItsLines_isNotRehearsed();
    void hooks_getTheRecord();
    void lateDelivery_isToldOnce();
    void oldExports_goButRecordsStay();
    void secondGate_isRefused();
    void foldersAndFiles_areTheOwnersOnly();
};

void tst_Gate::nothingDelivered_nothingHappens()
{
    GateSite site;
    const GateResult result = site.run();
    QVERIFY(result.decided.isEmpty());
    QVERIFY(!result.hasRefused());
    QVERIFY(site.inPlace().isNull());
}

void tst_Gate::firstExport_goesThrough()
{
    GateSite site;
    const QByteArray content = site.nextExport();
    site.deliver(content);
    const GateResult result = site.run();
    QCOMPARE(result.decided.size(), 1);
    const GateRecord &record = result.decided.constFirst();
    QCOMPARE(record.outcome, GateRecord::Passed);
    QCOMPARE(record.comparedWith, QString());
    QCOMPARE(record.fates.lines(), content.count('\n'));
    QCOMPARE(site.inPlace(), content);
    QCOMPARE(site.archived(record), content);
    QVERIFY(!site.isDelivered());
    QCOMPARE(endingsOf(record, site.settings.archive),
             (QStringList {QStringLiteral(".check.html"), QStringLiteral(".check.json"),
                           QStringLiteral(".export.gz"), QStringLiteral(".gate.json")}));
}

void tst_Gate::firstExport_isHeldWhereThatIsWished()
{
    GateSite site;
    site.settings.holdsFirst = true;
    const QByteArray content = site.nextExport();
    site.deliver(content);
    const GateRecord held = site.run().decided.value(0);
    QCOMPARE(held.outcome, GateRecord::Refused);
    QCOMPARE(codesOf(held), QStringList {QStringLiteral("hold")});
    QVERIFY(site.inPlace().isNull());
    QCOMPARE(site.release({held.name, byHand}).decided.value(0).outcome, GateRecord::Passed);
    QCOMPARE(site.inPlace(), content);
}

void tst_Gate::nextDay_isComparedWithTheLastGoodOne()
{
    GateSite site;
    site.deliver(site.nextExport());
    const GateRecord first = site.run().decided.value(0);
    site.read();
    site.deliver(site.nextExport());
    const GateRecord second = site.run().decided.value(0);
    QCOMPARE(second.outcome, GateRecord::Passed);
    QCOMPARE(second.comparedWith, first.name);
    QCOMPARE(second.replaced, QString());
    QVERIFY(
        std::any_of(second.limits.cbegin(), second.limits.cend(), [](const LimitOutcome &outcome) {
            return outcome.limit.kind == QLatin1String("lost");
        }));
}

void tst_Gate::unreadExport_isReplaced()
{
    GateSite site;
    site.deliver(site.nextExport());
    const GateRecord first = site.run().decided.value(0);
    const QByteArray content = site.nextExport();
    site.deliver(content);
    const GateRecord second = site.run().decided.value(0);
    QCOMPARE(second.replaced, first.name);
    QCOMPARE(site.inPlace(), content);
}

void tst_Gate::exportThatStays_isNotCalledUnread()
{
    GateSite site;
    site.settings.isRemovedWhenRead = false;
    site.deliver(site.nextExport());
    site.run();
    site.deliver(site.nextExport());
    QCOMPARE(site.run().decided.value(0).replaced, QString());
}

void tst_Gate::refusedExport_leavesWhatLiesInPlace()
{
    GateSite site;
    const QByteArray good = site.nextExport();
    site.deliver(good);
    site.run();
    const QByteArray bad = cutOff(site.nextExport(), 50);
    site.deliver(bad);
    const GateResult result = site.run();
    QVERIFY(result.hasRefused());
    QCOMPARE(site.inPlace(), good);
    QVERIFY(!site.isDelivered());
    const GateRecord &record = result.decided.constFirst();
    QFile kept(QDir(site.settings.refused).filePath(record.name + QStringLiteral(".export")));
    QVERIFY(kept.open(QIODevice::ReadOnly));
    QCOMPARE(kept.readAll(), bad);
    const QStringList endings = endingsOf(record, site.settings.refused);
    QVERIFY(endings.contains(QStringLiteral(".txt")));
    QVERIFY(endings.contains(QStringLiteral(".check.html")));
    QFile text(QDir(site.settings.refused).filePath(record.name + QStringLiteral(".txt")));
    QVERIFY(text.open(QIODevice::ReadOnly));
    QVERIFY(text.readAll().contains("talvenhr gate --release " + record.name.toUtf8()));
}

void tst_Gate::cutOffExport_isRefusedForItsLines()
{
    GateSite site;
    site.deliver(site.nextExport());
    site.run();
    site.deliver(cutOff(site.nextExport(), 80));
    const GateRecord record = site.run().decided.value(0);
    QCOMPARE(record.outcome, GateRecord::Refused);
    QVERIFY(record.lost > 5);
    QVERIFY(codesOf(record).contains(QStringLiteral("limit:lost")));
}

void tst_Gate::errorInALine_isRefused()
{
    GateSite site;
    QByteArray content = site.nextExport();
    const int line = content.indexOf('\n', content.indexOf('\n') + 1);
    content.insert(line, '|');
    site.deliver(content);
    const GateRecord record = site.run().decided.value(0);
    QCOMPARE(record.outcome, GateRecord::Refused);
    QCOMPARE(record.reasons.size(), 1);
    QVERIFY2(record.reasons.constFirst().code.startsWith(QLatin1String("E-LINE")),
             qPrintable(record.reasons.constFirst().code));
    QVERIFY(!record.reasons.constFirst().remedy.isEmpty());
}

void tst_Gate::refuseWords_decideWhatRefuses()
{
    GateSite site;
    // Two people of one number: the plugin takes them for one.
    QByteArray content = site.nextExport();
    const QByteArrayList lines = content.split('\n');
    content += lines.at(1) + '\n';
    site.settings.judge.refuse = QStringList();
    site.deliver(content);
    const GateRecord passed = site.run().decided.value(0);
    QCOMPARE(passed.outcome, GateRecord::Passed);
    QVERIFY(!passed.findings.isEmpty());
    const QString code = passed.findings.constFirst().code;
    site.settings.judge.refuse = QStringList {code};
    content += lines.at(2) + '\n';
    site.deliver(content);
    const GateRecord refused = site.run().decided.value(0);
    QCOMPARE(refused.outcome, GateRecord::Refused);
    QCOMPARE(codesOf(refused), QStringList {code});
    QVERIFY(checkRefusals({QStringLiteral("warnin")}).text.contains(QStringLiteral("'warning'")));
    QVERIFY(!checkRefusals(standardRefusals()));
}

void tst_Gate::sameBytes_areRefused()
{
    GateSite site;
    const QByteArray content = site.nextExport();
    site.deliver(content);
    site.run();
    site.read();
    site.deliver(content);
    const GateRecord record = site.run().decided.value(0);
    QCOMPARE(record.outcome, GateRecord::Refused);
    QCOMPARE(codesOf(record), QStringList {QStringLiteral("seen")});
    QVERIFY(site.inPlace().isNull());
    QCOMPARE(site.release({record.name, byHand}).decided.value(0).outcome, GateRecord::Passed);
    QCOMPARE(site.inPlace(), content);
}

void tst_Gate::olderExport_isRefused()
{
    GateSite site;
    const QByteArray yesterday = site.nextExport();
    const QByteArray today = site.nextExport();
    site.deliver(today);
    site.run();
    site.deliver(yesterday);
    QFile file(QDir(site.settings.incoming.folder).filePath(QStringLiteral("ron.data")));
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(QDateTime::currentDateTime().addDays(-60),
                             QFileDevice::FileModificationTime));
    file.close();
    const GateRecord record = site.run().decided.value(0);
    QCOMPARE(codesOf(record), QStringList {QStringLiteral("older")});
    QCOMPARE(site.inPlace(), today);
}

void tst_Gate::severalDeliveries_newestGoesThrough()
{
    GateSite site;
    site.deliver(site.nextExport(), QStringLiteral("one"));
    const QByteArray newest = site.nextExport();
    site.deliver(newest, QStringLiteral("two"));
    const GateResult result = site.run();
    QCOMPARE(result.decided.size(), 2);
    QCOMPARE(result.decided.at(0).outcome, GateRecord::Passed);
    QCOMPARE(result.decided.at(1).outcome, GateRecord::Superseded);
    QVERIFY(!result.hasRefused());
    QCOMPARE(site.inPlace(), newest);
    QVERIFY(!site.isDelivered(QStringLiteral("one")));
    QVERIFY(!site.archived(result.decided.at(1)).isEmpty());
}

void tst_Gate::severalDeliveries_olderGoesThroughWhereTheNewestIsDamaged()
{
    GateSite site;
    site.deliver(site.nextExport());
    site.run();
    const QByteArray sound = site.nextExport();
    site.deliver(sound, QStringLiteral("one"));
    site.deliver(cutOff(site.nextExport(), 30), QStringLiteral("two"));
    const GateResult result = site.run();
    QCOMPARE(result.decided.at(0).outcome, GateRecord::Refused);
    QCOMPARE(result.decided.at(1).outcome, GateRecord::Passed);
    QVERIFY(result.hasRefused());
    QCOMPARE(site.inPlace(), sound);
}

void tst_Gate::foreignFileInPlace_isTakenAway()
{
    GateSite site;
    QFile file(site.settings.place);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("somebody's own\n");
    file.close();
    const QByteArray content = site.nextExport();
    site.deliver(content);
    const GateResult result = site.run();
    QCOMPARE(codesOf(result.decided.at(0)), QStringList {QStringLiteral("foreign")});
    QCOMPARE(result.decided.at(1).outcome, GateRecord::Passed);
    QCOMPARE(result.decided.at(1).replaced, QString());
    QCOMPARE(site.inPlace(), content);
}

/// The plugin would go back to it.
void tst_Gate::earlierExportInPlace_isTakenAway()
{
    GateSite site;
    const QByteArray yesterday = site.nextExport();
    site.deliver(yesterday);
    site.run();
    site.read();
    site.deliver(site.nextExport());
    site.run();
    site.read();
    QFile file(site.settings.place);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(yesterday), qint64(yesterday.size()));
    file.close();
    const GateResult result = site.run();
    QCOMPARE(codesOf(result.decided.value(0)), QStringList {QStringLiteral("foreign")});
    QVERIFY(site.inPlace().isNull());
}

void tst_Gate::unreadablePlace_isTold()
{
    GateSite site;
    QVERIFY(site.run().warnings.isEmpty());
    QVERIFY(QDir().mkpath(site.settings.place));
    const GateResult result = site.run();
    QCOMPARE(result.warnings.size(), 1);
    QVERIFY(result.warnings.constFirst().contains(site.settings.place));
}

void tst_Gate::lastGoodExportGone_holdsTheNext()
{
    GateSite site;
    site.deliver(site.nextExport());
    const GateRecord first = site.run().decided.value(0);
    QVERIFY(QFile::remove(
        QDir(site.settings.archive).filePath(first.name + QStringLiteral(".export.gz"))));
    const QByteArray next = site.nextExport();
    site.deliver(next);
    const GateRecord held = site.run().decided.value(0);
    QCOMPARE(codesOf(held), QStringList {QStringLiteral("uncompared")});
    QCOMPARE(held.comparedWith, QString());
    QCOMPARE(site.release({held.name, byHand}).decided.value(0).outcome, GateRecord::Passed);
    QCOMPARE(site.inPlace(), next);
}

/// It opens, and has a size, but reading it fails.
void tst_Gate::deliveryThatCannotBeRead_stays()
{
    const QString broken = QStringLiteral("/sys/class/net/lo/speed");
    QFile file(broken);
    if (!file.open(QIODevice::ReadOnly) || file.size() == 0 || !file.read(1).isEmpty())
        QSKIP("this machine has no such file", );
    GateSite site;
    QVERIFY(QFile::link(broken,
                        QDir(site.settings.incoming.folder).filePath(QStringLiteral("ron.data"))));
    Failure failure;
    site.run(&failure);
    QVERIFY2(failure.text.contains(QStringLiteral("cannot read '")), qPrintable(failure.text));
    QVERIFY(site.isDelivered());
    QVERIFY(site.records().isEmpty());
}

void tst_Gate::unwholeDelivery_waits_data()
{
    QTest::addColumn<int>("complete");
    QTest::addColumn<QString>("name");

    QTest::newRow("a name of a copying program")
        << int(Completeness::Rename) << QStringLiteral("ron.data.part");
    QTest::newRow("hidden") << int(Completeness::Rename) << QStringLiteral(".ron.data.x7");
    QTest::newRow("without its sign") << int(Completeness::Done) << QStringLiteral("ron.data");
    QTest::newRow("just written") << int(Completeness::Still) << QStringLiteral("ron.data");
}

void tst_Gate::unwholeDelivery_waits()
{
    QFETCH(int, complete);
    QFETCH(QString, name);
    GateSite site;
    site.settings.incoming.complete = static_cast<Completeness>(complete);
    site.settings.incoming.stillFor = 3600;
    site.deliver(site.nextExport(), name);
    QVERIFY(site.run().decided.isEmpty());
    QVERIFY(site.isDelivered(name));
    QVERIFY(site.inPlace().isNull());
    site.settings.incoming.stillFor = 0;
    QFile done(QDir(site.settings.incoming.folder).filePath(QStringLiteral("ron.data.done")));
    QVERIFY(done.open(QIODevice::WriteOnly));
    if (name != QLatin1String("ron.data"))
        return;
    QCOMPARE(site.run().decided.size(), 1);
    QVERIFY(!site.isDelivered(name));
    QCOMPARE(done.exists(),
             complete != int(Completeness::Done) && complete != int(Completeness::Still));
}

void tst_Gate::deliveryWrittenAnew_isNotRemoved()
{
    GateSite site;
    site.deliver(site.nextExport());
    const QByteArray newer = site.nextExport();
    Gate gate(site.settings);
    gate.setStepWatch([&site, &newer](const char *step) {
        if (qstrcmp(step, "archive") == 0)
            site.deliver(newer);
    });
    GateResult result;
    QVERIFY(!gate.run(&result));
    QCOMPARE(result.decided.size(), 1);
    QVERIFY(site.isDelivered());
}

void tst_Gate::release_letsThroughAsItIs()
{
    GateSite site;
    site.deliver(site.nextExport());
    site.run();
    const QByteArray cut = cutOff(site.nextExport(), 40);
    site.deliver(cut);
    const GateRecord refused = site.run().decided.value(0);
    const GateRecord released = site.release({refused.name, byHand}).decided.value(0);
    QCOMPARE(released.outcome, GateRecord::Passed);
    QVERIFY(released.name != refused.name);
    QCOMPARE(released.release->by, byHand.by);
    QCOMPARE(released.release->reason, byHand.reason);
    QVERIFY(codesOf(released).contains(QStringLiteral("limit:lost")));
    QCOMPARE(site.inPlace(), cut);
    QCOMPARE(site.records().size(), 3);
}

void tst_Gate::allow_raisesOneLimit()
{
    GateSite site;
    site.deliver(site.nextExport());
    site.run();
    site.deliver(cutOff(site.nextExport(), 90));
    const GateRecord refused = site.run().decided.value(0);
    QCOMPARE(codesOf(refused), QStringList {QStringLiteral("limit:lost")});
    Release release = byHand;
    release.allowed = QStringList {QStringLiteral("lost=%1").arg(refused.lost - 1)};
    QCOMPARE(site.release({refused.name, release}).decided.value(0).outcome, GateRecord::Refused);
    release.allowed = QStringList {QStringLiteral("lost=%1").arg(refused.lost)};
    QCOMPARE(site.release({refused.name, release}).decided.value(0).outcome, GateRecord::Passed);
}

/// Its age is that of the delivery, not that of the copy.
void tst_Gate::release_takesThePathOfARefusedOne()
{
    GateSite site;
    site.deliver("no export\n");
    const GateRecord refused = site.run().decided.value(0);
    const QString kept = QDir(site.settings.refused)
                             .filePath(refused.name + QStringLiteral(".export"));
    const GateRecord released = site.release({kept, byHand}).decided.value(0);
    QCOMPARE(released.outcome, GateRecord::Passed);
    QCOMPARE(released.exported.name, refused.exported.name);
    QCOMPARE(released.fileTime, refused.fileTime);
}

void tst_Gate::release_ofNothingKnown_isNamed()
{
    GateSite site;
    Failure failure;
    site.release({QStringLiteral("20261122T000000Z-000000000000"), byHand}, &failure);
    QCOMPARE(failure.exitCode, ExitUsage);
    QVERIFY(failure.text.contains(QStringLiteral("20261122T000000Z-000000000000")));
}

void tst_Gate::rehearsal_isMeasured()
{
    GateSite site;
    QString toldName;
    site.settings.judge.rehearse = [&toldName](const RehearsalOrder &order, Changes *changes) {
        toldName = order.name;
        changes->totals.activePeople = 100;
        changes->summary[ChangeKind::Ended] = 6;
        changes->plan.hash = QStringLiteral("abc-def");
        return Failure();
    };
    site.deliver(site.nextExport());
    const GateRecord record = site.run().decided.value(0);
    QCOMPARE(codesOf(record), QStringList {QStringLiteral("limit:ended")});
    QCOMPARE(record.rehearsal->after, 0);
    QCOMPARE(record.rehearsal->plan, QStringLiteral("abc-def"));
    QCOMPARE(toldName, record.exported.name);
    QCOMPARE(record.rehearsal->summary[ChangeKind::Ended], Q_INT64_C(6));
}

void tst_Gate::rehearsal_comesAfterWhatTheServerHasTaken()
{
    GateSite site;
    QStringList after;
    QVector<QDateTime> times;
    site.settings.judge.rehearse = [&after, &times](const RehearsalOrder &order, Changes *) {
        after.clear();
        times.clear();
        for (const QString &path : order.after) {
            QFile file(path);
            after.append(file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll())
                                                        : QString());
            times.append(QFileInfo(path).lastModified());
        }
        return Failure();
    };
    QVector<QByteArray> days;
    const auto live = [&] {
        days.append(site.nextExport());
        site.deliver(days.constLast());
        return site.run().decided.value(0);
    };
    live(); // before the server begins
    site.read();
    site.settings.serverSince = QDateTime::currentDateTime();
    const GateRecord taken = live();
    QCOMPARE(taken.rehearsal->after, 0);
    site.read();
    live(); // replaced by the next one
    live(); // still in place
    const GateRecord last = live();
    QCOMPARE(last.rehearsal->after, 1);
    QCOMPARE(after, QStringList {QString::fromUtf8(days.at(1))});
    QCOMPARE(times.constFirst().toSecsSinceEpoch(), taken.when.toSecsSinceEpoch());
}

void tst_Gate::rehearsalThatFails_leavesTheDelivery()
{
    GateSite site;
    site.settings.judge.rehearse = [](const RehearsalOrder &, Changes *) {
        return Failure {ExitDatabase, QStringLiteral("no answer")};
    };
    site.deliver(site.nextExport());
    Failure failure;
    const GateResult result = site.run(&failure);
    QCOMPARE(failure.exitCode, ExitDatabase);
    QVERIFY(result.decided.isEmpty());
    QVERIFY(site.isDelivered());
    QVERIFY(site.inPlace().isNull());
    QVERIFY(site.records().isEmpty());
    site.settings.judge.rehearse = nullptr;
    QCOMPARE(site.run().decided.value(0).outcome, GateRecord::Passed);
}

void tst_Gate::refusedByItsLines_isNotRehearsed()
{
    GateSite site;
    bool isRehearsed = false;
    site.settings.judge.rehearse = [&isRehearsed](const RehearsalOrder &, Changes *) {
        isRehearsed = true;
        return Failure();
    };
    site.deliver("no export\n");
    const GateRecord refused = site.run().decided.value(0);
    QCOMPARE(refused.outcome, GateRecord::Refused);
    QVERIFY(!isRehearsed);
    // A person wants to know what they do.
    QCOMPARE(site.release({refused.name, byHand}).decided.value(0).outcome, GateRecord::Passed);
    QVERIFY(isRehearsed);
}

void tst_Gate::hooks_getTheRecord()
{
    GateSite site;
    const QString told = site.path(QStringLiteral("told"));
    QFile script(site.path(QStringLiteral("hook.sh")));
    QVERIFY(script.open(QIODevice::WriteOnly));
    script.write("#!/bin/sh\ncat >> '" + told.toUtf8() + "'\n");
    script.close();
    QVERIFY(script.setPermissions(QFileDevice::ReadOwner | QFileDevice::ExeOwner));
    site.settings.passedHook = script.fileName();
    site.settings.refusedHook = QStringLiteral("/nowhere/program");
    site.deliver(site.nextExport());
    const GateResult passed = site.run();
    QFile file(told);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), gateRecordJson(passed.decided.value(0)));
    QVERIFY(passed.warnings.isEmpty());
    site.deliver("no export\n");
    const GateResult refused = site.run();
    QVERIFY(refused.hasRefused());
    QCOMPARE(refused.warnings.size(), 1);
    QVERIFY(refused.warnings.constFirst().contains(QStringLiteral("/nowhere/program")));
}

void tst_Gate::lateDelivery_isToldOnce()
{
    GateSite site;
    site.deliver(site.nextExport());
    GateRecord record = site.run().decided.value(0);
    site.settings.lateAfter = 26;
    QVERIFY(!site.run().isLate);
    record.when = record.when.addSecs(-27 * 3600);
    QVERIFY(!writeGateRecord(record,
                             QDir(site.settings.archive).filePath(record.name + recordEnding())));
    const GateResult late = site.run();
    QVERIFY(late.isLate);
    QCOMPARE(late.warnings.size(), 1);
    QVERIFY(late.warnings.constFirst().contains(QStringLiteral("27 hours")));
    const GateResult again = site.run();
    QVERIFY(again.isLate);
    QVERIFY(again.warnings.isEmpty());
}

void tst_Gate::oldExports_goButRecordsStay()
{
    GateSite site;
    site.deliver(site.nextExport());
    GateRecord first = site.run().decided.value(0);
    site.deliver(site.nextExport());
    GateRecord last = site.run().decided.value(0);
    site.deliver(cutOff(site.nextExport(), 40));
    GateRecord refused = site.run().decided.value(0);
    QCOMPARE(refused.outcome, GateRecord::Refused);
    const QDir archive(site.settings.archive);
    const QDir refusals(site.settings.refused);
    const auto setAge = [](const QDir &folder, GateRecord *record, int days) {
        record->when = QDateTime::currentDateTimeUtc().addDays(-days).addSecs(3600);
        return !writeGateRecord(*record, folder.filePath(record->name + recordEnding()));
    };
    QVERIFY(setAge(archive, &first, 90) && setAge(archive, &last, 90));
    QVERIFY(setAge(refusals, &refused, 90));
    site.run();
    QVERIFY(!site.archived(first).isEmpty());
    QVERIFY(setAge(archive, &first, 91) && setAge(archive, &last, 91));
    QVERIFY(setAge(refusals, &refused, 91));
    site.run();
    QCOMPARE(endingsOf(first, archive.path()), QStringList {recordEnding()});
    QCOMPARE(endingsOf(refused, refusals.path()), QStringList {recordEnding()});
    QVERIFY(!site.archived(last).isEmpty());
    QCOMPARE(site.records().size(), 3);
}

void tst_Gate::secondGate_isRefused()
{
    GateSite site;
    site.deliver(site.nextExport());
    Gate gate(site.settings);
    Failure second;
    gate.setStepWatch([&site, &second](const char *step) {
        if (qstrcmp(step, "judge") == 0)
            site.run(&second);
    });
    GateResult result;
    QVERIFY(!gate.run(&result));
    QCOMPARE(result.decided.size(), 1);
    QCOMPARE(second.exitCode, ExitRefused);
    QVERIFY(
        second.text.contains(QStringLiteral("process %1").arg(QCoreApplication::applicationPid())));
}

void tst_Gate::foldersAndFiles_areTheOwnersOnly()
{
    GateSite site;
    site.deliver(site.nextExport());
    site.deliver(cutOff(site.nextExport(), 3), QStringLiteral("two"));
    site.run();
    const QFileDevice::Permissions others = QFileDevice::ReadGroup | QFileDevice::ReadOther
        | QFileDevice::WriteGroup | QFileDevice::WriteOther;
    for (const QString &folder :
         {site.settings.archive, site.settings.refused, site.settings.state}) {
        QVERIFY2(!(QFile::permissions(folder) & others), qPrintable(folder));
        const QFileInfoList files = QDir(folder).entryInfoList(QDir::Files);
        for (const QFileInfo &file : files)
            QVERIFY2(!(file.permissions() & others), qPrintable(file.filePath()));
    }
}

QTEST_GUILESS_MAIN(tst_Gate)
#include "tst_gate.moc"
