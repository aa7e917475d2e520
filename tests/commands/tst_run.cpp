// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr run`: passes, their log and their summary.
#include "host/plugin/settingkeys.h"
#include "support/commands/site.h"
#include "support/commands/talvenhrprocess.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QtTest>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

class tst_Run : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firstPass_makesThePrivateDatabase();
    void secondRun_keepsTheData();
    void sql_showsWhatARunWrote();
    void sql_makesNoDatabase();
    void passes_endsAfterSoMany();
    void once_isOnePassThoughTicksAreOverdue();
    void hold_waitsForALine();
    void nextPass_isToldWithItsTime_data();
    void nextPass_isToldWithItsTime();
    void missingExportIsToldOnce();
    void errorsOfThePassGiveExitCode1();
    void noDatabaseOption_usesAPrivateServerOfTheUser();
    void passwordFromTheEnvironmentIsNotHandedOn();
    void progressBar_givesWayToLogLines();

private:
    QStringList options(const QStringList &others) const;
    QString databasePath() const { return site.path(QStringLiteral("db")); }

    Site site;
};

/// With the private database of this test.
QStringList tst_Run::options(const QStringList &others) const
{
    return site.runOptions(QStringList {QStringLiteral("--private-db"), databasePath()} + others);
}

void tst_Run::firstPass_makesThePrivateDatabase()
{
    TalvenhrProcess program(options({QStringLiteral("--once")}));
    QCOMPARE(program.finish(), 0);
    const QStringList lines = program.lines();
    const QStringList news {
        QStringLiteral("talvenhr: making a private database in '%1'").arg(databasePath()),
        QStringLiteral("talvenhr: new private database with the sample company in '%1'")
            .arg(databasePath())};
    QCOMPARE(lines.mid(0, 2), news);
    // Time, level, text; the names in UTF-8.
    const QRegularExpression form(
        QStringLiteral("^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}[+-]\\d\\d:\\d\\d "
                       "(debug|info|warning|critical) +\\S"));
    for (const QString &line : lines.mid(2, lines.size() - 3))
        QVERIFY2(form.match(line).hasMatch(), qPrintable(line));
    QCOMPARE(program.linesWith(QStringLiteral("THRWorker::dbAddPerson(7001.1  Dáša Novák")).count(),
             1);
    QCOMPARE(program.linesWith(QStringLiteral("BEGIN synchronization #1 (force: NO)")).count(), 1);
    QCOMPARE(program.linesWith(QStringLiteral("EnviroSettings::value()")), QStringList());
    QVERIFY2(program.lastLine().startsWith(
                 QStringLiteral("talvenhr: 1 pass, 3 records, 2 persons added, 1 updated, "
                                "0 warnings, 0 errors, 0 waiting, ")),
             qPrintable(program.lastLine()));
}

void tst_Run::secondRun_keepsTheData()
{
    TalvenhrProcess program(
        options({QStringLiteral("--once"), QStringLiteral("--log-format"), QStringLiteral("json"),
                 QStringLiteral("--log-level"), QStringLiteral("3")}));
    QCOMPARE(program.finish(), 0);
    const QStringList lines = program.lines();
    for (const QString &line : lines) {
        QJsonParseError error;
        const QJsonObject object = QJsonDocument::fromJson(line.toUtf8(), &error).object();
        QVERIFY2(error.error == QJsonParseError::NoError, qPrintable(line));
        const QStringList keys = line == lines.last()
            ? QStringList {QStringLiteral("summary")}
            : QStringList {QStringLiteral("level"), QStringLiteral("text"), QStringLiteral("time")};
        QCOMPARE(object.keys(), keys);
    }
    const QJsonObject summary = QJsonDocument::fromJson(lines.last().toUtf8())
                                    .object()
                                    .value(QStringLiteral("summary"))
                                    .toObject();
    QCOMPARE(summary.value(QStringLiteral("passes")).toInt(), 1);
    QCOMPARE(summary.value(QStringLiteral("records")).toInt(), 3);
    QCOMPARE(summary.value(QStringLiteral("added")).toInt(), 0);
    QCOMPARE(summary.value(QStringLiteral("updated")).toInt(), 3);
    QCOMPARE(summary.value(QStringLiteral("errors")).toInt(), 0);
    QVERIFY(summary.value(QStringLiteral("seconds")).toDouble() > 0.9);
}

