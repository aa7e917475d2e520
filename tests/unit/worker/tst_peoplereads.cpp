// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the worker reads of people: statements, log lines, and how rows become records.
#include "support/localseconds.h"
#include "support/loglevels.h"
#include "support/workerfixture.h"

#include <QtTest>

namespace {

const char loadPeople[]
    = "sql exec SELECT p.pid, p.pamId, p.title, p.name, p.surname, p.title2, p.phone, p.begin, "
      "p.end, p.rsBegin, p.rsEnd, p.rsText, p.calendarID, b.number FROM people p LEFT JOIN branches b "
      "USING(bid) WHERE p.status;";

/// A row of dbLoadPeople() that has nothing but these values.
void answerPeople(ScriptedDatabase &script, const QVector<QMap<QString, QVariant>> &people)
{
    const QStringList columns {
        QStringLiteral("pid"),        QStringLiteral("pamId"),   QStringLiteral("title"),
        QStringLiteral("name"),       QStringLiteral("surname"), QStringLiteral("title2"),
        QStringLiteral("phone"),      QStringLiteral("begin"),   QStringLiteral("end"),
        QStringLiteral("rsBegin"),    QStringLiteral("rsEnd"),   QStringLiteral("rsText"),
        QStringLiteral("calendarID"), QStringLiteral("number")};
    QVector<QVariantList> rows;
    for (const QMap<QString, QVariant> &person : people) {
        QVariantList row;
        for (const QString &column : columns)
            row.append(person.value(column));
        rows.append(row);
    }
    script.on(QStringLiteral("FROM people p")).withRows(columns, rows);
}

QString columnPamId()
{
    return QStringLiteral("pamId");
}

} // namespace

class tst_PeopleReads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dbLoadPeople_levels_data() { addLevels(); }
    void dbLoadPeople_levels();
    void dbLoadPeople_everyColumn();
    void dbLoadPeople_pamIds_data();
    void dbLoadPeople_pamIds();
    void dbLoadPeople_storedPidTakesNoPart();
    void dbLoadPeople_laterRowOfTheSameKeyReplaces();
    void dbLoadPeople_severalEmptyPamIdsLeaveTheLast();
    void dbLoadPeople_noBranchNumberIsZero();
    void dbLoadPeople_beginOfNothingIsTheFirstOf2000_data();
    void dbLoadPeople_beginOfNothingIsTheFirstOf2000();
    void dbLoadPeople_datesThatAreAbsent_data();
    void dbLoadPeople_datesThatAreAbsent();
    void dbLoadPeople_lastSecondIsTheDayItself();
    void dbLoadPeople_noRowsEmptiesPeople();
    void dbLoadPeople_failureKeepsPeople();

    void dbCheckPerson_levels_data() { addLevels(); }
    void dbCheckPerson_levels();
    void dbCheckPerson_counts_data();
    void dbCheckPerson_counts();
    void dbCheckPerson_noRow();
    void dbCheckPerson_failure();

    void dbGetUidByPid_levels_data() { addLevels(); }
    void dbGetUidByPid_levels();
    void dbGetUidByPid_noRow();
    void dbGetUidByPid_failure();
};

// Loading the people

void tst_PeopleReads::dbLoadPeople_levels()
{
    QFETCH(int, level);
    WorkerFixture f;
    f.worker.setLogLevel(static_cast<quint8>(level));
    QVERIFY(f.worker.dbLoadPeople());
    QCOMPARE(f.log.take(), atLevel(level, {"2 debug THRWorker::dbLoadPeople()", loadPeople}));
}

