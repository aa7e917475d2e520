// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Enrolment in PaM: the list of selected people and the person's row.
#include "support/loglevels.h"
#include "support/workerfixture.h"

#include <QtTest>

namespace {

const char askingBlocks[] = "sql exec SELECT name, value FROM vars WHERE name LIKE "
                            "'exportPam.%.active%'";
const char askingList[] = "sql exec SELECT value FROM vars WHERE name='exportPam.1.selPeople' "
                          "LIMIT 1";
const char preparingList[] = "sql prepare INSERT INTO vars (name, value) VALUES(:name, :value) "
                             "ON DUPLICATE KEY UPDATE value=VALUES(value);";

// Person 12341 is uid 42.
const char askingPerson[] = "sql exec SELECT uid FROM people WHERE pid=12341";
const char enrolling[] = "sql exec INSERT INTO people_pam (uid, id) VALUES(42, 2)"
                         " ON DUPLICATE KEY UPDATE id=VALUES(id)";

QString writingList(const QString &list)
{
    return QStringLiteral("sql run :name=exportPam.1.selPeople, :value=") + list;
}

QVector<QVariantList> oneRow(const QVariant &value)
{
    return {QVariantList {value}};
}

/// One block, exportPam.1.active, whose list is not there yet.
class PamList : public WorkerFixture
{
public:
    PamList() { blocks({QStringLiteral("exportPam.1.active")}); }

    void blocks(const QStringList &names, const QVariant &active = QStringLiteral("1"))
    {
        QVector<QVariantList> rows;
        for (const QString &name : names)
            rows.append({name, active});
        script.on(QStringLiteral("SELECT name, value"))
            .withRows({QStringLiteral("name"), QStringLiteral("value")}, rows);
    }

    void stored(const QVariant &list)
    {
        script.on(QStringLiteral("SELECT value")).withRows({QStringLiteral("value")}, oneRow(list));
    }
};

/// The person is known, and has no row yet.
class PamRow : public WorkerFixture
{
public:
    PamRow()
    {
        script.on(QStringLiteral("SELECT uid"))
            .withRows({QStringLiteral("uid")}, oneRow(QVariant(42)));
        script.on(QStringLiteral("INSERT INTO people_pam")).withAffected(1);
    }
};

} // namespace

class tst_Pam : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addPersonIntoPam_levels_data() { addLevels(); }
    void addPersonIntoPam_levels();
    void addPersonIntoPam_pidZeroAsksNothing_data() { addLevels(); }
    void addPersonIntoPam_pidZeroAsksNothing();
    void addPersonIntoPam_needsExactlyOneBlock_data();
    void addPersonIntoPam_needsExactlyOneBlock();
    void addPersonIntoPam_takesAnInactiveBlock_data();
    void addPersonIntoPam_takesAnInactiveBlock();
    void addPersonIntoPam_replacesActiveInTheBlockId_data();
    void addPersonIntoPam_replacesActiveInTheBlockId();
    void addPersonIntoPam_appends_data();
    void addPersonIntoPam_appends();
    void addPersonIntoPam_selectedPersonIsNotWrittenAgain_data();
    void addPersonIntoPam_selectedPersonIsNotWrittenAgain();
    void addPersonIntoPam_failedSearchForBlocks();
    void addPersonIntoPam_failedReadCountsAsAnEmptyList();
    void addPersonIntoPam_failedWrite_data();
    void addPersonIntoPam_failedWrite();
    void addPersonIntoPam_writesInTestMode();

    void dbAddPersonIntoPam_levels_data() { addLevels(); }
    void dbAddPersonIntoPam_levels();
    void dbAddPersonIntoPam_testMode_data() { addLevels(); }
    void dbAddPersonIntoPam_testMode();
    void dbAddPersonIntoPam_personNotFound_data();
    void dbAddPersonIntoPam_personNotFound();
    void dbAddPersonIntoPam_bypassesTheCacheOfUids();
    void dbAddPersonIntoPam_takesTheFirstUid();
    void dbAddPersonIntoPam_numbers();
    void dbAddPersonIntoPam_result_data();
    void dbAddPersonIntoPam_result();
    void dbAddPersonIntoPam_failure_data() { addLevels(); }
    void dbAddPersonIntoPam_failure();

    void doSyncRecord_missedEnrolmentStaysMissed();
};

