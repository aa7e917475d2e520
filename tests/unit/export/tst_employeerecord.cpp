// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The employee record: keys, checks, text forms and equality.
#include "support/workerfixture.h"

#include <QLocale>
#include <QtTest>

#include <functional>
#include <limits>

namespace {

using Change = std::function<void(EmployeeRecord &)>;

/// Every field set, each to a value of its own.
EmployeeRecord fullRecord()
{
    return record()
        .pid(1234, 2)
        .titles(QStringLiteral("Ing."), QStringLiteral("PhD."))
        .name(QStringLiteral("Ján"), QStringLiteral("Novák"))
        .phone(QStringLiteral("0905 123 456"))
        .employed(QDate(2015, 3, 1), QDate(2031, 12, 31))
        .branch(70, QStringLiteral("Sklad"))
        .calendar(8, QDate(2024, 1, 15))
        .tpp(11)
        .relationState(1)
        .es(21)
        .interval(QDate(2023, 10, 2), QDate(2026, 4, 5), QStringLiteral("MD"))
        .balance(12.5)
        .supervisor(99)
        .build();
}

} // namespace

Q_DECLARE_METATYPE(Change)

class tst_EmployeeRecord : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void startValues();
    void pid_joinsTheDigits_data();
    void pid_joinsTheDigits();
    void pid_isThatOfTheJoinedText();
    void pamId_joinsWithADot();
    void isUsable_data();
    void isUsable();
    void isCurrent_data();
    void isCurrent();
    void personTypeAndPamType_data();
    void personTypeAndPamType();
    void toText_personal();
    void toText_ofTheLog();
    void toText_startValues();
    void toText_datesInTheSystemsShortForm();
    void toText_balance_data();
    void toText_balance();
    void toText_largestNumbers();
    void toText_fillsMarkersInsideTexts();
    void shortDate_invalidIsEmpty();
    void equality_everyFieldCounts_data();
    void equality_everyFieldCounts();
    void equality_nullTextEqualsEmptyText();
    void equality_invalidDatesAreEqual();
    void equality_balanceHasNoTolerance();
    void equality_balanceThatIsNoNumberDiffersFromItself();
    void dbLoadPeople_keyComesFromPamId_data();
    void dbLoadPeople_keyComesFromPamId();
};

void tst_EmployeeRecord::initTestCase()
{
    // Dates in log lines keep the system's form whatever the server's default is.
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
}

void tst_EmployeeRecord::startValues()
{
    const EmployeeRecord empty;
    QCOMPARE(empty.osobniCislo, 0u);
    QCOMPARE(empty.poradoveCisloPP, 0u);
    QVERIFY(empty.titul.isNull());
    QVERIFY(empty.jmeno.isNull());
    QVERIFY(empty.prijmeni.isNull());
    QVERIFY(empty.titulZa.isNull());
    QVERIFY(empty.telefon.isNull());
    QVERIFY(!empty.datumNastupu.isValid());
    QVERIFY(!empty.datumVystupu.isValid());
    QCOMPARE(empty.stredisko, 0u);
    QVERIFY(empty.strediskoPopis.isNull());
    QCOMPARE(empty.calendarID, 0u);
    QVERIFY(!empty.kalendarPlatnostOd.isValid());
    QCOMPARE(empty.typPracovnihoPomeru, ushort(0));
    QCOMPARE(empty.stavPracovnihoPomeru, ushort(0));
    QCOMPARE(empty.evidencniStav, ushort(0));
    QVERIFY(!empty.rsBegin.isValid());
    QVERIFY(!empty.rsEnd.isValid());
    QVERIFY(empty.rsText.isNull());
    QCOMPARE(empty.dovolenaZustatek, 0.0);
    QCOMPARE(empty.nadOsCis, 0u);
}

