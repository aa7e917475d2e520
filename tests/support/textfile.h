// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Files that a test writes for what it tests.
#pragma once

#include <QStringList>

/// Writes a file anew, UTF-8, each line with its end. The test ends with a message if it cannot.
void writeLines(const QString &path, const QStringList &lines);
