// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What folders and files tell.
#pragma once

#include "host/status/status.h"

/// All that is known without a database. Reads only.
Status readStatus(const StatusSources &sources, const QDateTime &now);

/// Names of the records whose export a pass has read, as far as can be known, oldest first. The
/// newest counts some minutes after it is gone, when its pass is over.
QStringList readExports(const Status &status);
/// The newest export that went through counts among them; true without one.
bool newestIsJudged(const Status &status);

/// What was rehearsed of the exports that have been read in the last days, oldest first. Settled
/// are those of which a person has said so, and one whose pass may still be at work.
QVector<RehearsedExport> readRehearsals(const Status &status);
/// A person makes this file in the archive to say that all that this export should have changed is
/// as it should be; its content does not matter.
QString settledFile(const StatusSources &sources, const GateRecord &record);
/// The same for an export whose changes lie in a file of the archive of a gate; absolute. Empty for
/// any other file, and where the export is settled already.
QString settledFileOf(const QString &changesFile);
/// How many days back lost changes are looked for.
int lossDays();

/// Files of changes in the folders of the sources, oldest first, without those of the gate's
/// rehearsals.
QStringList passFiles(const Status &status);
/// That of the gate's rehearsal of an export; it may be gone.
QString rehearsalFile(const StatusSources &sources, const GateRecord &record);
/// The folder in which the gate keeps all about the export.
QString folderOf(const StatusSources &sources, const GateRecord &record);
