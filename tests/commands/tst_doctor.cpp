// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr doctor`, as its users run it.
#include "host/server/privateserver.h"
#include "support/commands/jsonschema.h"
#include "support/commands/site.h"
#include "support/commands/talvenhrprocess.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>
#include <QXmlStreamReader>

#include <csignal>

class tst_Doctor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void doctor_findsNothingOnASoundSite();
    void doctorsAtOnce_shareAServer();
    void doctor_ofADatabaseThatIsBeingFilled();
    void doctor_ofAFrozenServer();
    void doctor_tellsFaultsWorstFirst();
    void doctor_withoutADatabase();
    void doctor_withoutAnything();
    void doctor_tellsWhyItLooksThere();
    void html_replacesNoSettings();
    void html_tellsTheSame();
    void grants_makeFourAccounts();

private:
    QJsonObject report(const Site &site, const QStringList &options, int exitCode);

    Site sound; ///< with a private database
};

namespace {

QStringList doctorOptions(const Site &site, const QStringList &others)
{
    return QStringList {QStringLiteral("doctor"), QStringLiteral("--data-dir"), site.dataDir()}
    + others;
}

QStringList privateDatabase(const Site &site)
{
    return {QStringLiteral("--private-db"), site.path(QStringLiteral("db"))};
}

/// The texts of a field in all objects of an array.
QStringList fields(const QJsonObject &report, const char *array, const char *field)
{
    QStringList texts;
    const QJsonArray values = report.value(QLatin1String(array)).toArray();
    for (const QJsonValue &value : values)
        texts.append(value[QLatin1String(field)].toString());
    return texts;
}

} // namespace

QJsonObject tst_Doctor::report(const Site &site, const QStringList &options, int exitCode)
{
    TalvenhrProcess program(doctorOptions(site, options + QStringList(QStringLiteral("--json"))));
    const int ended = program.finish();
    if (ended != exitCode)
        QTest::qFail(qPrintable(QStringLiteral("ended with %1: ").arg(ended) + program.output()),
                     __FILE__, __LINE__);
    const QString fault = schemaFault(program.output().toUtf8(), QStringLiteral("doctor"));
    if (!fault.isEmpty())
        QTest::qFail(qPrintable(fault), __FILE__, __LINE__);
    return QJsonDocument::fromJson(program.output().toUtf8()).object();
}

/// A pass without an export makes the database, and leaves it as it is.
void tst_Doctor::initTestCase()
{
    QFile::rename(sound.exportFile(), sound.path(QStringLiteral("later")));
    TalvenhrProcess run(
        sound.runOptions(privateDatabase(sound) + QStringList(QStringLiteral("--once"))));
    QCOMPARE(run.finish(), 0);
    QFile::rename(sound.path(QStringLiteral("later")), sound.exportFile());
}

void tst_Doctor::doctor_findsNothingOnASoundSite()
{
    const QJsonObject told = report(sound, privateDatabase(sound), 0);
    QCOMPARE(told.value(QStringLiteral("format")).toString(), QStringLiteral("talvenhr.doctor/1"));
    QCOMPARE(fields(told, "findings", "text").join(QLatin1Char('\n')), QString());
    QCOMPARE(fields(told, "unknown", "about"),
             QStringList(QStringLiteral("Qt of the attendance server")));
    QVERIFY(fields(told, "passed", "about").contains(QStringLiteral("SQL modes")));
    QCOMPARE(fields(told, "settings", "key").value(0), QStringLiteral("enabled"));
    QCOMPARE(fields(told, "settings", "origin").value(0), QStringLiteral("file"));
    QCOMPARE(fields(told, "settings", "origin").constLast(), QStringLiteral("default"));
    QCOMPARE(told.value(QStringLiteral("dataDirectory")).toString(), sound.dataDir());
    QCOMPARE(told.value(QStringLiteral("dataDirectoryReason")).toString(),
             QStringLiteral("--data-dir"));

    sound.set({QStringLiteral("enabled=false")});
    const QJsonObject broken = report(sound, privateDatabase(sound), 1);
    sound.set({QStringLiteral("enabled=true")});
    const QJsonObject finding = broken.value(QStringLiteral("findings")).toArray().at(0).toObject();
    const QStringList names {QStringLiteral("about"),    QStringLiteral("becomes"),
                             QStringLiteral("code"),     QStringLiteral("remedy"),
                             QStringLiteral("severity"), QStringLiteral("text")};
    QCOMPARE(finding.keys(), names);
    QCOMPARE(finding.value(QStringLiteral("code")).toString(), QStringLiteral("E-SET-DISABLED"));
    QCOMPARE(finding.value(QStringLiteral("severity")).toString(), QStringLiteral("error"));
    QCOMPARE(finding.value(QStringLiteral("about")).toString(), QStringLiteral("enabled"));
}

