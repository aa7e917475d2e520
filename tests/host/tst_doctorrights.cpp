// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Rights of the plugin's login, too little and too much: each is found, alone, and its remedy mends
// it. The statements that grant them.
#include "host/catalogue/neededschema.h"
#include "host/doctor/grantedrights.h"
#include "host/doctor/grants.h"
#include "host/doctor/rightscheck.h"
#include "support/catalogue/knownevents.h"
#include "support/catalogue/transcriptevents.h"
#include "support/doctor/doctorfixture.h"

#include <QFile>
#include <QRegularExpression>
#include <QSqlError>
#include <QSqlQuery>
#include <QtTest>

namespace {

const QString plugin()
{
    return QStringLiteral("talvenhr");
}

} // namespace

class tst_DoctorRights : public DoctorFixture
{
    Q_OBJECT

public:
    tst_DoctorRights() :
        DoctorFixture(rightsDiagnosis)
    { }

private Q_SLOTS:
    void fileOfUndo_isWhatIsPrinted();
    void grant_isParsed_data();
    void grant_isParsed();
    void grant_reachesSchemas_data();
    void grant_reachesSchemas();
    void fileOfGrants_isEnoughAndNotTooMuch_data() { addSqlModes(); }
    void fileOfGrants_isEnoughAndNotTooMuch();
    void tooLittle_isFoundAndMended_data();
    void tooLittle_isFoundAndMended();
    void tooMuch_isFoundAndMended_data();
    void tooMuch_isFoundAndMended();
    void rightsOnWiderThings_areEnough_data();
    void rightsOnWiderThings_areEnough();
    void routineOutOfSight_mayBeMissing();
    void roleInForce_counts();
    void roleNotInForce_isUnknown();
    void loginThatOnlyReads_isNotThePlugins();
    void grantStatements_run();
    void grantStatements_areThoseOfTheFile();
    void grantStatements_look();
    void cleanup();

private:
    void prepare() override;
    QStringList pluginsGrants();
    void resetRights();
    QStringList denied(const QString &user);

    QStringList soundGrants;
};

void tst_DoctorRights::prepare()
{
    DoctorFixture::prepare();
    soundGrants = pluginsGrants();
}

/// As database/grants/plugin.sql has them.
void tst_DoctorRights::resetRights()
{
    QFile source(QStringLiteral(TALVENHR_DATABASE_FOLDER "/grants/plugin.sql"));
    QVERIFY2(source.open(QIODevice::ReadOnly), qPrintable(source.errorString()));
    QString file = QString::fromUtf8(source.readAll());
    file.remove(QRegularExpression(QStringLiteral("--[^\n]*")));
    database->execute(
        QStringLiteral("REVOKE ALL PRIVILEGES, GRANT OPTION FROM 'talvenhr'@'localhost'"));
    const QStringList statements = file.split(QLatin1Char(';'), QString::SkipEmptyParts);
    for (const QString &statement : statements) {
        if (!statement.trimmed().isEmpty())
            database->execute(statement);
    }
}

void tst_DoctorRights::cleanup()
{
    execute({QStringLiteral("SET DEFAULT ROLE NONE FOR talvenhr@localhost"),
             QStringLiteral("DROP ROLE IF EXISTS clerk"),
             QStringLiteral("DROP DATABASE IF EXISTS wages"),
             QStringLiteral("DROP USER IF EXISTS 'second'@'localhost'")});
    if (pluginsGrants() != soundGrants)
        resetRights();
}

QStringList tst_DoctorRights::pluginsGrants()
{
    QStringList grants = database->rows(QStringLiteral("SHOW GRANTS FOR 'talvenhr'@'localhost'"));
    grants.sort();
    return grants;
}

/// What is printed for undo is what its file has.
void tst_DoctorRights::fileOfUndo_isWhatIsPrinted()
{
    const QString account = QStringLiteral("'second'@'localhost'");
    QStringList statements = grantStatements(account, QStringLiteral("attendance"),
                                             GrantPurpose::Undo);
    statements.prepend(QStringLiteral("CREATE USER ") + account);
    execute(statements);
    const QString shown = QStringLiteral("SHOW GRANTS FOR ");
    QStringList printed = database->rows(shown + account)
                              .replaceInStrings(QStringLiteral("second"),
                                                QStringLiteral("talvenhr_undo"));
    QStringList expected = database->rows(shown + QStringLiteral("'talvenhr_undo'@'localhost'"));
    // The order of columns is nobody's.
    for (QStringList *grants : {&printed, &expected}) {
        grants->sort();
        for (QString &grant : *grants) {
            QStringList words = grant.split(QRegularExpression(QStringLiteral("[ ,()]+")));
            words.sort();
            grant = words.join(QLatin1Char(' '));
        }
    }
    QCOMPARE(printed, expected);
}

