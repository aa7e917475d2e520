// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a status is taken from and where it is published, by options and talvenhr.conf.
#include "host/cli/options.h"
#include "host/commands/commands.h"
#include "host/commands/statuscommand.h"
#include "host/commands/statussettings.h"
#include "support/status/gatefolder.h"

#include <QtTest>

class tst_StatusSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void folders_comeFromTheFile();
    void client_isThatOfTheDatabase();
    void pluginSettings_tellPlaceAndTimes();
    void wrongValues_areNamed_data();
    void wrongValues_areNamed();
    void publishing_writesWhatTheFileNames();
    void publishing_writesMetricsWithoutTheSite();
    void folders_standBesideTheIncomingOne();

private:
    static Failure load(const GateFolder &folder, const char *lines, const QStringList &arguments,
                        StatusSettings *settings);
};

Failure tst_StatusSettings::load(const GateFolder &folder, const char *lines,
                                 const QStringList &arguments, StatusSettings *settings)
{
    folder.write(QStringLiteral("talvenhr.conf"), lines);
    Options options(statusCommand(), settingsOf(allCommands()), fileSettingsOf(allCommands()));
    const QString conf = QStringLiteral("--config=") + folder.path(QStringLiteral("talvenhr.conf"));
    if (const Failure failure = options.parse(arguments + QStringList {conf}))
        return failure;
    if (const Failure failure = options.readConfiguration())
        return failure;
    return readStatusSettings(options, settings);
}

void tst_StatusSettings::folders_comeFromTheFile()
{
    const GateFolder folder;
    StatusSettings settings;
    QVERIFY(!load(folder,
                  "[gate]\narchive=archive\nrefused=/r\nlate-after=26\nplace=site/ron.data\n"
                  "[status]\nhtml=www\nno-names=yes\nreaders=group\n[metrics]\nfile=m/t.prom\n",
                  {QStringLiteral("--refused=/other")}, &settings));
    QCOMPARE(settings.sources.archive, folder.path(QStringLiteral("archive")));
    QCOMPARE(settings.sources.refused, QStringLiteral("/other"));
    QCOMPARE(settings.sources.place, folder.place());
    QCOMPARE(settings.sources.lateAfter, Q_INT64_C(93600));
    QCOMPARE(settings.site.folder, folder.path(QStringLiteral("www")));
    QCOMPARE(settings.site.texts, PersonalTexts::Hidden);
    QCOMPARE(settings.site.readers, FileReaders::Group);
    QCOMPARE(settings.metricsFile, folder.path(QStringLiteral("m/t.prom")));
    QVERIFY(!settings.sources.namesDatabase);
}

/// For a shell, and without the login that only reads.
void tst_StatusSettings::client_isThatOfTheDatabase()
{
    const GateFolder folder;
    const auto clientOf = [&folder](const QStringList &arguments) {
        StatusSettings settings;
        const Failure failure = load(folder, "", arguments, &settings);
        return failure ? failure.text : settings.sources.client;
    };
    QCOMPARE(clientOf({}), QStringLiteral("mariadb attendance"));
    QCOMPARE(clientOf({QStringLiteral("--private-db=/a b")}),
             QStringLiteral("talvenhr sql --private-db '/a b'"));
    QCOMPARE(clientOf({QStringLiteral("--host=db.example.org"), QStringLiteral("--port=3307"),
                       QStringLiteral("--user=reader")}),
             QStringLiteral("mariadb --host 'db.example.org' --port 3307 'attendance'"));
    QCOMPARE(clientOf({QStringLiteral("--socket=/run/s"), QStringLiteral("--database=other")}),
             QStringLiteral("mariadb --socket '/run/s' 'other'"));
}

void tst_StatusSettings::pluginSettings_tellPlaceAndTimes()
{
    const GateFolder folder;
    folder.write(QStringLiteral("TalvenHR.ini"),
                 "enabled=true\ntimerInterval=30\nsyncInterval=4\ndeleteFile=false\n"
                 "importFile=/srv/ron.data\n");
    StatusSettings settings;
    QVERIFY(!load(folder, "[plugin]\ndata-dir=.\n", {}, &settings));
    QCOMPARE(settings.sources.place, QStringLiteral("/srv/ron.data"));
    QCOMPARE(settings.sources.tickSeconds, Q_INT64_C(30));
    QCOMPARE(settings.sources.passSeconds, Q_INT64_C(120));
    QVERIFY(settings.sources.staysInPlace);
    StatusSettings other;
    QVERIFY(!load(folder, "[plugin]\ndata-dir=.\n[gate]\nplace=/else\n", {}, &other));
    QCOMPARE(other.sources.place, QStringLiteral("/else"));
}

