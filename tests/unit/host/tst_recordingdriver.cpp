// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The driver that shows every call of another one: what the observer sees, and what the caller.
#include "support/database/callmaker.h"
#include "support/database/experience.h"
#include "support/database/recordedmemory.h"

#include <QElapsedTimer>
#include <QSqlDriver>
#include <QtTest>

#include <memory>

namespace {

QString str(const char *text)
{
    return QString::fromUtf8(text);
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
    void features_leaveOutWhatIsNotHandedOn();
    void caller_learnsTheSameAsWithout();
};

void tst_RecordingDriver::call_isSeenBeforeAndAfter()
{
    QFETCH(DatabaseCall::Kind, kind);
    QFETCH(QString, text);
    RecordedMemory f;
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
    RecordedMemory f;
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
    RecordedMemory f;
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
    RecordedMemory f;
    f.observer->refused = str("close");
    f.database.close();
    f.database.close();
    QVERIFY(!f.database.isOpen());
    QCOMPARE(f.take(), seen(str("close"), str("done, -1")));
}

void tst_RecordingDriver::refusedCalls_canBeRepeated()
{
    RecordedMemory f;
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
    RecordedMemory f;
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
    RecordedMemory f;
    QSqlQuery query(f.database);
    query.prepare(str("INSERT INTO t VALUES (?)"));
    query.addBindValue(QVariantList {1, 2});
    f.take();
    QVERIFY(query.execBatch());
    QCOMPARE(f.take(), seen(str("run 0=1"), str("done, 0")) + seen(str("run 0=2"), str("done, 0")));
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
