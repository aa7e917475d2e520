// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The findings as a page for administrators.
#pragma once

#include <QString>

/// docs/findings.md, whole: each code with an example of what it says, what follows, and what to
/// do. Markdown.
QString findingsDocument();
