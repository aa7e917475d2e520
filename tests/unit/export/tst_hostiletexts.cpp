// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Export cells that nobody should write, on their whole way into the statements which the database
// receives: numbers at their limits, dates, texts that break a statement.
//
// What is tested elsewhere:
//
// | Cells to fields: numbers, balances, texts, dates in every form | tst_ImportCells           |
// | Dates of a record to statements                                | tst_SqlValues, tst_People |
// | The balance at its limits                                      | tst_RecordFund            |
// | A marker that an earlier text completes                        | tst_People                |
#include "support/localseconds.h"
#include "support/workerfixture.h"

#include <QtTest>

namespace {

enum Column {
    OsobniCislo,
    PoradoveCisloPP,
    Titul,
    Jmeno,
    Prijmeni,
    TitulZa,
    Telefon,
    DatumNastupu,
    DatumVystupu,
    Stredisko,
    StrediskoPopis,
    Kalendar,
    KalendarPlatnostOd,
    TypPracovnihoPomeru
};

/// The 18 cells of an employee of branch 7, calendar 3.
QStringList cells()
{
    return lines({"1234", "1", "Ing.", "Ján", "Novák", "PhD.", "0905", "2015-03-01 00:00:00.000",
                  "", "7", "Sklad", "3", "2015-03-01 00:00:00.000", "11", "0", "0", "12.5", "0"});
}

QStringList cellsWith(int column, const QString &cell)
{
    QStringList all = cells();
    all[column] = cell;
    return all;
}

QString day(const QDate &date)
{
    return QString::number(localSeconds(date));
}

/// What stands between the brackets of VALUES() but for the two keys, of an unchanged cells().
struct Values
{
    QStringList texts = lines({"Ing.", "Ján", "Novák", "PhD.", "0905"});
    QString begin = day(QDate(2015, 3, 1));
    QString end = QStringLiteral("NULL");
    QString type = QStringLiteral("1");
    QString calendar = QStringLiteral("3");
    QString branch = QStringLiteral("70");
    QString pid = QStringLiteral("12341");
    QString pamId = QStringLiteral("1234.1");
};

// Neither of the two is put together with arg(): the texts hold markers.

QString insertionOf(const QString &values)
{
    return QStringLiteral(
               "sql exec INSERT INTO people (pid, pamId, title, name, surname, title2, phone, "
               "begin, end, created, rsBegin, rsEnd, rsText, type, did, calendarID, bid) VALUES(")
        + values
        + QStringLiteral(") ON DUPLICATE KEY UPDATE pamId=VALUES(pamId), title=VALUES(title), "
                         "name=VALUES(name), surname=VALUES(surname), title2=VALUES(title2), "
                         "phone=VALUES(phone), begin=VALUES(begin), end=VALUES(end), "
                         "edited=VALUES(created), status=1, type=VALUES(type), did=1");
}

QString insertion(const Values &values)
{
    return insertionOf(QStringLiteral("'") + values.pid + QStringLiteral("', '") + values.pamId
                       + QStringLiteral("', '") + values.texts.join(QStringLiteral("', '"))
                       + QStringLiteral("', ") + values.begin + QStringLiteral(", ") + values.end
                       + QStringLiteral(", UNIX_TIMESTAMP(), NULL, NULL, '', ") + values.type
                       + QStringLiteral(", 1, ") + values.calendar + QStringLiteral(", ")
                       + values.branch);
}

/// The texts with the columns in front of them.
QString assignments(const QStringList &texts)
{
    return QStringLiteral("title='") + texts.at(0) + QStringLiteral("', name='") + texts.at(1)
        + QStringLiteral("', surname='") + texts.at(2) + QStringLiteral("', title2='") + texts.at(3)
        + QStringLiteral("', phone='") + texts.at(4) + QStringLiteral("', ");
}

QString update(const Values &values)
{
    return QStringLiteral("sql exec UPDATE people SET pamId=") + values.pamId + QStringLiteral(", ")
        + assignments(values.texts) + QStringLiteral("begin=") + values.begin
        + QStringLiteral(", end=") + values.end
        + QStringLiteral(", edited=UNIX_TIMESTAMP(), editor=0, rsBegin=NULL, rsEnd=NULL, "
                         "rsText='', type=")
        + values.type + QStringLiteral(", did=1, calendarID=") + values.calendar
        + QStringLiteral(", bid=") + values.branch + QStringLiteral("  WHERE pid=") + values.pid;
}

/// All statements of a pass over a file of this line. The branches 7 and 4294967295 are bid 70 and
/// 71. With `known` the database holds the person under other names.
QStringList pass(const QStringList &line, bool known)
{
    WorkerFixture f;
    f.init();
    f.script.on(QStringLiteral("FROM branches WHERE number"))
        .withRows(lines({"bid", "number"}), {{70, 7}, {71, 4294967295u}});
    f.script.on(QStringLiteral("LEFT JOIN groups g")).withRows(lines({"gid"}), {{13}});
    // One row for each key that a test uses.
    QVector<QVariantList> people;
    for (const char *pamId : {"1234.1", "429496729.5", "429496729.6", "4294967295.4294967295"})
        people.append({0, QString::fromLatin1(pamId), QString(), QStringLiteral("another")});
    if (known)
        f.script.on(QStringLiteral("FROM people p LEFT JOIN"))
            .withRows(lines({"pid", "pamId", "title", "name"}), people);
    f.writeExport({line.join(QLatin1Char('|'))});
    f.tick();
    return f.log.takeStatements();
}

QStringList inserted(const QStringList &line)
{
    return pass(line, false).filter(QStringLiteral("INSERT INTO people "));
}

QStringList updated(const QStringList &line)
{
    return pass(line, true).filter(QStringLiteral("UPDATE people SET "));
}

} // namespace