void tst_DoctorRights::grant_isParsed_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("expected");
    const auto add = [](const char *line, const char *expected) {
        QTest::newRow(line) << QString::fromUtf8(line) << QString::fromUtf8(expected);
    };
    add("GRANT USAGE ON *.* TO `a`@`b`", "0 | | |  |  | `a`@`b`");
    add("GRANT USAGE ON *.* TO `a`@`b` IDENTIFIED BY PASSWORD '*00' REQUIRE SSL",
        "0 | | |  |  | `a`@`b`");
    add("GRANT ALL PRIVILEGES ON *.* TO `root`@`localhost` WITH GRANT OPTION",
        "0 | | | ALL PRIVILEGES,GRANT OPTION |  | `root`@`localhost`");
    add("GRANT SELECT, SHOW VIEW ON `at\\_1`.* TO `a`@`%`",
        "1 | at\\_1 | | SELECT,SHOW VIEW |  | `a`@`%`");
    add("GRANT INSERT, UPDATE (`b`, `a ON x`), SELECT (`c`) ON `at`.`my table` TO PUBLIC",
        "2 | at | my table | INSERT | SELECT(c) UPDATE(a on x,b) | PUBLIC");
    add("GRANT SELECT ON `a``b`.`c TO d` TO `role`", "2 | a`b | c TO d | SELECT |  | `role`");
    add("GRANT EXECUTE ON FUNCTION `at`.`midnightfromts` TO `a`@`b`",
        "3 | at | midnightfromts | EXECUTE |  | `a`@`b`");
    add("GRANT EXECUTE ON PROCEDURE `at`.`x` TO `a`@`b`", "4 | at | x | EXECUTE |  | `a`@`b`");
    add("GRANT `clerk` TO `a`@`b`", "none");
    add("SET DEFAULT ROLE `clerk` FOR `a`@`b`", "none");
    add("GRANT PROXY ON ``@`%` TO `root`@`localhost` WITH GRANT OPTION", "none");
    add("something else", "none");
}

void tst_DoctorRights::grant_isParsed()
{
    QFETCH(QString, line);
    QFETCH(QString, expected);
    Grant grant;
    if (!parseGrant(line, &grant)) {
        QCOMPARE(QStringLiteral("none"), expected);
        return;
    }
    QStringList rights = grant.rights.values();
    rights.sort();
    QStringList columns;
    for (auto it = grant.columns.begin(); it != grant.columns.end(); ++it) {
        QStringList names = it->values();
        names.sort();
        columns.append(QStringLiteral("%1(%2)").arg(it.key(), names.join(QLatin1Char(','))));
    }
    const QStringList parts {
        QString::number(grant.level),   grant.schema, grant.object, rights.join(QLatin1Char(',')),
        columns.join(QLatin1Char(' ')), grant.grantee};
    QCOMPARE(parts.join(QStringLiteral("|")).remove(QLatin1Char(' ')),
             expected.remove(QLatin1Char(' ')));
}

void tst_DoctorRights::grant_reachesSchemas_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("schema");
    QTest::addColumn<bool>("reaches");
    const auto add = [](const char *pattern, const char *schema, bool reaches) {
        QTest::addRow("%s %s", pattern, schema)
            << QString::fromLatin1(pattern) << QString::fromLatin1(schema) << reaches;
    };
    add("at", "at", true);
    add("at", "att", false);
    add("a_t", "axt", true);
    add("a\\_t", "axt", false);
    add("a\\_t", "a_t", true);
    add("at%", "attendance", true);
    add("at\\%", "attendance", false);
    add("%", "wages", true);
    add("a.t", "axt", false);
}

void tst_DoctorRights::grant_reachesSchemas()
{
    QFETCH(QString, pattern);
    QFETCH(QString, schema);
    Grant grant;
    grant.level = Grant::Schema;
    grant.schema = pattern;
    QTEST(grant.reaches(schema), "reaches");
}

void tst_DoctorRights::fileOfGrants_isEnoughAndNotTooMuch()
{
    QFETCH(QString, mode);
    setSqlMode(mode);
    const Diagnosis found = diagnosis(plugin());
    setSqlMode(QStringLiteral("STRICT_TRANS_TABLES"));
    QVERIFY2(found.findings.isEmpty() && found.unknown.isEmpty(), qPrintable(toText(found)));
    QCOMPARE(found.passed.size(), 1);
}

