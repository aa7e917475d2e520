// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A check as a page for a browser.
#pragma once

#include "host/exportcheck/checkoutcome.h"

#include <QHash>
#include <QVariant>

/// The values for the template "check". `lines` are the texts of linesOfFindings(), of which there
/// are at most `shown` of a kind.
QVariantHash checkHtmlValues(const CheckOutcome &outcome, const QHash<int, QString> &lines,
                             int shown);
