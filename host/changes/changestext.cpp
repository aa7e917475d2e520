// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Changes for people: a summary that fits a screen, and one person's.
#include "host/changes/changestext.h"

#include "host/base/oneline.h"
#include "host/database/changetext.h"
#include "host/report/textreport.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdlib>
#include <utility>
#include <vector>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ChangesText)
};

/// In which order a reader wants to hear of them.
const ChangeKind worst[] = {
    ChangeKind::Errors,         ChangeKind::Waiting,
    ChangeKind::Dropped,        ChangeKind::Ended,
    ChangeKind::Moved,          ChangeKind::Revived,
    ChangeKind::Added,          ChangeKind::Supervisors,
    ChangeKind::Leave,          ChangeKind::Memberships,
    ChangeKind::Administrators, ChangeKind::Terminals,
    ChangeKind::Plans,          ChangeKind::Pam,
    ChangeKind::Updated,        ChangeKind::Reopened,
    ChangeKind::Notices,
};
static_assert(sizeof(worst) / sizeof(worst[0]) == changeKindCount, "each kind has its place");

const int indent = 4; // blanks before what a person's lines hold

QString passText(const ChangesHeader &header)
{
    const QString passes = header.firstPass == header.lastPass
        ? Text::tr("pass %1").arg(header.lastPass)
        : Text::tr("passes %1 to %2").arg(header.firstPass).arg(header.lastPass);
    const QString when = header.when.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    if (header.how == ChangesHeader::Run)
        return Text::tr("Changes of %1, at %2. What others wrote meanwhile stands here, too.")
            .arg(passes, when);
    if (header.after.isEmpty())
        return Text::tr("Rehearsed at %1: the first pass of a freshly started server.").arg(when);
    if (header.after.size() == 1)
        return Text::tr("Rehearsed at %1: the next pass of a server that has taken one export.")
            .arg(when);
    return Text::tr("Rehearsed at %1: the next pass of a server that has taken %2 exports.")
        .arg(when)
        .arg(header.after.size());
}

QString exportText(const ExportIdentity &file)
{
    if (file.digest.isEmpty())
        return Text::tr("There was no export.");
    return Text::tr("Export %1: %2 lines, SHA-256 %3…")
        .arg(oneLine(file.name))
        .arg(file.lines)
        .arg(file.digest.left(12));
}

QString behindKind(const Changes &changes, ChangeKind kind)
{
    if (kind == ChangeKind::Leave)
        return Text::tr(", %1 in all").arg(daysText(changes.totals.leave));
    if (kind == ChangeKind::Reopened)
        return Text::tr(", %1 days in all").arg(changes.totals.reopenedDays);
    return QString();
}

/// Where somebody stands among the worst.
int rankOf(const ChangedPerson &person)
{
    int rank = 0;
    for (const ChangeKind kind : worst) {
        if (person.kinds.has(kind))
            return rank;
        // What a warning is about comes behind what waits.
        if (kind == ChangeKind::Waiting && !person.messages.isEmpty())
            return rank;
        ++rank;
    }
    return rank;
}

} // namespace

QString kindText(ChangeKind kind, qint64 count)
{
    switch (kind) {
    case ChangeKind::Added:
        return Text::tr("people added: %1").arg(count);
    case ChangeKind::Revived:
        return Text::tr("people active again: %1").arg(count);
    case ChangeKind::Updated:
        return Text::tr("people updated: %1").arg(count);
    case ChangeKind::Ended:
        return Text::tr("people whose employment ends: %1").arg(count);
    case ChangeKind::Moved:
        return Text::tr("people moved to another branch: %1").arg(count);
    case ChangeKind::Memberships:
        return Text::tr("people with other memberships: %1").arg(count);
    case ChangeKind::Terminals:
        return Text::tr("people on other terminals: %1").arg(count);
    case ChangeKind::Administrators:
        return Text::tr("people under other administrators: %1").arg(count);
    case ChangeKind::Supervisors:
        return Text::tr("people with another supervisor: %1").arg(count);
    case ChangeKind::Plans:
        return Text::tr("people with other group plans or months: %1").arg(count);
    case ChangeKind::Leave:
        return Text::tr("people with leave corrected: %1").arg(count);
    case ChangeKind::Reopened:
        return Text::tr("people with days to be calculated again: %1").arg(count);
    case ChangeKind::Pam:
        return Text::tr("people enrolled otherwise in PaM: %1").arg(count);
    case ChangeKind::Notices:
        return Text::tr("notices to terminals: %1").arg(count);
    case ChangeKind::Waiting:
        return Text::tr("records waiting: %1").arg(count);
    case ChangeKind::Dropped:
        return Text::tr("lines of the export dropped: %1").arg(count);
    case ChangeKind::Errors:
        return Text::tr("errors: %1").arg(count);
    }
    return {};
}

