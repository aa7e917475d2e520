// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr check` as its users run it.
#include "support/commands/jsonschema.h"
#include "support/commands/site.h"
#include "support/commands/smalldisk.h"
#include "support/commands/talvenhrprocess.h"
#include "support/patience.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>
#include <QXmlStreamReader>

#include <sys/stat.h>

namespace {

QStringList checkOf(const Site &site, const QStringList &others = {})
{
    return QStringList {QStringLiteral("check"), site.exportFile(), QStringLiteral("--data-dir"),
                        site.dataDir()}
    + others;
}

/// The export of the site with an apostrophe, a line of 17 cells and a supervisor who is not there.
void damage(const Site &site)
{
    const QString text = site.readFile(QStringLiteral("ron.data"))
        + Site::employee(80, QStringLiteral("O'Neill")) + QLatin1Char('\n')
        + Site::employee(81, QStringLiteral("Short"))
              .replace(QStringLiteral("||"), QStringLiteral("|"));
    site.writeFile(QStringLiteral("ron.data"), text);
}

QJsonObject jsonOf(TalvenhrProcess *program)
{
    return QJsonDocument::fromJson(program->output().toUtf8()).object();
}

QStringList codesOf(const QJsonObject &report)
{
    QStringList codes;
    const QJsonArray findings = report.value(QStringLiteral("findings")).toArray();
    for (const QJsonValue &found : findings)
        codes.append(found[QLatin1String("code")].toString());
    return codes;
}

} // namespace

class tst_Check : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void soundExport_isTold();
    void page_showsTheWorstFirst();
    void quiet_showsTheHeadOnly();
    void json_isWhatTheSchemaSays();
    void standardInput_isReadLikeAFile();
    void against_namesWhatHasChanged();
    void rejects_areForTheirOwnerOnly();
    void names_canBeHidden();
    void html_showsHostileTextsAsTexts();
    void outputs_replaceNothingThatIsRead();
    void outputs_replaceRegularFilesOnly();
    void fullDisk_leavesTheOldFile();
    void whatIsNoExport_isNamed_data();
    void whatIsNoExport_isNamed();
    void settingsOfStates_areTried();

private:
    QString diskPath() const { return folder.filePath(QStringLiteral("disk")); }

    QTemporaryDir folder;
    // Made before any thread of the test library is there.
    const bool hasFolder = QDir().mkdir(diskPath());
    const SmallDisk disk {diskPath(), 64};
};

void tst_Check::soundExport_isTold()
{
    const Site site;
    TalvenhrProcess program(checkOf(site));
    QCOMPARE(program.finish(), 0);
    QVERIFY2(program.output().contains(
                 QStringLiteral("Errors: 0, warnings: 0, notes: 0. The plugin takes this export as "
                                "it stands there.")),
             qPrintable(program.output()));
    QCOMPARE(program.lines(), QStringList());
}

void tst_Check::page_showsTheWorstFirst()
{
    const Site site;
    damage(site);
    TalvenhrProcess program(checkOf(site));
    QCOMPARE(program.finish(), 1);
    const QString page = program.output();
    const int fails = page.indexOf(QStringLiteral("\nERROR E-TEXT-FAILS: text that breaks the "
                                                  "statement (1)\n"));
    const int cells = page.indexOf(QStringLiteral("\nERROR E-LINE-CELLS: wrong number of cells "
                                                  "(1)\n"));
    QVERIFY2(fails > 0 && cells > fails, qPrintable(page));
    QVERIFY(page.contains(QStringLiteral("Do not let the plugin read this export as it is.")));
    const QStringList lines = page.split(QLatin1Char('\n'));
    const int mark = lines.indexOf(QRegularExpression(QStringLiteral("^ +\\^$")));
    QVERIFY(mark > 0);
    QCOMPARE(lines.at(mark - 1).mid(lines.at(mark).size() - 1, 7), QStringLiteral("O'Neill"));
    for (const QString &line : lines)
        QVERIFY2(line.size() <= 100, qPrintable(line));
}

void tst_Check::quiet_showsTheHeadOnly()
{
    const Site site;
    damage(site);
    TalvenhrProcess whole(checkOf(site));
    QCOMPARE(whole.finish(), 1);
    TalvenhrProcess program(checkOf(site, {QStringLiteral("--quiet")}));
    QCOMPARE(program.finish(), 1);
    QVERIFY(!program.output().isEmpty() && whole.output().startsWith(program.output()));
    QVERIFY2(!program.output().contains(QStringLiteral("E-TEXT-FAILS")),
             qPrintable(program.output()));
    QVERIFY(whole.output().contains(QStringLiteral("E-TEXT-FAILS")));
}

