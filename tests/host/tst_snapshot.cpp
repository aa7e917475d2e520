// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Snapshots of the tables that a pass touches, on the private server.
#include "host/database/difference.h"
#include "support/eventlog.h"
#include "support/recordeddatabase.h"
#include "support/testdatabase.h"

#include <QSqlQuery>
#include <QtTest>

#include <memory>

class tst_Snapshot : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void allTables_areThereWithTheirKeys();
    void rows_areReadWithAllColumnsAndKinds();
    void unknownColumns_comeAlong();
    void touchable_leavesOutWhatAPassLeavesAlone();
    void names_areThoseOfTheIds();
    void oneMoment_whileOthersWrite_data();
    void oneMoment_whileOthersWrite();
    void keysThatTheServerOrdersOtherwise_areFoundAgain();
    void generalLog_showsNothingButReading();
    void missingTable_isNamed();
    void missingKey_isNamed();
    void missingRight_isNamed();
    void lostConnection_isNoEndOfTheRows();

private:
    Failure read(Snapshot *snapshot) const
    {
        return readSnapshot(reader, SnapshotRows::Touchable, snapshot);
    }
    QVector<TableRow> rowsOf(const char *table, SnapshotRows wanted);

    std::unique_ptr<TestDatabase> database;
    QSqlDatabase reader; ///< the administrator's, with the test's hooks in between
};

void tst_Snapshot::initTestCase()
{
    database = std::make_unique<TestDatabase>();
    QVERIFY2(database->error().isEmpty(), qPrintable(database->error()));
}

void tst_Snapshot::init()
{
    // In one transaction, for speed.
    database->execute(QStringLiteral("BEGIN"));
    database->clear();
    database->execute(QStringLiteral("COMMIT"));
    reader = recordedHandle(database->administratorHandle());
    QVERIFY(reader.open());
}

void tst_Snapshot::cleanup()
{
    const QString name = reader.connectionName();
    reader = QSqlDatabase();
    QSqlDatabase::removeDatabase(name);
}

QVector<TableRow> tst_Snapshot::rowsOf(const char *table, SnapshotRows wanted)
{
    const Snapshot snapshot = database->snapshot(wanted);
    const TableContent *content = snapshot.find(QString::fromLatin1(table));
    return content ? content->rows : QVector<TableRow>();
}

/// What the wing says of the tables holds for the stand-in.
void tst_Snapshot::allTables_areThereWithTheirKeys()
{
    const Snapshot snapshot = database->snapshot();
    QCOMPARE(snapshot.tables.size(), touchedTables().size());
    for (const TableContent &content : snapshot.tables) {
        const TouchedTable &table = *content.table;
        const QString keyColumns = QStringLiteral("SELECT column_name "
                                                  "FROM information_schema.key_column_usage "
                                                  "WHERE table_schema = DATABASE() "
                                                  "AND table_name = '%1' "
                                                  "AND constraint_name = 'PRIMARY' "
                                                  "ORDER BY ordinal_position")
                                       .arg(table.name);
        QCOMPARE(table.key, database->rows(keyColumns));
        QStringList known = table.key + table.moments + table.stamps;
        known << table.person << table.personMark << table.generated << table.list;
        known.removeAll(QString());
        for (const QString &column : qAsConst(known))
            QVERIFY2(content.columns.contains(column), qPrintable(table.name + column));
    }
}

void tst_Snapshot::rows_areReadWithAllColumnsAndKinds()
{
    database->execute(QStringLiteral("INSERT INTO people (uid, pid, pamId, surname, begin, type) "
                                     "VALUES (7, 10011, '1001.1', 'Ďuriš', -5, 4)"));
    const Snapshot snapshot = database->snapshot();
    const TableContent *people = snapshot.find(QStringLiteral("people"));
    QCOMPARE(people->columns,
             database->rows(QStringLiteral("SELECT column_name FROM information_schema.columns "
                                           "WHERE table_schema = DATABASE() "
                                           "AND table_name = 'people' ORDER BY ordinal_position")));
    QCOMPARE(people->rows.size(), 1);
    const auto cell = [people](const char *column) {
        return people->rows.first().value(people->indexOf(QString::fromLatin1(column)));
    };
    QCOMPARE(cell("uid"), QVariant(7LL));
    QCOMPARE(cell("pamId"), QVariant(QStringLiteral("1001.1")));
    QCOMPARE(cell("surname"), QVariant(QStringLiteral("Ďuriš")));
    QCOMPARE(cell("name"), QVariant(QStringLiteral("")));
    QCOMPARE(cell("begin"), QVariant(-5LL));
    QCOMPARE(cell("end"), QVariant());
    // One byte in the table, a number like others here.
    QCOMPARE(cell("type"), QVariant(4LL));
    QCOMPARE(cell("type").userType(), int(QMetaType::LongLong));
    QVERIFY(!snapshot.find(QStringLiteral("branches")));
}