// The list

void tst_Pam::addPersonIntoPam_levels()
{
    QFETCH(int, level);
    PamList f;
    f.worker.setLogLevel(static_cast<quint8>(level));
    QVERIFY(f.worker.addPersonIntoPam(4294967295u));
    QCOMPARE(f.log.take(),
             atLevel(level,
                     {"2 debug THRWorker::addPersonIntoPam(4294967295)", askingBlocks, askingList,
                      preparingList, "sql run :name=exportPam.1.selPeople, :value=4294967295"}));
}

void tst_Pam::addPersonIntoPam_pidZeroAsksNothing()
{
    QFETCH(int, level);
    PamList f;
    f.worker.setLogLevel(static_cast<quint8>(level));
    QVERIFY(!f.worker.addPersonIntoPam(0));
    QCOMPARE(f.log.take(), atLevel(level, {"2 debug THRWorker::addPersonIntoPam(0)"}));
}

void tst_Pam::addPersonIntoPam_needsExactlyOneBlock_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::newRow("none") << QStringList();
    QTest::newRow("two") << lines({"exportPam.1.active", "exportPam.2.active"});
    QTest::newRow("three") << lines(
        {"exportPam.1.active", "exportPam.2.active", "exportPam.3.active"});
    QTest::newRow("one, and a name that begins like it")
        << lines({"exportPam.1.active", "exportPam.1.activeSince"});
}

void tst_Pam::addPersonIntoPam_needsExactlyOneBlock()
{
    QFETCH(QStringList, names);
    PamList f;
    f.blocks(names);
    f.stored(QStringLiteral("5"));
    f.worker.setLogLevel(1);
    QVERIFY(!f.worker.addPersonIntoPam(9));
    QCOMPARE(f.log.take(), lines({askingBlocks}));
}

void tst_Pam::addPersonIntoPam_takesAnInactiveBlock_data()
{
    QTest::addColumn<QVariant>("active");
    QTest::newRow("0") << QVariant(QStringLiteral("0"));
    QTest::newRow("number 0") << QVariant(0);
    QTest::newRow("empty") << QVariant(QString());
    QTest::newRow("NULL") << QVariant();
    QTest::newRow("no number") << QVariant(QStringLiteral("no"));
}

void tst_Pam::addPersonIntoPam_takesAnInactiveBlock()
{
    QFETCH(QVariant, active);
    PamList f;
    f.blocks({QStringLiteral("exportPam.1.active")}, active);
    QVERIFY(f.worker.addPersonIntoPam(9));
    QCOMPARE(f.log.take(),
             lines({askingBlocks, askingList, preparingList}) << writingList(QStringLiteral("9")));

    // One who is on the list already stays there.
    f.stored(QStringLiteral("5,9"));
    QVERIFY(f.worker.addPersonIntoPam(9));
    QCOMPARE(f.log.take(), lines({askingBlocks, askingList}));
}

void tst_Pam::addPersonIntoPam_replacesActiveInTheBlockId_data()
{
    QTest::addColumn<QString>("block");
    QTest::addColumn<QString>("list");
    const auto row = [](const char *test, const char *block, const char *list) {
        QTest::newRow(test) << QString::fromUtf8(block) << QString::fromUtf8(list);
    };
    row("number", "exportPam.12.active", "exportPam.12.selPeople");
    row("several words", "exportPam.north.2.active", "exportPam.north.2.selPeople");
    row("no id", "exportPam..active", "exportPam..selPeople");
    row("active as the id", "exportPam.active.active", "exportPam.selPeople.selPeople");
    row("active in the id", "exportPam.inactives.active", "exportPam.inselPeoples.selPeople");
    row("active twice in the id", "exportPam.active-active.active",
        "exportPam.selPeople-selPeople.selPeople");
    row("a name that only begins like it", "exportPam.1.activeSince", "exportPam.1.selPeopleSince");
    row("another case in the id", "exportPam.Active.active", "exportPam.Active.selPeople");
    row("another case at the end", "exportPam.1.ACTIVE", "exportPam.1.ACTIVE");
}

