// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a server remembers of exports, and with whom it may do otherwise than rehearsed.
#include "host/rehearsal/childwords.h"
#include "host/rehearsal/exportmemory.h"
#include "host/rehearsal/leavedoubts.h"
#include "host/rehearsal/uncertainty.h"

#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const QDateTime lastExport(QDate(2026, 11, 20), QTime(6, 0));

QByteArray line(uint number, const char *phone, const char *leave)
{
    return QByteArray::number(number) + "|1||Eva|Malá||" + phone
        + "|01.01.2020||20|Praha|3||11|1|0|" + leave + "|0\n";
}

SeenPerson seen(uint pid, bool isUnchanged = true)
{
    return {pid, QStringLiteral("%1.1").arg(pid / 10), lastExport, isUnchanged, true, QByteArray()};
}

ChangedPerson changed(uint pid)
{
    ChangedPerson person;
    person.pid = pid;
    person.person = {pid, QStringLiteral("%1.1").arg(pid / 10), QStringLiteral("Eva Malá")};
    return person;
}

Change row()
{
    Change change;
    change.table = &touchedTables().first();
    return change;
}

/// Another one each time, in memory.
QSqlDatabase emptyDatabase()
{
    static int count = 0;
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"),
                                                      QString::number(++count));
    database.setDatabaseName(QStringLiteral(":memory:"));
    database.open();
    return database;
}

qint64 seconds(const QDateTime &moment)
{
    return moment.toSecsSinceEpoch();
}

} // namespace

class tst_ServerMemory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void memory_holdsTheLastLineOfEach();
    void memory_needsItsFiles();
    void doubts_data();
    void doubts();
    void doubts_needAFund();
    void restlessLeave_isNotInDoubt();
    void mark_tellsBothOutcomes();
    void mark_ofAChangedPerson();
    void undone_isMarkedAtItsPlace();
    void lastWords_areWithoutTheProgram();

private:
    QString write(const QString &name, const QByteArray &content, const QDateTime &moment);

    QTemporaryDir folder;
};

QString tst_ServerMemory::write(const QString &name, const QByteArray &content,
                                const QDateTime &moment)
{
    QFile file(folder.filePath(name));
    const bool written = file.open(QIODevice::WriteOnly) && file.write(content) == content.size()
        && file.flush() && file.setFileTime(moment, QFileDevice::FileModificationTime);
    return written ? file.fileName() : QString();
}

void tst_ServerMemory::memory_holdsTheLastLineOfEach()
{
    const QDateTime first = lastExport.addDays(-1);
    ExportMemory memory;
    QVERIFY(!memory.take(write(QStringLiteral("1"), line(1, "a", "1") + line(2, "a", "1"), first)));
    QVERIFY(!memory.take(
        write(QStringLiteral("2"), line(2, "b", "1") + line(3, "a", "1") + "x|y\n", lastExport)));
    QVector<SeenPerson> people;
    QVERIFY(!memory.compare(write(QStringLiteral("3"),
                                  line(4, "a", "1") + line(3, "a", "2") + line(2, "b", "1")
                                      + line(1, "c", "1") + line(1, "c", "1"),
                                  lastExport),
                            &people));
    QCOMPARE(people.size(), 3);
    QCOMPARE(people.at(0).pamId, QStringLiteral("3.1"));
    QVERIFY(!people.at(0).isUnchanged && !people.at(0).hasSameLeave);
    QCOMPARE(people.at(1).pid, 21U);
    QVERIFY(people.at(1).isUnchanged && people.at(1).hasSameLeave);
    QCOMPARE(people.at(1).taken, lastExport);
    QCOMPARE(people.at(1).lines, line(2, "b", "1"));
    QCOMPARE(people.at(2).taken, first);
    QVERIFY(!people.at(2).isUnchanged && people.at(2).hasSameLeave);
    QCOMPARE(people.at(2).lines, line(1, "c", "1") + line(1, "c", "1"));
}

void tst_ServerMemory::memory_needsItsFiles()
{
    ExportMemory memory;
    QCOMPARE(memory.take(folder.filePath(QStringLiteral("none"))).exitCode, ExitUsage);
    QVector<SeenPerson> people;
    QCOMPARE(memory.compare(folder.path(), &people).exitCode, ExitUsage);
}

void tst_ServerMemory::doubts_data()
{
    const qint64 day = seconds(QDateTime(lastExport.date()));
    const qint64 moment = seconds(lastExport);
    QTest::addColumn<QString>("person"); // created, calc, lastCalc
    QTest::addColumn<qint64>("corrected");
    QTest::addColumn<qint64>("openDay");
    QTest::addColumn<QString>("words"); // of the reason; empty: no doubt
    const auto add = [](const char *name, qint64 created, qint64 calc, qint64 lastCalc,
                        qint64 corrected, qint64 openDay, const char *words) {
        QTest::newRow(name) << QStringLiteral("%1, %2, %3").arg(created).arg(calc).arg(lastCalc)
                            << corrected << openDay << QString::fromLatin1(words);
    };
    add("nothing", 0, 0, 0, 0, 0, "");
    add("long ago", moment - 1, moment - 900, day - 1, day - 86400, day - 86400, "");
    add("came since", moment, 0, 0, 0, 0, "came after");
    add("calculated since", 0, moment - 899, 0, 0, 0, "was calculated");
    add("calculated up to that day", 0, 0, day, 0, 0, "was calculated");
    add("corrected on that day", 0, 0, 0, day, 0, "was corrected");
    add("open day", 0, 0, 0, 0, day, "a day was open");
}

