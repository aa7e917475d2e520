// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Handles of the recording driver: clones, observers, threads, and who outlives whom.
#include "support/database/recordedmemory.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QThread>
#include <QtTest>

#include <memory>
#include <utility>

namespace {

QString str(const char *text)
{
    return QString::fromUtf8(text);
}

/// Opens a handle of the driver, runs one statement and removes the handle.
void useOnce(const RegisteredDriver &driver, const QString &name)
{
    {
        QSqlDatabase database = driver.addHandle(name);
        QVERIFY(database.open());
        QSqlQuery query(database);
        QVERIFY(query.exec(str("SELECT 1")));
    }
    QSqlDatabase::removeDatabase(name);
}

} // namespace

class tst_RecordedHandles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void clone_isSeenByTheSameObserver();
    void twoObservers_seeTheirOwnHandles();
    void observer_livesAsLongAsItsHandles();
    void handle_thatGoesOpenIsSeenClosing();
    void query_mayOutliveItsHandle();
    void thread_isThatOfTheCall();
    void recording_canItselfBeRecorded();
    void unknownInnerDriver_cannotBeOpened();
    void handleTo_hasTheParametersOfTheOther();
};

void tst_RecordedHandles::clone_isSeenByTheSameObserver()
{
    RecordedMemory f;
    {
        QSqlDatabase clone = QSqlDatabase::cloneDatabase(f.database, str("clone"));
        QVERIFY(!clone.isOpen());
        QVERIFY(clone.open());
        QCOMPARE(f.take(), seen(str("open"), str("done, -1")));
    }
    QSqlDatabase::removeDatabase(str("clone"));
    QCOMPARE(f.take(), seen(str("close"), str("done, -1")));
    QVERIFY(f.database.isOpen());
}

void tst_RecordedHandles::twoObservers_seeTheirOwnHandles()
{
    RecordedMemory f;
    QStringList others;
    const RegisteredDriver other = recordingDriver(f.inner.driver.name(),
                                                   std::make_shared<CallNotes>(&others));
    QSqlQuery query(f.database);
    useOnce(other, str("other"));
    QCOMPARE(others.filter(str("before ")),
             (QStringList {str("before open"), str("before exec SELECT 1"), str("before close")}));
    QCOMPARE(f.take().filter(str("before ")), QStringList());
    others.clear();
    QVERIFY(query.exec(str("SELECT 2")));
    QCOMPARE(f.take(), seen(str("exec SELECT 2"), str("done, 0")));
    QCOMPARE(others, QStringList());
}

void tst_RecordedHandles::observer_livesAsLongAsItsHandles()
{
    QStringList notes;
    const AnsweringNotes inner(&notes);
    auto observer = std::make_shared<CallNotes>(&notes);
    const std::weak_ptr<CallNotes> life = observer;
    {
        const RegisteredDriver driver = recordingDriver(inner.driver.name(),
                                                        std::exchange(observer, nullptr));
        driver.addHandle(str("late"));
        QVERIFY(!life.expired());
    }
    QVERIFY(QSqlDatabase::database(str("late")).isOpen());
    QCOMPARE(notes, seen(str("open"), str("done, -1")));
    QVERIFY(!life.expired());
    QSqlDatabase::removeDatabase(str("late"));
    QVERIFY(life.expired());
}

void tst_RecordedHandles::handle_thatGoesOpenIsSeenClosing()
{
    RecordedMemory f;
    f.database = QSqlDatabase();
    QSqlDatabase::removeDatabase(str("recorded"));
    QCOMPARE(f.take(), seen(str("close"), str("done, -1")));
}

void tst_RecordedHandles::query_mayOutliveItsHandle()
{
    QStringList notes;
    const RegisteredDriver driver = recordingDriver(str("QSQLITE"),
                                                    std::make_shared<CallNotes>(&notes));
    {
        QSqlDatabase database = driver.addHandle(str("short"));
        database.setDatabaseName(str(":memory:"));
        QVERIFY(database.open());
    }
    QSqlQuery query(QSqlDatabase::database(str("short")));
    QVERIFY(query.prepare(str("SELECT 5")) && query.exec());
    QSqlDatabase::removeDatabase(str("short"));
    QCOMPARE(notes.last(), str("after close: done, -1"));
    QVERIFY(!query.exec());
    QCOMPARE(notes.last(), str("after close: done, -1"));
}

void tst_RecordedHandles::thread_isThatOfTheCall()
{
    class Threads : public CallObserver
    {
    public:
        QSqlError before(const DatabaseCall &) override
        {
            threads.append(QThread::currentThread());
            return QSqlError();
        }
        void after(const DatabaseCall &, const CallOutcome &) override
        {
            threads.append(QThread::currentThread());
        }
        QVector<QThread *> threads;
    };
    QStringList notes;
    const AnsweringNotes inner(&notes);
    const auto observer = std::make_shared<Threads>();
    const RegisteredDriver driver = recordingDriver(inner.driver.name(), observer);
    const std::unique_ptr<QThread> thread(
        QThread::create([&driver] { useOnce(driver, str("elsewhere")); }));
    thread->start();
    QVERIFY(thread->wait(10000));
    QCOMPARE(observer->threads, QVector<QThread *>(6, thread.get()));
}

void tst_RecordedHandles::recording_canItselfBeRecorded()
{
    RecordedMemory f;
    QStringList outer;
    useOnce(recordingDriver(f.driver.name(), std::make_shared<CallNotes>(&outer)), str("outer"));
    QCOMPARE(outer.size(), 6);
    QCOMPARE(f.take().filter(str("before ")), outer.filter(str("before ")));
}

void tst_RecordedHandles::unknownInnerDriver_cannotBeOpened()
{
    QStringList notes;
    const RegisteredDriver driver = recordingDriver(str("NOBODY"),
                                                    std::make_shared<CallNotes>(&notes));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(str("NOBODY driver not loaded")));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(str("available drivers")));
    {
        QSqlDatabase database = driver.addHandle(str("nobody"));
        QVERIFY(!database.open());
        QVERIFY(database.isOpenError());
        QVERIFY(database.lastError().text().contains(str("Driver not loaded")));
    }
    QSqlDatabase::removeDatabase(str("nobody"));
}

void tst_RecordedHandles::handleTo_hasTheParametersOfTheOther()
{
    RecordedMemory f;
    {
        QSqlDatabase other = QSqlDatabase::addDatabase(str("QSQLITE"), str("other"));
        other.setDatabaseName(str("name"));
        other.setUserName(str("user"));
        other.setPassword(str("password"));
        other.setHostName(str("host"));
        other.setPort(5);
        other.setConnectOptions(str("options"));
        other.setNumericalPrecisionPolicy(QSql::HighPrecision);
        const QSqlDatabase handle = f.driver.addHandleTo(other, str("same"));
        QVERIFY(!handle.isOpen());
        QCOMPARE(handle.driverName(), f.driver.name());
        QCOMPARE(handle.databaseName(), str("name"));
        QCOMPARE(handle.userName(), str("user"));
        QCOMPARE(handle.password(), str("password"));
        QCOMPARE(handle.hostName(), str("host"));
        QCOMPARE(handle.port(), 5);
        QCOMPARE(handle.connectOptions(), str("options"));
        QCOMPARE(handle.numericalPrecisionPolicy(), QSql::HighPrecision);
    }
    QSqlDatabase::removeDatabase(str("other"));
    QSqlDatabase::removeDatabase(str("same"));
}

QTEST_GUILESS_MAIN(tst_RecordedHandles)
#include "tst_recordedhandles.moc"
