// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr config`, and what talvenhr.conf does to other commands.
#include "support/commands/site.h"
#include "support/commands/talvenhrprocess.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

class tst_Config : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void config_tellsValueAndOrigin();
    void config_readsTheUsersFile();
    void config_tellsLimitsOfTheFile();
    void config_withoutAFile();
    void config_tellsTheDatabaseOfARun_data();
    void config_tellsTheDatabaseOfARun();
    void config_tellsAllThatIsWrong();
    void config_tellsWhatTheGateWouldSay();
    void info_takesThePluginOfTheFile();
    void run_takesTheServerOfTheFile();
};

void tst_Config::config_tellsValueAndOrigin()
{
    const Site site;
    site.writeFile(QStringLiteral("t.conf"), QStringLiteral("[database]\nhost=h\nuser=u\n"));
    TalvenhrProcess program({QStringLiteral("config"), QStringLiteral("--json"),
                             QStringLiteral("--config"), site.path(QStringLiteral("t.conf")),
                             QStringLiteral("--port"), QStringLiteral("7")});
    program.setEnvironment(QStringLiteral("TALVENHR_USER"), QStringLiteral("e"));
    program.setEnvironment(QStringLiteral("TALVENHR_PASSWORD"), QStringLiteral("secret"));
    QCOMPARE(program.finish(), 0);
    QVERIFY(!program.output().contains(QStringLiteral("secret")));

    const QJsonObject report = QJsonDocument::fromJson(program.output().toUtf8()).object();
    QCOMPARE(report.value(QStringLiteral("format")).toString(),
             QStringLiteral("talvenhr.config/1"));
    QCOMPARE(report.value(QStringLiteral("file")).toString(), site.path(QStringLiteral("t.conf")));
    QStringList told;
    const QJsonArray settings = report.value(QStringLiteral("settings")).toArray();
    for (const QJsonValue &setting : settings)
        told.append(QStringList {setting[QLatin1String("setting")].toString(),
                                 setting[QLatin1String("value")].toString(),
                                 setting[QLatin1String("origin")].toString(),
                                 setting[QLatin1String("variable")].toString()}
                        .join(QLatin1Char(' ')));
    for (const char *line :
         {"database/host h file TALVENHR_HOST", "database/user e environment TALVENHR_USER",
          "database/port 7 option TALVENHR_PORT",
          "database/database attendance default TALVENHR_DATABASE"})
        QVERIFY2(told.contains(QLatin1String(line)), qPrintable(told.join(QLatin1Char('\n'))));
}

void tst_Config::config_readsTheUsersFile()
{
    const Site site;
    QVERIFY(QDir(site.dataDir()).mkpath(QStringLiteral(".config/talvenhr")));
    const QString path = site.path(QStringLiteral(".config/talvenhr/talvenhr.conf"));
    site.writeFile(QStringLiteral(".config/talvenhr/talvenhr.conf"),
                   QStringLiteral("[database]\n\nhost=h\n"));
    TalvenhrProcess program({QStringLiteral("config")}, site.dataDir());
    QCOMPARE(program.finish(), 0);
    const QStringList lines = program.output().split(QLatin1Char('\n'));
    QCOMPARE(lines.first().simplified(), QStringLiteral("Configuration file ") + path);
    QVERIFY(program.output().simplified().contains(
        QStringLiteral("database/host h %1, line 3").arg(path)));
}

void tst_Config::config_tellsLimitsOfTheFile()
{
    const Site site;
    const auto tell = [&site](const QString &limits) {
        site.writeFile(QStringLiteral("t.conf"), QStringLiteral("[limits]\n") + limits);
        return QStringList {QStringLiteral("config"), QStringLiteral("--config"),
                            site.path(QStringLiteral("t.conf"))};
    };
    TalvenhrProcess program(tell(QStringLiteral("ended=2%\nchanged:phone=9\n")));
    program.finish();
    QVERIFY2(program.output().contains(QStringLiteral("limits/ended")),
             qPrintable(program.output()));
    QVERIFY(program.output().contains(QStringLiteral("limits/changed:phone")));
    TalvenhrProcess wrong(tell(QStringLiteral("endet=2%\n")));
    QCOMPARE(wrong.finish(), 2);
    QVERIFY2(wrong.lastLine().endsWith(
                 QStringLiteral("unknown key 'endet' in [limits] (did you mean 'ended'?)")),
             qPrintable(wrong.lastLine()));
}

