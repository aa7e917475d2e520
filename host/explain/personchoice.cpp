// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whom PERSON on the command line means.
#include "host/explain/personchoice.h"

#include <QCoreApplication>

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

QSet<uint> possiblePids(const QString &word, const QVector<KnownPerson> &people)
{
    QSet<uint> pids {keyOfPamId(word), word.toUInt()};
    for (const KnownPerson &person : people) {
        if (person.uid == word.toLongLong() || isNumberOf(word, person.pamId))
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
    for (const KnownPerson &person : people) {
        if (isNumberOf(word, person.pamId))
            choice.add(ChosenPerson::Number, pidOf(person));
    }
    for (const LinePerson &line : lines) {
        if (isNumberOf(word, line.pamId))
            choice.add(ChosenPerson::Number, line.pid);
    }
    return choice.result();
}

QString choiceText(const ChosenPerson &person)
{
    const QString who = person.pamId.isEmpty() ? Text::tr("pid %1").arg(person.pid) : person.pamId;
    return Text::tr("%1, whose %2 it is").arg(who, keyTitle(person.takenAs));
}

QString keyName(ChosenPerson::Key key)
{
    switch (key) {
    case ChosenPerson::PamId:
        return QStringLiteral("pamId");
    case ChosenPerson::Pid:
        return QStringLiteral("pid");
    case ChosenPerson::Number:
        return QStringLiteral("number");
    case ChosenPerson::Uid:
        break;
    }
    return QStringLiteral("uid");
}

QString keyTitle(ChosenPerson::Key key)
{
    return key == ChosenPerson::Number ? Text::tr("personal number") : keyName(key);
}
