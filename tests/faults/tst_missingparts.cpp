// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A pass without any one of the tables, columns and stored routines that it needs.
#include "host/catalogue/neededschema.h"
#include "support/faults/faultround.h"

#include <QSet>
#include <QtTest>

namespace {

/// What the calls of a pass name: "table: column column; table: ...".
struct Names
{
    const char *calls;
    const char *columns;
};

const Names names[] = {
    {"force A.blocks C.blocks A.list C.list A.prepare C.prepare prepare", "vars: name value"},
    {"people",
     "people: pid pamId title name surname title2 phone begin end rsBegin rsEnd rsText calendarID "
     "bid status; branches: bid number"},
    {"branches", "branches: bid number"},
    {"fund", "funds: fid iid unit"},
    {"A.move B.move C.move", "funds_move: type day fid uid; people: pid"},
    {"A.attendance B.attendance C.attendance", "people: uid calc pid; atten: uid lock ok"},
    {"B.open", "atten: uid lock ok date"},
    {"A.insert C.insert",
     "people: pid pamId title name surname title2 phone begin end created rsBegin rsEnd rsText "
     "type did calendarID bid edited status"},
    {"A.pamUid C.pamUid B.newsUid A.uid B.uid", "people: uid pid"},
    {"A.pamRow C.pamRow", "people_pam: uid id"},
    {"B.update",
     "people: pamId title name surname title2 phone begin end edited editor rsBegin rsEnd rsText "
     "lastCalc type did calendarID bid pid"},
    {"B.news",
     "people_term: tid uid; term: tid status flags; "
     "term_sync: tid type ref ref_col ref_id created flags"},
    // As far as the routine needs them.
    {"B.call", "people_term: tid uid; term: tid status flags syn"},
    {"B.before", "funds_move: value uid day fid; people: uid pid"},
    {"B.corrections", "funds_move: value uid day fid type; people: uid pid"},
    {"B.correction", "funds_move: type day month value fid uid"},
    {"A.admin B.admin", "admins: aid personalNumber"},
    {"A.reset B.reset A.set B.set", "admins_people: aid uid request"},
    {"A.member B.member", "brape: bid uid; people: pid"},
    {"A.group B.group", "groups: gid parent calendarID; mastergroups: mgid; branches: bid mgid"},
    {"A.plan B.plan A.planned B.planned", "groups_plan: gid uid since"},
    {"A.months B.months", "groups_month: gid uid month; atten: date uid; people: uid gid"},
    {"A.planReopened B.planReopened B.reopened", "atten: ok lock man date uid"},
    {"A.planMarked B.planMarked B.marked", "people: lastCalc calc uid"},
    {"1.join 2.join", "brape: bid uid since; people: uid"},
    {"1.terminals 2.terminals", "term: tid status bid"},
    {"1.admins 2.admins", "bradm: bid aid"},
    {"31.people 32.people 33.people", "people_term: tid uid"},
    {"31.queue 32.queue 33.queue",
     "term_sync: tid type ref ref_col ref_id created flags; people: uid status"},
    {"31.mark 32.mark 33.mark", "term: syn status tid"},
    {"1.underAdmins", "admins_people: aid uid"},
};

/// The calls that name the table, or the column if there is one.
QStringList callsNaming(const QString &table, const QString &column = QString())
{
    QStringList calls;
    for (const Names &name : names) {
        const QStringList tables = QString::fromLatin1(name.columns).split(QStringLiteral("; "));
        for (const QString &one : tables) {
            if (one.section(QStringLiteral(": "), 0, 0) != table)
                continue;
            const QStringList columns = one.section(QStringLiteral(": "), 1)
                                            .split(QLatin1Char(' '));
            if (column.isNull() || columns.contains(column))
                calls += QString::fromLatin1(name.calls).split(QLatin1Char(' '));
        }
    }
    return calls;
}

} // namespace

class tst_MissingParts : public FaultFixture
{
    Q_OBJECT

private Q_SLOTS:
    void names_areOfTheDatabase();
    void tableMissing_data();
    void tableMissing();
    void columnMissing_data();
    void columnMissing();
    void columnMissing_uidOfPeopleTakesAMemberForAnother();
    void routineMissing_data();
    void routineMissing();

private:
    QStringList tableNames();
};

QStringList tst_MissingParts::tableNames()
{
    return database->rows(QStringLiteral("SHOW TABLES"));
}

/// Nothing of the table is misspelt, and the catalogue knows all of it.
void tst_MissingParts::names_areOfTheDatabase()
{
    const QStringList known = database->rows(
        QStringLiteral("SELECT CONCAT(table_name, '.', column_name) FROM "
                       "information_schema.columns WHERE table_schema = DATABASE()"));
    QSet<QString> needed;
    QSet<QString> named;
    for (const NeededTable &table : neededTables()) {
        for (const NeededColumn &column : table.columns)
            needed.insert(table.name + QLatin1Char('.') + column.name);
    }
    const QStringList calls = ExpectedPass(0, Fault(), serverTable()).calls();
    for (const Names &name : names) {
        const QStringList tables = QString::fromLatin1(name.columns).split(QStringLiteral("; "));
        for (const QString &table : tables) {
            const QStringList columns = table.section(QStringLiteral(": "), 1)
                                            .split(QLatin1Char(' '));
            for (const QString &column : columns) {
                const QString full = table.section(QStringLiteral(": "), 0, 0) + QLatin1Char('.')
                    + column;
                QVERIFY2(known.contains(full), qPrintable(full));
                named.insert(full);
            }
        }
        const QStringList ids = QString::fromLatin1(name.calls).split(QLatin1Char(' '));
        for (const QString &id : ids)
            QVERIFY2(calls.contains(id), qPrintable(id));
    }
    QCOMPARE(named, needed);
}

