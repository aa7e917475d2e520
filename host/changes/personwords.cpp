// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What happens to a person, in words of the trade.
#include "host/base/oneline.h"
#include "host/changes/changestext.h"
#include "host/changes/personkinds.h"
#include "host/database/changetext.h"

#include <QCoreApplication>
#include <QHash>
#include <QSet>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(PersonWords)
};

/// Words about the rows of one person.
class Words
{
public:
    Words(const ChangedPerson &changedPerson, const IdNames &idNames) :
        person(changedPerson),
        names(idNames)
    { }

    QStringList lines()
    {
        for (const Change &change : person.rows)
            tell(change);
        if (months > 0)
            add(Text::tr("group of %1 months, %2 to %3, follows the plan")
                    .arg(QString::number(months), monthText(firstMonth.toUInt()),
                         monthText(lastMonth.toUInt())));
        if (person.kinds.has(ChangeKind::Leave))
            add(Text::tr("leave corrected by %1").arg(correctionText(person.leave)));
        if (person.reopenedDays > 0)
            add(Text::tr("days to be calculated again: %1, since %2")
                    .arg(QString::number(person.reopenedDays),
                         person.reopenedSince.toString(Qt::ISODate)));
        if (notices > 0)
            add(Text::tr("notices to terminals: %1").arg(notices));
        tellTold();
        return result;
    }

private:
    void add(const QString &line) { result.append(oneLine(line)); }

    /// What was told several times stands once, with its number.
    void addCounted(const QStringList &lines)
    {
        QHash<QString, int> counts;
        for (const QString &line : lines)
            ++counts[line];
        for (const QString &line : lines) {
            const int count = counts.take(line);
            if (count > 0)
                add(count == 1 ? line : Text::tr("%1 (%2 times)").arg(line).arg(count));
        }
    }

    /// The name of what an id stands for, or its number.
    QString named(const char *column, const Change &change, const TableRow &row) const
    {
        const QString name = QLatin1String(column);
        const QVariant id = cellOf(change, row, name);
        if (!id.isValid())
            return Text::tr("none");
        const QString text = names.value(name).value(id.toLongLong()).simplified();
        return text.isEmpty() ? Text::tr("number %1").arg(id.toString()) : text;
    }

    void tell(const Change &change)
    {
        const QString &table = change.table->name;
        const bool comes = change.before.isEmpty();
        const TableRow &row = change.after.isEmpty() ? change.before : change.after;
        const bool stands = !comes && !change.after.isEmpty();
        if (table == QLatin1String("people"))
            tellPeople(change);
        else if (table == QLatin1String("brape") && !stands)
            add((comes ? Text::tr("member of branch %1") : Text::tr("no longer in branch %1"))
                    .arg(named("bid", change, row)));
        else if (table == QLatin1String("people_term") && !stands)
            add((comes ? Text::tr("on terminal %1") : Text::tr("no longer on terminal %1"))
                    .arg(named("tid", change, row)));
        else if (table == QLatin1String("admins_people"))
            tellAdministrator(change);
        else if (table == QLatin1String("groups_plan"))
            tellPlan(change);
        else if (table == QLatin1String("groups_month"))
            countMonth(cellOf(change, row, QStringLiteral("month")));
        else if (table == QLatin1String("people_pam"))
            tellPam(change);
        else if (table == QLatin1String("term_sync") && comes)
            ++notices;
    }

    void tellPeople(const Change &change)
    {
        if (person.kinds.has(ChangeKind::Added))
            add(Text::tr("added, in branch %1").arg(named("bid", change, change.after)));
        else if (change.after.isEmpty())
            add(Text::tr("removed; no pass does that"));
        if (person.kinds.has(ChangeKind::Revived))
            add(Text::tr("active again"));
        if (person.kinds.has(ChangeKind::Ended))
            add(Text::tr("employment ends: %1")
                    .arg(cellText(*change.table, QStringLiteral("end"),
                                  cellOf(change, change.after, QStringLiteral("end")))));
        if (person.kinds.has(ChangeKind::Moved))
            add(Text::tr("moves from branch %1 to %2")
                    .arg(named("bid", change, change.before), named("bid", change, change.after)));
        for (const ChangedField &field : person.fields) {
            if (field.name != QLatin1String("bid") && !isOfThePass(*change.table, field.name))
                add(Text::tr("%1: %2 becomes %3")
                        .arg(field.name, cellText(*change.table, field.name, field.before),
                             cellText(*change.table, field.name, field.after)));
        }
    }

