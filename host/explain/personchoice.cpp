// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whom PERSON on the command line means.
#include "host/explain/personchoice.h"

#include "export/employeerecord.h"
#include "export/exportcells.h"
#include "host/database/errortext.h"

#include <QCoreApplication>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(PersonChoice)
};

/// The pid by which what concerns a row is found: that of its column, by which statements go.
uint pidOf(const KnownPerson &person)
{
    return person.pid != 0 ? person.pid : person.key;
}

bool hasPid(const KnownPerson &person, uint pid)
{
    return person.pid == pid || person.key == pid;
}

/// Makes the list, in which each pid stands once: what a word is first taken for counts.
class Choice
{
public:
    Choice(const QVector<KnownPerson> &knownPeople, const QVector<LinePerson> &linePeople) :
        people(knownPeople),
        lines(linePeople)
    { }

    /// Nobody has the pid 0: it stands for one that does not fit 32 bits.
    void add(ChosenPerson::Key takenAs, uint pid)
    {
        const bool isThere = std::any_of(
            chosen.cbegin(), chosen.cend(),
            [pid](const ChosenPerson &other) { return other.pid == pid; });
        ChosenPerson person;
        person.takenAs = takenAs;
        person.pid = pid;
        if (pid != 0 && !isThere && describe(&person))
            chosen.append(person);
    }

    QVector<ChosenPerson> result() const { return chosen; }

private:
    /// False for somebody who has neither row nor line. An active row says best who it is.
    bool describe(ChosenPerson *person) const
    {
        const KnownPerson *best = nullptr;
        for (const KnownPerson &known : people) {
            if (!hasPid(known, person->pid))
                continue;
            person->uids.append(known.uid);
            if (!best || (known.isActive && !best->isActive))
                best = &known;
        }
        if (best) {
            person->pamId = best->pamId;
            person->name = best->name;
            return true;
        }
        for (const LinePerson &line : lines) {
            if (line.pid == person->pid) {
                person->pamId = line.pamId;
                return true;
            }
        }
        return false;
    }

    const QVector<KnownPerson> &people;
    const QVector<LinePerson> &lines;
    QVector<ChosenPerson> chosen;
};

} // namespace

uint keyOfPamId(const QString &pamId)
{
    const int dot = pamId.indexOf(QLatin1Char('.'));
    EmployeeRecord record;
    record.osobniCislo = numberFromCell(pamId.leftRef(dot));
    record.poradoveCisloPP = dot < 0
        ? 0
        : numberFromCell(pamId.midRef(pamId.lastIndexOf(QLatin1Char('.')) + 1));
    return record.pid();
}

Failure readKnownPeople(const QSqlDatabase &database, QVector<KnownPerson> *people)
{
    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!query.exec(QStringLiteral("SELECT uid, pid, pamId, CONCAT_WS(' ', name, surname), status, "
                                   "end FROM people ORDER BY uid")))
        return {ExitDatabase,
                Text::tr("the people cannot be read: %1").arg(errorText(query.lastError()))};
    while (query.next()) {
        KnownPerson person;
        person.uid = query.value(0).toLongLong();
        person.pid = query.value(1).toUInt();
        person.pamId = query.value(2).toString();
        person.key = keyOfPamId(person.pamId);
        person.name = query.value(3).toString();
        person.isActive = query.value(4).toBool();
        person.end = query.value(5).toLongLong();
        people->append(person);
    }
    return {};
}

QSet<uint> possiblePids(const QString &word, const QVector<KnownPerson> &people)
{
    QSet<uint> pids {keyOfPamId(word), word.toUInt()};
    for (const KnownPerson &person : people) {
        if (person.uid == word.toLongLong())
            pids.insert(pidOf(person));
    }
    pids.remove(0);
    return pids;
}

QVector<ChosenPerson> peopleMeant(const QString &word, const QVector<KnownPerson> &people,
                                  const QVector<LinePerson> &lines)
{
    Choice choice(people, lines);
    if (word.contains(QLatin1Char('.'))) {
        choice.add(ChosenPerson::PamId, keyOfPamId(word));
        return choice.result();
    }
    for (const KnownPerson &person : people) {
        if (person.pamId == word)
            choice.add(ChosenPerson::PamId, pidOf(person));
    }
    choice.add(ChosenPerson::Pid, word.toUInt());
    for (const KnownPerson &person : people) {
        if (person.uid != 0 && QString::number(person.uid) == word)
            choice.add(ChosenPerson::Uid, pidOf(person));
    }
    return choice.result();
}

QString choiceText(const ChosenPerson &person)
{
    const QString who = person.pamId.isEmpty() ? Text::tr("pid %1").arg(person.pid) : person.pamId;
    return Text::tr("%1, whose %2 it is").arg(who, keyName(person.takenAs));
}

QString keyName(ChosenPerson::Key key)
{
    switch (key) {
    case ChosenPerson::PamId:
        return QStringLiteral("pamId");
    case ChosenPerson::Pid:
        return QStringLiteral("pid");
    case ChosenPerson::Uid:
        break;
    }
    return QStringLiteral("uid");
}
