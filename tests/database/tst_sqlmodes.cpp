// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Under which modes of the server a pass runs: what docs/administration.md says of sql_mode.
#include "support/databaseworker.h"

#include <QtTest>

namespace {

const QDate thisMonth()
{
    const QDate today = QDate::currentDate();
    return QDate(today.year(), today.month(), 1);
}

/// Somebody new, and somebody known whose attendance has months to be derived anew.
QStringList twoPeople()
{
    RecordBuilder known;
    known.pid(1002, 1).name(QStringLiteral("Žofia"), QStringLiteral("Šťastná"));
    known.employed(QDate(2012, 2, 1)).branch(200).calendar(1, thisMonth().addMonths(-1));
    known.balance(7).supervisor(1001);
    RecordBuilder fresh;
    fresh.pid(4711, 1).branch(100).calendar(1, thisMonth()).balance(3).supervisor(1002);
    return {known.line(), fresh.line()};
}

} // namespace

class tst_SqlModes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pass_data();
    void pass();
    void surnameOfANewPerson_data();
    void surnameOfANewPerson();
};

void tst_SqlModes::pass_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QStringList>("troubles");

    const QStringList none;
    QTest::newRow("no mode") << QString() << none;
    QTest::newRow("the server's default")
        << QStringLiteral("STRICT_TRANS_TABLES,ERROR_FOR_DIVISION_BY_ZERO,NO_AUTO_CREATE_USER,"
                          "NO_ENGINE_SUBSTITUTION")
        << none;
    QTest::newRow("TRADITIONAL") << QStringLiteral("TRADITIONAL") << none;
    QTest::newRow("ANSI") << QStringLiteral("ANSI") << none;
    QTest::newRow("NO_BACKSLASH_ESCAPES") << QStringLiteral("NO_BACKSLASH_ESCAPES") << none;

    // The months of a person are grouped by a column that the selection does not name.
    const QString refused = QStringLiteral(
        "critical GroupsPlanRepo::updateGroupsMonth - ERROR[1055]: "
        "'attendance.p.uid' isn't in GROUP BY QMYSQL: Unable to execute query");
    QTest::newRow("ONLY_FULL_GROUP_BY")
        << QStringLiteral("ONLY_FULL_GROUP_BY") << QStringList {refused, refused};
}

/// A new person and a known one, over two passes, so that every kind of statement of a pass runs.
void tst_SqlModes::pass()
{
    QFETCH(QString, mode);
    QFETCH(QStringList, troubles);
    TestDatabase database(TestDatabase::Sample);
    QVERIFY2(database.error().isEmpty(), qPrintable(database.error()));
    database.execute(QStringLiteral("SET GLOBAL sql_mode = '%1'").arg(mode));

    DatabaseWorker f(database, DatabaseWorker::Recorded);
    f.worker.setSyncInterval(1);
    f.writeExport(twoPeople());
    f.peer.db.close();
    f.log.clear();
    f.tick();
    f.tick();

    QVERIFY(f.log.contains(QStringLiteral("INSERT INTO groups_month")));
    QVERIFY(f.log.contains(QStringLiteral("INSERT INTO funds_move")));
    QVERIFY(f.log.contains(QStringLiteral("INSERT INTO admins_people (aid, uid, request)")));
    QVERIFY(f.log.contains(QStringLiteral("INSERT INTO `term_sync`")));
    QVERIFY(f.log.contains(QStringLiteral("INSERT INTO people_pam")));
    QCOMPARE(complaints(f.log.takeMessages()), troubles);
}

void tst_SqlModes::surnameOfANewPerson_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QString>("surname");
    QTest::addColumn<QStringList>("rows");
    const QString backslash = QStringLiteral("AC\\DC\\");
    QTest::newRow("a backslash swallows the apostrophe behind it")
        << QString() << backslash << QStringList();
    QTest::newRow("a backslash is a letter like others")
        << QStringLiteral("NO_BACKSLASH_ESCAPES") << backslash << QStringList {backslash};
    QTest::newRow("the empty texts beside it are refused")
        << QStringLiteral("EMPTY_STRING_IS_NULL") << QStringLiteral("Malá") << QStringList();
}

void tst_SqlModes::surnameOfANewPerson()
{
    QFETCH(QString, mode);
    QFETCH(QString, surname);
    QFETCH(QStringList, rows);
    TestDatabase database;
    QVERIFY2(database.error().isEmpty(), qPrintable(database.error()));
    database.execute(QStringLiteral("INSERT INTO vars VALUES ('exportPam.1.active', '1')"));
    database.execute(QStringLiteral("SET GLOBAL sql_mode = '%1'").arg(mode));

    DatabaseWorker f(database);
    f.peer.db.close();
    f.writeExport({RecordBuilder().pid(4711, 1).name(QString(), surname).line()});
    f.tick();
    QCOMPARE(database.rows(QStringLiteral("SELECT surname FROM people")), rows);
    QCOMPARE(f.log.takeMatching({QStringLiteral("critical ")}).count(), rows.isEmpty() ? 1 : 0);
}

QTEST_GUILESS_MAIN(tst_SqlModes)
#include "tst_sqlmodes.moc"
