// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Moments as people read them, wherever they sit.
#include "host/base/zonedtext.h"
#include "host/gate/gatetexts.h"

#include <QtTest>

#include <ctime>

class tst_ZonedText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void moment_saysItsZone_data();
    void moment_saysItsZone();
    void refusal_saysTheZoneOfItsMoments();

private:
    static void setZone(const QByteArray &zone);
};

void tst_ZonedText::setZone(const QByteArray &zone)
{
    qputenv("TZ", zone);
    ::tzset();
}

void tst_ZonedText::moment_saysItsZone_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QString>("text");
    QTest::newRow("east") << QByteArray("Europe/Prague") << "2026-11-22T04:30:21+01:00";
    QTest::newRow("west") << QByteArray("America/New_York") << "2026-11-21T22:30:21-05:00";
    QTest::newRow("UTC") << QByteArray("UTC") << "2026-11-22T03:30:21Z";
}

void tst_ZonedText::moment_saysItsZone()
{
    QFETCH(QByteArray, zone);
    QFETCH(QString, text);
    setZone(zone);
    const QDateTime moment(QDate(2026, 11, 22), QTime(3, 30, 21), Qt::UTC);
    QCOMPARE(zonedText(moment), text);
    QCOMPARE(zonedText(moment.toLocalTime()), text);
}

void tst_ZonedText::refusal_saysTheZoneOfItsMoments()
{
    setZone("Europe/Prague");
    GateRecord record;
    record.exported.name = QStringLiteral("ron.data");
    record.fileTime = QDateTime(QDate(2026, 11, 22), QTime(4, 0));
    record.when = QDateTime(QDate(2026, 11, 22), QTime(3, 30, 21), Qt::UTC); // as a record is read
    QVERIFY(refusalText(record, QStringLiteral("/refused"), nullptr)
                .startsWith(QStringLiteral("The export 'ron.data' of 2026-11-22T04:00:00+01:00 was "
                                           "refused on 2026-11-22T04:30:21+01:00.")));
}

QTEST_GUILESS_MAIN(tst_ZonedText)
#include "tst_zonedtext.moc"
