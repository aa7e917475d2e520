// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The file of changes, "talvenhr.changes/1"; docs/changes.md describes it.
#pragma once

#include "host/base/failure.h"
#include "host/changes/changes.h"
#include "host/report/jsonreport.h"

class QIODevice;

/// Writes the changes as one object in one line with a line end, in parts that fit into memory.
void writeChanges(const Changes &changes, const ByteSink &sink);

/// Writes the file, for its owner only, whole or not at all.
Failure writeChangesFile(const Changes &changes, const QString &path);

/// Reads what writeChanges() has written, or anything of that format. `name` is for the message of
/// a failure, which says what is wrong; the result is then of no use. Tables and columns are taken
/// as they stand there; a table that no pass touches is a failure.
///
/// Of a number beyond 64 bits with sign the last digits are lost, and one with a fraction of 0 is a
/// whole one afterwards; both compare equal otherwise.
Failure readChanges(const QByteArray &text, const QString &name, Changes *changes);
Failure readChangesFile(const QString &path, Changes *changes);
