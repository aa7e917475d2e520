// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The export file: finding, reading and removing it, and which of its lines become records.
#include "support/localseconds.h"
#include "support/loglevels.h"
#include "support/unprivileged.h"
#include "support/workerfixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const char enter[] = "debug THRWorker::loadAndParseData()";
const char fieldNames[]
    = "debug THRWorker::loadAndParseData() - fields: OsobniCislo, PoradoveCisloPP, Titul, Jmeno, "
      "Prijmeni, TitulZa, Telefon, DatumNastupu, DatumVystupu, Stredisko, StrediskoPopis, Kalendar, "
      "KalendarPlatnostOd, TypPracovnihoPomeru, StavPracovnihoPomeru, EvidencniStav, "
      "DovolenaZustatek, NadrizenyOsobniCislo";
const char readForce[]
    = "sql exec SELECT value FROM vars WHERE name='OQS.THRWorker.forceSync' LIMIT 1";

/// The 18 cells of a usable line.
QStringList cells()
{
    return lines({"1234", "1", "", "Ján", "Novák", "", "", "2015-03-01 00:00:00.000", "", "70",
                  "Sklad", "8", "", "11", "0", "0", "12.5", "99"});
}

QString lineWith(int index, const QString &cell)
{
    QStringList all = cells();
    all[index] = cell;
    return all.join(QLatin1Char('|'));
}

/// Eighteen names: only their number matters.
QStringList fields()
{
    QStringList names;
    for (int i = 0; i < 18; ++i)
        names.append(QStringLiteral("field"));
    return names;
}

void parse(WorkerFixture &f, const QString &line)
{
    f.worker.parseLine(line, fields(), QLatin1Char('|'));
}

/// An export file of exactly these bytes.
QString writeBytes(WorkerFixture &f, const QByteArray &bytes)
{
    const QString path = f.writeExport({});
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

/// "1234.1 Novák" for each record read.
QStringList people(const WorkerFixture &f)
{
    QStringList names;
    for (const EmployeeRecord &employee : f.peer.importedRecords)
        names.append(
            QStringLiteral("%1.%2 ").arg(employee.osobniCislo).arg(employee.poradoveCisloPP)
            + employee.prijmeni);
    return names;
}

QtMessageHandler handlerBefore;
QString fileToSpoil;

/// Makes reading on in a file fail as soon as a line of it is parsed: puts a descriptor that only
/// writes in place of the one that is open.
void spoilTheFile(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    handlerBefore(type, context, text);
    if (fileToSpoil.isEmpty() || !text.startsWith(QStringLiteral("THRWorker::parseLine('")))
        return;
    const int writing = open(QFile::encodeName(fileToSpoil).constData(), O_WRONLY | O_CLOEXEC);
    const QFileInfoList descriptors = QDir(QStringLiteral("/proc/self/fd"))
                                          .entryInfoList(QDir::Files | QDir::System);
    for (const QFileInfo &descriptor : descriptors) {
        const int number = descriptor.fileName().toInt();
        if (descriptor.symLinkTarget() == fileToSpoil && number != writing)
            dup2(writing, number);
    }
    close(writing);
    fileToSpoil.clear();
}

QString warningNotFound(const QString &path)
{
    return QStringLiteral("warning THRWorker::loadAndParseData() - file '") + path
        + QStringLiteral("' NOT found!");
}

QString infoLoading(const QString &path)
{
    return QStringLiteral("info THRWorker::loadAndParseData() - loading data from file: '") + path
        + QStringLiteral("'");
}

/// What comes before a file is read.
QStringList opening(int level, const QString &path)
{
    return atLevel(level,
                   QStringList {QStringLiteral("2 ") + str(enter),
                                QStringLiteral("3 ") + str(fieldNames),
                                QStringLiteral("3 ") + infoLoading(path)});
}

QString debugLine(const QString &line)
{
    return QStringLiteral("debug THRWorker::parseLine('") + line + QStringLiteral("')");
}

/// The folder of a file, open to all; with or without the right to add and remove files.
void setFolderMode(const QString &path, mode_t mode)
{
    QCOMPARE(chmod(qPrintable(QFileInfo(path).path()), mode), 0);
}

} // namespace

