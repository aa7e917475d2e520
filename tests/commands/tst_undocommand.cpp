// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr undo`: printed, looked at, applied.
#include "host/gate/gaterecord.h"
#include "host/server/privatedatabase.h"
#include "support/commands/site.h"
#include "support/commands/talvenhrprocess.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
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
    void script_doesTheSameAsApply();
    void configuration_namesTheDatabase_data();
    void configuration_namesTheDatabase();
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
    QString archived(const QString &name) const;
    void feed(const QString &script) const;
    static void setVariables(const QString &variables, TalvenhrProcess *program);
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

/// The path of the changes, as the archive of a gate has them.
QString tst_UndoCommand::archived(const QString &name) const
{
    QDir().mkpath(site.path(QStringLiteral("archive")));
    GateRecord record;
    record.name = name;
    record.outcome = GateRecord::Passed;
    record.when = record.fileTime = QDateTime::currentDateTimeUtc();
    record.exported.name = QStringLiteral("ron.data");
    record.exported.digest = record.placedDigest = QString(64, QLatin1Char('a'));
    const QString stem = site.path(QStringLiteral("archive/")) + name;
    const Failure failure = writeGateRecord(record, stem + recordEnding());
    if (failure)
        QTest::qFail(qPrintable(failure.text), __FILE__, __LINE__);
    const QString path = stem + QStringLiteral(".changes.json");
    if (!QFile::copy(changes, path))
        QTest::qFail("no copy", __FILE__, __LINE__);
    return path;
}

/// To a client that takes all texts for those of another alphabet.
void tst_UndoCommand::feed(const QString &script) const
{
    const ConnectionParameters parameters = server->parameters();
    QProcess client;
    client.start(QStringLiteral("mariadb"),
                 {QStringLiteral("--no-defaults"), QStringLiteral("--default-character-set=latin1"),
                  QStringLiteral("--user=root"), QStringLiteral("--socket=") + parameters.socket,
                  parameters.database});
    client.write(script.toUtf8());
    client.closeWriteChannel();
    QVERIFY(client.waitForFinished(longestWait));
    QVERIFY2(client.exitCode() == 0, client.readAllStandardError().constData());
}

