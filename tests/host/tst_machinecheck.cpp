// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Folders, variables and plugin files that are not as a pass needs them.
#include "host/doctor/machinecheck.h"
#include "host/doctor/placecheck.h"
#include "host/doctor/plugincheck.h"
#include "host/plugin/settingsfile.h"
#include "support/commands/talvenhrprocess.h"
#include "support/unprivileged.h"

#include <QProcess>
#include <QtTest>

class tst_MachineCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void place_data();
    void place();
    void place_withAnApostrophe();
    void place_thatCountsFromElsewhere();
    void zone_data();
    void zone();
    void folder_data();
    void folder();
    void qt_data();
    void qt();
    void plugin();

private:
    QString path(const QString &name) const { return root->filePath(name); }
    void shell(QString commands) const;
    Diagnosis placeOf(const QByteArray &settings);

    QScopedPointer<QTemporaryDir> root;
};

namespace {

QString codesOf(const Diagnosis &diagnosis)
{
    QStringList codes;
    for (const Finding &finding : diagnosis.findings)
        codes.append(finding.code);
    return codes.join(QLatin1Char(' '));
}

/// The command of the shell at the end of a remedy; empty if there is none.
QString commandOf(const Finding &finding)
{
    const QString command = finding.remedy.section(QStringLiteral(": "), 1);
    return command.startsWith(QLatin1String("chmod")) || command.startsWith(QLatin1String("mkdir"))
        ? command
        : QString();
}

} // namespace

/// A folder that everybody may enter, for what ordinary users may do.
void tst_MachineCheck::init()
{
    root.reset(new QTemporaryDir(QStringLiteral("/tmp/talven-XXXXXX")));
    shell(QStringLiteral("chmod 755 ROOT && umask 022 && mkdir ROOT/hr && echo > ROOT/hr/ron.data "
                         "&& chmod 600 ROOT/hr/ron.data && echo enabled=1 > ROOT/TalvenHR.ini"));
}

void tst_MachineCheck::cleanup()
{
    shell(QStringLiteral("test ! -e ROOT || chmod -R u+rwX ROOT"));
}

void tst_MachineCheck::shell(QString commands) const
{
    commands.replace(QLatin1String("ROOT"), root->path());
    QCOMPARE(QProcess::execute(QStringLiteral("sh"), {QStringLiteral("-c"), commands}), 0);
}

Diagnosis tst_MachineCheck::placeOf(const QByteArray &settings)
{
    QFile file(path(QStringLiteral("TalvenHR.ini")));
    if (!file.open(QIODevice::WriteOnly) || file.write(settings) < 0)
        qFatal("cannot write the settings");
    file.close();
    return placeDiagnosis(SettingsFile(file.fileName()));
}

void tst_MachineCheck::place_data()
{
    QTest::addColumn<QString>("fault"); // commands of the shell
    QTest::addColumn<bool>("ordinary"); // of an ordinary user
    QTest::addColumn<QString>("codes");
    const auto row = [](const char *fault, bool ordinary, const char *codes) {
        QTest::newRow(*fault         ? fault
                          : ordinary ? "sound, ordinary"
                                     : "sound")
            << fault << ordinary << codes;
    };
    row("", false, "");
    row("rm ROOT/hr/ron.data", false, "");
    row("rm -r ROOT/hr", false, "E-PLACE-FOLDER");
    row("rm ROOT/hr/ron.data && mkdir ROOT/hr/ron.data", false, "W-PLACE-KIND");
    row("rm ROOT/hr/ron.data && ln -s none ROOT/hr/ron.data", false, "W-PLACE-KIND");
    row("rm ROOT/hr/ron.data && mkfifo ROOT/hr/ron.data", false, "W-PLACE-KIND");
    row("chmod 777 ROOT/hr", false, "E-PLACE-OPEN");
    row("chmod 1777 ROOT/hr", false, "E-PLACE-SHARED");
    row("chmod 606 ROOT/hr/ron.data", false, "E-PLACE-OPEN W-PLACE-SEEN");
    row("chmod 604 ROOT/hr/ron.data", false, "W-PLACE-SEEN");
    row("chmod 604 ROOT/hr/ron.data && chmod 700 ROOT/hr", false, "");
    row("chmod 555 ROOT/hr && chmod 644 ROOT/hr/ron.data", true, "E-PLACE-KEPT W-PLACE-SEEN");
    row("chmod 777 ROOT/hr && chmod 0 ROOT/hr/ron.data", true, "E-PLACE-OPEN E-PLACE-READ");
    row("chmod 644 ROOT/hr", true, "E-PLACE-CLOSED");
}

