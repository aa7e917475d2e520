// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr config`: every setting in force, and where it comes from.
#pragma once

#include "host/cli/command.h"

Command configCommand();