void tst_Snapshot::unknownColumns_comeAlong()
{
    database->execute(QStringLiteral("ALTER TABLE brape ADD wage DECIMAL(9,2), ADD hired DATE"));
    database->execute(QStringLiteral("INSERT INTO brape VALUES (1, 2, 3, 12.5, '2026-03-01')"));
    const QVector<TableRow> rows = rowsOf("brape", SnapshotRows::All);
    database->execute(QStringLiteral("ALTER TABLE brape DROP wage, DROP hired"));
    QCOMPARE(rows, QVector<TableRow>({{1LL, 2LL, 3LL, 12.5, QStringLiteral("2026-03-01")}}));
}

void tst_Snapshot::touchable_leavesOutWhatAPassLeavesAlone()
{
    database->execute(QStringLiteral("INSERT INTO atten (uid, `date`, `lock`, ok) VALUES "
                                     "(1, 10, 1, 1), (1, 20, 0, 1), (2, 10, 0, -1)"));
    database->execute(QStringLiteral("INSERT INTO funds_move VALUES (1, 2, 10, 1, 202601, 2000), "
                                     "(1, 2, 10, 3, 202601, 50)"));
    database->execute(QStringLiteral("INSERT INTO vars VALUES ('OQS.THRWorker.forceSync', '1'), "
                                     "('exportPam.1.selPeople', '7'), ('mail.password', 'x')"));
    QCOMPARE(rowsOf("atten", SnapshotRows::All).size(), 3);
    QCOMPARE(rowsOf("funds_move", SnapshotRows::All).size(), 2);
    QCOMPARE(rowsOf("vars", SnapshotRows::All).size(), 3);

    QCOMPARE(rowsOf("atten", SnapshotRows::Touchable),
             QVector<TableRow>({{1LL, 20LL, 0LL, 0LL, 1LL}, {2LL, 10LL, 0LL, 0LL, -1LL}}));
    QCOMPARE(rowsOf("funds_move", SnapshotRows::Touchable),
             QVector<TableRow>({{1LL, 2LL, 10LL, 3LL, 202601LL, 50LL}}));
    QCOMPARE(rowsOf("vars", SnapshotRows::Touchable),
             QVector<TableRow>({{QStringLiteral("OQS.THRWorker.forceSync"), QStringLiteral("1")},
                                {QStringLiteral("exportPam.1.selPeople"), QStringLiteral("7")}}));
}

void tst_Snapshot::names_areThoseOfTheIds()
{
    database->execute(QStringLiteral("INSERT INTO branches (bid, number, name) VALUES "
                                     "(1, 100, 'Výroba'), (2, NULL, 'Externí')"));
    database->execute(QStringLiteral("INSERT INTO groups (gid, name) VALUES (1, 'Zmeny')"));
    database->execute(QStringLiteral("INSERT INTO term (tid, name) VALUES (1, 'Vrátnica')"));
    database->execute(QStringLiteral("INSERT INTO admins (aid, personalNumber) VALUES (1, 1001)"));
    database->execute(QStringLiteral("INSERT INTO funds (fid, name) VALUES (1, 'Dovolenka')"));
    const IdNames names = database->snapshot().names;
    QCOMPARE(names.value(QStringLiteral("bid")).value(1), QStringLiteral("100 Výroba"));
    QCOMPARE(names.value(QStringLiteral("bid")).value(2), QStringLiteral("Externí"));
    QCOMPARE(names.value(QStringLiteral("gid")).value(1), QStringLiteral("Zmeny"));
    QCOMPARE(names.value(QStringLiteral("tid")).value(1), QStringLiteral("Vrátnica"));
    QCOMPARE(names.value(QStringLiteral("aid")).value(1), QStringLiteral("1001"));
    QCOMPARE(names.value(QStringLiteral("fid")).value(1), QStringLiteral("Dovolenka"));
}

