// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The catalogue of statements: which one a text is, whom it is about, and what it needs.
#include "host/catalogue/statements.h"
#include "support/eventlog.h"

#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QtTest>

#include <ctime>

namespace {

const char addition[]
    = "INSERT INTO people (pid, pamId, title, name, surname, title2, phone, begin, end, created, "
      "rsBegin, rsEnd, rsText, type, did, calendarID, bid) "
      "VALUES('10161', '1016.1', '%1', '%2', 'Malá', '', '', 1709247600, NULL, UNIX_TIMESTAMP(), "
      "NULL, NULL, '', 1, 4, 2, %3) ON DUPLICATE KEY UPDATE pamId=VALUES(pamId), "
      "title=VALUES(title), name=VALUES(name), surname=VALUES(surname), title2=VALUES(title2), "
      "phone=VALUES(phone), begin=VALUES(begin), end=VALUES(end), edited=VALUES(created), "
      "status=1, type=VALUES(type), did=1";
const char update[]
    = "UPDATE people SET pamId=1016.1, title='%1', name='%2', surname='Malá', title2='', phone='', "
      "begin=1709247600, end=NULL, edited=UNIX_TIMESTAMP(), editor=0, rsBegin=NULL, rsEnd=NULL, "
      "rsText='', type=1, did=4, calendarID=2, bid=%3  WHERE pid=10161";
const char preparedWrite[] = "INSERT INTO vars (name, value) VALUES(:name, :value) "
                             "ON DUPLICATE KEY UPDATE value=VALUES(value);";

QString filled(const char *statement, const char *title, const char *name, const char *branch)
{
    // Together: a marker in a text stays one.
    return QString::fromUtf8(statement).arg(QString::fromUtf8(title), QString::fromUtf8(name),
                                            QString::fromUtf8(branch));
}

NamedPeople pids(const QVector<uint> &ids)
{
    return {NamedPeople::Pid, ids};
}

NamedPeople uids(const QVector<uint> &ids)
{
    return {NamedPeople::Uid, ids};
}

QString readSource(const char *path)
{
    QFile file(QStringLiteral(TALVENHR_SOURCE_FOLDER "/") + QString::fromLatin1(path));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", path);
    return QString::fromUtf8(file.readAll());
}

/// What database/grants/plugin.sql grants: rights by object. Rights on columns count as rights.
QMap<QString, QSet<QString>> grantedRights()
{
    QString script = readSource("database/grants/plugin.sql");
    script.remove(QRegularExpression(QStringLiteral("--[^\n]*")));
    script.remove(QRegularExpression(QStringLiteral("\\([^)]*\\)")));
    QMap<QString, QSet<QString>> granted;
    auto grants = QRegularExpression(
                      QStringLiteral("GRANT ([A-Z, ]+?)\\s+ON (?:FUNCTION |PROCEDURE )?(\\w+) TO"))
                      .globalMatch(script);
    while (grants.hasNext()) {
        const QRegularExpressionMatch grant = grants.next();
        const QStringList rights = grant.captured(1).split(QLatin1Char(','));
        for (const QString &right : rights)
            granted[grant.captured(2)].insert(right.trimmed());
    }
    return granted;
}

} // namespace

Q_DECLARE_METATYPE(NamedPeople)
Q_DECLARE_METATYPE(PassStatement)

class tst_Statements : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void people_data();
    void people();
    void strangers_data();
    void strangers();
    void hostileTexts_data();
    void hostileTexts();
    void hostileTexts_takeTimeInProportion();
    void markers_moveNumbersButNotThePerson();
    void values_stand();
    void preparedStatement_isToldByItsValues();
    void needs_areGranted();
    void access_followsFromTheRights();
};

