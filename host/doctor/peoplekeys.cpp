// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The keys by which the plugin knows people.
#include "host/doctor/contentparts.h"

#include "host/catalogue/findings.h"
#include "host/database/knownpeople.h"

#include <QCoreApplication>
#include <QMultiHash>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ContentCheck)
};

struct Person
{
    QString uid;
    bool hasPid = false;
    uint pid = 0;
    QString pamId;
    bool isActive = false;
    uint key = 0; ///< by which the plugin files the row: what its pamId gives
};

Person personFrom(const ContentRow &row)
{
    Person person;
    person.uid = row.at(0).toString();
    person.hasPid = !row.at(1).isNull();
    person.pid = row.at(1).toUInt();
    person.pamId = row.at(2).toString();
    person.isActive = row.at(3).toBool();
    person.key = keyOfPamId(person.pamId);
    return person;
}

/// Rows of one pid; the first one is the one to keep: active, and the oldest.
Finding sharedPid(QVector<Person> people)
{
    std::stable_sort(people.begin(), people.end(), [](const Person &one, const Person &other) {
        return one.isActive && !other.isActive;
    });
    QStringList uids;
    for (const Person &person : people)
        uids.append(person.uid);
    const QString all = uids.join(QStringLiteral(", "));
    uids.removeFirst();
    return finding("E-CONTENT-PIDTWICE", QStringLiteral("people"),
                   {QString::number(people.first().pid), all, uids.join(QStringLiteral(", "))});
}

void checkShared(const QVector<Person> &people, const QMultiHash<uint, int> &byPid,
                 Diagnosis *diagnosis)
{
    QVector<Finding> shared;
    for (int i = 0; i < people.size(); ++i) {
        if (!people.at(i).hasPid)
            continue;
        QList<int> places = byPid.values(people.at(i).pid);
        if (places.size() < 2)
            continue;
        std::sort(places.begin(), places.end());
        if (places.first() != i)
            continue;
        QVector<Person> same;
        for (const int place : qAsConst(places))
            same.append(people.at(place));
        shared.append(sharedPid(same));
    }
    addSome(shared, diagnosis);
}

/// A row that is filed under another key than it is written by.
void checkKeys(const QVector<Person> &people, const QMultiHash<uint, int> &byPid,
               Diagnosis *diagnosis)
{
    QVector<Finding> none;
    QVector<Finding> others;
    for (const Person &person : people) {
        if (!person.isActive || person.key == (person.hasPid ? person.pid : 0))
            continue;
        const QString key = QString::number(person.key);
        const bool isFree = person.key != 0 && !byPid.contains(person.key);
        const QString change = isFree ? QStringLiteral("pid = ") + key
            : person.hasPid           ? QStringLiteral("pamId = 'NUMBER.ORDINAL'")
                                      : QStringLiteral("status = 0");
        const bool ends = !isFree && !person.hasPid;
        const QString remedy = QStringLiteral("UPDATE people SET %1 WHERE uid = %2%3")
                                   .arg(change, person.uid,
                                        ends ? Text::tr(" -- it makes them inactive") : QString());
        if (!person.hasPid)
            none.append(finding("E-CONTENT-PIDNULL", QStringLiteral("people"),
                                {person.uid, person.pamId, remedy}));
        else
            others.append(
                finding("E-CONTENT-PAMID", QStringLiteral("people"),
                        {person.uid, person.pamId, key, QString::number(person.pid), remedy}));
    }
    addSome(none, diagnosis);
    addSome(others, diagnosis);
}

} // namespace

Diagnosis peopleDiagnosis(const QSqlDatabase &database)
{
    Diagnosis diagnosis;
    QVector<Person> people;
    forEachRow(database, QStringLiteral("people"),
               QStringLiteral("SELECT uid, pid, pamId, status <> 0 FROM people ORDER BY uid"),
               &diagnosis, [&](const ContentRow &row) { people.append(personFrom(row)); });
    QMultiHash<uint, int> byPid;
    byPid.reserve(people.size());
    for (int i = 0; i < people.size(); ++i) {
        if (people.at(i).hasPid)
            byPid.insert(people.at(i).pid, i);
    }
    if (people.isEmpty() && diagnosis.unknown.isEmpty())
        diagnosis.findings.append(finding("N-CONTENT-NOBODY", QStringLiteral("people"), {}));
    checkShared(people, byPid, &diagnosis);
    checkKeys(people, byPid, &diagnosis);
    return diagnosis;
}
