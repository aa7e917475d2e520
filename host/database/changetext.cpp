// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Rows and changes as lines for a reader.
#include "host/database/changetext.h"

#include "host/base/oneline.h"
#include "host/database/value.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace {

// Short of the year 10000: what is further away is no moment that anybody meant.
const qlonglong farthest = 253402300800 - 2LL * 86400;

QString momentText(qlonglong seconds)
{
    if (seconds == 0 || qAbs(seconds) > farthest)
        return QString::number(seconds);
    const QDateTime moment = QDateTime::fromSecsSinceEpoch(seconds);
    return moment == moment.date().startOfDay()
        ? moment.date().toString(Qt::ISODate)
        : moment.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

/// Apostrophes in the text do not end it.
QString quoted(QString text)
{
    text.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    text.replace(QLatin1Char('\''), QStringLiteral("\\'"));
    return QLatin1Char('\'') + oneLine(text) + QLatin1Char('\'');
}

bool isEmpty(const QVariant &value)
{
    return value.isNull() || (value.userType() == QMetaType::QString && value.toString().isEmpty());
}

QString personText(const Person &person)
{
    if (person.uid == 0)
        return QStringLiteral("nobody");
    const QString number = person.pamId.isEmpty() ? QStringLiteral("uid %1").arg(person.uid)
                                                  : person.pamId;
    return oneLine(QStringLiteral("%1 %2").arg(number, person.name).trimmed());
}

/// The columns of the key that tell the person's rows apart.
QStringList keyWithinPerson(const TouchedTable &table)
{
    QStringList key = table.key;
    key.removeAll(table.person);
    return key;
}

/// Whether two changes, one after the other, do the same to two rows, such as two days.
bool areAlike(const Change &one, const Change &next)
{
    if (one.person.uid != next.person.uid || one.table != next.table)
        return false;
    if (one.before.isEmpty() || one.after.isEmpty() || next.before.isEmpty()
        || next.after.isEmpty())
        return false;
    const QStringList key = keyWithinPerson(*one.table);
    if (key.size() != 1)
        return false;
    for (int place = 0; place < one.columns.size(); ++place) {
        if (one.columns.at(place) == key.first())
            continue;
        if (compareValues(one.before.at(place), next.before.at(place)) != 0
            || compareValues(one.after.at(place), next.after.at(place)) != 0)
            return false;
    }
    return true;
}

/// A change as lines, of one row or of several that are alike.
class RowText
{
public:
    RowText(const Change &firstChange, const Change &lastChange, int rows, const IdNames &idNames) :
        change(firstChange),
        last(lastChange),
        count(rows),
        names(idNames)
    { }

    QStringList lines() const
    {
        if (change.before.isEmpty())
            return {QLatin1String("+ ") + whole(change.after)};
        if (change.after.isEmpty())
            return {QLatin1String("- ") + whole(change.before)};
        QStringList result;
        for (int place = 0; place < change.columns.size(); ++place) {
            if (compareValues(change.before.at(place), change.after.at(place)) != 0)
                result += cellLines(place);
        }
        return result;
    }

private:
    QString value(int place, const QVariant &cell) const
    {
        return cellText(*change.table, change.columns.at(place), cell, names);
    }

    QString named(int place, const QVariant &cell) const
    {
        return change.columns.at(place) + QLatin1Char(' ') + value(place, cell);
    }

    bool namesPerson(const QString &column) const
    {
        const TouchedTable &table = *change.table;
        return change.person.uid != 0 && !table.isPeople()
            && (column == table.person || column == table.personMark);
    }

    QString whole(const TableRow &row) const
    {
        QStringList cells;
        for (int place = 0; place < row.size(); ++place) {
            if (!namesPerson(change.columns.at(place)) && !isEmpty(row.at(place)))
                cells.append(named(place, row.at(place)));
        }
        return QStringLiteral("%1 %2")
            .arg(change.table->name, cells.join(QStringLiteral(", ")))
            .trimmed();
    }

    /// The table, and what in it is changed.
    QString row() const
    {
        QStringList cells;
        const QStringList key = keyWithinPerson(*change.table);
        for (const QString &column : key) {
            const int place = change.columns.indexOf(column);
            cells.append(named(place, change.after.at(place)));
            if (count > 1)
                cells.last() += QStringLiteral(" to %1, %2 rows")
                                    .arg(value(place, last.after.at(place)))
                                    .arg(count);
        }
        return QStringLiteral("%1 %2")
            .arg(change.table->name, cells.join(QStringLiteral(", ")))
            .trimmed();
    }

    QStringList cellLines(int place) const
    {
        const QString beginning = QStringLiteral("%1: %2 ").arg(row(), change.columns.at(place));
        const QVariant &before = change.before.at(place);
        const QVariant &after = change.after.at(place);
        QStringList lines;
        if (change.columns.at(place) == change.table->list && (isList(before) || isList(after))) {
            lines += listLine(beginning + QLatin1String("gained "), after, before);
            lines += listLine(beginning + QLatin1String("lost "), before, after);
        }
        if (lines.isEmpty())
            lines.append(beginning + value(place, before) + QLatin1String(" -> ")
                         + value(place, after));
        return lines;
    }

    /// Numbers with commas, at least one of them.
    static bool isList(const QVariant &cell)
    {
        static const QRegularExpression form(QStringLiteral("\\A\\d*(,\\d*)+\\z"));
        return cell.userType() == QMetaType::QString && form.match(cell.toString()).hasMatch();
    }

    /// What the one list has and the other has not; no line for nothing.
    static QStringList listLine(const QString &beginning, const QVariant &one,
                                const QVariant &other)
    {
        QStringList entries = one.toString().split(QLatin1Char(','), Qt::SkipEmptyParts);
        const QStringList others = other.toString().split(QLatin1Char(','), Qt::SkipEmptyParts);
        const QSet<QString> known(others.cbegin(), others.cend());
        entries.erase(
            std::remove_if(entries.begin(), entries.end(),
                           [&known](const QString &entry) { return known.contains(entry); }),
            entries.end());
        if (entries.isEmpty())
            return {};
        return {beginning + oneLine(entries.join(QStringLiteral(", ")))};
    }

    const Change &change;
    const Change &last;
    const int count;
    const IdNames &names;
};

} // namespace

QString cellText(const TouchedTable &table, const QString &column, const QVariant &value)
{
    if (value.isNull())
        return QStringLiteral("NULL");
    if (value.userType() == QMetaType::LongLong && table.moments.contains(column))
        return momentText(value.toLongLong());
    return value.toString();
}

QString cellText(const TouchedTable &table, const QString &column, const QVariant &value,
                 const IdNames &names)
{
    const QString text = cellText(table, column, value);
    const int type = value.userType();
    if (type == QMetaType::QString || type == QMetaType::QByteArray)
        return quoted(text);
    const QString name = names.value(column).value(value.toLongLong());
    return name.isEmpty() || value.isNull() ? text
                                            : QStringLiteral("%1 (%2)").arg(text, oneLine(name));
}

QVector<PersonChanges> changeTexts(const QVector<Change> &changes, const IdNames &names)
{
    QVector<PersonChanges> texts;
    for (auto first = changes.cbegin(); first != changes.cend();) {
        if (first == changes.cbegin() || (first - 1)->person.uid != first->person.uid)
            texts.append({personText(first->person), {}});
        auto last = first;
        while (last + 1 != changes.cend() && areAlike(*first, *(last + 1)))
            ++last;
        const int rows = static_cast<int>(last - first) + 1;
        texts.last().lines += RowText(*first, *last, rows, names).lines();
        first = last + 1;
    }
    return texts;
}
