// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What is kept of an export to compare its lines with each other and with another export.
#include "host/exportcheck/exportdigest.h"

#include <QHash>

#include <algorithm>
#include <numeric>

bool keepsSupervisor(const EmployeeRecord &record)
{
    return record.nadOsCis != 0
        && (record.typPracovnihoPomeru == 11 || record.typPracovnihoPomeru == 65);
}

DigestLine digestOf(const ExportLine &line, int lineNumber)
{
    DigestLine digest;
    digest.line = lineNumber;
    digest.number = line.record.osobniCislo;
    digest.ordinal = line.record.poradoveCisloPP;
    digest.pid = line.record.pid();
    digest.supervisor = keepsSupervisor(line.record) ? line.record.nadOsCis : 0;
    for (size_t column = 0; column < digest.cells.size(); ++column) {
        const QStringRef &cell = line.cells[column];
        // The lowest bit sets a cell apart from an empty one.
        digest.cells[column] = cell.isEmpty() ? 0 : qHash(cell, 1) | 1U;
    }
    return digest;
}

std::vector<int> orderedByRelation(const ExportDigest &digest)
{
    std::vector<int> places(digest.size());
    std::iota(places.begin(), places.end(), 0);
    std::stable_sort(places.begin(), places.end(), [&](int left, int right) {
        return digest[static_cast<size_t>(left)].relation()
            < digest[static_cast<size_t>(right)].relation();
    });
    return places;
}
