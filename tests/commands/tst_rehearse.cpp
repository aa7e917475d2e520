// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr rehearse` and `talvenhr run --plan`.
#include "host/database/connection.h"
#include "host/server/privatedatabase.h"
#include "support/commands/jsonschema.h"
#include "support/commands/site.h"
#include "support/commands/talvenhrprocess.h"
#include "support/patience.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSqlQuery>
#include <QtTest>

#include <csignal>

namespace {

QJsonObject objectOf(const QString &text)
{
    return QJsonDocument::fromJson(text.toUtf8()).object();
}

/// The row of a page's table of kinds, with what the document says.
QRegularExpression rowOf(const QString &kind, double count, const QString &limit)
{
    return QRegularExpression(
        QStringLiteral("<th>%1</th>.*<td class=\"number\">%2</td><td class=\"number\">%3</td>")
            .arg(kind)
            .arg(count)
            .arg(limit));
}

} // namespace

class tst_Rehearse : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void whatCannotBe_isToldBeforeAnythingIsCopied_data();
    void whatCannotBe_isToldBeforeAnythingIsCopied();
    void page_hasTheNumbersOfTheDocument();
    void plan_letsOnlyTheSamePassThrough();
    void plan_takesNoOtherExport_data();
    void plan_takesNoOtherExport();
    void plan_holdsTheLockAndGoesWithoutRights();
    void plan_goesWithTheAccountMadeForIt();
    void withoutAutomaticCommit_nothingStays();
    void exportWithoutAUsableLine_isAnError();
    void configuration_namesTheSourceAndNeverTheCopy();
    void exportThatIsReplaced_isNotJudged();
    void killed_leavesNothingForLong();
    void interrupted_changesNothing();

private:
    QStringList where() const
    {
        return {QStringLiteral("--private-db"), site.path(QStringLiteral("db")),
                QStringLiteral("--data-dir"), site.dataDir()};
    }
    QStringList command(std::initializer_list<const char *> words) const;
    QStringList scratch() const
    {
        return QDir(scratchPlace.path()).entryList({QStringLiteral("talvenhr-scratch-*")});
    }

    Site site;
    QTemporaryDir scratchPlace;
    QString pagePlan; ///< of the page's rehearsal
    QString laterPlan; ///< of the rows of plan_takesNoOtherExport()
};

QStringList tst_Rehearse::command(std::initializer_list<const char *> words) const
{
    QStringList all;
    for (const char *word : words)
        all.append(QString::fromUtf8(word));
    return all + where();
}

/// Makes the database. Of the sample company, the export holds two people.
void tst_Rehearse::initTestCase()
{
    TalvenhrProcess first(command({"run", "--once"}));
    QCOMPARE(first.finish(), 0);
}

void tst_Rehearse::init()
{
    site.set({QStringLiteral("syncCommandRun=0")});
    site.writeFile(QStringLiteral("ron.data"), Site::employee(7001, QStringLiteral("Daria")));
}

void tst_Rehearse::whatCannotBe_isToldBeforeAnythingIsCopied_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("fault");
    const QString exportFile = site.exportFile();
    const auto row = [](const QStringList &options, const char *fault) {
        QTest::newRow(fault) << options << QString::fromLatin1(fault);
    };
    for (const char *option : {"--html", "--changes"}) {
        row({QLatin1String(option), exportFile}, "is read, and would be lost");
        row({QLatin1String(option), site.path(QStringLiteral("no/x"))}, "': there is no folder '");
    }
    row({QStringLiteral("--keep"), site.dataDir()}, "holds something already; name another one");
    row({QStringLiteral("--export"), QStringLiteral("/none")}, "there is no export '/none'");
    row({QStringLiteral("--after"), QStringLiteral("/no/x")}, "there is no file '/no/x'");
    row({QStringLiteral("--after"), site.dataDir()}, "' is a folder, not a file");
    row({QStringLiteral("--person"), QString()}, "--person needs somebody, such as 4711.1");
    row({QStringLiteral("--today"), QStringLiteral("1900-01-01")}, "from 1970-01-03 to 2038-01-17");
    row({QStringLiteral("--limit"), QStringLiteral("changed:surnam=1")},
        "has no column 'surnam' (did you mean 'surname'?)");
    row({QStringLiteral("--allow"), QStringLiteral("lost=1")},
        "the limit 'lost' compares two exports, and holds for 'talvenhr gate' only");
}

