// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What is told of a pass, and to whom of its people it belongs.
#include "host/catalogue/messages.h"
#include "host/database/databasecall.h"
#include "host/database/recordingdriver.h"
#include "support/eventlog.h"
#include "support/passchanges.h"

#include <QCryptographicHash>
#include <QTemporaryDir>
#include <QtTest>

namespace {

/// A pass that said this; "W " and "E " open warnings and errors, "I " and "D " the rest.
PassTold told(const QStringList &texts)
{
    PassNotes notes;
    notes.message(QtDebugMsg, QStringLiteral("THRWorker: BEGIN synchronization #1 (force: NO)"));
    for (const QString &text : texts) {
        const QtMsgType type = text.startsWith(QLatin1Char('W')) ? QtWarningMsg
            : text.startsWith(QLatin1Char('E'))                  ? QtCriticalMsg
            : text.startsWith(QLatin1Char('I'))                  ? QtInfoMsg
                                                                 : QtDebugMsg;
        notes.message(type, text.mid(2));
    }
    notes.message(QtDebugMsg,
                  QStringLiteral("THRWorker: END synchronization #1 (waiting records: 3)"));
    return notes.take();
}

} // namespace

class tst_PassNotes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void complaints_belongToPeople_data();
    void complaints_belongToPeople();
    void whoeverHasNoRow_standsLast();
    void whatWasNotDone_isTold_data();
    void whatWasNotDone_isTold();
    void refusedStatements_comeFromTheCalls();
    void passesAreToldApart();
    void statements_areCountedFromBeginToEnd();
    void signs_standInTheCatalogue();
    void exports_areIdentified();
};

void tst_PassNotes::complaints_belongToPeople_data()
{
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<QString>("people");
    const auto row = [](const char *name, std::initializer_list<const char *> texts,
                        const char *people) {
        QTest::newRow(name) << lines(texts) << QString::fromLatin1(people);
    };
    row("by its own words", {"W THRWorker::addTermSyncPerson(10011) - uid NOT selected from DB!"},
        "1001.1");
    row("by the uid",
        {"W THRWorker::doSyncRecord() - funds_move type (type=3, valeu=5) not writed "
         "for uid 1 (pid: 10011)"},
        "1001.1");
    row("by what came before",
        {"D THRWorker::dbUpdatePerson(1001.1 Malá Eva)",
         "E THRWorker::addTermSyncPerson() ERROR: gone"},
        "1001.1");
    row("by the list that came before",
        {"I BranchesRepository::addPeopleToBranch(5, '1,2,1,0')",
         "E BranchesRepository::addPeopleToBranch - ERROR: gone"},
        "1001.1 1002.1");
    row("not by the pass before",
        {"D THRWorker::dbUpdatePerson(1001.1 Malá Eva)",
         "D THRWorker: BEGIN synchronization #2 (force: NO)",
         "E THRWorker::dbLoadPeople() - SQL ERROR [2006]: gone"},
        "nobody");
    row("not by what ended",
        {"D THRWorker::dbUpdatePerson(1001.1 Malá Eva)",
         "D THRWorker: END synchronization #1 (waiting records: 3)",
         "E variableSet ERROR: \"gone\""},
        "nobody");
    row("a line of Qt", {"D THRWorker::dbUpdatePerson(1001.1 Malá Eva)", "W QSqlQuery: oh"},
        "1001.1");
}

void tst_PassNotes::complaints_belongToPeople()
{
    QFETCH(QStringList, texts);
    QFETCH(QString, people);
    const Changes changes = changesBy(told(texts));
    QStringList named;
    for (const ChangedPerson &person : changes.people) {
        if (!person.messages.isEmpty())
            named.append(person.person.pamId);
    }
    if (!changes.messages.isEmpty())
        named.append(QStringLiteral("nobody"));
    QCOMPARE(named.join(QLatin1Char(' ')), people);
}