void tst_PeopleReads::dbLoadPeople_everyColumn()
{
    WorkerFixture f;
    answerPeople(f.script,
                 {{{QStringLiteral("pid"), 12341},
                   {QStringLiteral("pamId"), QStringLiteral("1234.1")},
                   {QStringLiteral("title"), QStringLiteral("Ing.")},
                   {QStringLiteral("name"), QStringLiteral("Ján")},
                   {QStringLiteral("surname"), QStringLiteral("Novák")},
                   {QStringLiteral("title2"), QStringLiteral("PhD.")},
                   {QStringLiteral("phone"), QStringLiteral("+421 900 111 222")},
                   {QStringLiteral("begin"), localSeconds(QDate(2015, 3, 1))},
                   {QStringLiteral("end"), localSeconds(QDate(2024, 3, 31), 23, 59, 59)},
                   {QStringLiteral("rsBegin"), localSeconds(QDate(2024, 4, 1))},
                   {QStringLiteral("rsEnd"), localSeconds(QDate(2024, 10, 27))},
                   {QStringLiteral("rsText"), QStringLiteral("materská")},
                   {QStringLiteral("calendarID"), 3},
                   {QStringLiteral("number"), 7}}});
    QVERIFY(f.worker.dbLoadPeople());

    QCOMPARE(f.peer.dbPeople.keys(), QList<uint> {12341});
    const EmployeeRecord person = f.peer.dbPeople.value(12341);
    QCOMPARE(person.osobniCislo, 1234u);
    QCOMPARE(person.poradoveCisloPP, 1u);
    QCOMPARE(person.titul, QStringLiteral("Ing."));
    QCOMPARE(person.jmeno, QStringLiteral("Ján"));
    QCOMPARE(person.prijmeni, QStringLiteral("Novák"));
    QCOMPARE(person.titulZa, QStringLiteral("PhD."));
    QCOMPARE(person.telefon, QStringLiteral("+421 900 111 222"));
    QCOMPARE(person.datumNastupu, QDate(2015, 3, 1));
    QCOMPARE(person.datumVystupu, QDate(2024, 3, 31));
    QCOMPARE(person.rsBegin, QDate(2024, 4, 1));
    QCOMPARE(person.rsEnd, QDate(2024, 10, 27));
    QCOMPARE(person.rsText, QStringLiteral("materská"));
    QCOMPARE(person.calendarID, 3u);
    QCOMPARE(person.stredisko, 7u);
    // What the row does not hold.
    QVERIFY(person.strediskoPopis.isEmpty());
    QVERIFY(person.kalendarPlatnostOd.isNull());
    QCOMPARE(person.typPracovnihoPomeru, ushort(0));
    QCOMPARE(person.stavPracovnihoPomeru, ushort(0));
    QCOMPARE(person.evidencniStav, ushort(0));
    QCOMPARE(person.dovolenaZustatek, 0.0);
    QCOMPARE(person.nadOsCis, 0u);
}

void tst_PeopleReads::dbLoadPeople_pamIds_data()
{
    QTest::addColumn<QVariant>("pamId");
    QTest::addColumn<uint>("osobniCislo");
    QTest::addColumn<uint>("poradoveCisloPP");
    QTest::addColumn<uint>("key");
    QTest::newRow("as written here") << QVariant(QStringLiteral("1234.1")) << 1234u << 1u << 12341u;
    QTest::newRow("no point") << QVariant(QStringLiteral("1234")) << 1234u << 0u << 12340u;
    QTest::newRow("two points") << QVariant(QStringLiteral("1.2.3")) << 1u << 3u << 13u;
    QTest::newRow("nothing after the point")
        << QVariant(QStringLiteral("12.")) << 12u << 0u << 120u;
    QTest::newRow("nothing before the point") << QVariant(QStringLiteral(".5")) << 0u << 5u << 5u;
    QTest::newRow("empty") << QVariant(QString()) << 0u << 0u << 0u;
    QTest::newRow("NULL") << QVariant() << 0u << 0u << 0u;
    QTest::newRow("no numbers") << QVariant(QStringLiteral("a.b")) << 0u << 0u << 0u;
    QTest::newRow("beyond 32 bits") << QVariant(QStringLiteral("4294967296.2")) << 0u << 2u << 2u;
    QTest::newRow("key beyond 32 bits")
        << QVariant(QStringLiteral("4294967295.1")) << 4294967295u << 1u << 0u;
}

void tst_PeopleReads::dbLoadPeople_pamIds()
{
    QFETCH(QVariant, pamId);
    QFETCH(uint, osobniCislo);
    QFETCH(uint, poradoveCisloPP);
    QFETCH(uint, key);
    WorkerFixture f;
    answerPeople(f.script, {{{columnPamId(), pamId}}});
    QVERIFY(f.worker.dbLoadPeople());
    QCOMPARE(f.peer.dbPeople.keys(), QList<uint> {key});
    QCOMPARE(f.peer.dbPeople.value(key).osobniCislo, osobniCislo);
    QCOMPARE(f.peer.dbPeople.value(key).poradoveCisloPP, poradoveCisloPP);
}