class tst_Import : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void loadAndParseData_logsByLevel_data() { addLevels(); }
    void loadAndParseData_logsByLevel();
    void loadAndParseData_emptyImportFileMeansRonData();
    void loadAndParseData_relativePath();
    void loadAndParseData_notARegularFile_data();
    void loadAndParseData_notARegularFile();
    void loadAndParseData_notOpened_data() { addLevels(); }
    void loadAndParseData_notOpened();
    void loadAndParseData_notRemoved_data() { addLevels(); }
    void loadAndParseData_notRemoved();
    void loadAndParseData_deleteFile_data();
    void loadAndParseData_deleteFile();
    void loadAndParseData_emptyFile();
    void loadAndParseData_asksTheTimeZoneAnew();
    void loadAndParseData_lines_data();
    void loadAndParseData_lines();
    void loadAndParseData_emptyLinesAreNotParsed();
    void loadAndParseData_lineOfAMillionCharacters();
    void loadAndParseData_manyLinesInFileOrder();
    void loadAndParseData_manyLinesAfterAnEmptyOne();
    void loadAndParseData_fileThatCannotBeReadOn();
    void loadAndParseData_appends();
    void checkSync_fileThatStaysIsSynchronisedAgain();
    void checkSync_nothingReadTouchesNothing_data();
    void checkSync_nothingReadTouchesNothing();
    void checkSync_unreadableFirstDayIsSubstituted();
    void parseLine_logsTheLineByLevel_data() { addLevels(); }
    void parseLine_logsTheLineByLevel();
    void parseLine_wrongCountIsSilentBelowLevel3_data() { addLevels(); }
    void parseLine_wrongCountIsSilentBelowLevel3();
    void parseLine_wrongCount_data();
    void parseLine_wrongCount();
    void parseLine_takesFieldsAndSeparatorAsGiven();
    void parseLine_headerIsDropped();
    void parseLine_notUsable_data();
    void parseLine_notUsable();
};

void tst_Import::loadAndParseData_logsByLevel()
{
    QFETCH(int, level);
    WorkerFixture f;
    const QString path = f.writeExport({lineWith(4, QStringLiteral("Novák"))});
    f.worker.setLogLevel(static_cast<quint8>(level));
    f.worker.loadAndParseData();
    QCOMPARE(f.log.take(),
             opening(level, path)
                 + atLevel(level,
                           {"3 debug THRWorker::parseLine('1234|1||Ján|Novák|||2015-03-01 "
                            "00:00:00.000||70|Sklad|8||11|0|0|12.5|99')"}));
    QCOMPARE(people(f), lines({"1234.1 Novák"}));
}

void tst_Import::loadAndParseData_emptyImportFileMeansRonData()
{
    WorkerFixture f;
    const QString path = f.writeExport({record().line()});
    QCOMPARE(QFileInfo(path).fileName(), QStringLiteral("ron.data"));
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(QFileInfo(path).path()));
    f.worker.setImportFile(QString());
    f.worker.setDeleteFile(true);
    f.worker.loadAndParseData();
    QCOMPARE(people(f), lines({"1234.1 Novák"}));
    QVERIFY(!QFileInfo::exists(path));

    f.worker.setLogLevel(3);
    f.worker.loadAndParseData();
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(f.log.take(),
             lines({enter, fieldNames}) + QStringList {infoLoading(path)}
                 + lines({"warning THRWorker::loadAndParseData() - file 'ron.data' NOT found!"}));
}

