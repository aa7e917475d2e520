// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Something that a look at settings, server or export has found.
#pragma once

#include <QString>

/// What is wrong, where, what the plugin makes of it, and what to do.
struct Finding
{
    enum Severity {
        Note,
        Warning,
        Error,
    };

    QString code; ///< stable: severity, area, matter, such as W-SET-SWITCH
    Severity severity = Note;
    QString about; ///< the thing: a key, a table, a file, a line
    QString text; ///< what is wrong
    QString becomes; ///< what the plugin makes of it or what follows; may be empty
    QString remedy; ///< what to do
};

/// "error", "warning" or "note".
QString severityName(Finding::Severity severity);

/// The finding in one line: what is wrong, what follows, and what to do.
QString findingLine(const Finding &finding);

/// As findingLine(), with the code behind it, by which it can be looked up.
QString codedLine(const Finding &finding);
