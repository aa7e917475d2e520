// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a person lets through.
#include "support/gate/gatesite.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtTest>

namespace {

const Release byHand {QStringLiteral("anna"), QStringLiteral("the branch is closed"), {}};

} // namespace

class tst_GateRelease : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void release_letsThroughAsItIs();
    void allow_raisesOneLimit();
    void release_takesThePathOfARefusedOne();
    void release_ofNothingKnown_isNamed();
    void release_takesAForeignFileAwayFirst();
    void release_ofAnOlderOne_waitsForTheNewerOneInPlace();
    void release_ofANewerOne_replacesWhatIsUnread();
};

void tst_GateRelease::release_letsThroughAsItIs()
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

void tst_GateRelease::allow_raisesOneLimit()
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
void tst_GateRelease::release_takesThePathOfARefusedOne()
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

void tst_GateRelease::release_ofNothingKnown_isNamed()
{
    GateSite site;
    Failure failure;
    site.release({QStringLiteral("20261122T000000Z-000000000000"), byHand}, &failure);
    QCOMPARE(failure.exitCode, ExitUsage);
    QVERIFY(failure.text.contains(QStringLiteral("20261122T000000Z-000000000000")));
}

void tst_GateRelease::release_takesAForeignFileAwayFirst()
{
    GateSite site;
    const QByteArray content = "no export\n";
    site.deliver(content);
    const GateRecord refused = site.run().decided.value(0);
    QFile file(site.settings.place);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("somebody's own\n");
    file.close();
    const GateResult result = site.release({refused.name, byHand});
    QCOMPARE(codesOf(result.decided.value(0)), QStringList {QStringLiteral("foreign")});
    QCOMPARE(result.decided.value(1).outcome, GateRecord::Passed);
    QCOMPARE(site.inPlace(), content);
    QFile kept(QDir(site.settings.refused)
                   .filePath(result.decided.constFirst().name + QStringLiteral(".export")));
    QVERIFY(kept.open(QIODevice::ReadOnly));
    QCOMPARE(kept.readAll(), QByteArray("somebody's own\n"));
}

void tst_GateRelease::release_ofAnOlderOne_waitsForTheNewerOneInPlace()
{
    GateSite site;
    site.deliver("no export\n");
    const GateRecord refused = site.run().decided.value(0);
    const QByteArray newer = site.nextExport();
    site.deliver(newer);
    const GateRecord unread = site.run().decided.value(0);
    Failure failure;
    ReleaseWish wish {refused.name, byHand};
    site.release(wish, &failure);
    QCOMPARE(failure.exitCode, ExitRefused);
    QVERIFY2(failure.text.contains(unread.name), qPrintable(failure.text));
    QVERIFY(failure.text.contains(QStringLiteral("--over-newer")));
    QCOMPARE(site.inPlace(), newer);
    QCOMPARE(site.records().size(), 2);

    wish.replacesNewer = true;
    const GateRecord insisted = site.release(wish).decided.value(0);
    QCOMPARE(insisted.outcome, GateRecord::Passed);
    QCOMPARE(insisted.replaced, unread.name);
    QCOMPARE(site.inPlace(), QByteArray("no export\n"));
    QCOMPARE(site.archived(unread), newer);
}

void tst_GateRelease::release_ofANewerOne_replacesWhatIsUnread()
{
    GateSite site;
    site.deliver(site.nextExport());
    site.run();
    site.deliver("no export\n");
    const GateRecord refused = site.run().decided.value(0);
    QCOMPARE(site.release({refused.name, byHand}).decided.value(0).outcome, GateRecord::Passed);
    // What is in place for good was read by now.
    GateSite staying;
    staying.settings.isRemovedWhenRead = false;
    staying.deliver("no export\n");
    const GateRecord older = staying.run().decided.value(0);
    staying.deliver(staying.nextExport());
    staying.run();
    QCOMPARE(staying.release({older.name, byHand}).decided.value(0).outcome, GateRecord::Passed);
}

QTEST_GUILESS_MAIN(tst_GateRelease)
#include "tst_gaterelease.moc"
