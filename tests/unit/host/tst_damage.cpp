// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The kinds of damage: each hurts what it says and nothing else, and is owed a finding for it.
#include "export/exportfile.h"
#include "export/exportline.h"
#include "host/catalogue/findings.h"
#include "host/company/damage.h"
#include "host/company/exportwriter.h"

#include <QBuffer>
#include <QRegularExpression>
#include <QSet>
#include <QtTest>

#include <algorithm>

class tst_Damage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void damage_hurtsWhatItTells_data();
    void damage_hurtsWhatItTells();
    void damage_isWhatItsNameSays_data();
    void damage_isWhatItsNameSays();
    void finding_isWhatTheReaderShows_data();
    void finding_isWhatTheReaderShows();
    void finding_isKnown();
    void names_areDifferentAndExplained();
    void unknownNameChangesNothing();

private:
    QByteArray sound;
};

namespace {

/// The lines without their ends; nothing stands behind the last end.
QList<QByteArray> linesOf(const QByteArray &text)
{
    QList<QByteArray> lines = text.split('\n');
    if (lines.constLast().isEmpty())
        lines.removeLast();
    return lines;
}

/// Where two files of lines are different.
QVector<Hurt> differences(const QList<QByteArray> &before, const QList<QByteArray> &after)
{
    QVector<Hurt> found;
    for (int i = 0; i < qMax(before.size(), after.size()); ++i) {
        const QList<QByteArray> old = before.value(i).split('|');
        const QList<QByteArray> now = after.value(i).split('|');
        if (old.size() != now.size() || i >= before.size()) {
            found.append({i + 1, 0});
            continue;
        }
        for (int column = 0; column < old.size(); ++column) {
            if (old.at(column) != now.at(column))
                found.append({i + 1, column + 1});
        }
    }
    return found;
}

/// What is left of the lines when those of the hurts are taken away.
QList<QByteArray> unhurt(QList<QByteArray> lines, const QVector<Hurt> &hurts)
{
    for (int i = hurts.size() - 1; i >= 0; --i)
        lines.removeAt(hurts.at(i).line - 1);
    return lines;
}

/// The first lines stand among the others, in the same order.
bool standsIn(const QList<QByteArray> &lines, const QList<QByteArray> &others)
{
    int found = 0;
    for (const QByteArray &other : others) {
        if (found < lines.size() && lines.at(found) == other)
            ++found;
    }
    return found == lines.size();
}

/// Lines as the plugin reads them, by number; those without a text are none.
QMap<int, ExportLine> readLines(const QByteArray &file, QMap<int, QString> *texts)
{
    QBuffer buffer;
    buffer.setData(file);
    buffer.open(QIODevice::ReadOnly);
    ExportFile lines(&buffer);
    LineReader reader;
    QMap<int, ExportLine> all;
    QString text;
    while (lines.nextLine(&text)) {
        QString &kept = (*texts)[lines.lineNumber()];
        kept = text;
        all.insert(lines.lineNumber(), reader.read(kept));
    }
    return all;
}

/// What the reader makes of a column.
QDate dateOf(const EmployeeRecord &record, int column)
{
    return column == ExportColumn::Begin ? record.datumNastupu
        : column == ExportColumn::End    ? record.datumVystupu
                                         : record.kalendarPlatnostOd;
}

/// The reader does with the cell what the finding says. True also for findings of other matters.
bool showsCell(const QString &finding, const ExportLine &line, int column)
{
    const QStringRef cell = line.cells[static_cast<size_t>(column - 1)];
    const uint number = numberFromCell(cell);
    if (finding == QLatin1String("E-CELL-DATE"))
        return !cell.isEmpty() && !dateOf(line.record, column).isValid();
    if (finding == QLatin1String("E-CELL-YEAR"))
        return dateOf(line.record, column).isValid()
            && qAbs(dateOf(line.record, column).year() - 2038) > 68;
    if (finding == QLatin1String("E-CELL-NUMBER"))
        return !cell.isEmpty() && number == 0;
    if (finding == QLatin1String("E-CELL-RANGE"))
        return cell.toULongLong() > (number == 0 ? 4294967295u : 65535u);
    if (finding == QLatin1String("W-CELL-NUMBER"))
        return column == ExportColumn::Leave ? line.record.dovolenaZustatek == 12.5
                                             : number > 0 && cell != QString::number(number);
    if (finding == QLatin1String("E-CELL-BALANCE"))
        return !(qAbs(line.record.dovolenaZustatek) * 100 < 2147483648.0)
            || line.record.dovolenaZustatek == 0;
    if (finding == QLatin1String("N-CELL-NEGATIVE"))
        return line.record.dovolenaZustatek < 0;
    if (finding == QLatin1String("E-PERSON-ZERO"))
        return line.record.pid() == 0;
    return true;
}

LineFate fateFor(const QString &finding)
{
    if (finding == QLatin1String("E-LINE-CELLS") || finding == QLatin1String("E-FILE-CUT"))
        return LineFate::WrongCount;
    if (finding == QLatin1String("E-LINE-KEY") || finding.endsWith(QLatin1String("-HEADER")))
        return LineFate::NoKey;
    return finding == QLatin1String("E-LINE-NAME") ? LineFate::NoName : LineFate::Taken;
}

} // namespace

