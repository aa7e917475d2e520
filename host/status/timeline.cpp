// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The last days as a drawing.
#include "host/status/timeline.h"

#include <algorithm>
#include <cmath>

namespace {

const int dayWidth = 10;
const int barWidth = 8;
const int ground = 100; // where the bars stand
const int lowest = 8; // height of a bar without people
const int lowestRefused = 40; // what nobody is to overlook

QString key(const char *name)
{
    return QLatin1String(name);
}

QString kindName(TimelineDay::Kind kind)
{
    switch (kind) {
    case TimelineDay::Good:
        return key("good");
    case TimelineDay::Warned:
        return key("warning");
    case TimelineDay::Refused:
        return key("error");
    case TimelineDay::Nothing:
        break;
    }
    return key("nothing");
}

int heightOf(const TimelineDay &day, qint64 most)
{
    if (day.kind == TimelineDay::Nothing)
        return 2;
    const double share = std::log1p(static_cast<double>(day.people))
        / std::log1p(static_cast<double>(qMax(most, Q_INT64_C(1))));
    const int height = lowest + static_cast<int>(std::lround((ground - lowest) * share));
    return day.kind == TimelineDay::Refused ? qMax(height, lowestRefused) : height;
}

} // namespace

QVariantHash timelineValues(const QVector<TimelineDay> &days)
{
    qint64 most = 0;
    for (const TimelineDay &day : days)
        most = qMax(most, day.people);
    QVariantList bars;
    QVariantList months;
    for (int place = 0; place < days.size(); ++place) {
        const TimelineDay &day = days.at(place);
        const int height = heightOf(day, most);
        bars.append(QVariantHash {{key("x"), place * dayWidth},
                                  {key("y"), ground - height},
                                  {key("width"), barWidth},
                                  {key("height"), height},
                                  {key("kind"), kindName(day.kind)},
                                  {key("page"), day.page},
                                  {key("text"), day.text}});
        // A name that the border would cut is left out.
        if (day.day.day() == 1 && place + 8 < days.size())
            months.append(QVariantHash {{key("x"), place * dayWidth},
                                        {key("text"), day.day.toString(key("yyyy-MM"))}});
    }
    return {{key("bars"), bars}, {key("months"), months}, {key("width"), days.size() * dayWidth}};
}
