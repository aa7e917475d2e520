// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr status`, as its users run it.
#include "host/changes/passnotes.h"
#include "host/gate/gaterecord.h"
#include "support/commands/jsonschema.h"
#include "support/commands/site.h"
#include "support/commands/smalldisk.h"
#include "support/commands/talvenhrprocess.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

class tst_StatusCommand : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void lostPeople_areTold();
    void check_hasTheCodesOfMonitoring();
    void configuration_saysWhereToLook();
    void siteAndMetrics_areWrittenWhereAsked();
    void siteOnAFullDisk_isWhole();
    void forcedPass_bringsBackWhatIsLost();
    void status_withoutADatabase();

private:
    QStringList options(const QStringList &others) const;
    QJsonObject document(int exitCode);

    QString diskPath() const { return diskFolder.filePath(QStringLiteral("disk")); }

    Site site;
    QString record;
    QTemporaryDir diskFolder;
    // Made before any thread of the test library is there.
    const bool hasFolder = QDir().mkdir(diskPath());
    const SmallDisk disk {diskPath(), 128};
};

QStringList tst_StatusCommand::options(const QStringList &others) const
{
    return QStringList {QStringLiteral("status"), QStringLiteral("--data-dir"), site.dataDir(),
                        QStringLiteral("--archive"), site.path(QStringLiteral("archive"))}
    + others;
}

QJsonObject tst_StatusCommand::document(int exitCode)
{
    TalvenhrProcess program(options({QStringLiteral("--private-db"),
                                     site.path(QStringLiteral("db")), QStringLiteral("--json")}));
    const int ended = program.finish();
    if (ended != exitCode)
        QTest::qFail(qPrintable(QStringLiteral("ended with %1: ").arg(ended) + program.output()),
                     __FILE__, __LINE__);
    const QByteArray json = program.output().toUtf8();
    const QString fault = schemaFault(json, QStringLiteral("status"));
    if (!fault.isEmpty())
        QTest::qFail(qPrintable(fault), __FILE__, __LINE__);
    return QJsonDocument::fromJson(json).object();
}

/// A database, and an export that was rehearsed there and has gone since: as if its pass had lost
/// all.
void tst_StatusCommand::initTestCase()
{
    site.set({QStringLiteral("deleteFile=true")});
    const QString data = site.path(QStringLiteral("later"));
    QVERIFY(QFile::rename(site.exportFile(), data));
    const QStringList database {QStringLiteral("--private-db"), site.path(QStringLiteral("db"))};
    TalvenhrProcess run(site.runOptions(database + QStringList(QStringLiteral("--once"))));
    QCOMPARE(run.finish(), 0);

    GateRecord passed;
    passed.outcome = GateRecord::Passed;
    passed.when = QDateTime::currentDateTimeUtc().addSecs(-7200);
    passed.exported = identityOf(data);
    passed.placedDigest = passed.exported.digest;
    passed.fates = {3, 1, 0, 0};
    record = passed.name = QStringLiteral("20261122T124002Z-0123456789ab");
    QVERIFY(QDir(site.dataDir()).mkdir(QStringLiteral("archive")));
    const QString stem = site.path(QStringLiteral("archive/")) + record;
    QVERIFY(!writeGateRecord(passed, stem + recordEnding()));
    TalvenhrProcess rehearsal(
        QStringList {QStringLiteral("rehearse"), QStringLiteral("--data-dir"), site.dataDir(),
                     QStringLiteral("--export"), data, QStringLiteral("--no-limits"),
                     QStringLiteral("--changes"), stem + QStringLiteral(".changes.json")}
        + database);
    QCOMPARE(rehearsal.finish(), 0);
}

void tst_StatusCommand::lostPeople_areTold()
{
    const QJsonObject told = document(1);
    QCOMPARE(told.value(QStringLiteral("level")).toString(), QStringLiteral("critical"));
    QStringList lost;
    const QJsonArray people = told.value(QStringLiteral("lost")).toArray();
    for (const QJsonValue &person : people) {
        if (person[QStringLiteral("words")].toArray().at(0).toString().startsWith(
                QStringLiteral("added")))
            lost.append(person[QStringLiteral("pamId")].toString());
        QCOMPARE(person[QStringLiteral("record")].toString(), record);
    }
    QCOMPARE(lost, QStringList({QStringLiteral("7001.1"), QStringLiteral("7002.1")}));
    QVERIFY(told.value(QStringLiteral("recovery")).toArray().size() >= 4);
    QCOMPARE(told.value(QStringLiteral("lastPass"))[QStringLiteral("source")].toString(),
             QStringLiteral("place"));
    QVERIFY(told.value(QStringLiteral("database"))[QStringLiteral("queue")].isDouble());
}