void tst_EmployeeRecord::pid_joinsTheDigits_data()
{
    QTest::addColumn<uint>("osobniCislo");
    QTest::addColumn<uint>("poradoveCisloPP");
    QTest::addColumn<uint>("pid");
    QTest::newRow("one digit behind") << 1234u << 1u << 12341u;
    QTest::newRow("two digits behind") << 1234u << 12u << 123412u;
    QTest::newRow("12 and 3") << 12u << 3u << 123u;
    QTest::newRow("1 and 23, the same key") << 1u << 23u << 123u;
    QTest::newRow("zero behind") << 75u << 0u << 750u;
    QTest::newRow("zero in front") << 0u << 75u << 75u;
    QTest::newRow("both zero") << 0u << 0u << 0u;
    QTest::newRow("the last that fits") << 429496729u << 5u << 4294967295u;
    QTest::newRow("the first that does not") << 429496729u << 6u << 0u;
    QTest::newRow("largest number") << 4294967295u << 1u << 0u;
    QTest::newRow("largest numbers") << 4294967295u << 4294967295u << 0u;
}

void tst_EmployeeRecord::pid_joinsTheDigits()
{
    QFETCH(uint, osobniCislo);
    QFETCH(uint, poradoveCisloPP);
    QFETCH(uint, pid);
    QCOMPARE(record().pid(osobniCislo, poradoveCisloPP).build().pid(), pid);
}

/// All numbers of digits on both sides, and the places where one more begins.
void tst_EmployeeRecord::pid_isThatOfTheJoinedText()
{
    QVector<uint> numbers {0, 4294967294u, 4294967295u, 429496729, 42949672, 1844674407};
    for (uint scale = 1; scale <= 1000000000; scale *= 10) {
        for (uint digit = 1; digit <= 4; ++digit)
            numbers << digit * scale << digit * scale - 1 << digit * scale + 7;
        if (scale == 1000000000)
            break;
    }
    int fitting = 0;
    for (const uint first : qAsConst(numbers)) {
        for (const uint second : qAsConst(numbers)) {
            const uint expected = (QString::number(first) + QString::number(second)).toUInt();
            QCOMPARE(record().pid(first, second).build().pid(), expected);
            fitting += expected != 0;
        }
    }
    QVERIFY(fitting > 1000);
}

void tst_EmployeeRecord::pamId_joinsWithADot()
{
    QCOMPARE(record().pid(1234, 1).build().pamId(), QStringLiteral("1234.1"));
    QCOMPARE(record().pid(12, 3).build().pamId(), QStringLiteral("12.3"));
    QCOMPARE(record().pid(1, 23).build().pamId(), QStringLiteral("1.23"));
    QCOMPARE(record().pid(4294967295u, 4294967295u).build().pamId(),
             QStringLiteral("4294967295.4294967295"));
    QCOMPARE(EmployeeRecord().pamId(), QStringLiteral("0.0"));
}

void tst_EmployeeRecord::isUsable_data()
{
    QTest::addColumn<uint>("osobniCislo");
    QTest::addColumn<uint>("poradoveCisloPP");
    QTest::addColumn<QString>("jmeno");
    QTest::addColumn<QString>("prijmeni");
    QTest::addColumn<bool>("usable");
    const QString given = QStringLiteral("Ján");
    const QString family = QStringLiteral("Novák");
    const QString empty = QStringLiteral("");
    QTest::newRow("whole") << 1234u << 1u << given << family << true;
    QTest::newRow("no personal number") << 0u << 1u << given << family << false;
    QTest::newRow("no ordinal") << 1234u << 0u << given << family << false;
    QTest::newRow("given name only") << 1234u << 1u << given << empty << true;
    QTest::newRow("surname only") << 1234u << 1u << empty << family << true;
    QTest::newRow("empty names") << 1234u << 1u << empty << empty << false;
    QTest::newRow("null names") << 1234u << 1u << QString() << QString() << false;
    QTest::newRow("a blank is a name") << 1234u << 1u << QStringLiteral(" ") << empty << true;
}

void tst_EmployeeRecord::isUsable()
{
    QFETCH(uint, osobniCislo);
    QFETCH(uint, poradoveCisloPP);
    QFETCH(QString, jmeno);
    QFETCH(QString, prijmeni);
    QFETCH(bool, usable);
    QCOMPARE(record().pid(osobniCislo, poradoveCisloPP).name(jmeno, prijmeni).build().isUsable(),
             usable);
}