void tst_PeopleReads::dbLoadPeople_storedPidTakesNoPart()
{
    WorkerFixture f;
    answerPeople(f.script,
                 {{{QStringLiteral("pid"), 777}, {columnPamId(), QStringLiteral("1234.1")}}});
    QVERIFY(f.worker.dbLoadPeople());
    QCOMPARE(f.peer.dbPeople.keys(), QList<uint> {12341});
}

void tst_PeopleReads::dbLoadPeople_laterRowOfTheSameKeyReplaces()
{
    WorkerFixture f;
    answerPeople(
        f.script,
        {{{columnPamId(), QStringLiteral("12.3")}}, {{columnPamId(), QStringLiteral("1.23")}}});
    QVERIFY(f.worker.dbLoadPeople());
    QCOMPARE(f.peer.dbPeople.keys(), QList<uint> {123});
    QCOMPARE(f.peer.dbPeople.value(123).osobniCislo, 1u);
    QCOMPARE(f.peer.dbPeople.value(123).poradoveCisloPP, 23u);
}

void tst_PeopleReads::dbLoadPeople_severalEmptyPamIdsLeaveTheLast()
{
    WorkerFixture f;
    const QString name = QStringLiteral("name");
    answerPeople(f.script,
                 {{{columnPamId(), QString()}, {name, QStringLiteral("first")}},
                  {{columnPamId(), QVariant()}, {name, QStringLiteral("second")}},
                  {{columnPamId(), QString()}, {name, QStringLiteral("last")}}});
    QVERIFY(f.worker.dbLoadPeople());
    QCOMPARE(f.peer.dbPeople.keys(), QList<uint> {0});
    QCOMPARE(f.peer.dbPeople.value(0).jmeno, QStringLiteral("last"));
}

void tst_PeopleReads::dbLoadPeople_noBranchNumberIsZero()
{
    WorkerFixture f;
    answerPeople(
        f.script,
        {{{columnPamId(), QStringLiteral("1.1")}, {QStringLiteral("number"), QVariant()}}});
    QVERIFY(f.worker.dbLoadPeople());
    QCOMPARE(f.peer.dbPeople.value(11).stredisko, 0u);
}

void tst_PeopleReads::dbLoadPeople_beginOfNothingIsTheFirstOf2000_data()
{
    QTest::addColumn<QVariant>("begin");
    QTest::newRow("0") << QVariant(0);
    QTest::newRow("NULL") << QVariant();
}

void tst_PeopleReads::dbLoadPeople_beginOfNothingIsTheFirstOf2000()
{
    QFETCH(QVariant, begin);
    WorkerFixture f;
    answerPeople(f.script,
                 {{{columnPamId(), QStringLiteral("1.1")}, {QStringLiteral("begin"), begin}}});
    QVERIFY(f.worker.dbLoadPeople());
    QCOMPARE(f.peer.dbPeople.value(11).datumNastupu, QDate(2000, 1, 1));
}

void tst_PeopleReads::dbLoadPeople_datesThatAreAbsent_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::newRow("0") << QVariant(0);
    QTest::newRow("NULL") << QVariant();
}

void tst_PeopleReads::dbLoadPeople_datesThatAreAbsent()
{
    QFETCH(QVariant, stored);
    WorkerFixture f;
    answerPeople(f.script,
                 {{{columnPamId(), QStringLiteral("1.1")},
                   {QStringLiteral("end"), stored},
                   {QStringLiteral("rsBegin"), stored},
                   {QStringLiteral("rsEnd"), stored}}});
    QVERIFY(f.worker.dbLoadPeople());
    QVERIFY(f.peer.dbPeople.value(11).datumVystupu.isNull());
    QVERIFY(f.peer.dbPeople.value(11).rsBegin.isNull());
    QVERIFY(f.peer.dbPeople.value(11).rsEnd.isNull());
}

void tst_PeopleReads::dbLoadPeople_lastSecondIsTheDayItself()
{
    WorkerFixture f;
    const QDate clocksForward(2024, 3, 31);
    answerPeople(f.script,
                 {{{columnPamId(), QStringLiteral("1.1")},
                   {QStringLiteral("end"), localSeconds(clocksForward, 23, 59, 59)}}});
    QVERIFY(f.worker.dbLoadPeople());
    QCOMPARE(f.peer.dbPeople.value(11).datumVystupu, clocksForward);
}

