// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A check as a page for people.
#pragma once

#include "host/exportcheck/checkoutcome.h"

#include <QHash>

#include <functional>

/// How the page is to be.
struct CheckPageStyle
{
    int width = 100; ///< columns
    int shown = 10; ///< findings of a kind
    bool colour = false;
    bool headOnly = false; ///< what became of the lines, and the verdict
};

/// Gives the page to the sink, group by group, worst first. `lines` are the texts of
/// linesOfFindings().
void writeCheckPage(const CheckOutcome &outcome, const CheckPageStyle &style,
                    const QHash<int, QString> &lines,
                    const std::function<void(const QString &text)> &sink);
