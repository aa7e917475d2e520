// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// How long a test waits for what has to come.
#pragma once

/// Milliseconds. Waiting ends when the thing is there; nobody waits so long but with sanitizers on
/// a busy machine. Shorter than what Qt Test leaves a function.
inline constexpr int longestWait = 120000;
