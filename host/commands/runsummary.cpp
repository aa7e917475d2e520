// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The last line of a run.
#include "host/commands/runsummary.h"

#include <QStringList>

namespace {

QString counted(int count, const char *one, const char *many)
{
    return QStringLiteral("%1 %2").arg(count).arg(QLatin1String(count == 1 ? one : many));
}

QString line(const RunFigures &figures, bool testMode, double seconds, const QString &reason)
{
    QStringList parts {counted(figures.passes, "pass", "passes"),
                       counted(figures.records, "record", "records"),
                       counted(figures.added, "person added", "persons added"),
                       QStringLiteral("%1 updated").arg(figures.updated),
                       counted(figures.warnings, "warning", "warnings"),
                       counted(figures.errors, "error", "errors"),
                       QStringLiteral("%1 waiting").arg(figures.waiting),
                       QStringLiteral("%1 s").arg(seconds, 0, 'f', 1)};
    if (figures.dropped > 0)
        parts.append(counted(figures.dropped, "line dropped", "lines dropped"));
    if (testMode)
        parts.append(QStringLiteral("in test mode"));
    const QString text = parts.join(QStringLiteral(", "));
    return reason.isEmpty() ? text : text + QStringLiteral("; ") + reason;
}

} // namespace

Report runSummary(const RunFigures &figures, bool testMode, qint64 milliseconds,
                  const RunEnding &ending)
{
    const double seconds = static_cast<double>(milliseconds) / 1000;
    const auto figure = [](const char *name, const QVariant &value) {
        return Figure {QLatin1String(name), QString(), value, QString()};
    };
    const QVariant reason = ending.reason.isEmpty() ? QVariant() : QVariant(ending.reason);
    Section section;
    section.figures = {figure("passes", figures.passes),
                       figure("records", figures.records),
                       figure("added", figures.added),
                       figure("updated", figures.updated),
                       figure("warnings", figures.warnings),
                       figure("errors", figures.errors),
                       figure("waiting", figures.waiting),
                       figure("dropped", figures.dropped),
                       figure("testMode", testMode),
                       figure("seconds", seconds),
                       figure("exitCode", static_cast<int>(ending.exitCode)),
                       figure("reason", reason)};
    return {
        QString(), {section}, {ending.exitCode, line(figures, testMode, seconds, ending.reason)}};
}