void tst_Run::sql_showsWhatARunWrote()
{
    const QStringList start {QStringLiteral("sql"), QStringLiteral("--private-db"), databasePath(),
                             QStringLiteral("--execute")};
    TalvenhrProcess query(
        start + QStringList(QStringLiteral("SELECT name FROM people WHERE pid = 70011")));
    QCOMPARE(query.finish(), 0);
    QCOMPARE(query.output(), QStringLiteral("name\nDáša\n"));
    QCOMPARE(query.lines(), QStringList());
    TalvenhrProcess fault(start + QStringList(QStringLiteral("SELECT kaput")));
    QCOMPARE(fault.finish(), 1);
    QVERIFY(fault.lastLine().startsWith(QStringLiteral("ERROR 1054")));
}

void tst_Run::sql_makesNoDatabase()
{
    const QString folder = databasePath() + QStringLiteral("-mistyped");
    TalvenhrProcess query({QStringLiteral("sql"), QStringLiteral("--private-db"), folder,
                           QStringLiteral("--execute"), QStringLiteral("SELECT 1")});
    QCOMPARE(query.finish(), 3);
    QCOMPARE(query.lines(),
             QStringList(QStringLiteral("talvenhr: there is no private database in '%1'; "
                                        "'talvenhr run' makes one")
                             .arg(folder)));
    QVERIFY(!QFileInfo::exists(folder));
}

void tst_Run::passes_endsAfterSoMany()
{
    TalvenhrProcess program(
        options({QStringLiteral("--passes"), QStringLiteral("2"), QStringLiteral("--force"),
                 QStringLiteral("--log-level"), QStringLiteral("2")}));
    QCOMPARE(program.finish(), 0);
    const QStringList begins = program.linesWith(QStringLiteral("BEGIN synchronization"));
    QCOMPARE(begins.count(), 2);
    QVERIFY(begins.at(0).endsWith(QStringLiteral("#1 (force: YES)")));
    QVERIFY(begins.at(1).endsWith(QStringLiteral("#2 (force: NO)")));
    // Level 2 shows ticks, and the settings as they are read, but no records.
    QCOMPARE(program.linesWith(QStringLiteral("THRWorker::checkSync(): #")).count(), 2);
    // The keys that the plugin asks for are those that the program knows.
    QStringList keys;
    const QStringList keyLines = program.linesWith(QStringLiteral("EnviroSettings::value()"));
    for (const QString &line : keyLines)
        keys.append(line.section(QLatin1Char('\''), 1, 1));
    keys.sort();
    QStringList known = settingKeyNames();
    known.sort();
    QCOMPARE(keys, known);
    QCOMPARE(program.linesWith(QStringLiteral("THRWorker::doSyncRecord(")), QStringList());
    QVERIFY(program.lastLine().startsWith(QStringLiteral("talvenhr: 2 passes, 6 records, ")));
}

void tst_Run::once_isOnePassThoughTicksAreOverdue()
{
    site.set({QStringLiteral("syncCommand=sleep 1.2"), QStringLiteral("syncCommandRun=2")});
    TalvenhrProcess program(options({QStringLiteral("--once")}));
    QCOMPARE(program.finish(), 0);
    QCOMPARE(program.linesWith(QStringLiteral("BEGIN synchronization")).count(), 1);
    site.set({QStringLiteral("syncCommandRun=0")});
}