void tst_Damage::initTestCase()
{
    CompanyPlan plan;
    plan.people = 60;
    plan.day = QDate(2026, 3, 17);
    sound = exportText(generatedCompany(plan));
}

void tst_Damage::damage_hurtsWhatItTells_data()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : damageNames())
        QTest::newRow(qPrintable(name)) << name;
}

void tst_Damage::damage_hurtsWhatItTells()
{
    QFETCH(QString, name);
    for (quint32 seed = 1; seed <= 20; ++seed) {
        const DamagedExport hurt = damaged(sound, name, seed);
        QVERIFY(!hurt.hurts.isEmpty());
        const QList<QByteArray> before = linesOf(sound);
        const QList<QByteArray> after = linesOf(hurt.text);
        if (hurt.hurts.first() == Hurt {0, 0}) {
            // Of the whole file there are fewer lines, or all are others.
            QVERIFY(hurt.text != sound);
            QVERIFY(after.size() < before.size() || after.value(1) != before.at(1)
                    || name == QLatin1String("windows-1250"));
            continue;
        }
        if (hurt.hurts.first().line == 0) {
            QSet<int> columns;
            for (const Hurt &place : hurt.hurts)
                columns.insert(place.column);
            QVERIFY(after != before);
            for (const Hurt &place : differences(before, after))
                QVERIFY(place.line > 1 && columns.contains(place.column));
            continue;
        }
        if (hurt.hurts.first().column != 0) {
            QCOMPARE(differences(before, after), hurt.hurts);
            continue;
        }
        const QList<QByteArray> left = unhurt(after, hurt.hurts);
        QVERIFY(standsIn(left, before));
        QVERIFY(left.size() + 2 >= before.size() || left == before.mid(0, left.size()));
        for (const Hurt &place : hurt.hurts)
            QVERIFY(after.at(place.line - 1) != before.value(place.line - 1));
    }
}

void tst_Damage::damage_isWhatItsNameSays_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("cell");

    QTest::newRow("decimal comma") << "decimal-comma" << QByteArray("12,5");
    QTest::newRow("too large") << "number-beyond-32-bits" << QByteArray("4294967396");
    QTest::newRow("no calendar's date") << "calendar-without-date" << QByteArray();
    QTest::newRow("key 0") << "number-zero" << QByteArray("0");
    QTest::newRow("bad date") << "date-all-zero" << QByteArray("0000-00-00 00:00:00.000");
}