void tst_Pam::addPersonIntoPam_replacesActiveInTheBlockId()
{
    QFETCH(QString, block);
    QFETCH(QString, list);
    PamList f;
    f.blocks({block});
    QVERIFY(f.worker.addPersonIntoPam(9));
    QCOMPARE(
        f.log.take(),
        (QStringList {
            QString::fromLatin1(askingBlocks),
            QStringLiteral("sql exec SELECT value FROM vars WHERE name='%1' LIMIT 1").arg(list),
            QString::fromLatin1(preparingList),
            QStringLiteral("sql run :name=%1, :value=9").arg(list)}));
}

void tst_Pam::addPersonIntoPam_appends_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<uint>("pid");
    QTest::addColumn<QString>("written");
    const auto row = [](const char *test, const QVariant &stored, uint pid, const char *written) {
        QTest::newRow(test) << stored << pid << QString::fromUtf8(written);
    };
    row("empty list", QString(), 9, "9");
    row("NULL", QVariant(), 9, "9");
    row("at the end", QStringLiteral("7,5"), 6, "7,5,6");
    row("a number in the variable", 5, 9, "5,9");
    row("bytes in the variable", QByteArray("5,7"), 9, "5,7,9");
    row("empty part in the middle", QStringLiteral("5,,7"), 9, "5,7,9");
    row("empty part at the beginning", QStringLiteral(",5,7"), 9, "5,7,9");
    row("empty part at the end", QStringLiteral("5,7,"), 9, "5,7,9");
    row("empty parts all over", QStringLiteral(",,5,,,7,"), 9, "5,7,9");
    row("empty parts only", QStringLiteral(",,"), 9, "9");
    row("longer than an entry", QStringLiteral("12"), 123, "12,123");
    row("head of an entry", QStringLiteral("123"), 12, "123,12");
    row("tail of an entry", QStringLiteral("123"), 23, "123,23");
    row("over two entries", QStringLiteral("1,2"), 12, "1,2,12");
    row("blanks are no part of a pid", QStringLiteral("5, 9"), 9, "5, 9,9");
    row("a blank part is not empty", QStringLiteral("5, ,7"), 9, "5, ,7,9");
    row("zeros ahead are no part of a pid", QStringLiteral("09"), 9, "09,9");
    row("doubles stay", QStringLiteral("5,5"), 9, "5,5,9");
    row("entries that are no pid stay", QStringLiteral("x;y,5"), 9, "x;y,5,9");
}

void tst_Pam::addPersonIntoPam_appends()
{
    QFETCH(QVariant, stored);
    QFETCH(uint, pid);
    QFETCH(QString, written);
    PamList f;
    f.stored(stored);
    QVERIFY(f.worker.addPersonIntoPam(pid));
    QCOMPARE(f.log.take(),
             lines({askingBlocks, askingList, preparingList}) << writingList(written));
}

void tst_Pam::addPersonIntoPam_selectedPersonIsNotWrittenAgain_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::newRow("alone") << QVariant(QStringLiteral("9"));
    QTest::newRow("a number in the variable") << QVariant(9);
    QTest::newRow("first") << QVariant(QStringLiteral("9,5"));
    QTest::newRow("between") << QVariant(QStringLiteral("5,9,7"));
    QTest::newRow("last") << QVariant(QStringLiteral("5,9"));
    QTest::newRow("twice") << QVariant(QStringLiteral("9,9"));
    QTest::newRow("behind others that hold it") << QVariant(QStringLiteral("19,99,90,9"));
    QTest::newRow("among empty parts") << QVariant(QStringLiteral(",5,,9,"));
}

void tst_Pam::addPersonIntoPam_selectedPersonIsNotWrittenAgain()
{
    QFETCH(QVariant, stored);
    PamList f;
    f.stored(stored);
    QVERIFY(f.worker.addPersonIntoPam(9));
    QCOMPARE(f.log.take(), lines({askingBlocks, askingList}));
}

