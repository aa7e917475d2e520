// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A company of any size: what its export says of it, and its rows.
#include "company.h"

#include <QDate>
#include <QDateTime>
#include <QFile>

namespace {

const int firstNumber = 1001;
const int branchSize = 100;
const int hireDays = 12000; // some 33 years
const char *const titles[] = {"Ing.", "", "Mgr.", ""};
const char *const names[] = {"Ľubomír", "Žofia", "Peter", "Kateřina", "Ján", "Mária", "Štefan"};
const char *const surnames[] = {"Krížik", "Šťastná", "Dvořáček", "Nováčková", "Vŕba"};

int numberOf(int index)
{
    return firstNumber + index;
}

int branchOf(const Company &of, int index)
{
    return of.oneBranch ? 1 : 1 + index / branchSize;
}

QByteArray phoneOf(int index, bool other)
{
    const QByteArray digits = QByteArray::number(index).rightJustified(7, '0');
    return (other ? "0911 " : "0900 ") + digits;
}

/// The first of a month for three in four, any day for the others; by the days since 1 January
/// 1990.
int hireDayOf(int index)
{
    const int day = static_cast<int>(index * 7919LL % hireDays);
    if (index % 4 == 0)
        return day;
    const QDate date = QDate(1990, 1, 1).addDays(day);
    return day - date.day() + 1;
}

QDate hireDateOf(int index)
{
    return QDate(1990, 1, 1).addDays(hireDayOf(index));
}

const char *titleOf(int index)
{
    return titles[index % 4];
}

const char *nameOf(int index)
{
    return names[index % 7];
}

const char *surnameOf(int index)
{
    return surnames[index % 5];
}

/// The seconds at local midnight of each possible first day.
const QVector<uint> &hireSeconds()
{
    static const QVector<uint> seconds = [] {
        QVector<uint> all;
        for (int day = 0; day < hireDays; ++day)
            all.append(QDateTime(QDate(1990, 1, 1).addDays(day)).toTime_t());
        return all;
    }();
    return seconds;
}

/// A text of its own, as a driver makes it from what the server sent.
QString afresh(const QString &text)
{
    return QString(text.constData(), text.size());
}

QVector<QString> decoded(const char *const *texts, int count)
{
    QVector<QString> all;
    for (int i = 0; i < count; ++i)
        all.append(QString::fromUtf8(texts[i]));
    return all;
}

/// The text with a number in the place of its last digits.
QString numbered(const QString &text, int behind, int number)
{
    QString copy = afresh(text);
    QChar *digit = copy.data() + copy.size() - behind;
    for (; number > 0; number /= 10)
        *--digit = QLatin1Char(static_cast<char>('0' + number % 10));
    return copy;
}

} // namespace

Company &company()
{
    static Company one;
    return one;
}

int branchCount(const Company &of)
{
    return of.people / branchSize + 1;
}

QByteArray exportLine(const Company &of, int index)
{
    const QByteArray branch = QByteArray::number(branchOf(of, index));
    const QByteArray cells[] = {QByteArray::number(numberOf(index)),
                                "1",
                                titleOf(index),
                                nameOf(index),
                                surnameOf(index),
                                "",
                                phoneOf(index, of.changed),
                                hireDateOf(index).toString(Qt::ISODate).toLatin1()
                                    + " 00:00:00.000",
                                "",
                                branch,
                                "Stredisko " + branch,
                                "1",
                                "2024-01-01 00:00:00.000",
                                "11",
                                "1",
                                "0",
                                QByteArray::number(index % 60 / 2.0),
                                "0"};
    QByteArray line;
    for (const QByteArray &cell : cells)
        line += cell + '|';
    line.chop(1);
    return line;
}

QString writeExport(const QTemporaryDir &folder)
{
    QFile file(folder.filePath(QStringLiteral("ron.data")));
    if (!file.open(QIODevice::WriteOnly))
        qFatal("no export file");
    for (int index = 0; index < company().people; ++index)
        file.write(exportLine(company(), index) + '\n');
    return file.fileName();
}

QVariant personColumn(int index, int column)
{
    static const QVector<QString> titleTexts = decoded(titles, 4);
    static const QVector<QString> nameTexts = decoded(names, 7);
    static const QVector<QString> surnameTexts = decoded(surnames, 5);
    static const QString phone = QString::fromLatin1("0900 0000000");
    static const QString pamId = QString::fromLatin1("0000000.1");
    switch (column) {
    case 1:
        return numbered(pamId, 2, numberOf(index));
    case 2:
        return afresh(titleTexts.at(index % 4));
    case 3:
        return afresh(nameTexts.at(index % 7));
    case 4:
        return afresh(surnameTexts.at(index % 5));
    case 5:
        return afresh(titleTexts.at(1));
    case 6:
        return numbered(phone, 0, index);
    case 7:
        return hireSeconds().at(hireDayOf(index));
    case 12:
        return 1u;
    case 13:
        return static_cast<uint>(branchOf(company(), index));
    default:
        return QVariant();
    }
}
