// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The tables of a schema as they are.
#pragma once

#include "host/base/failure.h"

#include <QSqlDatabase>
#include <QStringList>
#include <QVector>

struct RealColumn
{
    QString name;
    QString kind; ///< "int", "varchar"
    QString type; ///< "int(10) unsigned"
    QString letters; ///< character set and collation, as a definition names them; empty for numbers
    QString fallback; ///< default as an expression; null without one
    QString extra; ///< "auto_increment", "on update current_timestamp()"
    QString comment;
    qint64 length = 0; ///< of a text, in letters
    int digits = 0; ///< of a decimal number, in front of the point
    bool isNullable = false;

    bool isText() const;
    bool isInteger() const;
    /// Of the integers that it holds; 0 to 0 for what holds none.
    qint64 least() const;
    qint64 most() const;
    /// As in CREATE TABLE, with another type or nullability.
    QString definition(const QString &newType, bool nullable) const;
};

struct RealIndex
{
    QString name;
    QStringList columns;
    bool isUnique = false;
    bool isPartial = false; ///< of some column it has only the first letters
};

struct RealTable
{
    QString name;
    QString engine; ///< empty for a view
    bool hasTransactions = true;
    QVector<RealColumn> columns;
    QVector<RealIndex> indexes;

    const RealColumn *find(const QString &column) const;
};

/// Those of the tables of the handle's schema that the login may see, with what it may see of them.
Failure readSchemaFacts(const QSqlDatabase &database, QVector<RealTable> *tables);

enum class Presence {
    There,
    Missing, ///< the server says that there is none
    Hidden ///< the server does not say
};

/// What the server says to a statement that reads nothing.
Presence presenceBy(const QSqlDatabase &database, const QString &statement);
