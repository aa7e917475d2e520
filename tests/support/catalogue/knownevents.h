// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Events of a test, in the form of EventLog, as the catalogue knows them.
#pragma once

#include "host/catalogue/messages.h"
#include "host/catalogue/statements.h"

#include <QStringList>

/// What the catalogue makes of events, which are given in their order: what runs with bound values
/// is the statement that was prepared last.
class KnownEvents
{
public:
    /// Whether the event is a statement, prepared or run, and no other call of the database.
    static bool isStatement(const QString &event);
    /// The text of the statement; of one that runs with bound values, as it was prepared.
    QString statementText(const QString &event);
    ClassifiedStatement statement(const QString &event);

    /// The message of the event; null for one that the plugin does not log.
    static const PluginMessage *message(const QString &event);
    /// Without the kind in front.
    static QString messageText(const QString &event);

private:
    QString prepared;
};

/// The statements that the catalogue does not know or finds out of place, and the messages that it
/// does not give to the plugin at this log level. The error of the scripted database may stand
/// alone.
QStringList strangers(const QStringList &events, int logLevel);