/// NAME=VALUE, with blanks between them.
void tst_UndoCommand::setVariables(const QString &variables, TalvenhrProcess *program)
{
    const QStringList words = variables.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString &word : words)
        program->setEnvironment(word.section(QLatin1Char('='), 0, 0),
                                word.section(QLatin1Char('='), 1));
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
    QVERIFY(script.contains(QStringLiteral("-- What is taken back, by kind:\n"
                                           "--   people who were added, made inactive: 1\n"
                                           "--   people's own rows: 1\n")));
    QVERIFY(script.contains(QStringLiteral("-- How to go on: ")));
    QVERIFY(!script.contains(QStringLiteral("touch")));
    TalvenhrProcess archive(undo(archived(QStringLiteral("20261122T124002Z-1")), {}));
    QCOMPARE(archive.finish(), 0);
    QVERIFY(archive.output().contains(
        QStringLiteral("\n--   touch '%1'\n\nSET NAMES")
            .arg(site.path(QStringLiteral("archive/20261122T124002Z-1.settled")))));
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
    const QTemporaryDir scratch;
    program.setEnvironment(QStringLiteral("TMPDIR"), scratch.path());
    // One that was killed.
    const QString left = scratch.filePath(QStringLiteral("talvenhr-scratch-aBcDeF"));
    QVERIFY(QDir().mkdir(left));
    QFile lock(left + QStringLiteral("/scratch.lock"));
    QVERIFY(lock.open(QIODevice::WriteOnly));
    lock.close();
    QCOMPARE(program.finish(), 1);
    QCOMPARE(QDir(scratch.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList());
    QVERIFY(program.output().contains(
        QStringLiteral("-- 1001.1 Iný Novák: own row: name (left alone, changed since: phone ''"
                       " -> '77')\n")));
    QVERIFY(program.output().contains(QStringLiteral("\nDELETE FROM `people` ")));
    QVERIFY(program.output().contains(QStringLiteral("\n--   left alone: 1\n")));
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
    QVERIFY2(program.lastLine().contains(QStringLiteral("nothing was taken back: "))
                 && program.lastLine().contains(QStringLiteral(" --user reader_undo ")),
             qPrintable(program.lastLine()));
    QCOMPARE(rows(), now);
    // Nor does one that may not enter the database.
    sql(QStringLiteral("CREATE USER stranger_undo@localhost"));
    TalvenhrProcess stranger(undo(changes, login("stranger_undo")));
    QCOMPARE(stranger.finish(), 3);
    QVERIFY2(stranger.lastLine().contains(QStringLiteral("'stranger_undo' lacks a right: ")),
             qPrintable(stranger.lastLine()));
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
    QCOMPARE(again.finish(), 0);
    const QRegularExpression oneLine(QStringLiteral(
        "\\AThere is nothing to do: the pass that ended at \\S+ over ron\\.data is taken back\\s"
        "already\\.\\n\\z"));
    QVERIFY2(oneLine.match(again.output()).hasMatch(), qPrintable(again.output()));
    QCOMPARE(rows(), before);

    TalvenhrProcess look(undo(changes, login("reader")));
    QCOMPARE(look.finish(), 0);
    QVERIFY(look.output().contains(QStringLiteral("\n-- There is nothing to do: ")));
    QVERIFY(look.output().contains(
        QStringLiteral("-- 1001.1 Iný Novák: own row: name (taken back already)\n")));
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

/// Texts of two alphabets and directions, with all that a client takes for something else.
void tst_UndoCommand::script_doesTheSameAsApply()
{
    const QString odd = QString::fromUtf8("Ľ'\"`\\\\; -- /* שלום ") + QChar(0x202e)
        + QStringLiteral("abc");
    sql(QStringLiteral("UPDATE attendance.people SET name = _utf8mb4 x'%1' WHERE pid = 10011")
            .arg(QString::fromLatin1(odd.toUtf8().toHex())));
    const QString old = rows();
    QVERIFY(old.contains(QStringLiteral("abc")));
    site.writeFile(QStringLiteral("ron.data"),
                   Site::employee(1001, QString::fromUtf8("محمد \"x\" `y`; DELIMITER /* "))
                       + QLatin1Char('\n')
                       + Site::employee(7101, QString::fromUtf8("שלום -- #\\g ")));
    const auto pass = [&](const char *folder) {
        const QString file = run(QLatin1String(folder));
        if (rows() == old)
            QTest::qFail("nothing has changed", __FILE__, __LINE__);
        return undo(file, login("talvenhr_undo"));
    };
    const QStringList printed = pass("printed");
    TalvenhrProcess program(printed);
    QCOMPARE(program.finish(), 0);
    feed(program.output());
    QCOMPARE(rows(), old);
    TalvenhrProcess applied(pass("applied") + QStringList {QStringLiteral("--apply")});
    QCOMPARE(applied.finish(), 0);
    QCOMPARE(rows(), old);
}

void tst_UndoCommand::configuration_namesTheDatabase_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("variables");
    QTest::addColumn<int>("exitCode");
    const auto row = [](const char *name, const char *file, const char *variables, int exitCode) {
        QTest::newRow(name) << QString::fromLatin1(file) << QString::fromLatin1(variables)
                            << exitCode;
    };
    row("file", "socket=HERE\nuser=talvenhr_undo\npassword-file=undo.password\n", "", 0);
    row("variables", "", "TALVENHR_SOCKET=HERE TALVENHR_USER=talvenhr_undo TALVENHR_PASSWORD=back",
        0);
    row("file of the password in a variable", "socket=HERE\nuser=talvenhr_undo\n",
        "TALVENHR_PASSWORD_FILE=undo.password", 0);
    row("another user in a variable",
        "socket=HERE\nuser=talvenhr_undo\npassword-file=undo.password\n", "TALVENHR_USER=nobody",
        3);
}

/// With the pass taken back already, which nobody can know without the database.
void tst_UndoCommand::configuration_namesTheDatabase()
{
    QFETCH(QString, file);
    QFETCH(QString, variables);
    QFETCH(int, exitCode);
    sql(QStringLiteral("ALTER USER talvenhr_undo@localhost IDENTIFIED BY 'back'; "
                       "UPDATE attendance.people SET name = 'Ľubomír' WHERE pid = 10011"));
    const QString socket = server->parameters().socket;
    site.writeFile(QStringLiteral("undo.password"), QStringLiteral("back\n"));
    site.writeFile(QStringLiteral("undo.conf"),
                   QStringLiteral("[database]\n") + file.replace(QStringLiteral("HERE"), socket));
    TalvenhrProcess program(undo(changes, {QStringLiteral("--apply")}), site.dataDir());
    program.setEnvironment(QStringLiteral("TALVENHR_CONFIG"),
                           site.path(QStringLiteral("undo.conf")));
    setVariables(
        variables.replace(QStringLiteral("HERE"), socket)
            .replace(QStringLiteral("undo.password"), site.path(QStringLiteral("undo.password"))),
        &program);
    QVERIFY2(program.finish() == exitCode, qPrintable(program.lastLine()));
    if (exitCode == 0)
        QVERIFY2(program.output().startsWith(QStringLiteral("There is nothing to do: ")),
                 qPrintable(program.output()));
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
