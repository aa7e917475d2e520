// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Tables, keys and routines that no pass can work with: each is found, alone, and its remedy mends
// it.
#include "host/catalogue/neededschema.h"
#include "host/doctor/schemacheck.h"
#include "host/doctor/schemafacts.h"
#include "support/doctor/doctorfixture.h"

#include <QtTest>

namespace {

/// Sees everything, and may call every routine.
const char administrator[] = "root";

} // namespace

class tst_DoctorSchema : public DoctorFixture
{
    Q_OBJECT

public:
    tst_DoctorSchema() :
        DoctorFixture(schemaDiagnosis)
    { }

private Q_SLOTS:
    void soundSchema_findsNothing();
    void sqlMode_makesNoFinding_data() { addSqlModes(); }
    void sqlMode_makesNoFinding();
    void soundVariants_findNothing_data();
    void soundVariants_findNothing();
    void tableMissing_data();
    void tableMissing();
    void keyMissing_data();
    void keyMissing();
    void damage_isFoundAndMended_data();
    void damage_isFoundAndMended();
    void columnMended_keepsTheRest();
    void bystanders_areNamed_data();
    void bystanders_areNamed();
    void routine_isLookedAt_data();
    void routine_isLookedAt();
    void otherZone_givesOtherDays();
    void indexMissing_isProposed_data();
    void indexMissing_isProposed();
    void login_saysWhatItCannotSee_data();
    void login_saysWhatItCannotSee();
    void cleanup() { restoreTables(); }

private:
    void fill(int people);
    void expectMended(const QString &code, const QString &about, const QString &effect = {});
};

/// Somebody with a day of attendance, and an administrator, so many times.
void tst_DoctorSchema::fill(int people)
{
    const QString numbers = QStringLiteral("WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL "
                                           "SELECT i + 1 FROM n WHERE i < %1) ")
                                .arg(people);
    execute({QStringLiteral("SET max_recursive_iterations = 100000"),
             QStringLiteral("INSERT INTO people (uid, pid, pamId) ") + numbers
                 + QStringLiteral("SELECT 1000 + i, 100000 + 10 * i, CONCAT(10000 + i, '.0') "
                                  "FROM n"),
             QStringLiteral("INSERT INTO atten (uid, date) ") + numbers
                 + QStringLiteral("SELECT 1000 + i, 1700000000 FROM n"),
             QStringLiteral("INSERT INTO admins (personalNumber) ") + numbers
                 + QStringLiteral("SELECT 5000 + i FROM n"),
             QStringLiteral("INSERT INTO brape (bid, uid) ") + numbers
                 + QStringLiteral("SELECT 1, 1000 + i FROM n"),
             QStringLiteral("ANALYZE TABLE people, atten, admins, brape")});
}

/// What there is to find is exactly this, and then nothing.
void tst_DoctorSchema::expectMended(const QString &code, const QString &about,
                                    const QString &effect)
{
    const Diagnosis found = diagnosis();
    QVERIFY2(codesOf(found) == QStringList {code}, qPrintable(toText(found)));
    QCOMPARE(found.findings.first().about, about);
    QVERIFY2(found.findings.first().becomes.contains(effect), qPrintable(toText(found)));
    QVERIFY2(mend(found), qPrintable(toText(found)));
    const Diagnosis left = diagnosis();
    QVERIFY2(left.findings.isEmpty(), qPrintable(toText(left)));
}

void tst_DoctorSchema::soundSchema_findsNothing()
{
    fill(3000);
    const Diagnosis found = diagnosis(QString::fromLatin1(administrator));
    QVERIFY2(found.findings.isEmpty() && found.unknown.isEmpty(), qPrintable(toText(found)));
    QVERIFY(found.passed.size() >= 3);
}

void tst_DoctorSchema::sqlMode_makesNoFinding()
{
    QFETCH(QString, mode);
    setSqlMode(mode);
    const Diagnosis found = diagnosis(QString::fromLatin1(administrator));
    setSqlMode(QStringLiteral("STRICT_TRANS_TABLES"));
    QVERIFY2(found.findings.isEmpty(), qPrintable(toText(found)));
}