void tst_Import::loadAndParseData_relativePath()
{
    WorkerFixture f;
    const QString folder = QFileInfo(f.filePath(QStringLiteral("x"))).path();
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(folder));
    f.worker.setImportFile(QStringLiteral("hr/export.txt"));
    f.worker.setLogLevel(3);
    f.worker.loadAndParseData();
    QVERIFY(QDir::setCurrent(before));
    // The absolute path where the file is looked for, the configured one where it is missed.
    QCOMPARE(f.log.take(),
             lines({enter, fieldNames})
                 + QStringList {infoLoading(folder + QStringLiteral("/hr/export.txt"))}
                 + lines({"warning THRWorker::loadAndParseData() - file 'hr/export.txt' NOT "
                          "found!"}));
}

void tst_Import::loadAndParseData_notARegularFile_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<int>("level");
    for (int level = 0; level <= 3; ++level) {
        for (const char *what : {"missing", "folder", "pipe", "broken link"})
            QTest::newRow(
                qPrintable(QStringLiteral("%1, level %2").arg(QLatin1String(what)).arg(level)))
                << QString::fromLatin1(what) << level;
    }
}

void tst_Import::loadAndParseData_notARegularFile()
{
    QFETCH(QString, what);
    QFETCH(int, level);
    WorkerFixture f;
    const QString path = f.filePath(QStringLiteral("export"));
    if (what == QLatin1String("folder"))
        QVERIFY(QDir().mkdir(path));
    else if (what == QLatin1String("pipe"))
        QCOMPARE(mkfifo(qPrintable(path), 0600), 0);
    else if (what == QLatin1String("broken link"))
        QVERIFY(QFile::link(f.filePath(QStringLiteral("nowhere")), path));
    f.worker.setImportFile(path);
    f.worker.setDeleteFile(true);
    f.worker.setLogLevel(static_cast<quint8>(level));
    f.worker.loadAndParseData();

    QCOMPARE(f.log.take(),
             opening(level, path)
                 + (level > 1 ? QStringList {warningNotFound(path)} : QStringList()));
    QVERIFY(f.peer.importedRecords.isEmpty());
    // Nothing is removed.
    const QFileInfo info(path);
    QCOMPARE(info.exists() || info.isSymLink(), what != QLatin1String("missing"));
}

void tst_Import::loadAndParseData_notOpened()
{
    QFETCH(int, level);
    WorkerFixture f;
    const QString path = f.writeExport({record().line()});
    setFolderMode(path, 0777);
    QCOMPARE(chmod(qPrintable(path), 0), 0);
    f.worker.setDeleteFile(true);
    f.worker.setLogLevel(static_cast<quint8>(level));
    {
        const Unprivileged unprivileged;
        QVERIFY(unprivileged.isBound());
        f.worker.loadAndParseData();
    }
    QCOMPARE(
        f.log.take(),
        opening(level, path) << QStringLiteral("critical THRWorker::loadAndParseData() - file '")
                + path + QStringLiteral("' not opened!"));
    QVERIFY(f.peer.importedRecords.isEmpty());
    QVERIFY(QFileInfo::exists(path));
}

void tst_Import::loadAndParseData_notRemoved()
{
    QFETCH(int, level);
    WorkerFixture f;
    const QString path = f.writeExport({record().line()});
    setFolderMode(path, 0555);
    f.worker.setDeleteFile(true);
    f.worker.setLogLevel(static_cast<quint8>(level));
    {
        const Unprivileged unprivileged;
        QVERIFY(unprivileged.isBound());
        f.worker.loadAndParseData();
    }
    setFolderMode(path, 0755);
    const QStringList events = f.log.take();
    QCOMPARE(events.size(), level > 2 ? 5 : level > 1 ? 2 : 1);
    QCOMPARE(events.last(),
             QStringLiteral("warning THRWorker::loadAndParseData() - file '") + path
                 + QStringLiteral("' NOT removed!"));
    QCOMPARE(people(f), lines({"1234.1 Novák"}));
    QVERIFY(QFileInfo::exists(path));
}

void tst_Import::loadAndParseData_deleteFile_data()
{
    QTest::addColumn<bool>("deleteFile");
    QTest::newRow("kept") << false;
    QTest::newRow("removed") << true;
}

