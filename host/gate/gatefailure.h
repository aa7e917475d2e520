// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the last gate has failed with, for those who look at it from outside, and who is told.
#pragma once

#include "host/base/failure.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

/// "talvenhr.gatefailure/1", in one line; docs/gatefailure.schema.json describes it.
QByteArray gateFailureJson(const Failure &failure, const QDateTime &when);

/// Writes the file "failed" into the state folder: the time (UTC), and the text in a line. On a
/// full disk the file is empty; where there can be none, nothing is said of it.
void keepGateFailure(const QString &stateFolder, const Failure &failure);

/// Runs the hook where a gate could not do its work (exit codes 2, 3 and 4), with the failure's
/// JSON: once, until a gate has done its work. Where the state folder can keep nothing, each
/// failure counts as the first one. The result is what went wrong with the hook, as runHook() has
/// it.
QString tellGateFailure(const QString &stateFolder, const QString &hook, const Failure &failure);

/// A gate has come to its end.
void forgetGateFailure(const QString &stateFolder);
