// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// An export held against a database: what it does not have, and how many people are new.
#include "host/exportcheck/databasecheck.h"
#include "host/exportcheck/exportcheck.h"
#include "support/databasefixture.h"

#include <QBuffer>
#include <QSqlQuery>
#include <QtTest>

namespace {

/// A line for the company of the test: branch 100 has a group with calendar 1, administrator 9 is
/// there.
QByteArray line(const QMap<int, QByteArray> &cells)
{
    QList<QByteArray> all = QByteArray(
                                "4711|1||Jana|Novakova|||2020-01-01 00:00:00.000||100|Sklad|1|"
                                "2024-01-01 00:00:00.000|11|1|0|12.5|9")
                                .split('|');
    for (auto cell = cells.begin(); cell != cells.end(); ++cell)
        all[cell.key() - 1] = cell.value();
    return all.join('|') + '\n';
}

} // namespace

class tst_DatabaseCheck : public DatabaseFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void findings_data();
    void findings();
    void people_data();
    void people();
    void escapes_areThoseOfTheSession();
    void tooLongTexts_areCutOrRefused();
    void failure_namesTheTable();
    void handle_isOnlyRead();

private:
    ExportCheck check(QByteArray text, DatabaseCheck *databaseCheck);
    QSqlDatabase openHandle();
};

void tst_DatabaseCheck::init()
{
    database->clear();
    database->execute(QStringLiteral("INSERT INTO mastergroups (mgid, name) VALUES (1, 'M')"));
    database->execute(
        QStringLiteral("INSERT INTO groups (gid, parent, calendarID) VALUES (11, 1, 1)"));
    database->execute(QStringLiteral("INSERT INTO branches (bid, number, mgid) VALUES (1, 100, 1), "
                                     "(2, 200, 1), (3, 200, 1), (4, 300, NULL), (5, NULL, 1)"));
    database->execute(QStringLiteral("INSERT INTO admins (aid, personalNumber) VALUES (1, 9), "
                                     "(2, 8), (3, 8), (4, NULL)"));
}

QSqlDatabase tst_DatabaseCheck::openHandle()
{
    QSqlDatabase handle = database->handle();
    if (!handle.open())
        qFatal("no connection");
    return handle;
}

ExportCheck tst_DatabaseCheck::check(QByteArray text, DatabaseCheck *databaseCheck)
{
    QSqlDatabase handle = openHandle();
    const Failure failure = databaseCheck->load(handle);
    if (failure)
        qFatal("%s", qPrintable(failure.text));
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    ExportCheckSettings settings;
    settings.today = QDate::currentDate();
    settings.database = databaseCheck;
    return checkExport(&buffer, settings);
}

void tst_DatabaseCheck::findings_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("told");
    const auto row = [](const char *name, const QByteArray &text, const QStringList &told) {
        QTest::newRow(name) << text << told;
    };
    const QString noBranch = QStringLiteral("W-DATA-BRANCH: no branch has the number 77 (lines "
                                            "that name it: %1)");
    row("all there", line({}), {});
    row("branch", line({{10, "77"}}), {noBranch.arg(1)});
    row("branch of two people", line({{10, "77"}}) + line({{1, "12"}, {10, "77"}}),
        {noBranch.arg(2)});
    row("branch of somebody who has ended", line({{10, "77"}, {15, "4"}}), {});
    row("no branch at all", line({{10, "0"}}), {});
    row("two branches, and calendar of neither", line({{10, "200"}, {12, "2"}}),
        {QStringLiteral("W-DATA-BRANCHES: 2 branches have the number 200"),
         QStringLiteral(
             "W-DATA-CALENDAR: the branch 200 has no group with the calendar 2 (lines that "
             "name it: 1)")});
    row("branch without a master group", line({{10, "300"}}),
        {QStringLiteral(
            "W-DATA-CALENDAR: the branch 300 has no group with the calendar 1 (lines that "
            "name it: 1)")});
    row("no calendar", line({{12, "0"}}), {});
    row("supervisor", line({{18, "7"}}),
        {QStringLiteral("W-DATA-SUPERVISOR: no administrator has the personal number 7 (lines "
                        "that name them as supervisor: 1)")});
    row("supervisor of a type without one", line({{14, "51"}, {18, "7"}}), {});
    row("two administrators", line({{18, "8"}}),
        {QStringLiteral("W-DATA-SUPERVISORS: 2 administrators have the personal number 8")});
}

