// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What talvenhr.conf, the environment and the machine say of a gate.
#include "support/commands/gateconsole.h"
#include "support/commands/talvenhrprocess.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QtTest>

#include <unistd.h>

class tst_GateSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void wrongSettings_areNamed_data();
    void wrongSettings_areNamed();
    void relativeImportFile_isRefused();
    void yesAndTrue_areTheSame();
    void config_showsTheGate();
    void gateOfAnotherUser_isLeftAlone_data();
    void gateOfAnotherUser_isLeftAlone();

private:
    QScopedPointer<GateConsole> site;
};

void tst_GateSettings::init()
{
    site.reset(new GateConsole);
}

void tst_GateSettings::wrongSettings_areNamed_data()
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
    QTest::newRow("mend") << QStringList {QStringLiteral("[mend]"), QStringLiteral("bom=maybe")}
                          << QStringLiteral("talvenhr.conf, line 7, takes yes or no, not 'maybe'");
    QTest::newRow("encoding") << QStringList {QStringLiteral("[mend]"),
                                              QStringLiteral("encoding=windows-9999")}
                              << QStringLiteral("talvenhr.conf, line 7, cannot be taken: "
                                                "'windows-9999'");
    QTest::newRow("rehearse") << QStringList {QStringLiteral("rehearse=yes")}
                              << QStringLiteral("takes a database");
}

void tst_GateSettings::wrongSettings_areNamed()
{
    QFETCH(QStringList, lines);
    QFETCH(QString, message);
    lines.removeAll(QStringLiteral("complete=rename"));
    site->configure(lines);
    site->deliver(GateConsole::exportOf(QStringLiteral("A"), 3));
    TalvenhrProcess program(site->gate());
    QCOMPARE(program.finish(), 2);
    QVERIFY2(program.lastLine().contains(message), qPrintable(program.lastLine()));
    QVERIFY(!site->isInPlace());
}

/// Cron begins in another folder than the attendance server.
void tst_GateSettings::relativeImportFile_isRefused()
{
    site->set({QStringLiteral("importFile=hr/ron.data")});
    site->deliver(GateConsole::exportOf(QStringLiteral("A"), 3));
    TalvenhrProcess program(site->gate());
    QCOMPARE(program.finish(), 2);
    for (const QString &text :
         {QStringLiteral("importFile 'hr/ron.data'"), QStringLiteral("write its whole path"),
          QStringLiteral("name it by 'place'")})
        QVERIFY2(program.lastLine().contains(text), qPrintable(program.lastLine()));
    QVERIFY(QFile::exists(site->path(QStringLiteral("incoming/ron.data"))));
    site->configure({QStringLiteral("place=ron.data")}); // counts from the folder of talvenhr.conf
    TalvenhrProcess named(site->gate());
    QCOMPARE(named.finish(), 0);
    QVERIFY(site->isInPlace());
    QVERIFY2(named.output().contains(QStringLiteral(", not rehearsed: no database is named")),
             qPrintable(named.output()));
}

void tst_GateSettings::yesAndTrue_areTheSame()
{
    int people = 3;
    for (const char *word : {"yes", "true", "no", "false"}) {
        const QString value = QLatin1String(word);
        const bool isWished = value == QLatin1String("yes") || value == QLatin1String("true");
        site->configure({QStringLiteral("rehearse=no"), QStringLiteral("[mend]"),
                         QStringLiteral("apostrophe=") + value, QStringLiteral("[status]"),
                         QStringLiteral("html=www"), QStringLiteral("no-names=") + value});
        site->deliver(GateConsole::exportOf(QStringLiteral("O'"), ++people));
        TalvenhrProcess program(site->gate());
        QVERIFY2(program.finish() == (isWished ? 0 : 5), qPrintable(program.lastLine()));
    }
    site->configure({QStringLiteral("rehearse=true")});
    TalvenhrProcess program(site->gate());
    QCOMPARE(program.finish(), 2);
    QVERIFY(program.lastLine().contains(QStringLiteral("takes a database")));
}