void tst_Statements::people_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<PassStatement>("statement");
    QTest::addColumn<NamedPeople>("people");
    const auto row = [](const char *name, PassStatement statement, const char *text,
                        const NamedPeople &people) {
        QTest::newRow(name) << QString::fromUtf8(text) << statement << people;
    };
    row("nobody", PassStatement::LeaveFund, "SELECT fid FROM funds WHERE iid = 3 AND unit=2;", {});
    row("a supervisor is not the person", PassStatement::AdminByNumber,
        "SELECT aid FROM admins WHERE personalNumber = 1001", {});
    row("pid", PassStatement::PersonForPam, "SELECT uid FROM people WHERE pid=10161",
        pids({10161}));
    row("pid beyond 32 bits", PassStatement::PersonForPam, "SELECT uid FROM people WHERE pid=0",
        pids({0}));
    row("uid behind other numbers", PassStatement::WriteCorrection,
        "INSERT INTO funds_move (type, day, month, value, fid, uid) "
        "VALUES(3, 1710716400, monthFromTimestamp(1710716400), -50, 2, 14) "
        "ON DUPLICATE KEY UPDATE value=VALUES(value)",
        uids({14}));
    row("before 1970", PassStatement::ReopenDays,
        "UPDATE atten SET ok = -1 WHERE `lock` =0 AND `man`=0 AND `date` >= -2209078800 AND uid =1",
        uids({1}));
    row("list", PassStatement::AddToBranch,
        "INSERT INTO brape (bid, uid, since) SELECT 2 bid, uid, UNIX_TIMESTAMP() since "
        "FROM people WHERE uid IN(14,0,15) ON DUPLICATE KEY UPDATE since=UNIX_TIMESTAMP()",
        uids({14, 0, 15}));
    row("list with blanks", PassStatement::NoticeToTerm,
        "INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) "
        "SELECT 7 tid, 'I' type, 'people_term' ref, 'uid' ref_col, `uid` ref_id, "
        "UNIX_TIMESTAMP() created, 2 flags FROM people WHERE status = 1 AND uid IN(14, 15);",
        uids({14, 15}));
    row("pairs", PassStatement::PutUnderAdmins,
        "INSERT INTO admins_people (aid, uid) VALUES (5, 14),(5, 15),(6, 14) "
        "ON DUPLICATE KEY UPDATE uid=VALUES(uid);",
        uids({14, 15, 14}));
}

void tst_Statements::people()
{
    QFETCH(QString, text);
    const ClassifiedStatement known = classifyStatement(text);
    QTEST(known.statement, "statement");
    QTEST(peopleIn(known), "people");
    QVERIFY(known.inPlace);
}

void tst_Statements::strangers_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << QString();
    QTest::newRow("another table") << "SELECT uid FROM persons WHERE pid=1";
    QTest::newRow("too short") << "SELECT uid FROM people WHERE pid=";
    QTest::newRow("too long") << "SELECT uid FROM people WHERE pid=1;";
    QTest::newRow("no number") << "SELECT uid FROM people WHERE pid=x";
    QTest::newRow("a negative pid") << "SELECT uid FROM people WHERE pid=-1";
    QTest::newRow("digits of another script")
        << QStringLiteral("SELECT uid FROM people WHERE pid=\u0661");
    QTest::newRow("0 where an id has to stand") << "CALL updateTermsSync(0, 2);";
    QTest::newRow("an empty list")
        << "INSERT INTO people_term (tid, uid) VALUES  ON DUPLICATE KEY UPDATE tid=VALUES(tid);";
    QTest::newRow("half a pair")
        << "INSERT INTO people_term (tid, uid) VALUES (1) ON DUPLICATE KEY UPDATE tid=VALUES(tid);";
    QTest::newRow("a second statement behind") << "CALL updateTermsSync(1, 2);DROP TABLE people";
}

void tst_Statements::strangers()
{
    QFETCH(QString, text);
    const ClassifiedStatement stranger = classifyStatement(text);
    QCOMPARE(stranger.statement, PassStatement::Unknown);
    QCOMPARE(peopleIn(stranger), NamedPeople());
    QVERIFY(factsOf(stranger.statement).needs.empty());
}

void tst_Statements::hostileTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<PassStatement>("statement");
    const auto rows = [](const char *name, const char *title, const char *first) {
        QTest::addRow("%s, added", name)
            << filled(addition, title, first, "NULL") << PassStatement::AddPerson;
        QTest::addRow("%s, updated", name)
            << filled(update, title, first, "NULL") << PassStatement::UpdatePerson;
    };
    rows("an apostrophe", "", "Sean O'Hara");
    rows("line breaks", "a\nb", "\r\n");
    rows("another person", "", "x' WHERE pid=10011 -- ");
    rows("the rest of the statement", "x', name='y', surname='z", "x', 'y', 'z");
    rows("another statement", "", "x'; CALL updateTermsSync(5, 2); -- ");
    rows("a whole statement", "UPDATE people SET pamId=1.1, title='", "', name='");
    rows("a list of keys", "VALUES('10011', '1001.1', '", "");
    rows("the end twice", "", "'  WHERE pid=10011', name='");
}

void tst_Statements::hostileTexts()
{
    QFETCH(QString, text);
    const ClassifiedStatement known = classifyStatement(text);
    QTEST(known.statement, "statement");
    QVERIFY(known.inPlace);
    QCOMPARE(peopleIn(known), pids({10161}));
}

void tst_Statements::hostileTexts_takeTimeInProportion()
{
    // Each text could end at any of a thousand places.
    const QByteArray ends = QByteArray("', name='', surname='', title2='', phone='").repeated(1000);
    const std::clock_t begin = std::clock();
    QCOMPARE(classifyStatement(filled(update, ends, ends, "x")).statement,
             PassStatement::UpdatePerson);
    QVERIFY2((std::clock() - begin) / CLOCKS_PER_SEC < 5,
             "the forms are matched in more than proportional time");
}