void tst_EmployeeRecord::isCurrent_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QDate>("lastDay");
    QTest::addColumn<bool>("current");
    const QDate today = QDate::currentDate();
    QTest::newRow("state 0, no end") << 0 << QDate() << true;
    QTest::newRow("state 2, no end") << 2 << QDate() << true;
    QTest::newRow("state 3, no end") << 3 << QDate() << true;
    QTest::newRow("state 4, no end") << 4 << QDate() << false;
    QTest::newRow("highest state, no end") << 65535 << QDate() << false;
    QTest::newRow("ended long ago") << 0 << QDate(2001, 1, 1) << false;
    QTest::newRow("ended yesterday") << 0 << today.addDays(-1) << false;
    QTest::newRow("ends today") << 0 << today << true;
    QTest::newRow("ends tomorrow") << 0 << today.addDays(1) << true;
    QTest::newRow("state 3, ended yesterday") << 3 << today.addDays(-1) << false;
    QTest::newRow("state 3, ends today") << 3 << today << true;
    QTest::newRow("state 4, ends today") << 4 << today << false;
    QTest::newRow("state 4, ends tomorrow") << 4 << today.addDays(1) << false;
}

void tst_EmployeeRecord::isCurrent()
{
    QFETCH(int, state);
    QFETCH(QDate, lastDay);
    QFETCH(bool, current);
    const EmployeeRecord employee
        = record().relationState(static_cast<ushort>(state)).employed(QDate(2000, 1, 1), lastDay);
    QCOMPARE(employee.isCurrent(), current);
}

void tst_EmployeeRecord::personTypeAndPamType_data()
{
    QTest::addColumn<int>("tpp");
    QTest::addColumn<uint>("personType");
    QTest::addColumn<uint>("pamType");
    QTest::newRow("11") << 11 << 1u << 1u;
    QTest::newRow("65") << 65 << 1u << 1u;
    QTest::newRow("51") << 51 << 4u << 2u;
    QTest::newRow("53") << 53 << 4u << 2u;
    QTest::newRow("54") << 54 << 4u << 2u;
    for (const int other : {0, 1, 4, 10, 12, 50, 52, 55, 64, 66, 65535})
        QTest::newRow(qPrintable(QString::number(other))) << other << 0u << 0u;
}

void tst_EmployeeRecord::personTypeAndPamType()
{
    QFETCH(int, tpp);
    QFETCH(uint, personType);
    QFETCH(uint, pamType);
    QCOMPARE(EmployeeRecord::personType(static_cast<ushort>(tpp)), personType);
    QCOMPARE(EmployeeRecord::pamTypeForTpp(static_cast<ushort>(tpp)), pamType);
}

void tst_EmployeeRecord::toText_personal()
{
    QCOMPARE(fullRecord().toText(true),
             QStringLiteral("1234.2 Ing. Ján Novák PhD. (T: 0905 123 456) N-V: 3/1/15 - 12/31/31 "
                            "TPP: 11  K: 8  DOV: 12.5, S: 70"));
}

void tst_EmployeeRecord::toText_ofTheLog()
{
    QCOMPARE(fullRecord().toText(false),
             QStringLiteral("1234.2 Novák Ján (S: 70, K: 8 from 1/15/24) N-V: 3/1/15 - 12/31/31; "
                            "ES: 21, RS: 10/2/23 - 4/5/26 'MD' TPP: 11  DOV: 12.5 NOC: 99"));
}

void tst_EmployeeRecord::toText_startValues()
{
    QCOMPARE(EmployeeRecord().toText(true),
             QStringLiteral("0.0     (T: ) N-V:  -  TPP: 0  K: 0  DOV: 0, S: 0"));
    QCOMPARE(EmployeeRecord().toText(false),
             QStringLiteral("0.0   (S: 0, K: 0 from ) N-V:  - ; ES: 0, RS:  -  '' TPP: 0  "
                            "DOV: 0 NOC: 0"));
}

