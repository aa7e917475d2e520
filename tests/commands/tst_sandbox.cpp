// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr sandbox`: what it makes, and that it works as its page says.
#include "support/commands/talvenhrprocess.h"
#include "support/patience.h"

#include <QDate>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

class tst_Sandbox : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void folder_isForItsOwnerOnly();
    void exports_endWithToday();
    void passes_takeOneDayEach();
    void page_worksAsItStands();
    void hrSystem_keepsTheLastDay();
    void usedFolderIsRefused();
    void halfMadeFolderIsMadeAnew();
    void folderInTheMakingIsRefused();
    void anyFolderNameWorks_andASeedOfItsOwn();
    void optionsAreChecked();

private:
    static QStringList sandbox(const QString &folder, const QStringList &others = {});
    QStringList run(const QString &folder, const QStringList &length) const;
    QString path(const QString &name) const { return folder.filePath(name); }
    QString readFile(const QString &name) const;
    int shell(const QString &command) const;

    QTemporaryDir folder {QStringLiteral("/tmp/talven-XXXXXX")};
};

QStringList tst_Sandbox::sandbox(const QString &folder, const QStringList &others)
{
    return QStringList {QStringLiteral("sandbox"),  folder,
                        QStringLiteral("--people"), QStringLiteral("30"),
                        QStringLiteral("--days"),   QStringLiteral("4")}
    + others;
}

QStringList tst_Sandbox::run(const QString &dataDir, const QStringList &length) const
{
    return QStringList {QStringLiteral("run"), QStringLiteral("--data-dir"), dataDir,
                        QStringLiteral("--private-db"), dataDir + QStringLiteral("/db")}
    + length;
}

QString tst_Sandbox::readFile(const QString &name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// The exit code.
int tst_Sandbox::shell(const QString &command) const
{
    QProcess process;
    process.start(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), command});
    return process.waitForFinished(longestWait) ? process.exitCode() : -1;
}

void tst_Sandbox::initTestCase()
{
    TalvenhrProcess program(sandbox(path(QStringLiteral("company"))));
    QCOMPARE(program.finish(), 0);
    QCOMPARE(program.lines(), QStringList());
    QVERIFY(program.output().startsWith(
        QStringLiteral("A company of 30 people and 4 days of its life lie in '%1'.")
            .arg(path(QStringLiteral("company")))));
}

void tst_Sandbox::folder_isForItsOwnerOnly()
{
    const QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup
        | QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    const QStringList names {QString(),
                             QStringLiteral("/db"),
                             QStringLiteral("/exports"),
                             QStringLiteral("/TalvenHR.ini"),
                             QStringLiteral("/hr-system.sh"),
                             QStringLiteral("/life.txt"),
                             QStringLiteral("/night.sql"),
                             QStringLiteral("/TRY.md")};
    for (const QString &name : names) {
        const QFileInfo info(path(QStringLiteral("company")) + name);
        QVERIFY2(info.exists(), qPrintable(name));
        QCOMPARE(info.permissions() & others, QFile::Permissions());
    }
    QCOMPARE(QDir(path(QStringLiteral("company"))).count(), uint(names.size() - 1 + 2));
}

void tst_Sandbox::exports_endWithToday()
{
    const QDir exports(path(QStringLiteral("company/exports")));
    const QStringList names = exports.entryList(QDir::Files, QDir::Name);
    QCOMPARE(names.size(), 4);
    const QDate today = QDate::currentDate();
    QCOMPARE(names.last(), today.toString(Qt::ISODate) + QStringLiteral(".data"));
    for (int back = 3; back >= 0; --back)
        QVERIFY(readFile(QStringLiteral("company/life.txt"))
                    .contains(today.addDays(-back).toString(Qt::ISODate) + QLatin1Char('\n')));
    QFileInfo export_(exports.filePath(names.last()));
    QCOMPARE(export_.permissions() & QFile::ReadGroup, QFile::Permissions());
}

/// The first export says what the database holds; the plugin removes what it has read.
void tst_Sandbox::passes_takeOneDayEach()
{
    TalvenhrProcess program(
        run(path(QStringLiteral("company")), {QStringLiteral("--passes"), QStringLiteral("3")}));
    QCOMPARE(program.finish(), 0);
    QVERIFY2(program.lastLine().contains(QStringLiteral(" 0 warnings, 0 errors, 0 waiting")),
             qPrintable(program.lastLine()));
    QVERIFY(program.lastLine().startsWith(QStringLiteral("talvenhr: 3 passes, ")));
    QCOMPARE(readFile(QStringLiteral("company/last-export")),
             QStringLiteral("exports/%1.data\n")
                 .arg(QDate::currentDate().addDays(-1).toString(Qt::ISODate)));
    QVERIFY(!QFile::exists(path(QStringLiteral("company/ron.data"))));
}

/// Each command of the page, in its order; the broken line is an error, as it tells.
void tst_Sandbox::page_worksAsItStands()
{
    const QString page = readFile(QStringLiteral("company/TRY.md"));
    const QStringList sections = page.split(QStringLiteral("\n## ")).mid(1);
    QCOMPARE(sections.size(), 6);
    for (const QString &section : sections) {
        const QString command = section.section(QStringLiteral("```"), 1, 1)
                                    .section(QLatin1Char('\n'), 1);
        QVERIFY2(!command.isEmpty(), qPrintable(section));
        const int expected = section.startsWith(QLatin1String("Break a line")) ? 1 : 0;
        const QByteArray place = section.section(QLatin1Char('\n'), 0, 0).toUtf8();
        QVERIFY2(shell(command) == expected, place.constData());
    }
    QVERIFY(!QFile::exists(path(QStringLiteral("company/last-export"))));
}

