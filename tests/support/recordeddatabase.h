// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A real database whose every call is written down.
#pragma once

#include <QSqlDatabase>

/// A handle that is not open, to the database of the one given. Its calls and those of its clones
/// land in the EventLog, in the form that ScriptedDatabase gives them, and then go to the real
/// database. It belongs to the caller, who removes its connection; the given one may go.
QSqlDatabase recordedHandle(const QSqlDatabase &database);
