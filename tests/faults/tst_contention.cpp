// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A pass beside another session that holds rows: lock timeouts and deadlocks.
#include "support/faults/faultround.h"
#include "support/patience.h"

#include <QElapsedTimer>
#include <QSemaphore>
#include <QSqlError>
#include <QSqlQuery>
#include <QThread>
#include <QtTest>

#include <memory>
#include <thread>

namespace {

/// A transaction of somebody else's, on a thread of its own. It holds what its first statements
/// lock, from construction until it goes.
class OtherSession
{
public:
    OtherSession(const QSqlDatabase &handle, const QStringList &statements)
    {
        thread = std::thread([this, handle, statements] {
            const QString name = QStringLiteral("other session");
            {
                QSqlDatabase session = QSqlDatabase::cloneDatabase(handle, name);
                session.setUserName(QStringLiteral("root"));
                if (!session.open() || !session.transaction())
                    qFatal("no session: %s", qPrintable(session.lastError().text()));
                for (const QString &statement : statements)
                    run(session, statement);
                ready.release();
                work(session);
                session.rollback();
            }
            QSqlDatabase::removeDatabase(name);
        });
        ready.acquire();
    }
    ~OtherSession()
    {
        mayEnd.release();
        thread.join();
    }
    OtherSession(const OtherSession &) = delete;
    OtherSession &operator=(const OtherSession &) = delete;

    /// Runs the statement as soon as some session waits for a lock, itself in the background.
    void runWhenSomebodyWaits(const QString &statement) { next(statement, true); }
    /// Runs the statement in the background, and comes back as soon as it waits for a lock.
    void runUntilItWaits(const QString &statement, TestDatabase &database)
    {
        next(statement, false);
        QElapsedTimer patience;
        patience.start();
        while (database.value(QString::fromLatin1(waiting)) == QLatin1String("0")) {
            QVERIFY(patience.elapsed() < longestWait);
            QThread::msleep(1);
        }
    }

private:
    static constexpr char waiting[] = "SELECT variable_value FROM information_schema.global_status "
                                      "WHERE variable_name = 'INNODB_ROW_LOCK_CURRENT_WAITS'";

    static void run(const QSqlDatabase &session, const QString &statement)
    {
        QSqlQuery query(session);
        if (!query.exec(statement))
            qFatal("%s\n%s", qPrintable(query.lastError().text()), qPrintable(statement));
    }

    void next(const QString &statement, bool afterOther)
    {
        nextStatement = statement;
        waitsForOther = afterOther;
        mayEnd.release();
    }

    void work(const QSqlDatabase &session)
    {
        mayEnd.acquire();
        if (nextStatement.isEmpty())
            return;
        bool somebodyWaits = !waitsForOther;
        QElapsedTimer patience;
        patience.start();
        while (!somebodyWaits) {
            if (patience.elapsed() > longestWait)
                qFatal("nobody waits for a lock: %s", qPrintable(nextStatement));
            QSqlQuery query(session);
            somebodyWaits = query.exec(QString::fromLatin1(waiting)) && query.next()
                && query.value(0).toInt() > 0;
            QThread::msleep(1);
        }
        run(session, nextStatement);
        mayEnd.acquire();
    }

    std::thread thread;
    QSemaphore ready;
    QSemaphore mayEnd;
    QString nextStatement;
    bool waitsForOther = false;
};

constexpr char OtherSession::waiting[];

/// The server gives up the session of a deadlock that has written less.
QString statementThatOutweighsThePlugin()
{
    return QStringLiteral("INSERT INTO sections (name) WITH RECURSIVE n (i) AS "
                          "(SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 500) "
                          "SELECT 'work' FROM n");
}

const Refusal timeout {
    QStringLiteral("1205"),
    QStringLiteral("Lock wait timeout exceeded; try restarting transaction QMYSQL.*")};
const Refusal deadlock {QStringLiteral("1213"),
                        QStringLiteral("Deadlock found when trying to get lock; "
                                       "try restarting transaction QMYSQL.*")};

} // namespace

class tst_Contention : public FaultFixture
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void lockedRow_failsTheCallThatNeedsIt_data();
    void lockedRow_failsTheCallThatNeedsIt();
    void deadlock_failsOneStatement();
    void deadlock_withinTheTransactionLeavesTheOldSupervisor();

private:
    void comparePassBeside(FaultRound &round, const QString &call, const QStringList &statements,
                           const QString &whenItWaits, const Refusal &refusal);
};

void tst_Contention::cleanup()
{
    database->execute(QStringLiteral("SET GLOBAL innodb_lock_wait_timeout = 50"));
    database->execute(QStringLiteral("SET GLOBAL lock_wait_timeout = 86400"));
}

/// A pass in which one call fails, during which another session holds what these statements lock.
/// That one runs one more when the call waits, unless it is empty.
void tst_Contention::comparePassBeside(FaultRound &round, const QString &call,
                                       const QStringList &statements, const QString &whenItWaits,
                                       const Refusal &refusal)
{
    const QSqlDatabase handle = database->handle();
    std::unique_ptr<OtherSession> other;
    const int failing = numberOf(call);
    auto hook = beforeEachCall([&](int number) {
        other.reset();
        if (number == failing) {
            other = std::make_unique<OtherSession>(handle, statements);
            if (!whenItWaits.isEmpty())
                other->runWhenSomebodyWaits(whenItWaits);
        }
        return QSqlError();
    });
    round.comparePass(*undisturbed, only({call}), refusal, [&] { hook.reset(); });
}

