// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What two passes must have in common to be the same plan.
#include "host/changes/planhash.h"

#include "host/database/value.h"

#include <QCryptographicHash>
#include <QRegularExpression>

#include <algorithm>
#include <vector>

namespace {

// So many letters of each hash stand in that of both, which people copy.
const int partLetters = 4; // of each part that is read
const int changeLetters = 32;

const PlanPart planParts[] = {PlanPart::Export, PlanPart::Settings, PlanPart::Plugin,
                              PlanPart::State};

const char unitEnd = '\x1f';
const char lineEnd = '\n';

QString hex(const QByteArray &digest)
{
    return QString::fromLatin1(digest.toHex());
}

/// In the order of planParts.
QStringList partsOf(const ChangesHeader &header)
{
    return {header.exported.digest, header.settings, header.plugin, header.state};
}

/// With its kind and length in front, so that no two cells read alike.
void appendCell(const QVariant &cell, QByteArray *line)
{
    switch (cell.userType()) {
    case QMetaType::UnknownType:
        *line += 'n';
        break;
    case QMetaType::LongLong:
        *line += 'i' + QByteArray::number(cell.toLongLong());
        break;
    case QMetaType::ULongLong:
        *line += 'i' + QByteArray::number(cell.toULongLong());
        break;
    case QMetaType::Double:
        *line += 'd' + QByteArray::number(cell.toDouble(), 'g', 17);
        break;
    default: {
        const QByteArray bytes = cell.userType() == QMetaType::QByteArray
            ? cell.toByteArray()
            : cell.toString().toUtf8();
        *line += (cell.userType() == QMetaType::QByteArray ? 'b' : 's')
            + QByteArray::number(bytes.size()) + ':' + bytes;
    }
    }
    *line += unitEnd;
}

/// The columns of a table that two passes have in common.
QVector<int> comparedPlaces(const Change &change)
{
    const TouchedTable &table = *change.table;
    const bool namesPerson = change.person.uid != 0;
    QVector<int> places;
    for (int place = 0; place < change.columns.size(); ++place) {
        const QString &column = change.columns.at(place);
        const bool isLeftOut = table.stamps.contains(column) || column == table.generated
            || column == QLatin1String("calc") || (namesPerson && column == table.person);
        if (!isLeftOut)
            places.append(place);
    }
    return places;
}

QByteArray personKey(const Person &person)
{
    if (person.uid == 0)
        return "nobody";
    return person.pamId.isEmpty() ? "uid " + QByteArray::number(person.uid) : person.pamId.toUtf8();
}

/// The lines of changes, those of one person and table in an order of their own.
class ChangeLines
{
public:
    void add(const QVector<Change> &changes)
    {
        for (const Change &change : changes)
            add(change);
        flush();
    }
    QString result() const { return hex(hash.result()); }

private:
    void add(const Change &change)
    {
        if (change.table != table || change.person.uid != uid || change.columns != columns) {
            flush();
            table = change.table;
            uid = change.person.uid;
            columns = change.columns;
            places = comparedPlaces(change);
            names.clear();
            for (const int place : qAsConst(places))
                names.append(columns.at(place).toUtf8() + '=');
        }
        const bool stands = !change.before.isEmpty() && !change.after.isEmpty();
        if (stands && compareRows(change.before, change.after, places) == 0)
            return;
        QByteArray line = personKey(change.person) + unitEnd + change.table->name.toUtf8()
            + unitEnd;
        appendRow(change.before, &line);
        appendRow(change.after, &line);
        lines.push_back(line);
    }

    void appendRow(const TableRow &row, QByteArray *line) const
    {
        *line += row.isEmpty() ? '-' : '+';
        for (int i = 0; i < places.size() && !row.isEmpty(); ++i) {
            *line += names.at(i);
            appendCell(row.at(places.at(i)), line);
        }
    }

    void flush()
    {
        std::sort(lines.begin(), lines.end());
        for (const QByteArray &line : lines) {
            hash.addData(line);
            hash.addData(&lineEnd, 1);
        }
        lines.clear();
        table = nullptr;
    }

    QCryptographicHash hash {QCryptographicHash::Sha256};
    std::vector<QByteArray> lines;
    const TouchedTable *table = nullptr;
    qlonglong uid = 0;
    QStringList columns;
    QVector<int> places;
    QVector<QByteArray> names; ///< of the columns at the places
};

} // namespace

QString changeHash(const Changes &changes)
{
    ChangeLines lines;
    for (const ChangedPerson &person : changes.people)
        lines.add(person.rows);
    lines.add(changes.others);
    return lines.result();
}

QString changeHash(const QVector<Change> &rows)
{
    ChangeLines lines;
    lines.add(rows);
    return lines.result();
}

QString readHash(const ChangesHeader &header)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    const QStringList parts = partsOf(header);
    for (const QString &part : parts)
        hash.addData(part.toUtf8() + lineEnd);
    return hex(hash.result());
}

QString planHash(const ChangesHeader &header, const QString &change)
{
    QString read;
    const QStringList parts = partsOf(header);
    for (const QString &part : parts)
        read += hex(QCryptographicHash::hash(part.toUtf8(), QCryptographicHash::Sha256))
                    .left(partLetters);
    return read + QLatin1Char('-') + change.left(changeLetters);
}

bool isPlanHash(const QString &text)
{
    static const QRegularExpression form(QStringLiteral("\\A[0-9a-f]{16}-[0-9a-f]{32}\\z"));
    return form.match(text).hasMatch();
}

QVector<PlanPart> differentParts(const QString &plan, const QString &other)
{
    QVector<PlanPart> parts;
    int place = 0;
    for (const PlanPart part : planParts) {
        if (plan.midRef(place, partLetters) != other.midRef(place, partLetters))
            parts.append(part);
        place += partLetters;
    }
    return parts;
}

bool isSameChange(const QString &plan, const QString &change)
{
    return plan.section(QLatin1Char('-'), 1) == change.left(changeLetters);
}

QString stateDigest(const Snapshot &snapshot)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    QByteArray line;
    for (const TableContent &content : snapshot.tables) {
        hash.addData(content.table->name.toUtf8() + unitEnd
                     + content.columns.join(QLatin1Char(unitEnd)).toUtf8() + lineEnd);
        for (const TableRow &row : content.rows) {
            line.clear();
            for (const QVariant &cell : row)
                appendCell(cell, &line);
            hash.addData(line + lineEnd);
        }
    }
    return hex(hash.result());
}
