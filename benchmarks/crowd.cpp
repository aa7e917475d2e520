// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Any number of people with one relation each: what their export says of them, and their rows.
#include "crowd.h"

#include "host/company/exportwriter.h"

#include <QDateTime>
#include <QFile>

namespace {

const int branchSize = 100;
const int hireDays = 12000; // some 33 years

/// What a row of `people` holds of somebody.
struct Row
{
    QString pamId;
    Employment person;
    uint begin; ///< seconds
};

/// The first of a month for three in four, any day for the others.
QDate hireDateOf(int index)
{
    const QDate date = QDate(1990, 1, 1).addDays(static_cast<int>(index * 7919LL % hireDays));
    return index % 4 == 0 ? date : QDate(date.year(), date.month(), 1);
}

/// Two in four have a title; nobody has a supervisor, a state or an end.
Employment oneOfMany(const Employment &person, int index)
{
    Employment alike;
    alike.number = static_cast<uint>(1001 + index);
    alike.titleBefore = index % 2 == 0 ? QStringLiteral("Ing.") : QString();
    alike.name = person.name;
    alike.surname = person.surname;
    alike.phone = QStringLiteral("0900 %1").arg(index, 7, 10, QLatin1Char('0'));
    alike.begin = hireDateOf(index);
    alike.calendar = 1;
    alike.calendarSince = QDate(2024, 1, 1);
    alike.leave = index % 60 * 50;
    return alike;
}

QVector<Row> rowsOf(int people)
{
    CompanyPlan plan;
    plan.people = people;
    plan.day = QDate(2026, 3, 17);
    const Company company = generatedCompany(plan);
    QVector<Row> rows;
    rows.reserve(people);
    for (const Employment &employment : company.employments) {
        if (employment.ordinal != 1 || rows.size() == people)
            continue;
        const Employment person = oneOfMany(employment, rows.size());
        rows.append({QStringLiteral("%1.1").arg(person.number), person,
                     static_cast<uint>(person.begin.startOfDay().toSecsSinceEpoch())});
    }
    return rows;
}

/// Those of the latest size are kept, for a benchmark asks for the same again and again.
const QVector<Row> &rows()
{
    static QVector<Row> all;
    if (all.size() != crowd().people)
        all = rowsOf(crowd().people);
    return all;
}

uint branchOf(int index)
{
    return crowd().oneBranch ? 1 : static_cast<uint>(1 + index / branchSize);
}

/// A text of its own, as a driver makes it from what the server sent.
QString afresh(const QString &text)
{
    return QString(text.constData(), text.size());
}

} // namespace

Crowd &crowd()
{
    static Crowd one;
    return one;
}

int branchCount(const Crowd &of)
{
    return of.people / branchSize + 1;
}

QByteArray crowdLine(int index)
{
    Employment person = rows().at(index).person;
    person.branch = branchOf(index);
    if (crowd().changed)
        person.phone.replace(0, 4, QStringLiteral("0911"));
    const Branch branch {0, person.branch, QStringLiteral("Stredisko %1").arg(person.branch), 0};
    return exportLine(person, &branch);
}

QString writeExport(const QTemporaryDir &folder)
{
    QFile file(folder.filePath(QStringLiteral("ron.data")));
    if (!file.open(QIODevice::WriteOnly))
        qFatal("no export file");
    for (int index = 0; index < crowd().people; ++index)
        file.write(crowdLine(index) + '\n');
    return file.fileName();
}

QVariant personColumn(int index, int column)
{
    const Row &row = rows().at(index);
    switch (column) {
    case 1:
        return afresh(row.pamId);
    case 2:
        return afresh(row.person.titleBefore);
    case 3:
        return afresh(row.person.name);
    case 4:
        return afresh(row.person.surname);
    case 5:
        return afresh(row.person.titleAfter);
    case 6:
        return afresh(row.person.phone);
    case 7:
        return row.begin;
    case 12:
        return 1u;
    case 13:
        return branchOf(index);
    default:
        return QVariant();
    }
}