void tst_StatusCommand::check_hasTheCodesOfMonitoring()
{
    const QStringList check {QStringLiteral("--check")};
    TalvenhrProcess well(options(check));
    QCOMPARE(well.finish(), 0);
    QVERIFY2(well.output().startsWith(QStringLiteral("TALVENHR OK - ")), qPrintable(well.output()));
    QCOMPARE(well.output().count(QLatin1Char('\n')), 1);

    TalvenhrProcess late(options(check + QStringList {QStringLiteral("--late-after=1")}));
    QCOMPARE(late.finish(), 2);
    QVERIFY2(late.output().startsWith(
                 QStringLiteral("TALVENHR CRITICAL - no export has come for 2 h 0 min | ")),
             qPrintable(late.output()));

    TalvenhrProcess wrong(options(check + QStringList {QStringLiteral("--late-after=soon")}));
    QCOMPARE(wrong.finish(), 3);
    QVERIFY(wrong.output().startsWith(QStringLiteral("TALVENHR UNKNOWN - --late-after takes ")));

    TalvenhrProcess unseen(options(
        check + QStringList {QStringLiteral("--socket"), site.path(QStringLiteral("none"))}));
    QCOMPARE(unseen.finish(), 3);
    QVERIFY(unseen.output().startsWith(QStringLiteral("TALVENHR UNKNOWN - cannot open database")));
}

/// A file that is named or the user's own, the environment before it, and options before both.
void tst_StatusCommand::configuration_saysWhereToLook()
{
    const QString lines = QStringLiteral("[plugin]\ndata-dir=%1\n"
                                         "[gate]\narchive=%1/archive\nlate-after=1\n"
                                         "[database]\nsocket=none\n"
                                         "[metrics]\nfile=%1/own.prom\n")
                              .arg(site.dataDir());
    site.writeFile(QStringLiteral("named.conf"), lines);
    QVERIFY(QDir(site.dataDir()).mkpath(QStringLiteral(".config/talvenhr")));
    site.writeFile(
        QStringLiteral(".config/talvenhr/talvenhr.conf"),
        QString(lines).replace(QStringLiteral("late-after=1"), QStringLiteral("late-after=26")));
    const auto check = [this](const QStringList &arguments, const char *config, const char *late) {
        TalvenhrProcess program(QStringList {QStringLiteral("status"), QStringLiteral("--check")}
                                    + arguments,
                                site.dataDir());
        if (config)
            program.setEnvironment(QStringLiteral("TALVENHR_CONFIG"),
                                   site.path(QLatin1String(config)));
        if (late)
            program.setEnvironment(QStringLiteral("TALVENHR_LATE_AFTER"), QLatin1String(late));
        const int code = program.finish();
        return QStringLiteral("%1 %2").arg(code).arg(program.output());
    };
    const QString late = QStringLiteral("2 TALVENHR CRITICAL - no export has come for 2 h 0 min; "
                                        "cannot open database");
    const QString unseen = QStringLiteral("3 TALVENHR UNKNOWN - cannot open database");
    const QString named = check({}, "named.conf", nullptr);
    QVERIFY2(named.startsWith(late), qPrintable(named));
    QVERIFY2(check({}, nullptr, nullptr).startsWith(unseen), "the user's own");
    QVERIFY2(check({}, "named.conf", "26").startsWith(unseen), "the environment goes before");
    QVERIFY2(check({QStringLiteral("--late-after=1")}, "named.conf", "26").startsWith(late),
             "the option goes before");
    const QString database = check(
        {QStringLiteral("--private-db"), site.path(QStringLiteral("db"))}, "named.conf", "26");
    QVERIFY2(database.startsWith(QStringLiteral("2 TALVENHR CRITICAL - people whom a pass has")),
             qPrintable(database));
    // That is for the gate to write.
    QVERIFY(!QFile::exists(site.path(QStringLiteral("own.prom"))));
    // What cannot be written hides nothing.
    const QString unwritten = check(
        {QStringLiteral("--html"), site.path(QStringLiteral("archive"))}, "named.conf", nullptr);
    QVERIFY2(unwritten.startsWith(late) && unwritten.contains(QStringLiteral("site and figures")),
             qPrintable(unwritten));
}

