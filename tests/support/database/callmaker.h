// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// One call of each kind, for tests of drivers.
#pragma once

#include "host/database/databasecall.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtTest>

/// A handle, and a query with a prepared statement that takes one value.
class CallMaker
{
public:
    /// The handle is open.
    explicit CallMaker(const QSqlDatabase &handle) :
        query(handle),
        database(handle)
    {
        query.prepare(QStringLiteral("UPDATE t SET a = :a"));
        query.bindValue(QStringLiteral(":a"), 5);
    }

    /// Rows of data: the kind of each call that can fail, and its text.
    static void addRows()
    {
        QTest::addColumn<DatabaseCall::Kind>("kind");
        QTest::addColumn<QString>("text");
        for (int i = DatabaseCall::Open; i <= DatabaseCall::Rollback; ++i) {
            const auto kind = static_cast<DatabaseCall::Kind>(i);
            if (kind != DatabaseCall::Close)
                QTest::newRow(qPrintable(textOf(kind))) << kind << textOf(kind);
        }
    }

    /// Whether the call succeeded.
    bool make(DatabaseCall::Kind kind)
    {
        switch (kind) {
        case DatabaseCall::Open:
            database.close();
            return database.open();
        case DatabaseCall::Exec:
            return query.exec(QStringLiteral("SELECT 1"));
        case DatabaseCall::Prepare:
            return query.prepare(QStringLiteral("SELECT 1"));
        case DatabaseCall::Run:
            return query.exec();
        case DatabaseCall::Begin:
            return database.transaction();
        case DatabaseCall::Commit:
            return database.commit();
        case DatabaseCall::Rollback:
            return database.rollback();
        case DatabaseCall::Close:
            break;
        }
        return false;
    }

    /// Of the query if it made the last call of this kind, else of the handle.
    QSqlError errorOf(DatabaseCall::Kind kind) const
    {
        return DatabaseCall {kind, {}, {}}.errorType() == QSqlError::StatementError
            ? query.lastError()
            : database.lastError();
    }

    QSqlQuery query;

private:
    static QString textOf(DatabaseCall::Kind kind)
    {
        const bool run = kind == DatabaseCall::Run;
        return DatabaseCall {kind, QStringLiteral("SELECT 1"),
                             run ? QVector<DatabaseCall::Value> {{QStringLiteral(":a"), 5}}
                                 : QVector<DatabaseCall::Value>()}
            .text();
    }

    QSqlDatabase database;
};

Q_DECLARE_METATYPE(DatabaseCall::Kind)