void tst_PeopleReads::dbLoadPeople_noRowsEmptiesPeople()
{
    WorkerFixture f;
    f.peer.dbPeople.insert(12341, record());
    answerPeople(f.script, {});
    QVERIFY(f.worker.dbLoadPeople());
    QVERIFY(f.peer.dbPeople.isEmpty());
}

void tst_PeopleReads::dbLoadPeople_failureKeepsPeople()
{
    WorkerFixture f;
    f.peer.dbPeople.insert(12341, record());
    f.fail("FROM people p", "1146", "no such table");
    QVERIFY(!f.worker.dbLoadPeople());
    QCOMPARE(f.log.take(),
             lines({loadPeople,
                    "critical THRWorker::dbLoadPeople() - SQL ERROR [1146]: "
                    "no such table (scripted)"}));
    QCOMPARE(f.peer.dbPeople.keys(), QList<uint> {12341});
}

// Single questions

void tst_PeopleReads::dbCheckPerson_levels()
{
    QFETCH(int, level);
    WorkerFixture f;
    f.worker.setLogLevel(static_cast<quint8>(level));
    f.worker.dbCheckPerson(record().pid(1234, 1));
    QCOMPARE(f.log.take(),
             atLevel(level,
                     {"2 debug THRWorker::dbCheckPerson(1234.1)",
                      "sql exec SELECT COUNT(*) FROM people WHERE pid = 12341;"}));
}

void tst_PeopleReads::dbCheckPerson_counts_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("exists");
    QTest::newRow("0") << 0 << false;
    QTest::newRow("1") << 1 << true;
    QTest::newRow("2") << 2 << true;
}

void tst_PeopleReads::dbCheckPerson_counts()
{
    QFETCH(int, count);
    QFETCH(bool, exists);
    WorkerFixture f;
    f.answer("SELECT COUNT(*) FROM people", count);
    QCOMPARE(f.worker.dbCheckPerson(record()), exists);
}

void tst_PeopleReads::dbCheckPerson_noRow()
{
    WorkerFixture f;
    QCOMPARE(f.worker.dbCheckPerson(record()), false);
    QCOMPARE(f.log.takeMessages(), QStringList());
}

void tst_PeopleReads::dbCheckPerson_failure()
{
    WorkerFixture f;
    f.fail("SELECT COUNT(*) FROM people", "2006", "gone away");
    QCOMPARE(f.worker.dbCheckPerson(record()), false);
    QCOMPARE(f.log.takeMessages(),
             lines({"critical THRWorker::dbCheckPerson() - SQL ERROR [2006]: "
                    "gone away (scripted)"}));
}

void tst_PeopleReads::dbGetUidByPid_levels()
{
    QFETCH(int, level);
    WorkerFixture f;
    f.answer("SELECT uid FROM people", 4294967295u);
    f.worker.setLogLevel(static_cast<quint8>(level));
    QCOMPARE(f.worker.dbGetUidByPid(4294967294u), 4294967295u);
    QCOMPARE(f.log.take(),
             atLevel(level,
                     {"2 debug THRWorker::dbGetUidByPid(4294967294)",
                      "sql exec SELECT uid FROM people WHERE pid = 4294967294 LIMIT 1;"}));
}

void tst_PeopleReads::dbGetUidByPid_noRow()
{
    WorkerFixture f;
    QCOMPARE(f.worker.dbGetUidByPid(12341), 0u);
    QCOMPARE(f.log.takeMessages(), QStringList());
}

void tst_PeopleReads::dbGetUidByPid_failure()
{
    WorkerFixture f;
    f.fail("SELECT uid FROM people", "2006", "gone away");
    QCOMPARE(f.worker.dbGetUidByPid(12341), 0u);
    QCOMPARE(f.log.takeMessages(),
             lines({"critical THRWorker::dbGetUidByPid() - SQL ERROR [2006]: "
                    "gone away (scripted)"}));
}

QTEST_GUILESS_MAIN(tst_PeopleReads)
#include "tst_peoplereads.moc"