void tst_DoctorSchema::soundVariants_findNothing_data()
{
    QTest::addColumn<QString>("change");
    QTest::newRow("key of another name")
        << QStringLiteral("ALTER TABLE people DROP KEY pid, ADD UNIQUE KEY employee (pid)");
    QTest::newRow("key in another order")
        << QStringLiteral("ALTER TABLE brape DROP PRIMARY KEY, ADD PRIMARY KEY (uid, bid)");
    QTest::newRow("wider key besides")
        << QStringLiteral("ALTER TABLE people_pam ADD UNIQUE KEY (uid, id)");
    QTest::newRow("more columns") << QStringLiteral(
        "ALTER TABLE people ADD COLUMN email VARCHAR(64) NULL, ADD COLUMN room INT NOT NULL DEFAULT 0");
    QTest::newRow("seconds of 32 bits")
        << QStringLiteral("ALTER TABLE people MODIFY created INT UNSIGNED NULL");
    QTest::newRow("enumeration") << QStringLiteral(
        "ALTER TABLE term_sync MODIFY type ENUM('I', 'U', 'D') NOT NULL");
    QTest::newRow("decimal") << QStringLiteral("ALTER TABLE people MODIFY did DECIMAL(12, 0) NULL");
    QTest::newRow("column that is only read")
        << QStringLiteral("ALTER TABLE branches MODIFY number SMALLINT UNSIGNED NULL");
}

void tst_DoctorSchema::soundVariants_findNothing()
{
    QFETCH(QString, change);
    database->execute(change);
    const Diagnosis found = diagnosis();
    QVERIFY2(found.findings.isEmpty(), qPrintable(toText(found)));
}

void tst_DoctorSchema::tableMissing_data()
{
    QTest::addColumn<QString>("table");
    for (const NeededTable &table : neededTables())
        QTest::newRow(qPrintable(table.name)) << table.name;
}

void tst_DoctorSchema::tableMissing()
{
    QFETCH(QString, table);
    database->execute(QStringLiteral("RENAME TABLE `%1` TO `away`").arg(table));
    const Diagnosis found = diagnosis();
    QVERIFY2(codesOf(found) == QStringList {QStringLiteral("E-SCHEMA-TABLE")},
             qPrintable(toText(found)));
    QCOMPARE(found.findings.first().about, table);
}

void tst_DoctorSchema::keyMissing_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("consequence");
    const QHash<QString, QString> consequences {
        {QStringLiteral("people"), QStringLiteral("come back")},
        {QStringLiteral("admins_people"), QStringLiteral("supervisor")},
        {QStringLiteral("groups_plan"), QStringLiteral("two groups")},
        {QStringLiteral("groups_month"), QStringLiteral("two groups")},
        {QStringLiteral("vars"), QStringLiteral("never ends")},
    };
    for (const NeededTable &table : neededTables()) {
        if (!table.uniqueKey.isEmpty())
            QTest::newRow(qPrintable(table.name))
                << table.name << consequences.value(table.name, QStringLiteral("rows may stand"));
    }
}

void tst_DoctorSchema::keyMissing()
{
    QFETCH(QString, table);
    QFETCH(QString, consequence);
    database->execute(QStringLiteral("ALTER TABLE `%1` DROP %2")
                          .arg(table,
                               table == QLatin1String("people") ? QStringLiteral("KEY pid")
                                                                : QStringLiteral("PRIMARY KEY")));
    expectMended(QStringLiteral("E-SCHEMA-KEY"), table, consequence);
}

