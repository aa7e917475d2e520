// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Limits of what a pass may change.
#include "host/rehearsal/limits.h"

#include <QtTest>

namespace {

/// A company of so many active people, of whom so many change.
Changes changesOf(int activePeople, ChangeKind kind, int count)
{
    Changes changes;
    changes.totals.activePeople = activePeople;
    changes.summary[kind] = count;
    return changes;
}

LimitOutcome outcomeOf(const QString &text, const Changes &changes)
{
    Limit limit;
    const Failure failure = readLimit(text, &limit);
    if (failure)
        qFatal("%s", qPrintable(failure.text));
    return limitOutcomes({limit}, changes).value(0);
}

} // namespace

class tst_Limits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void text_isRead_data();
    void text_isRead();
    void wrongText_isNamed_data();
    void wrongText_isNamed();
    void outcome_data();
    void outcome();
    void percent_ofNobodyIsNoLimit();
    void otherKinds_areCounted();
    void columns_areThoseOfPeople();
    void ofOneKind_theLastCounts();
    void standardLimits_areThoseOfTheDocument();
    void exceeded_tellsWhatToType();
};

void tst_Limits::text_isRead_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("number");
    QTest::addColumn<bool>("isPercent");
    QTest::newRow("number") << "ended=12"
                            << "ended" << 12 << false;
    QTest::newRow("percent") << "ended=5%"
                             << "ended" << 5 << true;
    QTest::newRow("blanks") << " ended = 5 % "
                            << "ended" << 5 << true;
    QTest::newRow("column") << "changed:surname=3"
                            << "changed:surname" << 3 << false;
    QTest::newRow("nothing at all") << "added=0"
                                    << "added" << 0 << false;
}

void tst_Limits::text_isRead()
{
    QFETCH(QString, text);
    Limit limit;
    QVERIFY(!readLimit(text, &limit));
    QTEST(limit.kind, "kind");
    QTEST(limit.number, "number");
    QTEST(limit.isPercent, "isPercent");
}

void tst_Limits::wrongText_isNamed_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("fault");
    QTest::newRow("no sign") << "ended"
                             << "'ended' is no limit; write KIND=NUMBER";
    QTest::newRow("kind") << "endd=5"
                          << "'endd' is no kind of change (did you mean 'ended'?)";
    QTest::newRow("no column") << "changed:=5"
                               << "'changed:' is no kind of change";
    QTest::newRow("word") << "ended=few"
                          << "'few' is no limit of 'ended'";
    QTest::newRow("negative") << "ended=-1"
                              << "'-1' is no limit of 'ended'";
    QTest::newRow("percent of days") << "leave-days=5%"
                                     << "'leave-days' counts days";
}

void tst_Limits::wrongText_isNamed()
{
    QFETCH(QString, text);
    QFETCH(QString, fault);
    Limit limit;
    const Failure failure = readLimit(text, &limit);
    QCOMPARE(failure.exitCode, ExitUsage);
    QVERIFY2(failure.text.startsWith(fault), qPrintable(failure.text));
}

void tst_Limits::outcome_data()
{
    QTest::addColumn<QString>("limit");
    QTest::addColumn<int>("people");
    QTest::addColumn<int>("count");
    QTest::addColumn<double>("allowed");
    QTest::addColumn<bool>("exceeded");
    QTest::newRow("number, as many") << "ended=3" << 1000 << 3 << 3.0 << false;
    QTest::newRow("number, one more") << "ended=3" << 1000 << 4 << 3.0 << true;
    QTest::newRow("percent, as many") << "ended=5%" << 200 << 10 << 10.0 << false;
    QTest::newRow("percent, one more") << "ended=5%" << 200 << 11 << 10.0 << true;
    QTest::newRow("few people count as fifty") << "ended=10%" << 8 << 5 << 5.0 << false;
    QTest::newRow("part of a person") << "ended=5%" << 50 << 3 << 2.0 << true;
    QTest::newRow("all that there may be")
        << "ended=99999999%" << 100000 << 100000 << 99999999000.0 << false;
    QTest::newRow("none allowed") << "ended=0" << 1000 << 1 << 0.0 << true;
}

void tst_Limits::outcome()
{
    QFETCH(QString, limit);
    QFETCH(int, people);
    QFETCH(int, count);
    const LimitOutcome told = outcomeOf(limit, changesOf(people, ChangeKind::Ended, count));
    QTEST(told.allowed, "allowed");
    QTEST(told.isExceeded(), "exceeded");
}

