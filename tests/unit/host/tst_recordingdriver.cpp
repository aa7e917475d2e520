// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The driver that shows every call of another one: what the observer sees, and what the caller.
#include "host/database/answeringdriver.h"
#include "support/database/callmaker.h"
#include "support/database/callnotes.h"
#include "support/database/experience.h"

#include <QElapsedTimer>
#include <QSqlDriver>
#include <QThread>
#include <QtTest>

#include <memory>
#include <utility>

namespace {

QString str(const char *text)
{
    return QString::fromUtf8(text);
}

/// A driver that answers from memory and writes what it is asked into the list, as "inner CALL".
class Inner
{
public:
    explicit Inner(QStringList *notes) :
        driver(answeringDriver([this, notes](const DatabaseCall &call) {
            notes->append(str("inner ") + call.text());
            return std::make_shared<const DatabaseAnswer>(answer);
        }))
    { }

    DatabaseAnswer answer;
    const RegisteredDriver driver;
};

/// An open handle over a driver that answers from memory; one list tells what both see.
struct Fixture
{
    Fixture()
    {
        database.open();
        notes.clear();
    }
    ~Fixture()
    {
        database = QSqlDatabase();
        QSqlDatabase::removeDatabase(str("recorded"));
    }

    QStringList take() { return std::exchange(notes, {}); }

