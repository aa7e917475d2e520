// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A check for machines.
#pragma once

#include "host/exportcheck/checkoutcome.h"
#include "host/report/report.h"

/// "talvenhr.check/1"; docs/check.schema.json describes it. Its rows are made when they are
/// written: the outcome has to outlive the report.
Report checkReport(const CheckOutcome &outcome);
