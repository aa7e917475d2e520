// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The copy of an attendance database: equal in all that a pass meets, and taken by reading alone.
#include "host/copy/copiedrows.h"
#include "host/copy/databasecopy.h"
#include "host/copy/zonetable.h"
#include "support/eventlog.h"
#include "support/patience.h"
#include "support/testdatabase.h"

#include <QDir>
#include <QSignalSpy>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <memory>

namespace {

/// What others have made of the stand-in: columns of all kinds, keys, programs, another engine.
const char *const changes[] = {
    "ALTER DATABASE attendance CHARACTER SET latin2 COLLATE latin2_croatian_ci",
    "CREATE TABLE departments (did INT UNSIGNED PRIMARY KEY, name VARCHAR(40)) ENGINE = InnoDB",
    "INSERT INTO departments VALUES (1, 'Vedenie'), (2, 'Výroba')",
    "ALTER TABLE people "
    "  ADD note TEXT CHARACTER SET latin2, ADD photo BLOB, ADD emblem VARCHAR(40), "
    "  ADD kind ENUM('a''b', 'ž', '') DEFAULT 'ž', ADD tags SET('x', 'y;z', 'q'), ADD bits BIT(12), "
    "  ADD ratio FLOAT, ADD exact DOUBLE, ADD sum DECIMAL(30, 10), ADD born DATE, "
    "  ADD wakes TIME(2), ADD met DATETIME(6), ADD seen TIMESTAMP(3) NULL, ADD since YEAR, "
    "  ADD place POINT, ADD address INET6, ADD facts JSON, "
    "  ADD secret VARBINARY(16) INVISIBLE, "
    "  ADD fullName VARCHAR(300) AS (CONCAT(name, ' ', surname)) PERSISTENT, "
    "  ADD shortName VARCHAR(3) AS (LEFT(surname, 3)) VIRTUAL, "
    "  ADD UNIQUE KEY byEmblem (emblem(10), did), "
    "  ADD CONSTRAINT ofDepartment FOREIGN KEY (did) REFERENCES departments (did), "
    "  ADD CONSTRAINT aName CHECK (surname <> 'nobody'), "
    "  AUTO_INCREMENT = 5000",
    "UPDATE people SET note = 'Ľúbi čaj', photo = X'00270a5c1aff0d22', emblem = '😀''`\\\\\"', "
    "  name = 'O''Brien \\\\ \\0\\n\\t\\Z%_;-- #', kind = 'a''b', tags = 'x,y;z', bits = 2050, "
    "  ratio = 0.1234567, exact = 1.1e-300 / 3, sum = -12345678901234567890.0123456789, "
    "  born = '1970-02-28', wakes = '-12:30:00.55', met = '2023-10-29 02:30:00.123456', "
    "  since = 1999, place = POINT(1.5, -2), address = '2001:db8::1', "
    "  facts = '{\"a\": \"ž\"}', secret = X'00ff' WHERE uid = 1",
    // The hour that comes twice.
    "SET time_zone = '+00:00'",
    "UPDATE people SET seen = FROM_UNIXTIME(1698537600.125) WHERE uid = 1",
    "UPDATE people SET seen = FROM_UNIXTIME(1698541200.125) WHERE uid = 2",
    "SET time_zone = DEFAULT",
    "INSERT INTO funds_move (uid, fid, day, type, month, value) "
    "  SELECT 1, fid, 86400, 1, 197001, 5 FROM funds WHERE NOT (iid = 3 AND unit = 2)",
    // What strict modes refuse today.
    "SET sql_mode = 'ALLOW_INVALID_DATES,NO_AUTO_VALUE_ON_ZERO'",
    "UPDATE people SET born = '0000-00-00', met = '2023-02-31 00:00:00', seen = 0, kind = 'none', "
    "  emblem = 'null', note = 'NULL' WHERE uid = 3",
    "INSERT INTO people (uid, pid, surname) VALUES (0, 0, 'Nula')",
    "SET check_constraint_checks = 0",
    "UPDATE people SET surname = 'nobody' WHERE uid = 4",
    "SET sql_mode = DEFAULT, check_constraint_checks = DEFAULT",
    "CREATE TABLE journal (uid INT, what VARCHAR(80), who VARCHAR(80)) ENGINE = MyISAM",
    "INSERT INTO journal VALUES (1, 'b', NULL), (1, 'a', ''), (1, 'b', NULL)",
    "CREATE TABLE `odd ``name; ž` (a INT)",
    "CREATE TABLE payroll (uid INT PRIMARY KEY)",
    "CREATE VIEW openDays AS SELECT uid, COUNT(*) AS days FROM atten WHERE NOT `lock` GROUP BY uid",
    "CREATE USER auditor@'%'",
    "CREATE FUNCTION journalText(id INT) RETURNS VARCHAR(80) READS SQL DATA "
    "  RETURN CONCAT('person ', id, ': ', (SELECT COUNT(*) FROM openDays WHERE uid = id))",
    "SET sql_mode = 'ANSI_QUOTES', character_set_client = utf8mb3, "
    "  collation_connection = utf8mb3_czech_ci",
    "CREATE DEFINER = auditor@'%' PROCEDURE note(id INT) "
    "  INSERT INTO \"odd `name; ž\" VALUES (id)",
    "CREATE DEFINER = auditor@'%' TRIGGER second AFTER UPDATE ON people FOR EACH ROW "
    "  INSERT INTO journal VALUES (NEW.uid, journalText(NEW.uid), CURRENT_USER())",
    "CREATE TRIGGER first AFTER UPDATE ON people FOR EACH ROW PRECEDES second "
    "  BEGIN IF NEW.uid > 0 THEN CALL note(NEW.uid); END IF; END",
    "SET NAMES utf8mb4, sql_mode = DEFAULT",
    "DROP USER auditor@'%'",
    // The plugin's rights are of no use here: it does not read all that it writes.
    "CREATE USER reader@localhost",
    "GRANT SELECT, TRIGGER, SHOW VIEW ON attendance.* TO reader@localhost",
    "GRANT SELECT ON mysql.proc TO reader@localhost",
    "SET GLOBAL auto_increment_increment = 7, GLOBAL auto_increment_offset = 3, "
    "  GLOBAL sql_mode = 'NO_ENGINE_SUBSTITUTION', GLOBAL group_concat_max_len = 4711, "
    "  GLOBAL max_allowed_packet = 2097152, GLOBAL collation_server = latin1_danish_ci, "
    "  GLOBAL time_zone = '-02:30', "
    "  GLOBAL init_connect = 'SET time_zone = \\'Europe/Prague\\', div_precision_increment = 7'",
};

} // namespace

