// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr gate` as its users run it: by hand, and as the export command of a plugin.
#include "host/gate/gaterecord.h"
#include "support/commands/jsonschema.h"
#include "support/commands/site.h"
#include "support/commands/talvenhrprocess.h"

#include <QDir>
#include <QFile>
#include <QtTest>

#include <algorithm>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

const QString configuration = QStringLiteral("talvenhr.conf");

QStringList gateOf(const Site &site, const QStringList &others = {})
{
    return QStringList {QStringLiteral("gate"), QStringLiteral("--config"),
                        site.path(configuration)}
    + others;
}

/// Some employees whose names begin with the text.
QString exportOf(const QString &opening, int people)
{
    QString text = Site::header() + QLatin1Char('\n');
    for (int i = 1; i <= people; ++i)
        text += Site::employee(static_cast<uint>(2000 + i), opening + QString::number(i))
            + QLatin1Char('\n');
    return text;
}

/// A database that takes a connection, and never says a word.
class SilentServer
{
public:
    explicit SilentServer(const QString &path) :
        handle(::socket(AF_UNIX, SOCK_STREAM, 0))
    {
        sockaddr_un address {};
        address.sun_family = AF_UNIX;
        const QByteArray name = QFile::encodeName(path);
        std::copy(name.cbegin(), name.cend(), address.sun_path);
        listening = ::bind(handle, reinterpret_cast<const sockaddr *>(&address), sizeof(address))
                == 0
            && ::listen(handle, 5) == 0;
    }
    ~SilentServer() { ::close(handle); }
    SilentServer(const SilentServer &) = delete;
    SilentServer &operator=(const SilentServer &) = delete;

    bool isListening() const { return listening; }

private:
    const int handle;
    bool listening = false;
};

/// The names of all refused exports, oldest first.
QStringList refusedNames(const Site &site)
{
    QStringList names;
    const QVector<GateRecord> records = readGateRecords(site.path(QStringLiteral("refused")));
    for (const GateRecord &record : records)
        names.append(record.name);
    return names;
}

} // namespace

class tst_GateCommand : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void soundExport_comesInPlace();
    void damagedExport_isRefusedWithItsReasons();
    void record_isWhatTheSchemaSays();
    void figuresAndSite_followEachRun();
    void release_takesAReason();
    void wrongSettings_areNamed_data();
    void wrongSettings_areNamed();
    void config_showsTheGate();
    void timeLimit_endsTheGate();
    void exportCommandOfThePlugin_holdsBackADamagedExport();
    void rehearsedExport_isRefusedBeyondALimit();

private:
    void configure(const QStringList &lines) const;
    void deliver(const QString &text) const;
    bool isInPlace() const { return QFile::exists(site->exportFile()); }

    QScopedPointer<Site> site;
};

void tst_GateCommand::init()
{
    site.reset(new Site);
    QFile::remove(site->exportFile());
    site->set({QStringLiteral("deleteFile=true")});
    QVERIFY(QDir(site->dataDir()).mkdir(QStringLiteral("incoming")));
    configure({});
}

void tst_GateCommand::configure(const QStringList &lines) const
{
    const QStringList all {QStringLiteral("[plugin]"), QStringLiteral("data-dir=."),
                           QStringLiteral("[gate]"), QStringLiteral("incoming=incoming"),
                           QStringLiteral("complete=rename")};
    site->writeFile(configuration, (all + lines).join(QLatin1Char('\n')) + QLatin1Char('\n'));
}

void tst_GateCommand::deliver(const QString &text) const
{
    site->writeFile(QStringLiteral("incoming/ron.data"), text);
}

void tst_GateCommand::soundExport_comesInPlace()
{
    deliver(exportOf(QStringLiteral("A"), 3));
    TalvenhrProcess program(gateOf(*site));
    QCOMPARE(program.finish(), 0);
    QVERIFY(program.output().startsWith(QStringLiteral("passed: ron.data (")));
    QCOMPARE(program.output().count(QLatin1Char('\n')), 1);
    QCOMPARE(program.lines(), QStringList());
    QCOMPARE(site->readFile(QStringLiteral("ron.data")).trimmed(),
             exportOf(QStringLiteral("A"), 3).trimmed());
    TalvenhrProcess again(gateOf(*site));
    QCOMPARE(again.finish(), 0);
    QCOMPARE(again.output(), QString());
}

