// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A check of an export in a few words.
#include "host/exportcheck/exportglance.h"

#include <QCoreApplication>
#include <QHash>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ExportGlance)
};

/// The first finding of a kind, speaking for all of them.
Finding summary(const ExportFinding &first, int count)
{
    Finding finding = told(first);
    if (first.line == 0)
        return finding;
    if (count == 1)
        finding.text = Text::tr("line %1 of the export: %2").arg(first.line).arg(finding.text);
    else
        finding.text = Text::tr("%1, %2 times in the export, first in line %3: %4")
                           .arg(findingTitle(*first.kind))
                           .arg(count)
                           .arg(first.line)
                           .arg(finding.text);
    return finding;
}

QVector<Finding> summaries(const ExportCheck &check)
{
    // An export of nothing but faults has them all for one reason.
    if (check.isUseless())
        return {summary(check.findings.constFirst(), 1)};
    QVector<ExportFinding> firsts;
    QHash<const FindingKind *, int> counts;
    for (const ExportFinding &found : check.findings) {
        if (found.kind->severity() != Finding::Note && counts[found.kind]++ == 0)
            firsts.append(found);
    }
    QVector<Finding> findings;
    for (const ExportFinding &first : qAsConst(firsts))
        findings.append(summary(first, counts.value(first.kind)));
    return findings;
}

} // namespace

ExportGlance &ExportGlance::operator+=(const ExportGlance &other)
{
    fates += other.fates;
    findings += other.findings;
    sawUseless = sawUseless || other.sawUseless;
    return *this;
}

ExportGlance glanceOf(const ExportCheck &check)
{
    return {check.fates, summaries(check), check.isUseless()};
}

ExportGlance glanceAtExport(QIODevice *device, const ExportCheckSettings &settings)
{
    return glanceOf(checkExport(device, settings));
}
