// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whether the server surely refuses a statement for its form.
#pragma once

struct SqlTokens;
class QString;

/// True when the first statement of the text is one that no server runs, so that nothing of the
/// text runs: the others come after it. For what was meant as an INSERT INTO … VALUES of
/// `valueCount` values, or as an UPDATE … SET, and is still so up to its first value.
///
/// False says only that it may run: not all of the grammar is known here.
bool isSurelyRefused(const QString &text, const SqlTokens &tokens, int valueCount);
