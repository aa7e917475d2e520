// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Why a pass is not the one that was planned.
#include "host/rehearsal/plandifference.h"

#include "host/changes/changestext.h"
#include "host/changes/planhash.h"
#include "host/rehearsal/verdict.h"

#include <QCoreApplication>
#include <QMap>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(PlanDifference)
};

const int shownPeople = 10;

QString partText(PlanPart part)
{
    switch (part) {
    case PlanPart::Export:
        return Text::tr("the export");
    case PlanPart::Settings:
        return Text::tr("the settings");
    case PlanPart::Plugin:
        return Text::tr("the plugin");
    case PlanPart::State:
        return Text::tr("the database");
    }
    return {};
}

QStringList whatIsReadOtherwise(const QString &plan, const Changes &now)
{
    QStringList parts;
    const QVector<PlanPart> different = differentParts(plan, now.plan.hash);
    for (const PlanPart part : different)
        parts.append(partText(part));
    if (parts.isEmpty())
        return {Text::tr("All that is read is as it was.")};
    return {
        Text::tr("Not as it was when it was planned: %1.").arg(parts.join(QStringLiteral(", ")))};
}

QString kindsOf(const ChangedPerson *person)
{
    if (!person)
        return Text::tr("nothing");
    const QStringList kinds = kindNames(person->kinds);
    return kinds.isEmpty() ? Text::tr("rows written again") : kinds.join(QStringLiteral(", "));
}

/// The first ones, and how many there are besides.
QStringList firstOf(const QStringList &lines)
{
    QStringList first = lines.mid(0, shownPeople);
    if (lines.size() > shownPeople)
        first.append(Text::tr("and %1 more people").arg(lines.size() - shownPeople));
    return first;
}

/// Alike in two passes; a uid is not, of somebody new.
QString keyOf(const ChangedPerson &person)
{
    return person.person.pamId.isEmpty()
        ? QStringLiteral("%1/%2").arg(person.pid).arg(person.person.uid)
        : person.person.pamId;
}

struct PersonPair
{
    const ChangedPerson *planned = nullptr;
    const ChangedPerson *now = nullptr;

    bool isSame() const
    {
        const QVector<Change> none;
        return changeHash(planned ? planned->rows : none) == changeHash(now ? now->rows : none);
    }
};

QMap<QString, PersonPair> pairs(const Changes &planned, const Changes &now)
{
    QMap<QString, PersonPair> people;
    for (const ChangedPerson &person : planned.people)
        people[keyOf(person)].planned = &person;
    for (const ChangedPerson &person : now.people)
        people[keyOf(person)].now = &person;
    return people;
}

} // namespace

QStringList planDifference(const QString &plan, const Changes &now)
{
    QStringList people;
    const QVector<int> places = worstFirst(now);
    for (const int place : places) {
        const ChangedPerson &person = now.people.at(place);
        if (isWorthTelling(person))
            people.append(
                Text::tr("would change now: %1: %2").arg(personTitle(person), kindsOf(&person)));
    }
    return whatIsReadOtherwise(plan, now) + firstOf(people);
}

QStringList planDifference(const Changes &planned, const Changes &now)
{
    QStringList people;
    const QMap<QString, PersonPair> both = pairs(planned, now);
    for (const PersonPair &pair : both) {
        if (!pair.isSame())
            people.append(Text::tr("%1: planned: %2; now: %3")
                              .arg(personTitle(pair.now ? *pair.now : *pair.planned),
                                   kindsOf(pair.planned), kindsOf(pair.now)));
    }
    if (changeHash(planned.others) != changeHash(now.others))
        people.append(Text::tr("rows of nobody, such as marks of terminals, differ"));
    return whatIsReadOtherwise(planned.plan.hash, now) + firstOf(people);
}
