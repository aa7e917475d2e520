// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What is rehearsed is what the server does then, row for row: over days, with restarts, forced
// passes, records that wait, locked days, odd texts, triggers, and others who write.
//
// Environment: TALVENHR_COMPANIES, how many generated companies (default: 2); TALVENHR_SEED, the
// first of their seeds (default: 1).
#include "companyserver.h"

#include "host/changes/changesjson.h"
#include "host/changes/planhash.h"
#include "support/commands/jsonschema.h"

#include <QtTest>

#include <map>

namespace {

const int days = 5;

int environmentNumber(const char *name, int otherwise)
{
    return qEnvironmentVariableIsSet(name) ? qEnvironmentVariableIntValue(name) : otherwise;
}

/// The rows of each, by the number that a person has in both.
std::map<QString, QVector<Change>> byPerson(const QVector<Change> &changes)
{
    std::map<QString, QVector<Change>> people;
    for (const Change &change : changes) {
        const Person &person = change.person;
        people[person.pamId.isEmpty() && person.uid != 0 ? QString::number(person.uid)
                                                         : person.pamId]
            .append(change);
    }
    return people;
}

/// What counts of the rows; the same for no rows and for rows in which nothing counts.
QString contentOf(const std::map<QString, QVector<Change>> &people, const QString &number)
{
    const auto found = people.find(number);
    return changeHash(found == people.end() ? QVector<Change>() : found->second);
}

QVector<Change> rowsOf(const Changes &changes)
{
    QVector<Change> rows = changes.others;
    for (const ChangedPerson &person : changes.people)
        rows += person.rows;
    return rows;
}

} // namespace

class tst_RehearsedLives : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void passes_doWhatWasRehearsed_data();
    void passes_doWhatWasRehearsed();
    void marks_areFew();
    void nights_leaveOthersCertain();

private:
    void live(CompanyServer *company, int day, bool forced);
    void rehearse(CompanyServer *company, const QString &file, bool forced, Changes *changes);
    void compare(const Changes &rehearsed, const QVector<Change> &real);

    int rehearsals = 0;
    int afterOthers = 0; ///< rehearsals of a server that had taken exports
    int changedPeople = 0;
    int markedPeople = 0;
    int otherOutcomes = 0; ///< of marked people: what really happened is the other outcome
};

void tst_RehearsedLives::rehearse(CompanyServer *company, const QString &file, bool forced,
                                  Changes *changes)
{
    const QString result = company->path(QStringLiteral("rehearsed.json"));
    QStringList arguments {QStringLiteral("rehearse"),
                           QStringLiteral("--no-limits"),
                           QStringLiteral("--quiet"),
                           QStringLiteral("--changes"),
                           result,
                           QStringLiteral("--export"),
                           file};
    for (const QString &taken : company->taken())
        arguments << QStringLiteral("--after") << taken;
    if (forced)
        arguments << QStringLiteral("--force");
    TalvenhrProcess program(arguments + company->options());
    const int code = program.finish();
    QVERIFY2(code == 0 || code == 1, qPrintable(program.lines().join(QLatin1Char('\n'))));
    const Failure failure = readChangesFile(result, changes);
    QVERIFY2(!failure, qPrintable(failure.text));
    QCOMPARE(changes->header.after.size(), company->taken().size());
    ++rehearsals;
    afterOthers += !changes->header.after.isEmpty();
    if (rehearsals == 2)
        QCOMPARE(schemaFault(company->readFile(QStringLiteral("rehearsed.json")).toUtf8(),
                             QStringLiteral("changes")),
                 QString());
}

