// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What two contents of a database do not share.
#include "support/contentdifference.h"

QStringList contentDifference(const QStringList &before, const QStringList &after)
{
    QStringList added = after;
    QStringList difference;
    for (const QString &value : before) {
        if (!added.removeOne(value))
            difference.append(QLatin1Char('-') + value);
    }
    for (const QString &value : qAsConst(added))
        difference.append(QLatin1Char('+') + value);
    difference.sort();
    return difference;
}