void tst_MachineCheck::place()
{
    QFETCH(QString, fault);
    QFETCH(bool, ordinary);
    QFETCH(QString, codes);
    shell(fault);
    const QByteArray settings = "importFile=" + path(QStringLiteral("hr/ron.data")).toUtf8();
    Diagnosis diagnosis;
    if (ordinary) {
        placeOf(settings);
        const SettingsFile file(path(QStringLiteral("TalvenHR.ini")));
        const Unprivileged user;
        QVERIFY(user.isBound());
        diagnosis = placeDiagnosis(file);
    } else {
        diagnosis = placeOf(settings);
    }
    QCOMPARE(codesOf(diagnosis), codes);
    QCOMPARE(diagnosis.passed.isEmpty(), !codes.isEmpty());
    // A remedy of the shell is followed as it stands there.
    for (const Finding &finding : qAsConst(diagnosis.findings))
        shell(commandOf(finding));
    const bool allFollowed = std::all_of(
        diagnosis.findings.begin(), diagnosis.findings.end(),
        [](const Finding &finding) { return !commandOf(finding).isEmpty(); });
    if (allFollowed)
        QCOMPARE(codesOf(placeOf(settings)), QString());
}

void tst_MachineCheck::place_withAnApostrophe()
{
    const QByteArray settings = "importFile=" + path(QStringLiteral("it's/ron.data")).toUtf8();
    for (const char *code : {"E-PLACE-FOLDER", "E-PLACE-OPEN", "W-PLACE-SEEN"}) {
        const Diagnosis diagnosis = placeOf(settings);
        QCOMPARE(codesOf(diagnosis), QLatin1String(code));
        shell(commandOf(diagnosis.findings.first()));
        QCOMPARE(codesOf(placeOf(settings)), QString());
        const bool isMade = QLatin1String(code) == QLatin1String("E-PLACE-FOLDER");
        shell(isMade ? QStringLiteral("chmod 777 \"ROOT/it's\"")
                     : QStringLiteral("umask 022; echo > \"ROOT/it's/ron.data\""));
    }
}

void tst_MachineCheck::place_thatCountsFromElsewhere()
{
    for (const char *settings :
         {"importFile=hr/ron.data", "enabled=1", "importFile=C:\\\\hr\\\\ron.data"}) {
        const Diagnosis diagnosis = placeOf(settings);
        QCOMPARE(codesOf(diagnosis),
                 QByteArray(settings).contains('\\') ? QStringLiteral("W-PLACE-WINDOWS")
                                                     : QStringLiteral("W-PLACE-RELATIVE"));
        QCOMPARE(diagnosis.unknown.size(), 1);
        const QByteArray line
            = diagnosis.findings.first().remedy.section(QStringLiteral("line: "), 1).toUtf8();
        QCOMPARE(codesOf(placeOf(line)), QString());
    }
    shell(QStringLiteral("chmod 755 ROOT && chmod 1777 ROOT/hr"));
    const Diagnosis shared = placeOf("importFile=" + path(QStringLiteral("hr/ron.data")).toUtf8());
    const QString line = shared.findings.value(0).remedy.section(QStringLiteral("line: "), 1);
    QCOMPARE(codesOf(placeOf(line.toUtf8())), QString());
    // The settings themselves tell of this one.
    QCOMPARE(codesOf(placeOf("importFile=")), QString());
}

