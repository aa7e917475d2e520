// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the gate tells people.
#pragma once

#include "host/gate/gaterecord.h"

#include <QString>

/// One line about what became of an export. `whyNotRehearsed` holds for all exports of this gate;
/// empty where it rehearses.
QString decisionLine(const GateRecord &record, const QString &whyNotRehearsed);

/// Why an export was refused, what it was compared with, what lies beside this text in `folder`,
/// and how to let it through. `released` went through after what it was compared with; null: none
/// did.
QString refusalText(const GateRecord &record, const QString &folder, const GateRecord *released);

/// The options of `talvenhr gate` that raise the limits that it exceeds, and allow its differences
/// from the last good export; empty where something else is wrong, too.
QString allowOptions(const GateRecord &record);
/// A person may let it through as it is: it is neither cut off nor without a usable line.
bool isReleasable(const GateRecord &record);
