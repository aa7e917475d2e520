// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A faulty pass on the private server, what it leaves, and what comes back afterwards.
#include "support/faults/faultround.h"

#include <QRegularExpression>
#include <QtTest>

namespace {

/// The content with the changes made, one after the other. A column of `people` is set, whatever it
/// held; any other value that is to go has to be there.
QStringList patched(QStringList content, const QStringList &changes)
{
    for (const QString &change : changes) {
        const QString value = change.mid(1);
        if (value.startsWith(QLatin1String("people "))) {
            const QString column = value.left(value.indexOf(QLatin1String(": ")) + 2);
            if (change.startsWith(QLatin1Char('+'))) {
                const QStringList held = content.filter(
                    QRegularExpression(QLatin1Char('^') + QRegularExpression::escape(column)));
                for (const QString &old : held)
                    content.removeOne(old);
                content.append(value);
            }
        } else if (change.startsWith(QLatin1Char('+'))) {
            content.append(value);
        } else if (!content.removeOne(value)) {
            content.append(QStringLiteral("not there to go: ") + value);
        }
    }
    content.sort();
    return content;
}

} // namespace

UndisturbedRun::UndisturbedRun(TestDatabase &database)
{
    FaultRound round(database);
    {
        const RecordedCallHook hook([&](const QString &) {
            contents.append(round.company.content());
            return QSqlError();
        });
        const ExpectedPass expected(0, Fault(), serverTable());
        const QString difference = eventDifference(round.pass(), expected.events());
        QVERIFY2(difference.isEmpty(), qPrintable(difference));
        contents.append(round.company.content());
        const QStringList ids = expected.calls();
        QCOMPARE(contents.size(), ids.size() + 1);
        for (int i = 0; i < ids.size(); ++i)
            changes[ids.at(i)] += contentDifference(contents.at(i), contents.at(i + 1));
    }
    round.recover();
    end = round.company.content();
}

QStringList UndisturbedRun::contentAfter(const ExpectedPass &pass, const Fault &fault) const
{
    QStringList content = contents.first();
    const QStringList ids = pass.calls();
    for (int i = 0; i < ids.size(); ++i) {
        if (!fault.strikes(i + 1, ids.at(i)))
            content = patched(content, changes.value(ids.at(i)));
    }
    return patched(content, changesOf(pass));
}

FaultRound::FaultRound(TestDatabase &testDatabase) :
    database(testDatabase),
    company(testDatabase),
    f(testDatabase, DatabaseWorker::Recorded)
{
    f.peer.db.close();
    f.worker.setSyncInterval(1);
    f.worker.setMes({{ushort(5), QStringLiteral("maternity")}});
    f.writeExport(company.exportLines());
    f.log.clear();
}

QStringList FaultRound::pass()
{
    f.log.clear();
    f.tick();
    return takeEvents();
}

QStringList FaultRound::takeEvents()
{
    QStringList events = company.canonical(f.log.take());
    cleanupComplaints += events.removeAll(
        QStringLiteral("warning QMYSQLResult::cleanup: unable to free statement handle"));
    return events;
}

void FaultRound::recover()
{
    company.calculateAttendance();
    database.force();
    QStringList events = pass();
    company.calculateAttendance();
    events += pass();
    QCOMPARE(complaints(events), QStringList());
    QCOMPARE(f.peer.waitingRecords.size(), 0);
}

void FaultRound::restart()
{
    f.peer.lastRecords.clear();
    f.peer.waitingRecords.clear();
    f.peer.fundRetry.clear();
    f.peer.fundId = 0;
}

void FaultRound::comparePass(const UndisturbedRun &undisturbed, const Fault &fault,
                             const Refusal &refusal, const std::function<void()> &mend)
{
    const ExpectedPass expected(0, fault, serverTable());
    f.log.clear();
    f.tick();
    mend();
    const QString difference = eventDifference(takeEvents(), expected.events(), refusal);
    QVERIFY2(difference.isEmpty(), qPrintable(difference));
    const QStringList unexpected = contentDifference(undisturbed.contentAfter(expected, fault),
                                                     company.content());
    QVERIFY2(unexpected.isEmpty(), qPrintable(unexpected.join(QLatin1Char('\n'))));

    recover();
    const QStringList lost = contentDifference(undisturbed.contentInTheEnd(), company.content());
    QVERIFY2(lost == lossesOf(expected), qPrintable(lost.join(QLatin1Char('\n'))));
}

FaultFixture::FaultFixture() :
    DatabaseFixture(companyNow())
{
    // Branches get their people in the order of a hash: the table has branch 1 first.
    qSetGlobalQHashSeed(0);
}

void FaultFixture::prepare()
{
    undisturbed = std::make_unique<const UndisturbedRun>(*database);
}

void FaultFixture::release()
{
    undisturbed.reset();
}

std::unique_ptr<RecordedCallHook> beforeEachCall(const std::function<QSqlError(int)> &function)
{
    const auto calls = std::make_shared<int>(0);
    return std::make_unique<RecordedCallHook>(
        [calls, function](const QString &) { return function(++*calls); });
}

std::unique_ptr<RecordedCallHook> beforeCall(int number, const std::function<QSqlError()> &function)
{
    return beforeEachCall(
        [number, function](int call) { return call == number ? function() : QSqlError(); });
}

QString eventDifference(const QStringList &events, const QStringList &expected,
                        const Refusal &refusal)
{
    for (int i = 0; i < qMax(events.size(), expected.size()); ++i) {
        QString pattern = QRegularExpression::escape(expected.value(i));
        pattern.replace(QLatin1String("\\.\\.\\."), QLatin1String(".*"));
        pattern.replace(QLatin1String("9999"), refusal.code);
        pattern.replace(QLatin1String("told\\ to\\ fail\\ \\(scripted\\)"), refusal.text);
        const QRegularExpression whole(QRegularExpression::anchoredPattern(pattern),
                                       QRegularExpression::DotMatchesEverythingOption);
        if (i < qMin(events.size(), expected.size()) && whole.match(events.at(i)).hasMatch())
            continue;
        return QStringLiteral("event %1 is '%2' instead of '%3', after '%4'")
            .arg(QString::number(i), events.value(i), expected.value(i), events.value(i - 1));
    }
    return QString();
}
