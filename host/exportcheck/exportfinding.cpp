// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A finding at its place in an export.
#include "host/exportcheck/exportfinding.h"

#include "export/exportline.h"
#include "host/exportcheck/cellform.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ExportFinding)
};

/// The values without what a person wrote: all but the name of the column.
QStringList withoutTexts(const ExportFinding &found)
{
    QStringList values = found.values;
    if (found.column == 0 || !isTextColumn(found.column - 1))
        return values;
    for (int i = 1; i < values.size(); ++i)
        values[i] = QStringLiteral("…");
    return values;
}

} // namespace

Finding told(const ExportFinding &found, PersonalTexts texts)
{
    const QString about = found.line == 0 ? Text::tr("file") : Text::tr("line %1").arg(found.line);
    return finding(*found.kind, about,
                   texts == PersonalTexts::Hidden ? withoutTexts(found) : found.values);
}

QString columnName(const ExportFinding &found)
{
    return found.column == 0 ? QString() : exportColumn(found.column - 1);
}

int countOf(const ExportFindings &findings, Finding::Severity severity)
{
    return static_cast<int>(
        std::count_if(findings.cbegin(), findings.cend(), [severity](const ExportFinding &found) {
            return found.kind->severity() == severity;
        }));
}