void tst_EmployeeRecord::toText_datesInTheSystemsShortForm()
{
    // The system's (LC_TIME) is American here, see main(); the default one is German.
    QCOMPARE(QLocale().toString(QDate(2024, 12, 31), QLocale::ShortFormat),
             QStringLiteral("31.12.24"));
    QCOMPARE(shortDate(QDate(2024, 12, 31)), QStringLiteral("12/31/24"));
}

void tst_EmployeeRecord::toText_balance_data()
{
    QTest::addColumn<double>("balance");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << 0.0 << QStringLiteral("0");
    QTest::newRow("whole") << 20.0 << QStringLiteral("20");
    QTest::newRow("half") << 12.5 << QStringLiteral("12.5");
    QTest::newRow("hundredths") << 0.25 << QStringLiteral("0.25");
    QTest::newRow("below zero") << -3.75 << QStringLiteral("-3.75");
    QTest::newRow("six digits") << 12.3456789 << QStringLiteral("12.3457");
    QTest::newRow("large") << 12345678.0 << QStringLiteral("1.23457e+07");
    QTest::newRow("no rest of a sum") << 0.1 + 0.2 << QStringLiteral("0.3");
}

void tst_EmployeeRecord::toText_balance()
{
    QFETCH(double, balance);
    QFETCH(QString, text);
    const EmployeeRecord employee = record().balance(balance).supervisor(7);
    QCOMPARE(employee.toText(true),
             QStringLiteral("1234.1  Ján Novák  (T: ) N-V: 3/1/15 -  TPP: 11  K: 0  DOV: ") + text
                 + QStringLiteral(", S: 0"));
    QCOMPARE(employee.toText(false),
             QStringLiteral("1234.1 Novák Ján (S: 0, K: 0 from ) N-V: 3/1/15 - ; ES: 0, RS:  -  '' "
                            "TPP: 11  DOV: ")
                 + text + QStringLiteral(" NOC: 7"));
}

void tst_EmployeeRecord::toText_largestNumbers()
{
    const EmployeeRecord employee = record()
                                        .pid(4294967295u, 4294967294u)
                                        .employed(QDate())
                                        .branch(4294967293u)
                                        .calendar(4294967292u)
                                        .tpp(65535)
                                        .es(65534)
                                        .supervisor(4294967291u);
    QCOMPARE(employee.toText(true),
             QStringLiteral("4294967295.4294967294  Ján Novák  (T: ) N-V:  -  TPP: 65535  "
                            "K: 4294967292  DOV: 0, S: 4294967293"));
    QCOMPARE(employee.toText(false),
             QStringLiteral("4294967295.4294967294 Novák Ján (S: 4294967293, K: 4294967292 from ) "
                            "N-V:  - ; ES: 65534, RS:  -  '' TPP: 65535  DOV: 0 NOC: 4294967291"));
}

void tst_EmployeeRecord::toText_fillsMarkersInsideTexts()
{
    // A marker still to come takes its own value along.
    EmployeeRecord employee = record().branch(70).name(QStringLiteral("Ján"),
                                                       QStringLiteral("No%5vák"));
    QCOMPARE(employee.toText(false),
             QStringLiteral("1234.1 No70vák Ján (S: 70, K: 0 from ) N-V: 3/1/15 - ; ES: 0, "
                            "RS:  -  '' TPP: 11  DOV: 0 NOC: 0"));

    // One that is over takes the next value, and all the others move up.
    employee = record()
                   .branch(70)
                   .calendar(8, QDate(2024, 1, 15))
                   .es(21)
                   .supervisor(99)
                   .name(QStringLiteral("Ján"), QStringLiteral("%1"));
    QCOMPARE(employee.toText(false),
             QStringLiteral("1234.1 Ján 70 (S: 8, K: 1/15/24 from 3/1/15) N-V:  - 21; ES: , "
                            "RS:  -  '11' TPP: 0  DOV: 99 NOC: %16"));

    // One that never comes stays.
    employee = record().name(QStringLiteral("%99"), QStringLiteral("50 %"));
    QCOMPARE(employee.toText(false),
             QStringLiteral("1234.1 50 % %99 (S: 0, K: 0 from ) N-V: 3/1/15 - ; ES: 0, "
                            "RS:  -  '' TPP: 11  DOV: 0 NOC: 0"));

    employee
        = record().phone(QStringLiteral("%13")).branch(70).titles(QStringLiteral("%4"), QString());
    QCOMPARE(employee.toText(true),
             QStringLiteral("1234.1 Ján Ján Novák  (T: 70) N-V: 3/1/15 -  TPP: 11  K: 0  DOV: 0, "
                            "S: 70"));
}

