// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Where an installation keeps its data and its logs.
#pragma once

#include <QString>

/// The last results of dataDir() and logsDir(), "data" and "logs" before the first call. Written
/// here, read by nothing yet. Not guarded: call the functions from one thread at a time.
extern QString currentDataDir;
extern QString currentLogsDir;

/// Makes the directory if it is missing. A directory that cannot be made or written to is told to
/// the log (critical) and to nobody else.
void ensureDir(const QString &path);

/// The data directory of an installation: what the system-wide settings (organisation KESTRA-LK,
/// application ORV, group dataDirs) hold for the key, else the second standard data location, else
/// the writable one.
///
/// An empty key stands for the directory of the running application. With `verify` the directory
/// goes through ensureDir().
QString dataDir(bool verify, const QString &key);

/// The directory "logs" below the data directory of the key, made if missing.
QString logsDir(const QString &key);