void tst_Rehearse::whatCannotBe_isToldBeforeAnythingIsCopied()
{
    QFETCH(QStringList, options);
    QFETCH(QString, fault);
    const QString before = site.readFile(QStringLiteral("ron.data"));
    TalvenhrProcess program(command({"rehearse"}) + options);
    program.setEnvironment(QStringLiteral("TMPDIR"), scratchPlace.path());
    QCOMPARE(program.finish(), 2);
    QVERIFY2(program.lastLine().contains(fault), qPrintable(program.lastLine()));
    QCOMPARE(program.lines().size(), 1);
    QCOMPARE(site.readFile(QStringLiteral("ron.data")), before);
}

void tst_Rehearse::page_hasTheNumbersOfTheDocument()
{
    const QString page = QStringLiteral("page.html");
    const QString kept = site.path(QStringLiteral("kept"));
    TalvenhrProcess program(
        command({"rehearse", "--json", "--no-limits", "--limit", "updated=0", "--limit",
                 "missing=90%", "--limit", "changed:name=3"})
        + QStringList({QStringLiteral("--keep"), kept, QStringLiteral("--html"), site.path(page)}));
    QCOMPARE(program.finish(), 5);
    const QString output = program.output();
    QCOMPARE(schemaFault(output.toUtf8(), QStringLiteral("changes")), QString());
    const QJsonObject document = objectOf(output);
    pagePlan = document.value(QStringLiteral("plan"))[QLatin1String("hash")].toString();
    const QString html = site.readFile(page);
    QHash<QString, QJsonObject> limits;
    const QJsonArray outcomes = document.value(QStringLiteral("rehearsal"))[QLatin1String("limits")]
                                    .toArray();
    for (const QJsonValue &outcome : outcomes)
        limits.insert(outcome[QLatin1String("kind")].toString(), outcome.toObject());
    QCOMPARE(limits.size(), 3);
    QVERIFY(limits.value(QStringLiteral("updated")).value(QStringLiteral("exceeded")).toBool());
    for (const QJsonObject &limit : qAsConst(limits)) {
        const QRegularExpression row = rowOf(
            limit.value(QStringLiteral("kind")).toString(),
            limit.value(QStringLiteral("found")).toDouble(),
            QString::number(limit.value(QStringLiteral("allowed")).toDouble()));
        QVERIFY2(html.contains(row), qPrintable(row.pattern()));
    }
    const QJsonObject summary = document.value(QStringLiteral("summary")).toObject();
    for (auto kind = summary.begin(); kind != summary.end(); ++kind) {
        const bool isShown = html.contains(QStringLiteral("<th>%1</th>").arg(kind.key()));
        QVERIFY2(isShown == (kind.value().toInt() > 0 || limits.contains(kind.key())),
                 qPrintable(kind.key()));
        if (isShown && !limits.contains(kind.key()))
            QVERIFY2(html.contains(rowOf(kind.key(), kind.value().toInt(), QString())),
                     qPrintable(kind.key()));
    }
    TalvenhrProcess sql({QStringLiteral("sql"), QStringLiteral("--private-db"), kept,
                         QStringLiteral("--execute"), QStringLiteral("SELECT 1")});
    QCOMPARE(sql.finish(), 0);
}

