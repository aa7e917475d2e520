// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What stands behind a standard stream.
#pragma once

/// The columns of the terminal behind the file descriptor; `otherwise` where there is none.
int terminalWidth(int descriptor, int otherwise);