void tst_StatusCommand::siteAndMetrics_areWrittenWhereAsked()
{
    const QString metrics = site.path(QStringLiteral("talvenhr.prom"));
    TalvenhrProcess program(
        options({QStringLiteral("--quiet"), QStringLiteral("--metrics"), metrics,
                 QStringLiteral("--html"), site.path(QStringLiteral("www"))}));
    QCOMPARE(program.finish(), 0);
    QCOMPARE(program.output(), QStringLiteral("OK - exports and passes are as they should be\n"));
    QVERIFY(QFile::permissions(metrics) & QFileDevice::ReadOther);
    QVERIFY(site.readFile(QStringLiteral("talvenhr.prom"))
                .contains(QStringLiteral("talvenhr_status_level 0\n")));
    QVERIFY(site.readFile(QStringLiteral("www/index.html")).contains(record));
    QVERIFY(QFile::exists(site.path(QStringLiteral("www/%1.html").arg(record))));

    TalvenhrProcess wrong(options({QStringLiteral("--metrics"), site.exportFile()}));
    QCOMPARE(wrong.finish(), 2);
    QVERIFY(wrong.lastLine().contains(QStringLiteral("is where the plugin reads its export")));
    QVERIFY(!QFile::exists(site.exportFile()));
}

/// Each page is the old one, the new one, or not there.
void tst_StatusCommand::siteOnAFullDisk_isWhole()
{
    QVERIFY2(disk.failure().isEmpty(), qPrintable(disk.failure()));
    const QString folder = diskPath() + QStringLiteral("/www");
    const QStringList publish {QStringLiteral("--quiet"), QStringLiteral("--html"), folder};
    const auto faultOf = [&folder] {
        const QStringList files = QDir(folder).entryList(QDir::Files | QDir::Hidden);
        for (const QString &name : files) {
            QFile file(folder + QLatin1Char('/') + name);
            if (!file.open(QIODevice::ReadOnly)
                || !(name == QLatin1String("site.json") ? file.readAll().endsWith("}}\n")
                                                        : file.readAll().contains("</html>")))
                return name;
        }
        return QString();
    };
    for (const int left : {4, 8, 12, 16, 24}) {
        QVERIFY(disk.fillUpTo(left));
        TalvenhrProcess program(options(publish));
        const int code = program.finish();
        QVERIFY2(code == 0 || program.lastLine().contains(QStringLiteral("No space left")),
                 qPrintable(program.lastLine()));
        QCOMPARE(faultOf(), QString());
        if (left == 4)
            QCOMPARE(code, int(ExitUsage));
        QVERIFY(QFile::remove(diskPath() + QStringLiteral("/filling")));
    }
    TalvenhrProcess program(options(publish));
    QCOMPARE(program.finish(), 0);
    QCOMPARE(faultOf(), QString());
    QVERIFY(QFile::exists(folder + QStringLiteral("/index.html")));
    QVERIFY(QFile::exists(folder + QStringLiteral("/%1.html").arg(record)));
}

void tst_StatusCommand::forcedPass_bringsBackWhatIsLost()
{
    QVERIFY(QFile::rename(site.path(QStringLiteral("later")), site.exportFile()));
    TalvenhrProcess run(
        site.runOptions({QStringLiteral("--private-db"), site.path(QStringLiteral("db")),
                         QStringLiteral("--once"), QStringLiteral("--force"),
                         QStringLiteral("--changes"), site.path(QStringLiteral("archive"))}));
    QCOMPARE(run.finish(), 0);
    const QJsonObject told = document(0);
    QCOMPARE(told.value(QStringLiteral("lost")).toArray().size(), 0);
    QCOMPARE(told.value(QStringLiteral("lossesAreKnown")).toBool(), true);
    const QJsonObject pass = told.value(QStringLiteral("lastPass")).toObject();
    QCOMPARE(pass.value(QStringLiteral("source")).toString(), QStringLiteral("changes"));
    QCOMPARE(pass.value(QStringLiteral("forced")).toBool(), true);
    QCOMPARE(pass.value(QStringLiteral("summary"))[QStringLiteral("added")].toInt(), 2);
    QVERIFY(pass.value(QStringLiteral("statements")).toInt() > 10);
}

void tst_StatusCommand::status_withoutADatabase()
{
    TalvenhrProcess program(
        options({QStringLiteral("--socket"), site.path(QStringLiteral("none"))}));
    QCOMPARE(program.finish(), 3);
    QVERIFY(program.output().contains(QStringLiteral("Last export")));
    QVERIFY(program.lastLine().contains(QStringLiteral("cannot open database")));
    const QStringList lines = program.output().split(QLatin1Char('\n'));
    for (const QString &line : lines)
        QVERIFY2(line.size() <= 100, qPrintable(line));

    TalvenhrProcess usage({QStringLiteral("status"), QStringLiteral("--data-dir"),
                           site.path(QStringLiteral("none"))});
    QCOMPARE(usage.finish(), 2);
}

QTEST_GUILESS_MAIN(tst_StatusCommand)
#include "tst_statuscommand.moc"