void tst_PassNotes::whoeverHasNoRow_standsLast()
{
    const Changes changes = changesBy(
        told(lines({"E THRWorker::dbAddPerson(7.1) - SQL ERROR: refused",
                    "W THRWorker: Branch '9' NOT FOUND for employee: '7.1 Nová Iva (S: 9)'",
                    "W THRWorker: Branch '9' NOT FOUND for employee: '1002.1 Vlk Jan (S: 9)'"})));
    QCOMPARE(changes.people.size(), 2);
    QCOMPARE(changes.people.first().person.pamId, QStringLiteral("1002.1"));
    const ChangedPerson &unknown = changes.people.last();
    QCOMPARE(unknown.person.uid, 0);
    QCOMPARE(unknown.person.pamId, QStringLiteral("7.1"));
    QCOMPARE(unknown.pid, 71);
    QCOMPARE(kindsText(unknown.kinds), QStringLiteral("waiting errors"));
    QCOMPARE(unknown.messages.size(), 2);
    // As many wait as the plugin says.
    QCOMPARE(countsText(changes.summary), QStringLiteral("waiting 3, errors 1"));
}

void tst_PassNotes::whatWasNotDone_isTold_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("what");
    const auto row = [](const char *what, const char *text) {
        QTest::newRow(text) << QString::fromUtf8(text) << QString::fromLatin1(what);
    };
    row("branch", "W THRWorker: Branch '9' NOT FOUND for employee: '1001.1 Malá Eva'");
    row("group",
        "W THRWorker: Group ID NOT found for Branch 9 and calendar 1 "
        "[employee: '1001.1 Malá Eva']!");
    row("leave-corrected-today", "I THRWorker::dbCheckFundMove(pid: 10011): exists");
    row("leave-not-at-rest", "I THRWorker::dbCheckAttendance(pid: 10011): NO OK");
    row("test-mode",
        "W THRWorker::dbAddPerson(1001.1) - Testing mode is active, person not really "
        "add!");
    row("refused", "E THRWorker::dbUpdatePerson(1001.1) - SQL ERROR: near 'Neill'");
    row("", "I THRWorker::dbCheckFundMove(pid: 10011): OK - non exists");
    row("", "I THRWorker::dbCheckAttendance(pid: 10011): OK");
    row("", "W THRWorker::dbAddPerson(1001.1) - addPersonIntoPam() FAILED!");
}

void tst_PassNotes::whatWasNotDone_isTold()
{
    QFETCH(QString, text);
    QFETCH(QString, what);
    const Changes changes = changesBy(told({text}));
    QStringList names;
    for (const ChangedPerson &person : changes.people) {
        QCOMPARE(person.person.pamId, QStringLiteral("1001.1"));
        for (const NotDone &notDone : person.notDone) {
            names.append(notDoneName(notDone.what));
            QCOMPARE(notDone.text, text.mid(2));
        }
    }
    QCOMPARE(names.join(QLatin1Char(' ')), what);
}

void tst_PassNotes::refusedStatements_comeFromTheCalls()
{
    PassNotes notes;
    notes.message(QtDebugMsg, QStringLiteral("THRWorker: BEGIN synchronization #1 (force: YES)"));
    CallOutcome refusal;
    refusal.error = QSqlError(QStringLiteral("driver"), QStringLiteral("locked"),
                              QSqlError::StatementError);
    DatabaseCall call;
    call.statement = QStringLiteral("UPDATE atten SET ok = -1 WHERE `lock` =0 AND `man`=0 AND "
                                    "`date` >= 100 AND uid =2");
    notes.call(call, refusal);
    CallOutcome done;
    done.done = true;
    notes.call(call, done);
    call.kind = DatabaseCall::Commit;
    notes.call(call, refusal);
    notes.message(QtCriticalMsg,
                  QStringLiteral("THRWorker::dbUpdatePerson(1002.1) - SQL ERROR: x"));
    notes.message(QtDebugMsg,
                  QStringLiteral("THRWorker: END synchronization #1 (waiting records: 0)"));
    const Changes changes = changesBy(notes.take());
    QVERIFY(changes.header.forced);
    QCOMPARE(changes.people.size(), 1);
    const ChangedPerson &person = changes.people.first();
    QCOMPARE(person.person.uid, 2);
    QCOMPARE(person.notDone.size(), 1);
    QCOMPARE(person.notDone.first().statement, call.statement);
    QCOMPARE(person.notDone.first().error, QStringLiteral("locked"));
    QCOMPARE(person.messages.size(), 1);
}