/// What holds, also where nobody has set it, and the file with its whole path.
void tst_GateSettings::config_showsTheGate()
{
    site->configure(
        {QStringLiteral("keep-days=30"), QStringLiteral("[hooks]"), QStringLiteral("late=true")});
    const QString file = site->path(QStringLiteral("talvenhr.conf"));
    TalvenhrProcess program({QStringLiteral("config"), QStringLiteral("--config"), file});
    QCOMPARE(program.finish(), 0);
    const QString output = program.output().simplified();
    for (const QString &text :
         {QStringLiteral("gate/incoming %1 %2, line 4")
              .arg(site->path(QStringLiteral("incoming")), file),
          QStringLiteral("gate/archive %1 default, beside incoming")
              .arg(site->path(QStringLiteral("archive"))),
          QStringLiteral("gate/refused %1 default, beside incoming")
              .arg(site->path(QStringLiteral("refused"))),
          QStringLiteral("gate/state %1 default, beside incoming")
              .arg(site->path(QStringLiteral("state"))),
          QStringLiteral("gate/place %1 importFile of %2")
              .arg(site->exportFile(), site->path(QStringLiteral("TalvenHR.ini"))),
          QStringLiteral("gate/refuse error,W-FILE-HEADER,"),
          QStringLiteral("gate/keep-days 30 %1, line 6").arg(file),
          QStringLiteral("hooks/late true %1, line 8").arg(file)})
        QVERIFY2(output.contains(text), qPrintable(text + QStringLiteral(" in ") + output));
}

void tst_GateSettings::gateOfAnotherUser_isLeftAlone_data()
{
    QTest::addColumn<QString>("foreign");
    QTest::newRow("the archive") << QStringLiteral("archive");
    QTest::newRow("the state") << QStringLiteral("state");
    QTest::newRow("where they will be") << QString();
}

/// What root leaves there, for its owner only, the server's own gate could not read.
void tst_GateSettings::gateOfAnotherUser_isLeftAlone()
{
    if (::geteuid() != 0)
        QSKIP("only the administrator can give folders away", );
    QFETCH(QString, foreign);
    const QString folder = foreign.isEmpty() ? site->dataDir() : site->path(foreign);
    QVERIFY(QDir().mkpath(folder));
    QCOMPARE(::chown(QFile::encodeName(folder).constData(), 65534, 65534), 0);
    site->deliver(GateConsole::exportOf(QStringLiteral("A"), 3));
    const QStringList before = QDir(site->dataDir()).entryList();
    TalvenhrProcess program(site->gate());
    QCOMPARE(program.finish(), 2);
    const QString owner = QFileInfo(folder).owner();
    QVERIFY2(program.lastLine().contains(
                 QStringLiteral("the folder '%1' belongs to %2").arg(folder, owner)),
             qPrintable(program.lastLine()));
    // By its whole path, for sudo may look elsewhere.
    const QRegularExpression command(
        QStringLiteral("sudo -u %1 '/.+/talvenhr' gate").arg(QRegularExpression::escape(owner)));
    QVERIFY2(program.lastLine().contains(command), qPrintable(program.lastLine()));
    QCOMPARE(QDir(site->dataDir()).entryList(), before);
    QVERIFY(foreign.isEmpty() || QDir(folder).isEmpty());
    // The folder of deliveries may be anybody's.
    QCOMPARE(::chown(QFile::encodeName(folder).constData(), 0, 0), 0);
    const QString incoming = site->path(QStringLiteral("incoming"));
    QCOMPARE(::chown(QFile::encodeName(incoming).constData(), 65534, 65534), 0);
    QCOMPARE(TalvenhrProcess(site->gate()).finish(), 0);
}

QTEST_GUILESS_MAIN(tst_GateSettings)
#include "tst_gatesettings.moc"