void tst_Snapshot::oneMoment_whileOthersWrite_data()
{
    QTest::addColumn<QString>("level");
    QTest::newRow("the server's default") << QStringLiteral("REPEATABLE READ");
    QTest::newRow("another level") << QStringLiteral("READ COMMITTED");
}

/// Others write between the first table and the next ones.
void tst_Snapshot::oneMoment_whileOthersWrite()
{
    QFETCH(QString, level);
    QSqlQuery session(reader);
    QVERIFY(session.exec(QStringLiteral("SET SESSION TRANSACTION ISOLATION LEVEL ") + level));
    database->execute(QStringLiteral("INSERT INTO brape VALUES (1, 1, 0)"));

    int written = 0;
    Snapshot meanwhile;
    {
        const RecordedCallHook hook([&](const QString &call) {
            if (call.startsWith(QStringLiteral("exec SELECT * FROM `people_pam`"))) {
                ++written;
                database->execute(QStringLiteral("INSERT INTO people (uid) VALUES (1)"));
                database->execute(QStringLiteral("INSERT INTO people_term VALUES (5, 1)"));
                database->execute(QStringLiteral("DELETE FROM brape"));
            }
            return QSqlError();
        });
        const Failure failure = read(&meanwhile);
        QVERIFY2(!failure, qPrintable(failure.text));
    }
    QCOMPARE(written, 1);
    QCOMPARE(meanwhile.find(QStringLiteral("people_term"))->rows.size(), 0);
    QCOMPARE(meanwhile.find(QStringLiteral("brape"))->rows.size(), 1);

    // The next one sees all of it: the moment ended with the snapshot.
    Snapshot next;
    QVERIFY(!read(&next));
    QCOMPARE(difference(meanwhile, next).size(), 3);
}

/// The server takes letters of both cases for the same.
void tst_Snapshot::keysThatTheServerOrdersOtherwise_areFoundAgain()
{
    database->execute(QStringLiteral("INSERT INTO vars VALUES ('exportPam.1.b', '1'), "
                                     "('exportPam.1.A', '2'), ('OQS.THRWorker.forceSync', '1'), "
                                     "('exportPam.1.Č', '3')"));
    const Snapshot before = database->snapshot();
    database->execute(QStringLiteral("UPDATE vars SET value = '9' WHERE name = 'exportPam.1.A'"));
    const QVector<Change> changes = difference(before, database->snapshot());
    QCOMPARE(changes.size(), 1);
    QCOMPARE(changes.first().before,
             TableRow({QStringLiteral("exportPam.1.A"), QStringLiteral("2")}));
    QCOMPARE(changes.first().after,
             TableRow({QStringLiteral("exportPam.1.A"), QStringLiteral("9")}));
}

void tst_Snapshot::generalLog_showsNothingButReading()
{
    database->execute(QStringLiteral("SET GLOBAL log_output = 'TABLE'"));
    QSqlQuery session(reader);
    QVERIFY(session.exec(QStringLiteral("SELECT CONNECTION_ID()")) && session.next());
    const QString id = session.value(0).toString();
    session.finish();
    database->execute(QStringLiteral("SET GLOBAL general_log = 1"));
    Snapshot snapshot;
    QVERIFY(!read(&snapshot));
    database->execute(QStringLiteral("SET GLOBAL general_log = 0"));

    QStringList statements = database->rows(
        QStringLiteral("SELECT CONVERT(argument USING utf8mb4) FROM mysql.general_log "
                       "WHERE thread_id = %1 AND command_type = 'Query'")
            .arg(id));
    QVERIFY(statements.size() > 3);
    QCOMPARE(statements.takeFirst(),
             QStringLiteral("SET TRANSACTION ISOLATION LEVEL REPEATABLE READ"));
    QCOMPARE(statements.takeFirst(),
             QStringLiteral("START TRANSACTION WITH CONSISTENT SNAPSHOT, READ ONLY"));
    QCOMPARE(statements.takeLast(), QStringLiteral("COMMIT"));
    QCOMPARE(statements.size(), touchedTables().size() + namedIds().size());
    for (const QString &statement : qAsConst(statements))
        QVERIFY2(statement.startsWith(QStringLiteral("SELECT ")), qPrintable(statement));
}