QString summaryText(const Changes &changes, int width)
{
    QStringList lines {passText(changes.header), exportText(changes.header.exported)};
    bool any = false;
    for (const ChangeKind kind : worst) {
        const qint64 count = changes.summary[kind];
        if (count == 0)
            continue;
        any = true;
        lines.append(QLatin1String("  ") + kindText(kind, count) + behindKind(changes, kind));
    }
    if (!any)
        lines.append(Text::tr("  Nothing changes."));
    const auto uncertain = std::count_if(
        changes.people.cbegin(), changes.people.cend(),
        [](const ChangedPerson &person) { return !person.uncertain.isEmpty(); });
    if (uncertain > 0)
        lines.append(Text::tr("  people with whom the server may do otherwise: %1").arg(uncertain));
    // Each of them is short but for the name of a file.
    QString text;
    for (const QString &line : qAsConst(lines))
        text += (line.size() <= width ? line : line.left(width - 1) + QChar(0x2026))
            + QLatin1Char('\n');
    return text;
}

bool isWorthTelling(const ChangedPerson &person)
{
    return !person.kinds.isEmpty() || !person.messages.isEmpty() || !person.notDone.isEmpty()
        || !person.uncertain.isEmpty();
}

QVector<int> worstFirst(const Changes &changes)
{
    std::vector<std::pair<int, int>> order;
    for (int place = 0; place < changes.people.size(); ++place)
        order.emplace_back(rankOf(changes.people.at(place)), place);
    std::sort(order.begin(), order.end());
    QVector<int> places;
    places.reserve(changes.people.size());
    for (const auto &entry : order)
        places.append(entry.second);
    return places;
}

QString personNumber(const ChangedPerson &changed)
{
    const Person &person = changed.person;
    if (!person.pamId.isEmpty())
        return person.pamId;
    return person.uid != 0 ? Text::tr("uid %1").arg(person.uid)
                           : Text::tr("pid %1").arg(changed.pid);
}

QString personTitle(const ChangedPerson &changed)
{
    return oneLine(
        QStringLiteral("%1 %2").arg(personNumber(changed), changed.person.name).trimmed());
}

QString personText(const ChangedPerson &person, const IdNames &names, int width)
{
    QString text = wrapped(personTitle(person), width - indent, indent) + QLatin1Char('\n');
    const auto add = [&text, width](const QString &line, int blanks) {
        text += QString(blanks, QLatin1Char(' ')) + wrapped(line, width - blanks - 2, blanks + 2)
            + QLatin1Char('\n');
    };
    const QStringList words = personWords(person, names);
    for (const QString &line : words)
        add(line, 2);
    const auto addRows = [&](const QVector<Change> &changed) {
        const QVector<PersonChanges> rows = changeTexts(changed, names);
        for (const PersonChanges &changes : rows) {
            for (const QString &line : changes.lines)
                add(line, indent);
        }
    };
    addRows(person.rows);
    if (!person.otherwise.isEmpty())
        add(Text::tr("if the server does otherwise, then also:"), 2);
    addRows(person.otherwise);
    return text;
}

QString daysText(qint64 hundredths)
{
    const qint64 size = std::abs(hundredths);
    return Text::tr("%1%2.%3 days")
        .arg(hundredths < 0 ? QStringLiteral("-") : QString(), QString::number(size / 100),
             QString::number(size % 100).rightJustified(2, QLatin1Char('0')));
}

QString correctionText(qint64 hundredths)
{
    const QString days = daysText(hundredths);
    return hundredths < 0 ? days : QLatin1Char('+') + days;
}

QString monthText(uint month)
{
    const QString digits = QString::number(month);
    return digits.size() == 6 ? digits.left(4) + QLatin1Char('-') + digits.mid(4) : digits;
}
