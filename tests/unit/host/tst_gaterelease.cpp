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
    void delivery_isReleasedOnceItIsWhole();
    void release_takesThePathOfARefusedOne();
    void anyFileOfARefusal_meansItsExport_data();
    void anyFileOfARefusal_meansItsExport();
    void anyOtherFile_isNoRelease_data();
    void anyOtherFile_isNoRelease();
    void delivery_mayBeReleasedAtOnce();
    void exportWithoutAUsableLine_isNeverReleased();
    void twice_saysThatItIsInPlace_data();
    void twice_saysThatItIsInPlace();
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

/// What the HR system still writes would be cut off in place.
void tst_GateRelease::delivery_isReleasedOnceItIsWhole()
{
    GateSite site;
    site.settings.incoming.complete = Completeness::Done;
    site.deliver(site.nextExport());
    const QString path = QDir(site.settings.incoming.folder).filePath(QStringLiteral("ron.data"));
    Failure failure;
    site.release({path, byHand}, &failure);
    QCOMPARE(failure.exitCode, ExitErrors);
    QVERIFY2(failure.text.contains(QStringLiteral("not known to be whole")),
             qPrintable(failure.text));
    QVERIFY(site.isDelivered());
    QVERIFY(site.inPlace().isNull());
    site.deliver(QByteArray(), QStringLiteral("ron.data.done"));
    QCOMPARE(site.release({path, byHand}).decided.value(0).outcome, GateRecord::Passed);
}

/// Its age is that of the delivery, not that of the copy.
void tst_GateRelease::release_takesThePathOfARefusedOne()
{
    GateSite site;
    site.deliver(damaged(site.nextExport()));
    const GateRecord refused = site.run().decided.value(0);
    const QString kept = QDir(site.settings.refused)
                             .filePath(refused.name + QStringLiteral(".export"));
    const GateRecord released = site.release({kept, byHand}).decided.value(0);
    QCOMPARE(released.outcome, GateRecord::Passed);
    QCOMPARE(released.exported.name, refused.exported.name);
    QCOMPARE(released.fileTime, refused.fileTime);
}

void tst_GateRelease::anyFileOfARefusal_meansItsExport_data()
{
    QTest::addColumn<QString>("ending");
    QTest::addColumn<bool>("isPath");
    for (const char *ending : {"", ".txt", ".check.html", ".export", ".gone"}) {
        QTest::addRow("NAME%s", ending) << QString::fromLatin1(ending) << false;
        QTest::addRow("refused/NAME%s", ending) << QString::fromLatin1(ending) << true;
    }
}

/// As a shell completes it: a report in place of the export would wipe out everybody.
void tst_GateRelease::anyFileOfARefusal_meansItsExport()
{
    QFETCH(QString, ending);
    QFETCH(bool, isPath);
    GateSite site;
    const QByteArray content = damaged(site.nextExport());
    site.deliver(content);
    const QString name = site.run().decided.value(0).name + ending;
    const QString what = isPath ? QDir(site.settings.refused).filePath(name) : name;
    const GateRecord released = site.release({what, byHand}).decided.value(0);
    QCOMPARE(released.outcome, GateRecord::Passed);
    QCOMPARE(released.exported.name, QStringLiteral("ron.data"));
    QCOMPARE(site.inPlace(), content);
}

void tst_GateRelease::anyOtherFile_isNoRelease_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("said");
    const auto row = [](const char *file, const char *said) {
        QTest::newRow(file) << QString::fromLatin1(file) << QString::fromLatin1(said);
    };
    row("refused/notes.txt", "lies in a folder of the gate and is no export");
    row("archive/notes.txt", "lies in a folder of the gate and is no export");
    row("state/begun", "lies in a folder of the gate and is no export");
    row("elsewhere.data", "was never delivered");
}

/// Not even a sound export, if nobody has ever looked at it.
void tst_GateRelease::anyOtherFile_isNoRelease()
{
    QFETCH(QString, file);
    QFETCH(QString, said);
    GateSite site;
    const QByteArray content = site.nextExport();
    site.deliver(content);
    site.run();
    QFile other(site.path(file));
    QVERIFY(other.open(QIODevice::WriteOnly));
    other.write(site.nextExport());
    other.close();
    Release release = byHand;
    for (const QStringList &allowed : {QStringList(), QStringList {QStringLiteral("lost=100")}}) {
        release.allowed = allowed;
        Failure failure;
        QVERIFY(site.release({other.fileName(), release}, &failure).decided.isEmpty());
        QCOMPARE(failure.exitCode, ExitUsage);
        QVERIFY2(failure.text.contains(said), qPrintable(failure.text));
        QVERIFY(failure.text.contains(other.fileName()));
    }
    QCOMPARE(site.inPlace(), content);
    QVERIFY(other.exists());
}

