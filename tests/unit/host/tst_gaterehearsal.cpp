// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a rehearsal tells the gate.
#include "support/gate/gatesite.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtTest>

namespace {

const Release byHand {QStringLiteral("anna"), QStringLiteral("the branch is closed"), {}};

} // namespace

class tst_GateRehearsal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rehearsal_isMeasured();
    void rehearsal_comesAfterWhatTheServerHasTaken();
    void damagedExportInTheArchive_isLeftOutAndTold();
    void rehearsalThatFails_leavesTheDelivery();
    void refusedByItsLines_isNotRehearsed();
};

void tst_GateRehearsal::rehearsal_isMeasured()
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

void tst_GateRehearsal::rehearsal_comesAfterWhatTheServerHasTaken()
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

void tst_GateRehearsal::damagedExportInTheArchive_isLeftOutAndTold()
{
    GateSite site;
    site.settings.judge.rehearse = [](const RehearsalOrder &, Changes *) { return Failure(); };
    site.settings.serverSince = QDateTime::currentDateTime();
    QVector<GateRecord> records;
    for (int day = 0; day < 2; ++day) {
        site.deliver(site.nextExport());
        records.append(site.run().decided.value(0));
        site.read();
    }
    const QString packed = QDir(site.settings.archive)
                               .filePath(records.at(0).name + QStringLiteral(".export.gz"));
    QVERIFY(QFile::resize(packed, 20));
    site.deliver(site.nextExport());
    const GateResult result = site.run();
    QCOMPARE(result.decided.value(0).outcome, GateRecord::Passed);
    QCOMPARE(result.decided.value(0).rehearsal->after, 1);
    QCOMPARE(result.warnings.size(), 1);
    QVERIFY2(result.warnings.constFirst().contains(packed),
             qPrintable(result.warnings.constFirst()));
}

void tst_GateRehearsal::rehearsalThatFails_leavesTheDelivery()
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

void tst_GateRehearsal::refusedByItsLines_isNotRehearsed()
{
    GateSite site;
    bool isRehearsed = false;
    site.settings.judge.rehearse = [&isRehearsed](const RehearsalOrder &, Changes *) {
        isRehearsed = true;
        return Failure();
    };
    site.deliver(damaged(site.nextExport()));
    const GateRecord refused = site.run().decided.value(0);
    QCOMPARE(refused.outcome, GateRecord::Refused);
    QVERIFY(!isRehearsed);
    // A person wants to know what they do.
    QCOMPARE(site.release({refused.name, byHand}).decided.value(0).outcome, GateRecord::Passed);
    QVERIFY(isRehearsed);
}

QTEST_GUILESS_MAIN(tst_GateRehearsal)
#include "tst_gaterehearsal.moc"
