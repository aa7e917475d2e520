// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Rows that mislead a pass: each is found, alone, and its remedy mends it.
#include "host/doctor/contentcheck.h"
#include "support/doctor/doctorfixture.h"

#include <QtTest>

class tst_DoctorContent : public DoctorFixture
{
    Q_OBJECT

public:
    tst_DoctorContent() :
        DoctorFixture(contentDiagnosis)
    { }

private Q_SLOTS:
    void soundRows_findNothing_data() { addSqlModes(); }
    void soundRows_findNothing();
    void damage_isFoundAndMended_data();
    void damage_isFoundAndMended();
    void wideIds_areFound_data();
    void wideIds_areFound();
    void correctionOfToday_isOfSomebody();
    void manyOfAKind_areCounted();
    void nobody_isTold();
    void rowsOutOfSight_areUnknown();
    void cleanup() { restoreTables(); }
};

void tst_DoctorContent::soundRows_findNothing()
{
    QFETCH(QString, mode);
    setSqlMode(mode);
    const Diagnosis found = diagnosis();
    setSqlMode(QStringLiteral("STRICT_TRANS_TABLES"));
    QVERIFY2(found.findings.isEmpty() && found.unknown.isEmpty(), qPrintable(toText(found)));
    QCOMPARE(found.passed.size(), 1);
}

void tst_DoctorContent::damage_isFoundAndMended_data()
{
    QTest::addColumn<QStringList>("damage");
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("words");

    const auto add = [](const char *name, const char *code, const char *damage,
                        const char *words = "") {
        QTest::newRow(name) << QString::fromUtf8(damage).split(QStringLiteral("; "))
                            << QString::fromLatin1(code) << QString::fromLatin1(words);
    };
    add("no block of PaM", "W-CONTENT-PAMNONE",
        "DELETE FROM vars WHERE name = 'exportPam.1.active'");
    add("two blocks of PaM", "W-CONTENT-PAMSEVERAL",
        "INSERT INTO vars VALUES ('exportPam.2.active', '1')");
    add("a name that only begins like that of a block", "W-CONTENT-PAMSEVERAL",
        "INSERT INTO vars VALUES ('exportPam.1.activeSince', '2024')");
    add("no leave fund", "E-CONTENT-FUNDNONE", "DELETE FROM funds WHERE fid = 2");
    add("leave in hours only", "E-CONTENT-FUNDNONE", "UPDATE funds SET unit = 1");
    add("two leave funds", "W-CONTENT-FUNDSEVERAL", "INSERT INTO funds VALUES (9, 3, 2, 'Leave')");
    add("forced pass", "W-CONTENT-FORCED",
        "UPDATE vars SET value = 'yes' WHERE name = 'OQS.THRWorker.forceSync'");
    add("branch without number", "W-CONTENT-BRANCHNONE",
        "UPDATE branches SET number = NULL WHERE bid = 2", "NUMBER=777");
    add("branch with number 0", "W-CONTENT-BRANCHZERO",
        "UPDATE branches SET number = 0 WHERE bid = 2", "NUMBER=777");
    add("two branches of a number", "E-CONTENT-BRANCHTWICE",
        "UPDATE branches SET number = 200 WHERE bid = 4", "NUMBER_2=777");
    add("three branches of a number", "E-CONTENT-BRANCHTWICE",
        "UPDATE branches SET number = 200 WHERE bid IN(4, 5)", "NUMBER_2=777,NUMBER_4=778");
    add("two people of a pid", "E-CONTENT-PIDTWICE",
        "ALTER TABLE people DROP KEY pid; "
        "INSERT INTO people (pid, pamId) VALUES (10011, '1001.1')");
    add("an ended person of the same pid", "E-CONTENT-PIDTWICE",
        "ALTER TABLE people DROP KEY pid; UPDATE people SET pid = 10131, pamId = '1013.1' "
        "WHERE uid = 12");
    add("no pid", "E-CONTENT-PIDNULL", "UPDATE people SET pid = NULL WHERE uid = 3");
    add("no pid, and another row has it", "E-CONTENT-PIDNULL",
        "INSERT INTO people (pamId) VALUES ('1001.1')");
    add("pamId of nobody else", "E-CONTENT-PAMID",
        "UPDATE people SET pamId = '1001.9' WHERE uid = 1");
    add("pamId without a point", "E-CONTENT-PAMID",
        "UPDATE people SET pamId = '1001' WHERE uid = 1");
    add("pamId of somebody else", "E-CONTENT-PAMID",
        "UPDATE people SET pamId = '1002.1' WHERE uid = 1", "NUMBER.ORDINAL=1001.1");
    add("no pamId", "E-CONTENT-PAMID", "UPDATE people SET pamId = NULL WHERE uid = 1",
        "NUMBER.ORDINAL=1001.1");
    add("two administrators of a number", "E-CONTENT-ADMINTWICE",
        "UPDATE admins SET personalNumber = 1001 WHERE aid = 5");
    add("terminal out of service", "W-CONTENT-TERMINAL",
        "UPDATE term SET status = 0 WHERE tid = 1");
    add("another terminal, being set up", "W-CONTENT-TERMINAL",
        "UPDATE term SET status = 2 WHERE tid = 4");
    add("another terminal, without people", "W-CONTENT-TERMINAL",
        "UPDATE term SET flags = 65 WHERE tid = 4");
    add("plan without months", "W-CONTENT-PLAN", "DELETE FROM groups_month WHERE uid = 5");
}