class tst_DatabaseCopy : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void copied_isWhatAPassMeetsAndNoMore();
    void generalLog_showsNothingButReading();
    void definitionsAndRows_areEqual_data();
    void definitionsAndRows_areEqual();
    void hiddenBytes_survive();
    void snapshots_areEqualButForLockedDays();
    void days_areTheOpenOnesAndOneOfEachLockedMonth();
    void moves_areThoseOfTheLeaveFund();
    void whole_hasAllDaysAndMoves();
    void people_areOnlyThoseWishedFor();
    void ranges_giveTheSameRows_data();
    void ranges_giveTheSameRows();
    void settings_areThoseOfTheLogin();
    void copyOfTheCopy_hasTheSameDigest();
    void writing_endsAlike();
    void missingRight_isNamed_data();
    void missingRight_isNamed();
    void unreadableTableOfATrigger_isLeftOut();
    void missingTable_isAWarning();
    void refusal_makesNothing();
    void interruption_endsTheCopy();
    void silentSource_endsTheCopy();
    void killedReading_isNoEndOfTheRows();

private:
    ConnectionParameters source(const QString &user = QStringLiteral("reader")) const;
    QStringList rowsOf(const ConnectionParameters &parameters, const QString &statement);
    void compare(const QString &statement);
    qint64 rowsRead(const char *table, const CopyWishes &wishes);
    QString path(const char *name) const { return folder.filePath(QString::fromLatin1(name)); }

    QTemporaryDir folder {QStringLiteral("/tmp/talven-XXXXXX")};
    std::unique_ptr<TestDatabase> database;
    std::unique_ptr<DatabaseCopy> copy;
    CopyFacts facts;
    QStringList sourceLog; ///< what the source's server was asked for the copy
    int connections = 0;
};

void tst_DatabaseCopy::initTestCase()
{
    database = std::make_unique<TestDatabase>(TestDatabase::Sample);
    QVERIFY2(database->error().isEmpty(), qPrintable(database->error()));
    for (const QString &statement :
         zoneStatements(str("Europe/Prague"), QTimeZone("Europe/Prague")))
        database->execute(statement);
    database->execute(QStringLiteral("SET NAMES utf8mb4"));
    for (const char *statement : changes)
        database->execute(str(statement));
    database->execute(QStringLiteral("SET GLOBAL log_output = 'TABLE', GLOBAL general_log = 1"));

    copy = std::make_unique<DatabaseCopy>(path("copy"));
    QSignalSpy progress(copy.get(), SIGNAL(progress(QString)));
    const Failure failure = copy->make(source(), CopyWishes(), &facts);
    QVERIFY2(!failure, qPrintable(failure.text));
    QVERIFY(!progress.isEmpty());
    database->execute(QStringLiteral("SET GLOBAL general_log = 0"));
    sourceLog = database->rows(
        QStringLiteral("SELECT CONCAT(command_type, ': ', CONVERT(argument USING utf8mb4)) "
                       "FROM mysql.general_log WHERE user_host LIKE 'reader%' "
                       "OR user_host LIKE '[reader]%'"));
}

void tst_DatabaseCopy::cleanupTestCase()
{
    copy.reset();
    database.reset();
}

ConnectionParameters tst_DatabaseCopy::source(const QString &user) const
{
    ConnectionParameters parameters;
    parameters.socket = database->server().socketPath();
    parameters.user = user;
    return parameters;
}

