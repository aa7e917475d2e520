// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A driver that shows every call of another one to an observer.
#pragma once

#include "host/database/databasecall.h"
#include "host/database/registereddriver.h"

#include <QSqlError>
#include <QString>

#include <memory>

/// What has become of a call, in the words of the driver that was called.
struct CallOutcome
{
    bool done = false;
    QSqlError error; ///< valid beside success as well, where the driver leaves it so
    int affected = -1; ///< rows changed by an Exec or a Run; -1 by any other call, and by a query
    qint64 nanoseconds = 0; ///< the time that the call took; reading its rows comes later
};

/// Sees the calls of a recording driver, on the thread that makes the call: an observer of handles
/// on several threads has its own locks.
///
/// A handle that goes while it is open makes a last call, Close, with Qt's list of connections
/// locked: then an observer must not look for a connection there.
class CallObserver
{
public:
    virtual ~CallObserver() = default;

    /// Comes before the call. With a valid error the call is refused: it fails with this error,
    /// and reaches nobody. A close cannot fail; it goes on in any case.
    virtual QSqlError before(const DatabaseCall &call) = 0;
    /// Comes after a call that was not refused, before its caller learns the outcome.
    virtual void after(const DatabaseCall &call, const CallOutcome &outcome);
};

/// A driver that hands every call on to the one that Qt knows by the name given (another
/// registered one as well), and shows it to the observer. Registration and handles share the
/// observer: it lives as long as any of them.
///
/// A caller finds what the inner driver has: features, errors, rows and NULLs, insert ids, numbers
/// of rows, placeholders by name and by place, next results, escaping, handles. Not handed on, and
/// told in the features, are notifications and cancelling; values that a statement gives back
/// through its placeholders are lost, and dbmsType() is unknown. What the inner driver asks for
/// itself, for instance when it looks for tables, is not shown, nor is the reading of rows.
RegisteredDriver recordingDriver(const QString &innerDriver,
                                 const std::shared_ptr<CallObserver> &observer);