void tst_DoctorContent::damage_isFoundAndMended()
{
    QFETCH(QStringList, damage);
    QFETCH(QString, code);
    QFETCH(QString, words);
    execute(damage);
    const Diagnosis found = diagnosis();
    QVERIFY2(codesOf(found) == QStringList {code} && found.unknown.isEmpty(),
             qPrintable(toText(found)));
    QMap<QString, QString> known;
    const QStringList pairs = words.split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString &pair : pairs)
        known.insert(pair.section(QLatin1Char('='), 0, 0), pair.section(QLatin1Char('='), 1));
    QVERIFY(mend(found, known));
    const Diagnosis left = diagnosis();
    QVERIFY2(left.findings.isEmpty(), qPrintable(toText(left)));
}

void tst_DoctorContent::wideIds_areFound_data()
{
    QTest::addColumn<QString>("change");
    QTest::addColumn<QString>("about");
    QTest::addColumn<QString>("effect");
    const auto row = [](const char *about, const char *change, const char *effect) {
        QTest::newRow(change) << QString::fromLatin1(change) << QString::fromLatin1(about)
                              << QString::fromLatin1(effect);
    };
    row("funds", "UPDATE funds SET fid = 65538 WHERE fid = 2", "leave go to fid 2");
    row("funds", "UPDATE funds SET fid = 65536 WHERE fid = 2", "no leave balance");
    row("branches", "UPDATE branches SET bid = 65538 WHERE bid = 2", "that with bid 2,");
    row("branches", "UPDATE branches SET bid = 131072 WHERE bid = 2", "takes in nobody");
}

void tst_DoctorContent::wideIds_areFound()
{
    QFETCH(QString, change);
    QFETCH(QString, about);
    QFETCH(QString, effect);
    database->execute(change);
    const Diagnosis found = diagnosis();
    QVERIFY2(codesOf(found) == QStringList {QStringLiteral("E-CONTENT-WIDE")},
             qPrintable(toText(found)));
    QCOMPARE(found.findings.first().about, about);
    QVERIFY2(found.findings.first().becomes.contains(effect),
             qPrintable(found.findings.first().becomes));
}

void tst_DoctorContent::correctionOfToday_isOfSomebody()
{
    database->execute(QStringLiteral(
        "INSERT INTO funds_move VALUES (4, 2, UNIX_TIMESTAMP(CURDATE()), 3, 202401, 50)"));
    const Diagnosis found = diagnosis();
    QVERIFY2(codesOf(found) == QStringList {QStringLiteral("N-CONTENT-CORRECTED")},
             qPrintable(toText(found)));
    QCOMPARE(unknownOf(found), QStringList {QStringLiteral("who corrected leave today")});
}

/// Each of them would have been a line of its own.
void tst_DoctorContent::manyOfAKind_areCounted()
{
    database->execute(QStringLiteral(
        "INSERT INTO people (pamId) WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 "
        "FROM n WHERE i < 50) SELECT CONCAT(5000 + i, '.1') FROM n"));
    const Diagnosis found = diagnosis();
    QCOMPARE(codesOf(found).count(QStringLiteral("E-CONTENT-PIDNULL")), 20);
    QCOMPARE(found.findings.size(), 21);
    QCOMPARE(found.findings.last().text,
             QStringLiteral("30 more findings have the code E-CONTENT-PIDNULL"));
}

void tst_DoctorContent::nobody_isTold()
{
    execute({QStringLiteral("TRUNCATE people")});
    const Diagnosis found = diagnosis();
    QVERIFY2(codesOf(found).contains(QStringLiteral("N-CONTENT-NOBODY")),
             qPrintable(toText(found)));
    QCOMPARE(found.passed, QStringList());
}

void tst_DoctorContent::rowsOutOfSight_areUnknown()
{
    database->execute(QStringLiteral("RENAME TABLE admins TO away"));
    const Diagnosis found = diagnosis();
    QVERIFY2(found.findings.isEmpty(), qPrintable(toText(found)));
    QCOMPARE(unknownOf(found), QStringList {QStringLiteral("admins")});
    QVERIFY(found.passed.isEmpty());
}

QTEST_GUILESS_MAIN(tst_DoctorContent)
#include "tst_doctorcontent.moc"