/// Each with its values joined by "|".
QStringList tst_DatabaseCopy::rowsOf(const ConnectionParameters &parameters,
                                     const QString &statement)
{
    QStringList result;
    Connection connection(QStringLiteral("look-%1").arg(++connections));
    const Failure failure = connection.open(parameters);
    if (failure)
        return {failure.text};
    {
        QSqlQuery query(connection.handle());
        query.exec(QStringLiteral("SET NAMES utf8mb4"));
        if (!query.exec(statement))
            result.append(query.lastError().text());
        while (query.next()) {
            QStringList values;
            for (int column = 0; column < query.record().count(); ++column)
                values.append(query.value(column).toString());
            result.append(values.join(QLatin1Char('|')));
        }
    }
    connection.close();
    return result;
}

void tst_DatabaseCopy::compare(const QString &statement)
{
    const QStringList expected = rowsOf(source(QStringLiteral("root")), statement);
    QVERIFY2(!expected.isEmpty(), qPrintable(statement));
    QCOMPARE(rowsOf(copy->administratorParameters(), statement), expected);
}

qint64 tst_DatabaseCopy::rowsRead(const char *table, const CopyWishes &wishes)
{
    const QSqlDatabase handle = database->administratorHandle();
    const QString name = handle.connectionName();
    qint64 rows = -1;
    {
        QSqlDatabase reader = QSqlDatabase::database(name);
        CopiedSchema schema;
        if (!readCopiedSchema(reader, CopyWishes(), &schema)) {
            QCryptographicHash digest(QCryptographicHash::Sha256);
            const CopiedTable &wanted = *schema.find(str(table));
            RowStream stream(reader, wanted, rowConditions(schema, wanted, wishes), &digest);
            while (!stream.next().isEmpty()) {
            }
            rows = stream.failure() ? -1 : stream.rows();
        }
    }
    return rows;
}

void tst_DatabaseCopy::copied_isWhatAPassMeetsAndNoMore()
{
    QStringList expected = tablesOfPass();
    QCOMPARE(expected.size(), 18);
    // Of a foreign key, of triggers and routines.
    expected << str("departments") << str("journal") << str("odd `name; ž") << str("openDays");
    expected.sort();
    QCOMPARE(facts.tables, expected);
    QCOMPARE(rowsOf(copy->administratorParameters(),
                    QStringLiteral("SELECT table_name FROM information_schema.tables "
                                   "WHERE table_schema = 'attendance' "
                                   "ORDER BY CONVERT(table_name USING utf8mb4) "
                                   "COLLATE utf8mb4_bin")),
             expected);
    QCOMPARE(facts.leftOut, QStringList());
    QCOMPARE(
        facts.warnings,
        QStringList {str("Table 'journal' is of the engine MyISAM, which has no snapshots: its "
                         "rows are of another moment than the rest.")});
    QCOMPARE(facts.digest.size(), 64);
    qint64 rows = 0;
    for (const QString &table : qAsConst(facts.tables)) {
        if (table != QLatin1String("openDays"))
            rows += rowsOf(copy->administratorParameters(),
                           QStringLiteral("SELECT COUNT(*) FROM `%1`")
                               .arg(QString(table).replace(str("`"), str("``"))))
                        .first()
                        .toLongLong();
    }
    QCOMPARE(facts.rows, rows);
}

/// Quit and Connect apart, the source was asked for nothing but this.
void tst_DatabaseCopy::generalLog_showsNothingButReading()
{
    const QStringList harmless {
        str("SELECT "),
        str("SHOW "),
        str("SET NAMES "),
        str("SET SESSION "),
        str("SET @"),
        str("SAVEPOINT"),
        str("ROLLBACK TO SAVEPOINT"),
        str("SET TRANSACTION ISOLATION LEVEL REPEATABLE READ"),
        str("START TRANSACTION WITH CONSISTENT SNAPSHOT, READ ONLY"),
        str("COMMIT"),
    };
    QVERIFY(sourceLog.size() > 60);
    int queries = 0;
    for (const QString &line : qAsConst(sourceLog)) {
        const QString command = line.section(str(": "), 0, 0);
        const QString statement = line.section(str(": "), 1);
        if (command != QLatin1String("Query")) {
            // The driver prepares a SELECT on opening.
            QVERIFY2(command != QLatin1String("Execute") || statement.startsWith(str("SELECT ")),
                     qPrintable(line));
            continue;
        }
        ++queries;
        QVERIFY2(std::any_of(harmless.begin(), harmless.end(),
                             [&](const QString &form) { return statement.startsWith(form); })
                     || statement.startsWith(str("SET time_zone = 'Europe/Prague'")),
                 qPrintable(line));
        QVERIFY2(!statement.contains(str(" INTO OUTFILE")) && !statement.contains(str("FOR UPDATE"))
                     && !statement.contains(str("GLOBAL sql_mode")),
                 qPrintable(line));
    }
    QVERIFY(queries > 60);
}

