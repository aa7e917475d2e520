// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What an installation holds, by components, and what its files tell of the build.
#include "support/eventlog.h"
#include "support/package/installation.h"

#include <QtTest>

#include <memory>

namespace {

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The text as a file may hold it: as bytes, and as QStringLiteral stores it.
bool holds(const QByteArray &bytes, const QString &text)
{
    const QByteArray wide(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
    return bytes.contains(text.toUtf8()) || bytes.contains(wide);
}

/// The beginnings of the names below which each component has its files, and how many there are.
QStringList places(const QString &component)
{
    QStringList found;
    const QStringList files = Installation(component).files();
    for (const QString &file : files) {
        // What follows lib is the machine's, such as x86_64-linux-gnu.
        QString place = QString(file).replace(
            QRegularExpression(QStringLiteral("^lib/[^/]*-linux-[^/]*/")), QStringLiteral("lib/"));
        place = place.section(QLatin1Char('/'), 0, 2);
        if (!found.contains(place))
            found.append(place);
    }
    return found;
}

} // namespace

class tst_Installation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void components_haveTheirFiles_data();
    void components_haveTheirFiles();
    void components_areTheWhole();
    void program_findsItsPlugin();
    void files_doNotTellWhereTheyWereBuilt_data();
    void files_doNotTellWhereTheyWereBuilt();
    void files_searchNoFolder_data();
    void files_searchNoFolder();
    void files_areHardened_data();
    void files_areHardened();
    void windowsResource_compiles();
    void configure_needsNoBenchmarks();

private:
    std::unique_ptr<Installation> installation;
};

void tst_Installation::initTestCase()
{
    installation = std::make_unique<Installation>();
}

void tst_Installation::components_haveTheirFiles_data()
{
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("runtime") << lines({"bin/talvenhr", "lib/talvenhr/libTalvenHR.so",
                                       "share/man/man1", "share/talvenhr/database"});
    QTest::newRow("development") << lines({"include/talvenhr/plugin", "include/talvenhr/repository",
                                           "lib/cmake/TalvenHR", "lib/libtalvenhr_core.a"});
    QTest::newRow("documents") << lines({"share/doc/TalvenHR"});
}

void tst_Installation::components_haveTheirFiles()
{
    QFETCH(QStringList, expected);
    QCOMPARE(places(QString::fromLatin1(QTest::currentDataTag())), expected);
}

/// And what each of them is needed for is there by name.
void tst_Installation::components_areTheWhole()
{
    QStringList files;
    for (const char *component : {"runtime", "development", "documents"})
        files += Installation(QString::fromLatin1(component)).files();
    files.sort();
    QCOMPARE(files, installation->files());

    for (const char *file :
         {"include/talvenhr/plugin/serverinterface.h", "include/talvenhr/plugin/verinfointerface.h",
          "include/talvenhr/repository/branchesrepository.h",
          "include/talvenhr/repository/branchrecord.h", "include/talvenhr/repository/groupsplan.h",
          "include/talvenhr/repository/groupsplanrepo.h",
          "include/talvenhr/repository/orvdbsettings.h",
          "include/talvenhr/repository/termsyncrepository.h",
          "share/doc/TalvenHR/examples/host/main.cpp", "share/doc/TalvenHR/examples/hooks/mail.py",
          "share/doc/TalvenHR/docs/hosts.md", "share/doc/TalvenHR/README.md",
          "share/man/man1/talvenhr.1", "share/talvenhr/database/grants/plugin.sql",
          "share/talvenhr/database/grants/undo.sql"})
        QVERIFY2(files.contains(QString::fromLatin1(file)), file);
}

void tst_Installation::program_findsItsPlugin()
{
    const QString info = outputOf(installation->program(), {QStringLiteral("info")});
    QVERIFY2(info.contains(installation->plugin()), qPrintable(info));
}

void tst_Installation::files_doNotTellWhereTheyWereBuilt_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("program") << installation->program();
    QTest::newRow("plugin") << installation->plugin();
    QTest::newRow("library") << installation->library();
}

