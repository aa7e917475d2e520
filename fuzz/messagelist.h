// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the plugin logs while it is fuzzed.
#pragma once

#include <QStringList>

/// Takes Qt's log messages from now on, each as "debug TEXT", "info TEXT", "warning TEXT" or
/// "critical TEXT", and checks of each that it carries no place and no category. Messages of all
/// threads; the list itself is for one.
namespace MessageList {

/// Sets time zone, character set and message handler. Once, before anything of Qt is used.
void install();
void clear();
const QStringList &all();

} // namespace MessageList
