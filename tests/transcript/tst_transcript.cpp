// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// One company over four passes: every message and statement in order, and the rows that result.
#include "repository/branchesrepository.h"
#include "repository/groupsplanrepo.h"
#include "support/databaseworker.h"
#include "support/machineclock.h"
#include "support/snapshotlines.h"
#include "support/testdatabase.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QtTest>

#include <memory>

namespace {

/// What a file expects: an event or a row, and where it stands.
struct Expected
{
    QString text;
    int line;
};

/// The file's lines without the reader's: blank ones and those that begin with "#". What is
/// indented by four blanks belongs to the line before it.
QVector<Expected> readExpected(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(path));
    QVector<Expected> expected;
    const QStringList all = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    for (int i = 0; i < all.size(); ++i) {
        const QString &text = all.at(i);
        if (text.isEmpty() || text.startsWith(QLatin1Char('#')))
            continue;
        if (text.startsWith(QLatin1String("    ")) && !expected.isEmpty())
            expected.last().text += QLatin1Char('\n') + text.mid(4);
        else
            expected.append({text, i + 1});
    }
    return expected;
}

/// The first place where the two part, with what stands around it; empty if they are alike.
QString firstDifference(const QString &path, const QStringList &actual)
{
    const QVector<Expected> expected = readExpected(path);
    int same = 0;
    while (same < expected.size() && same < actual.size()
           && expected.at(same).text == actual.at(same)) {
        ++same;
    }
    if (same == expected.size() && same == actual.size())
        return QString();

    const int around = 3;
    QStringList report;
    for (int i = qMax(0, same - around); i < same; ++i)
        report.append(QStringLiteral("           ") + actual.at(i));
    for (int i = same; i < qMin(expected.size(), same + around); ++i)
        report.append(QStringLiteral("expected:  ") + expected.at(i).text);
    if (same == expected.size())
        report.append(QStringLiteral("expected:  nothing more"));
    for (int i = same; i < qMin(actual.size(), same + around); ++i)
        report.append(QStringLiteral("actual:    ") + actual.at(i));
    if (same == actual.size())
        report.append(QStringLiteral("actual:    nothing more"));

    const QString place = same < expected.size()
        ? QStringLiteral("line %1").arg(expected.at(same).line)
        : QStringLiteral("after the last line");
    return QStringLiteral("\n%1, %2:\n%3\n").arg(path, place, report.join(QLatin1Char('\n')));
}

/// The rows of the tables that the plugin writes, a heading before each table. Times are local; a
/// midnight is a date.
QStringList writtenRows(const Snapshot &snapshot)
{
    // A wide table comes in several parts, with a word for each.
    const QStringList headings = lines({
        "people: uid|pid|pamId|title|name|surname|title2|phone|begin|end",
        "people(state): uid|type|status|did|bid|calendarID|rsBegin|rsEnd|rsText",
        "people(times): uid|lastCalc|calc|created|edited|editor",
        "people_pam: uid|id",
        "brape: bid|uid|since",
        "people_term: tid|uid",
        "admins_people: aid|uid|request",
        "term: tid|syn",
        "term_sync: tid|type|ref|ref_col|ref_id|created|flags",
        "groups_plan: uid|since|gid",
        "groups_month: uid|month|gid",
        "atten: uid|date|lock|man|ok",
        "funds_move: uid|fid|day|type|month|value",
        "vars: name|value",
    });
    QStringList result;
    for (const QString &heading : headings) {
        const QString table = heading.section(QRegularExpression(QStringLiteral("[(:]")), 0, 0);
        const QStringList columns = heading.section(QStringLiteral(": "), 1)
                                        .split(QLatin1Char('|'));
        result.append(heading);
        result += cellLines(snapshot, table, columns);
    }
    return result;
}

QString folderOf(const QString &pass)
{
    return QStringLiteral(TALVENHR_TRANSCRIPT_FOLDER "/") + pass;
}

} // namespace

class tst_Transcript : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void pass_happensAsWrittenDown_data();
    void pass_happensAsWrittenDown();

private:
    void load(const QString &file);

    const QString home = QDir::currentPath();
    QTemporaryDir folder; ///< in it lies the export file
    std::unique_ptr<MachineClock> clock;
    std::unique_ptr<TestDatabase> database;
    std::unique_ptr<DatabaseWorker> f; ///< the one worker of all passes
};

void tst_Transcript::initTestCase()
{
    // First of all: it keeps the clock away from the server.
    clock = std::make_unique<MachineClock>(QDateTime(QDate(2024, 3, 18), QTime(5, 59)));
    database = std::make_unique<TestDatabase>();
    QVERIFY2(database->error().isEmpty(), qPrintable(database->error()));
    load(QStringLiteral(TALVENHR_TRANSCRIPT_FOLDER "/company.sql"));
    QVERIFY(QDir::setCurrent(folder.path()));

    f = std::make_unique<DatabaseWorker>(*database, DatabaseWorker::Recorded);
    f->worker.setMes({{21, QStringLiteral("Materská dovolenka")}});
    f->worker.setDepartmentId(4);
    f->worker.setSyncInterval(1);
    f->worker.setImportFile(QStringLiteral("ron.data"));
    f->worker.setDeleteFile(true);
    f->worker.setLogLevel(3);
    // The repositories were made at the old level.
    f->peer.branchesRepo->logLevel = 3;
    f->peer.groupsPlanRepo->logLevel = 3;
    f->peer.db.close();
    f->log.clear();
}

void tst_Transcript::cleanupTestCase()
{
    f.reset();
    database.reset();
    clock.reset();
    QVERIFY(QDir::setCurrent(home));
}

void tst_Transcript::load(const QString &file)
{
    QString reason;
    QVERIFY2(database->server().loadFiles(database->databaseName(), {file}, &reason),
             qPrintable(reason));
}

void tst_Transcript::pass_happensAsWrittenDown_data()
{
    QTest::addColumn<QDateTime>("moment");

    // In this order and never alone: what the worker remembers is part of the story.
    const QDate monday(2024, 3, 18);
    const QDate tuesday(2024, 3, 19);
    QTest::newRow("1-first-pass") << QDateTime(monday, QTime(6, 0));
    QTest::newRow("2-unchanged") << QDateTime(monday, QTime(7, 0));
    QTest::newRow("3-forced") << QDateTime(monday, QTime(8, 0));
    QTest::newRow("4-next-day") << QDateTime(tuesday, QTime(6, 0));
}

void tst_Transcript::pass_happensAsWrittenDown()
{
    QFETCH(QDateTime, moment);
    const QString pass = folderOf(QString::fromLatin1(QTest::currentDataTag()));
    const QString before = pass + QStringLiteral("/before.sql");
    const QString exportFile = QStringLiteral("ron.data");

    if (QFile::exists(before))
        load(before);
    QVERIFY(QFile::copy(pass + QStringLiteral("/ron.data"), exportFile));
    clock->set(moment);
    database->setClock(moment.toSecsSinceEpoch());

    f->tick();

    const QStringList events = f->log.take().replaceInStrings(QDir::currentPath(),
                                                              QStringLiteral("/export"));
    const QString difference = firstDifference(pass + QStringLiteral("/transcript.txt"), events)
        + firstDifference(pass + QStringLiteral("/rows.txt"), writtenRows(database->snapshot()));
    // Not QVERIFY2(): it cuts long texts.
    if (!difference.isEmpty())
        QFAIL(qPrintable(difference));
    QVERIFY(!QFile::exists(exportFile));
}

QTEST_GUILESS_MAIN(tst_Transcript)
#include "tst_transcript.moc"