/// What is prepared between two passes is what the next one meets.
void tst_Run::hold_waitsForALine()
{
    TalvenhrProcess both(options({QStringLiteral("--hold"), QStringLiteral("--show-changes")}));
    QCOMPARE(both.finish(), 2);
    TalvenhrProcess program(options({QStringLiteral("--hold"), QStringLiteral("--changes"),
                                     site.path(QStringLiteral("held"))}));
    program.start();
    QVERIFY(program.waitForOutput(QStringLiteral("pass 1 is over\n")));
    const QDir changes(site.path(QStringLiteral("held")));
    QCOMPARE(changes.entryList({QStringLiteral("*-1.changes.json")}).size(), 1);
    const QString usual = site.readFile(QStringLiteral("ron.data"));
    site.writeFile(QStringLiteral("ron.data"), Site::employee(7009, QStringLiteral("Held")));
    program.send("\n");
    QVERIFY(program.waitForOutput(QStringLiteral("pass 2 is over\n")));
    site.writeFile(QStringLiteral("ron.data"), usual);
    program.endInput();
    QCOMPARE(program.finish(), 0);
    QVERIFY(program.lastLine().startsWith(QStringLiteral("talvenhr: 2 passes, 4 records, ")));
}

void tst_Run::nextPass_isToldWithItsTime_data()
{
    QTest::addColumn<QStringList>("others");
    QTest::addColumn<int>("told");
    QTest::newRow("until a signal") << QStringList() << 1;
    QTest::newRow("at level 0") << QStringList {QStringLiteral("--log-level"), QStringLiteral("0"),
                                                QStringLiteral("--timeout"), QStringLiteral("3")}
                                << 0;
    QTest::newRow("none to come") << QStringList {QStringLiteral("--once")} << 0;
}

void tst_Run::nextPass_isToldWithItsTime()
{
    QFETCH(QStringList, others);
    QFETCH(int, told);
    site.set({QStringLiteral("syncInterval=3600"), QStringLiteral("syncCommandRun=0")});
    TalvenhrProcess program(options(others));
    program.start();
    if (told > 0) {
        QVERIFY(program.waitForLine(QStringLiteral("talvenhr: the next pass begins at ")));
        program.sendSignal(SIGTERM);
    }
    program.finish();
    const QStringList lines = program.linesWith(QStringLiteral("the next pass begins at "));
    QCOMPARE(lines.count(), told);
    // The first tick is over, and the next pass comes with the 3600th.
    const QRegularExpression form(QStringLiteral(
        "next pass begins at \\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d(Z|[+-]\\d\\d:\\d\\d), in "
        "35\\d\\d s, unless one is forced$"));
    for (const QString &line : lines)
        QVERIFY2(form.match(line).hasMatch(), qPrintable(line));
    site.set({QStringLiteral("syncInterval=1")});
}

/// The plugin itself says so at level 2 and above.
void tst_Run::missingExportIsToldOnce()
{
    Site bare;
    bare.set({QStringLiteral("importFile=") + bare.path(QStringLiteral("none.data")),
              QStringLiteral("syncInterval=1")});
    const QString line = QStringLiteral("no export file at '%1'")
                             .arg(bare.path(QStringLiteral("none.data")));
    const QStringList passes = bare.runOptions({QStringLiteral("--private-db"), databasePath(),
                                                QStringLiteral("--passes"), QStringLiteral("2")});
    TalvenhrProcess program(passes);
    QCOMPARE(program.finish(), 0);
    QCOMPARE(program.linesWith(QStringLiteral("talvenhr: ") + line).count(), 1);
    QVERIFY2(program.lastLine().endsWith(QStringLiteral("; there was no export file")),
             qPrintable(program.lastLine()));

    TalvenhrProcess talkative(passes
                              + QStringList {QStringLiteral("--log-level"), QStringLiteral("2")});
    QCOMPARE(talkative.finish(), 0);
    QCOMPARE(talkative.linesWith(line).count(), 0);
    QCOMPARE(talkative.linesWith(QStringLiteral("none.data' NOT found!")).count(), 2);
}