void tst_Check::json_isWhatTheSchemaSays()
{
    const Site site;
    damage(site);
    site.writeFile(QStringLiteral("before.data"), Site::employee(80, QStringLiteral("Neill")));
    TalvenhrProcess program(checkOf(site,
                                    {QStringLiteral("--json"), QStringLiteral("--against"),
                                     site.path(QStringLiteral("before.data"))}));
    QCOMPARE(program.finish(), 1);
    QCOMPARE(codesOf(jsonOf(&program)),
             QStringList({QStringLiteral("E-TEXT-FAILS"), QStringLiteral("E-LINE-CELLS")}));
    QCOMPARE(schemaFault(program.output().toUtf8(), QStringLiteral("check")), QString());
}

void tst_Check::standardInput_isReadLikeAFile()
{
    const Site site;
    damage(site);
    QProcess program;
    program.setStandardInputFile(site.exportFile());
    program.start(TalvenhrProcess::path(),
                  {QStringLiteral("check"), QStringLiteral("-"), QStringLiteral("--json")});
    QVERIFY(program.waitForFinished(longestWait));
    QCOMPARE(program.exitCode(), 1);
    const QJsonObject report = QJsonDocument::fromJson(program.readAllStandardOutput()).object();
    QCOMPARE(report.value(QStringLiteral("file")).toString(), QStringLiteral("standard input"));
    QCOMPARE(codesOf(report),
             QStringList({QStringLiteral("N-FILE-STATES"), QStringLiteral("E-TEXT-FAILS"),
                          QStringLiteral("E-LINE-CELLS")}));
}

void tst_Check::against_namesWhatHasChanged()
{
    const Site site;
    QString before = Site::header() + QLatin1Char('\n');
    QString now = before;
    for (uint person = 1; person <= 20; ++person) {
        before += Site::employee(person, QStringLiteral("Name")) + QLatin1Char('\n');
        if (person <= 10)
            now += Site::employee(person, QStringLiteral("Other")) + QLatin1Char('\n');
    }
    site.writeFile(QStringLiteral("before.data"), before);
    site.writeFile(QStringLiteral("ron.data"), now);
    TalvenhrProcess program(
        checkOf(site, {QStringLiteral("--against"), site.path(QStringLiteral("before.data"))}));
    QCOMPARE(program.finish(), 1);
    QVERIFY2(program.output().contains(QStringLiteral("people gained: 0, lost: 10, changed: 10")),
             qPrintable(program.output()));
    QVERIFY(program.output().contains(QStringLiteral("WARNING W-AGAINST-LOST")));
    QVERIFY(program.output().contains(QStringLiteral("WARNING W-AGAINST-CHANGED")));
}

void tst_Check::rejects_areForTheirOwnerOnly()
{
    const Site site;
    damage(site);
    const QString path = site.path(QStringLiteral("back.txt"));
    TalvenhrProcess program(checkOf(site, {QStringLiteral("--rejects"), path}));
    QCOMPARE(program.finish(), 1);
    const QString text = site.readFile(QStringLiteral("back.txt"));
    QCOMPARE(text.count(QStringLiteral("# line ")), 2);
    QVERIFY(text.contains(QStringLiteral("E-TEXT-FAILS")));
    QVERIFY(text.contains(QLatin1Char('\n')
                          + Site::employee(80, QStringLiteral("O'Neill")).trimmed()
                          + QLatin1Char('\n')));
    struct stat status = {};
    QCOMPARE(::stat(qPrintable(path), &status), 0);
    QCOMPARE(status.st_mode & 0777U, 0600U);
}

void tst_Check::names_canBeHidden()
{
    const Site site;
    damage(site);
    TalvenhrProcess program(checkOf(site, {QStringLiteral("--no-names")}));
    QCOMPARE(program.finish(), 1);
    QVERIFY(!program.output().contains(QStringLiteral("Neill")));
    QVERIFY(program.output().contains(QStringLiteral("'…' breaks the statement")));
}

