// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a look at settings, server, tables and machine comes to.
#include "host/doctor/doctor.h"

#include <algorithm>

Diagnosis &Diagnosis::operator+=(const Diagnosis &other)
{
    findings += other.findings;
    unknown += other.unknown;
    passed += other.passed;
    return *this;
}

bool Diagnosis::hasErrors() const
{
    return std::any_of(findings.begin(), findings.end(),
                       [](const Finding &finding) { return finding.severity == Finding::Error; });
}