void tst_DatabaseCheck::findings()
{
    QFETCH(QByteArray, text);
    DatabaseCheck databaseCheck;
    const ExportCheck checked = check(text, &databaseCheck);
    QStringList lines;
    for (const ExportFinding &found : checked.findings) {
        if (found.kind->severity() != Finding::Note)
            lines.append(
                QStringLiteral("%1: %2").arg(QLatin1String(found.kind->code), told(found).text));
    }
    lines.sort();
    QTEST(lines, "told");
}

void tst_DatabaseCheck::people_data()
{
    QTest::addColumn<QString>("row");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("counts"); // added, revived, updated, ended, same, left out
    const QString same = QStringLiteral("47111, '4711.1', 'Jana', 'Novakova', "
                                        "UNIX_TIMESTAMP('2020-01-01'), NULL, 1, 1, 1");
    QTest::newRow("new") << QString() << line({}) << "1 0 0 0 0 0";
    QTest::newRow("new, and ended") << QString() << line({{15, "4"}}) << "0 0 0 0 0 1";
    QTest::newRow("the same") << same << line({}) << "0 0 0 0 1 0";
    QTest::newRow("inactive") << QString(same).replace(QStringLiteral("1, 1, 1"),
                                                       QStringLiteral("1, 1, 0"))
                              << line({}) << "0 1 0 0 0 0";
    QTest::newRow("another name") << same << line({{5, "Mala"}}) << "0 0 1 0 0 0";
    QTest::newRow("another branch") << same << line({{10, "200"}}) << "0 0 1 0 0 0";
    QTest::newRow("a last day") << same << line({{9, "2024-12-31 00:00:00.000"}}) << "0 0 1 1 0 0";
}

void tst_DatabaseCheck::people()
{
    QFETCH(QString, row);
    QFETCH(QByteArray, text);
    if (!row.isEmpty())
        database->execute(
            QStringLiteral("INSERT INTO people (pid, pamId, name, surname, begin, end, "
                           "calendarID, bid, status) VALUES (%1)")
                .arg(row));
    DatabaseCheck databaseCheck;
    check(text, &databaseCheck);
    const DatabaseCounts &counts = databaseCheck.counts();
    QStringList numbers;
    for (const int number :
         {counts.added, counts.revived, counts.updated, counts.ended, counts.same, counts.leftOut})
        numbers.append(QString::number(number));
    QTEST(numbers.join(QLatin1Char(' ')), "counts");
}

void tst_DatabaseCheck::escapes_areThoseOfTheSession()
{
    QSqlDatabase handle = openHandle();
    DatabaseCheck before;
    QVERIFY(!before.load(handle));
    QCOMPARE(before.escapes(), EscapeMode::BackslashEscapes);
    handle.exec(QStringLiteral("SET SESSION sql_mode = 'NO_BACKSLASH_ESCAPES'"));
    DatabaseCheck after;
    QVERIFY(!after.load(handle));
    QCOMPARE(after.escapes(), EscapeMode::NoBackslashEscapes);
}

void tst_DatabaseCheck::tooLongTexts_areCutOrRefused()
{
    DatabaseCheck databaseCheck;
    const ExportCheck checked = check(line({{7, QByteArray(65, '5')}})
                                          + line({{1, "12"}, {7, QByteArray(64, '5')}}),
                                      &databaseCheck);
    QCOMPARE(countOf(checked.findings, Finding::Warning), 1);
    const auto found = std::find_if(
        checked.findings.cbegin(), checked.findings.cend(),
        [](const ExportFinding &one) { return one.kind->severity() == Finding::Warning; });
    const Finding finding = told(*found);
    QCOMPARE(finding.code, QStringLiteral("W-DATA-LENGTH"));
    QVERIFY(finding.text.endsWith(QStringLiteral("is longer than the 64 letters of its column")));
    QVERIFY(finding.becomes.startsWith(QStringLiteral("the statement for the person fails")));
}

void tst_DatabaseCheck::failure_namesTheTable()
{
    const HiddenTable hidden(*database, "admins");
    QSqlDatabase handle = openHandle();
    DatabaseCheck databaseCheck;
    const Failure failure = databaseCheck.load(handle);
    QCOMPARE(failure.exitCode, ExitDatabase);
    QVERIFY2(failure.text.contains(QStringLiteral("admins")), qPrintable(failure.text));
}

void tst_DatabaseCheck::handle_isOnlyRead()
{
    QSqlDatabase handle = openHandle();
    handle.exec(QStringLiteral("SET SESSION TRANSACTION READ ONLY"));
    handle.transaction();
    DatabaseCheck databaseCheck;
    QVERIFY(!databaseCheck.load(handle));
}

QTEST_GUILESS_MAIN(tst_DatabaseCheck)
#include "tst_databasecheck.moc"
