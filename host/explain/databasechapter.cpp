// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A story's second chapter: what the database has of the person before the pass.
#include "host/explain/storyparts.h"

#include "host/changes/changestext.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Story)
};

QString listed(const QStringList &words)
{
    return words.isEmpty() ? Text::tr("none") : words.join(QStringLiteral(", "));
}

QString namesOf(const ExplainFacts &facts, const PersonBefore &before, const char *table,
                const char *column)
{
    QStringList names;
    const auto ids = before.cells(QLatin1String(table), QLatin1String(column));
    for (const QVariant &id : ids)
        names.append(namedId(facts.before.names, column, id));
    return listed(names);
}

QString supervisorsOf(const ExplainFacts &facts, const PersonBefore &before)
{
    const auto ids = before.cells(QStringLiteral("admins_people"), QStringLiteral("aid"));
    const auto marks = before.cells(QStringLiteral("admins_people"), QStringLiteral("request"));
    QStringList names;
    for (int i = 0; i < ids.size(); ++i) {
        if (marks.value(i).toInt() != 0)
            names.append(namedId(facts.before.names, "aid", ids.at(i)));
    }
    return listed(names);
}

QString plansOf(const ExplainFacts &facts, const PersonBefore &before)
{
    const auto groups = before.cells(QStringLiteral("groups_plan"), QStringLiteral("gid"));
    const auto months = before.cells(QStringLiteral("groups_plan"), QStringLiteral("since"));
    QStringList plans;
    for (int i = 0; i < groups.size(); ++i)
        plans.append(Text::tr("%1 from month %2 on")
                         .arg(namedId(facts.before.names, "gid", groups.at(i)),
                              monthText(months.value(i).toUInt())));
    return listed(plans);
}

QString daysOf(const PersonBefore &before)
{
    const int days = before.cells(QStringLiteral("atten"), QStringLiteral("date")).size();
    return before.openDays == 0
        ? Text::tr("attendance: %1 unlocked days, all of them calculated").arg(days)
        : Text::tr("attendance: %1 unlocked days; to be calculated are %2, since %3")
              .arg(QString::number(days), QString::number(before.openDays),
                   dateText(before.openSince));
}

void tellRow(const ExplainFacts &facts, const PersonBefore &before, ChapterWriter *chapter)
{
    const QString name = QStringList({before.shown(QStringLiteral("name")),
                                      before.shown(QStringLiteral("surname"))})
                             .join(QLatin1Char(' '));
    chapter->say(
        (before.isActive() ? Text::tr("Their row has the uid %1 and is active: %2 %3")
                           : Text::tr("Their row has the uid %1 and is inactive (status "
                                      "0), so the plugin does not load it: %2 %3"))
            .arg(QString::number(before.uid()), before.shown(QStringLiteral("pamId")), name));
    chapter->detail(
        Text::tr("first day %1, last day %2, branch %3, calendar %4, calculated up to %5")
            .arg(before.shown(QStringLiteral("begin")), before.shown(QStringLiteral("end")),
                 namedId(facts.before.names, "bid", before.cell(QStringLiteral("bid"))),
                 before.shown(QStringLiteral("calendarID")),
                 before.shown(QStringLiteral("lastCalc"))));
    chapter->detail(Text::tr("member of branches: %1; on terminals: %2")
                        .arg(namesOf(facts, before, "brape", "bid"),
                             namesOf(facts, before, "people_term", "tid")));
    chapter->detail(
        Text::tr("under administrators: %1; supervisor: %2")
            .arg(namesOf(facts, before, "admins_people", "aid"), supervisorsOf(facts, before)));
    chapter->detail(Text::tr("group plan: %1").arg(plansOf(facts, before)));
    chapter->detail(daysOf(before));
    const uint key = keyOfPamId(before.cell(QStringLiteral("pamId")).toString());
    const uint pid = before.cell(QStringLiteral("pid")).toUInt();
    if (key != pid)
        chapter->detail(Text::tr("its pid is %1, yet the plugin files it under %2, which its pamId "
                                 "gives, and writes to the rows of that pid")
                            .arg(pid)
                            .arg(key));
}

} // namespace

StoryChapter databaseChapter(const ExplainFacts &facts, const PersonBefore &before)
{
    ChapterWriter chapter(QStringLiteral("database"), Text::tr("The database before the pass"));
    if (!before.hasRow()) {
        chapter.say(Text::tr("There is no row of them in people."));
        return chapter.result();
    }
    tellRow(facts, before, &chapter);
    if (facts.person.uids.size() > 1)
        chapter.say(Text::tr("Rows with their keys: %1; the plugin takes them for one person.")
                        .arg(facts.person.uids.size()));
    return chapter.result();
}
