// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The built library at work while its server is killed and comes back.
#include "support/faults/faultround.h"
#include "support/patience.h"
#include "support/plugin/pluginenvironment.h"
#include "support/plugin/pluginlibrary.h"
#include "support/recordeddatabase.h"
#include "support/textfile.h"

#include <QSemaphore>
#include <QtTest>

#include <atomic>
#include <memory>

namespace {

/// Lets the plugin tick once each time it is told to, and holds it before one call of the first
/// tick. The plugin is on a thread of its own.
class Ticks
{
public:
    explicit Ticks(int call) :
        heldCall(call),
        hook([this](const QString &text) { return pass(text); })
    { }
    ~Ticks() { letGo(); }

    bool waitUntilHeld() { return held.tryAcquire(1, longestWait); }
    /// The call goes on; true when the tick has ended and the next one is due.
    bool resume()
    {
        go.release();
        return due.tryAcquire(2, longestWait);
    }
    /// One more tick; true when it has ended.
    bool next()
    {
        mayTick.release();
        return due.tryAcquire(1, longestWait);
    }
    /// No tick is held any more.
    void letGo()
    {
        over = true;
        mayTick.release(1000);
        go.release(1000);
    }

private:
    QSqlError pass(const QString &text)
    {
        if (over)
            return QSqlError();
        if (text == QLatin1String("open")) {
            due.release();
            mayTick.acquire();
        }
        if (++calls == heldCall) {
            held.release();
            go.acquire();
        }
        return QSqlError();
    }

    const int heldCall;
    int calls = 0; // of the plugin's thread
    std::atomic_bool over {false};
    QSemaphore mayTick {1};
    QSemaphore due;
    QSemaphore held;
    QSemaphore go;
    RecordedCallHook hook;
};

} // namespace

class tst_DyingServer : public FaultFixture
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void serverKilled_data();
    void serverKilled();

private:
    void start(const ServerCompany &company);

    std::unique_ptr<EventLog> log;
    std::unique_ptr<PluginEnvironment> environment;
    std::unique_ptr<Ticks> ticks;
    PluginLibrary library;
};

void tst_DyingServer::cleanup()
{
    if (ticks)
        ticks->letGo();
    library.unload(); // deletes the object as well, at the end of a tick
    ticks.reset();
    QSqlDatabase::removeDatabase(QStringLiteral("OQS.attendance.TalvenHR"));
    environment.reset();
    if (log)
        log->clear();
    log.reset();
}

void tst_DyingServer::start(const ServerCompany &company)
{
    environment = std::make_unique<PluginEnvironment>();
    const QString path = environment->filePath(QStringLiteral("ron.data"));
    writeLines(path, company.exportLines());
    environment->writeIni({QStringLiteral("enabled=true"), QStringLiteral("timerInterval=1"),
                           QStringLiteral("syncInterval=1"), QStringLiteral("deleteFile=false"),
                           QStringLiteral("importFile=") + path, QStringLiteral("[MES]"),
                           QStringLiteral("5=maternity")});
    library.load();
    library.object();
    log->clear(); // the keys of the settings
    library.start(0, recordedHandle(database->handle()));
}

void tst_DyingServer::serverKilled_data()
{
    QTest::addColumn<QString>("call");
    QTest::newRow("before the people are read") << QStringLiteral("people");
    QTest::newRow("between two records") << QStringLiteral("C.move");
    QTest::newRow("within the supervisor's transaction") << QStringLiteral("B.set");
    QTest::newRow("before the supervisor's commit") << QStringLiteral("B.commit");
    QTest::newRow("before the members are added") << QStringLiteral("1.join");
    QTest::newRow("between the members and their terminals") << QStringLiteral("31.people");
}

void tst_DyingServer::serverKilled()
{
    QFETCH(QString, call);
    const int number = numberOf(call);
    log = std::make_unique<EventLog>();
    ServerCompany company(*database);
    ticks = std::make_unique<Ticks>(number);
    start(company);
    QVERIFY(ticks->waitUntilHeld());
    database->server().kill();
    QVERIFY(ticks->resume());
    const QStringList events = log->take();
    database->restart();
    database->setClock(companyNow().toSecsSinceEpoch());

    // All calls from there on have failed, and the tick has come to its end.
    const Fault fault {number, 1000};
    const ExpectedPass expected(0, fault, serverTable());
    const QStringList told = company.canonical(
        events.filter(QRegularExpression(QStringLiteral("^(sql|warning|critical) "))));
    const QString difference = eventDifference(
        told, expected.events() + QStringList {QStringLiteral("sql open")},
        {QStringLiteral("(2006|2013)"),
         QStringLiteral("((MySQL s|S)erver has gone away|Lost connection) QMYSQL.*")});
    QVERIFY2(difference.isEmpty(), qPrintable(difference));
    QCOMPARE(contentDifference(undisturbed->contentBefore(number), company.content()),
             QStringList());

    company.calculateAttendance();
    database->force();
    QVERIFY(ticks->next());
    company.calculateAttendance();
    QVERIFY(ticks->next());
    QCOMPARE(complaints(log->take()), QStringList());
    QCOMPARE(contentDifference(undisturbed->contentInTheEnd(), company.content()),
             lossesOf(expected));
}

QTEST_GUILESS_MAIN(tst_DyingServer)
#include "tst_dyingserver.moc"
