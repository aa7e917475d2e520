// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The lines of an export: where they begin and end, and which they are.
#include "export/exportfile.h"

#include <QBuffer>
#include <QtTest>

namespace {

/// Gives so many bytes at a time, and in the end a failure.
class Trickle : public QIODevice
{
public:
    Trickle(const QByteArray &content, int bytesAtATime) :
        rest(content),
        step(bytesAtATime)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char *data, qint64 most) override
    {
        const QByteArray given = rest.left(static_cast<int>(qMin(most, step)));
        rest.remove(0, given.size());
        std::copy(given.begin(), given.end(), data);
        return given.isEmpty() ? -1 : given.size();
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray rest;
    const qint64 step;
};

/// "NUMBER TEXT" for each line, and behind them "NUMBER in all".
QStringList linesOf(QIODevice *device)
{
    ExportFile file(device);
    QStringList lines;
    QString line;
    while (file.nextLine(&line))
        lines.append(QString::number(file.lineNumber()) + QLatin1Char(' ') + line);
    lines.append(QString::number(file.lineNumber()) + QStringLiteral(" in all"));
    return lines;
}

QStringList linesOf(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return linesOf(&buffer);
}

} // namespace

class tst_ExportFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nextLine_data();
    void nextLine();
    void nextLine_longLines_data();
    void nextLine_longLines();
    void nextLine_bytesThatTrickle();
    void nextLine_isOverForGood();
    void lineBytes_standAsInTheFile();
};

void tst_ExportFile::nextLine_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("lines");
    const auto row = [](const char *name, const QByteArray &bytes, const QString &lines) {
        QTest::newRow(name) << bytes << lines.split(QLatin1Char(','));
    };
    const QByteArray nul(1, '\0');
    row("empty file", "", QStringLiteral("0 in all"));
    row("a line feed", "\n", QStringLiteral("1 in all"));
    row("lines", "a\nb\n", QStringLiteral("1 a,2 b,2 in all"));
    row("last line without an end", "a\nb", QStringLiteral("1 a,2 b,2 in all"));
    row("blank lines", "\na\n \t\n\nb\n\n", QStringLiteral("2 a,5 b,6 in all"));
    row("last line blank and without an end", "a\n ", QStringLiteral("1 a,2 in all"));
    row("carriage returns", "a\r\n\r\nb\r", QStringLiteral("1 a,3 b,3 in all"));
    row("carriage return within", "a\rb\n", QStringLiteral("1 a\rb,1 in all"));
    row("white space around and within", "\t a  b \f\n", QStringLiteral("1 a  b,1 in all"));
    row("NUL byte within", "a" + nul + "b\nc\n", QStringLiteral("1 a,2 c,2 in all"));
    row("NUL byte in front", nul + "a\nb\n", QStringLiteral("2 b,2 in all"));
    row("two NUL bytes", "a" + nul + "b" + nul + "\n", QStringLiteral("1 a,1 in all"));
    row("white space before a NUL byte", "a " + nul + "b\n", QStringLiteral("1 a,1 in all"));
    row("letters of two bytes", "\xC5\xBEu\xC5\xBE\n", QString::fromUtf8("1 žuž,1 in all"));
}

void tst_ExportFile::nextLine()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, lines);
    QCOMPARE(linesOf(bytes), lines);
}

/// On both sides of what is read at once, once and again.
void tst_ExportFile::nextLine_longLines_data()
{
    QTest::addColumn<int>("size");
    const int block = 1 << 16;
    for (int size : {block - 1, block, block + 1, 2 * block, 2 * block + 1, 10 * block})
        QTest::newRow(qPrintable(QString::number(size))) << size;
}

void tst_ExportFile::nextLine_longLines()
{
    QFETCH(int, size);
    const QByteArray longLine(size - 1, 'x');
    const QStringList lines = linesOf(longLine + '\n' + "a\n" + longLine + "\nb");
    QCOMPARE(lines.size(), 5);
    QVERIFY(lines.at(0) == QStringLiteral("1 ") + QString::fromLatin1(longLine));
    QCOMPARE(lines.at(1), QStringLiteral("2 a"));
    QVERIFY(lines.at(2) == QStringLiteral("3 ") + QString::fromLatin1(longLine));
    QCOMPARE(lines.at(3), QStringLiteral("4 b"));
}

void tst_ExportFile::nextLine_bytesThatTrickle()
{
    const QByteArray bytes = "first\n\nthird \xC5\xBE\nlast";
    for (int step = 1; step < bytes.size(); ++step) {
        Trickle device(bytes, step);
        QCOMPARE(linesOf(&device), linesOf(bytes));
    }
}

void tst_ExportFile::nextLine_isOverForGood()
{
    QByteArray bytes = "a";
    QBuffer buffer(&bytes);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    ExportFile file(&buffer);
    QString line;
    QVERIFY(file.nextLine(&line));
    for (int i = 0; i < 3; ++i) {
        QVERIFY(!file.nextLine(&line));
        QCOMPARE(file.lineNumber(), 1);
        QVERIFY(file.lineBytes().isEmpty());
    }
}

void tst_ExportFile::lineBytes_standAsInTheFile()
{
    const QByteArray first = QByteArray("\xEF\xBB\xBF a") + '\0' + "hidden \xFF\r";
    QByteArray bytes = "\n" + first + "\n \nlast";
    QBuffer buffer(&bytes);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    ExportFile file(&buffer);
    QVERIFY(file.lineBytes().isEmpty());
    QString line;
    QVERIFY(file.nextLine(&line));
    QCOMPARE(line, QStringLiteral("a"));
    QCOMPARE(file.lineBytes(), first);
    QVERIFY(file.nextLine(&line));
    QCOMPARE(file.lineBytes(), QByteArray("last"));
}

QTEST_GUILESS_MAIN(tst_ExportFile)
#include "tst_exportfile.moc"
