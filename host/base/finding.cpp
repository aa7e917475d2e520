// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Something that a look at settings, server or export has found.
#include "host/base/finding.h"

QString severityName(Finding::Severity severity)
{
    switch (severity) {
    case Finding::Error:
        return QStringLiteral("error");
    case Finding::Warning:
        return QStringLiteral("warning");
    case Finding::Note:
        break;
    }
    return QStringLiteral("note");
}

QString findingLine(const Finding &finding)
{
    QString line = finding.text;
    if (!finding.becomes.isEmpty())
        line += QStringLiteral("; ") + finding.becomes;
    return finding.remedy.isEmpty() ? line : line + QStringLiteral("; ") + finding.remedy;
}

QString codedLine(const Finding &finding)
{
    return QStringLiteral("%1 [%2]").arg(findingLine(finding), finding.code);
}