void tst_DoctorSchema::damage_isFoundAndMended_data()
{
    QTest::addColumn<QString>("damage");
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("about");
    const auto add = [](const char *code, const char *about, const char *table,
                        const char *change) {
        QTest::addRow("%s", change)
            << QStringLiteral("ALTER TABLE %1 %2").arg(QLatin1String(table), QLatin1String(change))
            << QString::fromLatin1(code) << QString::fromLatin1(about);
    };
    add("E-SCHEMA-COLUMN", "people.editor", "people", "DROP COLUMN editor");
    add("E-SCHEMA-COLUMN", "people.rsText", "people", "DROP COLUMN rsText");
    add("E-SCHEMA-COLUMN", "people.status", "people", "DROP COLUMN status");
    add("E-SCHEMA-COLUMN", "term.syn", "term", "DROP COLUMN syn");
    add("E-SCHEMA-COLUMN", "atten.man", "atten", "DROP COLUMN man");
    add("E-SCHEMA-TYPE", "people.phone", "people", "MODIFY phone INT NULL");
    add("E-SCHEMA-TYPE", "people.begin", "people", "MODIFY begin DATE NULL");
    add("E-SCHEMA-NARROW", "people.end", "people", "MODIFY end INT NULL");
    add("E-SCHEMA-NARROW", "people.bid", "people", "MODIFY bid SMALLINT UNSIGNED NULL");
    add("E-SCHEMA-NARROW", "people.did", "people", "MODIFY did DECIMAL(6, 0) NULL");
    add("E-SCHEMA-NARROW", "term_sync.ref_id", "term_sync",
        "MODIFY ref_id MEDIUMINT UNSIGNED NOT NULL");
    add("E-SCHEMA-NARROW", "atten.ok", "atten", "MODIFY ok TINYINT UNSIGNED NOT NULL DEFAULT 0");
    add("E-SCHEMA-NARROW", "funds_move.value", "funds_move", "MODIFY value SMALLINT NOT NULL");
    add("E-SCHEMA-NARROW", "groups_plan.gid", "groups_plan",
        "MODIFY since MEDIUMINT NOT NULL, MODIFY gid SMALLINT NOT NULL");
    add("E-SCHEMA-SHORT", "people.pamId", "people", "MODIFY pamId VARCHAR(16) NULL");
    add("E-SCHEMA-SHORT", "term_sync.ref", "term_sync", "MODIFY ref CHAR(10) NOT NULL");
    add("E-SCHEMA-NULL", "people.end", "people", "MODIFY end BIGINT NOT NULL");
    add("E-SCHEMA-NULL", "people.did", "people", "MODIFY did INT UNSIGNED NOT NULL DEFAULT 1");
    add("E-SCHEMA-UNFILLED", "people.email", "people", "ADD COLUMN email VARCHAR(64) NOT NULL");
    add("E-SCHEMA-UNFILLED", "brape.hired", "brape", "ADD COLUMN hired DATE NOT NULL");
    add("E-SCHEMA-KEY", "people", "people", "DROP KEY pid, ADD KEY pid (pid)");
    add("E-SCHEMA-KEY", "people", "people", "DROP KEY pid, ADD UNIQUE KEY (pid, bid)");
    add("E-SCHEMA-KEY", "vars", "vars", "DROP PRIMARY KEY, ADD UNIQUE KEY (name(15))");
    add("W-SCHEMA-OTHERKEY", "people", "people", "ADD UNIQUE KEY person (surname, name, begin)");
    add("W-SCHEMA-ENGINE", "admins_people", "admins_people", "ENGINE = MyISAM");
    add("W-SCHEMA-LIST", "vars.value", "vars", "MODIFY value VARCHAR(60) NULL");
}

void tst_DoctorSchema::damage_isFoundAndMended()
{
    QFETCH(QString, damage);
    QFETCH(QString, code);
    QFETCH(QString, about);
    database->execute(damage);
    expectMended(code, about);
}

/// MODIFY COLUMN takes away what it does not name.
void tst_DoctorSchema::columnMended_keepsTheRest()
{
    execute({QStringLiteral("ALTER TABLE people MODIFY pamId VARCHAR(16) NULL COMMENT 'their key'"),
             QStringLiteral("ALTER TABLE people MODIFY end BIGINT NOT NULL COMMENT 'it''s a day'"),
             QStringLiteral("ALTER TABLE brape MODIFY since TIMESTAMP NOT NULL DEFAULT "
                            "CURRENT_TIMESTAMP ON UPDATE CURRENT_TIMESTAMP COMMENT 'joined'")});
    QVERIFY(mend(diagnosis()));
    const QString tables = database->rows(QStringLiteral("SHOW CREATE TABLE people")).first()
        + database->rows(QStringLiteral("SHOW CREATE TABLE brape")).first();
    for (const char *comment : {"COMMENT 'their key'", "COMMENT 'it''s a day'", "COMMENT 'joined'"})
        QVERIFY2(tables.contains(QLatin1String(comment)), qPrintable(tables));
    RealColumn moment;
    moment.type = QStringLiteral("timestamp");
    moment.fallback = QStringLiteral("current_timestamp()");
    moment.extra = QStringLiteral("on update current_timestamp()");
    QCOMPARE(moment.definition(moment.type, true),
             QStringLiteral("timestamp NULL DEFAULT current_timestamp() "
                            "on update current_timestamp()"));
    QCOMPARE(moment.definition(QStringLiteral("BIGINT"), true), QStringLiteral("BIGINT NULL"));
}

