// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A pass that is taken back leaves the tables as they were, but for what has to stay; and what
// others have changed in between survives.
//
// Environment: TALVENHR_COMPANIES, how many generated companies (default: 16); TALVENHR_SEED, the
// first of their seeds (default: 1).
#include "host/changes/changesbuilder.h"
#include "host/changes/changesjson.h"
#include "host/company/companyrows.h"
#include "host/company/draw.h"
#include "host/company/exportwriter.h"
#include "host/company/life.h"
#include "host/undo/undofacts.h"
#include "host/undo/undorun.h"
#include "support/contentdifference.h"
#include "support/databasefixture.h"
#include "support/databaseworker.h"
#include "support/localseconds.h"
#include "support/undomodel.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QtTest>

namespace {

const QDate firstDay(2026, 1, 19);

int environmentNumber(const char *name, int otherwise)
{
    return qEnvironmentVariableIsSet(name) ? qEnvironmentVariableIntValue(name) : otherwise;
}

/// The worker remembers the uids of all numbers as long as the process lives.
Company companyOf(int seed)
{
    CompanyPlan plan;
    plan.people = 5 + seed * 37 % 96;
    plan.seed = static_cast<quint32>(seed);
    plan.day = firstDay;
    Company company = generatedCompany(plan);
    const uint offset = static_cast<uint>(seed) * 100000;
    for (Employment &employment : company.employments) {
        employment.number += offset;
        if (employment.supervisor != 0)
            employment.supervisor += offset;
    }
    for (Administrator &administrator : company.administrators) {
        if (administrator.number != 0)
            administrator.number += offset;
    }
    return company;
}

/// A day on which everything happens.
LifeRates busyRates()
{
    LifeRates rates;
    rates.hired = rates.endAnnounced = rates.newCalendar = rates.newSupervisor = 900;
    rates.returned = 3000;
    rates.endWithdrawn = rates.fellIll = rates.renamed = rates.newPhone = rates.moved = 900;
    rates.leaveTaken = 2000;
    return rates;
}

/// What a rehearsal says of the same pass: other ids for those who are new, and other moments.
Changes asRehearsed(const Changes &real)
{
    Changes changes = real;
    changes.header.how = ChangesHeader::Rehearsed;
    for (ChangedPerson &person : changes.people) {
        const bool isNew = person.kinds.has(ChangeKind::Added);
        for (Change &change : person.rows) {
            for (int place = 0; place < change.columns.size() && !change.after.isEmpty(); ++place) {
                QVariant &cell = change.after[place];
                const QString &column = change.columns.at(place);
                if (isNew && column == change.table->person)
                    cell = cell.toLongLong() + 5000;
                if (change.table->stamps.contains(column) && cell.isValid())
                    cell = cell.toLongLong() + 17;
            }
        }
        if (isNew)
            person.person.uid += 5000;
    }
    return changes;
}

/// All that has to be as before: no moments of writing and marks of calculation, no attendance, no
/// corrections of leave, which may be 0 now, nothing of the terminals' queue.
QStringList whatComesBack(const Snapshot &snapshot)
{
    const QStringList left {QStringLiteral("atten"), QStringLiteral("funds_move"),
                            QStringLiteral("term"), QStringLiteral("term_sync")};
    const QStringList stays {QStringLiteral("edited"), QStringLiteral("lastCalc"),
                             QStringLiteral("calc")};
    QStringList lines;
    for (const TableContent &content : snapshot.tables) {
        for (const TableRow &row : content.rows) {
            QStringList cells {content.table->name};
            for (int place = 0; place < row.size(); ++place) {
                if (!stays.contains(content.columns.at(place)))
                    cells.append(row.at(place).toString());
            }
            if (!left.contains(content.table->name)
                && !cells.contains(QStringLiteral("OQS.THRWorker.forceSync")))
                lines.append(cells.join(QLatin1Char('|')));
        }
    }
    return lines;
}

/// The balance of each fund of each person.
QStringList balances(TestDatabase *database)
{
    return database->rows(QStringLiteral("SELECT uid, fid, SUM(value) balance FROM funds_move "
                                         "GROUP BY 1, 2 HAVING balance <> 0 ORDER BY 1, 2"));
}

} // namespace

class tst_UndoCompanies : public DatabaseFixture
{
    Q_OBJECT

public:
    tst_UndoCompanies() :
        DatabaseFixture(QDateTime(firstDay, QTime(12, 0)))
    { }

private Q_SLOTS:
    void undo_leavesWhatWasThere_data();
    void undo_leavesWhatWasThere();
    void everything_hasHappened();

private:
    void load(const Company &company);
    void pass(DatabaseWorker *worker, const Company &company);
    Changes changesOfPass(int seed, QDate *day);
    void editAsOthers(const Changes &changes, Draw *draw);
    void editRow(const Change &change);

