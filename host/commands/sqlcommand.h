// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr sql`: a client on the private database.
#pragma once

#include "host/cli/command.h"

Command sqlCommand();