void tst_GateRelease::delivery_mayBeReleasedAtOnce()
{
    GateSite site;
    const QByteArray content = damaged(site.nextExport());
    site.deliver(content);
    const QString path = QDir(site.settings.incoming.folder).filePath(QStringLiteral("ron.data"));
    QCOMPARE(site.release({path, byHand}).decided.value(0).outcome, GateRecord::Passed);
    QCOMPARE(site.inPlace(), content);
    QVERIFY(!site.isDelivered());
}

void tst_GateRelease::exportWithoutAUsableLine_isNeverReleased()
{
    GateSite site;
    const QByteArray content = site.nextExport();
    site.deliver(content);
    site.run();
    site.deliver("no export\n");
    const GateRecord refused = site.run().decided.value(0);
    Failure failure;
    QVERIFY(site.release({refused.name, byHand}, &failure).decided.isEmpty());
    QCOMPARE(failure.exitCode, ExitRefused);
    QVERIFY2(failure.text.contains(QStringLiteral("no line that the plugin could use")),
             qPrintable(failure.text));
    QCOMPARE(site.inPlace(), content);
    QCOMPARE(site.records().size(), 2);
}

void tst_GateRelease::twice_saysThatItIsInPlace_data()
{
    QTest::addColumn<bool>("isAllowed");
    QTest::addColumn<bool>("isRead");
    QTest::addColumn<QString>("said");
    const QString there = QStringLiteral(" is in place already: ");
    QTest::newRow("released") << false << false << there;
    QTest::newRow("allowed") << true << false << there;
    QTest::newRow("allowed, and read since")
        << true << true << QStringLiteral(" went through already, ");
    QTest::newRow("released, and read since") << false << true << QString();
}

/// Only what is released is read once more.
void tst_GateRelease::twice_saysThatItIsInPlace()
{
    QFETCH(bool, isAllowed);
    QFETCH(bool, isRead);
    QFETCH(QString, said);
    GateSite site;
    site.deliver(site.nextExport());
    site.run();
    site.deliver(cutOff(site.nextExport(), 90));
    const GateRecord refused = site.run().decided.value(0);
    ReleaseWish wish {refused.name, byHand};
    if (isAllowed)
        wish.release.allowed = QStringList {QStringLiteral("lost=100")};
    const GateRecord passed = site.release(wish).decided.value(0);
    QCOMPARE(passed.outcome, GateRecord::Passed);
    if (isRead)
        site.read();
    const GateResult again = site.release(wish);
    QCOMPARE(again.decided.size(), said.isEmpty() ? 1 : 0);
    QCOMPARE(again.news.size(), said.isEmpty() ? 0 : 1);
    QVERIFY2(said.isEmpty() || again.news.constFirst().contains(said),
             qPrintable(again.news.value(0)));
    QVERIFY(said.isEmpty() || again.news.constFirst().contains(passed.name));
    QCOMPARE(site.inPlace().isNull(), isAllowed && isRead);
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
    const QByteArray content = damaged(site.nextExport());
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
    const QByteArray older = damaged(site.nextExport());
    site.deliver(older);
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
    QCOMPARE(site.inPlace(), older);
    QCOMPARE(site.archived(unread), newer);
}

void tst_GateRelease::release_ofANewerOne_replacesWhatIsUnread()
{
    GateSite site;
    site.deliver(site.nextExport());
    site.run();
    site.deliver(damaged(site.nextExport()));
    const GateRecord refused = site.run().decided.value(0);
    QCOMPARE(site.release({refused.name, byHand}).decided.value(0).outcome, GateRecord::Passed);
    // What is in place for good was read by now.
    GateSite staying;
    staying.settings.isRemovedWhenRead = false;
    staying.deliver(damaged(staying.nextExport()));
    const GateRecord older = staying.run().decided.value(0);
    staying.deliver(staying.nextExport());
    staying.run();
    QCOMPARE(staying.release({older.name, byHand}).decided.value(0).outcome, GateRecord::Passed);
}

QTEST_GUILESS_MAIN(tst_GateRelease)
#include "tst_gaterelease.moc"