    Snapshot before; ///< the pass
    QStringList balancesBefore;
    QMap<QString, int> stepsOfTable;
    QMap<int, int> stepsWithOutcome;
};

void tst_UndoCompanies::load(const Company &company)
{
    database->clear();
    database->execute(QStringLiteral("ALTER TABLE people AUTO_INCREMENT = 1"));
    for (const QString &statement : structureRows(company) + peopleRows(company, {company.day, 40}))
        database->execute(statement);
}

void tst_UndoCompanies::pass(DatabaseWorker *worker, const Company &company)
{
    worker->writeExport(QString::fromUtf8(exportText(company)).split(QLatin1Char('\n')));
    worker->tick();
    QCOMPARE(worker->log.take().filter(QRegularExpression(QStringLiteral("^critical "))),
             QStringList());
}

/// Of a plugin that has run a pass the day before, or has just been started; now and then a forced
/// one. Read from a file.
Changes tst_UndoCompanies::changesOfPass(int seed, QDate *day)
{
    const Company company = companyOf(seed);
    setMoment(QDateTime(firstDay, QTime(12, 0)));
    load(company);
    DatabaseWorker worker(*database);
    QHash<ushort, QString> texts;
    for (const EvidenceState &known : evidenceStates)
        texts.insert(known.state, evidenceStateText(known.state));
    worker.worker.setMes(texts);
    worker.worker.setSyncInterval(1);
    if (seed % 2 == 0)
        pass(&worker, company);
    Life life(company, static_cast<quint32>(seed), busyRates());
    for (const QString &statement : nightStatements(QString::number(localSeconds(firstDay))))
        database->execute(statement);
    life.nextDay();
    *day = life.company().day;
    setMoment(QDateTime(*day, QTime(12, 0)));
    if (seed % 3 == 0)
        database->force();
    before = database->snapshot(SnapshotRows::All);
    balancesBefore = balances(database.get());
    const Snapshot first = database->snapshot(SnapshotRows::Touchable);
    pass(&worker, life.company());
    ChangesHeader header;
    header.since = QDateTime(*day, QTime(12, 0));
    header.when = header.since;
    const Changes changes = changesBetween(first, database->snapshot(SnapshotRows::Touchable), {},
                                           header);
    QByteArray file;
    writeChanges(changes, [&file](const QByteArray &bytes) { file += bytes; });
    Changes read;
    const Failure failure = readChanges(file, QStringLiteral("test"), &read);
    if (failure)
        qFatal("%s", qPrintable(failure.text));
    return read;
}

/// In a way that no pass would.
void tst_UndoCompanies::editRow(const Change &change)
{
    static const QHash<QString, QString> edits {
        {QStringLiteral("people"), QStringLiteral("phone = 'somebody', editor = 12")},
        {QStringLiteral("brape"), QStringLiteral("since = since + 1")},
        {QStringLiteral("groups_plan"), QStringLiteral("gid = gid + 1000")},
        {QStringLiteral("groups_month"), QStringLiteral("gid = gid + 1000")},
        {QStringLiteral("people_pam"), QStringLiteral("id = id + 1")},
        {QStringLiteral("admins_people"), QStringLiteral("request = 1 - request")},
        {QStringLiteral("funds_move"), QStringLiteral("value = value + 1")},
    };
    const QString edit = edits.value(change.table->name);
    if (edit.isEmpty() || change.after.isEmpty())
        return;
    QStringList key;
    for (const QString &column : change.table->key)
        key.append(QStringLiteral("`%1` = %2")
                       .arg(column, change.after.at(change.columns.indexOf(column)).toString()));
    database->execute(QStringLiteral("UPDATE `%1` SET %2 WHERE %3")
                          .arg(change.table->name, edit, key.join(QStringLiteral(" AND "))));
}

void tst_UndoCompanies::editAsOthers(const Changes &changes, Draw *draw)
{
    for (const ChangedPerson &person : changes.people) {
        for (const Change &change : person.rows) {
            if (draw->percent(10))
                editRow(change);
        }
    }
    for (const ChangedPerson &person : changes.people) {
        if (draw->percent(5))
            database->execute(QStringLiteral("UPDATE vars SET value = REPLACE(value, ',%1,', ',') "
                                             "WHERE name = 'exportPam.1.selPeople'")
                                  .arg(person.pid));
    }
}