void tst_Import::loadAndParseData_deleteFile()
{
    QFETCH(bool, deleteFile);
    WorkerFixture f;
    const QString path = f.writeExport({record().line()});
    f.worker.setDeleteFile(deleteFile);
    f.worker.loadAndParseData();
    QCOMPARE(f.log.take(), QStringList());
    QCOMPARE(people(f), lines({"1234.1 Novák"}));
    QCOMPARE(QFileInfo::exists(path), !deleteFile);
}

/// The machine may have moved, or its zone have other rules, since the last reading.
void tst_Import::loadAndParseData_asksTheTimeZoneAnew()
{
    const QByteArray zone = qgetenv("TZ");
    WorkerFixture f;
    f.worker.setDeleteFile(false);
    // An hour that Bratislava skips.
    f.writeExport({lineWith(7, QStringLiteral("2024-03-31 02:30:00.000"))});
    qputenv("TZ", "Europe/Bratislava");
    f.worker.loadAndParseData();
    qputenv("TZ", "UTC");
    f.worker.loadAndParseData();
    qputenv("TZ", "Europe/Bratislava");
    f.worker.loadAndParseData();
    qputenv("TZ", zone);

    QCOMPARE(f.peer.importedRecords.size(), 3);
    QVERIFY(!f.peer.importedRecords.at(0).datumNastupu.isValid());
    QCOMPARE(f.peer.importedRecords.at(1).datumNastupu, QDate(2024, 3, 31));
    QVERIFY(!f.peer.importedRecords.at(2).datumNastupu.isValid());
}

void tst_Import::loadAndParseData_emptyFile()
{
    WorkerFixture f;
    const QString path = f.writeExport({});
    f.worker.setDeleteFile(true);
    f.worker.setLogLevel(3);
    f.worker.loadAndParseData();
    QCOMPARE(f.log.take(), lines({enter, fieldNames}) + QStringList {infoLoading(path)});
    QVERIFY(f.peer.importedRecords.isEmpty());
    QVERIFY(!QFileInfo::exists(path));
}

void tst_Import::loadAndParseData_lines_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("names");
    const QByteArray first = "1|1|||Novák|||||||||||||";
    const QByteArray second = "2|1|||Kováč|||||||||||||";
    const QStringList both = lines({"1.1 Novák", "2.1 Kováč"});
    const QByteArray nul(1, '\0');
    QTest::newRow("line feeds") << first + '\n' + second + '\n' << both;
    QTest::newRow("last line without an end") << first + '\n' + second << both;
    QTest::newRow("carriage returns and line feeds") << first + "\r\n" + second + "\r\n" << both;
    QTest::newRow("last of those without an end") << first + "\r\n" + second << both;
    QTest::newRow("carriage returns alone end nothing") << first + '\r' + second << QStringList();
    QTest::newRow("carriage return within a cell")
        << "1|1|||No\rvák|||||||||||||\n" + second << lines({"1.1 No\rvák", "2.1 Kováč"});
    QTest::newRow("white space around") << " \t" + first + " \n\v" + second + "\f \n" << both;
    QTest::newRow("empty lines") << "\n\n" + first + "\n\n\r\n" + second + "\n\n" << both;
    QTest::newRow("lines of white space") << "   \n" + first + "\n \t \n" + second + "\n  " << both;
    QTest::newRow("header") << exportHeader().toUtf8() + '\n' + first + '\n' + second << both;
    QTest::newRow("header once more at the end")
        << first + '\n' + second + '\n' + exportHeader().toUtf8() << both;
    QTest::newRow("byte order mark") << "\xEF\xBB\xBF" + first + '\n' + second + '\n' << both;
    QTest::newRow("bad line between") << first + "\n1|2|3\n" + first + "|\n|||||||||||||||||\n"
            + second + '\n' << both;
    QTest::newRow("twice the same") << first + '\n' + first + '\n'
                                    << lines({"1.1 Novák", "1.1 Novák"});
    QTest::newRow("NUL byte behind the last cell") << first + nul + "rest|of|it\n" + second + '\n'
                                                   << both;
    QTest::newRow("NUL byte within") << first.left(8) + nul + first.mid(8) + '\n' + second + '\n'
                                     << lines({"2.1 Kováč"});
    QTest::newRow("NUL byte in front") << nul + first + '\n' + second + '\n'
                                       << lines({"2.1 Kováč"});
}