void tst_DoctorSchema::bystanders_areNamed_data()
{
    QTest::addColumn<QString>("change");
    QTest::addColumn<QStringList>("codes");
    QTest::newRow("trigger") << QStringLiteral(
        "CREATE TRIGGER watch BEFORE UPDATE ON people FOR EACH ROW SET @x = 1")
                             << QStringList {QStringLiteral("N-SCHEMA-TRIGGER")};
    QTest::newRow("trigger for what no pass does")
        << QStringLiteral("CREATE TRIGGER watch BEFORE DELETE ON people FOR EACH ROW SET @x = 1")
        << QStringList();
    QTest::newRow("trigger where no pass writes")
        << QStringLiteral("CREATE TRIGGER watch BEFORE UPDATE ON admins FOR EACH ROW SET @x = 1")
        << QStringList();
    QTest::newRow("foreign key") << QStringLiteral(
        "ALTER TABLE people_pam ADD FOREIGN KEY (uid) REFERENCES people (uid)")
                                 << QStringList {QStringLiteral("N-SCHEMA-FOREIGNKEY")};
}

void tst_DoctorSchema::bystanders_areNamed()
{
    QFETCH(QString, change);
    QFETCH(QStringList, codes);
    database->execute(change);
    const Diagnosis found = diagnosis();
    QVERIFY2(codesOf(found) == codes, qPrintable(toText(found)));
    QVERIFY2(!unknownOf(found).contains(QStringLiteral("triggers")), qPrintable(toText(found)));
}

void tst_DoctorSchema::routine_isLookedAt_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("routine");
    QTest::addColumn<QString>("body"); // null for none at all
    QTest::addColumn<QString>("code");
    const auto add = [](const char *code, const char *kind, const char *routine, const char *body) {
        QTest::addRow("%s: %s", code, routine)
            << QString::fromLatin1(kind) << QString::fromLatin1(routine)
            << QString::fromLatin1(body) << QString::fromLatin1(code);
    };
    add("E-SCHEMA-ROUTINE", "FUNCTION", "midnightFromTs", nullptr);
    add("E-SCHEMA-ROUTINE", "FUNCTION", "monthFromTimestamp", nullptr);
    add("E-SCHEMA-ROUTINE", "FUNCTION", "getCurrentGid", nullptr);
    add("E-SCHEMA-ROUTINE", "PROCEDURE", "updateTermsSync", nullptr);
    add("E-SCHEMA-RESULT", "FUNCTION", "midnightFromTs",
        "(ts BIGINT) RETURNS BIGINT DETERMINISTIC RETURN ts - 1");
    // Right in winter only.
    add("E-SCHEMA-RESULT", "FUNCTION", "midnightFromTs",
        "(ts BIGINT) RETURNS BIGINT DETERMINISTIC RETURN ts + 3600 - (ts + 3600) % 86400 - 3600 "
        "- (MONTH(FROM_UNIXTIME(ts)) = 7)");
    add("E-SCHEMA-RESULT", "FUNCTION", "monthFromTimestamp",
        "(ts BIGINT) RETURNS INT DETERMINISTIC RETURN 202401");
    add("E-SCHEMA-RESULT", "FUNCTION", "getCurrentGid",
        "(u INT, m INT, g INT) RETURNS INT DETERMINISTIC RETURN g");
    add("W-SCHEMA-SLOW", "FUNCTION", "monthFromTimestamp",
        "(ts BIGINT) RETURNS INT UNSIGNED BEGIN DO SLEEP(0.002); "
        "RETURN EXTRACT(YEAR_MONTH FROM FROM_UNIXTIME(ts)); END");
}

void tst_DoctorSchema::routine_isLookedAt()
{
    QFETCH(QString, kind);
    QFETCH(QString, routine);
    QFETCH(QString, body);
    QFETCH(QString, code);
    // Name, SQL mode, statement, character set, ...
    const QString creation = database->rows(QStringLiteral("SHOW CREATE %1 %2").arg(kind, routine))
                                 .first()
                                 .section(QLatin1Char('|'), 2, -4);
    database->execute(QStringLiteral("DROP %1 %2").arg(kind, routine));
    if (!body.isEmpty())
        database->execute(QStringLiteral("CREATE %1 %2 %3").arg(kind, routine, body));
    const Diagnosis found = diagnosis(QString::fromLatin1(administrator));
    database->execute(QStringLiteral("DROP %1 IF EXISTS %2").arg(kind, routine));
    database->execute(creation);

    QVERIFY2(codesOf(found) == QStringList {code}, qPrintable(toText(found)));
    QCOMPARE(found.findings.first().about, routine);
    const Diagnosis left = diagnosis(QString::fromLatin1(administrator));
    QVERIFY2(left.findings.isEmpty(), qPrintable(toText(left)));
}

