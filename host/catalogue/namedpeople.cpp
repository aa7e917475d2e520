// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whom a statement or a message is about.
#include "host/catalogue/namedpeople.h"

namespace {

const QLatin1Char comma(',');

QVector<uint> numbers(const QStringList &texts)
{
    QVector<uint> ids;
    ids.reserve(texts.size());
    for (const QString &text : texts)
        ids.append(text.trimmed().toUInt());
    return ids;
}

/// "1001.1 Krížik ..." names the pid 10011.
uint pidOfPamId(const QString &text)
{
    return text.section(QLatin1Char(' '), 0, 0).remove(QLatin1Char('.')).toUInt();
}

/// "(5, 14),(5, 15)" names the uids 14 and 15.
QVector<uint> secondsOfPairs(QString text)
{
    text.remove(QLatin1Char('(')).remove(QLatin1Char(')'));
    const QVector<uint> all = numbers(text.split(comma));
    QVector<uint> seconds;
    for (int i = 1; i < all.size(); i += 2)
        seconds.append(all.at(i));
    return seconds;
}

uint uidOfPlan(const QString &text)
{
    return text.section(QStringLiteral("U: "), 1).section(comma, 0, 0).toUInt();
}

} // namespace

NamedPeople peopleIn(const NamingPlace &named, const QStringList &values)
{
    if (named.place >= values.size())
        return {};
    const QString &value = values.at(named.place);
    switch (named.naming) {
    case Naming::Nobody:
        return {};
    case Naming::Pid:
        return {NamedPeople::Pid, numbers({value})};
    case Naming::PamId:
        return {NamedPeople::Pid, {pidOfPamId(value)}};
    case Naming::LastPid:
        return {NamedPeople::Pid, numbers({value.section(comma, -1)})};
    case Naming::Uid:
        return {NamedPeople::Uid, numbers({value})};
    case Naming::Uids:
        return {NamedPeople::Uid, numbers(value.split(comma))};
    case Naming::PairedUids:
        return {NamedPeople::Uid, secondsOfPairs(value)};
    case Naming::PlannedUid:
        return {NamedPeople::Uid, {uidOfPlan(value)}};
    }
    return {};
}