void tst_DatabaseCopy::definitionsAndRows_areEqual_data()
{
    QTest::addColumn<QString>("statement");
    for (const QString &table : qAsConst(facts.tables)) {
        const QString name = QString(table).replace(str("`"), str("``"));
        QTest::addRow("definition of %s", qPrintable(table))
            << QStringLiteral("SHOW CREATE TABLE `%1`").arg(name);
        const bool inPart = table == QLatin1String("atten") || table == QLatin1String("funds_move")
            || table == QLatin1String("openDays");
        // An empty table has an equal sum, too: the number of rows is told elsewhere.
        if (!inPart)
            QTest::addRow("rows of %s", qPrintable(table))
                << QStringLiteral("CHECKSUM TABLE `%1` EXTENDED").arg(name);
    }
    for (const char *routine :
         {"FUNCTION midnightFromTs", "FUNCTION monthFromTimestamp", "FUNCTION getCurrentGid",
          "FUNCTION journalText", "PROCEDURE updateTermsSync", "PROCEDURE note"})
        QTest::newRow(routine) << QStringLiteral("SHOW CREATE ") + str(routine);
    QTest::newRow("triggers") << str(
        "SELECT trigger_name, event_object_table, event_manipulation, action_timing, action_order, "
        "action_statement, definer, sql_mode, character_set_client, collation_connection, "
        "database_collation FROM information_schema.triggers "
        "WHERE trigger_schema = 'attendance' ORDER BY action_order");
    QTest::newRow("routines") << str(
        "SELECT routine_name, security_type, is_deterministic, sql_data_access, definer, sql_mode "
        "FROM information_schema.routines WHERE routine_schema = 'attendance' "
        "ORDER BY routine_name");
    QTest::newRow("database") << str("SHOW CREATE DATABASE attendance");
    QTest::newRow("open days") << str("SELECT * FROM atten WHERE `lock` = 0 ORDER BY uid, `date`");
}

void tst_DatabaseCopy::definitionsAndRows_areEqual()
{
    QFETCH(QString, statement);
    compare(statement);
}

/// Beyond what a sum of all rows says: what each cell holds.
void tst_DatabaseCopy::hiddenBytes_survive()
{
    compare(
        str("SELECT uid, HEX(name), HEX(note), HEX(photo), HEX(emblem), kind + 0, tags + 0, "
            "HEX(bits), ratio * 1e0, exact, sum, born, wakes, met, UNIX_TIMESTAMP(seen), since, "
            "HEX(place), address, HEX(facts), HEX(secret), fullName, shortName, surname "
            "FROM people ORDER BY uid"));
    QCOMPARE(rowsOf(copy->administratorParameters(),
                    str("SELECT HEX(emblem), HEX(photo), UNIX_TIMESTAMP(seen) FROM people "
                        "WHERE uid < 3 AND uid > 0 ORDER BY uid")),
             QStringList({str("F09F98802760 5C22|00270A5C1AFF0D22|1698537600.125").remove(u' '),
                          str("||1698541200.125")}));
}

void tst_DatabaseCopy::snapshots_areEqualButForLockedDays()
{
    Connection connection(str("snapshot"));
    QVERIFY(!connection.open(copy->parameters()));
    Snapshot copied;
    QVERIFY(!readSnapshot(connection.handle(), SnapshotRows::Touchable, &copied));
    connection.close();
    const Snapshot original = database->snapshot(SnapshotRows::Touchable);
    for (int table = 0; table < original.tables.size(); ++table) {
        QCOMPARE(copied.tables[table].columns, original.tables[table].columns);
        QCOMPARE(copied.tables[table].rows.size(), original.tables[table].rows.size());
    }
}

/// A pass counts the months that have days, locked or not.
void tst_DatabaseCopy::days_areTheOpenOnesAndOneOfEachLockedMonth()
{
    const QString days = str("SELECT uid, `date` FROM atten WHERE `lock` <> 0 ORDER BY 1, 2");
    const QStringList copied = rowsOf(copy->administratorParameters(), days);
    const QStringList original = database->rows(days);
    QVERIFY(!copied.isEmpty() && copied.size() < original.size() / 2);
    for (const QString &day : copied)
        QVERIFY2(original.contains(day), qPrintable(day));
    // In the login's time zone.
    const QString months = str("SELECT DISTINCT uid, monthFromTimestamp(`date`) AS month "
                               "FROM atten WHERE `lock` <> 0 ORDER BY 1, 2");
    QCOMPARE(rowsOf(copy->parameters(), months),
             rowsOf(source(str("reader")),
                    str("SELECT DISTINCT uid, EXTRACT(YEAR_MONTH FROM FROM_UNIXTIME(`date`)) AS m "
                        "FROM atten WHERE `lock` <> 0 ORDER BY 1, 2")));
}