/// Whoever comes first starts it, and takes it from none of the others by ending.
void tst_Doctor::doctorsAtOnce_shareAServer()
{
    const QStringList options = doctorOptions(sound, privateDatabase(sound))
        + QStringList(QStringLiteral("--quiet"));
    TalvenhrProcess first(options);
    TalvenhrProcess second(options);
    TalvenhrProcess third(options);
    for (TalvenhrProcess *program : {&first, &second, &third})
        program->start();
    for (TalvenhrProcess *program : {&first, &second, &third}) {
        QCOMPARE(program->finish(), 0);
        const QString verdict = program->output();
        QVERIFY2(verdict.startsWith(QStringLiteral(
                     "nothing keeps a pass from working: errors 0, warnings 0, notes "))
                     && verdict.endsWith(QStringLiteral("; not known 1\n"))
                     && verdict.count(QLatin1Char('\n')) == 1,
                 qPrintable(verdict));
    }
}

void tst_Doctor::doctor_ofADatabaseThatIsBeingFilled()
{
    PrivateServer server(sound.path(QStringLiteral("db")));
    QString error;
    QVERIFY2(server.start(&error), qPrintable(error));
    const QString mark = QStringLiteral("db/content.loading");
    sound.writeFile(mark, QString());
    TalvenhrProcess program(doctorOptions(sound, privateDatabase(sound)));
    const int ended = program.finish();
    QVERIFY(QFile::remove(sound.path(mark)));
    QCOMPARE(ended, 5);
    QVERIFY2(program.lastLine().contains(QStringLiteral("is just being filled")),
             qPrintable(program.lastLine()));
}

void tst_Doctor::doctor_ofAFrozenServer()
{
    PrivateServer server(sound.path(QStringLiteral("db")));
    QString error;
    QVERIFY2(server.start(&error), qPrintable(error));
    QCOMPARE(::kill(static_cast<pid_t>(server.processId()), SIGSTOP), 0);
    TalvenhrProcess program(
        doctorOptions(sound,
                      {QStringLiteral("--socket"), server.socketPath(), QStringLiteral("--quiet"),
                       QStringLiteral("--connect-options"),
                       QStringLiteral("MYSQL_OPT_CONNECT_TIMEOUT=1;MYSQL_OPT_READ_TIMEOUT=1")}));
    const int ended = program.finish();
    QCOMPARE(::kill(static_cast<pid_t>(server.processId()), SIGCONT), 0);
    QCOMPARE(ended, 3);
    QVERIFY2(program.output().startsWith(QStringLiteral(
                 "cannot tell whether a pass works here, for the database was not seen: ")),
             qPrintable(program.output()));
    QCOMPARE(program.output().count(QLatin1Char('\n')), 1);
    QVERIFY(program.lastLine().contains(QStringLiteral("cannot open database")));
}

/// All that can be known without the database is told before its failure.
void tst_Doctor::doctor_tellsFaultsWorstFirst()
{
    Site site;
    site.set({QStringLiteral("testMode=no"), QStringLiteral("syncInterval=0")});
    TalvenhrProcess program(
        doctorOptions(site, {QStringLiteral("--socket"), site.path(QStringLiteral("none.sock"))}));
    program.setEnvironment(QStringLiteral("DEPARTMENTID"), QStringLiteral("7"));
    program.setEnvironment(QStringLiteral("TALVENHR_PASSWORD"), QStringLiteral("secret"));
    QCOMPARE(program.finish(), 3);
    const QString page = program.output().simplified();
    const int error = page.indexOf(QStringLiteral("Errors (red) Code Finding E-SET-SYNC "));
    const int warning = page.indexOf(
        QStringLiteral("Warnings (yellow) Code Finding W-SET-SWITCH "));
    const int well = page.indexOf(QStringLiteral("Well (green) "));
    const int unknown = page.indexOf(QStringLiteral("database and its server cannot open"));
    QVERIFY2(0 <= error && error < warning && warning < well && well < unknown, qPrintable(page));
    QVERIFY(page.contains(QStringLiteral("Do: write the line: testMode=false")));
    QVERIFY(page.contains(QStringLiteral("departmentId environment 7")));
    QVERIFY(!page.contains(QStringLiteral("secret")));
    QVERIFY(program.lastLine().contains(QStringLiteral("cannot open database")));
    const QStringList lines = program.output().split(QLatin1Char('\n'));
    for (const QString &line : lines)
        QVERIFY2(line.size() <= 100 || !line.contains(QLatin1Char(' ')), qPrintable(line));
}

/// A look makes no private database.
void tst_Doctor::doctor_withoutADatabase()
{
    const Site site;
    const QJsonObject told = report(site, privateDatabase(site), 3);
    QCOMPARE(fields(told, "findings", "code"), QStringList());
    QCOMPARE(fields(told, "unknown", "about").constLast(),
             QStringLiteral("database and its server"));
    QVERIFY(!QFileInfo::exists(site.path(QStringLiteral("db"))));
}