/// Each right that is needed; of those on columns the one on the first.
void tst_DoctorRights::tooLittle_isFoundAndMended_data()
{
    QTest::addColumn<QString>("right");
    QTest::addColumn<QString>("object");
    QTest::addColumn<QString>("code");
    for (const NeededRight &needed : neededRights()) {
        const bool isRoutine = needed.columns.isEmpty();
        const bool isLoaded = needed.right == QLatin1String("SELECT")
            && (needed.object == QLatin1String("people")
                || needed.object == QLatin1String("branches"));
        const QString kind = needed.object == QLatin1String("updateTermsSync")
            ? QStringLiteral("PROCEDURE ")
            : QStringLiteral("FUNCTION ");
        const QString right = needed.byColumn
            ? QStringLiteral("%1 (%2)").arg(needed.right, needed.columns.first())
            : needed.right;
        QTest::addRow("%s %s", qPrintable(right), qPrintable(needed.object))
            << QStringLiteral("%1 ON %2%3").arg(right, isRoutine ? kind : QString(), needed.object)
            << needed.object
            << QString::fromLatin1(isRoutine      ? "E-RIGHTS-ROUTINE"
                                       : isLoaded ? "E-RIGHTS-PASS"
                                                  : "E-RIGHTS-TABLE");
    }
}

void tst_DoctorRights::tooLittle_isFoundAndMended()
{
    QFETCH(QString, right);
    QFETCH(QString, object);
    QFETCH(QString, code);
    database->execute(QStringLiteral("REVOKE %1 FROM 'talvenhr'@'localhost'").arg(right));
    const Diagnosis found = diagnosis(plugin());
    QVERIFY2(codesOf(found) == QStringList {code}, qPrintable(toText(found)));
    QCOMPARE(found.findings.first().about, object);
    QVERIFY(mend(found));
    const Diagnosis left = diagnosis(plugin());
    QVERIFY2(left.findings.isEmpty(), qPrintable(toText(left)));
}

void tst_DoctorRights::tooMuch_isFoundAndMended_data()
{
    QTest::addColumn<QStringList>("grants");
    QTest::addColumn<QString>("code");
    const auto add = [](const char *code, const char *grant, const char *before = nullptr) {
        QStringList grants {QStringLiteral("GRANT ") + QString::fromLatin1(grant)};
        if (before)
            grants.prepend(QString::fromLatin1(before));
        QTest::newRow(grant) << grants << QString::fromLatin1(code);
    };
    add("W-RIGHTS-SERVER", "FILE ON *.* TO talvenhr@localhost");
    add("W-RIGHTS-SERVER", "SUPER, PROCESS ON *.* TO talvenhr@localhost");
    add("W-RIGHTS-SERVER", "SELECT, INSERT ON *.* TO talvenhr@localhost WITH GRANT OPTION");
    add("W-RIGHTS-SERVER", "ALL PRIVILEGES ON *.* TO talvenhr@localhost WITH GRANT OPTION");
    add("W-RIGHTS-MORE", "DROP, ALTER ON attendance.* TO talvenhr@localhost");
    add("W-RIGHTS-MORE", "DELETE ON attendance.* TO talvenhr@localhost");
    add("W-RIGHTS-MORE", "ALL PRIVILEGES ON attendance.* TO talvenhr@localhost");
    add("W-RIGHTS-MORE", "TRIGGER ON attendance.people TO talvenhr@localhost");
    add("W-RIGHTS-MORE", "ALL PRIVILEGES ON attendance.people TO talvenhr@localhost");
    add("W-RIGHTS-MORE", "SELECT ON attendance.sections TO talvenhr@localhost WITH GRANT OPTION");
    add("W-RIGHTS-MORE",
        "ALTER ROUTINE ON FUNCTION attendance.getCurrentGid TO talvenhr@localhost");
    add("W-RIGHTS-MORE", "DROP ON attendance.term TO clerk", "CREATE OR REPLACE ROLE clerk");
    add("W-RIGHTS-OTHER", "SELECT ON mysql.* TO talvenhr@localhost");
    add("W-RIGHTS-OTHER", "SELECT, INSERT ON `%`.* TO talvenhr@localhost");
    add("W-RIGHTS-OTHER", "ALL PRIVILEGES ON `att%`.* TO talvenhr@localhost WITH GRANT OPTION");
    add("W-RIGHTS-OTHER", "SELECT ON wages.* TO talvenhr@localhost", "CREATE DATABASE wages");
    add("W-RIGHTS-OTHER", "UPDATE (b), SELECT ON pristine.t TO talvenhr@localhost",
        "CREATE TABLE IF NOT EXISTS pristine.t (b INT)");
}

