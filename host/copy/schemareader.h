// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Follows what a pass needs through tables, triggers and routines.
#pragma once

#include "host/copy/copiedschema.h"
#include "host/copy/loginrights.h"

#include <QHash>
#include <QMultiHash>
#include <QSet>
#include <QSqlQuery>

/// Reads one CopiedSchema. Used once, on the thread of the handle, by readCopiedSchema().
class SchemaReader
{
public:
    SchemaReader(const QSqlDatabase &database, const CopyWishes &wishes, CopiedSchema *schema);

    Failure read();

private:
    struct KnownTable
    {
        QString type;
        QString engine;
    };

    struct KnownRoutine
    {
        QString name;
        QString kind; ///< FUNCTION or PROCEDURE
    };

    // What there is to be seen
    Failure readLists();
    Failure readSchemaName();
    Failure readTriggerNames();
    Failure failed(const QSqlQuery &query) const;

    // Tables
    void takeTable(const QString &name, const QString &wantedBy);
    bool readDefinition(CopiedTable *table);
    bool readColumns(CopiedTable *table);
    void takeTriggers(const QString &table);
    void missTable(const QString &name, const QString &right, const QString &wantedBy);

    // Routines
    void takeRoutine(const QString &name, const QString &wantedBy);
    bool seesAllRoutines() const;

    // What they name
    void follow(const QString &text, const QString &whose);
    void followReferences(const QString &create, const QString &table);
    void lookAfterUnseen(const QString &text, const QString &whose);
    void lookAfter(const QString &table, const QString &whose);
    void leaveElsewhere(const QString &table, const QString &whose);
    bool readProgram(const QString &what, const QString &name, CopiedProgram *program) const;

    Failure refusal() const;

    const QSqlDatabase database;
    const CopyWishes wishes;
    CopiedSchema *const schema;
    LoginRights rights;
    QString account;
    QHash<QString, KnownTable> knownTables;
    QMultiHash<QString, KnownRoutine> knownRoutines; ///< by name in small letters
    QHash<QString, QStringList> knownTriggers; ///< by table
    QSet<QString> seen; ///< tables, and routines in small letters with "()"
    QStringList missing; ///< rights, without those on triggers
    QStringList tablesWithoutTriggers; ///< whose triggers cannot be seen
    bool bodiesAreMissing = false;
};
