// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Which call waits for its answer, asked while it waits.
#include "host/database/answeringdriver.h"
#include "host/database/callwatch.h"

#include <QSqlQuery>
#include <QtTest>

class tst_CallWatch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void pending_isWhatWaits();
    void pending_ofAClone();
    void pending_hidesTextsOfTheExport_data();
    void pending_hidesTextsOfTheExport();

private:
    QStringList seen; ///< what waited whenever the database was at work
    QDateTime since;
    CallWatch watch;
    // A database that looks at the watch whenever it is asked.
    RegisteredDriver driver = answeringDriver([this](const DatabaseCall &) {
        seen.append(watch.pending().text);
        since = watch.pending().since;
        return std::make_shared<const DatabaseAnswer>();
    });
    QSqlDatabase handle = watch.watched(driver.addHandle(QStringLiteral("inner")));
};

void tst_CallWatch::init()
{
    QVERIFY(handle.open());
    seen.clear();
}

void tst_CallWatch::pending_isWhatWaits()
{
    handle.close();
    QVERIFY(handle.open());
    QSqlQuery query(handle);
    QVERIFY(query.exec(QStringLiteral("SELECT  pid\nFROM people")));
    QVERIFY(query.prepare(QStringLiteral("SELECT ?")));
    query.addBindValue(QStringLiteral("Novák"));
    QVERIFY(query.exec());
    QVERIFY(handle.transaction() && handle.commit());
    QVERIFY(handle.transaction() && handle.rollback());
    const QStringList expected {QStringLiteral("CLOSE"),
                                QStringLiteral("OPEN"),
                                QStringLiteral("SELECT pid FROM people"),
                                QStringLiteral("SELECT ?"),
                                QStringLiteral("SELECT ?"),
                                QStringLiteral("BEGIN"),
                                QStringLiteral("COMMIT"),
                                QStringLiteral("BEGIN"),
                                QStringLiteral("ROLLBACK")};
    QCOMPARE(seen, expected);
    QVERIFY(since.isValid() && since <= QDateTime::currentDateTime());
    QCOMPARE(since.timeSpec(), Qt::OffsetFromUTC);
    QCOMPARE(watch.pending().text, QString());
}

void tst_CallWatch::pending_ofAClone()
{
    const QString name = QStringLiteral("clone");
    {
        QSqlDatabase clone = QSqlDatabase::cloneDatabase(handle, name);
        QVERIFY(clone.open());
        QSqlQuery(clone).exec(QStringLiteral("SELECT 7"));
    }
    QCOMPARE(seen.value(1), QStringLiteral("SELECT 7"));
    QSqlDatabase::removeDatabase(name);
}

void tst_CallWatch::pending_hidesTextsOfTheExport_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QString>("text");
    QTest::newRow("several") << QStringLiteral(
        "UPDATE people SET name='Eva', surname='Novák' WHERE pid=71")
                             << QStringLiteral("UPDATE people SET name='…' WHERE pid=71");
    QTest::newRow("with an apostrophe")
        << QStringLiteral("UPDATE people SET surname='D'Arc' WHERE pid=71")
        << QStringLiteral("UPDATE people SET surname='…' WHERE pid=71");
    QTest::newRow("without an end")
        << QStringLiteral("SELECT 1, 'Novák") << QStringLiteral("SELECT 1, '…");
    QTest::newRow("long") << QStringLiteral("SELECT ") + QString(200, QLatin1Char('x'))
                          << QStringLiteral("SELECT %1…").arg(QString(112, QLatin1Char('x')));
    QTest::newRow("control characters")
        << QStringLiteral("SELECT \x1b[2J") << QStringLiteral("SELECT \\x1b[2J");
}

void tst_CallWatch::pending_hidesTextsOfTheExport()
{
    QFETCH(QString, statement);
    QFETCH(QString, text);
    QSqlQuery(handle).exec(statement);
    QCOMPARE(seen, QStringList(text));
}

QTEST_GUILESS_MAIN(tst_CallWatch)
#include "tst_callwatch.moc"
