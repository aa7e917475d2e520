// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Tables, routines and triggers of a database, as a copy needs them.
#pragma once

#include "host/base/failure.h"
#include "host/copy/copyfacts.h"

#include <QSqlDatabase>
#include <QString>
#include <QVector>

struct CopiedColumn
{
    QString name;
    QString kind; ///< as "varchar", in small letters
};

/// A table or a view.
struct CopiedTable
{
    QString name;
    QString create; ///< the statement that makes it
    bool isView = false;
    QVector<CopiedColumn> columns; ///< those that hold values of their own
    QStringList key; ///< columns of the primary key; empty if there is none

    bool hasColumn(const QString &column) const;
};

/// A routine or trigger, and the settings under which its statement means what it means.
struct CopiedProgram
{
    QString name;
    QString create;
    QString sqlMode;
    QString characterSet; ///< of the client that has made it
    QString collation; ///< of the connection that has made it
    QString databaseCollation; ///< of the database at that time
};

/// What is to be copied; a plain value.
struct CopiedSchema
{
    QString name;
    QString characterSet;
    QString collation;
    QVector<CopiedTable> tables;
    QVector<CopiedProgram> routines;
    QVector<CopiedProgram> triggers; ///< those of one event in the order in which they run
    QStringList leftOut; ///< as in CopyFacts
    QStringList warnings;

    const CopiedTable *find(const QString &table) const;
};

/// Reads what a pass needs, and what its triggers, routines, views and foreign keys need in turn,
/// of the database of an open handle. Only looks.
///
/// Refused (ExitRefused) if the login cannot see all of it, with the rights that are missing: the
/// server hides triggers, and the bodies of routines, without a word. The wishes may go without
/// them. A table that only a trigger, routine or view names is left out if the login may not read
/// it.
Failure readCopiedSchema(const QSqlDatabase &database, const CopyWishes &wishes,
                         CopiedSchema *schema);

/// The tables and routines that the statements of a pass name.
QStringList tablesOfPass();
QStringList routinesOfPass();
