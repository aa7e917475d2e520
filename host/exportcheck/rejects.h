// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The lines that go back to the HR department.
#pragma once

#include "host/base/failure.h"
#include "host/exportcheck/exportfinding.h"

class QIODevice;

/// Writes the lines with errors or warnings, as they stand in the file, each below the reasons. The
/// file is for its owner only, and is whole or not there. `device` is the export, at its begin.
Failure writeRejects(const QString &path, QIODevice *device, const ExportFindings &findings);