void tst_Installation::files_doNotTellWhereTheyWereBuilt()
{
    QFETCH(QString, file);
    const QByteArray bytes = contents(file);
    // What is there is found.
    QVERIFY(holds(bytes, QStringLiteral("TalvenHR")));
    QVERIFY(!holds(bytes, QStringLiteral(TALVENHR_SOURCE_FOLDER)));
    QVERIFY(!holds(bytes, QStringLiteral(TALVENHR_BUILD_FOLDER)));
}

void tst_Installation::files_searchNoFolder_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("program") << installation->program();
    QTest::newRow("plugin") << installation->plugin();
}

void tst_Installation::files_searchNoFolder()
{
    QFETCH(QString, file);
    const QString dynamic = outputOf(QStringLiteral("readelf"), {QStringLiteral("-Wd"), file});
    QVERIFY(dynamic.contains(QStringLiteral("libQt5Sql.so.5")));
    QVERIFY2(!dynamic.contains(QStringLiteral("PATH)")), qPrintable(dynamic));
}

void tst_Installation::files_areHardened_data()
{
    files_searchNoFolder_data();
}

void tst_Installation::files_areHardened()
{
    QFETCH(QString, file);
    if (!TALVENHR_IS_HARDENED)
        QSKIP("not built with TALVENHR_HARDEN", );
    const QString said = outputOf(QStringLiteral("readelf"), {QStringLiteral("-Whld"), file});
    const auto says = [&said](const char *pattern) {
        return said.contains(
            QRegularExpression(QString::fromLatin1(pattern), QRegularExpression::MultilineOption));
    };
    QVERIFY(says("^ +Type: +DYN "));
    QVERIFY(says("^ +GNU_RELRO "));
    QVERIFY(says("\\(FLAGS_1\\) .*\\bNOW\\b"));
    QVERIFY(says("^ +GNU_STACK .* RW +0x"));
    QString symbols = outputOf(QStringLiteral("readelf"),
                               {QStringLiteral("-W"), QStringLiteral("--dyn-syms"), file});
    const QString stackCheck = QStringLiteral("__stack_chk_fail");
    QVERIFY(symbols.contains(stackCheck));
    // The plugin calls nothing that has a checked form.
    if (file == installation->program())
        QVERIFY2(symbols.remove(stackCheck).contains(QStringLiteral("_chk")), qPrintable(symbols));
}

/// No build of this system has it compiled otherwise.
void tst_Installation::windowsResource_compiles()
{
    const QString resource = installation->path(QStringLiteral("talvenhr.res"));
    const QString windres = QStringLiteral("x86_64-w64-mingw32-windres");
    outputOf(windres,
             {QStringLiteral("--preprocessor=" TALVENHR_CXX),
              QStringLiteral("--preprocessor-arg=-E"), QStringLiteral("--preprocessor-arg=-xc"),
              QStringLiteral("-O"), QStringLiteral("coff"),
              QStringLiteral(TALVENHR_BUILD_FOLDER "/src/talvenhr.rc"), resource});
    const QString said = outputOf(windres,
                                  {QStringLiteral("-J"), QStringLiteral("coff"),
                                   QStringLiteral("-O"), QStringLiteral("rc"), resource});
    QVERIFY2(said.contains(QStringLiteral("\"FileVersion\", \"" TALVENHR_VERSION "\"")),
             qPrintable(said));
    QVERIFY2(said.contains(QStringLiteral("\"OriginalFilename\", \"TalvenHR.dll\"")),
             qPrintable(said));
}

void tst_Installation::configure_needsNoBenchmarks()
{
    outputOf(QStringLiteral(TALVENHR_CMAKE),
             {QStringLiteral("-G"), QStringLiteral(TALVENHR_GENERATOR), QStringLiteral("-S"),
              QStringLiteral(TALVENHR_SOURCE_FOLDER), QStringLiteral("-B"),
              installation->path(QStringLiteral("plain-build")),
              QStringLiteral("-DCMAKE_DISABLE_FIND_PACKAGE_benchmark=ON"),
              QStringLiteral("-DCMAKE_CXX_COMPILER=" TALVENHR_CXX)});
}

QTEST_GUILESS_MAIN(tst_Installation)
#include "tst_installation.moc"
