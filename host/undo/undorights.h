// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The account that takes a pass back.
#pragma once

#include "host/base/failure.h"

#include <QSqlError>

/// What to do where the server has denied a right: names the account to use, or, where it is that
/// of undo already, how it gets its rights. `user` is that of the login.
Failure missingUndoRight(const QString &user, const QSqlError &error);