class tst_HostileTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void texts_standAsTheyAre_data();
    void texts_standAsTheyAre();
    void texts_highMarkersAreFilled_data();
    void texts_highMarkersAreFilled();
    void texts_lowMarkersMoveAllThatFollows_data();
    void texts_lowMarkersMoveAllThatFollows();
    void texts_descriptionOfTheBranchReachesNoStatement_data();
    void texts_descriptionOfTheBranchReachesNoStatement();
    void numbers_data();
    void numbers();
    void dates_data();
    void dates();
    void dates_skippedByAClockChange();
    void dates_calendarSkippedByAClockChangeHasNoMonth();
};

const int textColumns[] = {Titul, Jmeno, Prijmeni, TitulZa, Telefon};

void tst_HostileTexts::texts_standAsTheyAre_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("text");
    for (const int column : textColumns) {
        for (const char *text : {"'",
                                 "''",
                                 "O'Hara",
                                 "\\",
                                 "\\'",
                                 "\"",
                                 "`",
                                 "-- ",
                                 "#",
                                 "/* */",
                                 "/*",
                                 ";",
                                 "'); DROP TABLE people; -- ",
                                 "NULL",
                                 "%",
                                 "%%",
                                 "%a",
                                 "%s%n",
                                 "100 %",
                                 "%99",
                                 "%L",
                                 ":name",
                                 "?",
                                 "\t",
                                 "ľ\xE2\x80\xAE",
                                 "\x7F"}) {
            QTest::newRow(
                qPrintable(QStringLiteral("column %1: ").arg(column) + QString::fromUtf8(text)))
                << column << QString::fromUtf8(text);
        }
    }
}

void tst_HostileTexts::texts_standAsTheyAre()
{
    QFETCH(int, column);
    QFETCH(QString, text);
    Values values;
    values.texts[column - Titul] = text;
    QCOMPARE(inserted(cellsWith(column, text)), QStringList {insertion(values)});
    QCOMPARE(updated(cellsWith(column, text)), QStringList {update(values)});
}

void tst_HostileTexts::texts_highMarkersAreFilled_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("inInsert");
    QTest::addColumn<QString>("inUpdate");
    const QString begin = day(QDate(2015, 3, 1));
    for (const int column : textColumns) {
        const auto row = [column](const char *text, const QString &inInsert,
                                  const QString &inUpdate) {
            QTest::newRow(
                qPrintable(QStringLiteral("column %1: ").arg(column) + QLatin1String(text)))
                << column << QString::fromLatin1(text) << inInsert << inUpdate;
        };
        // The place is that of another value in the one statement and in the other.
        row("%8", begin, QStringLiteral("NULL"));
        row("%9", QStringLiteral("NULL"), QStringLiteral("12341"));
        row("a%12b", QStringLiteral("ab"), QStringLiteral("ab"));
        row("%13", QStringLiteral("1"), QStringLiteral("1"));
        row("%15", QStringLiteral("3"), QStringLiteral("3"));
        row("%16", QStringLiteral("70"), QStringLiteral("70"));
        // Two digits at most belong to a marker, and an L in between.
        row("%160", QStringLiteral("700"), QStringLiteral("700"));
        row("%L16", QStringLiteral("70"), QStringLiteral("70"));
        row("%%16", QStringLiteral("%70"), QStringLiteral("%70"));
    }
}

void tst_HostileTexts::texts_highMarkersAreFilled()
{
    QFETCH(int, column);
    QFETCH(QString, text);
    QFETCH(QString, inInsert);
    QFETCH(QString, inUpdate);
    Values values;
    values.texts[column - Titul] = inInsert;
    QCOMPARE(inserted(cellsWith(column, text)), QStringList {insertion(values)});
    values.texts[column - Titul] = inUpdate;
    QCOMPARE(updated(cellsWith(column, text)), QStringList {update(values)});
}