void tst_Pam::addPersonIntoPam_failedSearchForBlocks()
{
    PamList f;
    f.fail("SELECT name, value");
    QVERIFY(!f.worker.addPersonIntoPam(9));
    QCOMPARE(f.log.take(),
             lines({askingBlocks, "critical OrvDbSettings::variableGetMultiple - SQL ERROR:",
                    "critical lock wait (scripted)"}));
}

void tst_Pam::addPersonIntoPam_failedReadCountsAsAnEmptyList()
{
    // A list that could not be read is overwritten, if the write succeeds.
    PamList f;
    f.stored(QStringLiteral("5,7"));
    f.fail("SELECT value");
    QVERIFY(f.worker.addPersonIntoPam(9));
    QCOMPARE(f.log.take(),
             lines({askingBlocks, askingList, "critical OrvDbSettings::variableGet - SQL ERROR:",
                    "critical lock wait (scripted)", preparingList})
                 << writingList(QStringLiteral("9")));
}

void tst_Pam::addPersonIntoPam_failedWrite_data()
{
    QTest::addColumn<QString>("failing");
    QTest::addColumn<QStringList>("events");
    const char failure[] = "critical variableSet ERROR: \"lock wait (scripted)\"";
    QTest::newRow("prepare") << QStringLiteral("prepare") << lines({preparingList, failure});
    QTest::newRow("run") << QStringLiteral("run ")
                         << (lines({preparingList})
                             << writingList(QStringLiteral("5,9")) << lines({failure}));
}

void tst_Pam::addPersonIntoPam_failedWrite()
{
    QFETCH(QString, failing);
    QFETCH(QStringList, events);
    PamList f;
    f.stored(QStringLiteral("5"));
    f.fail(qPrintable(failing));
    QVERIFY(!f.worker.addPersonIntoPam(9));
    QCOMPARE(f.log.take(), lines({askingBlocks, askingList}) << events);
}

void tst_Pam::addPersonIntoPam_writesInTestMode()
{
    PamList f;
    f.worker.setTestMode(true);
    QVERIFY(f.worker.addPersonIntoPam(9));
    QCOMPARE(f.log.take(),
             lines({askingBlocks, askingList, preparingList}) << writingList(QStringLiteral("9")));
}

// The row

void tst_Pam::dbAddPersonIntoPam_levels()
{
    QFETCH(int, level);
    PamRow f;
    f.worker.setLogLevel(static_cast<quint8>(level));
    QVERIFY(f.worker.dbAddPersonIntoPam(12341, 2));
    QCOMPARE(f.log.take(),
             atLevel(level,
                     {"1 debug THRWorker::dbAddPersonIntoPam(pid: 12341, pamSettingsID: 2)",
                      askingPerson, enrolling}));
}

void tst_Pam::dbAddPersonIntoPam_testMode()
{
    QFETCH(int, level);
    WorkerFixture f; // knows nobody
    f.worker.setTestMode(true);
    f.worker.setLogLevel(static_cast<quint8>(level));
    QVERIFY(f.worker.dbAddPersonIntoPam(12341, 2));
    QCOMPARE(
        f.log.take(),
        atLevel(
            level,
            {"1 debug THRWorker::dbAddPersonIntoPam(pid: 12341, pamSettingsID: 2)",
             "1 warning THRWorker::dbAddPersonIntoPam(pid: 12341, pamSettingsID: 2) - Testing mode is "
             "active, person not really add into PaM!"}));
}

