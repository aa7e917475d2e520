// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What is mended is what breaks, and nothing else is changed.
//
// Environment: TALVENHR_COMPANIES, how many companies (default: 30).
#include "host/company/damage.h"
#include "host/company/exportwriter.h"
#include "host/exportcheck/exportcheck.h"
#include "support/gate/mendtrial.h"
#include "support/hostiletexts.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>

class tst_Mend : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void apostrophe_isReplacedWhereItBreaks_data();
    void apostrophe_isReplacedWhereItBreaks();
    void apostrophe_isLeftWhereNoStatementIsMade();
    void mark_isDroppedBeforeTheFirstLine_data();
    void mark_isDroppedBeforeTheFirstLine();
    void carriageReturn_isDroppedBeforeLineFeeds_data();
    void carriageReturn_isDroppedBeforeLineFeeds();
    void nothing_isMendedUnasked();
    void damage_isMendedOnceAndNothingElse_data();
    void damage_isMendedOnceAndNothingElse();
    void hostileCompanies_areMendedOnceAndNothingElse();
    void file_isWrittenForItsOwnerOnly();
    void unreadableSource_leavesTheTarget();
    void brokenSource_isNoShortOne();
    void report_namesEachPlace();

private:
    void verifyMending(const QByteArray &content);
    QString path(const char *name) const { return folder.filePath(QLatin1String(name)); }

    QTemporaryDir folder;
};

namespace {

const QDate today(2026, 3, 17);

const char sound[] = "4711|1|Ing.|Jana|Nov\xc3\xa1kov\xc3\xa1|PhD.|0905 123 456|"
                     "2020-01-01 00:00:00.000|2030-12-31 00:00:00.000|120|Sklad|3|"
                     "2024-01-01 00:00:00.000|11|1|0|12.5|4712";

/// The sound line with another cell, counted from 1.
QByteArray line(int column, const QByteArray &cell)
{
    QList<QByteArray> all = QByteArray(sound).split('|');
    all[column - 1] = cell;
    return all.join('|') + '\n';
}

/// Can be read up to its tenth byte.
class BrokenBuffer : public QBuffer
{
public:
    using QBuffer::QBuffer;

protected:
    qint64 readData(char *data, qint64 size) override
    {
        const qint64 left = 10 - QBuffer::pos();
        return left <= 0 ? -1 : QBuffer::readData(data, qMin(size, left));
    }
};

MendWishes apostropheOnly()
{
    MendWishes wishes;
    wishes.apostrophe = true;
    return wishes;
}

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), static_cast<qint64>(bytes.size()));
}

QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

/// Statements that an apostrophe still breaks, and marks at the begin of the file.
QStringList leftovers(QByteArray content)
{
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    static StatementTrial trial;
    ExportCheckSettings settings;
    settings.today = today;
    settings.trial = &trial;
    QStringList left;
    const ExportFindings findings = checkExport(&buffer, settings).findings;
    for (const ExportFinding &found : findings) {
        const QByteArray code = found.kind->code;
        const bool isBroken = (code == "E-TEXT-FAILS" || code == "E-TEXT-RUNS")
            && found.values.at(1).contains(QLatin1Char('\''));
        if (isBroken || (code == "N-TEXT-MARK" && found.line == 1))
            left.append(told(found).about + QLatin1Char(' ') + told(found).text);
    }
    return left;
}

/// Without marks at its begin and returns before line feeds, made by other means than the code.
QByteArray plainForm(const QByteArray &content)
{
    QByteArray plain = content;
    while (plain.startsWith("\xef\xbb\xbf"))
        plain.remove(0, 3);
    while (plain.contains("\r\n"))
        plain.replace("\r\n", "\n");
    return plain;
}

} // namespace

void tst_Mend::initTestCase()
{
    QVERIFY(folder.isValid());
}

void tst_Mend::apostrophe_isReplacedWhereItBreaks_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QByteArray>("cell");
    QTest::addColumn<QByteArray>("expected");
    const auto same = [](const char *name, int column, const QByteArray &cell) {
        QTest::newRow(name) << column << cell << cell;
    };

    QTest::newRow("title") << 3 << QByteArray("Ing'") << QByteArray("Ing’");
    QTest::newRow("name") << 4 << QByteArray("D'Arcy") << QByteArray("D’Arcy");
    QTest::newRow("surname") << 5 << QByteArray("O'Ne\xc3\xa1l") << QByteArray("O’Ne\xc3\xa1l");
    QTest::newRow("two") << 5 << QByteArray("O'Ne'al") << QByteArray("O’Ne’al");
    QTest::newRow("title behind") << 6 << QByteArray("Ph'D") << QByteArray("Ph’D");
    QTest::newRow("phone") << 7 << QByteArray("'0905") << QByteArray("’0905");
    QTest::newRow("statement") << 5 << QByteArray("x'; DELETE FROM people; -- ")
                               << QByteArray("x’; DELETE FROM people; -- ");
    QTest::newRow("letter broken in two") << 5 << QByteArray("O'Ne\xc5") << QByteArray("O’Ne\xc5");
    QTest::newRow("with a backslash that stays")
        << 5 << QByteArray("O'Neal\\") << QByteArray("O’Neal\\");
    // The server stores one of them.
    same("doubled", 5, "O''Neal");
    same("typographic", 5, "O’Neal");
    same("backslash", 5, "Neal\\");
    same("marker", 5, "Neal %5");
    // No statement holds them.
    same("branch text", 11, "Children's");
    same("number", 18, "'4712");
}