    QStringList notes;
    Inner inner {&notes};
    std::shared_ptr<CallNotes> observer = std::make_shared<CallNotes>(&notes);
    const RegisteredDriver driver = recordingDriver(inner.driver.name(), observer);
    QSqlDatabase database = driver.addHandle(str("recorded"));
};

/// A call that was let through, as all three see it.
QStringList seen(const QString &call, const QString &outcome)
{
    return {str("before ") + call, str("inner ") + call, str("after %1: %2").arg(call, outcome)};
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

class tst_RecordingDriver : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void call_isSeenBeforeAndAfter_data() { CallMaker::addRows(); }
    void call_isSeenBeforeAndAfter();
    void call_thatIsRefusedReachesNobody_data() { CallMaker::addRows(); }
    void call_thatIsRefusedReachesNobody();
    void call_thatFailsIsSeenWithItsError_data() { CallMaker::addRows(); }
    void call_thatFailsIsSeenWithItsError();
    void close_cannotBeRefused();
    void refusedCalls_canBeRepeated();
    void affectedRows_areThoseOfChanges();
    void time_isThatOfTheCall();
    void batch_isARunForEachRow();
    void clone_isSeenByTheSameObserver();
    void twoObservers_seeTheirOwnHandles();
    void observer_livesAsLongAsItsHandles();
    void handle_thatGoesOpenIsSeenClosing();
    void query_mayOutliveItsHandle();
    void thread_isThatOfTheCall();
    void recording_canItselfBeRecorded();
    void features_leaveOutWhatIsNotHandedOn();
    void unknownInnerDriver_cannotBeOpened();
    void handleTo_hasTheParametersOfTheOther();
    void caller_learnsTheSameAsWithout();
};

void tst_RecordingDriver::call_isSeenBeforeAndAfter()
{
    QFETCH(DatabaseCall::Kind, kind);
    QFETCH(QString, text);
    Fixture f;
    CallMaker maker(f.database);
    f.inner.answer.affected = 3;
    f.take();
    QVERIFY(maker.make(kind));
    const bool changes = kind == DatabaseCall::Exec || kind == DatabaseCall::Run;
    QCOMPARE(f.take().mid(kind == DatabaseCall::Open ? 3 : 0), // it was closed first
             seen(text, changes ? str("done, 3") : str("done, -1")));
}

void tst_RecordingDriver::call_thatIsRefusedReachesNobody()
{
    QFETCH(DatabaseCall::Kind, kind);
    QFETCH(QString, text);
    Fixture f;
    CallMaker maker(f.database);
    f.take();
    f.observer->refused = text;
    QVERIFY(!maker.make(kind));
    QCOMPARE(f.take().mid(kind == DatabaseCall::Open ? 3 : 0), QStringList {str("before ") + text});
    QVERIFY(!maker.query.isActive());
    QCOMPARE(f.database.isOpen(), kind != DatabaseCall::Open);
    QCOMPARE(f.database.isOpenError(), kind == DatabaseCall::Open);
    const QSqlError error = maker.errorOf(kind);
    QCOMPARE(error.text(), str("not today (observer)"));
    QCOMPARE(error.nativeErrorCode(), str("77"));
    QCOMPARE(error.type(), (DatabaseCall {kind, {}, {}}.errorType()));
}

void tst_RecordingDriver::call_thatFailsIsSeenWithItsError()
{
    QFETCH(DatabaseCall::Kind, kind);
    QFETCH(QString, text);
    Fixture f;
    CallMaker maker(f.database);
    f.inner.answer.fails = true;
    f.inner.answer.error = QSqlError(str("(inner)"), str("broken"), QSqlError::UnknownError);
    QVERIFY(!maker.make(kind));
    QCOMPARE(f.take().last(), str("after %1: broken (inner)").arg(text));
    QCOMPARE(maker.errorOf(kind).text(), str("broken (inner)"));
    QCOMPARE(f.database.isOpen(), kind != DatabaseCall::Open);
}

void tst_RecordingDriver::close_cannotBeRefused()
{
    Fixture f;
    f.observer->refused = str("close");
    f.database.close();
    f.database.close();
    QVERIFY(!f.database.isOpen());
    QCOMPARE(f.take(), seen(str("close"), str("done, -1")));
}

void tst_RecordingDriver::refusedCalls_canBeRepeated()
{
    Fixture f;
    CallMaker maker(f.database);
    f.observer->refused = str("run :a=5");
    QVERIFY(!maker.query.exec());
    f.observer->refused.clear();
    f.take();
    QVERIFY(maker.query.exec());
    QVERIFY(!maker.query.lastError().isValid());
    QCOMPARE(f.take(), seen(str("run :a=5"), str("done, 0")));
}

void tst_RecordingDriver::affectedRows_areThoseOfChanges()
{
    Fixture f;
    f.inner.answer.affected = 2;
    f.inner.answer.setRows({str("n")}, {{7}, {8}});
    QSqlQuery query(f.database);
    QVERIFY(query.exec(str("SELECT 1")));
    QCOMPARE(f.take().last(), str("after exec SELECT 1: done, -1"));
    QVERIFY(query.last());
    QCOMPARE(query.value(0), QVariant(8));
}

void tst_RecordingDriver::time_isThatOfTheCall()
{
    QStringList notes;
    const auto observer = std::make_shared<CallNotes>(&notes);
    const RegisteredDriver busy = answeringDriver([](const DatabaseCall &call) {
        QElapsedTimer timer;
        timer.start();
        while (call.kind == DatabaseCall::Open && timer.nsecsElapsed() < 3000000) {
        }
        return std::make_shared<const DatabaseAnswer>();
    });
    const RegisteredDriver driver = recordingDriver(busy.name(), observer);
    {
        QSqlDatabase database = driver.addHandle(str("busy"));
        QVERIFY(database.open());
        QVERIFY(observer->nanoseconds >= 3000000);
    }
    QSqlDatabase::removeDatabase(str("busy"));
}

void tst_RecordingDriver::batch_isARunForEachRow()
{
    Fixture f;
    QSqlQuery query(f.database);
    query.prepare(str("INSERT INTO t VALUES (?)"));
    query.addBindValue(QVariantList {1, 2});
    f.take();
    QVERIFY(query.execBatch());
    QCOMPARE(f.take(), seen(str("run 0=1"), str("done, 0")) + seen(str("run 0=2"), str("done, 0")));
}

void tst_RecordingDriver::clone_isSeenByTheSameObserver()
{
    Fixture f;
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

void tst_RecordingDriver::twoObservers_seeTheirOwnHandles()
{
    Fixture f;
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

void tst_RecordingDriver::observer_livesAsLongAsItsHandles()
{
    QStringList notes;
    const Inner inner(&notes);
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

void tst_RecordingDriver::handle_thatGoesOpenIsSeenClosing()
{
    Fixture f;
    f.database = QSqlDatabase();
    QSqlDatabase::removeDatabase(str("recorded"));
    QCOMPARE(f.take(), seen(str("close"), str("done, -1")));
}

void tst_RecordingDriver::query_mayOutliveItsHandle()
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

void tst_RecordingDriver::thread_isThatOfTheCall()
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
    const Inner inner(&notes);
    const auto observer = std::make_shared<Threads>();
    const RegisteredDriver driver = recordingDriver(inner.driver.name(), observer);
    const std::unique_ptr<QThread> thread(
        QThread::create([&driver] { useOnce(driver, str("elsewhere")); }));
    thread->start();
    QVERIFY(thread->wait(10000));
    QCOMPARE(observer->threads, QVector<QThread *>(6, thread.get()));
}

void tst_RecordingDriver::recording_canItselfBeRecorded()
{
    Fixture f;
    QStringList outer;
    useOnce(recordingDriver(f.driver.name(), std::make_shared<CallNotes>(&outer)), str("outer"));
    QCOMPARE(outer.size(), 6);
    QCOMPARE(f.take().filter(str("before ")), outer.filter(str("before ")));
}

void tst_RecordingDriver::features_leaveOutWhatIsNotHandedOn()
{
    QStringList notes;
    const RegisteredDriver driver = recordingDriver(str("QSQLITE"),
                                                    std::make_shared<CallNotes>(&notes));
    {
        const QSqlDriver *const recorded = driver.addHandle(str("recorded")).driver();
        const QSqlDriver *const plain = QSqlDatabase::addDatabase(str("QSQLITE"), str("plain"))
                                            .driver();
        QVERIFY(plain->hasFeature(QSqlDriver::EventNotifications));
        QVERIFY(!recorded->hasFeature(QSqlDriver::EventNotifications));
        QVERIFY(!recorded->hasFeature(QSqlDriver::CancelQuery));
    }
    QSqlDatabase::removeDatabase(str("recorded"));
    QSqlDatabase::removeDatabase(str("plain"));
}

void tst_RecordingDriver::unknownInnerDriver_cannotBeOpened()
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

void tst_RecordingDriver::handleTo_hasTheParametersOfTheOther()
{
    Fixture f;
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

void tst_RecordingDriver::caller_learnsTheSameAsWithout()
{
    QStringList notes;
    const RegisteredDriver driver = recordingDriver(str("QSQLITE"),
                                                    std::make_shared<CallNotes>(&notes));
    {
        QSqlDatabase plain = QSqlDatabase::addDatabase(str("QSQLITE"), str("plain"));
        plain.setDatabaseName(str(":memory:"));
        const QStringList without = experienceOf(plain, QString());
        const QStringList with = experienceOf(driver.addHandleTo(plain, str("recorded")),
                                              QString());
        for (int i = 0; i < qMax(with.size(), without.size()); ++i)
            QCOMPARE(with.value(i), without.value(i));
        QVERIFY(without.join(QLatin1Char('\n')).contains(str("UNIQUE")));
    }
    QSqlDatabase::removeDatabase(str("plain"));
    QSqlDatabase::removeDatabase(str("recorded"));
}

QTEST_GUILESS_MAIN(tst_RecordingDriver)
#include "tst_recordingdriver.moc"