void tst_Import::loadAndParseData_lines()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, names);
    WorkerFixture f;
    writeBytes(f, bytes);
    f.worker.setLogLevel(2);
    f.worker.loadAndParseData();
    QCOMPARE(people(f), names);
    // Whatever is skipped is skipped without a word.
    QCOMPARE(f.log.take(), lines({enter}));
}

void tst_Import::loadAndParseData_emptyLinesAreNotParsed()
{
    WorkerFixture f;
    writeBytes(f, "\n   \n\t\r\n  x  \r\n\n");
    f.worker.setLogLevel(3);
    f.worker.loadAndParseData();
    QCOMPARE(f.log.take().mid(3),
             lines({"debug THRWorker::parseLine('x')",
                    "warning THRWorker::parseLine() - parts count (1) <> fields count(18) - "
                    "line skipped!"}));
}

void tst_Import::loadAndParseData_lineOfAMillionCharacters()
{
    WorkerFixture f;
    const QString name(1000000, QChar(0x017E));
    f.writeExport({lineWith(4, name), record().pid(2, 1).line()});
    f.worker.loadAndParseData();
    QCOMPARE(f.peer.importedRecords.size(), 2);
    QVERIFY(f.peer.importedRecords.first().prijmeni == name);
    QCOMPARE(f.peer.importedRecords.last().osobniCislo, 2u);
}

void tst_Import::loadAndParseData_manyLinesInFileOrder()
{
    WorkerFixture f;
    QStringList file {exportHeader()};
    QStringList expected;
    for (uint number = 3000; number > 0; --number) {
        file.append(record().pid(number, 1).line());
        expected.append(QStringLiteral("%1.1 Novák").arg(number));
    }
    f.writeExport(file);
    f.worker.loadAndParseData();
    QCOMPARE(people(f), expected);
}

void tst_Import::loadAndParseData_manyLinesAfterAnEmptyOne()
{
    WorkerFixture f;
    QStringList file {QString()};
    for (uint number = 1; number <= 3000; ++number)
        file.append(record().pid(number, 1).line());
    f.writeExport(file);
    f.worker.loadAndParseData();
    QCOMPARE(f.peer.importedRecords.size(), 3000);
    QCOMPARE(people(f).first(), QStringLiteral("1.1 Novák"));
}

void tst_Import::loadAndParseData_fileThatCannotBeReadOn()
{
    WorkerFixture f;
    QStringList file;
    for (uint number = 1; number <= 3000; ++number)
        file.append(record().pid(number, 1).line());
    fileToSpoil = f.writeExport(file);
    f.worker.setLogLevel(3);
    handlerBefore = qInstallMessageHandler(spoilTheFile);
    f.worker.loadAndParseData();
    qInstallMessageHandler(handlerBefore);
    // What was read ahead counts, and no message tells of the rest.
    QVERIFY(fileToSpoil.isEmpty());
    QCOMPARE(people(f).value(0), QStringLiteral("1.1 Novák"));
    QVERIFY(f.peer.importedRecords.size() < file.size());
    QVERIFY(f.log.takeMatching({QStringLiteral("critical")}).isEmpty());
}

void tst_Import::loadAndParseData_appends()
{
    WorkerFixture f;
    f.writeExport({record().pid(1, 1).line()});
    f.worker.loadAndParseData();
    f.writeExport({record().pid(2, 1).line()});
    f.worker.loadAndParseData();
    QCOMPARE(people(f), lines({"1.1 Novák", "2.1 Novák"}));
}

