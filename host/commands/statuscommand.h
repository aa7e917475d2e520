// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr status`: when what ran, how it ended, and what waits.
#pragma once

#include "host/cli/command.h"

Command statusCommand();