void tst_PassNotes::passesAreToldApart()
{
    PassNotes notes;
    const auto say = [&notes](const char *text) {
        notes.message(QtDebugMsg, QString::fromLatin1(text));
    };
    const auto complain = [&notes](const char *text) {
        notes.message(QtCriticalMsg, QString::fromLatin1(text));
    };
    say("THRWorker: BEGIN synchronization #1 (force: NO)");
    notes.exportRead({QStringLiteral("one"), QStringLiteral("aa"), 1, 1});
    complain("first");
    QCOMPARE(notes.take().messages.size(), 0);
    say("THRWorker: END synchronization #1 (waiting records: 5)");
    complain("after the end");
    say("THRWorker: BEGIN synchronization #2 (force: YES)");
    notes.exportRead({QStringLiteral("two"), QStringLiteral("bb"), 1, 1});
    complain("second");
    const PassTold first = notes.take();
    QCOMPARE(first.messages.size(), 2);
    QCOMPARE(first.waiting, 5);
    QCOMPARE(first.exported.name, QStringLiteral("one"));
    QVERIFY(!first.forced);
    say("THRWorker: END synchronization #2 (waiting records: 6)");
    say("THRWorker: BEGIN synchronization #3 (force: NO)");
    say("THRWorker: END synchronization #3 (waiting records: 7)");
    const PassTold both = notes.take();
    QCOMPARE(both.messages.size(), 1);
    QCOMPARE(both.waiting, 7);
    QVERIFY(both.forced);
    QCOMPARE(both.exported.name, QString());
    QCOMPARE(notes.take().waiting, -1);
}

void tst_PassNotes::statements_areCountedFromBeginToEnd()
{
    PassNotes notes;
    const auto run = [&notes](DatabaseCall::Kind kind, bool done = true) {
        CallOutcome outcome;
        outcome.done = done;
        notes.call({kind, QStringLiteral("SELECT 1"), {}}, outcome);
    };
    const auto pass = [&notes, &run](int number, int statements) {
        notes.message(
            QtDebugMsg,
            QStringLiteral("THRWorker: BEGIN synchronization #%1 (force: NO)").arg(number));
        run(DatabaseCall::Open);
        run(DatabaseCall::Prepare);
        for (int i = 0; i < statements; ++i)
            run(i % 2 ? DatabaseCall::Exec : DatabaseCall::Run, i != 1);
        notes.message(
            QtDebugMsg,
            QStringLiteral("THRWorker: END synchronization #%1 (waiting records: 0)").arg(number));
        run(DatabaseCall::Exec);
    };
    run(DatabaseCall::Exec);
    QCOMPARE(notes.take().statements, -1);
    pass(1, 5);
    QCOMPARE(notes.take().statements, 5);
    run(DatabaseCall::Exec); // of a tick without a pass
    pass(2, 3);
    pass(3, 4);
    QCOMPARE(notes.take().statements, 7);
}

void tst_PassNotes::signs_standInTheCatalogue()
{
    int resting = 0;
    for (const MessageTopic &topic : messageTopics()) {
        for (const PluginMessage &message : topic.messages) {
            const QString text = QString::fromUtf8(message.text);
            resting += text == QLatin1String("THRWorker::dbCheckFundMove(pid: %u): %s")
                || text == QLatin1String("THRWorker::dbCheckAttendance(pid: %u): %s");
        }
    }
    QCOMPARE(resting, 2);
}

void tst_PassNotes::exports_areIdentified()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("ron.data")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("a\nb\n\nc");
    file.close();
    ExportIdentity identity = identityOf(file.fileName());
    QCOMPARE(identity.name, QStringLiteral("ron.data"));
    QCOMPARE(identity.size, qint64(6));
    QCOMPARE(identity.lines, 4);
    QCOMPARE(identity.digest,
             QString::fromLatin1(
                 QCryptographicHash::hash("a\nb\n\nc", QCryptographicHash::Sha256).toHex()));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    identity = identityOf(file.fileName());
    QCOMPARE(identity.lines, 0);
    QVERIFY(!identity.digest.isEmpty());
    QVERIFY(identityOf(folder.filePath(QStringLiteral("missing"))).digest.isEmpty());
}

QTEST_GUILESS_MAIN(tst_PassNotes)
#include "tst_passnotes.moc"