void tst_StatusSettings::wrongValues_areNamed_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QString>("fault");
    QTest::newRow("readers") << QByteArray("[status]\nreaders=me\n")
                             << QStringLiteral("line 2, takes nobody, group or all, not 'me'");
    QTest::newRow("names") << QByteArray("[status]\nno-names=maybe\n")
                           << QStringLiteral("takes yes or no, not 'maybe'");
    QTest::newRow("late") << QByteArray("[gate]\nlate-after=soon\n")
                          << QStringLiteral("takes a number from 0 to 8760, not 'soon'");
    QTest::newRow("key") << QByteArray("[metrics]\nfiles=x\n")
                         << QStringLiteral("did you mean 'file'");
    QTest::newRow("plugin") << QByteArray("[plugin]\ndata-dir=nowhere\n")
                            << QStringLiteral("no TalvenHR.ini in");
}

void tst_StatusSettings::wrongValues_areNamed()
{
    QFETCH(QByteArray, lines);
    QFETCH(QString, fault);
    const GateFolder folder;
    StatusSettings settings;
    const Failure failure = load(folder, lines.constData(), {}, &settings);
    QCOMPARE(failure.exitCode, ExitUsage);
    QVERIFY2(failure.text.contains(fault), qPrintable(failure.text));
}

void tst_StatusSettings::publishing_writesWhatTheFileNames()
{
    const GateFolder folder;
    folder.keep(folder.record(1, "a"));
    StatusSettings settings;
    QVERIFY(!load(folder, "[gate]\narchive=archive\n[status]\nhtml=www\n[metrics]\nfile=t.prom\n",
                  {}, &settings));
    QVERIFY(!publishStatus(settings));
    QVERIFY(folder.read(QStringLiteral("t.prom")).contains("talvenhr_gate_exports_total"));
    QVERIFY(folder.read(QStringLiteral("www/index.html")).contains("ron.data"));

    StatusSettings place;
    QVERIFY(!load(folder, "[gate]\nplace=ron.data\n[metrics]\nfile=ron.data\n", {}, &place));
    QVERIFY(
        publishStatus(place).text.contains(QStringLiteral("is where the plugin reads its export")));
    QVERIFY(!QFile::exists(folder.path(QStringLiteral("ron.data"))));

    StatusSettings nothing;
    QVERIFY(!load(folder, "", {}, &nothing));
    QVERIFY(!publishStatus(nothing));
}

void tst_StatusSettings::publishing_writesMetricsWithoutTheSite()
{
    const GateFolder folder;
    folder.keep(folder.record(1, "a"));
    StatusSettings settings;
    QVERIFY(!load(folder,
                  "[gate]\narchive=archive\n[status]\nhtml=archive\n[metrics]\nfile=t.prom\n", {},
                  &settings));
    QVERIFY(publishStatus(settings).text.contains(QStringLiteral("holds other files")));
    QVERIFY(!folder.read(QStringLiteral("t.prom")).isEmpty());
}

void tst_StatusSettings::folders_standBesideTheIncomingOne()
{
    const GateFolder folder;
    StatusSettings settings;
    QVERIFY(!load(folder, "[gate]\nincoming=incoming\nstate=/run/gate\n", {}, &settings));
    QCOMPARE(settings.sources.archive, folder.path(QStringLiteral("archive")));
    QCOMPARE(settings.sources.refused, folder.path(QStringLiteral("refused")));
    QCOMPARE(settings.sources.state, QStringLiteral("/run/gate"));
    StatusSettings other;
    QVERIFY(!load(folder, "", {}, &other));
    QCOMPARE(other.sources.archive, QString());
}

QTEST_GUILESS_MAIN(tst_StatusSettings)
#include "tst_statussettings.moc"