void tst_Rehearse::plan_letsOnlyTheSamePassThrough()
{
    const QString changes = site.path(QStringLiteral("planned.json"));
    TalvenhrProcess rehearse(command({"rehearse", "--quiet", "--no-limits"})
                             + QStringList({QStringLiteral("--changes"), changes}));
    QCOMPARE(rehearse.finish(), 0);
    const QString plan = rehearse.output().section(QStringLiteral("plan: "), 1).trimmed();
    QCOMPARE(plan.size(), 49);
    // The rehearsal before was one of the same state.
    QVERIFY(pagePlan.isEmpty() || plan == pagePlan);
    const QStringList planned = command({"run", "--once", "--no-limits", "--plan"});
    const auto withPlan = [&planned](const QString &named) {
        QStringList words = planned;
        words.insert(4, named);
        return words;
    };

    TalvenhrProcess malformed(withPlan(plan.left(40)));
    QCOMPARE(malformed.finish(), 2);
    QVERIFY(malformed.lastLine().contains(QStringLiteral("--plan takes the hash in the last")));
    site.set({QStringLiteral("syncCommandRun=2")});
    TalvenhrProcess fetched(withPlan(plan));
    QCOMPARE(fetched.finish(), 2);
    QVERIFY(fetched.lastLine().contains(QStringLiteral("set syncCommandRun=0 in ")));
    site.set({QStringLiteral("syncCommandRun=0")});

    site.writeFile(QStringLiteral("ron.data"), Site::employee(7001, QStringLiteral("Other")));
    TalvenhrProcess other(withPlan(changes));
    QCOMPARE(other.finish(), 5);
    QCOMPARE(other.linesWith(QStringLiteral("when it was planned: the export.")).size(), 1);
    QCOMPARE(other.linesWith(QStringLiteral("7001.1 Other Novák: planned: updated")).size(), 1);
    QVERIFY2(other.lastLine().endsWith(QStringLiteral("talvenhr rehearse --data-dir '%1' "
                                                      "--private-db '%1/db' --no-limits")
                                           .arg(site.dataDir())),
             qPrintable(other.lastLine()));

    init();
    TalvenhrProcess beyond(command({"run", "--once", "--plan"}).mid(0, 3) + QStringList(plan)
                           + where());
    QCOMPARE(beyond.finish(), 5);
    QVERIFY2(beyond.lastLine().contains(QStringLiteral("so nothing was changed: missing: ")),
             qPrintable(beyond.lastLine()));
    TalvenhrProcess unplanned(command({"run", "--once", "--allow", "missing=90"}));
    QCOMPARE(unplanned.finish(), 2);
    TalvenhrProcess same(withPlan(plan));
    QCOMPARE(same.finish(), 0);
    QVERIFY2(same.lastLine().contains(QStringLiteral("1 pass")), qPrintable(same.lastLine()));
}

void tst_Rehearse::plan_takesNoOtherExport_data()
{
    QTest::addColumn<QString>("other");
    QTest::addColumn<QString>("reason");
    QTest::newRow("another") << Site::employee(7001, QStringLiteral("Intruder"))
                             << QStringLiteral("so no line of it was taken; rehearse the new one");
    QTest::newRow("gone") << QString()
                          << QStringLiteral("the export that was rehearsed is gone, so no line of "
                                            "it was taken");
}

/// It comes when the rehearsal is over, and the plugin waits for its first tick.
void tst_Rehearse::plan_takesNoOtherExport()
{
    QFETCH(QString, other);
    QFETCH(QString, reason);
    site.set({QStringLiteral("syncCommandRun=0"), QStringLiteral("timerInterval=6")});
    if (laterPlan.isEmpty()) {
        TalvenhrProcess rehearse(command({"rehearse", "--quiet", "--no-limits"}));
        QCOMPARE(rehearse.finish(), 0);
        laterPlan = rehearse.output().section(QStringLiteral("plan: "), 1).trimmed();
    }
    QStringList planned = command({"run", "--once", "--no-limits", "--plan"});
    planned.insert(4, laterPlan);
    TalvenhrProcess run(planned);
    run.start();
    QVERIFY(run.waitForLine(QStringLiteral("the first pass begins at")));
    if (other.isEmpty())
        QVERIFY(QFile::remove(site.exportFile()));
    else
        site.writeFile(QStringLiteral("ron.data"), other);
    QCOMPARE(run.finish(), 5);
    QVERIFY2(run.lastLine().contains(reason), qPrintable(run.lastLine()));
    TalvenhrProcess sql({QStringLiteral("sql"), QStringLiteral("--private-db"),
                         site.path(QStringLiteral("db")), QStringLiteral("--execute"),
                         QStringLiteral("SELECT COUNT(*) FROM people WHERE name = 'Intruder'")});
    QCOMPARE(sql.finish(), 0);
    QVERIFY2(sql.output().trimmed().endsWith(QLatin1Char('0')), qPrintable(sql.output()));
}

