// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A check for machines.
#include "host/exportcheck/checkreport.h"

#include "host/exportcheck/cellform.h"

#include <memory>

namespace {

/// A column or figure that only machines are told.
Column column(const char *name)
{
    return {QLatin1String(name), {}};
}

Figure figure(const char *name, const QVariant &value)
{
    return {QLatin1String(name), {}, value, {}};
}

Section section(const char *name, const QVector<Figure> &figures)
{
    return {QLatin1String(name), {}, figures, {}};
}

QVariantList linesOf(const ExportFinding &found)
{
    QVariantList lines;
    for (const int line : found.lines)
        lines.append(line);
    if (lines.isEmpty() && found.line != 0)
        lines.append(found.line);
    return lines;
}

QVariantList rowOf(const ExportFinding &found, PersonalTexts texts)
{
    const Finding finding = told(found, texts);
    return {finding.code,
            severityName(finding.severity),
            found.line == 0 ? QVariant() : found.line,
            linesOf(found),
            found.column == 0 ? QVariant() : found.column,
            textOrNull(columnName(found)),
            finding.text,
            textOrNull(finding.becomes),
            textOrNull(finding.remedy)};
}

Section findingsSection(const CheckOutcome &outcome)
{
    Section findings = section("findings", {});
    findings.table.columns = {column("code"),  column("severity"), column("line"),
                              column("lines"), column("column"),   column("cell"),
                              column("text"),  column("becomes"),  column("remedy")};
    const auto next = std::make_shared<int>(0);
    findings.table.nextRow = [&outcome, next](QVariantList *row) {
        if (*next == outcome.findings.size())
            return false;
        *row = rowOf(outcome.findings.at((*next)++), outcome.texts);
        return true;
    };
    return findings;
}

Section columnsSection(const CheckOutcome &outcome)
{
    Section columns = section("columns", {});
    columns.table.columns = {column("cell"), column("filled"), column("distinct"),
                             column("filledBefore"), column("changed")};
    for (int i = 0; i < exportColumnCount; ++i) {
        const ColumnFigures &figures = outcome.columns[static_cast<size_t>(i)];
        QVariantList row {exportColumn(i), figures.filled, figures.distinct};
        if (outcome.comparison)
            row << figures.filledBefore << figures.changed;
        columns.table.rows.append(row);
    }
    return columns;
}

Section againstSection(const CheckOutcome &outcome)
{
    const ExportComparison &compared = *outcome.comparison;
    return section("against",
                   {figure("file", outcome.otherFile), figure("people", compared.before),
                    figure("gained", compared.gained), figure("lost", compared.lost),
                    figure("changed", compared.changed)});
}

Section databaseSection(const DatabaseCounts &people)
{
    return section("database",
                   {figure("added", people.added), figure("revived", people.revived),
                    figure("updated", people.updated), figure("ended", people.ended),
                    figure("same", people.same), figure("leftOut", people.leftOut)});
}

} // namespace

Report checkReport(const CheckOutcome &outcome)
{
    const FateCounts &fates = outcome.fates;
    Report report;
    report.format = QStringLiteral("talvenhr.check/1");
    report.sections = {
        section("", {figure("file", outcome.file), figure("lines", fates.lines())}),
        section("fates",
                {figure("taken", fates.taken), figure("header", fates.header),
                 figure("blank", fates.blank), figure("dropped", fates.dropped)}),
        section("counts",
                {figure("errors", outcome.count(Finding::Error)),
                 figure("warnings", outcome.count(Finding::Warning)),
                 figure("notes", outcome.count(Finding::Note))}),
        findingsSection(outcome),
        columnsSection(outcome),
    };
    if (outcome.comparison)
        report.sections.append(againstSection(outcome));
    if (outcome.database)
        report.sections.append(databaseSection(*outcome.database));
    return report;
}
