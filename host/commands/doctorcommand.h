// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr doctor`: can a pass work here?
#pragma once

#include "host/cli/command.h"

Command doctorCommand();
