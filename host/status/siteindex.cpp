// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The pages of a site as values for their templates: the index.
#include "host/base/zonedtext.h"
#include "host/status/sitepages.h"
#include "host/status/statusreport.h"
#include "host/status/statustexts.h"
#include "host/status/timeline.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(SiteIndex)
};

const int mostRows = 400; // of the table of exports and passes

QString key(const char *name)
{
    return QLatin1String(name);
}

QString severityOf(Level level)
{
    switch (level) {
    case Level::Ok:
        return key("good");
    case Level::Critical:
        return key("error");
    case Level::Warning:
    case Level::Unknown:
        break;
    }
    return key("warning");
}

QVariantList concernValues(const QVector<Concern> &concerns)
{
    if (concerns.isEmpty())
        return {QVariantHash {{key("severity"), severityOf(Level::Ok)},
                              {key("level"), levelName(Level::Ok)},
                              {key("text"), Text::tr("Exports and passes are as they should be")}}};
    QVariantList values;
    for (const Concern &concern : concerns)
        values.append(QVariantHash {{key("severity"), severityOf(concern.level)},
                                    {key("level"), levelName(concern.level)},
                                    {key("text"), concern.text},
                                    {key("remedy"), concern.remedy}});
    return values;
}

QVariantList lostValues(const Status &status, PersonalTexts texts)
{
    QVariantList values;
    for (const LostPerson &lost : status.lost) {
        QStringList remedies;
        for (const Remedy remedy : lost.remedies)
            remedies.append(remedyText(remedy));
        values.append(QVariantHash {{key("person"), personText(lost.person, texts)},
                                    {key("remedies"), remedies.join(QStringLiteral("; "))},
                                    {key("missing"), missingText(lost, texts)}});
    }
    return values;
}

QVariantList waitingValues(const Status &status, PersonalTexts texts)
{
    QVariantList values;
    const QVector<WaitingFor> people = waitingForSomebody(status);
    for (const WaitingFor &waiting : people)
        values.append(QVariantHash {{key("person"), personText(waiting.person, texts)},
                                    {key("what"), waiting.reasons.join(QStringLiteral("; "))}});
    return values;
}

TimelineDay::Kind kindOf(const SiteNote &note)
{
    if (note.severity == key("error"))
        return TimelineDay::Refused;
    if (note.severity == key("warning"))
        return TimelineDay::Warned;
    return note.severity.isEmpty() ? TimelineDay::Nothing : TimelineDay::Good;
}

/// The worst of a day counts, and of several alike the newest.
QVector<TimelineDay> daysOf(const Status &status, const QVector<SiteEntry> &entries,
                            const QVector<SiteNote> &notes)
{
    const QDate today = status.now.toLocalTime().date();
    QVector<TimelineDay> days(siteDays);
    for (int place = 0; place < siteDays; ++place)
        days[place].day = today.addDays(place - siteDays + 1);
    for (int i = 0; i < entries.size(); ++i) {
        const qint64 back = entries.at(i).when.toLocalTime().date().daysTo(today);
        if (back < 0 || back >= siteDays)
            continue;
        TimelineDay &day = days[siteDays - 1 - static_cast<int>(back)];
        const SiteNote &note = notes.at(i);
        day.people = qMax(day.people, note.people);
        if (!day.page.isEmpty() && kindOf(note) <= day.kind)
            continue;
        day.kind = kindOf(note);
        day.page = entries.at(i).page;
        day.text = Text::tr("%1: %2").arg(momentText(entries.at(i).when), note.outcome);
    }
    for (TimelineDay &day : days) {
        if (day.text.isEmpty())
            day.text = Text::tr("%1: nothing").arg(day.day.toString(Qt::ISODate));
    }
    return days;
}

QVariantList entryValues(const QVector<SiteEntry> &entries, const QVector<SiteNote> &notes)
{
    QVariantList values;
    for (int i = 0; i < qMin(entries.size(), mostRows); ++i) {
        const SiteNote &note = notes.at(i);
        values.append(QVariantHash {
            {key("page"), entries.at(i).page},
            {key("when"), momentText(entries.at(i).when)},
            {key("what"), note.what},
            {key("outcome"), note.outcome},
            {key("severity"), note.severity.isEmpty() ? key("nothing") : note.severity},
            {key("people"), note.people}});
    }
    return values;
}

} // namespace

QVariantHash siteIndexValues(const Status &status, const QVector<SiteEntry> &entries,
                             const QVector<SiteNote> &notes, PersonalTexts texts)
{
    QVariantList figures;
    const Section section = statusFigures(status);
    for (const Figure &figure : section.figures)
        figures.append(QVariantHash {{key("label"), figure.label}, {key("text"), figure.shown}});
    return {{key("title"), Text::tr("Exports and passes")},
            {key("days"), siteDays},
            {key("when"), zonedText(status.now)},
            {key("concerns"), concernValues(concernsOf(status))},
            {key("timeline"), timelineValues(daysOf(status, entries, notes))},
            {key("figures"), figures},
            {key("lost"), lostValues(status, texts)},
            {key("recovery"), recoverySteps(status, texts).join(QLatin1Char('\n'))},
            {key("waiting"), waitingValues(status, texts)},
            {key("entries"), entryValues(entries, notes)}};
}