void tst_DatabaseCopy::moves_areThoseOfTheLeaveFund()
{
    const QString moves = str("SELECT * FROM funds_move ORDER BY uid, fid, day, type");
    QStringList expected = database->rows(
        str("SELECT funds_move.* FROM funds_move JOIN funds USING (fid) "
            "WHERE iid = 3 AND unit = 2 ORDER BY uid, fid, day, type"));
    QVERIFY(!expected.isEmpty());
    QVERIFY(expected.size() < database->rows(moves).size());
    QCOMPARE(rowsOf(copy->administratorParameters(), moves), expected);
}

void tst_DatabaseCopy::whole_hasAllDaysAndMoves()
{
    for (const char *table : {"atten", "funds_move"}) {
        const qint64 all = database->value(QStringLiteral("SELECT COUNT(*) FROM ") + str(table))
                               .toLongLong();
        CopyWishes whole;
        whole.whole = true;
        QCOMPARE(rowsRead(table, whole), all);
        QVERIFY(rowsRead(table, CopyWishes()) < all);
    }
}

void tst_DatabaseCopy::people_areOnlyThoseWishedFor()
{
    database->execute(str("INSERT INTO term_sync (tid, type, ref, ref_col, ref_id, created, flags) "
                          "VALUES (1, 'U', 'people', 'uid', 2, 5, 2), "
                          "(1, 'U', 'people', 'pid', 2, 5, 2)"));
    const auto rows = [this](const QString &table, const QVector<qlonglong> &uids) {
        CopyWishes wishes;
        wishes.onlyPeople = true;
        wishes.uids = uids;
        return rowsRead(qPrintable(table), wishes);
    };
    for (const TouchedTable &table : touchedTables()) {
        if (table.person.isEmpty())
            continue;
        const QString mark = table.personMark.isEmpty() ? QString() : str(" AND ref_col = 'uid'");
        const QString open = table.name == str("atten") ? str(" AND NOT `lock`") : QString();
        const QString of2 = str("SELECT COUNT(*) FROM ") + table.name + str(" WHERE ")
            + table.person + str(" = 2") + mark;
        QCOMPARE(rows(table.name, {}), 0);
        QVERIFY2(rows(table.name, {2}) <= database->value(of2).toLongLong(),
                 qPrintable(table.name));
        QVERIFY2(rows(table.name, {2}) >= database->value(of2 + open).toLongLong(),
                 qPrintable(table.name));
    }
    QCOMPARE(rows(str("people"), {1, 2}), 2);
    QCOMPARE(rows(str("term_sync"), {2}), 1);
    QCOMPARE(rows(str("branches"), {2}), rowsRead("branches", CopyWishes()));
    database->execute(str("DELETE FROM term_sync"));
}

void tst_DatabaseCopy::ranges_giveTheSameRows_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<int>("ranges"); ///< more than at once, where one ends with each row
    QTest::newRow("days") << str("atten") << 10;
    QTest::newRow("people") << str("people") << 10;
    QTest::newRow("by a text") << str("vars") << 0;
    QTest::newRow("without a key") << str("journal") << 0;
}

/// Large tables are read piece by piece, so that neither the driver nor an interruption waits for
/// all of one.
void tst_DatabaseCopy::ranges_giveTheSameRows()
{
    QFETCH(QString, table);
    QFETCH(int, ranges);
    Connection connection(str("ranges"));
    QVERIFY(!connection.open(source()));
    CopiedSchema schema;
    QVERIFY(!readCopiedSchema(connection.handle(), CopyWishes(), &schema));
    const CopiedTable &wanted = *schema.find(table);
    const auto selects = [&] {
        QSqlQuery query(connection.handle());
        query.exec(str("SHOW SESSION STATUS LIKE 'Com_select'"));
        return query.next() ? query.value(1).toInt() : -1;
    };
    QVector<QByteArray> digests;
    QVector<int> asked;
    for (const int rows : {1000000, 1, 3}) {
        const int before = selects();
        QCryptographicHash digest(QCryptographicHash::Sha256);
        RowStream stream(connection.handle(), wanted, rowConditions(schema, wanted, CopyWishes()),
                         &digest);
        stream.setRangeRows(rows);
        while (!stream.next().isEmpty()) {
        }
        QVERIFY(stream.rows() > 0);
        digests.append(digest.result());
        asked.append(selects() - before);
    }
    QCOMPARE(digests[1], digests[0]);
    QCOMPARE(digests[2], digests[0]);
    // To each range belong its bound, its rows, and the question whether they have come to an end.
    QVERIFY2(asked[1] >= asked[0] + 3 * ranges, qPrintable(QString::number(asked[1])));
    QVERIFY(ranges > 0 || asked[1] == asked[0]);
    connection.close();
}