void tst_GateCommand::damagedExport_isRefusedWithItsReasons()
{
    deliver(exportOf(QStringLiteral("O'"), 3));
    TalvenhrProcess program(gateOf(*site));
    QCOMPARE(program.finish(), 5);
    QVERIFY(program.output().startsWith(QStringLiteral("refused: ron.data (")));
    QVERIFY(!isInPlace());
    const QString text = site->readFile(
        QStringLiteral("refused/%1.txt").arg(refusedNames(*site).value(0)));
    QVERIFY2(text.contains(QStringLiteral("[E-TEXT-FAILS]")), qPrintable(text));
    QVERIFY(text.contains(QStringLiteral(".rejects.txt")));
    // The apostrophe can be mended.
    configure({QStringLiteral("[mend]"), QStringLiteral("apostrophe=yes")});
    deliver(exportOf(QStringLiteral("O'"), 4));
    TalvenhrProcess mended(gateOf(*site));
    QCOMPARE(mended.finish(), 0);
    QVERIFY(mended.output().contains(QStringLiteral("cells mended: ")));
    QVERIFY(site->readFile(QStringLiteral("ron.data")).contains(QStringLiteral("O\u2019")));
}

void tst_GateCommand::record_isWhatTheSchemaSays()
{
    deliver(exportOf(QStringLiteral("A"), 3));
    TalvenhrProcess passed(gateOf(*site, {QStringLiteral("--json")}));
    QCOMPARE(passed.finish(), 0);
    QCOMPARE(schemaFault(passed.output().toUtf8(), QStringLiteral("gate")), QString());
    deliver(QStringLiteral("nothing\n"));
    TalvenhrProcess refused(gateOf(*site, {QStringLiteral("--json")}));
    QCOMPARE(refused.finish(), 5);
    QCOMPARE(schemaFault(refused.output().toUtf8(), QStringLiteral("gate")), QString());
    TalvenhrProcess released(
        gateOf(*site,
               {QStringLiteral("--json"), QStringLiteral("--release"), refusedNames(*site).value(0),
                QStringLiteral("--reason"), QStringLiteral("why")}));
    QCOMPARE(released.finish(), 0);
    QCOMPARE(schemaFault(released.output().toUtf8(), QStringLiteral("gate")), QString());
}

/// What is wrong with them holds back no export.
void tst_GateCommand::figuresAndSite_followEachRun()
{
    configure({QStringLiteral("[metrics]"), QStringLiteral("file=figures/talvenhr.prom"),
               QStringLiteral("[status]"), QStringLiteral("html=www")});
    QVERIFY(QDir(site->dataDir()).mkdir(QStringLiteral("figures")));
    deliver(exportOf(QStringLiteral("O'"), 3));
    TalvenhrProcess refusing(gateOf(*site));
    QCOMPARE(refusing.finish(), 5);
    QVERIFY(site->readFile(QStringLiteral("figures/talvenhr.prom"))
                .contains(QStringLiteral("\ntalvenhr_last_export_refused 1\n")));
    const QString name = refusedNames(*site).value(0);
    QVERIFY(QFile::exists(site->path(QStringLiteral("www/%1.html").arg(name))));
    QVERIFY(site->readFile(QStringLiteral("www/index.html")).contains(name));

    QVERIFY(QDir(site->path(QStringLiteral("figures"))).removeRecursively());
    deliver(exportOf(QStringLiteral("A"), 3));
    TalvenhrProcess passing(gateOf(*site));
    QCOMPARE(passing.finish(), 0);
    QVERIFY(isInPlace());
    QVERIFY2(passing.output().contains(QStringLiteral("\nwarning: ")),
             qPrintable(passing.output()));
}

