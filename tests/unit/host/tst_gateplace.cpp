// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What lies in place, and who has put it there.
#include "host/gate/placestays.h"
#include "support/gate/gatesite.h"
#include "support/unprivileged.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

namespace {

int rightsOf(const QString &path)
{
    struct stat found;
    return ::stat(QFile::encodeName(path).constData(), &found) == 0
        ? static_cast<int>(found.st_mode & 0777U)
        : -1;
}

const Release byHand {QStringLiteral("anna"), QStringLiteral("the branch is closed"), {}};

} // namespace

class tst_GatePlace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void foreignFileInPlace_isTakenAway();
    void earlierExportInPlace_isTakenAway();
    void unreadablePlace_isTold();
    void unreadExport_isReplaced();
    void exportThatStays_isNotCalledUnread();
    void export_isRememberedFromPlaceToGone();
    void refusedExport_leavesWhatLiesInPlace();
    void foreignFileThatCannotBeRemoved_isRecordedOnce();
    void fileThatCameMeanwhile_isNotLost();
    void placedExport_hasTheRightsOfTheDelivery_data();
    void placedExport_hasTheRightsOfTheDelivery();
    void placedByTheAdministrator_belongsToTheFolder();
};

void tst_GatePlace::foreignFileInPlace_isTakenAway()
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
void tst_GatePlace::earlierExportInPlace_isTakenAway()
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

void tst_GatePlace::unreadablePlace_isTold()
{
    GateSite site;
    QVERIFY(site.run().warnings.isEmpty());
    QVERIFY(QDir().mkpath(site.settings.place));
    const GateResult result = site.run();
    QCOMPARE(result.warnings.size(), 1);
    QVERIFY(result.warnings.constFirst().contains(site.settings.place));
}

void tst_GatePlace::unreadExport_isReplaced()
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

void tst_GatePlace::exportThatStays_isNotCalledUnread()
{
    GateSite site;
    site.settings.isRemovedWhenRead = false;
    site.deliver(site.nextExport());
    site.run();
    site.deliver(site.nextExport());
    QCOMPARE(site.run().decided.value(0).replaced, QString());
}

/// Also where others write into the folder.
void tst_GatePlace::export_isRememberedFromPlaceToGone()
{
    GateSite site;
    const QString state = site.settings.state;
    site.run();
    QVERIFY(readPlaceStays(state).isEmpty());
    site.deliver(site.nextExport());
    const QString name = site.run().decided.value(0).name;
    site.run();
    const PlaceStay lying = readPlaceStays(state).value(0);
    QCOMPARE(lying.record, name);
    QVERIFY(lying.seen.isValid() && !lying.gone.isValid());
    site.read();
    site.run();
    const PlaceStay gone = readPlaceStays(state).value(0);
    QCOMPARE(gone.seen, lying.seen);
    QVERIFY(gone.gone >= gone.seen);
    QFile other(QFileInfo(site.settings.place).path() + QStringLiteral("/figures.prom"));
    QVERIFY(other.open(QIODevice::WriteOnly));
    site.run();
    QCOMPARE(readPlaceStays(state).size(), 1);
    QCOMPARE(readPlaceStays(state).value(0).gone, gone.gone);
}

void tst_GatePlace::refusedExport_leavesWhatLiesInPlace()
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

void tst_GatePlace::foreignFileThatCannotBeRemoved_isRecordedOnce()
{
    GateSite site;
    QFile file(site.settings.place);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("somebody's own\n");
    file.close();
    const QByteArray place = QFile::encodeName(QFileInfo(site.settings.place).path());
    QCOMPARE(::chmod(QFile::encodeName(site.path(QString())).constData(), 0777), 0);
    QCOMPARE(::chmod(place.constData(), 0555), 0);
    {
        const Unprivileged ordinary;
        if (!ordinary.isBound())
            QSKIP("this user keeps all rights", );
        for (int run = 0; run < 2; ++run) {
            Failure failure;
            const GateResult result = site.run(&failure);
            QCOMPARE(failure.exitCode, ExitUsage);
            QVERIFY(result.hasRefused());
        }
    }
    QCOMPARE(::chmod(place.constData(), 0755), 0);
    QCOMPARE(site.records().size(), 1);
}

void tst_GatePlace::fileThatCameMeanwhile_isNotLost()
{
    GateSite site;
    const QByteArray content = site.nextExport();
    site.deliver(content);
    const QByteArray foreign = "somebody's own\n";
    Gate gate(site.settings);
    gate.setStepWatch([&site, &foreign](const char *step) {
        QFile file(site.settings.place);
        if (qstrcmp(step, "put") == 0 && file.open(QIODevice::WriteOnly))
            file.write(foreign);
    });
    GateResult result;
    const Failure failure = gate.run(&result);
    QCOMPARE(failure.exitCode, ExitErrors);
    QVERIFY2(failure.text.contains(site.settings.place), qPrintable(failure.text));
    QCOMPARE(site.inPlace(), foreign);
    QVERIFY(site.isDelivered());
    QVERIFY(site.records().isEmpty());
}

void tst_GatePlace::placedExport_hasTheRightsOfTheDelivery_data()
{
    QTest::addColumn<int>("delivered");
    QTest::addColumn<int>("placed");
    QTest::newRow("group") << 0640 << 0640;
    QTest::newRow("all") << 0644 << 0644;
    QTest::newRow("nobody else") << 0600 << 0600;
    QTest::newRow("not even its owner") << 0040 << 0640;
}

/// Also one that a person lets through: a copy for the gate alone is kept of it.
void tst_GatePlace::placedExport_hasTheRightsOfTheDelivery()
{
    QFETCH(int, delivered);
    QFETCH(int, placed);
    GateSite site;
    const QString delivery = QDir(site.settings.incoming.folder)
                                 .filePath(QStringLiteral("ron.data"));
    const auto deliver = [&](const QByteArray &content) {
        site.deliver(content);
        return ::chmod(QFile::encodeName(delivery).constData(), static_cast<mode_t>(delivered))
            == 0;
    };
    const bool canReadAll = ::geteuid() == 0;
    if (!canReadAll && (delivered & 0400) == 0)
        QSKIP("only the administrator reads such a file", );
    QVERIFY(deliver(site.nextExport()));
    QCOMPARE(site.run().decided.value(0).outcome, GateRecord::Passed);
    QCOMPARE(rightsOf(site.settings.place), placed);
    QVERIFY(deliver(cutOff(site.nextExport(), 40)));
    const GateRecord refused = site.run().decided.value(0);
    QCOMPARE(refused.rights, delivered);
    const QString kept = QDir(site.settings.refused)
                             .filePath(refused.name + QStringLiteral(".export"));
    QCOMPARE(rightsOf(kept), 0600);
    QCOMPARE(site.release({refused.name, byHand}).decided.value(0).outcome, GateRecord::Passed);
    QCOMPARE(rightsOf(site.settings.place), placed);
}

void tst_GatePlace::placedByTheAdministrator_belongsToTheFolder()
{
    if (::geteuid() != 0)
        QSKIP("only the administrator can give files away", );
    const uid_t keeper = 65534;
    GateSite site;
    const QByteArray folder = QFile::encodeName(QFileInfo(site.settings.place).path());
    QCOMPARE(::chown(folder.constData(), keeper, keeper), 0);
    site.deliver(site.nextExport());
    QCOMPARE(site.run().decided.value(0).outcome, GateRecord::Passed);
    QCOMPARE(QFileInfo(site.settings.place).ownerId(), keeper);
}

QTEST_GUILESS_MAIN(tst_GatePlace)
#include "tst_gateplace.moc"
