// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The lines that go back to the HR department.
#include "host/exportcheck/rejects.h"

#include "host/base/oneline.h"
#include "host/base/ownerfile.h"

#include <QCoreApplication>
#include <QIODevice>
#include <QMultiMap>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Rejects)
};

using Reasons = QMultiMap<int, const ExportFinding *>;

/// By line; a finding about several lines stands at each of them.
Reasons reasonsByLine(const ExportFindings &findings)
{
    Reasons reasons;
    for (const ExportFinding &found : findings) {
        if (found.kind->severity() == Finding::Note || found.line == 0)
            continue;
        for (const int line : found.lines)
            reasons.insert(line, &found);
        if (found.lines.isEmpty())
            reasons.insert(found.line, &found);
    }
    return reasons;
}

QString reasonText(int line, const ExportFinding &found)
{
    const Finding finding = told(found);
    return Text::tr("# line %1, %2: %3; %4\n")
        .arg(QString::number(line), finding.code, oneLine(finding.text), oneLine(finding.remedy));
}

/// Also lines that the plugin takes for blank ones.
void writeLines(QIODevice *device, const Reasons &reasons, QIODevice *file)
{
    for (int number = 1; !device->atEnd(); ++number) {
        QByteArray line = device->readLine();
        const QList<const ExportFinding *> own = reasons.values(number);
        for (auto reason = own.crbegin(); reason != own.crend(); ++reason)
            file->write(reasonText(number, **reason).toUtf8());
        if (own.isEmpty())
            continue;
        if (line.endsWith('\n'))
            line.chop(1);
        file->write(line + "\n\n");
    }
}

} // namespace

Failure writeRejects(const QString &path, QIODevice *device, const ExportFindings &findings)
{
    return writeOwnerFile(
        path, [&](QIODevice *file) { writeLines(device, reasonsByLine(findings), file); });
}
