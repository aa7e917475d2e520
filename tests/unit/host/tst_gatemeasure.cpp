// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Which export the next one is compared with.
#include "support/gate/gatesite.h"

#include <QDir>
#include <QFile>
#include <QtTest>

namespace {

const Release byHand {QStringLiteral("anna"), QStringLiteral("the branch is closed"), {}};

} // namespace

class tst_GateMeasure : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void released_isNoMeasureForTheNext();
    void allowed_isTheMeasureForTheNext();
    void allowedDifference_isTheMeasureForTheNext();
    void held_isTheMeasureOnceReleased();
};

void tst_GateMeasure::released_isNoMeasureForTheNext()
{
    GateSite site;
    site.deliver(site.nextExport());
    const GateRecord good = site.run().decided.value(0);
    site.deliver(cutOff(site.nextExport(), 40));
    const GateRecord refused = site.run().decided.value(0);
    const GateRecord released = site.release({refused.name, byHand}).decided.value(0);
    QCOMPARE(released.outcome, GateRecord::Passed);
    QVERIFY(!isGood(released));
    // Another bad one says what it was compared with, and what not.
    site.deliver(cutOff(site.nextExport(), 50));
    const GateRecord bad = site.run().decided.value(0);
    QCOMPARE(bad.comparedWith, good.name);
    QCOMPARE(bad.comparedWhen, good.when);
    QFile text(QDir(site.settings.refused).filePath(bad.name + QStringLiteral(".txt")));
    QVERIFY(text.open(QIODevice::ReadOnly));
    const QString words = QString::fromUtf8(text.readAll());
    QVERIFY2(words.contains(good.name) && words.contains(released.name), qPrintable(words));
    QVERIFY2(words.contains(QStringLiteral("anna had let it through as it was, with the reason "
                                           "\"the branch is closed\"")),
             qPrintable(words));
    // Not even when it is old enough for its files to go.
    GateArchive archive(site.settings.archive, site.settings.refused);
    QVERIFY(!archive.open());
    archive.removeOlderThan(1, QDateTime::currentDateTime().addDays(3));
    // The day after, all are back.
    site.deliver(site.nextExport());
    const GateRecord next = site.run().decided.value(0);
    QCOMPARE(codesOf(next), QStringList());
    QCOMPARE(next.comparedWith, good.name);
}

void tst_GateMeasure::allowed_isTheMeasureForTheNext()
{
    GateSite site;
    site.deliver(site.nextExport());
    site.run();
    site.deliver(cutOff(site.nextExport(), 90));
    Release release = byHand;
    release.allowed = QStringList {QStringLiteral("lost=100")};
    const GateRecord refused = site.run().decided.value(0);
    const GateRecord allowed = site.release({refused.name, release}).decided.value(0);
    site.deliver(cutOff(site.nextExport(), 90));
    QCOMPARE(site.run().decided.value(0).comparedWith, allowed.name);
}

/// The HR system leaves a column empty from now on: a person says so once.
void tst_GateMeasure::allowedDifference_isTheMeasureForTheNext()
{
    const auto withoutBranchNames = [](const QByteArray &content) {
        QByteArrayList lines = content.split('\n');
        for (int i = 1; i < lines.size(); ++i) {
            QByteArrayList cells = lines.at(i).split('|');
            if (cells.size() > 10)
                cells[10].clear();
            lines[i] = cells.join('|');
        }
        return lines.join('\n');
    };
    GateSite site;
    site.deliver(site.nextExport());
    site.run();
    site.deliver(withoutBranchNames(site.nextExport()));
    const GateRecord refused = site.run().decided.value(0);
    QCOMPARE(codesOf(refused), QStringList {QStringLiteral("W-AGAINST-EMPTY")});
    Release release = byHand;
    release.allowed = codesOf(refused);
    const GateRecord allowed = site.release({refused.name, release}).decided.value(0);
    QCOMPARE(allowed.outcome, GateRecord::Passed);
    site.deliver(withoutBranchNames(site.nextExport()));
    const GateRecord next = site.run().decided.value(0);
    QCOMPARE(next.outcome, GateRecord::Passed);
    QCOMPARE(next.comparedWith, allowed.name);
}

/// Nothing was found against it.
void tst_GateMeasure::held_isTheMeasureOnceReleased()
{
    GateSite site;
    site.settings.holdsFirst = true;
    site.deliver(damaged(site.nextExport()));
    const GateRecord bad = site.run().decided.value(0);
    site.release({bad.name, byHand});
    site.deliver(site.nextExport());
    const GateRecord held = site.run().decided.value(0);
    QCOMPARE(codesOf(held), QStringList {QStringLiteral("hold")});
    const GateRecord released = site.release({held.name, byHand}).decided.value(0);
    site.deliver(site.nextExport());
    const GateRecord next = site.run().decided.value(0);
    QCOMPARE(next.outcome, GateRecord::Passed);
    QCOMPARE(next.comparedWith, released.name);
}

QTEST_GUILESS_MAIN(tst_GateMeasure)
#include "tst_gatemeasure.moc"