void tst_Run::errorsOfThePassGiveExitCode1()
{
    const QString export_ = site.readFile(QStringLiteral("ron.data"));
    site.writeFile(QStringLiteral("ron.data"), Site::employee(7003, QStringLiteral("D'Arc")));
    TalvenhrProcess program(
        options({QStringLiteral("--once"), QStringLiteral("--log-level"), QStringLiteral("0")}));
    QCOMPARE(program.finish(), 1);
    site.writeFile(QStringLiteral("ron.data"), export_);

    const QStringList lines = program.lines();
    QCOMPARE(lines.count(), 3);
    QVERIFY2(lines.first().contains(QStringLiteral("critical THRWorker::dbAddPerson(7003.1) - ")),
             qPrintable(lines.first()));
    // The group plan of a person who is not there.
    QVERIFY2(lines.at(1).endsWith(QStringLiteral(
                 "warning  THRWorker: can't add record '7003.1 Novák D'Arc (S: 100, "
                 "K: 1 from 1 Jan 2024) N-V: 1 Jan 2020 - ; ES: 0, RS:  -  '' TPP: 11  DOV: 5 "
                 "NOC: 0' into [groups_plan]!")),
             qPrintable(lines.at(1)));
    QVERIFY2(lines.last().startsWith(
                 QStringLiteral("talvenhr: 1 pass, 1 record, 0 persons added, 0 updated, "
                                "1 warning, 1 error, ")),
             qPrintable(lines.last()));
}

void tst_Run::noDatabaseOption_usesAPrivateServerOfTheUser()
{
    const QString home = site.path(QStringLiteral("Ľubkin domov; 'nový'"));
    TalvenhrProcess program(site.runOptions({}), home);
    program.setEnvironment(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    program.start();
    QVERIFY(program.waitForLine(QStringLiteral("THRWorker::start()")));
    program.sendSignal(SIGTERM);
    QCOMPARE(program.finish(), 0);
    const QString folder = home + QStringLiteral("/.local/share/talvenhr/private-db");
    QVERIFY(QFileInfo(folder).isDir());
    const QStringList lines = program.lines();
    QVERIFY2(lines.value(0).contains(folder), qPrintable(lines.value(0)));
    // Qt writes UTF-8 also in this locale, so there is nothing to warn of.
    QCOMPARE(lines.filter(QStringLiteral("in this locale")), QStringList());
}

void tst_Run::passwordFromTheEnvironmentIsNotHandedOn()
{
    const QString script = site.path(QStringLiteral("export.sh"));
    site.writeFile(QStringLiteral("export.sh"),
                   QStringLiteral("env > ") + site.path(QStringLiteral("environment")));
    site.set({QStringLiteral("syncCommand=sh ") + script, QStringLiteral("syncCommandRun=2")});
    TalvenhrProcess program(options({QStringLiteral("--once")}));
    program.setEnvironment(QStringLiteral("TALVENHR_PASSWORD"), QStringLiteral("not needed here"));
    QCOMPARE(program.finish(), 0);
    site.set({QStringLiteral("syncCommandRun=0")});

    const QString environment = site.readFile(QStringLiteral("environment"));
    QVERIFY(environment.contains(QStringLiteral("LC_ALL=C.UTF-8")));
    QVERIFY(!environment.contains(QStringLiteral("TALVENHR_PASSWORD")));
}

void tst_Run::progressBar_givesWayToLogLines()
{
    const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
    QVERIFY(terminal >= 0 && ::grantpt(terminal) == 0 && ::unlockpt(terminal) == 0);
    const QByteArray name = ::ptsname(terminal);
    // Held open, so that nothing is lost when the program ends.
    const int held = ::open(name.constData(), O_RDWR | O_NOCTTY);
    TalvenhrProcess program(options({QStringLiteral("--once")}));
    program.setErrorFile(QString::fromLatin1(name));
    program.setEnvironment(QStringLiteral("TERM"), QStringLiteral("xterm"));
    QCOMPARE(program.finish(), 0);

    QByteArray shown;
    char buffer[4096];
    for (ssize_t count; (count = ::read(terminal, buffer, sizeof(buffer))) > 0;)
        shown.append(buffer, static_cast<int>(count));
    ::close(held);
    ::close(terminal);

    const QByteArray wipe("\r\033[K");
    QVERIFY2(shown.contains(wipe + "[####"), shown.constData());
    QVERIFY2(shown.contains("] 1 of 3 records, 33 %" + wipe + "2"), shown.constData());
    // Records are counted for the bar, yet not shown.
    QVERIFY2(!shown.contains("THRWorker::doSyncRecord("), shown.constData());
}

QTEST_GUILESS_MAIN(tst_Run)
#include "tst_run.moc"