void tst_Mend::apostrophe_isReplacedWhereItBreaks()
{
    QFETCH(int, column);
    QFETCH(QByteArray, cell);
    QFETCH(QByteArray, expected);
    QVector<MendedCell> cells;
    QCOMPARE(mended(headerLine() + '\n' + line(column, cell), apostropheOnly(), &cells),
             headerLine() + '\n' + line(column, expected));
    QCOMPARE(cells.isEmpty(), cell == expected);
    if (cells.isEmpty())
        return;
    QCOMPARE(cells.size(), 1);
    QCOMPARE(cells.constFirst().line, 2);
    QCOMPARE(cells.constFirst().column,
             QString::fromLatin1(headerLine().split('|').at(column - 1)));
    QCOMPARE(cells.constFirst().before, QString::fromUtf8(cell));
    QCOMPARE(cells.constFirst().after, QString::fromUtf8(expected));
    QCOMPARE(cells.constFirst().count, cell.count('\''));
}

void tst_Mend::apostrophe_isLeftWhereNoStatementIsMade()
{
    const QByteArray dropped = "'" + headerLine() + "\n4711|1|O'Neal\n"
        + line(1, "none").replace("Jana", "D'Arcy") + line(5, "O'Neal").replace("|12.5|", "|");
    QCOMPARE(mended(dropped, apostropheOnly()), dropped);
}

void tst_Mend::mark_isDroppedBeforeTheFirstLine_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("expected");
    const QByteArray mark = "\xef\xbb\xbf";
    QTest::newRow("one") << mark + "a|b\nc\n" << QByteArray("a|b\nc\n");
    QTest::newRow("two") << mark + mark + "a|b" << QByteArray("a|b");
    QTest::newRow("nothing else") << mark << QByteArray();
    QTest::newRow("half of one") << QByteArray("\xef\xbb") << QByteArray("\xef\xbb");
    QTest::newRow("in a line") << "a" + mark + "\n" + mark + "b\n"
                               << "a" + mark + "\n" + mark + "b\n";
    QTest::newRow("no file") << QByteArray() << QByteArray();
}

void tst_Mend::mark_isDroppedBeforeTheFirstLine()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, expected);
    MendWishes wishes;
    wishes.bom = true;
    QVector<MendedCell> cells;
    QCOMPARE(mended(content, wishes, &cells), expected);
    QCOMPARE(cells.size(), content == expected ? 0 : 1);
    if (!cells.isEmpty())
        QCOMPARE(3 * cells.constFirst().count, content.size() - expected.size());
}

void tst_Mend::carriageReturn_isDroppedBeforeLineFeeds_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("expected");
    QTest::addColumn<int>("count");
    QTest::newRow("each line") << QByteArray("a\r\nb\r\n") << QByteArray("a\nb\n") << 2;
    QTest::newRow("two of them") << QByteArray("a\r\r\n\r\n") << QByteArray("a\n\n") << 2;
    QTest::newRow("some lines") << QByteArray("a\nb\r\nc") << QByteArray("a\nb\nc") << 1;
    QTest::newRow("elsewhere") << QByteArray("a\rb\n\rc\ne\r") << QByteArray("a\rb\n\rc\ne\r") << 0;
}

void tst_Mend::carriageReturn_isDroppedBeforeLineFeeds()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, expected);
    QFETCH(int, count);
    MendWishes wishes;
    wishes.cr = true;
    QVector<MendedCell> cells;
    QCOMPARE(mended(content, wishes, &cells), expected);
    QCOMPARE(cells.size(), count == 0 ? 0 : 1);
    if (count != 0)
        QCOMPARE(cells.constFirst().count, count);
}

void tst_Mend::nothing_isMendedUnasked()
{
    const QByteArray all = "\xef\xbb\xbf" + headerLine() + "\r\n" + line(5, "O'Ne\xe1l");
    QVector<MendedCell> cells;
    QCOMPARE(mended(all, MendWishes(), &cells), all);
    QVERIFY(cells.isEmpty());
}

/// With all wishes: a second time changes nothing, what differs is told, and nothing is left that
/// the check would find.
void tst_Mend::verifyMending(const QByteArray &content)
{
    const MendWishes wishes {true, true, true, QStringLiteral("windows-1250")};
    QVector<MendedCell> cells;
    const QByteArray once = mended(content, wishes, &cells);
    QCOMPARE(sorted(cells), sorted(differences(plainForm(content), once)));
    QCOMPARE(leftovers(once), QStringList());
    QVector<MendedCell> again;
    QVERIFY(mended(once, wishes, &again) == once);
    QVERIFY(again.isEmpty());
}

