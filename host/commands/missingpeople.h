// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// People of the database whom an export does not have.
#pragma once

#include "host/database/knownpeople.h"
#include "host/exportcheck/exportdigest.h"

#include <QDate>

/// How many active people whose employment has not ended before the day stand in no line. Who has
/// neither number nor pid does not count: no line can mean them.
int missingPeople(const QVector<KnownPerson> &people, const ExportDigest &lines,
                  const QDate &today);