void tst_MissingParts::tableMissing_data()
{
    QTest::addColumn<QString>("table");
    const QStringList tables = tableNames();
    for (const QString &table : tables)
        QTest::newRow(qPrintable(table)) << table;
}

void tst_MissingParts::tableMissing()
{
    QFETCH(QString, table);
    FaultRound round(*database);
    database->hideTable(table);
    round.comparePass(*undisturbed, only(callsNaming(table)),
                      {QStringLiteral("1146"),
                       QStringLiteral("Table 'attendance\\.%1' doesn't exist .*").arg(table)},
                      [&] { database->showTable(table); });
}

void tst_MissingParts::columnMissing_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("column");
    const QStringList tables = tableNames();
    for (const QString &table : tables) {
        const QStringList columns = database->rows(
            QStringLiteral("SELECT column_name FROM information_schema.columns "
                           "WHERE table_schema = DATABASE() AND table_name = '%1'")
                .arg(table));
        for (const QString &column : columns) {
            const QString name = table + QLatin1Char('.') + column;
            // That one has a test of its own.
            if (name != QLatin1String("people.uid"))
                QTest::newRow(qPrintable(name)) << table << column;
        }
    }
}

void tst_MissingParts::columnMissing()
{
    QFETCH(QString, table);
    QFETCH(QString, column);
    FaultRound round(*database);
    const QString rename = QStringLiteral("ALTER TABLE `%1` RENAME COLUMN `%2` TO `%3`");
    const QString away = QStringLiteral("gone");
    database->execute(rename.arg(table, column, away));
    round.comparePass(
        *undisturbed, only(callsNaming(table, column)),
        {QStringLiteral("1054"), QStringLiteral("Unknown column '.*%1' in .*").arg(column)},
        [&] { database->execute(rename.arg(table, away, column)); });
}

/// A selection within a statement that lacks the column takes that of the table around it: the
/// question for one member of a branch is answered with all. So A does not join branch 1, and no
/// message says so.
void tst_MissingParts::columnMissing_uidOfPeopleTakesAMemberForAnother()
{
    FaultRound round(*database);
    database->execute(QStringLiteral("ALTER TABLE people RENAME COLUMN uid TO gone"));
    round.f.tick();
    database->execute(QStringLiteral("ALTER TABLE people RENAME COLUMN gone TO uid"));
    const QStringList events = round.f.log.take();
    QCOMPARE(events.filter(QStringLiteral("critical THRWorker::dbCheckPersonInBranch()")),
             QStringList());
    QCOMPARE(events.filter(QStringLiteral("INSERT INTO brape")),
             lines({"sql exec INSERT INTO brape (bid, uid, since) SELECT 2 bid, uid, "
                    "UNIX_TIMESTAMP() since FROM people WHERE uid IN(0) "
                    "ON DUPLICATE KEY UPDATE since=UNIX_TIMESTAMP()"}));
    round.recover();
    const Fault fault = only(callsNaming(QStringLiteral("people"), QStringLiteral("uid")));
    QCOMPARE(contentDifference(undisturbed->contentInTheEnd(), round.company.content()),
             lossesOf(ExpectedPass(0, fault, serverTable())));
}

void tst_MissingParts::routineMissing_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("routine");
    QTest::addColumn<QString>("calls");
    QTest::addColumn<bool>("allRights");

    const auto add = [](const char *kind, const char *routine, const char *calls) {
        for (const bool allRights : {false, true}) {
            QTest::addRow("%s, %s", routine, allRights ? "rights on all" : "rights on each")
                << QString::fromLatin1(kind) << QString::fromLatin1(routine)
                << QString::fromLatin1(calls) << allRights;
        }
    };
    add("FUNCTION", "midnightFromTs", "A.move B.move C.move B.open B.corrections");
    add("FUNCTION", "monthFromTimestamp", "B.correction A.months B.months");
    add("FUNCTION", "getCurrentGid", "A.months B.months");
    add("PROCEDURE", "updateTermsSync", "B.call");
}

/// Only who may execute anything learns that the routine is missing. Otherwise its right is missing
/// as well: it goes with the routine.
void tst_MissingParts::routineMissing()
{
    QFETCH(QString, kind);
    QFETCH(QString, routine);
    QFETCH(QString, calls);
    QFETCH(bool, allRights);
    FaultRound round(*database);
    if (allRights)
        database->execute(
            QStringLiteral("GRANT EXECUTE ON attendance.* TO 'talvenhr'@'localhost'"));
    // Name, SQL mode, statement, character set, ...
    const QString creation = database->rows(QStringLiteral("SHOW CREATE %1 %2").arg(kind, routine))
                                 .first()
                                 .section(QLatin1Char('|'), 2, -4);
    database->execute(QStringLiteral("DROP %1 %2").arg(kind, routine));

    const Refusal missing {
        QStringLiteral("1305"),
        QStringLiteral("%1 attendance\\.%2 does not exist .*").arg(kind, routine)};
    const Refusal denied {QStringLiteral("1370"),
                          QStringLiteral("execute command denied to user 'talvenhr'@'localhost' "
                                         "for routine 'attendance\\.%1' .*")
                              .arg(routine)};
    const Fault fault = only(calls.split(QLatin1Char(' ')));
    round.comparePass(*undisturbed, fault, allRights ? missing : denied, [&] {
        database->execute(creation);
        database->execute(
            QStringLiteral("GRANT EXECUTE ON %1 %2 TO 'talvenhr'@'localhost'").arg(kind, routine));
        if (allRights)
            database->execute(
                QStringLiteral("REVOKE EXECUTE ON attendance.* FROM 'talvenhr'@'localhost'"));
    });
}

QTEST_GUILESS_MAIN(tst_MissingParts)
#include "tst_missingparts.moc"
