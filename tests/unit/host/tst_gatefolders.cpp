// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The gate's own folders: locked, for their owner, and kept for a while.
#include "host/gate/gzip.h"
#include "support/gate/gatesite.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtTest>

#include <sys/file.h>

namespace {

const Release byHand {QStringLiteral("anna"), QStringLiteral("the branch is closed"), {}};

} // namespace

class tst_GateFolders : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void oldExports_goButRecordsStay();
    void secondGate_isRefused();
    void foldersAndFiles_areTheOwnersOnly();
    void misspeltIncoming_makesNoFolders();
    void lastGoodExportGone_holdsTheNext();
    void lastGoodExportDamaged_holdsTheNext_data();
    void lastGoodExportDamaged_holdsTheNext();
    void lockOfAnotherMachine_isExplained();
    void lockOfAGateThatDiedMakingIt_givesWay();
    void clockSetBack_keepsTheOrder();
};

void tst_GateFolders::oldExports_goButRecordsStay()
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

void tst_GateFolders::secondGate_isRefused()
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

void tst_GateFolders::foldersAndFiles_areTheOwnersOnly()
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

void tst_GateFolders::misspeltIncoming_makesNoFolders()
{
    GateSite site;
    const QStringList before = QDir(site.path(QString())).entryList();
    site.settings.incoming.folder = site.path(QStringLiteral("incoming2"));
    for (const QString &what : {QString(), QStringLiteral("20261122T010003Z-0123456789ab")}) {
        Failure failure;
        if (what.isEmpty())
            site.run(&failure);
        else
            site.release({what, byHand}, &failure);
        QCOMPARE(failure.exitCode, ExitUsage);
        QVERIFY2(failure.text.contains(QStringLiteral("correct 'incoming'")),
                 qPrintable(failure.text));
        QCOMPARE(QDir(site.path(QString())).entryList(), before);
    }
}

void tst_GateFolders::lastGoodExportGone_holdsTheNext()
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

void tst_GateFolders::lastGoodExportDamaged_holdsTheNext_data()
{
    QTest::addColumn<bool>("isCut");
    QTest::newRow("cut off") << true;
    QTest::newRow("another one") << false;
}

/// A person has a way on.
void tst_GateFolders::lastGoodExportDamaged_holdsTheNext()
{
    QFETCH(bool, isCut);
    GateSite site;
    site.deliver(site.nextExport());
    const GateRecord first = site.run().decided.value(0);
    const QString packed = QDir(site.settings.archive)
                               .filePath(first.name + QStringLiteral(".export.gz"));
    if (isCut)
        QVERIFY(QFile::resize(packed, QFileInfo(packed).size() / 2));
    else
        QVERIFY(!writeGzip(site.settings.state + QStringLiteral("/begun"), packed));
    const QByteArray next = site.nextExport();
    site.deliver(next);
    const GateRecord held = site.run().decided.value(0);
    QCOMPARE(codesOf(held), QStringList {QStringLiteral("uncompared")});
    QVERIFY2(
        held.reasons.constFirst().text.startsWith(QStringLiteral("'%1' is damaged: ").arg(packed)),
        qPrintable(held.reasons.constFirst().text));
    QCOMPARE(held.comparedWith, QString());
    QVERIFY(!site.isDelivered());
    QCOMPARE(site.release({held.name, byHand}).decided.value(0).outcome, GateRecord::Passed);
    QCOMPARE(site.inPlace(), next);
    site.deliver(site.nextExport());
    QCOMPARE(site.run().decided.value(0).outcome, GateRecord::Passed);
}

void tst_GateFolders::lockOfAnotherMachine_isExplained()
{
    GateSite site;
    site.run();
    const QString path = QDir(site.settings.state).filePath(QStringLiteral("lock"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("4711\ntalvenhr\nthe-old-name\n");
    file.close();
    site.deliver(site.nextExport());
    Failure failure;
    site.run(&failure);
    QCOMPARE(failure.exitCode, ExitUsage);
    for (const QString &part :
         {QStringLiteral("machine 'the-old-name' (process 4711)"), QSysInfo::machineHostName(),
          QStringLiteral("remove '%1'").arg(path)})
        QVERIFY2(failure.text.contains(part), qPrintable(failure.text));
    QVERIFY(site.isDelivered());
    QVERIFY(QFile::remove(path));
    QCOMPARE(site.run().decided.size(), 1);
}

void tst_GateFolders::lockOfAGateThatDiedMakingIt_givesWay()
{
    GateSite site;
    site.run();
    QFile file(QDir(site.settings.state).filePath(QStringLiteral("lock")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    Failure failure;
    site.run(&failure);
    QCOMPARE(failure.exitCode, ExitRefused);
    QVERIFY2(failure.text.contains(QStringLiteral("remove it")), qPrintable(failure.text));
    QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(-120),
                             QFileDevice::FileModificationTime));
    // As long as somebody is about to fill it, it stays.
    QCOMPARE(::flock(file.handle(), LOCK_EX), 0);
    site.run(&failure);
    QCOMPARE(failure.exitCode, ExitRefused);
    QCOMPARE(::flock(file.handle(), LOCK_UN), 0);
    site.run(&failure);
    QVERIFY2(!failure, qPrintable(failure.text));
}

/// The plugin would not get what the gate takes for somebody else's.
void tst_GateFolders::clockSetBack_keepsTheOrder()
{
    GateSite site;
    site.deliver(site.nextExport());
    GateRecord first = site.run().decided.value(0);
    first.when = QDateTime::currentDateTime().addYears(4);
    QVERIFY(
        !writeGateRecord(first, QDir(site.settings.archive).filePath(first.name + recordEnding())));
    const QByteArray content = site.nextExport();
    site.deliver(content);
    const GateResult second = site.run();
    QCOMPARE(second.decided.value(0).outcome, GateRecord::Passed);
    QCOMPARE(second.warnings.size(), 1);
    QVERIFY2(second.warnings.constFirst().contains(QStringLiteral("clock")),
             qPrintable(second.warnings.constFirst()));
    QVERIFY(site.run().decided.isEmpty());
    QCOMPARE(site.inPlace(), content);
}

QTEST_GUILESS_MAIN(tst_GateFolders)
#include "tst_gatefolders.moc"
