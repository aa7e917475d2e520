// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The file of changes: what is written is what is read, and what the schema says.
#include "host/changes/changesjson.h"
#include "host/changes/planhash.h"
#include "support/eventlog.h"
#include "support/passchanges.h"
#include "support/patience.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <limits>

namespace {

QString digest()
{
    return QString(64, QLatin1Char('a'));
}

ChangesHeader fullHeader()
{
    ChangesHeader header;
    header.how = ChangesHeader::Rehearsed;
    header.since = QDateTime(passDay, QTime(11, 59, 58, 123));
    header.when = QDateTime(passDay, QTime(12, 0));
    header.firstPass = 2;
    header.lastPass = 3;
    header.plugin = QStringLiteral("1.6.0");
    header.server = QStringLiteral("10.11-MariaDB");
    header.settings = digest();
    header.state = digest();
    return header;
}

PassTold fullTold()
{
    PassTold told;
    told.exported = {QStringLiteral("ron.data"), digest(), 100, 3};
    told.forced = true;
    told.waiting = 2;
    told.dropped = 4;
    const QDateTime moment(passDay, QTime(11, 59, 59, 7));
    ToldMessage error;
    error.message = {true, moment, QStringLiteral("refused \"<b>\" \u202E\n\\")};
    error.about = {{NamedPeople::Pid, {10011}}, QString()};
    ToldMessage warning;
    warning.message = {false, moment, QStringLiteral("about nobody")};
    told.messages = {error, warning};
    told.leave = {{10011, NotDone::LeaveNotAtRest, QStringLiteral("NO OK")}};
    told.refused = {{{{NamedPeople::Pid, {70011}}, QStringLiteral("7001.1")},
                     QStringLiteral("UPDATE people SET name='O'Neill'"),
                     QStringLiteral("near 'Neill'")}};
    return told;
}

/// Every kind of cell and of row, and somebody who is not in the database.
Changes fullChanges()
{
    const char *const people = "people: uid|pid|pamId|name|surname|status|zz|phone";
    Snapshot before = SnapshotBuilder()
                          .with(people, {"1|10011|1001.1|Eva|Malá|1|NULL|x"})
                          .with("brape: bid|uid|since", {"5|1|1"})
                          .with("atten: uid|date|ok", {"1|100|1"})
                          .with("term: tid|syn", {"3|0"});
    Snapshot after = SnapshotBuilder()
                         .with(people,
                               {"1|10011|1001.1|Eva|Veľká \"<&>'|1|-9007199254740993|",
                                "2|10021|1002.1|Jan|Vlk|1|x|NULL"})
                         .with("brape: bid|uid|since", {"6|1|1"})
                         .with("atten: uid|date|ok", {"1|100|-1"})
                         .with("term: tid|syn", {"3|2"})
                         .named("bid", 6, "200 Výroba")
                         .named("tid", 3, "Vrátnica");
    before.tables[0].rows[0][7] = QByteArray("\0\xff\x01", 3);
    after.tables[0].rows[0][7] = 1.5;
    Changes changes = changesBetween(before, after, fullTold(), fullHeader(), digest());
    changes.people.first().uncertain = lines({"one", "other"});
    changes.people.first().otherwise = changes.people.first().rows.mid(0, 1);
    changes.header.after = {{QStringLiteral("old.data"), digest(), 90, 2}};
    changes.totals.missing = 3;
    changes.totals.statements = 12;
    changes.rehearsal.limits = {{{QStringLiteral("ended"), 5, true}, 2, 3},
                                {{QStringLiteral("leave-days-each"), 60, false}, 60, 2.5}};
    changes.rehearsal.leftOut = lines({"There is no trigger \"x\"."});
    changes.rehearsal.warnings = lines({"One table has no moment."});
    changes.rehearsal.findings = {{QStringLiteral("E-FILE-CUT"), Finding::Error, QString(),
                                   QStringLiteral("cut"), QString(), QStringLiteral("mend")}};
    return changes;
}

QByteArray written(const Changes &changes)
{
    QByteArray text;
    writeChanges(changes, [&text](const QByteArray &bytes) { text += bytes; });
    return text;
}

QString whatIsWrongWith(const QByteArray &text)
{
    Changes changes;
    return readChanges(text, QStringLiteral("FILE"), &changes).text;
}

} // namespace

class tst_ChangesFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void roundTrip_losesNothing();
    void emptyChanges_areAFileToo();
    void manyRows_comeInParts();
    void people_areFoundWhereverTheyStand_data();
    void people_areFoundWhereverTheyStand();
    void rows_haveKeysAndAllColumns();
    void file_isWhatTheSchemaSays_data();
    void file_isWhatTheSchemaSays();
    void file_isForItsOwner();
    void otherFiles_areRefused_data();
    void otherFiles_areRefused();
};

