// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr explain`: what the next pass would do with one person, and why.
#pragma once

#include "host/cli/command.h"

Command explainCommand();