void tst_Mend::damage_isMendedOnceAndNothingElse_data()
{
    QTest::addColumn<QString>("name");
    const QStringList names = damageNames();
    QVERIFY(names.size() >= 80);
    for (const QString &name : names)
        QTest::newRow(qPrintable(name)) << name;
}

void tst_Mend::damage_isMendedOnceAndNothingElse()
{
    QFETCH(QString, name);
    verifyMending(damaged(companyExport(1), name, 1).text);
    const QByteArray other = damaged(companyExport(2), name, 2).text;
    verifyMending("\xef\xbb\xbf" + QByteArray(other).replace('\n', "\r\n"));
}

void tst_Mend::hostileCompanies_areMendedOnceAndNothingElse()
{
    const int companies = qEnvironmentVariableIsSet("TALVENHR_COMPANIES")
        ? qEnvironmentVariableIntValue("TALVENHR_COMPANIES")
        : 30;
    int apostrophes = 0;
    for (int seed = 1; seed <= companies; ++seed) {
        Draw draw(static_cast<quint32>(seed));
        QList<QByteArray> lines = companyExport(static_cast<quint32>(seed)).split('\n');
        for (int i = 1; i < lines.size() - 1; ++i) {
            QList<QByteArray> cells = lines.at(i).split('|');
            for (int column = 2; column < 7; ++column) {
                if (draw.percent(30))
                    cells[column] = hostileText(&draw).remove(QLatin1Char('|')).toUtf8();
            }
            lines[i] = cells.join('|');
        }
        const QByteArray content = lines.join('\n');
        apostrophes += content.count('\'');
        verifyMending(content);
        if (QTest::currentTestFailed())
            QFAIL(qPrintable(QStringLiteral("seed %1").arg(seed)));
    }
    QVERIFY(apostrophes > 10 * companies);
}

void tst_Mend::file_isWrittenForItsOwnerOnly()
{
    write(path("source"), line(5, "O'Neal"));
    QVector<MendedCell> cells;
    QVERIFY(!mendExport(path("source"), path("target"), apostropheOnly(), &cells));
    QCOMPARE(content(path("target")), line(5, "O’Neal"));
    QCOMPARE(cells.size(), 1);
    const QFileDevice::Permissions others = QFileDevice::ReadGroup | QFileDevice::ReadOther;
    QVERIFY(!(QFile::permissions(path("target")) & others));
}

void tst_Mend::unreadableSource_leavesTheTarget()
{
    write(path("target"), "as before");
    QVector<MendedCell> cells;
    const Failure failure = mendExport(path("missing"), path("target"), apostropheOnly(), &cells);
    QVERIFY2(failure.text.startsWith(QStringLiteral("cannot read '%1': ").arg(path("missing"))),
             qPrintable(failure.text));
    QVERIFY(mendExport(path("target"), path("target"), apostropheOnly(), &cells));
    QCOMPARE(content(path("target")), QByteArray("as before"));
}

void tst_Mend::brokenSource_isNoShortOne()
{
    QByteArray content = "first\nsecond\nthird\n";
    for (const MendWishes &wishes : {MendWishes(), encodingOnly(QStringLiteral("ISO-8859-2"))}) {
        BrokenBuffer source(&content);
        source.open(QIODevice::ReadOnly);
        QBuffer target;
        target.open(QIODevice::WriteOnly);
        QVector<MendedCell> cells;
        const Failure failure = mendExport(&source, &target, wishes, &cells);
        QVERIFY2(failure.text.startsWith(QStringLiteral("cannot read the export: ")),
                 qPrintable(failure.text));
    }
}

void tst_Mend::report_namesEachPlace()
{
    const QVector<MendedCell> cells {
        {MendedCell::ByteOrderMark, 0, {}, {}, {}, 1},
        {MendedCell::Apostrophe, 7, QStringLiteral("Prijmeni"), QStringLiteral("O'%1\n"),
         QStringLiteral("O’%1\n"), 1},
        {MendedCell::Encoding, 8, {}, QStringLiteral("Nov\ufffd"), QStringLiteral("Nová"), 1},
        {MendedCell::CarriageReturn, 0, {}, {}, {}, 12}};
    QCOMPARE(QString::fromUtf8(mendedText(cells)),
             QStringLiteral("the byte order mark before the first line is dropped\n"
                            "line 7, Prijmeni (apostrophe): 'O'%1\\n' becomes 'O’%1\\n'\n"
                            "line 8 (encoding): 'Nov\ufffd' becomes 'Nová'\n"
                            "carriage returns before line ends are dropped: 12\n"));
}

QTEST_GUILESS_MAIN(tst_Mend)
#include "tst_mend.moc"