void tst_Pam::dbAddPersonIntoPam_personNotFound_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<QVariantList>("uids");
    QTest::addColumn<bool>("fails");
    QTest::addColumn<QStringList>("expected");
    const QStringList quiet = lines({askingPerson});
    const QStringList outspoken = lines(
        {"debug THRWorker::dbAddPersonIntoPam(pid: 12341, pamSettingsID: 2)", askingPerson,
         "warning THRWorker::dbAddPersonIntoPam(pid: 12341, pamSettingsID: 2) - Unique person ID "
         "([people].uid) not found!"});
    QTest::newRow("no row, level 0") << 0 << QVariantList() << false << quiet;
    QTest::newRow("no row, level 1") << 1 << QVariantList() << false << outspoken;
    QTest::newRow("no row, level 2") << 2 << QVariantList() << false << outspoken;
    QTest::newRow("uid 0, level 0") << 0 << QVariantList {0, 42} << false << quiet;
    QTest::newRow("uid 0, level 1") << 1 << QVariantList {0, 42} << false << outspoken;
    QTest::newRow("no uid, level 1") << 1 << QVariantList {QVariant()} << false << outspoken;
    QTest::newRow("failure, level 0") << 0 << QVariantList {42} << true << quiet;
    QTest::newRow("failure, level 1") << 1 << QVariantList {42} << true << outspoken;
}

void tst_Pam::dbAddPersonIntoPam_personNotFound()
{
    QFETCH(int, level);
    QFETCH(QVariantList, uids);
    QFETCH(bool, fails);
    QFETCH(QStringList, expected);
    PamRow f;
    QVector<QVariantList> rows;
    for (const QVariant &uid : qAsConst(uids))
        rows.append(QVariantList {uid});
    ScriptedAnswer &answer = f.script.on(QStringLiteral("SELECT uid"))
                                 .withRows({QStringLiteral("uid")}, rows);
    if (fails)
        answer.withError(QStringLiteral("1205"), QStringLiteral("lock wait"));
    f.worker.setLogLevel(static_cast<quint8>(level));
    QVERIFY(!f.worker.dbAddPersonIntoPam(12341, 2));
    QCOMPARE(f.log.take(), expected);
}

void tst_Pam::dbAddPersonIntoPam_bypassesTheCacheOfUids()
{
    PamRow f;
    f.script.on(QStringLiteral("SELECT uid"), 1)
        .withRows({QStringLiteral("uid")}, oneRow(QVariant(41)));
    QCOMPARE(f.worker.getUidByPid(660011), 41u);
    f.log.clear();
    QVERIFY(f.worker.dbAddPersonIntoPam(660011, 1));
    QCOMPARE(f.log.take(),
             lines({"sql exec SELECT uid FROM people WHERE pid=660011",
                    "sql exec INSERT INTO people_pam (uid, id) VALUES(42, 1)"
                    " ON DUPLICATE KEY UPDATE id=VALUES(id)"}));

    // Nor does the cache learn from it.
    QVERIFY(f.worker.dbAddPersonIntoPam(660012, 1));
    f.script.on(QStringLiteral("SELECT uid"))
        .withRows({QStringLiteral("uid")}, oneRow(QVariant(43)));
    QCOMPARE(f.worker.getUidByPid(660012), 43u);
}

void tst_Pam::dbAddPersonIntoPam_takesTheFirstUid()
{
    PamRow f;
    f.script.on(QStringLiteral("SELECT uid"))
        .withRows({QStringLiteral("uid")}, {QVariantList {42}, QVariantList {43}});
    QVERIFY(f.worker.dbAddPersonIntoPam(12341, 2));
    QCOMPARE(f.log.take(), lines({askingPerson, enrolling}));
}

void tst_Pam::dbAddPersonIntoPam_numbers()
{
    PamRow f;
    f.script.on(QStringLiteral("SELECT uid"))
        .withRows({QStringLiteral("uid")}, oneRow(QVariant(4294967295u)));
    f.worker.setLogLevel(1);
    QVERIFY(f.worker.dbAddPersonIntoPam(4294967294u, 4294967293u));
    QCOMPARE(f.log.take(),
             lines({"debug THRWorker::dbAddPersonIntoPam(pid: 4294967294, "
                    "pamSettingsID: 4294967293)",
                    "sql exec SELECT uid FROM people WHERE pid=4294967294",
                    "sql exec INSERT INTO people_pam (uid, id) VALUES(4294967295, 4294967293)"
                    " ON DUPLICATE KEY UPDATE id=VALUES(id)"}));
}