void tst_ChangesFile::roundTrip_losesNothing()
{
    const Changes changes = fullChanges();
    const QByteArray text = written(changes);
    Changes back;
    const Failure failure = readChanges(text, QStringLiteral("FILE"), &back);
    QVERIFY2(!failure, qPrintable(failure.text));
    QCOMPARE(written(back), text);

    // What the writing itself may lose.
    QVERIFY(back.summary == changes.summary);
    QCOMPARE(back.header.since, changes.header.since);
    QCOMPARE(int(back.header.how), int(ChangesHeader::Rehearsed));
    QCOMPARE(back.people.size(), changes.people.size());
    QCOMPARE(changeHash(back), changes.plan.change);
    for (int i = 0; i < back.people.size(); ++i) {
        const ChangedPerson &person = back.people.at(i);
        const ChangedPerson &original = changes.people.at(i);
        QVERIFY(person.kinds == original.kinds);
        QCOMPARE(person.person.uid, original.person.uid);
        QCOMPARE(person.rows.size(), original.rows.size());
        for (int row = 0; row < person.rows.size(); ++row) {
            QCOMPARE(person.rows.at(row).table, original.rows.at(row).table);
            QCOMPARE(person.rows.at(row).columns, original.rows.at(row).columns);
            QCOMPARE(person.rows.at(row).before, original.rows.at(row).before);
            QCOMPARE(person.rows.at(row).after, original.rows.at(row).after);
        }
    }
    const ChangedPerson &unknown = back.people.last();
    QCOMPARE(unknown.pid, 70011);
    QCOMPARE(int(unknown.notDone.first().what), int(NotDone::Refused));
    QCOMPARE(unknown.notDone.first().error, QStringLiteral("near 'Neill'"));
    QCOMPARE(back.people.first().messages.first().time,
             changes.people.first().messages.first().time);
    QCOMPARE(back.people.first().reopenedSince, changes.people.first().reopenedSince);
    QCOMPARE(back.names, changes.names);
    QCOMPARE(back.rehearsal.limits.at(0).limit.number, 5);
    QVERIFY(back.rehearsal.limits.at(0).isExceeded());
    QCOMPARE(back.rehearsal.limits.at(1).limit.number, 60);
    QVERIFY(!back.rehearsal.limits.at(1).limit.isPercent);
    QCOMPARE(int(back.rehearsal.findings.first().severity), int(Finding::Error));
}

void tst_ChangesFile::emptyChanges_areAFileToo()
{
    const QByteArray text = written(Changes());
    Changes back;
    QVERIFY(!readChanges(text, QStringLiteral("FILE"), &back));
    QCOMPARE(written(back), text);
    QVERIFY(text.endsWith("}\n"));
}

void tst_ChangesFile::manyRows_comeInParts()
{
    QStringList rows;
    for (int day = 0; day < 5000; ++day)
        rows.append(QStringLiteral("1|%1|-1").arg(day));
    const QString table = QStringLiteral("atten: uid|date|ok");
    const Changes changes = changesOf(onePerson().with(table, {}), onePerson().with(table, rows));
    QByteArray text;
    int largest = 0;
    writeChanges(changes, [&](const QByteArray &bytes) {
        text += bytes;
        largest = qMax(largest, bytes.size());
    });
    QVERIFY(largest < 100000);
    Changes back;
    QVERIFY(!readChanges(text, QStringLiteral("FILE"), &back));
    QCOMPARE(back.people.first().rows.size(), 5000);
}

void tst_ChangesFile::people_areFoundWhereverTheyStand_data()
{
    QTest::addColumn<QByteArray>("from");
    QTest::addColumn<QByteArray>("to");
    QTest::newRow("as written") << QByteArray() << QByteArray();
    QTest::newRow("with blanks") << QByteArray(R"("people":[)") << QByteArray("\"people\" : \n [ ");
    QTest::newRow("with an escape")
        << QByteArray(R"("people":[)") << QByteArray(R"("\u0070eople":[)");
    QTest::newRow("behind a like word")
        << QByteArray(R"({"format":)")
        << QByteArray(R"({"x":"people","y":[{"people":[1]}],"format":)");
    QTest::newRow("with a like list")
        << QByteArray(R"("people":[{)") << QByteArray(R"("people":[{"people":[{},[1,2]],)");
}

