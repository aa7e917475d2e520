// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// One run at a time on a database.
#include "host/database/runlock.h"
#include "support/patience.h"
#include "support/testdatabase.h"

#include <QtTest>

#include <memory>

class tst_RunLock : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void take_keepsASecondRunAway();
    void take_isForOneDatabase();
    void take_withoutADatabase();

private:
    ConnectionParameters parameters() const;

    std::unique_ptr<TestDatabase> database;
};

void tst_RunLock::initTestCase()
{
    database = std::make_unique<TestDatabase>();
    QVERIFY2(database->error().isEmpty(), qPrintable(database->error()));
}

ConnectionParameters tst_RunLock::parameters() const
{
    ConnectionParameters parameters;
    parameters.socket = database->server().socketPath();
    parameters.database = database->databaseName();
    return parameters;
}

/// The first one's connection has another name in Qt's list by then.
void tst_RunLock::take_keepsASecondRunAway()
{
    const QString holds = QStringLiteral("SELECT IS_FREE_LOCK('talvenhr run %1')")
                              .arg(database->databaseName());
    {
        RunLock lock;
        const Failure failure = lock.take(parameters());
        QVERIFY2(!failure, qPrintable(failure.text));
        QVERIFY(lock.isHeld());
        QCOMPARE(database->value(holds), QStringLiteral("0"));
        // It has it already, on the same connection.
        QVERIFY(!lock.take(parameters()));
        QVERIFY(lock.isHeld());
    }
    QTRY_COMPARE_WITH_TIMEOUT(database->value(holds), QStringLiteral("1"), longestWait);

    database->execute(
        QStringLiteral("DO GET_LOCK('talvenhr run %1', 0)").arg(database->databaseName()));
    RunLock second;
    const Failure failure = second.take(parameters());
    QCOMPARE(failure.exitCode, ExitRefused);
    QVERIFY(!second.isHeld());
    QVERIFY2(
        failure.text.contains(QStringLiteral("another 'talvenhr run' is at work on database '%1' "
                                             "(connection ")
                                  .arg(database->databaseName())),
        qPrintable(failure.text));
    database->execute(
        QStringLiteral("DO RELEASE_LOCK('talvenhr run %1')").arg(database->databaseName()));
}

void tst_RunLock::take_isForOneDatabase()
{
    database->execute(QStringLiteral("DO GET_LOCK('talvenhr run other', 0)"));
    RunLock lock;
    QVERIFY(!lock.take(parameters()));
    QVERIFY(lock.isHeld());
    database->execute(QStringLiteral("DO RELEASE_LOCK('talvenhr run other')"));
}

void tst_RunLock::take_withoutADatabase()
{
    ConnectionParameters nowhere = parameters();
    nowhere.database = QStringLiteral("none");
    RunLock lock;
    QCOMPARE(lock.take(nowhere).exitCode, ExitDatabase);
    QVERIFY(!lock.isHeld());
}

QTEST_GUILESS_MAIN(tst_RunLock)
#include "tst_runlock.moc"