/// As far as a login may see what the copy is made of.
void tst_Rehearse::plan_holdsTheLockAndGoesWithoutRights()
{
    PrivateDatabase database(site.path(QStringLiteral("db")));
    QVERIFY(!database.start());
    Connection administrator(QStringLiteral("administrator"));
    QVERIFY(!administrator.open(database.administratorParameters()));
    QSqlQuery query(administrator.handle());
    QVERIFY(query.exec(QStringLiteral("CREATE USER IF NOT EXISTS poor@localhost")));
    QVERIFY(query.exec(QStringLiteral("GRANT SELECT, INSERT, UPDATE, DELETE, EXECUTE, "
                                      "CREATE TEMPORARY TABLES ON %1.* TO poor@localhost")
                           .arg(database.parameters().database)));
    QVERIFY(query.exec(QStringLiteral("GRANT SELECT ON mysql.proc TO poor@localhost")));
    const ConnectionParameters parameters = database.administratorParameters();
    const QStringList login {QStringLiteral("--data-dir"), site.dataDir(),
                             QStringLiteral("--socket"),   parameters.socket,
                             QStringLiteral("--database"), parameters.database,
                             QStringLiteral("--user"),     QStringLiteral("poor"),
                             QStringLiteral("--no-limits")};
    const QString lacking = QStringLiteral("--without-triggers");
    TalvenhrProcess rehearse(
        QStringList {QStringLiteral("rehearse"), QStringLiteral("--quiet"), lacking} + login);
    QCOMPARE(rehearse.finish(), 0);
    const QString plan = rehearse.output().section(QStringLiteral("plan: "), 1).trimmed();
    const QStringList planned = QStringList {QStringLiteral("run"), QStringLiteral("--once"),
                                             QStringLiteral("--plan"), plan}
        + login;

    TalvenhrProcess whole(planned);
    QCOMPARE(whole.finish(), 5);
    QVERIFY2(whole.lastLine().contains(QStringLiteral("TRIGGER")), qPrintable(whole.lastLine()));
    TalvenhrProcess unplanned(QStringList {QStringLiteral("run"), lacking} + login.mid(0, 8));
    QCOMPARE(unplanned.finish(), 2);
    QVERIFY(unplanned.lastLine().contains(QStringLiteral("--without-triggers takes --plan")));

    // Who is at work is told before anything is rehearsed.
    QVERIFY(
        query.exec(QStringLiteral("DO GET_LOCK('talvenhr run %1', 0)").arg(parameters.database)));
    TalvenhrProcess second(planned);
    QCOMPARE(second.finish(), 5);
    QVERIFY2(second.lastLine().contains(QStringLiteral("another 'talvenhr run' is at work")),
             qPrintable(second.lastLine()));
    QVERIFY(query.exec(QStringLiteral("DO RELEASE_ALL_LOCKS()")));

    TalvenhrProcess same(planned + QStringList(lacking));
    QCOMPARE(same.finish(), 0);
    QVERIFY2(same.lastLine().contains(QStringLiteral("1 pass")), qPrintable(same.lastLine()));
}

