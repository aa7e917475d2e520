// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A pass over texts that the server cannot take as they are: another character set than the
// plugin's, or too short a column.
#include "support/faults/faultround.h"

#include <QtTest>

class tst_CharacterSets : public FaultFixture
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void sessionCharset_isPutRight();
    void tableCharset_holdsTheName();
    void tableCharset_lacksLettersOnAStrictServer();
    void tableCharset_lacksLettersOnALenientServer();
    void textLongerThanItsColumn_data();
    void textLongerThanItsColumn();

private:
    void setTableCharset(const QString &charset);
    void setSessionCharset(const QString &charset);
    void setSurnameLength(int characters);
    QStringList names();
    /// The export with another name for C, who is new.
    static QStringList exportNaming(const ServerCompany &company);
};

void tst_CharacterSets::cleanup()
{
    setTableCharset(QStringLiteral("utf8mb4"));
    setSurnameLength(128);
    setSessionCharset(QStringLiteral("utf8mb4"));
    database->execute(QStringLiteral("SET GLOBAL sql_mode = DEFAULT"));
}

void tst_CharacterSets::setTableCharset(const QString &charset)
{
    database->execute(
        QStringLiteral("ALTER TABLE people CONVERT TO CHARACTER SET %1").arg(charset));
}

/// For new connections.
void tst_CharacterSets::setSessionCharset(const QString &charset)
{
    for (const char *variable : {"client", "connection", "results", "server"})
        database->execute(QStringLiteral("SET GLOBAL character_set_%1 = %2")
                              .arg(QLatin1String(variable), charset));
}

void tst_CharacterSets::setSurnameLength(int characters)
{
    database->execute(
        QStringLiteral("ALTER TABLE people MODIFY surname VARCHAR(%1) NOT NULL DEFAULT ''")
            .arg(characters));
}

QStringList tst_CharacterSets::names()
{
    return database->rows(QStringLiteral("SELECT name, surname FROM people WHERE type = 4"));
}

QStringList tst_CharacterSets::exportNaming(const ServerCompany &company)
{
    QStringList file = company.exportLines();
    file.last().replace(QStringLiteral("Ján|Novák"), QStringLiteral("Ľudmila|Ďurišová"));
    return file;
}

/// The driver asks for UTF-8 itself, whatever the server has chosen.
void tst_CharacterSets::sessionCharset_isPutRight()
{
    FaultRound round(*database);
    database->execute(
        QStringLiteral("SET GLOBAL init_connect = 'SET timestamp = %1; SET NAMES latin1'")
            .arg(companyNow().toSecsSinceEpoch()));
    setSessionCharset(QStringLiteral("latin1"));
    round.f.writeExport(exportNaming(round.company));
    QCOMPARE(complaints(round.pass()), QStringList());
    QCOMPARE(names(), QStringList {QStringLiteral("Ľudmila|Ďurišová")});
}

void tst_CharacterSets::tableCharset_holdsTheName()
{
    FaultRound round(*database);
    setTableCharset(QStringLiteral("cp1250"));
    round.f.writeExport(exportNaming(round.company));
    QCOMPARE(complaints(round.pass()), QStringList());
    QCOMPARE(names(), QStringList {QStringLiteral("Ľudmila|Ďurišová")});
}

void tst_CharacterSets::tableCharset_lacksLettersOnAStrictServer()
{
    FaultRound round(*database);
    setTableCharset(QStringLiteral("latin1"));
    round.f.writeExport(exportNaming(round.company));
    const QStringList said = complaints(round.pass());
    QCOMPARE(said.size(), 1);
    QVERIFY2(
        said.first().startsWith(
            QStringLiteral("critical THRWorker::dbAddPerson(9003.1) - SQL ERROR: "
                           "Incorrect string value: '\\xC4\\xBDudmi"))
            && said.first().contains(QStringLiteral("for column `attendance`.`people`.`name`")),
        qPrintable(said.first()));
    QCOMPARE(names(), QStringList());

    setTableCharset(QStringLiteral("utf8mb4"));
    round.recover();
    QCOMPARE(names(), QStringList {QStringLiteral("Ľudmila|Ďurišová")});
}

/// Not a word of it; the next forced pass with the right letters finds that the row differs.
void tst_CharacterSets::tableCharset_lacksLettersOnALenientServer()
{
    FaultRound round(*database);
    setTableCharset(QStringLiteral("latin1"));
    database->execute(QStringLiteral("SET GLOBAL sql_mode = ''"));
    round.f.writeExport(exportNaming(round.company));
    QCOMPARE(complaints(round.pass()), QStringList());
    QCOMPARE(names(), QStringList {QStringLiteral("?udmila|?urišová")});

    setTableCharset(QStringLiteral("utf8mb4"));
    round.recover();
    QCOMPARE(names(), QStringList {QStringLiteral("Ľudmila|Ďurišová")});
}

void tst_CharacterSets::textLongerThanItsColumn_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QStringList>("surnames");
    QTest::addColumn<QStringList>("said");
    const QString cut(128, QLatin1Char('x'));
    QTest::newRow("strict server")
        << QStringLiteral("STRICT_TRANS_TABLES") << lines({"Novák", "Novák"})
        << lines({"critical THRWorker::dbUpdatePerson(9002.1) - SQL ERROR: Data too long for "
                  "column 'surname' at row 1 QMYSQL: Unable to execute query",
                  "critical THRWorker::dbAddPerson(9003.1) - SQL ERROR: Data too long for column "
                  "'surname' at row 1 QMYSQL: Unable to execute query"});
    QTest::newRow("lenient server")
        << QString() << QStringList {QStringLiteral("Novák"), cut, cut} << QStringList();
}

void tst_CharacterSets::textLongerThanItsColumn()
{
    QFETCH(QString, mode);
    QFETCH(QStringList, surnames);
    QFETCH(QStringList, said);
    FaultRound round(*database);
    database->execute(QStringLiteral("SET GLOBAL sql_mode = '%1'").arg(mode));
    const QString surname(129, QLatin1Char('x'));
    QStringList file = round.company.exportLines();
    file[2].replace(QStringLiteral("Novák"), surname);
    file[3].replace(QStringLiteral("Novák"), surname);
    round.f.writeExport(file);
    QCOMPARE(complaints(round.pass()), said);
    const QString stored = QStringLiteral("SELECT surname FROM people ORDER BY pid");
    QCOMPARE(database->rows(stored), surnames);

    setSurnameLength(200);
    round.recover();
    QCOMPARE(database->rows(stored), (QStringList {QStringLiteral("Novák"), surname, surname}));
    database->execute(QStringLiteral("DELETE FROM people"));
}

QTEST_GUILESS_MAIN(tst_CharacterSets)
#include "tst_charactersets.moc"
