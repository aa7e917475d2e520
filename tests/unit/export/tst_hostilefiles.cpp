// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Export files that nobody should leave behind: odd, huge, changing while they are read.
//
// What is tested elsewhere:
//
// - an empty file: tst_Import::loadAndParseData_emptyFile;
// - a directory, a pipe, a link to nothing: tst_Import::loadAndParseData_notARegularFile;
// - a file that may not be read, or not removed: tst_Import::loadAndParseData_notOpened and
//   loadAndParseData_notRemoved;
// - carriage returns, NUL bytes, a byte order mark in front, white space, bad lines:
//   tst_Import::loadAndParseData_lines;
// - wrong numbers of cells: tst_Import::parseLine_wrongCount;
// - numbers and dates cell by cell: tst_ImportCells;
// - numbers, dates and texts in statements: tst_HostileTexts.
#include "support/workerfixture.h"

#include <QFile>
#include <QtTest>

#include <functional>
#include <unistd.h>

namespace {

/// More than any reader buffers.
const uint manyPeople = 5000;

/// What is to happen as soon as the first line is parsed; the log shows it at level 3.
std::function<void()> onFirstLine;

void actOnFirstLine(QtMsgType, const QMessageLogContext &, const QString &text)
{
    if (!onFirstLine || !text.startsWith(QLatin1String("THRWorker::parseLine('")))
        return;
    const std::function<void()> act = onFirstLine;
    onFirstLine = nullptr;
    act();
}

/// Reads the file at level 3 and drops the log lines but the warnings about the file.
QStringList readWhile(WorkerFixture &f, const std::function<void()> &act)
{
    static QStringList warnings;
    warnings.clear();
    onFirstLine = act;
    f.worker.setLogLevel(3);
    const QtMessageHandler log = qInstallMessageHandler(
        [](QtMsgType type, const QMessageLogContext &context, const QString &text) {
            actOnFirstLine(type, context, text);
            if (type == QtWarningMsg && text.contains(QLatin1String(" - file '")))
                warnings.append(text);
        });
    f.worker.loadAndParseData();
    qInstallMessageHandler(log);
    return warnings;
}

QByteArray lineOf(uint number)
{
    return record().pid(number, 1).line().toUtf8() + '\n';
}

QByteArray linesOf(uint count)
{
    QByteArray bytes;
    for (uint number = 1; number <= count; ++number)
        bytes += lineOf(number);
    return bytes;
}

void write(const QString &path, const QByteArray &bytes,
           QIODevice::OpenMode mode = QIODevice::WriteOnly)
{
    QFile file(path);
    if (!file.open(mode) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
}

/// An export file of these bytes, which the worker is told of.
QString writeBytes(WorkerFixture &f, const QByteArray &bytes)
{
    const QString path = f.writeExport({});
    write(path, bytes);
    return path;
}

/// The records are the first so many people in their order.
bool areTheFirst(const QVector<EmployeeRecord> &records, uint count)
{
    for (uint i = 0; i < count; ++i) {
        if (records.value(static_cast<int>(i)).osobniCislo != i + 1)
            return false;
    }
    return records.size() == static_cast<int>(count);
}

QString notRemoved(const QString &path)
{
    return QStringLiteral("THRWorker::loadAndParseData() - file '") + path
        + QStringLiteral("' NOT removed!");
}

/// The surname of the only record of a file with these bytes in the place of the surname.
QString surnameOf(const QByteArray &bytes)
{
    WorkerFixture f;
    writeBytes(f, "1|1|||" + bytes + "|||||||||||||\n");
    f.worker.loadAndParseData();
    return f.peer.importedRecords.size() == 1 ? f.peer.importedRecords.first().prijmeni
                                              : QStringLiteral("not one record");
}

} // namespace

class tst_HostileFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void removedWhileBeingRead_data();
    void removedWhileBeingRead();
    void replacedWhileBeingRead_theNewOneIsRemovedUnread();
    void grownWhileBeingRead();
    void cutWhileBeingRead();
    void stillBeingWritten_halfALineIsLost();
    void lineOfAHundredMegabytes();
    void cellOfAHundredMegabytes();
    void lineOfAMillionBars();
    void millionEmptyLines();
    void nothingButNulBytes();
    void badUtf8_data();
    void badUtf8();
    void badUtf8_swallowsNoBar();
    void byteOrderMarks_data();
    void byteOrderMarks();
    void otherEncodings_data();
    void otherEncodings();
};