/// The plugin's own cannot read all, and the one that reads cannot write.
void tst_Rehearse::plan_goesWithTheAccountMadeForIt()
{
    PrivateDatabase database(site.path(QStringLiteral("db")));
    QVERIFY(!database.start());
    const ConnectionParameters parameters = database.administratorParameters();
    Connection administrator(QStringLiteral("administrator"));
    QVERIFY(!administrator.open(parameters));
    TalvenhrProcess grants({QStringLiteral("doctor"), QStringLiteral("--grants"),
                            QStringLiteral("--user"), QStringLiteral("made"),
                            QStringLiteral("--database"), parameters.database});
    QCOMPARE(grants.finish(), 0);
    QSqlQuery query(administrator.handle());
    const QStringList statements = grants.output()
                                       .split(QLatin1Char('\n'))
                                       .filter(QRegularExpression(
                                           QStringLiteral("^(CREATE|GRANT) .*;$")));
    for (const QString &statement : statements)
        QVERIFY2(query.exec(statement), qPrintable(statement));
    for (const char *account : {"made", "made_read", "made_plan"})
        QVERIFY(query.exec(
            QStringLiteral("ALTER USER %1@localhost ACCOUNT UNLOCK").arg(QLatin1String(account))));
    const auto login = [&](const char *user) {
        return QStringList {QStringLiteral("--data-dir"), site.dataDir(),
                            QStringLiteral("--socket"),   parameters.socket,
                            QStringLiteral("--database"), parameters.database,
                            QStringLiteral("--user"),     QLatin1String(user),
                            QStringLiteral("--no-limits")};
    };
    TalvenhrProcess rehearse(QStringList {QStringLiteral("rehearse"), QStringLiteral("--quiet")}
                             + login("made_read"));
    QCOMPARE(rehearse.finish(), 0);
    const QStringList planned {QStringLiteral("run"), QStringLiteral("--once"),
                               QStringLiteral("--plan"),
                               rehearse.output().section(QStringLiteral("plan: "), 1).trimmed()};
    TalvenhrProcess plain(planned + login("made"));
    QCOMPARE(plain.finish(), 5);
    QVERIFY2(plain.lastLine().contains(QStringLiteral("_plan")), qPrintable(plain.lastLine()));
    TalvenhrProcess made(planned + login("made_plan"));
    QCOMPARE(made.finish(), 0);
    QVERIFY2(made.lastLine().contains(QStringLiteral("1 pass")), qPrintable(made.lastLine()));
    QVERIFY2(made.lastLine().contains(QStringLiteral("0 errors")), qPrintable(made.lastLine()));
}

/// The source's sessions begin so. The rehearsal comes to its end, with what the real pass would
/// keep.
void tst_Rehearse::withoutAutomaticCommit_nothingStays()
{
    PrivateDatabase database(site.path(QStringLiteral("db")));
    QVERIFY(!database.start());
    const ConnectionParameters parameters = database.administratorParameters();
    const QStringList login {QStringLiteral("--no-limits"),
                             QStringLiteral("--data-dir"),
                             site.dataDir(),
                             QStringLiteral("--socket"),
                             parameters.socket,
                             QStringLiteral("--database"),
                             parameters.database,
                             QStringLiteral("--user"),
                             QStringLiteral("root")};
    {
        Connection administrator(QStringLiteral("administrator"));
        QVERIFY(!administrator.open(parameters));
        QSqlQuery query(administrator.handle());
        QVERIFY(query.exec(QStringLiteral("SET GLOBAL autocommit = 0")));
    }
    site.writeFile(QStringLiteral("next.data"), Site::employee(7001, QStringLiteral("Another")));
    TalvenhrProcess rehearse(QStringList {QStringLiteral("rehearse"), QStringLiteral("--force"),
                                          QStringLiteral("--after"), site.exportFile(),
                                          QStringLiteral("--export"),
                                          site.path(QStringLiteral("next.data"))}
                             + login);
    QCOMPARE(rehearse.finish(), 0);
    const QString text = rehearse.output().simplified();
    QVERIFY2(text.contains(QStringLiteral("Sessions begin with autocommit = 0: when the ")),
             qPrintable(text));
    QVERIFY2(text.contains(QStringLiteral("Nothing changes.")), qPrintable(text));
    QVERIFY2(!text.contains(QStringLiteral("Another")), qPrintable(text));
}

void tst_Rehearse::exportWithoutAUsableLine_isAnError()
{
    site.writeFile(QStringLiteral("ron.data"), Site::header());
    TalvenhrProcess headerOnly(command({"rehearse", "--no-limits", "--person", "1001", "--quiet"}));
    QCOMPARE(headerOnly.finish(), 1);
    QVERIFY(headerOnly.output().startsWith(QStringLiteral("Nothing changes for 1001.1 ")));
    QVERIFY(headerOnly.output().contains(QStringLiteral("\nThe export has no usable line; ")));
}