void tst_GateCommand::release_takesAReason()
{
    deliver(exportOf(QStringLiteral("A"), 60));
    QCOMPARE(TalvenhrProcess(gateOf(*site)).finish(), 0);
    deliver(exportOf(QStringLiteral("A"), 40));
    QCOMPARE(TalvenhrProcess(gateOf(*site)).finish(), 5);
    const QString name = refusedNames(*site).value(0);
    TalvenhrProcess without(gateOf(*site, {QStringLiteral("--release"), name}));
    QCOMPARE(without.finish(), 2);
    QVERIFY(without.lastLine().contains(QStringLiteral("--reason is missing")));
    TalvenhrProcess allowed(gateOf(*site,
                                   {QStringLiteral("--allow"), QStringLiteral("lost=20"),
                                    QStringLiteral("--reason"), QStringLiteral("closed"), name}));
    QCOMPARE(allowed.finish(), 0);
    QVERIFY(allowed.output().contains(QStringLiteral(": closed")));
    QCOMPARE(site->readFile(QStringLiteral("ron.data")).trimmed(),
             exportOf(QStringLiteral("A"), 40).trimmed());
}

void tst_GateCommand::wrongSettings_areNamed_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QString>("message");

    QTest::newRow("complete") << QStringList {QStringLiteral("complete=rename"),
                                              QStringLiteral("first=hodl")}
                              << QStringLiteral(
                                     "takes one of pass, hold, not 'hodl' (did you mean 'hold'?)");
    QTest::newRow("refuse") << QStringList {QStringLiteral("refuse=error, W-AGAINST-LOSS")}
                            << QStringLiteral("'W-AGAINST-LOST'");
    QTest::newRow("place") << QStringList {QStringLiteral("place=incoming/ron.data")}
                           << QStringLiteral("lies in a folder of the gate");
    QTest::newRow("pattern") << QStringList {QStringLiteral("pattern=[")}
                             << QStringLiteral("takes a name with * and ?, not '['");
    QTest::newRow("folders") << QStringList {QStringLiteral("archive=incoming")}
                             << QStringLiteral("four folders");
    QTest::newRow("limit") << QStringList {QStringLiteral("[limits]"), QStringLiteral("lost=many")}
                           << QStringLiteral("'many' is no limit of 'lost'");
    QTest::newRow("mend") << QStringList {QStringLiteral("[mend]"), QStringLiteral("bom=true")}
                          << QStringLiteral("'mend/bom'");
    QTest::newRow("encoding") << QStringList {QStringLiteral("[mend]"),
                                              QStringLiteral("encoding=windows-9999")}
                              << QStringLiteral("windows-9999");
    QTest::newRow("rehearse") << QStringList {QStringLiteral("rehearse=yes")}
                              << QStringLiteral("takes a database");
}

void tst_GateCommand::wrongSettings_areNamed()
{
    QFETCH(QStringList, lines);
    QFETCH(QString, message);
    lines.removeAll(QStringLiteral("complete=rename"));
    configure(lines);
    deliver(exportOf(QStringLiteral("A"), 3));
    TalvenhrProcess program(gateOf(*site));
    QCOMPARE(program.finish(), 2);
    QVERIFY2(program.lastLine().contains(message), qPrintable(program.lastLine()));
    QVERIFY(!isInPlace());
}

void tst_GateCommand::config_showsTheGate()
{
    TalvenhrProcess program(
        {QStringLiteral("config"), QStringLiteral("--config"), site->path(configuration)});
    program.finish();
    QVERIFY2(program.output().contains(QStringLiteral("gate/incoming")),
             qPrintable(program.output()));
    QVERIFY(program.output().contains(QStringLiteral("gate/keep-days")));
}

