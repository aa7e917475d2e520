// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Texts from anywhere, fit for a terminal.
#pragma once

#include <QString>

/// The text in one line that no terminal takes for commands: control characters in their visible
/// form, a line end as \n.
QString oneLine(const QString &text);

/// A mark after which a terminal or a browser may show what follows from right to left.
bool turnsDirection(QChar character);
