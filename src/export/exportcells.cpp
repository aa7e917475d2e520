// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The cells of the export file. What has the common form is read here; Qt reads the rest.
#include "export/exportcells.h"

#include <QDateTime>

namespace {

bool isDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

/// The number that so many digits make; -1 when one of them is none.
int digits(const QChar *text, int count)
{
    int number = 0;
    for (const QChar *const end = text + count; text != end; ++text) {
        if (!isDigit(*text))
            return -1;
        number = number * 10 + (text->unicode() - '0');
    }
    return number;
}

/// The digits of a cell of the form "yyyy-MM-dd hh:mm:ss.zzz" as one number; -1 for another form.
qint64 digitsOfCommonForm(const QStringRef &cell)
{
    const QChar *const text = cell.data();
    if (cell.size() != 23 || text[4] != QLatin1Char('-') || text[7] != QLatin1Char('-')
        || text[10] != QLatin1Char(' ') || text[13] != QLatin1Char(':')
        || text[16] != QLatin1Char(':') || text[19] != QLatin1Char('.'))
        return -1;
    static const uchar places[] = {0, 1, 2, 3, 5, 6, 8, 9, 11, 12, 14, 15, 17, 18, 20, 21, 22};
    qint64 number = 0;
    for (const uchar place : places) {
        const uint digit = text[place].unicode() - static_cast<uint>('0');
        if (digit > 9)
            return -1;
        number = number * 10 + digit;
    }
    return number;
}

/// The years in which every release of Qt takes a date and time that exists.
bool isCommonYear(int year)
{
    return year >= 100 && year <= 7999;
}

QDate dateInAnyForm(const QStringRef &cell)
{
    return dateFromText(cell.toString(), QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz"));
}

QDate dateInCommonForm(const QStringRef &cell)
{
    const QChar *const text = cell.data();
    const QDate date(digits(text, 4), digits(text + 5, 2), digits(text + 8, 2));
    const QTime time(digits(text + 11, 2), digits(text + 14, 2), digits(text + 17, 2),
                     digits(text + 20, 3));
    // What a change of the clocks skips, releases of Qt take or refuse.
    const bool exists = date.isValid() && time.isValid() && isCommonYear(date.year())
        && QDateTime(date, time).isValid();
    return exists ? date : dateInAnyForm(cell);
}

} // namespace

uint numberFromCell(const QStringRef &cell)
{
    // Nine digits always fit.
    const int number = cell.size() <= 9 ? digits(cell.data(), cell.size()) : -1;
    return number >= 0 ? static_cast<uint>(number) : cell.toUInt();
}

double balanceFromCell(const QStringRef &cell)
{
    const int point = cell.indexOf(QLatin1Char('.'));
    const int whole = point < 0 ? cell.size() : point;
    const int decimals = point < 0 ? 0 : cell.size() - point - 1;
    if (whole == 0 || whole > 6 || decimals > 3 || (point >= 0 && decimals == 0))
        return cell.toDouble();
    const int number = digits(cell.data(), whole);
    const int fraction = digits(cell.data() + point + 1, decimals);
    if (number < 0 || fraction < 0)
        return cell.toDouble();
    // One division of two whole numbers: the double that is nearest to the text.
    static const int scales[] = {1, 10, 100, 1000};
    const int scale = scales[decimals];
    return static_cast<double>(number * scale + fraction) / scale;
}

QDate dateFromCell(const QStringRef &cell, DateCache *cache)
{
    if (cell.isEmpty())
        return QDate();
    const qint64 stated = digitsOfCommonForm(cell);
    if (stated < 0)
        return dateInAnyForm(cell);
    return cache->day(stated, [&] { return dateInCommonForm(cell); });
}

QDate dateFromText(const QString &text, const QString &format)
{
    return QDateTime::fromString(text, format).date();
}
