// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Compressed files, as an archive keeps them.
#pragma once

#include "host/base/failure.h"

#include <QString>

/// Both read and write piece by piece. What is written is for its owner only, and whole or not
/// there.

/// Compresses a file. The same bytes give the same file: it holds no time and no name.
Failure writeGzip(const QString &source, const QString &target);

/// Expands a file of any gzip. One that is cut off or damaged gives nothing, and ExitErrors.
Failure readGzip(const QString &source, const QString &target);
