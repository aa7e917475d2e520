// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A finding at its place in an export.
#include "host/exportcheck/exportfinding.h"

#include "export/exportline.h"
#include "host/exportcheck/cellform.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ExportFinding)
};

/// A number, a date, a name of a column, or a word of ours: nothing that somebody wrote into a
/// text.
bool isHarmless(const QString &value)
{
    static const QRegularExpression plain(QStringLiteral("^[-+0-9.,:/ T]*$"));
    return plain.match(value).hasMatch();
}

/// The values without what people wrote: all of cells of texts, and of others the cell, if it is no
/// number or date.
QStringList withoutTexts(const ExportFinding &found)
{
    QStringList values = found.values;
    const bool isText = found.line != 0 && found.column != 0 && isTextColumn(found.column - 1);
    const bool isKey = qstrcmp(found.kind->code, "E-LINE-KEY") == 0;
    for (int i = 0; i < values.size(); ++i) {
        const bool isName = found.column != 0 && values.at(i) == columnName(found);
        const bool isCell = found.line != 0 && (found.column != 0 || isKey) && i <= 1;
        if (!isName && (isText || (isCell && !isHarmless(values.at(i)))))
            values[i] = QStringLiteral("…");
    }
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