    void tellAdministrator(const Change &change)
    {
        const bool comes = change.before.isEmpty();
        const bool goes = change.after.isEmpty();
        const TableRow &row = goes ? change.before : change.after;
        const QString name = named("aid", change, row);
        const QString request = QStringLiteral("request");
        const bool marked = cellOf(change, change.after, request).toLongLong() != 0;
        const bool wasMarked = cellOf(change, change.before, request).toLongLong() != 0;
        if (comes)
            add(Text::tr("under administrator %1").arg(name));
        if (goes)
            add(Text::tr("no longer under administrator %1").arg(name));
        if (marked && !wasMarked)
            add(Text::tr("supervisor: administrator %1").arg(name));
        if (wasMarked && !marked)
            add(Text::tr("no longer the supervisor: administrator %1").arg(name));
    }

    void tellPlan(const Change &change)
    {
        const bool goes = change.after.isEmpty();
        const TableRow &row = goes ? change.before : change.after;
        const QString since = monthText(cellOf(change, row, QStringLiteral("since")).toUInt());
        add((goes ? Text::tr("group %1, from month %2 on, no longer planned")
                  : Text::tr("group %1 planned from month %2 on"))
                .arg(named("gid", change, row), since));
    }

    void countMonth(const QVariant &month)
    {
        if (months++ == 0)
            firstMonth = month;
        lastMonth = month;
    }

    void tellPam(const Change &change)
    {
        if (change.after.isEmpty())
            add(Text::tr("no longer enrolled in PaM"));
        else
            add(Text::tr("enrolled in PaM block %1")
                    .arg(cellOf(change, change.after, QStringLiteral("id")).toString()));
    }

    void tellTold()
    {
        QStringList told;
        QSet<QString> shown; ///< of the messages
        for (const NotDone &notDone : person.notDone) {
            told.append(notDoneText(notDone));
            if (notDone.what == NotDone::Refused && notDone.statement.isEmpty())
                shown.insert(notDone.text);
        }
        for (const PassMessage &message : person.messages) {
            if (!shown.contains(message.text))
                told.append((message.isError ? Text::tr("error: %1") : Text::tr("warning: %1"))
                                .arg(message.text));
        }
        addCounted(told);
        for (const QString &reason : person.uncertain)
            add(Text::tr("uncertain: %1").arg(reason));
    }

    static QString notDoneText(const NotDone &notDone)
    {
        switch (notDone.what) {
        case NotDone::Branch:
            return Text::tr("not done: the record waits for its branch");
        case NotDone::Group:
            return Text::tr("not done: no group of the branch carries the calendar");
        case NotDone::LeaveNotAtRest:
            return Text::tr("not done: leave is left alone until attendance is calculated");
        case NotDone::LeaveCorrectedToday:
            return Text::tr("not done: leave is left alone until tomorrow, for there is a "
                            "correction of today");
        case NotDone::TestMode:
            return Text::tr("not done: the plugin is in test mode");
        case NotDone::Refused:
            break;
        }
        if (notDone.statement.isEmpty())
            return Text::tr("not done: the database refused a statement: %1").arg(notDone.text);
        return Text::tr("not done: the database refused '%1': %2")
            .arg(notDone.statement, notDone.error);
    }

    const ChangedPerson &person;
    const IdNames &names;
    QStringList result;
    int months = 0;
    QVariant firstMonth;
    QVariant lastMonth;
    int notices = 0;
};

} // namespace

QStringList personWords(const ChangedPerson &person, const IdNames &names)
{
    return Words(person, names).lines();
}
