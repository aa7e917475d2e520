// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The record of an export at the gate, written and read.
#include "host/gate/gaterecord.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

class tst_GateRecord : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void allMembers_comeBack();
    void smallestRecord_comesBack();
    void file_isForItsOwnerOnly();
    void otherFile_isNamedWithItsFault_data();
    void otherFile_isNamedWithItsFault();
    void recordsOfAFolder_comeOldestFirst();

private:
    QString path(const QString &name) const { return folder.filePath(name); }
    void write(const QString &name, const QByteArray &bytes) const;
    static GateRecord fullRecord();

    QTemporaryDir folder;
};

GateRecord tst_GateRecord::fullRecord()
{
    GateRecord record;
    record.name = QStringLiteral("20261122T124002Z-0123456789ab");
    record.outcome = GateRecord::Passed;
    record.when = QDateTime::fromString(QStringLiteral("2026-11-22T12:40:02.345Z"),
                                        Qt::ISODateWithMs);
    record.fileTime = record.when.addSecs(-60);
    record.exported = {QStringLiteral("ron.data"), QStringLiteral("0123"), 5000000000, 12};
    record.placedDigest = QStringLiteral("4567");
    record.comparedWith = QStringLiteral("20261121T124002Z-ba9876543210");
    record.comparedWhen = record.when.addDays(-1);
    record.replaced = record.comparedWith;
    record.fates = {8, 1, 2, 1};
    record.lost = 3;
    record.gained = 4;
    record.findings = {{QStringLiteral("W-CELL-DATE"), Finding::Warning, 5},
                       {QStringLiteral("E-CELL-QUOTE"), Finding::Error, 1}};
    record.rehearsal = RehearsedFigures {2, 7, QStringLiteral("abc-def"), KindCounts()};
    record.rehearsal->summary[ChangeKind::Added] = 6;
    record.limits = {{{QStringLiteral("ended"), 5, true}, 2.5, 3},
                     {{QStringLiteral("added"), 12, false}, 12, 6}};
    record.reasons = {{QStringLiteral("limit:ended"), QStringLiteral("too many \"ends\""),
                       QStringLiteral("look")}};
    record.mendedCells = 9;
    record.release = Release {
        QStringLiteral("anna"), QStringLiteral("branch closed"), {QStringLiteral("ended=3")}};
    record.seconds = 11;
    record.rights = 0640;
    record.isNothingNew = true;
    record.isTold = true;
    return record;
}

void tst_GateRecord::write(const QString &name, const QByteArray &bytes) const
{
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

void tst_GateRecord::init()
{
    QVERIFY(folder.isValid());
}

void tst_GateRecord::allMembers_comeBack()
{
    const QString file = path(QStringLiteral("full") + recordEnding());
    QVERIFY(!writeGateRecord(fullRecord(), file));
    GateRecord read;
    QVERIFY(!readGateRecord(file, &read));
    QCOMPARE(gateRecordJson(read), gateRecordJson(fullRecord()));
    QCOMPARE(read.exported.size, Q_INT64_C(5000000000));
    QCOMPARE(read.rehearsal->summary[ChangeKind::Added], Q_INT64_C(6));
    QCOMPARE(read.limits.constFirst().limit.isPercent, true);
    QCOMPARE(read.findings.constLast().severity, Finding::Error);
    QCOMPARE(read.release->allowed, QStringList {QStringLiteral("ended=3")});
    QCOMPARE(read.when, fullRecord().when);
    QCOMPARE(read.rights, 0640);
}

void tst_GateRecord::smallestRecord_comesBack()
{
    const QString file = path(QStringLiteral("small") + recordEnding());
    QVERIFY(!writeGateRecord(GateRecord(), file));
    GateRecord read = fullRecord();
    QVERIFY(!readGateRecord(file, &read));
    QCOMPARE(gateRecordJson(read), gateRecordJson(GateRecord()));
    QVERIFY(!read.rehearsal);
    QVERIFY(!read.release);
}

void tst_GateRecord::file_isForItsOwnerOnly()
{
    const QString file = path(QStringLiteral("owner") + recordEnding());
    QVERIFY(!writeGateRecord(fullRecord(), file));
    const QFileDevice::Permissions others = QFileDevice::ReadGroup | QFileDevice::ReadOther;
    QVERIFY(!(QFile::permissions(file) & others));
}

void tst_GateRecord::otherFile_isNamedWithItsFault_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("fault");

    QTest::newRow("no JSON") << QByteArray("ron") << QStringLiteral("it is no JSON object");
    QTest::newRow("another format") << QByteArray(R"({"format": "talvenhr.check/1"})")
                                    << QStringLiteral("its format is not 'talvenhr.gate/1'");
    QTest::newRow("outcome") << QByteArray(R"({"format": "talvenhr.gate/1", "outcome": "lost"})")
                             << QStringLiteral("'lost' is no outcome");
}

void tst_GateRecord::otherFile_isNamedWithItsFault()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, fault);
    const QString name = QStringLiteral("other") + recordEnding();
    write(name, content);
    GateRecord read;
    const Failure failure = readGateRecord(path(name), &read);
    QCOMPARE(failure.exitCode, ExitUsage);
    QVERIFY2(failure.text.contains(fault), qPrintable(failure.text));
    QVERIFY(failure.text.contains(path(name)));
}

void tst_GateRecord::recordsOfAFolder_comeOldestFirst()
{
    const QTemporaryDir records;
    for (const int hour : {3, 1, 2}) {
        GateRecord record;
        record.when = fullRecord().when.addSecs(hour * 3600);
        record.seconds = hour;
        QVERIFY(
            !writeGateRecord(record, records.filePath(QString::number(9 - hour) + recordEnding())));
    }
    QFile damaged(records.filePath(QStringLiteral("0") + recordEnding()));
    QVERIFY(damaged.open(QIODevice::WriteOnly));
    QStringList unreadable;
    const QVector<GateRecord> read = readGateRecords(records.path(), &unreadable);
    QCOMPARE(read.size(), 3);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(read.at(i).seconds, i + 1);
    QCOMPARE(unreadable, QStringList {damaged.fileName()});
}

QTEST_GUILESS_MAIN(tst_GateRecord)
#include "tst_gaterecord.moc"
