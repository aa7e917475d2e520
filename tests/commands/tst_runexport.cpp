// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr run`: what it tells of the export and the export command, at every log level.
#include "support/commands/site.h"
#include "support/commands/talvenhrprocess.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

class tst_RunExport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void droppedLines_areToldAtEveryLevel_data();
    void droppedLines_areToldAtEveryLevel();
    void oddCells_areWarnings();
    void uselessExport_endsWith1();
    void failedCommand_endsWith1();
    void exportThatIsNoFile_data();
    void exportThatIsNoFile();
    void missingExport_isTheReasonWithoutAWorseOne();
    void summary_hasTheReasonInJson();

private:
    QStringList options(const Site &site, const QStringList &others) const;

    const Site home; ///< of the private database, which all share
};

QStringList tst_RunExport::options(const Site &site, const QStringList &others) const
{
    return site.runOptions(QStringList {QStringLiteral("--private-db"),
                                        home.path(QStringLiteral("db")), QStringLiteral("--once")}
                           + others);
}

void tst_RunExport::droppedLines_areToldAtEveryLevel_data()
{
    QTest::addColumn<QString>("level");
    for (const char *level : {"0", "1", "3"})
        QTest::newRow(level) << level;
}

void tst_RunExport::droppedLines_areToldAtEveryLevel()
{
    QFETCH(QString, level);
    const Site site;
    site.writeFile(QStringLiteral("ron.data"),
                   QStringList {Site::header(), Site::employee(7101, QStringLiteral("Eva")),
                                QStringLiteral("7102|1|x"),
                                Site::employee(0, QStringLiteral("Nikto"))}
                       .join(QLatin1Char('\n')));
    TalvenhrProcess program(options(site, {QStringLiteral("--log-level"), level}));
    QCOMPARE(program.finish(), 0);
    QCOMPARE(program
                 .linesWith(QStringLiteral("talvenhr: warning: line 3 of the export: the line has "
                                           "3 cells in place of 18; the line is dropped"))
                 .count(),
             1);
    QCOMPARE(program
                 .linesWith(QStringLiteral("line 4 of the export: OsobniCislo '0' and "
                                           "PoradoveCisloPP '1' are read as 0 and 1"))
                 .count(),
             1);
    QVERIFY2(program.lastLine().endsWith(QStringLiteral(", 2 lines dropped")),
             qPrintable(program.lastLine()));
}

void tst_RunExport::oddCells_areWarnings()
{
    const Site site;
    QString line = Site::employee(7103, QStringLiteral("Eva"));
    line.replace(QStringLiteral(" 00:00:00.000"), QString());
    site.writeFile(QStringLiteral("ron.data"), line);
    TalvenhrProcess program(options(site, {}));
    QCOMPARE(program.finish(), 0);
    QCOMPARE(
        program
            .linesWith(QStringLiteral("date that is lost, 2 times in the export, first in line 1: "
                                      "DatumNastupu '2020-01-01' is no date"))
            .count(),
        1);
    QVERIFY(program.lastLine().contains(QStringLiteral(" 1 warning, ")));
    TalvenhrProcess strict(options(site, {QStringLiteral("--strict")}));
    QCOMPARE(strict.finish(), 1);
    QVERIFY(strict.lastLine().endsWith(QStringLiteral("; warnings count as errors, as --strict "
                                                      "asks for")));
}

void tst_RunExport::uselessExport_endsWith1()
{
    const Site site;
    QString lines = Site::header() + QLatin1Char('\n')
        + Site::employee(7104, QStringLiteral("Eva"));
    lines.replace(QLatin1Char('|'), QLatin1Char(';'));
    site.writeFile(QStringLiteral("ron.data"), lines);
    TalvenhrProcess program(options(site, {QStringLiteral("--log-level"), QStringLiteral("0")}));
    QCOMPARE(program.finish(), 1);
    QCOMPARE(program
                 .linesWith(QStringLiteral("the export has no usable line: lines: 2; its cells are "
                                           "separated by semicolons"))
                 .count(),
             1);
    QVERIFY(program.lastLine().endsWith(QStringLiteral("; an export had no usable line")));
}

void tst_RunExport::failedCommand_endsWith1()
{
    Site site;
    site.set({QStringLiteral("syncCommand=/none/export"), QStringLiteral("syncCommandRun=2")});
    TalvenhrProcess program(options(site, {}));
    QCOMPARE(program.finish(), 1);
    QVERIFY(program.lastLine().endsWith(QStringLiteral("; the export command failed")));
}

void tst_RunExport::exportThatIsNoFile_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("level");
    QTest::addColumn<QString>("text");
    QTest::newRow("folder") << "folder"
                            << "1"
                            << "the export '%1' is a folder; the plugin reads regular";
    QTest::newRow("device") << "/dev/null"
                            << "2"
                            << "the export '%1' is no regular file; the plugin";
    QTest::newRow("dangling link") << "/none/ron.data"
                                   << "1"
                                   << "the export '%1' is a link to '/none/ron.data', which is not";
}

void tst_RunExport::exportThatIsNoFile()
{
    QFETCH(QString, kind);
    QFETCH(QString, level);
    QFETCH(QString, text);
    const Site site;
    QVERIFY(QFile::remove(site.exportFile()));
    QVERIFY(kind == QLatin1String("folder") ? QDir().mkdir(site.exportFile())
                                            : QFile::link(kind, site.exportFile()));
    TalvenhrProcess program(options(site, {QStringLiteral("--log-level"), level}));
    QCOMPARE(program.finish(), 1);
    QCOMPARE(program.linesWith(QStringLiteral("talvenhr: warning: ") + text.arg(site.exportFile()))
                 .count(),
             1);
}

void tst_RunExport::missingExport_isTheReasonWithoutAWorseOne()
{
    Site site;
    site.set({QStringLiteral("deleteFile=true")});
    QStringList passes = options(site, {});
    passes.removeAll(QStringLiteral("--once"));
    TalvenhrProcess program(passes + QStringList {QStringLiteral("--passes"), QStringLiteral("2")});
    QCOMPARE(program.finish(), 0);
    QVERIFY2(
        program.lastLine().endsWith(QStringLiteral("; there was no export file in 1 of 2 passes")),
        qPrintable(program.lastLine()));
}

void tst_RunExport::summary_hasTheReasonInJson()
{
    const Site site;
    site.writeFile(QStringLiteral("ron.data"), QStringLiteral("1;2;3"));
    TalvenhrProcess program(
        options(site, {QStringLiteral("--log-format"), QStringLiteral("json")}));
    QCOMPARE(program.finish(), 1);
    const QJsonObject summary = QJsonDocument::fromJson(program.lastLine().toUtf8())
                                    .object()
                                    .value(QStringLiteral("summary"))
                                    .toObject();
    QCOMPARE(summary.value(QStringLiteral("exitCode")).toInt(), 1);
    QCOMPARE(summary.value(QStringLiteral("dropped")).toInt(), 1);
    QCOMPARE(summary.value(QStringLiteral("testMode")).toBool(true), false);
    QCOMPARE(summary.value(QStringLiteral("reason")).toString(),
             QStringLiteral("an export had no usable line"));
}

QTEST_GUILESS_MAIN(tst_RunExport)
#include "tst_runexport.moc"