void tst_DoctorRights::tooMuch_isFoundAndMended()
{
    QFETCH(QStringList, grants);
    QFETCH(QString, code);
    execute(grants);
    if (grants.last().endsWith(QLatin1String("clerk"))) {
        execute({QStringLiteral("GRANT clerk TO talvenhr@localhost"),
                 QStringLiteral("SET DEFAULT ROLE clerk FOR talvenhr@localhost")});
    }
    const Diagnosis found = diagnosis(plugin());
    QVERIFY2(codesOf(found) == QStringList {code}, qPrintable(toText(found)));
    QVERIFY(mend(found));
    const Diagnosis left = diagnosis(plugin());
    QVERIFY2(left.findings.isEmpty(), qPrintable(toText(left)));
}

void tst_DoctorRights::rightsOnWiderThings_areEnough_data()
{
    QTest::addColumn<QString>("grant");
    QTest::addColumn<QStringList>("codes");
    QTest::newRow("the schema") << QStringLiteral(
        "GRANT SELECT, INSERT, UPDATE, EXECUTE ON attendance.* TO "
        "talvenhr@localhost") << QStringList();
    QTest::newRow("a pattern") << QStringLiteral(
        "GRANT SELECT, INSERT, UPDATE, EXECUTE ON `att_ndance`.* TO "
        "talvenhr@localhost") << QStringList();
    QTest::newRow("the server") << QStringLiteral(
        "GRANT SELECT, INSERT, UPDATE, EXECUTE ON *.* TO talvenhr@localhost")
                                << QStringList {QStringLiteral("W-RIGHTS-SERVER")};
}

void tst_DoctorRights::rightsOnWiderThings_areEnough()
{
    QFETCH(QString, grant);
    QFETCH(QStringList, codes);
    database->execute(
        QStringLiteral("REVOKE ALL PRIVILEGES, GRANT OPTION FROM 'talvenhr'@'localhost'"));
    database->execute(grant);
    const Diagnosis found = diagnosis(plugin());
    QVERIFY2(codesOf(found) == codes, qPrintable(toText(found)));
    QCOMPARE(denied(plugin()), QStringList());
}

/// A right on a routine goes with it, and does not come back with it.
void tst_DoctorRights::routineOutOfSight_mayBeMissing()
{
    database->execute(
        QStringLiteral("REVOKE EXECUTE ON FUNCTION midnightFromTs FROM 'talvenhr'@'localhost'"));
    const Finding finding = diagnosis(plugin()).findings.value(0);
    QCOMPARE(finding.text,
             QStringLiteral("midnightFromTs is not there, or the login may not call it"));
    const QString question = finding.remedy.section(QStringLiteral("; "), 0, 0)
                                 .section(QStringLiteral("look: "), 1);
    QCOMPARE(database->rows(question).size(), 1);
    QCOMPARE(
        database->rows(QString(question).replace(QLatin1String("midnight"), QLatin1String("noon")))
            .size(),
        0);
}

void tst_DoctorRights::roleInForce_counts()
{
    execute({QStringLiteral("CREATE ROLE clerk"), QStringLiteral("GRANT INSERT ON people TO clerk"),
             QStringLiteral("REVOKE INSERT ON people FROM talvenhr@localhost"),
             QStringLiteral("GRANT clerk TO talvenhr@localhost"),
             QStringLiteral("SET DEFAULT ROLE clerk FOR talvenhr@localhost")});
    const Diagnosis found = diagnosis(plugin());
    QVERIFY2(found.findings.isEmpty() && found.unknown.isEmpty(), qPrintable(toText(found)));
}

void tst_DoctorRights::roleNotInForce_isUnknown()
{
    execute({QStringLiteral("CREATE ROLE clerk"), QStringLiteral("GRANT INSERT ON people TO clerk"),
             QStringLiteral("REVOKE INSERT ON people FROM talvenhr@localhost"),
             QStringLiteral("GRANT clerk TO talvenhr@localhost")});
    const Diagnosis found = diagnosis(plugin());
    QVERIFY2(codesOf(found) == QStringList {QStringLiteral("E-RIGHTS-TABLE")},
             qPrintable(toText(found)));
    QCOMPARE(unknownOf(found), QStringList {QStringLiteral("`clerk`")});
}

void tst_DoctorRights::loginThatOnlyReads_isNotThePlugins()
{
    const Diagnosis found = diagnosis();
    QVERIFY2(found.findings.isEmpty() && found.passed.isEmpty(), qPrintable(toText(found)));
    QCOMPARE(found.unknown.size(), 1);
}