void tst_GateCommand::timeLimit_endsTheGate()
{
    const SilentServer server(site->path(QStringLiteral("silent.sock")));
    QVERIFY(server.isListening());
    configure({QStringLiteral("time-limit=1"), QStringLiteral("[database]"),
               QStringLiteral("socket=silent.sock")});
    deliver(exportOf(QStringLiteral("A"), 3));
    TalvenhrProcess program(gateOf(*site));
    QCOMPARE(program.finish(), 4);
    QVERIFY(program.lastLine().contains(QStringLiteral("not done after 1 s")));
    QVERIFY(!isInPlace());
    QVERIFY(QFile::exists(site->path(QStringLiteral("incoming/ron.data"))));
    QVERIFY(site->readFile(QStringLiteral("state/failed"))
                .contains(QStringLiteral("not done after 1 s")));
    configure({});
    TalvenhrProcess next(gateOf(*site));
    QCOMPARE(next.finish(), 0);
    QVERIFY(isInPlace());
    QVERIFY(!QFile::exists(site->path(QStringLiteral("state/failed"))));
}

void tst_GateCommand::exportCommandOfThePlugin_holdsBackADamagedExport()
{
    const QStringList command = QStringList {TalvenhrProcess::path()} + gateOf(*site);
    site->set({QStringLiteral("syncCommandRun=2"),
               QStringLiteral("syncCommand=\"%1\"").arg(command.join(QLatin1Char(' ')))});
    deliver(exportOf(QStringLiteral("O'"), 3));
    TalvenhrProcess refused(
        site->runOptions({QStringLiteral("--once"), QStringLiteral("--private-db"),
                          site->path(QStringLiteral("db"))}));
    QVERIFY(refused.finish() != 0);
    QCOMPARE(refused.linesWith(QStringLiteral("exit with code: 5")).size(), 1);
    QVERIFY2(!refused.linesWith(QStringLiteral("talvenhr: no export file at")).isEmpty(),
             qPrintable(refused.lines().join(QLatin1Char('\n'))));
    deliver(exportOf(QStringLiteral("A"), 3));
    TalvenhrProcess passed(
        site->runOptions({QStringLiteral("--once"), QStringLiteral("--private-db"),
                          site->path(QStringLiteral("db"))}));
    QCOMPARE(passed.finish(), 0);
    QVERIFY2(passed.lastLine().contains(QStringLiteral("3 persons added")),
             qPrintable(passed.lastLine()));
    QVERIFY(!isInPlace());
}

void tst_GateCommand::rehearsedExport_isRefusedBeyondALimit()
{
    const QStringList database {QStringLiteral("--private-db"), site->path(QStringLiteral("db"))};
    deliver(exportOf(QStringLiteral("B"), 1));
    QCOMPARE(TalvenhrProcess(gateOf(*site)).finish(), 0);
    QCOMPARE(TalvenhrProcess(site->runOptions(QStringList {QStringLiteral("--once")} + database))
                 .finish(),
             0);
    configure({QStringLiteral("[limits]"), QStringLiteral("added=2"), QStringLiteral("gained=9"),
               QStringLiteral("updated=9"), QStringLiteral("changed:surname=9"),
               QStringLiteral("missing=99")});
    deliver(exportOf(QStringLiteral("A"), 4));
    TalvenhrProcess program(gateOf(*site, database));
    QVERIFY2(program.finish() == 5, qPrintable(program.lastLine() + program.output()));
    const QString name = refusedNames(*site).value(0);
    QVERIFY2(program.output().contains(QStringLiteral("added: 3, and the limit is 2")),
             qPrintable(program.output()));
    QVERIFY(QFile::exists(site->path(QStringLiteral("refused/%1.rehearsal.html").arg(name))));
    QVERIFY(QFile::exists(site->path(QStringLiteral("refused/%1.changes.json").arg(name))));
    TalvenhrProcess allowed(gateOf(
        *site,
        database
            + QStringList {QStringLiteral("--allow"), QStringLiteral("added=3"),
                           QStringLiteral("--reason"), QStringLiteral("a new branch"), name}));
    QCOMPARE(allowed.finish(), 0);
    QVERIFY(allowed.output().contains(QStringLiteral("people who change: 4")));
}

QTEST_GUILESS_MAIN(tst_GateCommand)
#include "tst_gatecommand.moc"
