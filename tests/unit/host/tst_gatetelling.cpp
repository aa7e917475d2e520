// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Who is told what, and when.
#include "support/gate/gatesite.h"
#include "support/unprivileged.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtTest>

#include <sys/stat.h>

class tst_GateTelling : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hooks_getTheRecord();
    void nothingNew_isToldToNobody();
    void lateDelivery_isToldOnce();
    void noDeliveryAtAll_isLateSinceTheGateBegan();
    void deliveryThatCannotBeRemoved_isToldOnce();

private:
    static QString writeHook(const GateSite &site);
};

/// A hook that keeps what it is told in the file "told".
QString tst_GateTelling::writeHook(const GateSite &site)
{
    const QString told = site.path(QStringLiteral("told"));
    return QStringLiteral("sh -c \"cat >>'%1'\"").arg(told);
}

namespace {

QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

void tst_GateTelling::hooks_getTheRecord()
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
    GateRecord record = passed.decided.value(0);
    QVERIFY(record.isTold);
    record.isTold = false; // as it was when it was told
    QCOMPARE(file.readAll(), gateRecordJson(record));
    QVERIFY(passed.warnings.isEmpty());
    site.deliver("no export\n");
    const GateResult refused = site.run();
    QVERIFY(refused.hasRefused());
    QCOMPARE(refused.warnings.size(), 1);
    QVERIFY(refused.warnings.constFirst().contains(QStringLiteral("/nowhere/program")));
}

/// A day on which nothing changed; it is a delivery all the same.
void tst_GateTelling::nothingNew_isToldToNobody()
{
    GateSite site;
    site.settings.refusedHook = writeHook(site);
    site.settings.lateAfter = 26;
    const QByteArray same = site.nextExport();
    site.deliver(same);
    GateRecord first = site.run().decided.value(0);
    first.when = first.when.addSecs(-27 * 3600);
    QVERIFY(
        !writeGateRecord(first, QDir(site.settings.archive).filePath(first.name + recordEnding())));
    site.deliver(same);
    const GateResult result = site.run();
    QVERIFY(result.hasRefused());
    QVERIFY(!result.isLate);
    QVERIFY(result.decided.constFirst().isTold);
    QVERIFY(!QFileInfo::exists(site.path(QStringLiteral("told"))));
    site.deliver("no export\n");
    site.run();
    QCOMPARE(content(site.path(QStringLiteral("told"))).count('\n'), 1);
}

void tst_GateTelling::lateDelivery_isToldOnce()
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

void tst_GateTelling::noDeliveryAtAll_isLateSinceTheGateBegan()
{
    GateSite site;
    site.settings.lateAfter = 26;
    site.settings.lateHook = writeHook(site);
    QVERIFY(!site.run().isLate);
    QFile begun(QDir(site.settings.state).filePath(QStringLiteral("begun")));
    QVERIFY(begun.open(QIODevice::WriteOnly));
    begun.write(QDateTime::currentDateTimeUtc().addSecs(-27 * 3600).toString(Qt::ISODate).toUtf8()
                + '\n');
    begun.close();
    const GateResult late = site.run();
    QVERIFY(late.isLate);
    QCOMPARE(late.warnings.size(), 1);
    QVERIFY2(late.warnings.constFirst().startsWith(
                 QStringLiteral("no export was delivered for 27 hours, since the gate first ran")),
             qPrintable(late.warnings.constFirst()));
    const GateResult again = site.run();
    QVERIFY(again.isLate);
    QVERIFY(again.warnings.isEmpty());
    QCOMPARE(content(site.path(QStringLiteral("told"))), QByteArray("null\n"));
    site.deliver(site.nextExport());
    QVERIFY(!site.run().isLate);
}

/// A folder that can be read and not written.
void tst_GateTelling::deliveryThatCannotBeRemoved_isToldOnce()
{
    GateSite site;
    site.settings.refusedHook = writeHook(site);
    site.deliver("no export\n");
    const QByteArray incoming = QFile::encodeName(site.settings.incoming.folder);
    const QByteArray whole = QFile::encodeName(site.path(QString()));
    const QByteArray place = QFile::encodeName(QFileInfo(site.settings.place).path());
    QCOMPARE(::chmod(whole.constData(), 0777), 0);
    QCOMPARE(::chmod(place.constData(), 0777), 0);
    QCOMPARE(::chmod(incoming.constData(), 0555), 0);
    {
        const Unprivileged ordinary;
        if (!ordinary.isBound())
            QSKIP("this user keeps all rights", );
        for (int run = 0; run < 3; ++run) {
            Failure failure;
            const GateResult result = site.run(&failure);
            QCOMPARE(failure.exitCode, ExitUsage);
            QVERIFY2(failure.text.contains(QStringLiteral("cannot remove '")),
                     qPrintable(failure.text));
            QVERIFY(result.hasRefused());
            QCOMPARE(result.decided.size(), 1);
        }
    }
    QCOMPARE(::chmod(incoming.constData(), 0755), 0);
    QCOMPARE(content(site.path(QStringLiteral("told"))).count('\n'), 1);
    QCOMPARE(site.records().size(), 1);
}

QTEST_GUILESS_MAIN(tst_GateTelling)
#include "tst_gatetelling.moc"
