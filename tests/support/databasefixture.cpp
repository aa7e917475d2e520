// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The base of test classes whose meaning lies in the database.
#include "support/databasefixture.h"

#include <QSqlQuery>
#include <QtTest>

DatabaseFixture::DatabaseFixture(TestDatabase::Content databaseContent) :
    content(databaseContent)
{ }

DatabaseFixture::DatabaseFixture(const QDateTime &moment) :
    content(TestDatabase::Empty),
    firstMoment(moment)
{ }

void DatabaseFixture::initTestCase()
{
    if (firstMoment.isValid())
        clock = std::make_unique<MachineClock>(firstMoment);
    database = std::make_unique<TestDatabase>(content);
    QVERIFY2(database->error().isEmpty(), qPrintable(database->error()));
    prepare();
}

void DatabaseFixture::cleanupTestCase()
{
    release();
    database.reset();
    clock.reset();
}

void DatabaseFixture::setMoment(const QDateTime &moment)
{
    clock->set(moment);
    database->setClock(moment.toSecsSinceEpoch());
}

void ConnectionFixture::prepare()
{
    handle = database->handle();
    QVERIFY(handle.open());
}

void ConnectionFixture::release()
{
    const QString name = handle.connectionName();
    handle = QSqlDatabase();
    QSqlDatabase::removeDatabase(name);
}

void ConnectionFixture::init()
{
    database->clear();
    setClock(1700000000);
    begin();
    log = std::make_unique<EventLog>();
}

void ConnectionFixture::cleanup()
{
    log.reset();
    end();
}

void ConnectionFixture::setClock(qint64 seconds)
{
    QSqlQuery query(handle);
    QVERIFY(query.exec(QStringLiteral("SET timestamp = %1").arg(seconds)));
}
