// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr undo`: how a pass is taken back.
#pragma once

#include "host/cli/command.h"

Command undoCommand();
