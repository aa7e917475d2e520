// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the last gate has failed with, for those who look at it from outside.
#pragma once

#include <QString>

/// Writes the file "failed" into the state folder: the time (UTC), and the text in a line. Where
/// that cannot be done, as on a full disk, nothing is said of it.
void keepGateFailure(const QString &stateFolder, const QString &text);
/// A gate has come to its end.
void forgetGateFailure(const QString &stateFolder);