void tst_Sandbox::hrSystem_keepsTheLastDay()
{
    for (int call = 1; call <= 5; ++call) {
        QCOMPARE(shell(path(QStringLiteral("company/hr-system.sh"))), 0);
        const QString last = readFile(QStringLiteral("company/last-export"));
        QVERIFY2(
            last.contains(QDate::currentDate().addDays(qMin(call, 4) - 4).toString(Qt::ISODate)),
            qPrintable(last));
        QCOMPARE(readFile(QStringLiteral("company/ron.data")),
                 readFile(QStringLiteral("company/") + last.trimmed()));
    }
}

void tst_Sandbox::usedFolderIsRefused()
{
    const QString used = path(QStringLiteral("company"));
    const QStringList before = QDir(used).entryList();
    TalvenhrProcess program(sandbox(used));
    QCOMPARE(program.finish(), 2);
    QCOMPARE(program.lines(),
             QStringList(QStringLiteral("talvenhr: '%1' holds files already; name an empty or a "
                                        "new folder")
                             .arg(used)));
    QCOMPARE(QDir(used).entryList(), before);

    TalvenhrProcess file(sandbox(used + QStringLiteral("/TRY.md")));
    QCOMPARE(file.finish(), 2);
    QVERIFY(file.lastLine().endsWith(QStringLiteral("/TRY.md' is not a folder")));
}

/// Killed when the data are there and the company is not.
void tst_Sandbox::halfMadeFolderIsMadeAnew()
{
    const QString half = path(QStringLiteral("half"));
    TalvenhrProcess killed(sandbox(half));
    killed.start();
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(half + QStringLiteral("/db/data.complete")),
                             longestWait);
    killed.sendSignal(SIGKILL);
    QCOMPARE(killed.finish(), -1);
    QVERIFY(QFile::exists(half + QStringLiteral("/sandbox.unfinished")));
    QVERIFY(!QFile::exists(half + QStringLiteral("/TRY.md")));

    TalvenhrProcess program(sandbox(half, {QStringLiteral("--seed"), QStringLiteral("3")}));
    QVERIFY2(program.finish() == 0, qPrintable(program.lastLine()));
    QVERIFY(!QFile::exists(half + QStringLiteral("/sandbox.unfinished")));
    QVERIFY(!QFile::exists(half + QStringLiteral("/sandbox.lock")));
    TalvenhrProcess pass(run(half, {QStringLiteral("--once")}));
    QCOMPARE(pass.finish(), 0);
    QVERIFY2(pass.lastLine().contains(QStringLiteral(" 0 persons added, ")),
             qPrintable(pass.lastLine()));
}

void tst_Sandbox::folderInTheMakingIsRefused()
{
    const QString folderName = path(QStringLiteral("making"));
    QVERIFY(QDir().mkpath(folderName));
    QFile mark(folderName + QStringLiteral("/sandbox.unfinished"));
    QVERIFY(mark.open(QIODevice::WriteOnly));
    QLockFile lock(folderName + QStringLiteral("/sandbox.lock"));
    QVERIFY(lock.tryLock(0));
    TalvenhrProcess program(sandbox(folderName));
    QCOMPARE(program.finish(), 2);
    QVERIFY2(program.lastLine().contains(QStringLiteral("is being made by another process")),
             qPrintable(program.lastLine()));
}

/// Quotes, letters, and what has a meaning in INI files and shells.
void tst_Sandbox::anyFolderNameWorks_andASeedOfItsOwn()
{
    const QString name = QStringLiteral("a\"b\"ľ,š$x's");
    TalvenhrProcess program(sandbox(path(name), {QStringLiteral("--seed"), QStringLiteral("2")}));
    QCOMPARE(program.finish(), 0);
    TalvenhrProcess pass(run(path(name), {QStringLiteral("--once")}));
    QCOMPARE(pass.finish(), 0);
    QVERIFY2(pass.lastLine().startsWith(QStringLiteral("talvenhr: 1 pass, ")),
             qPrintable(pass.lastLine()));
    QVERIFY(!pass.lastLine().contains(QStringLiteral(" 0 records")));
    const QString page = readFile(name + QStringLiteral("/TRY.md"));
    const QString look = page.section(QStringLiteral("```sh\n"), 2, 2)
                             .section(QStringLiteral("\n```"), 0, 0);
    QVERIFY(look.contains(QStringLiteral(" sql ")));
    QCOMPARE(shell(look), 0);

    // Another seed, other people.
    const QString first = QStringLiteral("/exports/%1.data")
                              .arg(QDate::currentDate().addDays(-3).toString(Qt::ISODate));
    QVERIFY(readFile(name + first).count(QLatin1Char('\n')) >= 30);
    QVERIFY(readFile(name + first) != readFile(QStringLiteral("company") + first));
}

void tst_Sandbox::optionsAreChecked()
{
    const QStringList wrong[] = {{QStringLiteral("--people"), QStringLiteral("0")},
                                 {QStringLiteral("--people"), QStringLiteral("100001")},
                                 {QStringLiteral("--days"), QStringLiteral("1001")},
                                 {QStringLiteral("--seed"), QStringLiteral("-1")}};
    for (const QStringList &options : wrong) {
        TalvenhrProcess program(
            QStringList {QStringLiteral("sandbox"), path(QStringLiteral("none"))} + options);
        QCOMPARE(program.finish(), 2);
        QVERIFY2(program.lastLine().contains(options.first() + QStringLiteral(" takes")),
                 qPrintable(program.lastLine()));
    }
    QVERIFY(!QFileInfo::exists(path(QStringLiteral("none"))));
}

QTEST_GUILESS_MAIN(tst_Sandbox)
#include "tst_sandbox.moc"