void tst_Import::checkSync_fileThatStaysIsSynchronisedAgain()
{
    WorkerFixture f;
    f.init();
    f.worker.setSyncInterval(1);
    const QString path = f.writeExport({record().line()});
    setFolderMode(path, 0555);
    f.worker.setDeleteFile(true);
    {
        const Unprivileged unprivileged;
        QVERIFY(unprivileged.isBound());
        f.tick();
        f.tick();
    }
    setFolderMode(path, 0755);
    const QString notRemoved = QStringLiteral("warning THRWorker::loadAndParseData() - file '")
        + path + QStringLiteral("' NOT removed!");
    const QStringList events = f.log.take();
    QCOMPARE(events.count(notRemoved), 2);
    QCOMPARE(events.filter(QStringLiteral("FROM people p")).size(), 2);
    // The second time the record is the one that is known.
    const QStringList inserts = events.filter(QStringLiteral("INSERT INTO people "));
    QCOMPARE(inserts.size(), 1);
    QVERIFY(events.indexOf(notRemoved) < events.indexOf(inserts.first()));
}

void tst_Import::checkSync_nothingReadTouchesNothing_data()
{
    QTest::addColumn<QString>("what");
    QTest::newRow("no file") << QStringLiteral("missing");
    QTest::newRow("not opened") << QStringLiteral("locked");
    QTest::newRow("nothing usable") << QStringLiteral("header");
}

void tst_Import::checkSync_nothingReadTouchesNothing()
{
    QFETCH(QString, what);
    WorkerFixture f;
    f.init();
    const QString path = f.writeExport({exportHeader(), QStringLiteral("no record")});
    setFolderMode(path, 0777);
    if (what == QLatin1String("missing"))
        QVERIFY(QFile::remove(path));
    else if (what == QLatin1String("locked"))
        QCOMPARE(chmod(qPrintable(path), 0), 0);
    const EmployeeRecord employee = record();
    f.peer.lastRecords.insert(employee.pid(), employee);
    f.peer.waitingRecords.append(employee);
    {
        const Unprivileged unprivileged;
        QVERIFY(unprivileged.isBound());
        f.tick();
    }
    QCOMPARE(f.peer.syncCount, 1u);
    QCOMPARE(f.log.takeStatements(), lines({readForce, "sql close"}));
    QCOMPARE(f.peer.lastRecords.keys(), QList<uint> {12341});
    QCOMPARE(f.peer.waitingRecords.size(), 1);
}

void tst_Import::checkSync_unreadableFirstDayIsSubstituted()
{
    WorkerFixture f;
    f.init();
    f.writeExport({lineWith(7, QStringLiteral("1.3.2015"))});
    f.tick();
    const QStringList inserts = f.log.take().filter(QStringLiteral("INSERT INTO people "));
    QCOMPARE(inserts.size(), 1);
    QVERIFY(inserts.first().contains(
        QStringLiteral("VALUES('12341', '1234.1', '', 'Ján', 'Novák', '', '', %1, NULL, ")
            .arg(localSeconds(QDate(2000, 1, 1)))));
}

void tst_Import::parseLine_logsTheLineByLevel()
{
    QFETCH(int, level);
    WorkerFixture f;
    f.worker.setLogLevel(static_cast<quint8>(level));
    // The line is shown as it is, be it full of what printf would fill.
    const QString line = lineWith(4, QStringLiteral("100 %s %n '%1'"));
    parse(f, line);
    QCOMPARE(f.log.take(), level > 2 ? QStringList {debugLine(line)} : QStringList());
    QCOMPARE(people(f), lines({"1234.1 100 %s %n '%1'"}));
}

void tst_Import::parseLine_wrongCountIsSilentBelowLevel3()
{
    QFETCH(int, level);
    WorkerFixture f;
    f.worker.setLogLevel(static_cast<quint8>(level));
    parse(f, QStringLiteral("1234|1|bad"));
    QCOMPARE(f.log.take(),
             atLevel(level,
                     {"3 debug THRWorker::parseLine('1234|1|bad')",
                      "3 warning THRWorker::parseLine() - parts count (3) <> "
                      "fields count(18) - line skipped!"}));
    QVERIFY(f.peer.importedRecords.isEmpty());
}

