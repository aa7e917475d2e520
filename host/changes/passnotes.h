// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What is told of a pass while it runs, kept for its changes.
#pragma once

#include "host/catalogue/namedpeople.h"
#include "host/changes/changes.h"

#include <QMutex>
#include <QSqlError>

struct DatabaseCall;
struct PluginMessage;
struct CallOutcome;

/// Whom something is about: by a key of the database, and by the number where the text has it.
struct AboutPeople
{
    NamedPeople named;
    QString pamId; ///< of the one person; empty where the text does not have it
};

/// A warning or an error.
struct ToldMessage
{
    PassMessage message;
    const PluginMessage *known = nullptr; ///< null for one that is not the plugin's own
    AboutPeople about;
};

/// Why the leave of a person was left alone.
struct RestingLeave
{
    uint pid = 0;
    NotDone::What what = NotDone::LeaveNotAtRest;
    QString text;
};

/// A statement that the database has refused.
struct RefusedStatement
{
    AboutPeople about;
    QString statement;
    QString error;
};

/// What was told of one pass, or of several in a row.
struct PassTold
{
    ExportIdentity exported;
    bool forced = false;
    int waiting = -1; ///< records at the end, as the plugin says; -1: it has not said
    int dropped = 0; ///< lines
    int statements = -1; ///< that were run between begin and end of the pass; -1: it has not begun
    QVector<ToldMessage> messages;
    QVector<RestingLeave> leave;
    QVector<RefusedStatement> refused;
};

/// Listens to a plugin that runs at log level 2 at least.
///
/// For any thread. Owned by whoever starts the plugin, and lives as long as anything can be told.
class PassNotes
{
public:
    /// A line of the log, whosever it is. A complaint that names nobody is taken to be about the
    /// people whom the messages before it in this pass have named last.
    void message(QtMsgType type, const QString &text);
    /// A call of the plugin's connection and what became of it.
    void call(const DatabaseCall &call, const CallOutcome &outcome);
    /// A call of which nothing else is to be told; call() counts by itself.
    void countStatement(const DatabaseCall &call);
    /// The pass that runs has read this.
    void exportRead(const ExportIdentity &exported);
    /// So many lines of it come to nothing.
    void linesDropped(int lines);

    /// What has been told of all passes that are over, and not taken yet.
    PassTold take();

private:
    AboutPeople aboutNow() const;
    void noteLeave(const PluginMessage &known, const QString &text);
    void beginPass(bool forced);

    mutable QMutex mutex;
    PassTold over; ///< of the passes that are over
    PassTold current;
    bool currentIsOver = false;
    // The message that has named somebody last; who that is, is only looked up for a complaint.
    const PluginMessage *naming = nullptr;
    QString namingText;
};

/// The file's name, digest, size and lines. Without a digest where it cannot be read.
ExportIdentity identityOf(const QString &exportFile);