void tst_Doctor::doctor_withoutAnything()
{
    TalvenhrProcess usage({QStringLiteral("doctor"), QStringLiteral("--data-dir"), QString()});
    QCOMPARE(usage.finish(), 2);

    const Site site;
    TalvenhrProcess program({QStringLiteral("doctor"), QStringLiteral("--data-dir"),
                             site.path(QStringLiteral("none")), QStringLiteral("--plugin"),
                             site.path(QStringLiteral("none.so")), QStringLiteral("--socket"),
                             QStringLiteral("/none")});
    QCOMPARE(program.finish(), 3);
    for (const char *code : {"E-SET-FILE", "E-MACHINE-FOLDER", "E-PLUGIN-FILE"})
        QVERIFY2(program.output().contains(QLatin1String(code)), code);
}

void tst_Doctor::doctor_tellsWhyItLooksThere()
{
    const Site site;
    const QString machine = site.path(QStringLiteral("xdg/KESTRA-LK/ORV.conf"));
    QString key = QFileInfo(TalvenhrProcess::path()).path();
    key.replace(QLatin1Char('/'), QLatin1Char('|'));
    {
        QSettings settings(machine, QSettings::IniFormat);
        settings.setValue(QStringLiteral("dataDirs/") + key, site.dataDir());
    }
    TalvenhrProcess program({QStringLiteral("doctor"), QStringLiteral("--json"),
                             QStringLiteral("--socket"), QStringLiteral("/none")});
    program.setEnvironment(QStringLiteral("XDG_CONFIG_DIRS"), site.path(QStringLiteral("xdg")));
    QCOMPARE(program.finish(), 3);
    const QJsonObject told = QJsonDocument::fromJson(program.output().toUtf8()).object();
    QCOMPARE(told.value(QStringLiteral("dataDirectory")).toString(), site.dataDir());
    QCOMPARE(told.value(QStringLiteral("dataDirectoryReason")).toString(),
             QStringLiteral("the key '%1' of [dataDirs] in '%2'").arg(key, machine));
    QCOMPARE(fields(told, "unknown", "about").value(0),
             QStringLiteral("data directory of the attendance server"));
}

void tst_Doctor::html_replacesNoSettings()
{
    const Site site;
    const QString before = site.readFile(QStringLiteral("TalvenHR.ini"));
    TalvenhrProcess program(
        doctorOptions(site, {QStringLiteral("--html"), site.path(QStringLiteral("TalvenHR.ini"))}));
    QCOMPARE(program.finish(), 2);
    QVERIFY(program.lastLine().contains(QStringLiteral("is read, and would be lost")));
    QCOMPARE(site.readFile(QStringLiteral("TalvenHR.ini")), before);
}

void tst_Doctor::html_tellsTheSame()
{
    const Site site;
    site.writeFile(QStringLiteral("TalvenHR.ini"), QStringLiteral("enabled=<b>'no'</b>\n"));
    const QString path = site.path(QStringLiteral("doctor.html"));
    TalvenhrProcess program(doctorOptions(
        site,
        {QStringLiteral("--socket"), QStringLiteral("/none"), QStringLiteral("--html"), path}));
    QCOMPARE(program.finish(), 3);
    const QString page = site.readFile(QStringLiteral("doctor.html"));
    QVERIFY(page.contains(QStringLiteral("W-SET-SWITCH: ")));
    QVERIFY(page.contains(QStringLiteral("&lt;b&gt;")) && !page.contains(QStringLiteral("<b>")));
    QXmlStreamReader reader(page);
    while (!reader.atEnd())
        reader.readNext();
    QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
}

/// The statements themselves are proved with the checks of rights.
void tst_Doctor::grants_makeFourAccounts()
{
    TalvenhrProcess program({QStringLiteral("doctor"), QStringLiteral("--grants"),
                             QStringLiteral("--host"), QStringLiteral("none.invalid"),
                             QStringLiteral("--user"), QStringLiteral("o'hara"),
                             QStringLiteral("--database"), QStringLiteral("dochazka")});
    QCOMPARE(program.finish(), 0);
    const QStringList lines = program.output().split(QLatin1Char('\n'));
    for (const char *account :
         {"'o''hara'@'%'", "'o''hara_read'@'%'", "'o''hara_plan'@'%'", "'o''hara_undo'@'%'"})
        QVERIFY(lines.contains(QStringLiteral("CREATE USER IF NOT EXISTS %1 ACCOUNT LOCK;")
                                   .arg(QLatin1String(account))));
    const QStringList grants = lines.filter(QRegularExpression(QStringLiteral("^GRANT .*;$")));
    QVERIFY(grants.size() > 20);
    // The table of the server's routines, of three.
    QVERIFY(grants.filter(QStringLiteral(" `dochazka`.")).size() >= grants.size() - 3);
    QVERIFY(lines.filter(QStringLiteral("--")).constLast().contains(QStringLiteral("UNLOCK")));
    QVERIFY(grants.constLast().endsWith(QStringLiteral(" TO 'o''hara_undo'@'%';")));
}

QTEST_GUILESS_MAIN(tst_Doctor)
#include "tst_doctor.moc"