void tst_MachineCheck::zone_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QString>("codes");
    QTest::newRow("none") << QByteArray() << "N-MACHINE-ZONE";
    QTest::newRow("empty") << QByteArray("") << "E-MACHINE-ZONE";
    for (const char *sound : {"Europe/Bratislava", ":/etc/localtime", "CET-1CEST,M3.5.0,M10.5.0/3",
                              "<+01>-1", ":UTC", "UTC"})
        QTest::newRow(sound) << QByteArray(sound) << QString();
    for (const char *bad : {"Europe/Bratislva", ":/etc/none", "Bratislava", "+1"})
        QTest::newRow(bad) << QByteArray(bad) << "E-MACHINE-ZONE";
}

void tst_MachineCheck::zone()
{
    QFETCH(QByteArray, zone);
    QFETCH(QString, codes);
    QCOMPARE(codesOf(zoneDiagnosis(zone)), codes);
}

void tst_MachineCheck::folder_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QString>("codes");
    const auto row = [](const char *fault, const char *codes) {
        QTest::newRow(fault) << fault << codes;
    };
    row("", "");
    row("chmod 777 ROOT", "E-MACHINE-OPEN");
    row("chmod 1777 ROOT", "");
    row("chmod 1777 ROOT && rm ROOT/TalvenHR.ini", "E-MACHINE-OPEN");
    row("chmod 666 ROOT/TalvenHR.ini", "E-MACHINE-OPEN");
    row("chmod 666 ROOT/TalvenHR.ini && chmod 750 ROOT", "");
    row("rm -r ROOT", "E-MACHINE-FOLDER");
}

void tst_MachineCheck::folder()
{
    QFETCH(QString, fault);
    QFETCH(QString, codes);
    shell(fault);
    const Diagnosis diagnosis = folderDiagnosis(root->path());
    QCOMPARE(codesOf(diagnosis), codes);
    for (const Finding &finding : diagnosis.findings) {
        QVERIFY(!commandOf(finding).isEmpty());
        shell(commandOf(finding));
    }
    QCOMPARE(codesOf(folderDiagnosis(root->path())), QString());
}

void tst_MachineCheck::qt_data()
{
    QTest::addColumn<QString>("built");
    QTest::addColumn<QString>("codes");
    QTest::newRow("same") << "5.15.2" << QString();
    QTest::newRow("earlier") << "5.9.0" << QString();
    QTest::newRow("later") << "5.16.0"
                           << "E-PLUGIN-QT";
    QTest::newRow("major") << "6.2.0"
                           << "E-PLUGIN-QT";
}

void tst_MachineCheck::qt()
{
    QFETCH(QString, built);
    QFETCH(QString, codes);
    QCOMPARE(codesOf(qtDiagnosis(built, QStringLiteral("5.15.8"))), codes);
}

void tst_MachineCheck::plugin()
{
    const QString file = TalvenhrProcess::pluginPath();
    const Diagnosis other = pluginDiagnosis(file, QStringLiteral("0.1.0"));
    QCOMPARE(codesOf(other), QStringLiteral("W-PLUGIN-VERSION"));
    const QString text = other.findings.first().text;
    const QString version = text.section(QLatin1Char(' '), 4, 4).remove(QLatin1Char(','));
    QCOMPARE(codesOf(pluginDiagnosis(file, version)), QString());
    QCOMPARE(codesOf(pluginDiagnosis(path(QStringLiteral("none.so")), version)),
             QStringLiteral("E-PLUGIN-FILE"));
    QCOMPARE(codesOf(pluginDiagnosis(path(QStringLiteral("TalvenHR.ini")), version)),
             QStringLiteral("E-PLUGIN-FILE"));
}

QTEST_GUILESS_MAIN(tst_MachineCheck)
#include "tst_machinecheck.moc"
