// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the gate tells people.
#pragma once

#include "host/gate/gaterecord.h"

#include <QString>

/// One line about what became of an export.
QString decisionLine(const GateRecord &record);

/// Why an export was refused, what lies beside this text in `folder`, and how to let it through.
QString refusalText(const GateRecord &record, const QString &folder);
