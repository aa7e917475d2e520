// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// How old an export is, by its name and its file.
#include "host/gate/exportdate.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QVector>

namespace {

struct NamedMoment
{
    QDate date; ///< invalid if the name has none
    QTime time; ///< the same
};

/// The time at this place of a name, right behind a date.
QTime timeAt(const QString &name, int place)
{
    static const QRegularExpression form(
        QStringLiteral("\\G[-_T ]?(\\d\\d)([-.:]?)(\\d\\d)(?:\\2(\\d\\d))?(?!\\d)"));
    const QRegularExpressionMatch match = form.match(name, place);
    return match.hasMatch()
        ? QTime(match.captured(1).toInt(), match.captured(3).toInt(), match.captured(4).toInt())
        : QTime();
}

/// A way to write a date, with the places of its parts among the captured texts.
struct DateForm
{
    QRegularExpression form;
    int year;
    int month;
    int day;
};

const QVector<DateForm> &dateForms()
{
    static const QVector<DateForm> all {
        {QRegularExpression(
             QStringLiteral("(?<!\\d)(20\\d\\d)(\\d\\d)(\\d\\d)(?=(?:\\d{6})?(?!\\d))")),
         1, 2, 3},
        {QRegularExpression(QStringLiteral("(?<!\\d)(20\\d\\d)-(\\d\\d)-(\\d\\d)(?!\\d)")), 1, 2,
         3},
        {QRegularExpression(QStringLiteral("(?<!\\d)(\\d\\d)\\.(\\d\\d)\\.(20\\d\\d)(?!\\d)")), 3,
         2, 1},
    };
    return all;
}

/// The last one of the name, in whatever form.
NamedMoment momentIn(const QString &fileName)
{
    const QString name = QFileInfo(fileName).fileName();
    NamedMoment last;
    int lastPlace = -1;
    for (const DateForm &form : dateForms()) {
        QRegularExpressionMatchIterator matches = form.form.globalMatch(name);
        while (matches.hasNext()) {
            const QRegularExpressionMatch match = matches.next();
            const auto number = [&match](int part) { return match.captured(part).toInt(); };
            const QDate date(number(form.year), number(form.month), number(form.day));
            const int end = match.capturedEnd();
            const QTime time = timeAt(name, end);
            // More digits right behind a date are a time, or it is none.
            const bool isAlone = end == name.size() || !name.at(end).isDigit();
            if (date.isValid() && (isAlone || time.isValid())
                && match.capturedStart() > lastPlace) {
                lastPlace = match.capturedStart();
                last = {date, time};
            }
        }
    }
    return last;
}

} // namespace

std::optional<QDateTime> dateInName(const QString &fileName)
{
    const NamedMoment named = momentIn(fileName);
    if (!named.date.isValid())
        return {};
    return QDateTime(named.date, named.time.isValid() ? named.time : QTime(0, 0));
}

AgeOrder::AgeOrder(const QVector<DatedFile> &files)
{
    for (const DatedFile &file : files) {
        const NamedMoment named = momentIn(file.name);
        hasDates = hasDates && named.date.isValid();
        hasTimes = hasTimes && named.time.isValid();
    }
}

bool AgeOrder::isOlder(const DatedFile &one, const DatedFile &other) const
{
    const NamedMoment named = momentIn(one.name);
    const NamedMoment otherNamed = momentIn(other.name);
    if (hasDates && named.date != otherNamed.date)
        return named.date < otherNamed.date;
    if (hasDates && hasTimes && named.time != otherNamed.time)
        return named.time < otherNamed.time;
    return one.time < other.time;
}

bool isOlder(const DatedFile &one, const DatedFile &other)
{
    return AgeOrder({one, other}).isOlder(one, other);
}