void tst_Import::parseLine_wrongCount_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<int>("parts");
    const QString whole = cells().join(QLatin1Char('|'));
    QTest::newRow("17") << cells().mid(0, 17).join(QLatin1Char('|')) << 17;
    QTest::newRow("18") << whole << 18;
    QTest::newRow("19") << whole + QStringLiteral("|1") << 19;
    QTest::newRow("19, the last one empty") << whole + QStringLiteral("|") << 19;
    QTest::newRow("19, the first one empty") << QStringLiteral("|") + whole << 19;
    QTest::newRow("bar in the title") << lineWith(2, QStringLiteral("Ing.|Mgr.")) << 19;
    QTest::newRow("bar in quotes") << lineWith(2, QStringLiteral("\"Ing.|Mgr.\"")) << 19;
    QTest::newRow("bar behind a backslash") << lineWith(2, QStringLiteral("Ing.\\|Mgr.")) << 19;
    QTest::newRow("another separator") << cells().join(QLatin1Char(';')) << 1;
}

void tst_Import::parseLine_wrongCount()
{
    QFETCH(QString, line);
    QFETCH(int, parts);
    WorkerFixture f;
    f.worker.setLogLevel(3);
    parse(f, line);
    QStringList expected {debugLine(line)};
    if (parts != 18)
        expected += QStringLiteral("warning THRWorker::parseLine() - parts count (%1) <> "
                                   "fields count(18) - line skipped!")
                        .arg(parts);
    QCOMPARE(f.log.take(), expected);
    QCOMPARE(f.peer.importedRecords.size(), parts == 18 ? 1 : 0);
}

void tst_Import::parseLine_takesFieldsAndSeparatorAsGiven()
{
    WorkerFixture f;
    f.worker.parseLine(cells().join(QLatin1Char(';')), fields(), QLatin1Char(';'));
    QCOMPARE(people(f), lines({"1234.1 Novák"}));

    f.worker.setLogLevel(3);
    f.worker.parseLine(QStringLiteral("1,2,3,4"), lines({"a", "b"}), QLatin1Char(','));
    QCOMPARE(f.log.take(),
             lines({"debug THRWorker::parseLine('1,2,3,4')",
                    "warning THRWorker::parseLine() - parts count (4) <> fields count(2) - "
                    "line skipped!"}));
}

void tst_Import::parseLine_headerIsDropped()
{
    WorkerFixture f;
    f.worker.setLogLevel(3);
    parse(f, exportHeader());
    QCOMPARE(f.log.take(), QStringList {debugLine(exportHeader())});
    QVERIFY(f.peer.importedRecords.isEmpty());
}

void tst_Import::parseLine_notUsable_data()
{
    QTest::addColumn<QString>("line");
    QTest::newRow("personal number 0") << lineWith(0, QStringLiteral("0"));
    QTest::newRow("personal number unreadable") << lineWith(0, QStringLiteral("12a"));
    QTest::newRow("personal number beyond 32 bits") << lineWith(0, QStringLiteral("4294967296"));
    QTest::newRow("no personal number") << lineWith(0, QString());
    QTest::newRow("ordinal 0") << lineWith(1, QStringLiteral("0"));
    QTest::newRow("ordinal below 0") << lineWith(1, QStringLiteral("-1"));
    QTest::newRow("no ordinal") << lineWith(1, QString());
    QTest::newRow("no names") << QStringLiteral("1234|1||||||||||||||||");
    QTest::newRow("nothing at all") << QStringLiteral("|||||||||||||||||");
}

void tst_Import::parseLine_notUsable()
{
    QFETCH(QString, line);
    WorkerFixture f;
    f.worker.setLogLevel(3);
    parse(f, line);
    QCOMPARE(f.log.take(), QStringList {debugLine(line)});
    QVERIFY(f.peer.importedRecords.isEmpty());
}

QTEST_GUILESS_MAIN(tst_Import)
#include "tst_import.moc"