/// The pass would run on whatever server these name.
void tst_Rehearse::configuration_namesTheSourceAndNeverTheCopy()
{
    QVERIFY(QDir().mkpath(site.path(QStringLiteral("talvenhr"))));
    site.writeFile(QStringLiteral("talvenhr/talvenhr.conf"),
                   QStringLiteral("[database]\nhost=127.0.0.1\nport=1\n"));
    for (const char *after : {"", "--after"}) {
        QStringList words = command({"rehearse", "--quiet", "--no-limits"});
        if (*after)
            words << QLatin1String(after) << site.exportFile();
        TalvenhrProcess program(words);
        program.setEnvironment(QStringLiteral("XDG_CONFIG_HOME"), site.dataDir());
        program.setEnvironment(QStringLiteral("TALVENHR_CONNECT_OPTIONS"),
                               QStringLiteral("UNIX_SOCKET=/none"));
        QCOMPARE(program.finish(), 0);
        QVERIFY(program.output().contains(QStringLiteral(", plan: ")));
    }
}

void tst_Rehearse::exportThatIsReplaced_isNotJudged()
{
    const QString kept = site.path(QStringLiteral("kept-meanwhile"));
    TalvenhrProcess program(command({"rehearse", "--no-limits"})
                            + QStringList({QStringLiteral("--keep"), kept}));
    program.start();
    // By then it has looked at the export.
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(kept), longestWait);
    site.writeFile(QStringLiteral("ron.data"), Site::employee(7001, QStringLiteral("Other")));
    QCOMPARE(program.finish(), 5);
    QVERIFY2(program.lastLine().contains(QStringLiteral("' was replaced while its pass was ")),
             qPrintable(program.lastLine()));
    QCOMPARE(program.output(), QString());
}

/// Not even a server that is so far from being up that it cannot be told to end.
void tst_Rehearse::killed_leavesNothingForLong()
{
    const QString stub = QStringLiteral("bin/mariadbd");
    QVERIFY(QDir().mkpath(site.path(QStringLiteral("bin"))));
    site.writeFile(
        stub,
        QStringLiteral("#!/bin/sh\ncase $* in *talvenhr-scratch-*) trap '' TERM; echo $$ "
                       "> '%1'; exec sleep 600;; esac\nPATH=${PATH#*:}\nexec mariadbd "
                       "\"$@\"\n")
            .arg(site.path(QStringLiteral("pid"))));
    QVERIFY(QFile::setPermissions(site.path(stub), QFile::ReadOwner | QFile::ExeOwner));
    TalvenhrProcess killed(command({"rehearse"}));
    killed.setEnvironment(QStringLiteral("TMPDIR"), scratchPlace.path());
    killed.setEnvironment(QStringLiteral("PATH"),
                          site.path(QStringLiteral("bin:")) + qEnvironmentVariable("PATH"));
    killed.start();
    const auto pid = [this] { return site.readFile(QStringLiteral("pid")).trimmed(); };
    QTRY_VERIFY_WITH_TIMEOUT(!pid().isEmpty(), longestWait);
    const QString server = QStringLiteral("/proc/%1/exe").arg(pid());
    QVERIFY(QFileInfo::exists(server));
    killed.sendSignal(SIGKILL);
    killed.finish();
    QTRY_VERIFY_WITH_TIMEOUT(!QFileInfo::exists(server), longestWait);
    const QStringList left = scratch();
    QCOMPARE(left.size(), 1);
    // It ends before it makes a folder of its own.
    TalvenhrProcess next(command({"rehearse", "--keep"}).mid(0, 2)
                         + QStringList(site.path(QStringLiteral("kept-next"))) + where()
                         + QStringList({QStringLiteral("--limit"), QStringLiteral("changed:x=1")}));
    next.setEnvironment(QStringLiteral("TMPDIR"), scratchPlace.path());
    QCOMPARE(next.finish(), 2);
    QCOMPARE(scratch(), QStringList());
}

void tst_Rehearse::interrupted_changesNothing()
{
    const QString kept = site.path(QStringLiteral("broken-off"));
    TalvenhrProcess program(command({"rehearse"}) + QStringList({QStringLiteral("--keep"), kept}));
    program.start();
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(kept), longestWait);
    program.sendSignal(SIGINT);
    QCOMPARE(program.finish(), 130);
    QCOMPARE(program.lastLine(), QStringLiteral("talvenhr: interrupted; nothing was changed"));
    QVERIFY(!QFileInfo::exists(kept));
}

QTEST_GUILESS_MAIN(tst_Rehearse)
#include "tst_rehearse.moc"
