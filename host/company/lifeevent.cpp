// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What can happen to somebody in a company.
#include "host/company/lifeevent.h"

const char *eventName(EventKind kind)
{
    // In the order of the kinds.
    static const char *const names[] = {
        "hired",           "returned",
        "left the export", "ended",
        "end announced",   "end withdrawn",
        "renamed",         "graduated",
        "new phone",       "moved",
        "new calendar",    "new supervisor",
        "fell ill",        "went on parental leave",
        "came back",       "leave taken",
        "leave granted",
    };
    return names[static_cast<int>(kind)];
}

QString LifeEvent::text() const
{
    const QString what
        = QStringLiteral("%1.%2 %3").arg(number).arg(ordinal).arg(QLatin1String(eventName(kind)));
    return before.isEmpty() && after.isEmpty()
        ? what
        : QStringLiteral("%1: %2 -> %3").arg(what, before, after);
}
