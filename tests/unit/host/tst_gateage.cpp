// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Exports that bring nothing new, and those that come too late.
#include "support/gate/gatesite.h"

#include <QDir>
#include <QFile>
#include <QtTest>

namespace {

const Release byHand {QStringLiteral("anna"), QStringLiteral("the branch is closed"), {}};

} // namespace

class tst_GateAge : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sameBytes_areNothingNew();
    void sameBytesOfAnOlderOne_areRefused();
    void sameBytesAfterANewerRefusal_areRefused();
    void nothingNew_letsNoOlderOneThrough();
    void nothingNewOfBefore_keepsNoNewOneBack();
    void olderExport_isRefused();
};

void tst_GateAge::sameBytes_areNothingNew()
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
    QVERIFY(record.isNothingNew);
    QVERIFY(site.inPlace().isNull());
    QCOMPARE(site.release({record.name, byHand}).decided.value(0).outcome, GateRecord::Passed);
    QCOMPARE(site.inPlace(), content);
}

void tst_GateAge::sameBytesOfAnOlderOne_areRefused()
{
    GateSite site;
    const QByteArray old = site.nextExport();
    for (const QByteArray &content : {old, site.nextExport()}) {
        site.deliver(content);
        QCOMPARE(site.run().decided.value(0).outcome, GateRecord::Passed);
    }
    site.deliver(old);
    const GateRecord record = site.run().decided.value(0);
    QCOMPARE(codesOf(record), QStringList {QStringLiteral("seen")});
    QVERIFY(!record.isNothingNew);
}

/// What the HR system has is still not what went through.
void tst_GateAge::sameBytesAfterANewerRefusal_areRefused()
{
    GateSite site;
    const QByteArray content = site.nextExport();
    site.deliver(content);
    site.run();
    const QDateTime before = site.records().constLast().fileTime.addSecs(60);
    site.deliver(damaged(site.nextExport()));
    QVERIFY(site.run().hasRefused());
    site.deliver(content);
    QFile file(QDir(site.settings.incoming.folder).filePath(QStringLiteral("ron.data")));
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(before, QFileDevice::FileModificationTime));
    file.close();
    QVERIFY(!site.run().decided.value(0).isNothingNew);
    site.deliver(content);
    QVERIFY(site.run().decided.value(0).isNothingNew);
}

void tst_GateAge::nothingNew_letsNoOlderOneThrough()
{
    GateSite site;
    const QByteArray content = site.nextExport();
    site.deliver(content);
    site.run();
    site.deliver(site.nextExport(), QStringLiteral("one"));
    site.deliver(content, QStringLiteral("two"));
    const GateResult result = site.run();
    QVERIFY(result.decided.value(0).isNothingNew);
    QCOMPARE(result.decided.value(1).outcome, GateRecord::Superseded);
    QCOMPARE(site.inPlace(), content);
}

/// The gate that decided on it was killed before it had told so.
void tst_GateAge::nothingNewOfBefore_keepsNoNewOneBack()
{
    GateSite site;
    const QByteArray same = site.nextExport();
    site.deliver(same);
    site.run();
    site.deliver(same);
    GateRecord untold = site.run().decided.value(0);
    QVERIFY(untold.isNothingNew);
    untold.isTold = false;
    QVERIFY(!writeGateRecord(untold,
                             QDir(site.settings.refused).filePath(untold.name + recordEnding())));
    const QByteArray fresh = site.nextExport();
    site.deliver(fresh);
    const GateResult result = site.run();
    QCOMPARE(result.decided.constLast().outcome, GateRecord::Passed);
    QCOMPARE(site.inPlace(), fresh);
}

void tst_GateAge::olderExport_isRefused()
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

QTEST_GUILESS_MAIN(tst_GateAge)
#include "tst_gateage.moc"
