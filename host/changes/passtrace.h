// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// All that a pass says and asks of the database, in its order.
#pragma once

#include "host/base/failure.h"

#include <QFile>
#include <QMutex>
#include <QVariant>
#include <QVector>

struct CallOutcome;
struct DatabaseCall;

/// One message of the plugin, or one call of its connection.
struct TraceStep
{
    bool isMessage = true;
    QtMsgType type = QtDebugMsg; ///< of a message
    QString text; ///< the message, or the statement; "begin" and the like for a call without one
    QVariantList values; ///< bound to a statement that was prepared
    bool done = true; ///< by the database
    int affected = -1; ///< rows changed by a statement; -1 by any other call
    QString error; ///< the server's words; empty where it was done
};

using TraceSteps = QVector<TraceStep>;

/// Writes the steps into a file, a line of JSON for each, as they come: what is there after a
/// crash is true, though its last line may be cut.
///
/// For any thread. Owned by whoever starts the plugin, and lives as long as anything can be told.
class PassTrace
{
public:
    /// Makes the file, for its owner only. Fails where there is one already.
    Failure open(const QString &path);
    void message(QtMsgType type, const QString &text);
    void call(const DatabaseCall &call, const CallOutcome &outcome);
    /// Fails with the system's words if something is missing in the file.
    Failure close();

private:
    void write(const TraceStep &step);

    QMutex mutex;
    QFile file;
};

/// A line of the file, with its line end.
QByteArray traceLine(const TraceStep &step);
/// Reads what a PassTrace has written. Fails with what is wrong.
Failure readTrace(const QString &path, TraceSteps *steps);
