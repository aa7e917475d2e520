// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a fuzz target does when a property does not hold.
#pragma once

#include <QString>

#include <cstdio>
#include <cstdlib>

/// Ends the process with the text, so that the input counts as a finding.
[[noreturn]] inline void fuzzFailure(const QString &text)
{
    std::fprintf(stderr, "PROPERTY BROKEN: %s\n", text.toUtf8().constData());
    std::abort();
}

/// The text is worked out only when the property does not hold.
#define FUZZ_CHECK(property, text)                                                                 \
    do {                                                                                           \
        if (!(property))                                                                           \
            fuzzFailure(text);                                                                     \
    } while (false)