void tst_Check::html_showsHostileTextsAsTexts()
{
    const Site site;
    const QString hostile = QStringLiteral("<script>alert('1')</script>&\x01\u202e");
    site.writeFile(QStringLiteral("ron.data"), Site::employee(80, hostile));
    const QString path = site.path(QStringLiteral("check.html"));
    TalvenhrProcess program(checkOf(site, {QStringLiteral("--html"), path}));
    QCOMPARE(program.finish(), 1);
    const QString page = site.readFile(QStringLiteral("check.html"));
    QVERIFY(page.contains(QStringLiteral("&lt;script&gt;alert(")));
    QVERIFY(!page.contains(QStringLiteral("<script")));
    QVERIFY(!page.contains(QRegularExpression(QStringLiteral("(src|href)=|url\\("))));
    // As XML it has no unclosed element, and no character that none may hold.
    QXmlStreamReader reader(page);
    while (!reader.atEnd())
        reader.readNext();
    QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
}

void tst_Check::outputs_replaceNothingThatIsRead()
{
    const Site site;
    const QString before = site.readFile(QStringLiteral("ron.data"));
    const QString settings = site.path(QStringLiteral("TalvenHR.ini"));
    for (const QString &output : {site.exportFile(), settings}) {
        for (const char *option : {"--html", "--rejects"}) {
            TalvenhrProcess program(checkOf(site, {QLatin1String(option), output}));
            QCOMPARE(program.finish(), 2);
            QVERIFY2(program.lastLine().contains(QStringLiteral("is read, and would be lost")),
                     qPrintable(program.lastLine()));
        }
    }
    QCOMPARE(site.readFile(QStringLiteral("ron.data")), before);
}

void tst_Check::outputs_replaceRegularFilesOnly()
{
    const Site site;
    const QString pipe = site.path(QStringLiteral("pipe"));
    QCOMPARE(::mkfifo(qPrintable(pipe), 0600), 0);
    TalvenhrProcess program(checkOf(site, {QStringLiteral("--html"), pipe}));
    QCOMPARE(program.finish(), 2);
    QVERIFY(program.lastLine().endsWith(QStringLiteral("it is no regular file")));
    TalvenhrProcess onFolder(checkOf(site, {QStringLiteral("--rejects"), site.dataDir()}));
    QCOMPARE(onFolder.finish(), 2);
    QVERIFY(onFolder.lastLine().endsWith(QStringLiteral("it is a folder")));
}

void tst_Check::fullDisk_leavesTheOldFile()
{
    QVERIFY2(disk.failure().isEmpty(), qPrintable(disk.failure()));
    const Site site;
    damage(site);
    const QString path = diskPath() + QStringLiteral("/check.html");
    QFile old(path);
    QVERIFY(old.open(QIODevice::WriteOnly) && old.write("old") == 3);
    old.close();
    QVERIFY(disk.fillUpTo(4));
    TalvenhrProcess program(checkOf(site, {QStringLiteral("--html"), path}));
    QCOMPARE(program.finish(), 2);
    QVERIFY2(program.lastLine().endsWith(QStringLiteral("No space left on device")),
             qPrintable(program.lastLine()));
    QVERIFY(old.open(QIODevice::ReadOnly));
    QCOMPARE(old.readAll(), QByteArray("old"));
}

void tst_Check::whatIsNoExport_isNamed_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::newRow("missing") << "nothing.data"
                             << "there is no file";
    QTest::newRow("folder") << "."
                            << "is a folder, not a file";
}

void tst_Check::whatIsNoExport_isNamed()
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    const Site site;
    TalvenhrProcess program({QStringLiteral("check"), site.path(name)});
    QCOMPARE(program.finish(), 2);
    QVERIFY2(program.lastLine().contains(text), qPrintable(program.lastLine()));
    QCOMPARE(program.output(), QString());
}

void tst_Check::settingsOfStates_areTried()
{
    Site site;
    site.writeFile(QStringLiteral("TalvenHR.ini"),
                   site.readFile(QStringLiteral("TalvenHR.ini"))
                       + QStringLiteral("\n[MES]\n0=o'clock\n"));
    TalvenhrProcess program(checkOf(site, {QStringLiteral("--json")}));
    program.finish();
    const QJsonArray findings = jsonOf(&program).value(QStringLiteral("findings")).toArray();
    QVERIFY(!findings.isEmpty());
    QCOMPARE(findings.first()[QLatin1String("code")].toString(), QStringLiteral("E-TEXT-STATE"));
    QVERIFY(findings.first()[QLatin1String("text")].toString().startsWith(
        QStringLiteral("the text of state 0 in [MES] of TalvenHR.ini, 'o'clock', breaks")));
    QCOMPARE(findings.size(), 1);
}

QTEST_GUILESS_MAIN(tst_Check)
#include "tst_check.moc"