void tst_Config::config_withoutAFile()
{
    const Site site;
    TalvenhrProcess program({QStringLiteral("config")}, site.dataDir());
    QCOMPARE(program.finish(), 0);
    QVERIFY(program.output().contains(QStringLiteral("none; looked for ") + site.dataDir()));
}

void tst_Config::config_tellsTheDatabaseOfARun_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("told");
    QTest::newRow("none named")
        << QStringList()
        << "a private one in 'HOME/.local/share/talvenhr/private-db', for none is named";
    QTest::newRow("private")
        << QString(QStringLiteral("--private-db /tmp/p")).split(QLatin1Char(' '))
        << "a private one in '/tmp/p'";
    QTest::newRow("server") << QString(QStringLiteral("--host h --port 7")).split(QLatin1Char(' '))
                            << "'attendance' on h:7 as user 'talvenhr', with the password of "
                               "TALVENHR_PASSWORD";
    QTest::newRow("password file")
        << QString(QStringLiteral("--user u --password-file HOME/password")).split(QLatin1Char(' '))
        << "'attendance' on this machine as user 'u', with the password "
           "of the file";
}

void tst_Config::config_tellsTheDatabaseOfARun()
{
    QFETCH(QStringList, options);
    QFETCH(QString, told);
    const Site site;
    site.writeFile(QStringLiteral("password"), QStringLiteral("secret"));
    options.replaceInStrings(QStringLiteral("HOME"), site.dataDir());
    TalvenhrProcess program(QStringList {QStringLiteral("config")} + options, site.dataDir());
    program.setEnvironment(QStringLiteral("TALVENHR_PASSWORD"), QStringLiteral("secret"));
    QCOMPARE(program.finish(), 0);
    const QString output = program.output().simplified();
    told.replace(QStringLiteral("HOME"), site.dataDir());
    QVERIFY2(output.endsWith(QStringLiteral("A run takes ") + told), qPrintable(output));
    QVERIFY(!output.contains(QStringLiteral("secret")));
}

void tst_Config::config_tellsAllThatIsWrong()
{
    const Site site;
    site.writeFile(QStringLiteral("t.conf"),
                   QStringLiteral("[database]\nport=http\npassword-file=none\n[plugin]\n"
                                  "data-dir=nowhere\nfile=none.so\n"));
    TalvenhrProcess program({QStringLiteral("config"), QStringLiteral("--json"),
                             QStringLiteral("--config"), site.path(QStringLiteral("t.conf"))});
    QCOMPARE(program.finish(), 2);
    const QJsonObject report = QJsonDocument::fromJson(program.output().toUtf8()).object();
    const QJsonArray problems = report.value(QStringLiteral("problems")).toArray();
    const QStringList expected {
        QStringLiteral("'port' in %1, line 2, takes a number from 1 to 65535, not 'http'"),
        QStringLiteral("the password file '%2/none' cannot be read: No such file"),
        QStringLiteral("'data-dir' in %1, line 5, names '%2/nowhere', which is not a folder"),
        QStringLiteral("no plugin at '%2/none.so'")};
    QCOMPARE(problems.size(), expected.size());
    for (int i = 0; i < expected.size(); ++i) {
        const QString told = problems.at(i)[QLatin1String("problem")].toString();
        QString begin = expected.at(i);
        begin.replace(QStringLiteral("%1"), site.path(QStringLiteral("t.conf")));
        begin.replace(QStringLiteral("%2"), site.dataDir());
        QVERIFY2(told.startsWith(begin), qPrintable(told));
    }
    QVERIFY(!report.contains(QStringLiteral("runTakes")));
}

