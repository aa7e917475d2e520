// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The kinds of damage: each hurts what it says and nothing else.
#include "host/company/damage.h"
#include "host/company/exportwriter.h"

#include <QSet>
#include <QtTest>

class tst_Damage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void damage_hurtsWhatItTells_data();
    void damage_hurtsWhatItTells();
    void damage_isWhatItsNameSays_data();
    void damage_isWhatItsNameSays();
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
            // Of the whole file nothing but its first lines can be left.
            QVERIFY(hurt.text != sound);
            QVERIFY(after.size() < before.size() || after.value(1) != before.at(1)
                    || name == QLatin1String("windows-1250"));
            continue;
        }
        QSet<int> columns;
        for (const Hurt &place : hurt.hurts)
            columns.insert(place.line == 0 ? place.column : 0);
        if (columns == QSet<int> {0}) {
            const int cut = name == QLatin1String("cut-in-line") ? after.size() : before.size();
            QCOMPARE(differences(before.mid(0, cut), after), hurt.hurts);
            continue;
        }
        for (const Hurt &place : differences(before, after))
            QVERIFY(place.line > 1 && columns.contains(place.column));
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

void tst_Damage::names_areDifferentAndExplained()
{
    const QStringList names = damageNames();
    QVERIFY(names.size() >= 50);
    QCOMPARE(QSet<QString>(names.cbegin(), names.cend()).size(), names.size());
    for (const QString &name : names)
        QVERIFY2(!damageMeaning(name).isEmpty(), qPrintable(name));
}

void tst_Damage::unknownNameChangesNothing()
{
    const DamagedExport same = damaged(sound, QStringLiteral("no such damage"), 1);
    QCOMPARE(same.text, sound);
    QVERIFY(same.hurts.isEmpty());
    QCOMPARE(damageMeaning(QStringLiteral("no such damage")), QString());
}

QTEST_GUILESS_MAIN(tst_Damage)
#include "tst_damage.moc"
