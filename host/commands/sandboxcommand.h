// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr sandbox`: a company to play with.
#pragma once

#include "host/cli/command.h"

Command sandboxCommand();