void tst_EmployeeRecord::shortDate_invalidIsEmpty()
{
    QCOMPARE(shortDate(QDate()), QString());
    QCOMPARE(shortDate(QDate(2023, 2, 29)), QString());
}

void tst_EmployeeRecord::equality_everyFieldCounts_data()
{
    QTest::addColumn<Change>("change");
    const auto row = [](const char *field, const Change &change) {
        QTest::newRow(field) << change;
    };
    row("osobniCislo", [](EmployeeRecord &r) { r.osobniCislo = 1235; });
    row("poradoveCisloPP", [](EmployeeRecord &r) { r.poradoveCisloPP = 3; });
    row("titul", [](EmployeeRecord &r) { r.titul = QStringLiteral("ing."); });
    row("jmeno", [](EmployeeRecord &r) { r.jmeno = QStringLiteral("ján"); });
    row("prijmeni", [](EmployeeRecord &r) { r.prijmeni = QStringLiteral("Novak"); });
    row("titulZa", [](EmployeeRecord &r) { r.titulZa = QStringLiteral("PhD. "); });
    row("telefon", [](EmployeeRecord &r) { r.telefon = QStringLiteral("0905123456"); });
    row("datumNastupu", [](EmployeeRecord &r) { r.datumNastupu = QDate(2015, 3, 2); });
    row("datumVystupu", [](EmployeeRecord &r) { r.datumVystupu = QDate(); });
    row("stredisko", [](EmployeeRecord &r) { r.stredisko = 71; });
    row("strediskoPopis", [](EmployeeRecord &r) { r.strediskoPopis = QStringLiteral("sklad"); });
    row("calendarID", [](EmployeeRecord &r) { r.calendarID = 9; });
    row("kalendarPlatnostOd", [](EmployeeRecord &r) { r.kalendarPlatnostOd = QDate(); });
    row("typPracovnihoPomeru", [](EmployeeRecord &r) { r.typPracovnihoPomeru = 65; });
    row("stavPracovnihoPomeru", [](EmployeeRecord &r) { r.stavPracovnihoPomeru = 2; });
    row("evidencniStav", [](EmployeeRecord &r) { r.evidencniStav = 22; });
    row("rsBegin", [](EmployeeRecord &r) { r.rsBegin = QDate(2023, 10, 3); });
    row("rsEnd", [](EmployeeRecord &r) { r.rsEnd = QDate(); });
    row("rsText", [](EmployeeRecord &r) { r.rsText = QStringLiteral("md"); });
    row("dovolenaZustatek", [](EmployeeRecord &r) { r.dovolenaZustatek = 12.51; });
    row("nadOsCis", [](EmployeeRecord &r) { r.nadOsCis = 98; });
}

void tst_EmployeeRecord::equality_everyFieldCounts()
{
    QFETCH(Change, change);
    const EmployeeRecord original = fullRecord();
    EmployeeRecord changed = original;
    QVERIFY(changed == original);
    QVERIFY(!(changed != original));
    change(changed);
    QVERIFY(!(changed == original));
    QVERIFY(!(original == changed));
    QVERIFY(changed != original);
    QVERIFY(original != changed);
}

void tst_EmployeeRecord::equality_nullTextEqualsEmptyText()
{
    EmployeeRecord empty;
    empty.titul = empty.jmeno = empty.prijmeni = empty.titulZa = empty.telefon
        = empty.strediskoPopis = empty.rsText = QStringLiteral("");
    QVERIFY(!empty.titul.isNull());
    QVERIFY(empty == EmployeeRecord());
}

