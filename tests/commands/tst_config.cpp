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
    void config_withoutAFile();
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

void tst_Config::config_withoutAFile()
{
    const Site site;
    TalvenhrProcess program({QStringLiteral("config")}, site.dataDir());
    QCOMPARE(program.finish(), 0);
    QVERIFY(program.output().contains(QStringLiteral("none; looked for ") + site.dataDir()));
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