void tst_DatabaseCopy::settings_areThoseOfTheLogin()
{
    const QString session = str(
        "SELECT @@time_zone, @@sql_mode, @@auto_increment_increment, "
        "@@auto_increment_offset, @@group_concat_max_len, @@max_allowed_packet, "
        "@@collation_server, @@character_set_server, @@div_precision_increment, "
        "@@collation_database, @@tx_isolation, @@innodb_autoinc_lock_mode, "
        "@@global.time_zone, @@global.sql_mode, @@global.div_precision_increment, "
        "CONCAT_WS('|', FROM_UNIXTIME(1698537600), FROM_UNIXTIME(1698541200), FROM_UNIXTIME(1720000000)), "
        "midnightFromTs(1720000000)");
    database->execute(str("GRANT EXECUTE ON attendance.* TO reader@localhost"));
    const QStringList expected = rowsOf(source(), session);
    database->execute(str("REVOKE EXECUTE ON attendance.* FROM reader@localhost"));
    QVERIFY2(expected.first().startsWith(str("Europe/Prague|NO_ENGINE_SUBSTITUTION|7|3|4711|")),
             qPrintable(expected.first()));
    QVERIFY2(expected.first().contains(str("|2023-10-29 02:00:00|2023-10-29 02:00:00|"
                                           "2024-07-03 11:46:40|1719957600")),
             qPrintable(expected.first()));
    QCOMPARE(rowsOf(copy->parameters(), session), expected);
    // A machine may lose its power: nothing of the copy has to outlive that.
    QCOMPARE(rowsOf(copy->administratorParameters(),
                    str("SELECT @@innodb_flush_log_at_trx_commit, @@innodb_doublewrite")),
             QStringList(str("0|0")));
}

/// Ids, triggers, their order and definers, and the rights of the login.
void tst_DatabaseCopy::writing_endsAlike()
{
    database->execute(str("CREATE USER auditor@'%'"));
    database->execute(str("GRANT ALL ON attendance.* TO auditor@'%'"));
    database->execute(str("CREATE USER writer@localhost"));
    database->execute(str("GRANT ALL ON attendance.* TO writer@localhost"));
    const QStringList writing {
        str("INSERT INTO people (pid, surname) VALUES (77771, 'Nový')"),
        str("UPDATE people SET title = 'Dr.' WHERE pid = 77771"),
        str("INSERT INTO term_sync (tid, type, ref, ref_col, ref_id, created, flags) "
            "VALUES (1, 'U', 'people', 'uid', 1, 0, 2)"),
        str("CALL updateTermsSync(1, 2)"),
        str("DELETE FROM brape WHERE uid = 1"),
    };
    const QString looking = str(
        "SELECT uid, (SELECT GROUP_CONCAT(what, who) FROM journal WHERE uid = people.uid), "
        "(SELECT MAX(a) FROM `odd ``name; ž`), (SELECT MAX(id) FROM term_sync), "
        "(SELECT SUM(syn) FROM term) FROM people WHERE pid = 77771");
    const ConnectionParameters places[] = {source(str("writer")), copy->parameters()};
    QStringList results;
    for (const ConnectionParameters &place : places) {
        for (const QString &statement : writing)
            QCOMPARE(rowsOf(place, statement).join(u'\n'), QString());
        results += rowsOf(place, looking);
    }
    QVERIFY2(results.first().contains(str("person ")) && results.first().contains(str("auditor@%")),
             qPrintable(results.first()));
    QCOMPARE(results.at(1), results.first());
}

/// All definitions, settings and rows go into it, and are alike.
void tst_DatabaseCopy::copyOfTheCopy_hasTheSameDigest()
{
    // The login's session is part of it.
    Connection connection(str("other"));
    QVERIFY(!connection.open(copy->administratorParameters()));
    for (const char *grant :
         {"SELECT, TRIGGER, SHOW VIEW ON attendance.*", "SELECT ON mysql.proc"}) {
        QVERIFY(QSqlQuery(connection.handle())
                    .exec(QStringLiteral("GRANT %1 TO reader@localhost").arg(str(grant))));
    }
    connection.close();
    QCOMPARE(copy->parameters().user, str("reader"));
    DatabaseCopy other(path("other"));
    CopyFacts of;
    const Failure failure = other.make(copy->parameters(), CopyWishes(), &of);
    QVERIFY2(!failure, qPrintable(failure.text));
    QCOMPARE(of.digest, facts.digest);
    QCOMPARE(of.rows, facts.rows);

    // One cell more, and it is another.
    Connection changed(str("changed"));
    QVERIFY(!changed.open(other.administratorParameters()));
    CopiedSchema schema;
    QVERIFY(!readCopiedSchema(changed.handle(), CopyWishes(), &schema));
    const CopiedTable &table = *schema.find(str("people"));
    QVector<QByteArray> digests;
    for (const char *change : {"DO 1", "DO 1", "UPDATE people SET bits = 1 WHERE uid = 2"}) {
        QCryptographicHash digest(QCryptographicHash::Sha256);
        QVERIFY(QSqlQuery(changed.handle()).exec(str(change)));
        RowStream stream(changed.handle(), table, rowConditions(schema, table, CopyWishes()),
                         &digest);
        while (!stream.next().isEmpty()) {
        }
        digests.append(digest.result());
    }
    QCOMPARE(digests[1], digests[0]);
    QVERIFY(digests[2] != digests[0]);
    changed.close();
}