void tst_UndoCompanies::undo_leavesWhatWasThere_data()
{
    QTest::addColumn<int>("seed");
    const int first = environmentNumber("TALVENHR_SEED", 1);
    for (int i = 0; i < environmentNumber("TALVENHR_COMPANIES", 16); ++i)
        QTest::newRow(qPrintable(QStringLiteral("seed %1").arg(first + i))) << first + i;
}

void tst_UndoCompanies::undo_leavesWhatWasThere()
{
    QFETCH(int, seed);
    QDate day;
    const Changes changes = changesOfPass(seed, &day);
    QVERIFY(!changes.people.isEmpty());
    // At once or on the next day, undisturbed or after others; the changes of the pass or of its
    // rehearsal.
    const int way = seed / 2 % 5;
    Draw draw(static_cast<quint32>(seed));
    if (way == 1 || way == 3)
        editAsOthers(changes, &draw);
    if (way == 2 || way == 3) {
        day = day.addDays(1);
        for (const QString &statement : nightStatements(QString::number(localSeconds(day))))
            database->execute(statement);
    }
    setMoment(QDateTime(day, QTime(15, 0)));
    const Changes given = way == 4 ? asRehearsed(changes) : changes;

    const Snapshot now = database->snapshot(SnapshotRows::All);
    UndoModel model(now, localSeconds(day, 15), localSeconds(day),
                    day.toString(QStringLiteral("yyyyMM")).toInt());
    model.takeBack(changes);

    QSqlDatabase handle = database->handle();
    handle.setUserName(QStringLiteral("talvenhr_undo"));
    QVERIFY2(handle.open(), qPrintable(handle.lastError().text()));
    UndoFacts facts;
    UndoPlan plan;
    UndoOutcomes outcomes;
    Failure failure = readUndoFacts(handle, given, {}, &facts);
    QVERIFY2(!failure && facts.areWhole, qPrintable(failure.text));
    facts.referred.clear(); // the statements find out by themselves who has other moves
    failure = makeUndoPlan(given, {}, facts, &plan);
    if (!failure)
        failure = runUndo(handle, plan, {}, &outcomes);
    QVERIFY2(!failure, qPrintable(failure.text));
    const QStringList after = UndoModel::lines(database->snapshot(SnapshotRows::All));
    QCOMPARE(contentDifference(model.lines(), after), QStringList());
    QCOMPARE(outcomes.size(), model.steps());
    QCOMPARE(outcomes.count(UndoStatement::Beside) + wereBack(outcomes), model.leftAlone());
    if (way == 0 || way == 4) {
        QCOMPARE(leftAlone(outcomes), 0);
        QCOMPARE(contentDifference(whatComesBack(before),
                                   whatComesBack(database->snapshot(SnapshotRows::All))),
                 QStringList());
        QCOMPARE(balances(database.get()), balancesBefore);
    }
    for (const UndoStep &step : qAsConst(plan.steps))
        ++stepsOfTable[step.table];
    for (const UndoOutcome &outcome : qAsConst(outcomes)) {
        ++stepsWithOutcome[outcome.effect];
        QVERIFY(!outcome.isLeftAlone() || !outcome.since.isEmpty());
    }

    // A second time everything stands as it is, and what was taken back is told from the rest.
    const UndoOutcomes first = outcomes;
    failure = runUndo(handle, plan, {}, &outcomes);
    QVERIFY2(!failure, qPrintable(failure.text));
    for (int place = 0; place < outcomes.size(); ++place) {
        QCOMPARE(int(outcomes.at(place).effect), int(UndoStatement::Beside));
        QCOMPARE(outcomes.at(place).isBack, !first.at(place).isLeftAlone());
    }
    QCOMPARE(UndoModel::lines(database->snapshot(SnapshotRows::All)), after);
    handle.close();
}

/// Of what was compared nothing was missing.
void tst_UndoCompanies::everything_hasHappened()
{
    qInfo() << "FIGURE steps:" << stepsOfTable << stepsWithOutcome;
    for (const char *table : {"people", "brape", "people_term", "admins_people", "groups_plan",
                              "groups_month", "people_pam", "vars", "funds_move"})
        QVERIFY2(stepsOfTable.value(QLatin1String(table)) > 0, table);
    for (const UndoStatement::Effect effect :
         {UndoStatement::Beside, UndoStatement::TakesBack, UndoStatement::MakesInactive,
          UndoStatement::Removes})
        QVERIFY(stepsWithOutcome.value(effect) > 0);
}

QTEST_GUILESS_MAIN(tst_UndoCompanies)
#include "tst_undocompanies.moc"