void tst_Contention::lockedRow_failsTheCallThatNeedsIt_data()
{
    QTest::addColumn<QString>("call");
    QTest::addColumn<QString>("lock");

    const auto add = [](const char *call, const char *lock) {
        QTest::addRow("%s: %s", call, lock)
            << QString::fromLatin1(call) << QString::fromLatin1(lock);
    };
    add("A.listed", "SELECT * FROM vars WHERE name = 'exportPam.1.selPeople' FOR UPDATE");
    add("B.update", "SELECT * FROM people WHERE uid = {B} FOR UPDATE");
    add("B.correction",
        "INSERT INTO funds_move (uid, fid, day, type, month, value) "
        "VALUES ({B}, 7, UNIX_TIMESTAMP('2026-03-17'), 3, 202603, 9)");
    add("B.reset", "SELECT * FROM admins_people WHERE aid = 5 AND uid = {B} FOR UPDATE");
    // The place where the row is to come.
    add("B.set", "SELECT * FROM admins_people WHERE aid = 6 AND uid = {B} FOR UPDATE");
    add("B.planReopened", "SELECT * FROM atten WHERE uid = {B} FOR UPDATE");
    add("2.join", "INSERT INTO brape (bid, uid, since) VALUES (2, {B}, 0)");
    // A table as a whole, as a backup or a change of its columns holds it.
    add("people", "LOCK TABLES people WRITE");
    add("B.correction", "LOCK TABLES funds_move WRITE");
}

/// The server waits for a second, and gives up the one statement.
void tst_Contention::lockedRow_failsTheCallThatNeedsIt()
{
    QFETCH(QString, call);
    QFETCH(QString, lock);
    database->execute(QStringLiteral("SET GLOBAL innodb_lock_wait_timeout = 1"));
    database->execute(QStringLiteral("SET GLOBAL lock_wait_timeout = 1"));
    FaultRound round(*database);
    lock.replace(QLatin1String("{B}"), round.company.uid(QStringLiteral("B")));
    comparePassBeside(round, call, {lock}, QString(), timeout);
}

/// The statement is undone as a whole, and nothing else.
void tst_Contention::deadlock_failsOneStatement()
{
    FaultRound round(*database);
    const QString row = QStringLiteral("SELECT * FROM atten WHERE uid = %1 AND "
                                       "`date` = UNIX_TIMESTAMP('%2') FOR UPDATE");
    const QString uid = round.company.uid(QStringLiteral("B"));
    comparePassBeside(
        round, QStringLiteral("B.planReopened"),
        {statementThatOutweighsThePlugin(), row.arg(uid, QStringLiteral("2026-03-10"))},
        row.arg(uid, QStringLiteral("2026-01-10")), deadlock);
}

/// The server undoes the whole transaction of a deadlock, so that the commit, which comes because
/// the reset had touched a row, has nothing to commit.
void tst_Contention::deadlock_withinTheTransactionLeavesTheOldSupervisor()
{
    FaultRound round(*database);
    const QString row = QStringLiteral("SELECT * FROM admins_people WHERE aid = %1 AND uid = %2 "
                                       "FOR UPDATE");
    const QString uid = round.company.uid(QStringLiteral("B"));
    const QSqlDatabase handle = database->handle();
    std::unique_ptr<OtherSession> other;
    auto hook = beforeEachCall([&](int call) {
        if (call == numberOf(QStringLiteral("B.begin"))) {
            other = std::make_unique<OtherSession>(
                handle,
                QStringList {statementThatOutweighsThePlugin(), row.arg(QStringLiteral("6"), uid)});
        } else if (call == numberOf(QStringLiteral("B.set"))) {
            other->runUntilItWaits(row.arg(QStringLiteral("5"), uid), *database);
        } else if (call == numberOf(QStringLiteral("B.commit"))) {
            other.reset();
        }
        return QSqlError();
    });
    const ExpectedPass expected(0, only({QStringLiteral("B.set")}), serverTable());
    const QStringList events = round.pass();
    hook.reset();
    const QString difference = eventDifference(events, expected.events(), deadlock);
    QVERIFY2(difference.isEmpty(), qPrintable(difference));
    QVERIFY(events.contains(QStringLiteral("sql commit")));
    QCOMPARE(contentDifference(undisturbed->contentAfter(), round.company.content()),
             lines({"+admins_people 5|B|1", "-admins_people 5|B|0", "-admins_people 6|B|1"}));
    round.recover();
    QCOMPARE(contentDifference(undisturbed->contentInTheEnd(), round.company.content()),
             lines({"+admins_people 5|B|1", "-admins_people 5|B|0", "-admins_people 6|B|1"}));
}

QTEST_GUILESS_MAIN(tst_Contention)
#include "tst_contention.moc"