void tst_DatabaseCopy::missingRight_isNamed_data()
{
    QTest::addColumn<QStringList>("grants");
    QTest::addColumn<QString>("missing");
    QTest::addColumn<bool>("withoutTriggers");
    QTest::addColumn<bool>("withoutRoutines");
    QTest::addColumn<QString>("leftOut"); ///< empty where no wish helps
    const QString read = str("SELECT, SHOW VIEW ON attendance.*");
    const QString trigger = str("TRIGGER ON attendance.*");
    const QString bodies = str("SELECT ON mysql.proc");
    QTest::newRow("triggers") << QStringList {read, bodies} << str("TRIGGER ON `attendance`.*")
                              << true << false << str("Triggers of these tables cannot be seen");
    QTest::newRow("triggers of one table")
        << QStringList {read, bodies, str("TRIGGER ON attendance.people")}
        << str("TRIGGER ON `attendance`.`admins`, ") << true << false
        << str("admins, admins_people, atten, ");
    QTest::newRow("bodies") << QStringList {read, trigger} << str("SELECT ON `mysql`.`proc`")
                            << false << true << str("The routine 'getCurrentGid' cannot be read");
    QTest::newRow("bodies, of callable routines")
        << QStringList {read, trigger, str("EXECUTE ON attendance.*")}
        << str("SELECT ON `mysql`.`proc`") << false << true
        << str("The routine 'updateTermsSync' cannot be read");
    QTest::newRow("triggers and bodies")
        << QStringList {read} << str("TRIGGER ON `attendance`.*, SELECT ON `mysql`.`proc`") << true
        << true << str("Triggers of these tables cannot be seen");
    QTest::newRow("a view") << QStringList {str("SELECT ON attendance.*"), trigger, bodies}
                            << QString() << true << true << str("uses the table 'openDays'");
    QTest::newRow("nothing to be read")
        << QStringList {trigger, bodies} << str("SELECT ON `attendance`.`admins`, ") << true << true
        << QString();
    QTest::newRow("columns only")
        << QStringList {str("SELECT (aid, personalNumber) ON attendance.admins"), trigger, bodies}
        << str("SELECT ON `attendance`.`admins`, ") << true << true << QString();
    QTest::newRow("none") << QStringList {str("SELECT, TRIGGER, SHOW VIEW ON `attendanc_`.*"),
                                          bodies}
                          << QString() << false << false << QString();
    QTest::newRow("none, of all") << QStringList {str("ALL PRIVILEGES ON *.*")} << QString()
                                  << false << false << QString();
}

void tst_DatabaseCopy::missingRight_isNamed()
{
    QFETCH(QStringList, grants);
    QFETCH(QString, missing);
    QFETCH(bool, withoutTriggers);
    QFETCH(bool, withoutRoutines);
    QFETCH(QString, leftOut);
    database->execute(str("CREATE OR REPLACE USER looker@localhost"));
    for (const QString &grant : grants)
        database->execute(QStringLiteral("GRANT %1 TO looker@localhost").arg(grant));
    Connection connection(str("looker"));
    QVERIFY(!connection.open(source(str("looker"))));
    CopiedSchema schema;
    CopyWishes wishes;
    Failure failure = readCopiedSchema(connection.handle(), wishes, &schema);
    QVERIFY2(failure.text.contains(missing), qPrintable(failure.text));
    QCOMPARE(failure.exitCode, missing.isEmpty() ? ExitClean : ExitRefused);
    if (!missing.isEmpty())
        QVERIFY2(
            failure.text.startsWith(str("the copy of database 'attendance' would not be whole: "
                                        "the login 'looker@localhost' lacks ")),
            qPrintable(failure.text));
    QCOMPARE(failure.text.contains(str("--without-triggers")),
             withoutTriggers && !leftOut.isEmpty() && !missing.isEmpty());
    QCOMPARE(failure.text.contains(str("--without-routines")),
             withoutRoutines && !leftOut.isEmpty() && !missing.isEmpty());

    wishes.withoutTriggers = withoutTriggers;
    wishes.withoutRoutines = withoutRoutines;
    failure = readCopiedSchema(connection.handle(), wishes, &schema);
    QCOMPARE(failure.exitCode, missing.isEmpty() || !leftOut.isEmpty() ? ExitClean : ExitRefused);
    QVERIFY2(schema.leftOut.join(u' ').contains(leftOut), qPrintable(schema.leftOut.join(u'\n')));
    connection.close();
}