void tst_EmployeeRecord::equality_invalidDatesAreEqual()
{
    EmployeeRecord impossible = record().employed(QDate(2023, 2, 29), QDate(2023, 13, 1));
    QVERIFY(impossible == record().employed(QDate(), QDate()).build());
}

void tst_EmployeeRecord::equality_balanceHasNoTolerance()
{
    const double next = 12.5 + 12.5 * std::numeric_limits<double>::epsilon();
    QVERIFY(record().balance(12.5).build() != record().balance(next).build());
    QVERIFY(record().balance(0.3).build() != record().balance(0.1 + 0.2).build());
    QVERIFY(record().balance(-0.0).build() == record().balance(0.0).build());
}

void tst_EmployeeRecord::equality_balanceThatIsNoNumberDiffersFromItself()
{
    const EmployeeRecord employee = record().balance(qQNaN());
    const EmployeeRecord copy = employee;
    QVERIFY(!(employee == copy));
    QVERIFY(employee != copy);
}

void tst_EmployeeRecord::dbLoadPeople_keyComesFromPamId_data()
{
    QTest::addColumn<QVariant>("pamId");
    QTest::addColumn<uint>("osobniCislo");
    QTest::addColumn<uint>("poradoveCisloPP");
    QTest::addColumn<uint>("key");
    QTest::newRow("two parts") << QVariant(QStringLiteral("1234.1")) << 1234u << 1u << 12341u;
    QTest::newRow("no dot") << QVariant(QStringLiteral("75")) << 75u << 0u << 750u;
    QTest::newRow("three parts") << QVariant(QStringLiteral("1.2.3")) << 1u << 3u << 13u;
    QTest::newRow("nothing behind") << QVariant(QStringLiteral("12.")) << 12u << 0u << 120u;
    QTest::newRow("nothing in front") << QVariant(QStringLiteral(".12")) << 0u << 12u << 12u;
    QTest::newRow("empty part between") << QVariant(QStringLiteral("12..3")) << 12u << 3u << 123u;
    QTest::newRow("no number") << QVariant(QStringLiteral("a.b")) << 0u << 0u << 0u;
    QTest::newRow("empty") << QVariant(QString()) << 0u << 0u << 0u;
    QTest::newRow("NULL") << QVariant() << 0u << 0u << 0u;
}

void tst_EmployeeRecord::dbLoadPeople_keyComesFromPamId()
{
    QFETCH(QVariant, pamId);
    QFETCH(uint, osobniCislo);
    QFETCH(uint, poradoveCisloPP);
    QFETCH(uint, key);
    WorkerFixture f;
    // The column pid of the row is not looked at.
    f.script.on(QStringLiteral("FROM people p"))
        .withRows(lines({"pid", "pamId", "title", "name", "surname", "title2", "phone", "begin",
                         "end", "rsBegin", "rsEnd", "rsText", "calendarID", "number"}),
                  {{555, pamId, QVariant(), QStringLiteral("Ján"), QStringLiteral("Novák"),
                    QVariant(), QVariant(), 1425164400, QVariant(), QVariant(), QVariant(),
                    QVariant(), QVariant(), QVariant()}});
    QVERIFY(f.worker.dbLoadPeople());
    QCOMPARE(f.peer.dbPeople.keys(), QList<uint> {key});
    const EmployeeRecord person = f.peer.dbPeople.value(key);
    QCOMPARE(person.osobniCislo, osobniCislo);
    QCOMPARE(person.poradoveCisloPP, poradoveCisloPP);
    f.log.clear();
}

int main(int argc, char **argv)
{
    // A system whose dates can be told from those of every default.
    qunsetenv("LC_ALL");
    qputenv("LC_CTYPE", "C.UTF-8");
    qputenv("LC_TIME", "en_US");
    QCoreApplication application(argc, argv);
    tst_EmployeeRecord test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_employeerecord.moc"
