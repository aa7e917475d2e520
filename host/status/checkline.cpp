// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A status as a plug-in of a monitoring system tells it.
#include "host/status/checkline.h"

#include "host/base/oneline.h"

namespace {

/// A bar begins the figures.
QString plainText(const QString &text)
{
    return oneLine(text).replace(QLatin1Char('|'), QLatin1Char('/'));
}

QString figure(const char *name, qint64 value, const char *unit = "")
{
    return QStringLiteral("%1=%2%3").arg(QLatin1String(name)).arg(value).arg(QLatin1String(unit));
}

QStringList figuresOf(const Status &status)
{
    QStringList figures;
    const GateRecord *const last = lastRecord(status);
    if (last) {
        QString age = figure("export_age", last->when.secsTo(status.now), "s");
        if (status.sources.lateAfter > 0)
            age += QStringLiteral(";;%1").arg(status.sources.lateAfter);
        figures.append(age);
    }
    if (status.pass.when.isValid())
        figures.append(figure("pass_age", status.pass.when.secsTo(status.now), "s"));
    if (status.pass.summary) {
        const KindCounts &summary = *status.pass.summary;
        figures += {figure("added", summary[ChangeKind::Added]),
                    figure("updated", summary[ChangeKind::Updated]),
                    figure("waiting", summary[ChangeKind::Waiting]),
                    figure("errors", summary[ChangeKind::Errors])};
    }
    if (status.lossesAreKnown)
        figures.append(figure("lost", status.lost.size()));
    if (status.database && status.database->queue)
        figures.append(figure("queue", *status.database->queue));
    for (const FolderStatus &folder : status.folders)
        figures.append(figure(qPrintable(folder.name + QLatin1String("_size")), folder.bytes, "B"));
    return figures;
}

} // namespace

QString checkLine(const Status &status)
{
    const QString line = QStringLiteral("TALVENHR %1")
                             .arg(plainText(verdictOf(concernsOf(status))));
    const QStringList figures = figuresOf(status);
    return figures.isEmpty() ? line
                             : QStringLiteral("%1 | %2").arg(line, figures.join(QLatin1Char(' ')));
}

QString unknownCheckLine(const QString &reason)
{
    return QStringLiteral("TALVENHR %1 - %2").arg(levelName(Level::Unknown), plainText(reason));
}