void tst_HostileTexts::texts_lowMarkersMoveAllThatFollows_data()
{
    QTest::addColumn<QString>("marker");
    QTest::addColumn<int>("column");
    QTest::addColumn<QStringList>("texts");
    for (const char *marker : {"%0", "%1"}) {
        const auto row = [marker](const char *name, int column, const QStringList &texts) {
            QTest::newRow(qPrintable(QLatin1String(marker) + QStringLiteral(" in the ")
                                     + QLatin1String(name)))
                << QString::fromLatin1(marker) << column << texts;
        };
        row("title", Titul, lines({"Ján", "Novák", "PhD.", "0905", "BEGIN"}));
        row("name", Jmeno, lines({"Ing.", "Novák", "PhD.", "0905", "BEGIN"}));
        row("surname", Prijmeni, lines({"Ing.", "Ján", "PhD.", "0905", "BEGIN"}));
        row("second title", TitulZa, lines({"Ing.", "Ján", "Novák", "0905", "BEGIN"}));
        row("phone", Telefon, lines({"Ing.", "Ján", "Novák", "PhD.", "BEGIN"}));
    }
}

/// A marker below all others that are open takes the next value, and each later value
/// stands one place up to the end, where the last place stays open.
void tst_HostileTexts::texts_lowMarkersMoveAllThatFollows()
{
    QFETCH(QString, marker);
    QFETCH(int, column);
    QFETCH(QStringList, texts);
    texts.last() = day(QDate(2015, 3, 1));
    const QStringList line = cellsWith(column, marker);
    QCOMPARE(inserted(line),
             QStringList {insertionOf(QStringLiteral("'12341', '1234.1', '")
                                      + texts.join(QStringLiteral("', '"))
                                      + QStringLiteral("', NULL, NULL, UNIX_TIMESTAMP(), NULL, , "
                                                       "'1', 1, 3, 70, %16"))});
    QCOMPARE(updated(line),
             QStringList {QStringLiteral("sql exec UPDATE people SET pamId=1234.1, ")
                          + assignments(texts)
                          + QStringLiteral("begin=NULL, end=12341, edited=UNIX_TIMESTAMP(), "
                                           "editor=0, rsBegin=NULL, rsEnd=, rsText='1', type=1, "
                                           "did=3, calendarID=70, bid=%16  WHERE pid=NULL")});
}

void tst_HostileTexts::texts_descriptionOfTheBranchReachesNoStatement_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text :
         {"O'Hara's", "\\ store", "-- store", "/* store", "%1 store", "%16 store"})
        QTest::newRow(text) << QString::fromLatin1(text);
}

void tst_HostileTexts::texts_descriptionOfTheBranchReachesNoStatement()
{
    QFETCH(QString, text);
    for (const bool known : {false, true}) {
        const QStringList statements = pass(cellsWith(StrediskoPopis, text), known);
        QVERIFY(statements.size() > 5);
        QCOMPARE(statements, pass(cells(), known));
    }
}

void tst_HostileTexts::numbers_data()
{
    QTest::addColumn<QStringList>("line");
    QTest::addColumn<QString>("insertion");
    QTest::addColumn<QString>("update");
    const auto row = [](const char *name, const QStringList &line, const Values &values) {
        QTest::newRow(name) << line << insertion(values) << update(values);
    };
    const QString largest = QStringLiteral("4294967295");
    const QString beyond = QStringLiteral("4294967296");

    Values values;
    values.pid = largest;
    values.pamId = QStringLiteral("429496729.5");
    QStringList line = cellsWith(OsobniCislo, QStringLiteral("429496729"));
    line[PoradoveCisloPP] = QStringLiteral("5");
    row("largest key", line, values);
    values.pid = QStringLiteral("0");
    values.pamId = QStringLiteral("429496729.6");
    line[PoradoveCisloPP] = QStringLiteral("6");
    row("key beyond 32 bits", line, values);
    values.pamId = QStringLiteral("4294967295.4294967295");
    line[OsobniCislo] = largest;
    line[PoradoveCisloPP] = largest;
    row("largest numbers", line, values);

    values = Values();
    values.branch = QStringLiteral("71");
    row("largest branch", cellsWith(Stredisko, largest), values);
    values.branch = QStringLiteral("NULL");
    row("branch beyond 32 bits", cellsWith(Stredisko, beyond), values);
    row("branch below 0", cellsWith(Stredisko, QStringLiteral("-7")), values);
    values = Values();
    values.calendar = largest;
    row("largest calendar", cellsWith(Kalendar, largest), values);
    values.calendar = QStringLiteral("0");
    row("calendar beyond 32 bits", cellsWith(Kalendar, beyond), values);
    values = Values();
    values.type = QStringLiteral("4");
    row("type of which 16 bits are kept", cellsWith(TypPracovnihoPomeru, QStringLiteral("65587")),
        values);
    values.type = QStringLiteral("0");
    row("largest type", cellsWith(TypPracovnihoPomeru, largest), values);
    row("type beyond 32 bits", cellsWith(TypPracovnihoPomeru, QStringLiteral("4294967307")),
        values);
}