void tst_DoctorSchema::otherZone_givesOtherDays()
{
    database->execute(QStringLiteral("SET GLOBAL time_zone = '-08:00'"));
    const Diagnosis found = diagnosis(QString::fromLatin1(administrator));
    database->execute(QStringLiteral("SET GLOBAL time_zone = 'SYSTEM'"));
    const QString code = QStringLiteral("E-SCHEMA-RESULT");
    QVERIFY2(codesOf(found) == QStringList({code, code}), qPrintable(toText(found)));
}

void tst_DoctorSchema::indexMissing_isProposed_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("change");
    QTest::addColumn<int>("indexes");
    QTest::newRow("attendance") << QStringLiteral("atten")
                                << QStringLiteral("DROP PRIMARY KEY, DROP KEY uid") << 2;
    QTest::newRow("administrators")
        << QStringLiteral("admins") << QStringLiteral("DROP KEY personalNumber") << 1;
    QTest::newRow("people by uid")
        << QStringLiteral("people")
        << QStringLiteral("MODIFY uid INT UNSIGNED NOT NULL, DROP PRIMARY KEY, ADD KEY (surname)")
        << 1;
}

void tst_DoctorSchema::indexMissing_isProposed()
{
    QFETCH(QString, table);
    QFETCH(QString, change);
    QFETCH(int, indexes);
    database->execute(QStringLiteral("ALTER TABLE %1 %2").arg(table, change));
    // A few rows are read as fast without one.
    const Diagnosis few = diagnosis();
    QVERIFY2(!codesOf(few).contains(QStringLiteral("W-SCHEMA-SCAN")), qPrintable(toText(few)));
    fill(3000);
    const Diagnosis found = diagnosis();
    const QString code = QStringLiteral("W-SCHEMA-SCAN");
    QVERIFY2(codesOf(found).count(code) == indexes, qPrintable(toText(found)));
    QVERIFY(mend(found));
    QVERIFY(!codesOf(diagnosis()).contains(code));
}

void tst_DoctorSchema::login_saysWhatItCannotSee_data()
{
    QTest::addColumn<QStringList>("grants");
    QTest::addColumn<QStringList>("unknown");
    const QStringList functions {QStringLiteral("midnightFromTs"),
                                 QStringLiteral("monthFromTimestamp"),
                                 QStringLiteral("getCurrentGid")};
    const QString procedure = QStringLiteral("updateTermsSync");
    const QString triggers = QStringLiteral("triggers");
    QTest::newRow("reads tables") << QStringList {QStringLiteral(
        "GRANT SELECT ON attendance.* TO little@localhost")}
                                  << QStringList {triggers} + functions + QStringList {procedure};
    QTest::newRow("sees triggers, calls what there is") << QStringList {QStringLiteral(
        "GRANT SELECT, TRIGGER, EXECUTE ON attendance.* TO little@localhost")}
                                                        << QStringList();
    QTest::newRow("sees routines")
        << QStringList {QStringLiteral("GRANT SELECT, TRIGGER ON attendance.* TO little@localhost"),
                        QStringLiteral("GRANT SELECT ON mysql.proc TO little@localhost")}
        << functions;
}

void tst_DoctorSchema::login_saysWhatItCannotSee()
{
    QFETCH(QStringList, grants);
    QFETCH(QStringList, unknown);
    database->execute(QStringLiteral("CREATE USER little@localhost"));
    execute(grants);
    const Diagnosis found = diagnosis(QStringLiteral("little"));
    database->execute(QStringLiteral("DROP USER little@localhost"));
    QVERIFY2(found.findings.isEmpty() && unknownOf(found) == unknown, qPrintable(toText(found)));
}

QTEST_GUILESS_MAIN(tst_DoctorSchema)
#include "tst_doctorschema.moc"