/// Each value of the gate, its folders, its hooks, and what it publishes.
void tst_Config::config_tellsWhatTheGateWouldSay()
{
    Site site;
    site.set({QStringLiteral("importFile=ron.data")});
    site.writeFile(QStringLiteral("password"), QStringLiteral("secret"));
    QVERIFY(QFile::setPermissions(site.path(QStringLiteral("password")),
                                  QFile::ReadOwner | QFile::ReadOther));
    site.writeFile(QStringLiteral("t.conf"),
                   QStringLiteral("[plugin]\ndata-dir=.\n[database]\npassword-file=password\n"
                                  "[gate]\nincoming=none\ncomplete=renamed\nlate-after=26h\n"
                                  "[limits]\nended=5 percent\n[mend]\nbom=maybe\n"
                                  "encoding=cp12500\n[hooks]\nfailed=/nowhere/mail x\n"
                                  "[status]\nreaders=everyone\n[metrics]\nfile=none/f\n"));
    const QStringList arguments {QStringLiteral("config"), QStringLiteral("--config"),
                                 site.path(QStringLiteral("t.conf"))};
    TalvenhrProcess program(arguments + QStringList {QStringLiteral("--json")});
    QCOMPARE(program.finish(), 2);
    const QJsonArray problems = QJsonDocument::fromJson(program.output().toUtf8())
                                    .object()
                                    .value(QStringLiteral("problems"))
                                    .toArray();
    QStringList told;
    for (const QJsonValue &problem : problems)
        told.append(problem[QLatin1String("problem")].toString());
    const QStringList expected {QStringLiteral("not 'renamed' (did you mean 'rename'?)"),
                                QStringLiteral("not '26h'"),
                                QStringLiteral("'5 percent' is no limit of 'ended'"),
                                QStringLiteral("takes yes or no, not 'maybe'"),
                                QStringLiteral("cp12500"),
                                QStringLiteral("there is no folder of deliveries '"),
                                QStringLiteral("importFile 'ron.data' in '"),
                                QStringLiteral("the program of the hook '/nowhere/mail x'"),
                                QStringLiteral("takes nobody, group or all, not 'everyone'")};
    QVERIFY2(told.size() == expected.size(), qPrintable(told.join(QLatin1Char('\n'))));
    for (int i = 0; i < expected.size(); ++i)
        QVERIFY2(told.at(i).contains(expected.at(i)), qPrintable(told.at(i)));
    // Told once, however often it is read.
    QCOMPARE(program.linesWith(QStringLiteral("every user of this machine can read")).size(), 1);
    QVERIFY(!QFile::exists(site.path(QStringLiteral("state"))));

    site.writeFile(QStringLiteral("t.conf"),
                   QStringLiteral("[plugin]\ndata-dir=.\n[metrics]\nfile=none/f\n"));
    TalvenhrProcess figures(arguments);
    QCOMPARE(figures.finish(), 2);
    QVERIFY2(figures.output().contains(QStringLiteral("there is no folder '")),
             qPrintable(figures.output()));
}

void tst_Config::info_takesThePluginOfTheFile()
{
    const Site site;
    site.writeFile(QStringLiteral("t.conf"), QStringLiteral("[plugin]\nfile=none.so\n"));
    TalvenhrProcess program(
        {QStringLiteral("info"), QStringLiteral("--config"), site.path(QStringLiteral("t.conf"))});
    QCOMPARE(program.finish(), 2);
    QVERIFY(program.lastLine().contains(
        QStringLiteral("no plugin at '%1'").arg(site.path(QStringLiteral("none.so")))));
}

void tst_Config::run_takesTheServerOfTheFile()
{
    const Site site;
    site.writeFile(QStringLiteral("t.conf"), QStringLiteral("[database]\nsocket=none.sock\n"));
    TalvenhrProcess program(site.runOptions({}));
    program.setEnvironment(QStringLiteral("TALVENHR_CONFIG"), site.path(QStringLiteral("t.conf")));
    QCOMPARE(program.finish(), 3);
    QVERIFY(program.lastLine().contains(QStringLiteral("cannot open database 'attendance' on ")
                                        + site.path(QStringLiteral("none.sock"))));
}

QTEST_GUILESS_MAIN(tst_Config)
#include "tst_config.moc"