void tst_Pam::dbAddPersonIntoPam_result_data()
{
    QTest::addColumn<QVariant>("insertId");
    QTest::addColumn<int>("affected");
    QTest::addColumn<bool>("stands");
    QTest::newRow("new row") << QVariant(5) << 1 << true;
    QTest::newRow("new id alone") << QVariant(1) << 0 << true;
    QTest::newRow("one row touched, no id") << QVariant() << 1 << true;
    QTest::newRow("row touched, no id") << QVariant() << 2 << true;
    QTest::newRow("row touched, id 0") << QVariant(0) << 1 << true;
    QTest::newRow("row touched, id below 0") << QVariant(-1) << 1 << true;
    QTest::newRow("neither") << QVariant() << 0 << false;
    QTest::newRow("neither, id 0") << QVariant(0) << 0 << false;
    QTest::newRow("number of rows unknown") << QVariant() << -1 << false;
    QTest::newRow("id beyond int") << QVariant(2147483648u) << 0 << false;
}

void tst_Pam::dbAddPersonIntoPam_result()
{
    QFETCH(QVariant, insertId);
    QFETCH(int, affected);
    QFETCH(bool, stands);
    PamRow f;
    f.script.on(QStringLiteral("INSERT INTO people_pam"))
        .withInsertId(insertId)
        .withAffected(affected);
    QCOMPARE(f.worker.dbAddPersonIntoPam(12341, 2), stands);
    QCOMPARE(f.log.take(), lines({askingPerson, enrolling}));
}

void tst_Pam::dbAddPersonIntoPam_failure()
{
    QFETCH(int, level);
    PamRow f;
    f.script.on(QStringLiteral("INSERT INTO people_pam"))
        .withInsertId(5)
        .withAffected(1)
        .withError(QStringLiteral("1205"), QStringLiteral("lock wait"));
    f.worker.setLogLevel(static_cast<quint8>(level));
    QVERIFY(!f.worker.dbAddPersonIntoPam(12341, 2));
    QCOMPARE(f.log.take(),
             atLevel(level,
                     {"1 debug THRWorker::dbAddPersonIntoPam(pid: 12341, pamSettingsID: 2)",
                      askingPerson, enrolling,
                      "critical THRWorker::dbAddPersonIntoPam(pid: 12341, pamSettingsID: 2) - "
                      "SQL ERROR: lock wait (scripted)"}));
}

// What becomes of it later

void tst_Pam::doSyncRecord_missedEnrolmentStaysMissed()
{
    PamList f;
    f.blocks({});
    f.script.on(QStringLiteral("INSERT INTO people (")).withInsertId(42).withAffected(1);
    f.worker.doSyncRecord(record());
    QCOMPARE(
        f.log.take().mid(1),
        lines({askingBlocks, "warning THRWorker::dbAddPerson(1234.1) - addPersonIntoPam() FAILED!",
               askingPerson,
               "warning THRWorker::doSyncRecord(1234.1 Novák Ján (S: 0, K: 0 from ) "
               "N-V: 1 Mar 2015 - ; ES: 0, RS:  -  '' TPP: 11  DOV: 0 NOC: 0) - "
               "dbAddPersonIntoPam(12341, 1) FAILED!"}));

    // The next pass finds the person known; list and row would be open to him now.
    f.blocks({QStringLiteral("exportPam.1.active")});
    f.script.on(QStringLiteral("SELECT uid"))
        .withRows({QStringLiteral("uid")}, oneRow(QVariant(42)));
    f.peer.dbPeople.insert(12341, record());
    f.worker.doSyncRecord(record());
    QCOMPARE(f.log.take(), QStringList());
    // Nor is he enrolled when something else of him changes, or when the pass is forced.
    f.peer.forceSync = true;
    f.worker.doSyncRecord(record().tpp(51));
    const QStringList events = f.log.take();
    QCOMPARE(events.size(), 1);
    QVERIFY(events.at(0).startsWith(QStringLiteral("sql exec UPDATE people SET pamId=1234.1, ")));
}

QTEST_GUILESS_MAIN(tst_Pam)
#include "tst_pam.moc"
