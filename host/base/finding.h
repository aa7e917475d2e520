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
    QString about; ///< the thing: a key, a table, a file
    QString text; ///< what is wrong and what the plugin makes of it
    QString remedy; ///< what to do
};

/// The finding in one line: what is wrong and what to do.
inline QString findingLine(const Finding &finding)
{
    return finding.text + QStringLiteral("; ") + finding.remedy;
}

/// As findingLine(), with the code behind it, by which it can be looked up.
inline QString codedLine(const Finding &finding)
{
    return QStringLiteral("%1 [%2]").arg(findingLine(finding), finding.code);
}
