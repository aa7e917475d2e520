// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// People of the database whom an export does not have.
#include "host/commands/missingpeople.h"

#include <QDateTime>
#include <QSet>

#include <algorithm>

int missingPeople(const QVector<KnownPerson> &people, const ExportDigest &lines, const QDate &today)
{
    QSet<uint> pids;
    for (const DigestLine &line : lines)
        pids.insert(line.pid);
    pids.remove(0); // such a number means nobody
    const qint64 midnight = QDateTime(today, QTime()).toSecsSinceEpoch();
    return static_cast<int>(
        std::count_if(people.cbegin(), people.cend(), [&](const KnownPerson &person) {
            const bool isEmployed = person.isActive && (person.end == 0 || person.end >= midnight);
            const bool canStand = person.pid != 0 || person.key != 0;
            return isEmployed && canStand && !pids.contains(person.pid)
                && !pids.contains(person.key);
        }));
}
