// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Somebody who is taken on.
#include "host/company/newcomer.h"

#include "host/company/names.h"

Employment newcomer(const Company &company, uint number, const QDate &begin, Draw *draw)
{
    Employment employment;
    employment.number = number;
    employment.woman = draw->percent(48);
    employment.name = drawFirstName(*draw, employment.woman);
    const QString family = drawSurname(*draw);
    employment.surname = employment.woman ? feminine(family) : family;
    if (employment.woman && draw->percent(4))
        employment.surname += QLatin1Char('-') + feminine(drawSurname(*draw));
    employment.titleBefore = drawTitle(*draw);
    if (!employment.titleBefore.isEmpty())
        employment.titleAfter = drawTitleAfter(*draw);
    employment.phone = drawPhone(*draw);
    employment.begin = begin;
    settle(company, &employment, draw);
    return employment;
}

void settle(const Company &company, Employment *employment, Draw *draw)
{
    const int index = draw->below(company.branches.size() - 1);
    const QVector<uint> &calendars = company.masterGroups.at(index % company.masterGroups.size())
                                         .calendars;
    employment->branch = company.branches.at(index).number;
    employment->memberships = {employment->branch};
    employment->calendar = calendars.at(draw->below(calendars.size()));
    employment->calendarSince = qMax(employment->begin, QDate(company.day.year() - 2, 1, 1));
    const int kind = draw->below(100);
    employment->type = kind < 94 ? 11 : kind < 96 ? 65 : kind < 98 ? 51 : 61;
    employment->leave = 50 * draw->below(60);
}
