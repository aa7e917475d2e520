// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// An export taken apart into lines and cells, to be changed and put together again.
#include "host/company/exportsheet.h"

#include "host/company/exportwriter.h"

#include <QHash>
#include <QSet>

ExportSheet::ExportSheet(const QByteArray &text)
{
    QHash<QByteArray, int> relations;
    QSet<QByteArray> supervisors;
    for (const QByteArray &line : text.split('\n')) {
        if (line.isEmpty())
            continue;
        append(line);
        ++relations[rows.constLast().first()];
        supervisors.insert(rows.constLast().last());
    }
    for (int number = 2; number <= lineCount(); ++number) {
        const QByteArray person = cell(number, ExportColumn::Number);
        const bool isCurrent = cell(number, ExportColumn::End).isEmpty()
            && cell(number, ExportColumn::RelationState) == "1";
        if (isCurrent && relations.value(person) == 1 && !supervisors.contains(person))
            ordinary.append(number);
    }
}

QPair<int, int> ExportSheet::drawTwoLines(Draw *draw) const
{
    const int first = draw->below(ordinary.size());
    const int other = (first + 1 + draw->below(ordinary.size() - 1)) % ordinary.size();
    return {ordinary.at(qMin(first, other)), ordinary.at(qMax(first, other))};
}

QByteArray ExportSheet::text() const
{
    QByteArray all;
    for (int number = 1; number <= lineCount(); ++number)
        all += line(number) + '\n';
    return all;
}
