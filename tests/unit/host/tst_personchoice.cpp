// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whom a word means, and which lines of an export are theirs.
#include "host/explain/personlines.h"
#include "support/eventlog.h"

#include <QBuffer>
#include <QtTest>

namespace {

/// "uid/pid/pamId", inactive with "-" in front.
KnownPerson known(const QString &text)
{
    KnownPerson person;
    person.isActive = !text.startsWith(QLatin1Char('-'));
    const QStringList parts = text.mid(person.isActive ? 0 : 1).split(QLatin1Char('/'));
    person.uid = parts.at(0).toLongLong();
    person.pid = parts.at(1).toUInt();
    person.pamId = parts.at(2);
    person.key = keyOfPamId(person.pamId);
    return person;
}

QByteArray line(const char *number, const char *ordinal, const char *name = "A")
{
    return QByteArray(number) + '|' + ordinal + "||" + name + "|B|||||||||||||";
}

QStringList numbersOf(const QVector<PersonLine> &lines)
{
    QStringList numbers;
    for (const PersonLine &line : lines)
        numbers.append(QString::number(line.number));
    return numbers;
}

} // namespace

class tst_PersonChoice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void word_meansSomebody_data();
    void word_meansSomebody();
    void keyOfPamId_isThatOfThePlugin();
    void activeRow_saysWhoItIs();
    void lines_areTheirsAndTheHeader();
    void orphanedLine_mayBeTheirs();
    void linesOfANumber_haveAnyOrdinal();
    void exportOfLines_isByteForByte();
};

void tst_PersonChoice::word_meansSomebody_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<QStringList>("meant");
    const auto row = [](const char *word, std::initializer_list<const char *> meant) {
        QTest::newRow(word) << QString::fromUtf8(word) << lines(meant);
    };
    row("4711.1", {"pamId 47111 uids 3"});
    row("47111", {"pid 47111 uids 3"});
    row("3", {"uid 47111 uids 3"});
    row("5.5", {"pamId 55 uids 9"});
    // The same digits, and so the same person to the plugin.
    row("471.11", {"pamId 47111 uids 3"});
    // Only in the export.
    row("800.1", {"pamId 8001 uids"});
    row("8001", {"pid 8001 uids"});
    // A uid of one, and the pid of another.
    row("55", {"pid 55 uids 9", "uid 121 uids 55"});
    // Rows of two uids that the plugin may mix up: by the column, and by the pamId.
    row("70.1", {"pamId 701 uids 20 21"});
    row("1234", {"pamId 12340 uids 30"});
    // The personal number, of all who have it; of one it is the pid, of another the uid.
    row("4711", {"number 47111 uids 3"});
    row("12", {"number 121 uids 55"});
    row("800", {"number 8001 uids"});
    row("5", {"number 55 uids 9"});
    row("1", {"number 701 uids 20 21"});
    row("66", {"number 661 uids 40", "number 662 uids 41", "number 663 uids"});
    row("661", {"pid 661 uids 40"});
    row("77", {"pid 77 uids 42", "uid 9001 uids 77", "number 771 uids"});
    row("0", {});
    row("", {});
    row("99999999999", {});
    row("Eva", {});
    row("9999.1", {});
}

void tst_PersonChoice::word_meansSomebody()
{
    QFETCH(QString, word);
    const QVector<KnownPerson> people {
        known(QStringLiteral("3/47111/4711.1")), known(QStringLiteral("9/55/5.5")),
        known(QStringLiteral("55/121/12.1")),    known(QStringLiteral("20/701/1.1")),
        known(QStringLiteral("21/900/70.1")),    known(QStringLiteral("30/12340/1234")),
        known(QStringLiteral("40/661/66.1")),    known(QStringLiteral("41/662/66.2")),
        known(QStringLiteral("42/77/7.7")),      known(QStringLiteral("77/9001/900.1"))};
    const QVector<LinePerson> exported {{8001, QStringLiteral("800.1")},
                                        {663, QStringLiteral("66.3")},
                                        {771, QStringLiteral("77.1")},
                                        {47111, QStringLiteral("4711.1")}};
    QStringList meant;
    for (const ChosenPerson &person : peopleMeant(word, people, exported)) {
        QStringList uids;
        for (const qlonglong uid : person.uids)
            uids.append(QString::number(uid));
        meant.append(QStringLiteral("%1 %2 uids %3")
                         .arg(keyName(person.takenAs))
                         .arg(person.pid)
                         .arg(uids.join(QLatin1Char(' ')))
                         .trimmed());
    }
    QTEST(meant, "meant");
}