void tst_Snapshot::missingTable_isNamed()
{
    Snapshot snapshot;
    for (const char *table : {"term_sync", "branches"}) {
        const HiddenTable hidden(*database, table);
        const Failure failure = read(&snapshot);
        QCOMPARE(failure.exitCode, ExitDatabase);
        QCOMPARE(failure.text,
                 QStringLiteral("table '%1' of database 'attendance' cannot be read: "
                                "Table 'attendance.%1' doesn't exist")
                     .arg(QLatin1String(table)));
    }
    // Nothing is left open by a failure.
    database->execute(QStringLiteral("INSERT INTO people_pam VALUES (1, 1)"));
    QVERIFY(!read(&snapshot));
    QCOMPARE(snapshot.find(QStringLiteral("people_pam"))->rows.size(), 1);
}

void tst_Snapshot::missingKey_isNamed()
{
    database->execute(QStringLiteral("ALTER TABLE people_pam CHANGE uid person INT UNSIGNED"));
    Snapshot snapshot;
    const Failure failure = read(&snapshot);
    database->execute(QStringLiteral("ALTER TABLE people_pam CHANGE person uid INT UNSIGNED"));
    QVERIFY2(failure.text.startsWith(
                 QStringLiteral("table 'people_pam' of database 'attendance' cannot be read: "
                                "Unknown column 'uid'")),
             qPrintable(failure.text));
}

/// The plugin itself only writes into the queue.
void tst_Snapshot::missingRight_isNamed()
{
    QSqlDatabase plugin = database->handle();
    QVERIFY(plugin.open());
    Snapshot snapshot;
    const Failure failure = readSnapshot(plugin, SnapshotRows::Touchable, &snapshot);
    QCOMPARE(failure.text,
             QStringLiteral("table 'term_sync' of database 'attendance' cannot be read: "
                            "SELECT command denied to user 'talvenhr'@'localhost' for table "
                            "`attendance`.`term_sync`"));
    database->execute(QStringLiteral("GRANT SELECT ON term_sync TO 'talvenhr'@'localhost'"));
    QVERIFY(!readSnapshot(plugin, SnapshotRows::Touchable, &snapshot));
    database->execute(QStringLiteral("REVOKE SELECT ON term_sync FROM 'talvenhr'@'localhost'"));
}

void tst_Snapshot::lostConnection_isNoEndOfTheRows()
{
    QSqlQuery session(reader);
    QVERIFY(session.exec(QStringLiteral("SELECT CONNECTION_ID()")) && session.next());
    const QString id = session.value(0).toString();
    session.finish();
    Snapshot snapshot;
    {
        const RecordedCallHook hook([&](const QString &call) {
            if (call.startsWith(QStringLiteral("exec SELECT * FROM `atten`")))
                database->execute(QStringLiteral("KILL ") + id);
            return QSqlError();
        });
        const Failure failure = read(&snapshot);
        QCOMPARE(failure.exitCode, ExitDatabase);
        QVERIFY2(failure.text.startsWith(
                     QStringLiteral("table 'atten' of database 'attendance' cannot be read: ")),
                 qPrintable(failure.text));
    }
    Failure failure = read(&snapshot);
    QVERIFY2(failure.text.startsWith(QStringLiteral("database 'attendance' cannot be read: ")),
             qPrintable(failure.text));

    // Within the last rows it shows at the end of the transaction.
    QVERIFY(reader.open());
    const RecordedCallHook hook([](const QString &call) {
        return call == QStringLiteral("exec COMMIT")
            ? QSqlError(QString(), QStringLiteral("gone away"), QSqlError::ConnectionError)
            : QSqlError();
    });
    failure = read(&snapshot);
    QCOMPARE(failure.text, QStringLiteral("database 'attendance' cannot be read: gone away"));
}

QTEST_GUILESS_MAIN(tst_Snapshot)
#include "tst_snapshot.moc"