void tst_DatabaseCopy::unreadableTableOfATrigger_isLeftOut()
{
    database->execute(str("CREATE OR REPLACE USER looker@localhost"));
    for (const QString &table : tablesOfPass())
        database->execute(
            QStringLiteral("GRANT SELECT, TRIGGER ON attendance.%1 TO looker@localhost")
                .arg(table));
    database->execute(str("GRANT SELECT, TRIGGER ON attendance.departments TO looker@localhost"));
    database->execute(str("GRANT SELECT ON mysql.proc TO looker@localhost"));
    database->execute(str("CREATE TRIGGER elsewhere BEFORE INSERT ON vars FOR EACH ROW "
                          "SET NEW.value = (SELECT MAX(x) FROM other.settings)"));
    Connection connection(str("looker"));
    QVERIFY(!connection.open(source(str("looker"))));
    CopiedSchema schema;
    const Failure failure = readCopiedSchema(connection.handle(), CopyWishes(), &schema);
    connection.close();
    database->execute(str("DROP TRIGGER elsewhere"));
    QVERIFY2(!failure, qPrintable(failure.text));
    const QString leftOut = schema.leftOut.join(u'\n');
    for (const char *sentence :
         {"Trigger 'second' uses the table 'journal', which the login may not read",
          "Routine 'journalText' uses the table 'openDays', which the login may not read",
          "Trigger 'elsewhere' uses 'other.settings' of another database"})
        QVERIFY2(leftOut.contains(str(sentence)), qPrintable(leftOut));
    QCOMPARE(schema.leftOut.size(), 3);
    QVERIFY(!schema.find(str("journal")));
}

/// A pass does not find it at the source either.
void tst_DatabaseCopy::missingTable_isAWarning()
{
    const HiddenTable hidden(*database, "people_pam");
    Connection connection(str("reader"));
    QVERIFY(!connection.open(source()));
    CopiedSchema schema;
    const Failure failure = readCopiedSchema(connection.handle(), CopyWishes(), &schema);
    QVERIFY2(!failure, qPrintable(failure.text));
    QVERIFY(schema.warnings.contains(
        str("The database has no table 'people_pam', which a pass uses.")));
    connection.close();
}

void tst_DatabaseCopy::refusal_makesNothing()
{
    DatabaseCopy refused(path("refused"));
    CopyFacts none;
    const Failure failure = refused.make(source(str("talvenhr")), CopyWishes(), &none);
    QCOMPARE(failure.exitCode, ExitRefused);
    QVERIFY2(failure.text.contains(str("SELECT ON `attendance`.`term_sync`")),
             qPrintable(failure.text));
    QVERIFY(!QDir(path("refused")).exists());
    QCOMPARE(none.rows, 0);

    const Failure unreachable = refused.make(source(str("nobody")), CopyWishes(), &none);
    QCOMPARE(unreachable.exitCode, ExitDatabase);
}

/// Also in the middle of a large table, which nobody waits for then.
void tst_DatabaseCopy::interruption_endsTheCopy()
{
    DatabaseCopy broken(path("broken"));
    broken.setInterruption([this] { return QDir(path("broken/data/attendance")).exists(); });
    CopyFacts some;
    const Failure failure = broken.make(source(), CopyWishes(), &some);
    QCOMPARE(failure.exitCode, ExitInterrupted);
    QVERIFY2(failure.text.startsWith(str("interrupted")), qPrintable(failure.text));
    QTRY_COMPARE_WITH_TIMEOUT(
        database->value(str("SELECT COUNT(*) FROM information_schema.processlist "
                            "WHERE user = 'reader'")),
        str("0"), longestWait);
    QVERIFY(some.rows < facts.rows);
}

/// As behind a network that has gone: nothing says that no answer will come.
void tst_DatabaseCopy::silentSource_endsTheCopy()
{
    const auto server = static_cast<pid_t>(database->server().processId());
    ConnectionParameters impatient = source();
    impatient.connectOptions = str("MYSQL_OPT_READ_TIMEOUT=1");
    DatabaseCopy broken(path("silent"));
    broken.setInterruption([this, server] {
        if (QDir(path("silent/data/attendance")).exists())
            ::kill(server, SIGSTOP);
        return false;
    });
    CopyFacts some;
    const Failure failure = broken.make(impatient, CopyWishes(), &some);
    ::kill(server, SIGCONT);
    QCOMPARE(failure.exitCode, ExitDatabase);
    QVERIFY2(failure.text.contains(str(" of database 'attendance' cannot be read: "))
                 || failure.text.startsWith(str("database 'attendance' cannot be read: ")),
             qPrintable(failure.text));
    QVERIFY(some.rows < facts.rows);
}

void tst_DatabaseCopy::killedReading_isNoEndOfTheRows()
{
    Connection connection(str("killed"));
    QVERIFY(!connection.open(source()));
    {
        CopiedSchema schema;
        QVERIFY(!readCopiedSchema(connection.handle(), CopyWishes(), &schema));
        const CopiedTable &table = *schema.find(str("people"));
        QVERIFY(QSqlQuery(connection.handle()).exec(str("SET max_statement_time = 0.05")));
        QCryptographicHash digest(QCryptographicHash::Sha256);
        RowStream stream(connection.handle(), table, {str("SLEEP(0.02) = 0"), QString()}, &digest);
        while (!stream.next().isEmpty()) {
        }
        QCOMPARE(stream.failure().exitCode, ExitDatabase);
        QVERIFY2(stream.failure().text.startsWith(str("table 'people' of database 'attendance' ")),
                 qPrintable(stream.failure().text));
    }
    connection.close();
}

QTEST_GUILESS_MAIN(tst_DatabaseCopy)
#include "tst_databasecopy.moc"
