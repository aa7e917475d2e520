// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The messages as a page for administrators.
#pragma once

#include <QString>

/// docs/messages.md, whole: the warnings and errors of each topic with what they mean, what they
/// lead to and what to do, and after them all that the log says besides. Markdown.
QString messagesDocument();
