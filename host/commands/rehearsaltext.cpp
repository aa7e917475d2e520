// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A rehearsal for a person at a terminal.
#include "host/commands/rehearsaltext.h"

#include "host/base/oneline.h"
#include "host/changes/changestext.h"
#include "host/rehearsal/limits.h"
#include "host/rehearsal/verdict.h"
#include "host/report/textreport.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(RehearsalText)
};

const int shownPeople = 20;

/// `text` is the person's number ("4711.1"), the number without its ordinal, or the pid.
bool isMeant(const QString &text, const QString &pamId, qlonglong pid)
{
    if (text.isEmpty())
        return false;
    return text == pamId || isNumberOf(text, pamId) || (pid != 0 && text == QString::number(pid));
}

} // namespace

RehearsalText::RehearsalText(const Changes &rehearsedChanges, int lineWidth) :
    changes(rehearsedChanges),
    width(lineWidth)
{ }

void RehearsalText::addLine(const QString &line)
{
    if (!text.isEmpty())
        text += QLatin1Char('\n');
    text += wrapped(oneLine(line), width, 0) + QLatin1Char('\n');
}

void RehearsalText::addPage()
{
    text += summaryText(changes, width);
    const RehearsalFacts &facts = changes.rehearsal;
    const QStringList notes = facts.warnings + facts.leftOut;
    for (const QString &note : notes)
        addLine(note);
    for (const Finding &finding : facts.findings)
        addLine(codedLine(finding));
    addExceeded();
    addPeople();
}

void RehearsalText::addPeople()
{
    QVector<int> places = worstFirst(changes);
    const auto isSilent = [this](int place) { return !isWorthTelling(changes.people.at(place)); };
    places.erase(std::remove_if(places.begin(), places.end(), isSilent), places.end());
    for (const int place : places.mid(0, shownPeople))
        text += QLatin1Char('\n') + personText(changes.people.at(place), changes.names, width);
    if (places.size() > shownPeople)
        addLine(Text::tr("and %1 more people; --person shows one, --html or --changes all")
                    .arg(places.size() - shownPeople));
    if (const int silent = changes.people.size() - places.size())
        addLine(Text::tr("people whose rows are only written again: %1").arg(silent));
}

void RehearsalText::addPerson(const QString &meant, const QVector<KnownPerson> &known,
                              const ExportDigest &lines, bool isBrief)
{
    bool any = false;
    for (const ChangedPerson &person : changes.people) {
        if (!isMeant(meant, person.person.pamId, person.pid))
            continue;
        if (any && !isBrief)
            text += QLatin1Char('\n');
        any = true;
        text += isBrief
            ? QStringLiteral("%1: %2\n")
                  .arg(personTitle(person), kindNames(person.kinds).join(QStringLiteral(", ")))
            : personText(person, changes.names, width);
    }
    if (!any)
        text += wrapped(unchangedLine(meant, known, lines), width, 0) + QLatin1Char('\n');
}

QString RehearsalText::unchangedLine(const QString &meant, const QVector<KnownPerson> &known,
                                     const ExportDigest &lines) const
{
    const auto row = std::find_if(known.cbegin(), known.cend(), [&meant](const KnownPerson &one) {
        return isMeant(meant, one.pamId, one.pid);
    });
    const auto line = std::find_if(lines.cbegin(), lines.cend(), [&meant](const DigestLine &one) {
        return isMeant(meant, one.pamId(), one.pid);
    });
    const bool isKnown = row != known.cend();
    const bool isExported = line != lines.cend();
    const QString who = isKnown ? oneLine(row->pamId + QLatin1Char(' ') + row->name).trimmed()
                                : oneLine(meant);
    if (isKnown && isExported)
        return Text::tr("Nothing changes for %1, who stands in line %2 of the export and in the "
                        "database.")
            .arg(who)
            .arg(line->line);
    if (isKnown)
        return Text::tr("Nothing changes for %1, who stands in the database, and in no line of the "
                        "export.")
            .arg(who);
    if (isExported)
        return Text::tr("Nothing changes for %1, who stands in line %2 of the export, and not in "
                        "the database.")
            .arg(who)
            .arg(line->line);
    return Text::tr("Nobody in the export or in the database is %1; a person is named by a number "
                    "such as 4711.1 or 4711, or by the pid.")
        .arg(who);
}

void RehearsalText::addExceeded()
{
    const QVector<LimitOutcome> limits = exceededLimits(changes);
    for (const LimitOutcome &outcome : limits)
        addLine(Text::tr("Limit: %1.").arg(exceededText(outcome)));
}