/// They are read one by one where that is possible, with the same result.
void tst_ChangesFile::people_areFoundWhereverTheyStand()
{
    QFETCH(QByteArray, from);
    QFETCH(QByteArray, to);
    Changes changes = fullChanges();
    changes.people.first().person.name = QStringLiteral("]},\"people\":[{ \\\\\" Malá \\");
    const QByteArray expected = written(changes);
    QByteArray text = expected;
    QVERIFY(from.isEmpty() || text.contains(from));
    if (!from.isEmpty())
        text.replace(text.indexOf(from), from.size(), to);
    Changes back;
    const Failure failure = readChanges(text, QStringLiteral("FILE"), &back);
    QVERIFY2(!failure, qPrintable(failure.text));
    QCOMPARE(written(back), expected);
}

void tst_ChangesFile::rows_haveKeysAndAllColumns()
{
    const char *const marks = "admins_people: aid|uid|request";
    const QByteArray text = written(
        changesOf(onePerson().with(marks, {"4|1|1"}), onePerson().with(marks, {"4|1|0", "5|1|1"})));
    QVERIFY(text.contains(R"({"table":"admins_people","key":{"aid":4,"uid":1},)"
                          R"("before":{"aid":4,"uid":1,"request":1},)"
                          R"("after":{"aid":4,"uid":1,"request":0}})"));
    QVERIFY(text.contains(R"("key":{"aid":5,"uid":1},"before":null,)"));
}

void tst_ChangesFile::file_isWhatTheSchemaSays_data()
{
    QTest::addColumn<bool>("full");
    QTest::newRow("full") << true;
    QTest::newRow("empty") << false;
}

void tst_ChangesFile::file_isWhatTheSchemaSays()
{
    QFETCH(bool, full);
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.changes.json"));
    QVERIFY(!writeChangesFile(full ? fullChanges() : Changes(), path));
    QProcess validator;
    validator.start(QStringLiteral("python3"),
                    {QStringLiteral("-W"), QStringLiteral("ignore"), QStringLiteral("-m"),
                     QStringLiteral("jsonschema"), QStringLiteral("-i"), path,
                     QStringLiteral(TALVENHR_SOURCE_FOLDER "/docs/changes.schema.json")});
    QVERIFY(validator.waitForFinished(longestWait));
    QVERIFY2(validator.exitCode() == 0, validator.readAllStandardError().constData());
}

void tst_ChangesFile::file_isForItsOwner()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.changes.json"));
    QVERIFY(!writeChangesFile(fullChanges(), path));
    const QFileDevice::Permissions others = QFileDevice::ReadGroup | QFileDevice::WriteGroup
        | QFileDevice::ReadOther | QFileDevice::WriteOther;
    QVERIFY(!(QFile::permissions(path) & others));
    Changes back;
    QVERIFY(!readChangesFile(path, &back));
    QCOMPARE(back.people.size(), 3);
    QCOMPARE(int(writeChangesFile(Changes(), folder.filePath(QStringLiteral("no/a"))).exitCode),
             int(ExitUsage));
    QVERIFY(readChangesFile(folder.filePath(QStringLiteral("no")), &back)
                .text.startsWith(QLatin1String("cannot read '")));
}

void tst_ChangesFile::otherFiles_areRefused_data()
{
    QTest::addColumn<QByteArray>("from");
    QTest::addColumn<QByteArray>("to");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *from, const char *to, const char *reason) {
        QTest::newRow(reason) << QByteArray(from) << QByteArray(to) << QString::fromLatin1(reason);
    };
    row("}\n", "", "it is not JSON: unterminated object");
    row(R"("people":[{)", R"("people":[,{)", "it is not JSON: illegal value");
    row(R"("people":[{)", R"("people":[{},,{)", "it is not JSON: illegal value, at byte");
    row(R"("people":[{)", R"("people":[{}{)", "it is not JSON: missing value separator");
    row(R"("uid":1,"name")", R"("uid":1]"name")", "it is not JSON: unterminated object");
    row("changes/1", "changes/2", "its format is not 'talvenhr.changes/1'");
    row(R"("kinds":["added"])", R"("kinds":["hired"])", "'hired' is no kind of change");
    row(R"("what":"refused")", R"("what":"forgotten")",
        "'forgotten' is nothing that can be left undone");
    row(R"("table":"brape")", R"("table":"branches")", "no pass touches the table 'branches'");
    row(R"("brape":{"key")", R"("brapes":{"key")", "the columns of the table 'brape' are missing");
}

void tst_ChangesFile::otherFiles_areRefused()
{
    QFETCH(QByteArray, from);
    QFETCH(QByteArray, to);
    QFETCH(QString, reason);
    QByteArray text = written(fullChanges());
    QVERIFY(text.contains(from));
    text.replace(from, to);
    const QString wrong = whatIsWrongWith(text);
    QVERIFY2(wrong.startsWith(QLatin1String("'FILE' is no file of changes: ") + reason),
             qPrintable(wrong));
}

QTEST_GUILESS_MAIN(tst_ChangesFile)
#include "tst_changesfile.moc"