void tst_ServerMemory::doubts()
{
    QFETCH(QString, person);
    QFETCH(qint64, corrected);
    QFETCH(qint64, openDay);
    QFETCH(QString, words);
    QSqlDatabase database = emptyDatabase();
    QVERIFY(database.isOpen());
    QSqlQuery query(database);
    for (const QString &statement :
         {QStringLiteral("CREATE TABLE funds (fid, iid, unit)"),
          QStringLiteral("CREATE TABLE funds_move (uid, fid, type, day)"),
          QStringLiteral("CREATE TABLE atten (uid, `date`, `lock`, ok)"),
          QStringLiteral("CREATE TABLE people (uid, pid, created, calc, lastCalc)"),
          QStringLiteral("INSERT INTO funds VALUES (5, 3, 2)"),
          // Another fund, another type, a closed day, a day to be calculated: none of them counts.
          QStringLiteral("INSERT INTO funds_move VALUES (1, 6, 3, 99999999999), "
                         "(1, 5, 2, 99999999999), (1, 5, 3, %1)")
              .arg(corrected),
          QStringLiteral("INSERT INTO atten VALUES (1, 99999999999, 1, -2), "
                         "(1, 99999999999, 0, -1), (1, %1, 0, -2)")
              .arg(openDay),
          QStringLiteral("INSERT INTO people VALUES (1, 11, %1)").arg(person)})
        QVERIFY2(query.exec(statement), qPrintable(statement));
    SeenPerson other = seen(11, false);
    other.hasSameLeave = false; // looked at in any case
    QVector<LeaveDoubt> found;
    const Failure failure = readLeaveDoubts(database, {seen(21), other, seen(11)}, &found);
    QVERIFY2(!failure, qPrintable(failure.text));
    QCOMPARE(found.size(), words.isEmpty() ? 0 : 1);
    if (!words.isEmpty())
        QVERIFY2(found.first().reason.contains(words), qPrintable(found.first().reason));
}

void tst_ServerMemory::doubts_needAFund()
{
    QSqlDatabase database = emptyDatabase();
    QVERIFY(database.isOpen());
    QVector<LeaveDoubt> found;
    QCOMPARE(readLeaveDoubts(database, {seen(11)}, &found).exitCode, ExitDatabase);
    QVERIFY(QSqlQuery(database).exec(QStringLiteral("CREATE TABLE funds (fid, iid, unit)")));
    const Failure failure = readLeaveDoubts(database, {seen(11)}, &found);
    QVERIFY2(!failure, qPrintable(failure.text));
    QVERIFY(found.isEmpty());
}

void tst_ServerMemory::restlessLeave_isNotInDoubt()
{
    Changes changes;
    changes.people = {changed(11), changed(21), changed(31)};
    changes.people[0].notDone = {{NotDone::LeaveNotAtRest, QString(), QString(), QString()}};
    changes.people[1].notDone = {{NotDone::LeaveCorrectedToday, QString(), QString(), QString()}};
    changes.people[2].notDone = {{NotDone::Group, QString(), QString(), QString()}};
    const QVector<LeaveDoubt> open = stillOpen(
        {{seen(11), QString()}, {seen(21), QString()}, {seen(31), QString()}}, changes);
    QCOMPARE(open.size(), 1);
    QCOMPARE(open.first().person.pid, 31U);
}

/// Whom the other outcome does nothing with is not marked.
void tst_ServerMemory::mark_tellsBothOutcomes()
{
    Changes changes;
    changes.people = {changed(11), changed(51)};
    Changes otherwise;
    otherwise.people = {changed(21), changed(31), changed(41)};
    otherwise.people[0].rows = {row()};
    otherwise.people[2].rows = {row()};
    otherwise.names[QStringLiteral("bid")].insert(5, QStringLiteral("Praha"));
    const QString reason = QStringLiteral("why");
    markDoubts({{seen(21), reason}, {seen(31), reason}}, otherwise, &changes);
    QCOMPARE(changes.people.size(), 3);
    const ChangedPerson &marked = changes.people.at(1);
    QCOMPARE(marked.pid, 21);
    QCOMPARE(marked.uncertain, QStringList(reason));
    QVERIFY(marked.rows.isEmpty());
    QCOMPARE(marked.otherwise.size(), 1);
    QCOMPARE(changes.names.value(QStringLiteral("bid")).size(), 1);
}

void tst_ServerMemory::mark_ofAChangedPerson()
{
    Changes changes;
    changes.people = {changed(11), changed(21)};
    changes.people[1].kinds.add(ChangeKind::Leave); // looked at already
    markDoubts({{seen(11, false), QStringLiteral("why")}, {seen(21, false), QString()}}, Changes(),
               &changes);
    QVERIFY(changes.people.at(0).uncertain.value(0).startsWith(QStringLiteral("why, and")));
    QVERIFY(changes.people.at(1).uncertain.isEmpty());
}

void tst_ServerMemory::undone_isMarkedAtItsPlace()
{
    Changes changes;
    changes.people = {changed(11), changed(31)};
    changes.people[1].uncertain = QStringList(QStringLiteral("tries again"));
    markUndone({{11, changed(11).person}, {21, changed(21).person}}, &changes);
    QCOMPARE(changes.people.size(), 3);
    QCOMPARE(changes.people.at(1).person.pamId, QStringLiteral("2.1"));
    for (const ChangedPerson &person : qAsConst(changes.people))
        QVERIFY(person.uncertain.value(0).contains(QStringLiteral("tries again")));
}

void tst_ServerMemory::lastWords_areWithoutTheProgram()
{
    QCOMPARE(lastWords("talvenhr: one\n\ntalvenhr: two\n"), QStringLiteral("two"));
    QCOMPARE(lastWords(""), QStringLiteral("it said nothing"));
}

QTEST_GUILESS_MAIN(tst_ServerMemory)
#include "tst_servermemory.moc"