void tst_HostileFiles::removedWhileBeingRead_data()
{
    QTest::addColumn<bool>("deleteFile");
    QTest::newRow("to be kept") << false;
    QTest::newRow("to be removed") << true;
}

void tst_HostileFiles::removedWhileBeingRead()
{
    QFETCH(bool, deleteFile);
    WorkerFixture f;
    const QString path = writeBytes(f, linesOf(manyPeople));
    f.worker.setDeleteFile(deleteFile);
    const QStringList warnings = readWhile(f, [&path] { QVERIFY(QFile::remove(path)); });
    QVERIFY(areTheFirst(f.peer.importedRecords, manyPeople));
    QCOMPARE(warnings, deleteFile ? QStringList {notRemoved(path)} : QStringList());
}

void tst_HostileFiles::replacedWhileBeingRead_theNewOneIsRemovedUnread()
{
    WorkerFixture f;
    const QString path = writeBytes(f, linesOf(manyPeople));
    const QString next = f.filePath(QStringLiteral("next"));
    write(next, lineOf(99));
    f.worker.setDeleteFile(true);
    const QStringList warnings = readWhile(
        f, [&] { QCOMPARE(rename(qPrintable(next), qPrintable(path)), 0); });
    QVERIFY(areTheFirst(f.peer.importedRecords, manyPeople));
    QCOMPARE(warnings, QStringList());
    QVERIFY(!QFile::exists(path));
}

void tst_HostileFiles::grownWhileBeingRead()
{
    WorkerFixture f;
    const QString path = writeBytes(f, linesOf(2));
    f.worker.setDeleteFile(true);
    const QStringList warnings = readWhile(
        f, [&path] { write(path, lineOf(3) + lineOf(4).left(20), QIODevice::Append); });
    // What has come by the end counts, and half a line is a bad line.
    QVERIFY(areTheFirst(f.peer.importedRecords, 3));
    QCOMPARE(warnings, QStringList());
    QVERIFY(!QFile::exists(path));
}

void tst_HostileFiles::cutWhileBeingRead()
{
    WorkerFixture f;
    const QString path = writeBytes(f, linesOf(manyPeople));
    const QStringList warnings = readWhile(f,
                                           [&path] { QCOMPARE(truncate(qPrintable(path), 0), 0); });
    // The reading ends; what was read ahead of the cut counts.
    const int count = f.peer.importedRecords.size();
    QVERIFY(count >= 1 && count < static_cast<int>(manyPeople));
    QVERIFY(areTheFirst(f.peer.importedRecords, static_cast<uint>(count)));
    QCOMPARE(warnings, QStringList());
}

void tst_HostileFiles::stillBeingWritten_halfALineIsLost()
{
    WorkerFixture f;
    const QByteArray second = lineOf(2);
    const QString path = writeBytes(f, lineOf(1) + second.left(second.size() / 2));
    f.worker.setDeleteFile(false);
    f.worker.loadAndParseData();
    QVERIFY(areTheFirst(f.peer.importedRecords, 1));

    // The next reading begins at the front again, and finds it whole.
    f.peer.importedRecords.clear();
    write(path, second.mid(second.size() / 2), QIODevice::Append);
    f.worker.loadAndParseData();
    QVERIFY(areTheFirst(f.peer.importedRecords, 2));
}

void tst_HostileFiles::lineOfAHundredMegabytes()
{
    WorkerFixture f;
    writeBytes(f, QByteArray(100 * 1024 * 1024, 'x') + '\n' + lineOf(1));
    f.worker.loadAndParseData();
    QVERIFY(areTheFirst(f.peer.importedRecords, 1));
}

void tst_HostileFiles::cellOfAHundredMegabytes()
{
    const int size = 100 * 1024 * 1024;
    const QString surname = surnameOf(QByteArray(size, 'x'));
    QCOMPARE(surname.size(), size);
    QCOMPARE(surname.count(QLatin1Char('x')), size);
}

void tst_HostileFiles::lineOfAMillionBars()
{
    WorkerFixture f;
    writeBytes(f, QByteArray(1000000, '|') + '\n' + lineOf(1));
    f.worker.setLogLevel(3);
    f.worker.loadAndParseData();
    QVERIFY(areTheFirst(f.peer.importedRecords, 1));
    QCOMPARE(f.log.takeMatching({QStringLiteral("warning ")}),
             lines({"warning THRWorker::parseLine() - parts count (1000001) <> fields count(18) - "
                    "line skipped!"}));
}