/// Those texts of the transcript, one to each statement, that the server refuses to the user.
QStringList tst_DoctorRights::denied(const QString &user)
{
    QSqlDatabase handle = QSqlDatabase::cloneDatabase(database->handle(), QStringLiteral("runner"));
    handle.setUserName(user);
    if (!handle.open())
        return {handle.lastError().text()};
    KnownEvents known;
    QMap<PassStatement, QString> texts;
    const QStringList events = transcriptEvents();
    for (const QString &event : events) {
        if (KnownEvents::isStatement(event))
            texts.insert(known.statement(event).statement, known.statementText(event));
    }
    QStringList refused;
    for (const QString &text : qAsConst(texts)) {
        handle.transaction();
        QSqlQuery query(handle);
        query.prepare(text);
        if (text.contains(QLatin1String(":name"))) {
            query.bindValue(QStringLiteral(":name"), QStringLiteral("name"));
            query.bindValue(QStringLiteral(":value"), QStringLiteral("value"));
        }
        if (!query.exec() && query.lastError().text().contains(QLatin1String("denied")))
            refused.append(text);
        query.finish();
        handle.rollback();
    }
    handle = QSqlDatabase();
    QSqlDatabase::removeDatabase(QStringLiteral("runner"));
    return texts.size() < 30 ? QStringList {QStringLiteral("too few statements")} : refused;
}

/// An account that has them and nothing else can do all of a pass.
void tst_DoctorRights::grantStatements_run()
{
    const QString account = QStringLiteral("'second'@'localhost'");
    database->execute(QStringLiteral("CREATE USER ") + account);
    execute(grantStatements(account, database->databaseName(), GrantPurpose::Run));
    const QString second = QStringLiteral("second");
    const Diagnosis found = diagnosis(second);
    QVERIFY2(found.findings.isEmpty() && found.unknown.isEmpty(), qPrintable(toText(found)));
    QCOMPARE(denied(second), QStringList());
}

/// Not one right more than the file has, and of the same columns where the file names columns.
void tst_DoctorRights::grantStatements_areThoseOfTheFile()
{
    const auto rightsOf = [this](const QString &account) {
        QStringList lines = database->rows(QStringLiteral("SHOW GRANTS FOR ") + account);
        QMap<QString, Grant> grants;
        for (const QString &line : qAsConst(lines)) {
            Grant grant;
            if (parseGrant(line, &grant))
                grants.insert(grant.place, grant);
        }
        return grants;
    };
    const QString account = QStringLiteral("'second'@'localhost'");
    database->execute(QStringLiteral("CREATE USER ") + account);
    execute(grantStatements(account, database->databaseName(), GrantPurpose::Run));
    const QMap<QString, Grant> made = rightsOf(account);
    const QMap<QString, Grant> file = rightsOf(QStringLiteral("'talvenhr'@'localhost'"));
    QVERIFY(made.size() > 20);
    for (const Grant &grant : made) {
        const Grant &same = file.value(grant.place);
        QVERIFY2(same.rights.contains(grant.rights), qPrintable(grant.place));
        for (auto it = grant.columns.begin(); it != grant.columns.end(); ++it)
            QVERIFY2(same.columns.value(it.key()).contains(*it), qPrintable(grant.place));
    }
}

void tst_DoctorRights::grantStatements_look()
{
    QCOMPARE(grantStatements(QStringLiteral("'a'@'b'"), QStringLiteral("my_at"), GrantPurpose::Look)
                 .first(),
             QStringLiteral("GRANT SELECT, TRIGGER, SHOW VIEW ON `my\\_at`.* TO 'a'@'b'"));
    QSqlDatabase handle = QSqlDatabase::cloneDatabase(database->handle(), QStringLiteral("reader"));
    handle.setUserName(QStringLiteral("look"));
    QVERIFY(handle.open());
    {
        QSqlQuery query(handle);
        for (const NeededTable &table : neededTables())
            QVERIFY2(query.exec(QStringLiteral("SELECT * FROM `%1` LIMIT 1").arg(table.name)),
                     qPrintable(table.name));
        QVERIFY(query.exec(QStringLiteral("SELECT body FROM mysql.proc WHERE db = DATABASE()")));
        QCOMPARE(query.size(), 4);
        QVERIFY(!query.exec(QStringLiteral("UPDATE people SET calc = 1")));
        QVERIFY(!query.exec(QStringLiteral("DELETE FROM people")));
    }
    handle = QSqlDatabase();
    QSqlDatabase::removeDatabase(QStringLiteral("reader"));
}

QTEST_GUILESS_MAIN(tst_DoctorRights)
#include "tst_doctorrights.moc"