void tst_PersonChoice::keyOfPamId_isThatOfThePlugin()
{
    QCOMPARE(keyOfPamId(QStringLiteral("4711.1")), 47111U);
    QCOMPARE(keyOfPamId(QStringLiteral("1234")), 12340U);
    QCOMPARE(keyOfPamId(QStringLiteral("1.2.3")), 13U);
    QCOMPARE(keyOfPamId(QString()), 0U);
}

void tst_PersonChoice::activeRow_saysWhoItIs()
{
    const QVector<KnownPerson> people {known(QStringLiteral("-1/55/5.5")),
                                       known(QStringLiteral("2/7/5.5"))};
    const QVector<ChosenPerson> meant = peopleMeant(QStringLiteral("1"), people, {});
    QCOMPARE(meant.size(), 1);
    QCOMPARE(meant.first().uids, QVector<qlonglong>({1, 2}));
    QCOMPARE(choiceText(meant.first()), QStringLiteral("5.5, whose uid it is"));
}

void tst_PersonChoice::lines_areTheirsAndTheHeader()
{
    QByteArray content = exportColumns().join(QLatin1Char('|')).toUtf8() + "\n\n"
        + line("4711", "1") + '\n' + line("12", "1") + "\r\n" + line("471", "11") + '\n'
        + "4711|1|cut\n" + line("4711", "1", "");
    QBuffer file(&content);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QVector<PersonLine> found = readPersonLines(&file, {{47111}, {4711}, QString()});
    QCOMPARE(numbersOf(found), lines({"1", "3", "5", "6", "7"}));
    QVERIFY(found.first().isHeader && !found.last().isHeader);
    QCOMPARE(found.at(2).record.pamId(), QStringLiteral("471.11"));
    QCOMPARE(int(found.at(3).fate), int(LineFate::WrongCount));
    QCOMPARE(found.at(3).cells, lines({"4711", "1", "cut"}));
    QCOMPARE(peopleOf(found).size(), 4);
    ChosenPerson person;
    person.pid = 47111;
    QCOMPARE(numbersOf(linesOf(found, person)), numbersOf(found));
    person.pid = 121;
    QCOMPARE(numbersOf(linesOf(found, person)), lines({"1"}));
}

/// Without an ordinal it has no pid.
void tst_PersonChoice::orphanedLine_mayBeTheirs()
{
    QByteArray content = line("4711", "") + '\n' + line("4711", "2") + '\n';
    QBuffer file(&content);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QVector<PersonLine> found = readPersonLines(&file, {{47111}, {4711}, QString()});
    QCOMPARE(numbersOf(found), lines({"1"}));
    QVERIFY(peopleOf(found).isEmpty());
    ChosenPerson person;
    person.pid = 47111;
    person.pamId = QStringLiteral("4711.1");
    QCOMPARE(linesOf(found, person).size(), 1);
}

void tst_PersonChoice::linesOfANumber_haveAnyOrdinal()
{
    QByteArray content = line("4711", "") + '\n' + line("4711", "2") + '\n' + line("47112", "")
        + '\n' + line("4711", "1", "") + '\n' + line("471", "12") + '\n';
    QBuffer file(&content);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(numbersOf(readPersonLines(&file, {{}, {}, QStringLiteral("4711")})),
             lines({"1", "2", "4"}));
}

void tst_PersonChoice::exportOfLines_isByteForByte()
{
    const QByteArray odd = "4711|1||\xe1\xff|B|||||||||||||\r";
    QByteArray content = odd + '\n' + line("12", "1") + '\n';
    QBuffer file(&content);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(exportOf(readPersonLines(&file, {{47111}, {}, QString()})), QByteArray(odd + '\n'));
}

QTEST_GUILESS_MAIN(tst_PersonChoice)
#include "tst_personchoice.moc"