/// A title "%1" takes the name, and all that follow move up: the key at the end becomes another
/// number.
void tst_Statements::markers_moveNumbersButNotThePerson()
{
    QString moved = filled(update, "Jana", "Malá", "%16");
    moved.replace(QLatin1String("WHERE pid=10161"), QLatin1String("WHERE pid=NULL"));
    const ClassifiedStatement updated = classifyStatement(moved);
    QCOMPARE(updated.statement, PassStatement::UpdatePerson);
    QVERIFY(!updated.inPlace);
    QCOMPARE(peopleIn(updated), pids({10161}));

    const ClassifiedStatement added = classifyStatement(filled(addition, "Jana", "Malá", "%16"));
    QCOMPARE(added.statement, PassStatement::AddPerson);
    QVERIFY(!added.inPlace);
    QCOMPARE(peopleIn(added), pids({10161}));

    // No text of the export stands there, and none in front of the keys.
    QCOMPARE(classifyStatement(QStringLiteral("CALL updateTermsSync(%1, 2);")).statement,
             PassStatement::Unknown);
    moved.replace(QLatin1String("pamId=1016.1"), QLatin1String("pamId=%1"));
    QCOMPARE(classifyStatement(moved).statement, PassStatement::Unknown);
}

void tst_Statements::values_stand()
{
    const QStringList values = classifyStatement(filled(update, "Ing.", "Žofia", "3")).values;
    QCOMPARE(values,
             lines({"1016.1", "Ing.", "Žofia", "Malá", "", "", "1709247600", "NULL", "NULL", "NULL",
                    "", "1", "4", "2", "3", "10161"}));
    QCOMPARE(
        classifyStatement(
            QStringLiteral("SELECT value FROM vars WHERE name='exportPam.1.selPeople' LIMIT 1"))
            .values,
        lines({"exportPam.1.selPeople"}));
}

void tst_Statements::preparedStatement_isToldByItsValues()
{
    const QString named = QString::fromLatin1(preparedWrite);
    QString numbered = named;
    numbered.replace(QLatin1String(":name"), QLatin1String("?"));
    numbered.replace(QLatin1String(":value"), QLatin1String("?"));
    const QVariantList list {QStringLiteral("exportPam.1.selPeople"),
                             QStringLiteral("10011,10161")};
    const QVariantList flag {QStringLiteral("OQS.THRWorker.forceSync"), 0};
    for (const QString &text : {named, numbered}) {
        QCOMPARE(classifyStatement(text).statement, PassStatement::WriteVariable);
        QCOMPARE(peopleIn(classifyStatement(text)), NamedPeople());
        const ClassifiedStatement listing = classifyStatement(text, list);
        QCOMPARE(listing.statement, PassStatement::WritePamList);
        QCOMPARE(listing.values, lines({"exportPam.1.selPeople", "10011,10161"}));
        QCOMPARE(peopleIn(listing), pids({10161}));
        const ClassifiedStatement clearing = classifyStatement(text, flag);
        QCOMPARE(clearing.statement, PassStatement::ClearForceFlag);
        QCOMPARE(peopleIn(clearing), NamedPeople());
    }
}

void tst_Statements::needs_areGranted()
{
    const QMap<QString, QSet<QString>> granted = grantedRights();
    QVERIFY(granted.contains(QStringLiteral("updateTermsSync")));
    for (const StatementFacts &facts : allStatements()) {
        QVERIFY(!facts.needs.empty());
        for (const StatementNeed &need : facts.needs) {
            QVERIFY2(!need.rights.isEmpty(), qPrintable(need.object));
            for (const QString &right : need.rights)
                QVERIFY2(granted.value(need.object).contains(right),
                         qPrintable(right + QLatin1Char(' ') + need.object));
        }
    }
}

void tst_Statements::access_followsFromTheRights()
{
    QCOMPARE(factsOf(PassStatement::People).access, StatementAccess::Reads);
    QCOMPARE(factsOf(PassStatement::OpenDays).access, StatementAccess::Reads);
    QCOMPARE(factsOf(PassStatement::UpdateMonths).access, StatementAccess::Writes);
    QCOMPARE(factsOf(PassStatement::QueueNews).access, StatementAccess::Writes);
    QCOMPARE(factsOf(PassStatement::ClearForceFlag).access, StatementAccess::Writes);
    QCOMPARE(factsOf(PassStatement::CallUpdateTermsSync).access, StatementAccess::Calls);
}

QTEST_GUILESS_MAIN(tst_Statements)
#include "tst_statements.moc"
