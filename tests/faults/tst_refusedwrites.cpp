// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A pass on a server that answers and does not write: read only, or without room.
#include "support/faults/faultround.h"
#include "support/patience.h"

#include <QFileInfo>
#include <QtTest>

namespace {

/// Each writing call that comes to its turn when all of them fail.
Fault allWrites()
{
    return only(
        QStringLiteral("A.insert B.update B.correction B.reset B.planned B.reopened C.insert "
                       "1.join 2.join cleared")
            .split(QLatin1Char(' ')));
}

} // namespace

class tst_RefusedWrites : public FaultFixture
{
    Q_OBJECT

private Q_SLOTS:
    void readOnlyServer_writesNothing();
    void fullTablespace_writesNothing();

private:
    void restart(const QString &tablespace);
};

/// The force variable stays set as well, so that the first tick after the end of it is forced.
void tst_RefusedWrites::readOnlyServer_writesNothing()
{
    FaultRound round(*database);
    const QStringList before = round.company.content();
    database->execute(QStringLiteral("SET GLOBAL read_only = 1"));
    const Refusal refusal {QStringLiteral("1290"),
                           QStringLiteral("The MariaDB server is running with the --read-only "
                                          "option so it cannot execute this statement QMYSQL.*")};
    round.comparePass(*undisturbed, allWrites(), refusal, [&] {
        database->execute(QStringLiteral("SET GLOBAL read_only = 0"));
        QCOMPARE(contentDifference(before, round.company.content()), QStringList());
    });
}

/// A tablespace that may not grow, as on a full disk. The server keeps the old values of a
/// transaction there, too, so that nothing at all can be written.
void tst_RefusedWrites::fullTablespace_writesNothing()
{
    const QString file = database->value(QStringLiteral("SELECT @@datadir"))
        + QStringLiteral("ibdata1");
    database->execute(QStringLiteral("SET GLOBAL innodb_file_per_table = 0"));
    database->execute(QStringLiteral("CREATE TABLE filler (text LONGTEXT) ENGINE = InnoDB"));
    restart(QStringLiteral("ibdata1:%1M").arg(QFileInfo(file).size() / (1024 * 1024)));

    FaultRound round(*database);
    const QStringList before = round.company.content();
    // What the server tidies up would make room again.
    database->execute(QStringLiteral("SET GLOBAL innodb_purge_rseg_truncate_frequency = 1"));
    QTRY_COMPARE_WITH_TIMEOUT(
        database->value(QStringLiteral("SELECT variable_value FROM "
                                       "information_schema.global_status WHERE "
                                       "variable_name = 'INNODB_HISTORY_LIST_LENGTH'")),
        QStringLiteral("0"), longestWait);
    QString error;
    while (database->server().execute(
        database->databaseName(),
        QStringLiteral("INSERT INTO filler VALUES (REPEAT('x', 1000000))"), &error)) {
    }
    QVERIFY2(error.contains(QStringLiteral("The table 'filler' is full")), qPrintable(error));

    const Refusal refusal {QStringLiteral("1114"),
                           QStringLiteral("The table '[a-z_]+' is full QMYSQL.*")};
    Fault fault = allWrites();
    // Of nobody but the uid 0 there is nothing to write.
    fault.ids.removeOne(QStringLiteral("1.join"));
    round.comparePass(*undisturbed, fault, refusal, [&] {
        QCOMPARE(contentDifference(before, round.company.content()), QStringList());
        restart(QStringLiteral("ibdata1:12M:autoextend"));
        database->setClock(companyNow().toSecsSinceEpoch());
    });
    database->execute(QStringLiteral("DROP TABLE filler"));
}

/// With another size of the tablespace.
void tst_RefusedWrites::restart(const QString &tablespace)
{
    database->server().stop();
    database->server().setServerOptions({QStringLiteral("--innodb-doublewrite=0"),
                                         QStringLiteral("--innodb-data-file-path=") + tablespace});
    database->restart();
}

QTEST_GUILESS_MAIN(tst_RefusedWrites)
#include "tst_refusedwrites.moc"