void tst_HostileTexts::numbers()
{
    QFETCH(QStringList, line);
    QFETCH(QString, insertion);
    QFETCH(QString, update);
    QCOMPARE(inserted(line), QStringList {insertion});
    QCOMPARE(updated(line), QStringList {update});
}

void tst_HostileTexts::dates_data()
{
    QTest::addColumn<QString>("cell");
    QTest::addColumn<QString>("begin"); // as first day
    QTest::addColumn<QString>("end"); // as last day
    const QString none = day(QDate(2000, 1, 1));
    const QString null = QStringLiteral("NULL");
    for (const char *cell :
         {"", "2031-03-31", "31.03.2031", "2031-02-29 00:00:00.000", "2031-03-31 24:00:00.000",
          "2031-03-31 00:00:00", "'2031-03-31'", "0000-00-00 00:00:00.000", "NULL", "%8"})
        QTest::newRow(*cell ? cell : "empty") << QString::fromLatin1(cell) << none << null;
    const QString beyond = QStringLiteral("4294967295");
    QTest::newRow("first of all") << QStringLiteral("0001-01-01 00:00:00.000") << beyond
                                  << QString();
    QTest::newRow("last before the epoch")
        << QStringLiteral("1969-12-30 23:59:59.999") << beyond << QString();
    QTest::newRow("last of all") << QStringLiteral("9999-12-31 00:00:00.000") << beyond
                                 << QString::number(localSeconds(QDate(10000, 1, 1)) - 1);
}

void tst_HostileTexts::dates()
{
    QFETCH(QString, cell);
    QFETCH(QString, begin);
    QFETCH(QString, end);
    Values values;
    values.begin = begin;
    QCOMPARE(inserted(cellsWith(DatumNastupu, cell)), QStringList {insertion(values)});
    QCOMPARE(updated(cellsWith(DatumNastupu, cell)), QStringList {update(values)});

    values = Values();
    values.end = end;
    const QStringList line = cellsWith(DatumVystupu, cell);
    if (end.isEmpty()) { // ended: nobody to be added
        QCOMPARE(inserted(line), QStringList());
        return;
    }
    QCOMPARE(inserted(line), QStringList {insertion(values)});
    QCOMPARE(updated(line), QStringList {update(values)});
}

void tst_HostileTexts::dates_skippedByAClockChange()
{
    struct Gap
    {
        const char *zone;
        QDate day;
    };
    // At two o'clock the clocks go to three.
    for (const Gap &gap : {Gap {"Europe/Bratislava", QDate(2031, 3, 30)},
                           Gap {"America/New_York", QDate(2031, 3, 9)}}) {
        const bool skipped = qgetenv("TZ") == gap.zone;
        const QString cell = gap.day.toString(QStringLiteral("yyyy-MM-dd 02:30:00.000"));
        Values values;
        values.begin = skipped ? day(QDate(2000, 1, 1)) : day(gap.day);
        QCOMPARE(inserted(cellsWith(DatumNastupu, cell)), QStringList {insertion(values)});
        QCOMPARE(updated(cellsWith(DatumNastupu, cell)), QStringList {update(values)});

        values = Values();
        if (!skipped)
            values.end = QString::number(localSeconds(gap.day.addDays(1)) - 1);
        QCOMPARE(inserted(cellsWith(DatumVystupu, cell)), QStringList {insertion(values)});
        QCOMPARE(updated(cellsWith(DatumVystupu, cell)), QStringList {update(values)});
    }
}

void tst_HostileTexts::dates_calendarSkippedByAClockChangeHasNoMonth()
{
    const bool skipped = qgetenv("TZ") == "Europe/Bratislava";
    const QStringList line = cellsWith(KalendarPlatnostOd,
                                       QStringLiteral("2031-03-30 02:30:00.000"));
    QCOMPARE(pass(line, false).filter(QStringLiteral("FROM groups_plan ")),
             QStringList {QStringLiteral("sql exec SELECT COUNT(*) FROM groups_plan WHERE gid = 13 "
                                         "AND uid = 0 AND since = ")
                          + (skipped ? QStringLiteral("0;") : QStringLiteral("203103;"))});
}

QTEST_GUILESS_MAIN(tst_HostileTexts)
#include "tst_hostiletexts.moc"
