// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr undo`: printed, looked at, applied.
#include "host/server/privatedatabase.h"
#include "support/commands/site.h"
#include "support/commands/talvenhrprocess.h"

#include <QDir>
#include <QtTest>

#include <memory>

class tst_UndoCommand : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void usage_isChecked_data();
    void usage_isChecked();
    void withoutDatabase_statementsArePrinted();
    void look_tellsWhatIsLeftAlone();
    void loginThatOnlyReads_takesNothingBack();
    void apply_takesBackWhatNobodyChanged();
    void rehearsedChanges_takeTheRealPassBack();
    void anotherRun_keepsItAway();

private:
    QStringList database() const
    {
        return {QStringLiteral("--private-db"), site.path(QStringLiteral("db"))};
    }
    /// The same as one on a server.
    QStringList login(const char *user) const
    {
        const ConnectionParameters parameters = server->parameters();
        return {QStringLiteral("--socket"), parameters.socket,        QStringLiteral("--database"),
                parameters.database,        QStringLiteral("--user"), QLatin1String(user)};
    }
    QStringList where() const
    {
        return login("root") + QStringList {QStringLiteral("--data-dir"), site.dataDir()};
    }
    QString run(const QString &folder) const;
    QString sql(const QString &statement) const;
    QString rows() const;
    QStringList undo(const QString &file, const QStringList &others) const
    {
        return QStringList {QStringLiteral("undo"), file} + others;
    }

    Site site;
    std::unique_ptr<PrivateDatabase> server;
    QString before; ///< the pass
    QString changes; ///< of the pass: one added, one updated
};

/// Runs a pass. The path of its changes.
QString tst_UndoCommand::run(const QString &folder) const
{
    const QString path = site.path(folder);
    TalvenhrProcess program(QStringList {QStringLiteral("run"), QStringLiteral("--once"),
                                         QStringLiteral("--changes"), path}
                            + where());
    if (program.finish() != 0)
        QTest::qFail(qPrintable(program.lastLine()), __FILE__, __LINE__);
    const QDir files(path);
    return files.filePath(files.entryList(QDir::Files, QDir::Name).value(0));
}

QString tst_UndoCommand::sql(const QString &statement) const
{
    TalvenhrProcess program(
        QStringList {QStringLiteral("sql"), QStringLiteral("--execute"), statement} + database());
    if (program.finish() != 0)
        QTest::qFail(qPrintable(program.lastLine()), __FILE__, __LINE__);
    return program.output();
}

/// What a pass would add and change.
QString tst_UndoCommand::rows() const
{
    return sql(QStringLiteral(
        "SELECT uid, pid, name, surname, status FROM people WHERE pid IN (10011, 71011); "
        "SELECT * FROM brape WHERE uid > 10; SELECT * FROM people_term WHERE uid > 10; "
        "SELECT * FROM people_pam WHERE uid > 10; SELECT * FROM admins_people ORDER BY 1, 2; "
        "SELECT value FROM vars WHERE name = 'exportPam.1.selPeople'"));
}

void tst_UndoCommand::initTestCase()
{
    TalvenhrProcess first(QStringList {QStringLiteral("run"), QStringLiteral("--once"),
                                       QStringLiteral("--data-dir"), site.dataDir()}
                          + database());
    site.writeFile(QStringLiteral("ron.data"), Site::employee(1001, QStringLiteral("Ľubomír")));
    QCOMPARE(first.finish(), 0);
    server = std::make_unique<PrivateDatabase>(site.path(QStringLiteral("db")));
    const Failure failure = server->start();
    QVERIFY2(!failure, qPrintable(failure.text));
    sql(QStringLiteral("CREATE USER reader@localhost; GRANT SELECT, TRIGGER, SHOW VIEW ON *.* TO "
                       "reader@localhost; "
                       "CREATE TRIGGER attendance.watcher AFTER DELETE ON attendance.people "
                       "FOR EACH ROW SET @seen = OLD.uid"));
    before = rows();
    site.writeFile(QStringLiteral("ron.data"),
                   Site::employee(1001, QStringLiteral("Iný")) + QLatin1Char('\n')
                       + Site::employee(7101, QStringLiteral("Nová")));
    changes = run(QStringLiteral("second"));
    QVERIFY(rows() != before);
}

void tst_UndoCommand::usage_isChecked_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("message");
    const auto row = [](const char *name, const QStringList &options, const char *message) {
        QTest::newRow(name) << options << QString::fromLatin1(message);
    };
    row("nobody", {QStringLiteral("--person"), QStringLiteral("5.5")},
        "nothing has changed for '5.5' in these changes");
    row("no kind", {QStringLiteral("--kind"), QStringLiteral("adde")}, "did you mean 'added'");
    row("what stays", {QStringLiteral("--kind"), QStringLiteral("reopened")},
        "nothing of the kind 'reopened' is taken back");
    row("no database", {QStringLiteral("--apply")}, "--apply takes a database");
}

void tst_UndoCommand::usage_isChecked()
{
    QFETCH(QStringList, options);
    QFETCH(QString, message);
    TalvenhrProcess program(undo(changes, options));
    QCOMPARE(program.finish(), 2);
    QVERIFY2(program.lastLine().contains(message), qPrintable(program.lastLine()));
    QCOMPARE(program.output(), QString());
}