void tst_Limits::percent_ofNobodyIsNoLimit()
{
    QCOMPARE(limitOutcomes(standardLimits(), changesOf(0, ChangeKind::Added, 5000)).size(), 1);
    QVERIFY(
        outcomeOf(QStringLiteral("added=10"), changesOf(0, ChangeKind::Added, 11)).isExceeded());
}

void tst_Limits::otherKinds_areCounted()
{
    Changes changes;
    changes.totals.activePeople = 100;
    changes.totals.withoutBranch = 4;
    changes.totals.leave = -1250;
    changes.totals.reopenedDays = 31;
    for (const int leave : {250, -1500}) {
        ChangedPerson person;
        person.leave = leave;
        person.fields = {{QStringLiteral("surname"), QStringLiteral("a"), QStringLiteral("b")}};
        changes.people.append(person);
    }
    QCOMPARE(outcomeOf(QStringLiteral("without-branch=0"), changes).found, 4.0);
    QCOMPARE(outcomeOf(QStringLiteral("leave-days=0"), changes).found, 12.5);
    QCOMPARE(outcomeOf(QStringLiteral("leave-days-each=0"), changes).found, 15.0);
    QCOMPARE(outcomeOf(QStringLiteral("reopened-days=0"), changes).found, 31.0);
    QCOMPARE(outcomeOf(QStringLiteral("changed:surname=0"), changes).found, 2.0);
    QCOMPARE(outcomeOf(QStringLiteral("changed:name=0"), changes).found, 0.0);
    QCOMPARE(outcomeOf(QStringLiteral("missing=0"), changes).found, 0.0);
    changes.totals.missing = 7;
    QCOMPARE(outcomeOf(QStringLiteral("missing=0"), changes).found, 7.0);
}

void tst_Limits::columns_areThoseOfPeople()
{
    const QStringList columns {QStringLiteral("uid"), QStringLiteral("surname")};
    const auto faultOf = [&columns](const char *kind) {
        return checkColumns({{QString::fromLatin1(kind), 5, true}}, columns).text;
    };
    QCOMPARE(faultOf("changed:surname"), QString());
    QCOMPARE(faultOf("ended"), QString());
    QCOMPARE(faultOf("changed:surnam"),
             QStringLiteral("the limit 'changed:surnam': the table people has no column 'surnam' "
                            "(did you mean 'surname'?)"));
}

void tst_Limits::ofOneKind_theLastCounts()
{
    QVector<Limit> limits = standardLimits();
    const int count = limits.size();
    setLimit({QStringLiteral("ended"), 7, false}, &limits);
    setLimit({QStringLiteral("ended"), 9, false}, &limits);
    setLimit({QStringLiteral("errors"), 0, false}, &limits);
    QCOMPARE(limits.size(), count + 1);
    for (const Limit &limit : qAsConst(limits)) {
        if (limit.kind == QLatin1String("ended"))
            QCOMPARE(limit.number, 9);
    }
}

void tst_Limits::standardLimits_areThoseOfTheDocument()
{
    QFile file(QStringLiteral(TALVENHR_SOURCE_FOLDER "/docs/rehearsal.md"));
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.errorString()));
    const QString page = QString::fromUtf8(file.readAll());
    const QVector<Limit> limits = standardLimits();
    for (const Limit &limit : limits) {
        const QString row = QStringLiteral("\n| `%1` | %2%3 | ")
                                .arg(limit.kind)
                                .arg(limit.number)
                                .arg(limit.isPercent ? QStringLiteral("%") : QString());
        QVERIFY2(page.contains(row), qPrintable(row));
    }
    const QRegularExpression rows(QStringLiteral("\n\\| `[a-z:-]+` \\| \\d+%? \\| "));
    QCOMPARE(page.count(rows), limits.size());
}

void tst_Limits::exceeded_tellsWhatToType()
{
    QCOMPARE(
        exceededText(outcomeOf(QStringLiteral("ended=5%"), changesOf(200, ChangeKind::Ended, 31))),
        QStringLiteral("ended: 31, and the limit is 10 (5 % of the active people); to let it "
                       "through this once: --allow ended=31"));
    // What is to be typed is a number in full.
    Changes changes;
    changes.totals.leave = 123456789;
    const LimitOutcome leave = outcomeOf(QStringLiteral("leave-days=5"), changes);
    QCOMPARE(exceededText(leave),
             QStringLiteral("leave-days: 1234567.89, and the limit is 5; to let it through this "
                            "once: --allow leave-days=1234568"));
    QCOMPARE(exceededWords(leave), QStringLiteral("leave-days (1234567.89, limit 5)"));
}

QTEST_GUILESS_MAIN(tst_Limits)
#include "tst_limits.moc"
