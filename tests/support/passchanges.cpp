// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Changes of a pass that a test makes up.
#include "support/passchanges.h"

SnapshotBuilder onePerson()
{
    return SnapshotBuilder().with(somebody, {"1|10011|1001.1|Eva|Malá|1"});
}

Changes changesOf(const Snapshot &before, const Snapshot &after, const PassTold &told)
{
    ChangesHeader header;
    header.when = QDateTime(passDay, QTime(12, 0));
    return changesBetween(before, after, told, header);
}

Changes changesBy(const PassTold &told)
{
    const Snapshot both = SnapshotBuilder().with(
        somebody, {"1|10011|1001.1|Eva|Malá|1", "2|10021|1002.1|Jan|Vlk|1"});
    return changesOf(both, both, told);
}

QString kindsText(const KindSet &kinds)
{
    QStringList names;
    for (const ChangeKind kind : changeKinds()) {
        if (kinds.has(kind))
            names.append(kindName(kind));
    }
    return names.join(QLatin1Char(' '));
}

QString countsText(const KindCounts &counts)
{
    QStringList texts;
    for (const ChangeKind kind : changeKinds()) {
        if (counts[kind] != 0)
            texts.append(QStringLiteral("%1 %2").arg(kindName(kind)).arg(counts[kind]));
    }
    return texts.join(QStringLiteral(", "));
}
