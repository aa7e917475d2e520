// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The rights that the catalogue gives to each statement: with them it runs, without one it does
// not.
#include "support/catalogue/knownevents.h"
#include "support/catalogue/transcriptevents.h"
#include "support/testdatabase.h"

#include <QMap>
#include <QSqlError>
#include <QSqlQuery>
#include <QtTest>

#include <memory>

namespace {

/// A right on one table or routine, such as "SELECT ON people".
QStringList singleRights(const StatementFacts &facts)
{
    QStringList rights;
    for (const StatementNeed &need : facts.needs) {
        const bool calls = facts.access == StatementAccess::Calls;
        for (const QString &right : need.rights) {
            const QString kind = right != QLatin1String("EXECUTE") ? QString()
                : calls                                            ? QStringLiteral("PROCEDURE ")
                                                                   : QStringLiteral("FUNCTION ");
            rights.append(right + QStringLiteral(" ON ") + kind + need.object);
        }
    }
    return rights;
}

} // namespace

class tst_StatementRights : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void needs_areEnoughAndNeeded_data();
    void needs_areEnoughAndNeeded();
    void cleanupTestCase();

private:
    void grantOnly(const QStringList &rights);
    bool isDenied(const QString &statement);

    std::unique_ptr<TestDatabase> database;
    QSqlDatabase user;
};

void tst_StatementRights::initTestCase()
{
    database.reset(new TestDatabase(TestDatabase::Sample));
    QVERIFY2(database->error().isEmpty(), qPrintable(database->error()));
    user = database->handle();
    QVERIFY2(user.open(), qPrintable(user.lastError().text()));
}

/// The first text of each statement in the transcript; one that is prepared stands for all that it
/// can write.
void tst_StatementRights::needs_areEnoughAndNeeded_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("rights");
    KnownEvents known;
    QMap<PassStatement, QString> texts;
    const QStringList events = transcriptEvents();
    for (const QString &event : events) {
        if (!KnownEvents::isStatement(event))
            continue;
        const PassStatement statement = known.statement(event).statement;
        if (!texts.contains(statement))
            texts.insert(statement, known.statementText(event));
    }
    QCOMPARE(texts.size(), static_cast<int>(allStatements().size()));
    for (auto it = texts.constBegin(); it != texts.constEnd(); ++it) {
        QTest::addRow("%d: %s", static_cast<int>(it.key()), qPrintable(it->left(60)))
            << *it << singleRights(factsOf(it.key()));
    }
}

void tst_StatementRights::needs_areEnoughAndNeeded()
{
    QFETCH(QString, text);
    QFETCH(QStringList, rights);
    grantOnly(rights);
    QVERIFY2(!isDenied(text), qPrintable(text));
    for (const QString &right : qAsConst(rights)) {
        QStringList others = rights;
        others.removeOne(right);
        grantOnly(others);
        QVERIFY2(isDenied(text), qPrintable(right));
    }
}

void tst_StatementRights::cleanupTestCase()
{
    user.close();
}

/// One right that no statement of a pass needs keeps the database open to the user.
void tst_StatementRights::grantOnly(const QStringList &rights)
{
    database->execute(
        QStringLiteral("REVOKE ALL PRIVILEGES, GRANT OPTION FROM 'talvenhr'@'localhost'"));
    for (const QString &right : rights + QStringList {QStringLiteral("SELECT ON sections")})
        database->execute(QStringLiteral("GRANT %1 TO 'talvenhr'@'localhost'").arg(right));
}

/// Whether the server says that a right is missing. What the statement writes is undone.
bool tst_StatementRights::isDenied(const QString &statement)
{
    const QStringList denials {QStringLiteral("1142"), QStringLiteral("1143"),
                               QStringLiteral("1370")};
    user.transaction();
    QSqlQuery query(user);
    query.prepare(statement);
    if (statement.contains(QLatin1String(":name"))) {
        query.bindValue(QStringLiteral(":name"), QStringLiteral("name"));
        query.bindValue(QStringLiteral(":value"), QStringLiteral("value"));
    }
    query.exec();
    const bool denied = denials.contains(query.lastError().nativeErrorCode());
    query.finish();
    user.rollback();
    return denied;
}

QTEST_GUILESS_MAIN(tst_StatementRights)
#include "tst_statementrights.moc"
