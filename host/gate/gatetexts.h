// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the gate tells people.
#pragma once

#include "host/gate/gaterecord.h"

#include <QString>

/// One line about what became of an export. `whyNotRehearsed` holds for all exports of this gate;
/// empty where it rehearses.
QString decisionLine(const GateRecord &record, const QString &whyNotRehearsed);

/// Why an export was refused, what lies beside this text in `folder`, and how to let it through.
QString refusalText(const GateRecord &record, const QString &folder);
