// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A real server through the recording driver: neither the caller nor the server can tell.
#include "support/database/callnotes.h"
#include "support/database/experience.h"
#include "support/testdatabase.h"

#include <QtTest>

#include <memory>

class tst_RecordedServer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void callerAndServer_learnTheSameAsWithout();

private:
    /// What the caller learns, and then what the server was asked.
    QStringList learned(const QSqlDatabase &handle);

    std::unique_ptr<TestDatabase> database;
};

void tst_RecordedServer::initTestCase()
{
    database = std::make_unique<TestDatabase>();
    QVERIFY2(database->error().isEmpty(), qPrintable(database->error()));
    database->execute(QStringLiteral("SET GLOBAL log_output = 'TABLE'"));
    database->execute(QStringLiteral("SET GLOBAL general_log = 1"));
}

QStringList tst_RecordedServer::learned(const QSqlDatabase &handle)
{
    database->execute(QStringLiteral("TRUNCATE mysql.general_log"));
    const QStringList answers = experienceOf(
        handle, QStringLiteral("AUTO_INCREMENT")); // a word of this server
    // The server may write the end of a session later.
    return answers
        + database->rows(QStringLiteral("SELECT command_type, argument FROM mysql.general_log "
                                        "WHERE thread_id <> CONNECTION_ID() "
                                        "AND command_type <> 'Quit' ORDER BY event_time"));
}

void tst_RecordedServer::callerAndServer_learnTheSameAsWithout()
{
    QStringList notes;
    const RegisteredDriver driver = recordingDriver(QStringLiteral("QMYSQL"),
                                                    std::make_shared<CallNotes>(&notes));
    QSqlDatabase plain = database->handle();
    plain.setUserName(QStringLiteral("root"));
    const QStringList without = learned(plain);
    const QStringList with = learned(driver.addHandleTo(plain, QStringLiteral("recorded")));
    for (int i = 0; i < qMax(with.size(), without.size()); ++i)
        QCOMPARE(with.value(i), without.value(i));
    const QString all = without.join(QLatin1Char('\n'));
    QVERIFY(all.contains(QStringLiteral("Duplicate entry")));
    QVERIFY(all.contains(QStringLiteral("Query|ROLLBACK")));
    QCOMPARE(notes.filter(QStringLiteral("before run ")).size(), 6);
}

QTEST_GUILESS_MAIN(tst_RecordedServer)
#include "tst_recordedserver.moc"