void tst_Damage::damage_isWhatItsNameSays()
{
    QFETCH(QString, name);
    const DamagedExport hurt = damaged(sound, name, 4);
    const Hurt place = hurt.hurts.first();
    QTEST(linesOf(hurt.text).at(place.line - 1).split('|').at(place.column - 1), "cell");
}

void tst_Damage::finding_isWhatTheReaderShows_data()
{
    damage_hurtsWhatItTells_data();
}

void tst_Damage::finding_isWhatTheReaderShows()
{
    QFETCH(QString, name);
    const DamagedExport hurt = damaged(sound, name, 7);
    QMap<int, QString> texts;
    const QMap<int, ExportLine> lines = readLines(hurt.text, &texts);
    const auto taken = [](const ExportLine &line) { return line.fate == LineFate::Taken; };
    const bool nothing = std::none_of(lines.cbegin(), lines.cend(), taken);
    QCOMPARE(nothing, hurt.finding == QLatin1String("E-FILE-NOTHING"));
    for (const Hurt &place : hurt.hurts) {
        if (place.line == 0)
            continue;
        const ExportLine line = lines.value(place.line);
        const QString text = texts.value(place.line);
        if (hurt.finding == QLatin1String("E-TEXT-UTF8"))
            QVERIFY(text.contains(QChar(QChar::ReplacementCharacter)));
        if (hurt.finding == QLatin1String("E-TEXT-NUL")) {
            QVERIFY(!hurt.text.split('\n').at(place.line - 1).endsWith(text.toUtf8()));
            continue; // what the line has lost decides about its fate
        }
        const bool isHeader = text.startsWith(QLatin1String("OsobniCislo"));
        const LineFate fate = fateFor(hurt.finding);
        QCOMPARE(line.fate, isHeader && fate == LineFate::Taken ? LineFate::NoKey : fate);
        QVERIFY(place.column == 0 || showsCell(hurt.finding, line, place.column));
    }
}

/// Each finding about an export has a damage, but for those that the database tells.
void tst_Damage::finding_isKnown()
{
    static const QRegularExpression ofExports(QStringLiteral(
        "^(E-FILE-NOTHING|[EWN]-(LINE|CELL|TEXT|PERSON|AGAINST)-(?!STATE)[A-Z0-9]+)$"));
    QSet<QString> known;
    for (const FindingTopic &topic : findingTopics()) {
        for (const FindingKind &kind : topic.kinds)
            known.insert(QLatin1String(kind.code));
    }
    QSet<QString> used;
    for (const QString &name : damageNames()) {
        const DamagedExport hurt = damaged(sound, name, 1);
        QVERIFY2(hurt.againstOnly || !hurt.finding.isEmpty(), qPrintable(name));
        QVERIFY2(hurt.finding.isEmpty() || known.contains(hurt.finding), qPrintable(name));
        used.insert(hurt.finding);
    }
    for (const QString &code : qAsConst(known))
        QVERIFY2(used.contains(code) || !ofExports.match(code).hasMatch(), qPrintable(code));
}

void tst_Damage::names_areDifferentAndExplained()
{
    const QStringList names = damageNames();
    QVERIFY(names.size() >= 160);
    QCOMPARE(QSet<QString>(names.cbegin(), names.cend()).size(), names.size());
    for (const QString &name : names)
        QVERIFY2(!damageMeaning(name).isEmpty(), qPrintable(name));
}

void tst_Damage::unknownNameChangesNothing()
{
    const DamagedExport same = damaged(sound, QStringLiteral("no such damage"), 1);
    QCOMPARE(same.text, sound);
    QVERIFY(same.hurts.isEmpty());
    QVERIFY(same.finding.isEmpty() && !same.againstOnly);
    QCOMPARE(damageMeaning(QStringLiteral("no such damage")), QString());
}

QTEST_GUILESS_MAIN(tst_Damage)
#include "tst_damage.moc"
