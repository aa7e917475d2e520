// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// An export taken apart into lines and cells, to be changed and put together again.
#include "host/company/exportsheet.h"

#include "host/company/exportwriter.h"

#include <QHash>
#include <QSet>

#include <algorithm>

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

QVector<int> ExportSheet::drawLines(Draw *draw, int count) const
{
    QVector<int> left = ordinary;
    QVector<int> drawn;
    while (drawn.size() < count)
        drawn.append(left.takeAt(draw->below(left.size())));
    std::sort(drawn.begin(), drawn.end());
    return drawn;
}

QByteArray ExportSheet::text() const
{
    QByteArray all;
    for (int number = 1; number <= lineCount(); ++number)
        all += line(number) + '\n';
    return all;
}
