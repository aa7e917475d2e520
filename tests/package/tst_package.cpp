// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The installed package: what is in it, and a program of somebody else's that is built with it.
#include "support/testdatabase.h"

#include <QFileInfo>
#include <QProcess>
#include <QtTest>

class tst_Package : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void install_putsEverythingInItsPlace();
    void example_buildsAgainstThePackageAndRuns();

private:
    QString run(const QString &program, const QStringList &arguments);
    QString installed(const QString &path) const { return folder.filePath(path); }

    QTemporaryDir folder;
    QScopedPointer<TestDatabase> database;
};

void tst_Package::initTestCase()
{
    database.reset(new TestDatabase(TestDatabase::Sample));
    QVERIFY2(database->error().isEmpty(), qPrintable(database->error()));
    run(QStringLiteral(TALVENHR_CMAKE),
        {QStringLiteral("--install"), QStringLiteral(TALVENHR_BUILD_FOLDER),
         QStringLiteral("--prefix"), folder.path()});
}

void tst_Package::cleanupTestCase()
{
    database.reset();
}

void tst_Package::install_putsEverythingInItsPlace()
{
    QVERIFY(QFileInfo(installed(QStringLiteral("bin/talvenhr"))).isExecutable());
    const QStringList files {QStringLiteral("include/talvenhr/plugin/serverinterface.h"),
                             QStringLiteral("include/talvenhr/plugin/verinfointerface.h"),
                             QStringLiteral("include/talvenhr/repository/branchesrepository.h"),
                             QStringLiteral("include/talvenhr/repository/branchrecord.h"),
                             QStringLiteral("include/talvenhr/repository/groupsplan.h"),
                             QStringLiteral("include/talvenhr/repository/groupsplanrepo.h"),
                             QStringLiteral("include/talvenhr/repository/orvdbsettings.h"),
                             QStringLiteral("include/talvenhr/repository/termsyncrepository.h"),
                             QStringLiteral("share/doc/TalvenHR/docs/oddities.md"),
                             QStringLiteral("share/talvenhr/database/grants/plugin.sql"),
                             QStringLiteral("share/doc/TalvenHR/README.md")};
    for (const QString &file : files)
        QVERIFY2(QFileInfo(installed(file)).isFile(), qPrintable(file));

    // The installed program finds the installed plugin.
    const QString info = run(installed(QStringLiteral("bin/talvenhr")), {QStringLiteral("info")});
    QVERIFY2(info.contains(installed(QStringLiteral("lib"))), qPrintable(info));
}

void tst_Package::example_buildsAgainstThePackageAndRuns()
{
    const QString build = folder.filePath(QStringLiteral("examples-build"));
    run(QStringLiteral(TALVENHR_CMAKE),
        {QStringLiteral("-G"), QStringLiteral(TALVENHR_GENERATOR), QStringLiteral("-S"),
         QStringLiteral(TALVENHR_EXAMPLES_FOLDER), QStringLiteral("-B"), build,
         QStringLiteral("-DCMAKE_PREFIX_PATH=") + folder.path(),
         QStringLiteral("-DCMAKE_CXX_COMPILER=" TALVENHR_CXX)});
    run(QStringLiteral(TALVENHR_CMAKE), {QStringLiteral("--build"), build});

    const QString said = run(build + QStringLiteral("/open_branch"),
                             {database->server().socketPath(), database->databaseName(),
                              QStringLiteral("talvenhr"), QStringLiteral("500"),
                              QStringLiteral("Nová pobočka"), QStringLiteral("8"),
                              QStringLiteral("2,4"), QStringLiteral("1,13,99")});
    const QString bid = database->value(
        QStringLiteral("SELECT bid FROM branches WHERE number = 500"));
    const QString month = QDate::currentDate().toString(QStringLiteral("yyyyMM"));
    QCOMPARE(said,
             QStringLiteral("Branch 500 has bid %1, 1 terminals in service, 2 administrators, "
                            "2 people, from month %2 on.\n")
                 .arg(bid, month));

    // Person 99 is unknown and no member; what follows takes the list as it was given, and only the
    // notice to the terminal looks again.
    QCOMPARE(database->rows(
                 QStringLiteral("SELECT uid FROM brape WHERE bid = %1 ORDER BY uid").arg(bid)),
             (QStringList {QStringLiteral("1"), QStringLiteral("13")}));
    QCOMPARE(
        database->rows(QStringLiteral("SELECT uid FROM people_term WHERE tid = 8 ORDER BY uid")),
        (QStringList {QStringLiteral("1"), QStringLiteral("13"), QStringLiteral("99")}));
    QCOMPARE(
        database->rows(QStringLiteral(
            "SELECT aid, uid FROM admins_people WHERE uid = 13 AND aid IN (2, 4) ORDER BY aid")),
        (QStringList {QStringLiteral("2|13"), QStringLiteral("4|13")}));
    QCOMPARE(
        database->rows(QStringLiteral("SELECT type, ref, ref_id, flags FROM term_sync "
                                      "WHERE tid = 8 ORDER BY ref_id")),
        (QStringList {QStringLiteral("I|people_term|1|2"), QStringLiteral("I|people_term|13|2")}));
    QCOMPARE(database->value(QStringLiteral("SELECT syn FROM term WHERE tid = 8")),
             QStringLiteral("2"));
}

/// What the program said; a failure fails the test.
QString tst_Package::run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished(-1);
    const QByteArray output = process.readAllStandardOutput();
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        QTest::qFail((program.toLocal8Bit() + ' ' + arguments.join(QLatin1Char(' ')).toLocal8Bit()
                      + '\n' + output + process.readAllStandardError())
                         .constData(),
                     __FILE__, __LINE__);
    return QString::fromLocal8Bit(output);
}

QTEST_GUILESS_MAIN(tst_Package)
#include "tst_package.moc"