void tst_UndoCommand::withoutDatabase_statementsArePrinted()
{
    TalvenhrProcess whole(undo(changes, {}));
    QCOMPARE(whole.finish(), 0);
    const QString script = whole.output();
    QVERIFY(script.startsWith(QStringLiteral("-- Takes back the pass that ended at ")));
    QVERIFY(script.contains(QStringLiteral("-- How to go on: ")));
    QVERIFY(script.contains(QStringLiteral("\n-- 1001.1 Iný Novák: own row: name\nSET @uid = ")));
    // Nobody knows what refers to somebody.
    QVERIFY(script.contains(QStringLiteral("\n-- 7101.1 Nová Novák: added person\nUPDATE ")));
    QVERIFY(!script.contains(QStringLiteral("DELETE FROM `people` ")));
    TalvenhrProcess part(undo(changes, {QStringLiteral("--person"), QStringLiteral("1001.1")}));
    QCOMPARE(part.finish(), 0);
    QVERIFY(part.output().contains(QStringLiteral("1001.1")));
    QVERIFY(!part.output().contains(QStringLiteral("7101.1")));
}

/// A login that only reads is enough.
void tst_UndoCommand::look_tellsWhatIsLeftAlone()
{
    sql(QStringLiteral("UPDATE people SET phone = '77' WHERE pid = 10011"));
    const QString now = rows();
    TalvenhrProcess program(undo(changes, login("reader")));
    QCOMPARE(program.finish(), 1);
    QVERIFY(program.output().contains(
        QStringLiteral("-- 1001.1 Iný Novák: own row: name (left alone: changed since)\n")));
    QVERIFY(program.output().contains(QStringLiteral("\nDELETE FROM `people` ")));
    QVERIFY(program.output().contains(QStringLiteral(", left alone: 1.\n")));
    QVERIFY(program.output().contains(QStringLiteral("-- Restart the attendance server before ")));
    QCOMPARE(rows(), now);
    sql(QStringLiteral("UPDATE people SET phone = '' WHERE pid = 10011"));
}

void tst_UndoCommand::loginThatOnlyReads_takesNothingBack()
{
    const QString now = rows();
    TalvenhrProcess program(
        undo(changes, login("reader") + QStringList(QStringLiteral("--apply"))));
    QCOMPARE(program.finish(), 3);
    QVERIFY2(program.lastLine().contains(QStringLiteral("nothing was taken back: ")),
             qPrintable(program.lastLine()));
    QCOMPARE(rows(), now);
}

void tst_UndoCommand::apply_takesBackWhatNobodyChanged()
{
    const QStringList apply = database() + QStringList {QStringLiteral("--apply")};
    TalvenhrProcess program(undo(changes, apply));
    QCOMPARE(program.finish(), 0);
    QVERIFY2(program.output().contains(
                 QStringLiteral("\n  people who were added, removed: 1\n  people's own rows: 1\n")),
             qPrintable(program.output()));
    QVERIFY(program.output().contains(QStringLiteral("\nDone. Taken back: ")));
    QVERIFY2(program.output().simplified().contains(QStringLiteral(" stays: watcher. ")),
             qPrintable(program.output()));
    QCOMPARE(rows(), before);

    TalvenhrProcess again(undo(changes, apply));
    QCOMPARE(again.finish(), 1);
    QVERIFY(again.output().contains(QStringLiteral("All of it is left alone: ")));
    QVERIFY(again.output().contains(QStringLiteral("\nDone. Taken back: 0, left alone: ")));
    QCOMPARE(rows(), before);
}

/// Whoever is new has another id by then.
void tst_UndoCommand::rehearsedChanges_takeTheRealPassBack()
{
    const QString rehearsed = site.path(QStringLiteral("rehearsed.json"));
    TalvenhrProcess rehearse(QStringList {QStringLiteral("rehearse"), QStringLiteral("--no-limits"),
                                          QStringLiteral("--changes"), rehearsed,
                                          QStringLiteral("--data-dir"), site.dataDir()}
                             + database());
    QCOMPARE(rehearse.finish(), 0);
    sql(QStringLiteral("ALTER TABLE people AUTO_INCREMENT = 4000"));
    run(QStringLiteral("third"));
    QVERIFY(rows().contains(QStringLiteral("4000\t71011\tNová")));
    const QStringList apply = login("talvenhr_undo") + QStringList {QStringLiteral("--apply")};
    TalvenhrProcess program(undo(rehearsed, apply));
    QCOMPARE(program.finish(), 0);
    QVERIFY2(program.output().startsWith(QStringLiteral("Taking back the pass that was rehearsed")),
             qPrintable(program.output()));
    QCOMPARE(rows(), before);
}

void tst_UndoCommand::anotherRun_keepsItAway()
{
    site.holdPasses();
    TalvenhrProcess other(QStringList {QStringLiteral("run"), QStringLiteral("--once")} + where());
    other.start();
    QVERIFY(other.waitForLine(QStringLiteral("BEGIN synchronization")));
    TalvenhrProcess program(undo(changes, database() + QStringList {QStringLiteral("--apply")}));
    QCOMPARE(program.finish(), 5);
    QVERIFY2(program.lastLine().contains(QStringLiteral("another 'talvenhr run' is at work")),
             qPrintable(program.lastLine()));
    site.endPass();
    QCOMPARE(other.finish(), 0);
}

QTEST_GUILESS_MAIN(tst_UndoCommand)
#include "tst_undocommand.moc"