void tst_RehearsedLives::compare(const Changes &rehearsed, const QVector<Change> &real)
{
    const std::map<QString, QVector<Change>> then = byPerson(real);
    const std::map<QString, QVector<Change>> before = byPerson(rowsOf(rehearsed));
    std::map<QString, const ChangedPerson *> marked;
    for (const ChangedPerson &person : rehearsed.people) {
        if (!person.uncertain.isEmpty())
            marked[person.person.pamId] = &person;
    }
    QStringList numbers;
    for (const auto &people : {then, before}) {
        for (const auto &person : people)
            numbers.append(person.first);
    }
    for (const auto &person : marked)
        numbers.append(person.first);
    numbers.removeDuplicates();
    for (const QString &number : qAsConst(numbers)) {
        const bool isPerson = !number.isEmpty();
        const QString content = contentOf(then, number);
        const bool isEqual = content == contentOf(before, number);
        changedPeople += isPerson && content != changeHash(QVector<Change>());
        const auto mark = marked.find(number);
        if (mark == marked.end()) {
            // A mark of a terminal may come from somebody who is treated otherwise.
            QVERIFY2(isEqual || (!isPerson && !marked.empty()), qPrintable(number));
            continue;
        }
        ++markedPeople;
        if (isEqual)
            continue;
        ++otherOutcomes;
        const QVector<Change> &rows = mark->second->otherwise;
        QVERIFY2(rows.isEmpty() || content == changeHash(mark->second->rows + rows),
                 qPrintable(number));
    }
}

/// The company's next day, first rehearsed, then for real.
void tst_RehearsedLives::live(CompanyServer *company, int day, bool forced)
{
    const QString file = company->nextDay();
    QVERIFY(!file.isEmpty());
    Changes rehearsed;
    rehearse(company, file, forced, &rehearsed);
    if (QTest::currentTestFailed())
        return;
    QVector<Change> real;
    const Failure failure = company->runPass(forced, &real);
    QVERIFY2(!failure, qPrintable(failure.text));
    compare(rehearsed, real);
    if (QTest::currentTestFailed())
        qWarning("on day %d, after %d exports", day, company->taken().size() - 1);
}

void tst_RehearsedLives::passes_doWhatWasRehearsed_data()
{
    QTest::addColumn<int>("seed");
    const int first = environmentNumber("TALVENHR_SEED", 1);
    for (int i = 0; i < environmentNumber("TALVENHR_COMPANIES", 2); ++i)
        QTest::newRow(qPrintable(QStringLiteral("seed %1").arg(first + i))) << first + i;
}

void tst_RehearsedLives::passes_doWhatWasRehearsed()
{
    QFETCH(int, seed);
    CompanyServer company(5 + seed * 37 % 196, static_cast<quint32>(seed));
    const Failure made = company.make();
    QVERIFY2(!made, qPrintable(made.text));
    for (int day = 1; day <= days; ++day) {
        if ((seed * 3 + day) % 5 == 0)
            company.restart();
        live(&company, day, (seed + day) % 7 == 0);
        if (QTest::currentTestFailed())
            return;
    }
}

/// Over all companies: a small one may have one change, and that in doubt.
void tst_RehearsedLives::marks_areFew()
{
    qInfo("%d rehearsals, %d of them after other exports; %d changes of people, %d marked, %d of "
          "these treated otherwise",
          rehearsals, afterOthers, changedPeople, markedPeople, otherOutcomes);
    QVERIFY(afterOthers > 0);
    QVERIFY(changedPeople > 0);
    QVERIFY2(markedPeople * 20 <= changedPeople, qPrintable(QString::number(markedPeople)));
}

/// After a night nothing proves of most people that their leave was at rest: they may be marked,
/// though the server has found it so.
void tst_RehearsedLives::nights_leaveOthersCertain()
{
    const int markedBefore = markedPeople;
    CompanyServer company(12, static_cast<quint32>(environmentNumber("TALVENHR_SEED", 1)));
    const Failure made = company.make();
    QVERIFY2(!made, qPrintable(made.text));
    for (int day = 1; day <= 3; ++day) {
        const Failure failure = company.passNight();
        QVERIFY2(!failure, qPrintable(failure.text));
        live(&company, day, false);
        if (QTest::currentTestFailed())
            return;
    }
    QVERIFY(markedPeople > markedBefore);
}

QTEST_GUILESS_MAIN(tst_RehearsedLives)
#include "tst_rehearsedlives.moc"
