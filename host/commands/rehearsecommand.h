// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr rehearse`: what the next pass would change.
#pragma once

#include "host/cli/command.h"

Command rehearseCommand();