void tst_HostileFiles::millionEmptyLines()
{
    WorkerFixture f;
    writeBytes(f, QByteArray(1000000, '\n') + lineOf(1) + QByteArray(1000000, '\n'));
    f.worker.setLogLevel(3);
    f.worker.loadAndParseData();
    QVERIFY(areTheFirst(f.peer.importedRecords, 1));
    QCOMPARE(f.log.takeMatching({QStringLiteral("parseLine")}).size(), 1);
}

void tst_HostileFiles::nothingButNulBytes()
{
    WorkerFixture f;
    writeBytes(f, QByteArray(1000000, '\0') + '\n' + lineOf(1));
    f.worker.setLogLevel(3);
    f.worker.loadAndParseData();
    QVERIFY(areTheFirst(f.peer.importedRecords, 1));
    QCOMPARE(f.log.takeMatching({QStringLiteral("parseLine")}).size(), 1);
}

void tst_HostileFiles::badUtf8_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("byte that begins nothing") << QByteArray("\xFF");
    QTest::newRow("second byte alone") << QByteArray("\xA1");
    QTest::newRow("first of two alone") << QByteArray("\xC3");
    QTest::newRow("first of three alone") << QByteArray("\xE2");
    QTest::newRow("two of three") << QByteArray("\xE2\x82");
    QTest::newRow("three of four") << QByteArray("\xF0\x9D\x94");
    QTest::newRow("too long by one") << QByteArray("\xC0\xAF");
    QTest::newRow("too long for a bar") << QByteArray("\xC1\xBC");
    QTest::newRow("half of a pair") << QByteArray("\xED\xA0\x80");
    QTest::newRow("both halves of a pair") << QByteArray("\xED\xA0\xB5\xED\xB4\x91");
    QTest::newRow("beyond the last letter") << QByteArray("\xF4\x90\x80\x80");
    QTest::newRow("five bytes") << QByteArray("\xF8\x88\x80\x80\x80");
    QTest::newRow("letters of another encoding") << QByteArray("\xE1\xED\xE9");
}

void tst_HostileFiles::badUtf8()
{
    QFETCH(QByteArray, bytes);
    QString surname = surnameOf("No" + bytes + "ak");
    // Signs of replacement stand in the place of the bad bytes, and nothing else is touched.
    QVERIFY(surname.contains(QChar::ReplacementCharacter));
    QCOMPARE(surname.remove(QChar::ReplacementCharacter), QStringLiteral("Noak"));
}

void tst_HostileFiles::badUtf8_swallowsNoBar()
{
    // Each of these announces bytes that do not come.
    for (const char *bytes : {"\xC3", "\xE2", "\xE2\x82", "\xF0\x9D\x94"}) {
        const QString surname = surnameOf(QByteArray("No") + bytes);
        QCOMPARE(surname.left(3), QStringLiteral("No") + QChar(QChar::ReplacementCharacter));
    }
}

void tst_HostileFiles::byteOrderMarks_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<uint>("people");
    const QByteArray mark = "\xEF\xBB\xBF";
    QTest::newRow("alone") << mark << 0u;
    QTest::newRow("on a line of its own") << mark + '\n' + lineOf(1) << 1u;
    QTest::newRow("in front of each line") << mark + lineOf(1) + mark + lineOf(2) << 2u;
    QTest::newRow("behind a line") << lineOf(1) + lineOf(2).trimmed() + mark + '\n' << 2u;
    // The second one is a letter, and no number begins with one.
    QTest::newRow("twice") << mark + mark + lineOf(1) << 0u;
}

void tst_HostileFiles::byteOrderMarks()
{
    QFETCH(QByteArray, bytes);
    QFETCH(uint, people);
    WorkerFixture f;
    writeBytes(f, bytes);
    f.worker.loadAndParseData();
    QVERIFY(areTheFirst(f.peer.importedRecords, people));
}

void tst_HostileFiles::otherEncodings_data()
{
    QTest::addColumn<bool>("bigEndian");
    QTest::newRow("two bytes a letter, low one first") << false;
    QTest::newRow("two bytes a letter, high one first") << true;
}

void tst_HostileFiles::otherEncodings()
{
    QFETCH(bool, bigEndian);
    QByteArray bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char letter : linesOf(3)) {
        const QByteArray pair {2, letter};
        bytes += bigEndian ? '\0' + pair.left(1) : pair.left(1) + '\0';
    }
    WorkerFixture f;
    writeBytes(f, bytes);
    f.worker.loadAndParseData();
    QVERIFY(f.peer.importedRecords.isEmpty());
}

QTEST_GUILESS_MAIN(tst_HostileFiles)
#include "tst_hostilefiles.moc"
