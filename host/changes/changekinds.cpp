// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The kinds of what a pass does, by which changes are counted and limited.
#include "host/changes/changekinds.h"

namespace {

/// In the order of the kinds.
const char *const names[] = {
    "added",     "revived",        "updated",     "ended",   "moved", "memberships",
    "terminals", "administrators", "supervisors", "plans",   "leave", "reopened",
    "pam",       "notices",        "waiting",     "dropped", "errors"};
static_assert(sizeof(names) / sizeof(names[0]) == changeKindCount, "each kind has a name");

} // namespace

const QVector<ChangeKind> &changeKinds()
{
    static const QVector<ChangeKind> kinds = [] {
        QVector<ChangeKind> all;
        for (int kind = 0; kind < changeKindCount; ++kind)
            all.append(static_cast<ChangeKind>(kind));
        return all;
    }();
    return kinds;
}

QString kindName(ChangeKind kind)
{
    return QString::fromLatin1(names[static_cast<int>(kind)]);
}

bool kindOfName(const QString &name, ChangeKind *kind)
{
    for (const ChangeKind candidate : changeKinds()) {
        if (kindName(candidate) == name) {
            *kind = candidate;
            return true;
        }
    }
    return false;
}

QStringList kindNames(const KindSet &kinds)
{
    QStringList kindTexts;
    for (const ChangeKind kind : changeKinds()) {
        if (kinds.has(kind))
            kindTexts.append(kindName(kind));
    }
    return kindTexts;
}

bool countsPeople(ChangeKind kind)
{
    return kind < ChangeKind::Notices;
}

QString figuresText(const KindCounts &summary)
{
    QStringList parts;
    for (const ChangeKind kind :
         {ChangeKind::Added, ChangeKind::Revived, ChangeKind::Updated, ChangeKind::Ended,
          ChangeKind::Moved, ChangeKind::Leave, ChangeKind::Notices, ChangeKind::Waiting,
          ChangeKind::Dropped, ChangeKind::Errors}) {
        const bool isAlways = kind == ChangeKind::Added || kind == ChangeKind::Updated
            || kind == ChangeKind::Waiting || kind == ChangeKind::Errors;
        if (isAlways || summary[kind] != 0)
            parts.append(QStringLiteral("%1 %2").arg(kindName(kind)).arg(summary[kind]));
    }
    return parts.join(QStringLiteral(", "));
}
