// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// An export against the attendance database.
#include "host/exportcheck/databasecheck.h"

#include "export/exportline.h"
#include "host/database/errortext.h"
#include "host/exportcheck/cellform.h"
#include "host/exportcheck/exportdigest.h"
#include "worker/sqlvalues.h"

#include <QCoreApplication>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariant>

#include <functional>
#include <limits>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(DatabaseCheck)
};

// A day ends fewer people than this, in per cent; a few may end together.
const int mostEnded = 5;
const int fewPeople = 5;

/// The texts of a person: column of `people`, and of the export from 1 on.
const QPair<const char *, int> textColumns[] = {
    {"title", 3}, {"name", 4}, {"surname", 5}, {"title2", 6}, {"phone", 7},
};

/// A hash of the texts: of a database with a million people they would take a gigabyte.
uint textsOf(const QStringList &texts)
{
    return qHash(texts.join(QLatin1Char('|')));
}

uint textsOf(const EmployeeRecord &record)
{
    return textsOf({record.titul, record.jmeno, record.prijmeni, record.titulZa, record.telefon});
}

/// Calls `take` for each row.
Failure read(const QSqlDatabase &database, const QString &statement,
             const std::function<void(const QSqlQuery &row)> &take)
{
    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!query.exec(statement))
        return {ExitDatabase,
                Text::tr("the database cannot be read: %1").arg(errorText(query.lastError()))};
    while (query.next())
        take(query);
    return {};
}

/// A finding about all lines that name something.
ExportFinding ofAll(const char *code, const QVector<int> &lines, int column,
                    const QStringList &values)
{
    return {&findingKind(code), lines.constLast(), column, values, lines};
}

} // namespace

Failure DatabaseCheck::load(const QSqlDatabase &database)
{
    if (const Failure failure = loadNumbers(database))
        return failure;
    if (const Failure failure = loadWidths(database))
        return failure;
    return loadPeople(database);
}

Failure DatabaseCheck::loadNumbers(const QSqlDatabase &database)
{
    Failure failure = read(
        database,
        QStringLiteral("SELECT number, COUNT(*) FROM branches WHERE number IS NOT NULL "
                       "GROUP BY number"),
        [this](const QSqlQuery &row) {
            branchCounts[row.value(0).toUInt()] += row.value(1).toInt();
        });
    if (!failure)
        failure = read(database,
                       QStringLiteral("SELECT b.number, g.calendarID FROM branches b "
                                      "JOIN mastergroups mg ON mg.mgid = b.mgid "
                                      "JOIN `groups` g ON g.parent = mg.mgid "
                                      "WHERE b.number IS NOT NULL"),
                       [this](const QSqlQuery &row) {
                           calendars.insert({row.value(0).toUInt(), row.value(1).toUInt()});
                       });
    if (!failure)
        failure = read(database,
                       QStringLiteral("SELECT personalNumber, COUNT(*) FROM admins "
                                      "WHERE personalNumber IS NOT NULL GROUP BY personalNumber"),
                       [this](const QSqlQuery &row) {
                           adminCounts[row.value(0).toUInt()] += row.value(1).toInt();
                       });
    return failure;
}

Failure DatabaseCheck::loadWidths(const QSqlDatabase &database)
{
    Failure failure = read(
        database,
        QStringLiteral("SELECT column_name, character_maximum_length "
                       "FROM information_schema.columns "
                       "WHERE table_schema = DATABASE() "
                       "AND table_name = 'people'"),
        [this](const QSqlQuery &row) {
            for (const auto &column : textColumns) {
                if (row.value(0).toString() == QLatin1String(column.first)
                    && !row.value(1).isNull())
                    widths.insert(column.second,
                                  static_cast<int>(qMin<qlonglong>(
                                      row.value(1).toLongLong(), std::numeric_limits<int>::max())));
            }
        });
    if (!failure)
        failure = read(database, QStringLiteral("SELECT @@SESSION.sql_mode"),
                       [this](const QSqlQuery &row) {
                           const QString modes = row.value(0).toString();
                           isStrict = modes.contains(QLatin1String("STRICT_"));
                           escapeMode = modes.contains(QLatin1String("NO_BACKSLASH_ESCAPES"))
                               ? EscapeMode::NoBackslashEscapes
                               : EscapeMode::BackslashEscapes;
                       });
    return failure;
}

Failure DatabaseCheck::loadPeople(const QSqlDatabase &database)
{
    return read(database,
                QStringLiteral("SELECT p.pid, p.status, p.title, p.name, p.surname, p.title2, "
                               "p.phone, p.begin, p.end, p.calendarID, b.number "
                               "FROM people p LEFT JOIN branches b USING(bid) "
                               "WHERE p.pid IS NOT NULL"),
                [this](const QSqlQuery &row) {
                    Person person;
                    person.isActive = row.value(1).toBool();
                    person.texts = textsOf({row.value(2).toString(), row.value(3).toString(),
                                            row.value(4).toString(), row.value(5).toString(),
                                            row.value(6).toString()});
                    person.begin = dateFromDbBegin(row.value(7).toUInt());
                    person.end = dateFromDb(row.value(8).toUInt());
                    person.calendar = row.value(9).toUInt();
                    person.branch = row.value(10).toUInt();
                    known.insert(row.value(0).toUInt(), person);
                });
}

void DatabaseCheck::take(const ExportLine &line, int lineNumber)
{
    const EmployeeRecord &record = line.record;
    count(line);
    lookAtWidths(line, lineNumber);
    if (record.isCurrent() && record.stredisko != 0) {
        const int branches = branchCounts.value(record.stredisko);
        const QPair<uint, uint> group(record.stredisko, record.calendarID);
        if (branches == 0)
            withoutBranch[record.stredisko].append(lineNumber);
        else if (branches > 1)
            withSeveralBranches[record.stredisko].append(lineNumber);
        if (branches > 0 && record.calendarID != 0 && !calendars.contains(group))
            withoutGroup[group].append(lineNumber);
    }
    if (keepsSupervisor(record)) {
        const int admins = adminCounts.value(record.nadOsCis);
        if (admins == 0)
            withoutAdmin[record.nadOsCis].append(lineNumber);
        else if (admins > 1)
            withSeveralAdmins[record.nadOsCis].append(lineNumber);
    }
}

QVector<TextTrial> DatabaseCheck::effectsOf(const EmployeeRecord &record,
                                            StatementTrial *trial) const
{
    if (!trial->isSuspicious(record))
        return {};
    const auto row = known.constFind(record.pid());
    if (row != known.constEnd() && row->isActive)
        return trial->effectsOf(record, PluginStatements::Update, escapeMode);
    if (record.isCurrent())
        return trial->effectsOf(record, PluginStatements::Add, escapeMode);
    return {};
}

void DatabaseCheck::count(const ExportLine &line)
{
    const EmployeeRecord &record = line.record;
    const auto row = known.constFind(record.pid());
    if (row == known.constEnd() || !row->isActive) {
        if (!record.isCurrent())
            ++people.leftOut;
        else if (row == known.constEnd())
            ++people.added;
        else
            ++people.revived;
        return;
    }
    const QDate begin = record.datumNastupu.isValid() ? record.datumNastupu : dateFromDbBegin(0);
    const bool same = row->texts == textsOf(record) && row->begin == begin
        && row->end == record.datumVystupu && row->calendar == record.calendarID
        && row->branch == record.stredisko;
    if (same) {
        ++people.same;
        return;
    }
    ++people.updated;
    if (record.datumVystupu.isValid() && row->end != record.datumVystupu)
        ++people.ended;
}

void DatabaseCheck::lookAtWidths(const ExportLine &line, int lineNumber)
{
    for (const auto &column : textColumns) {
        const QStringRef &cell = line.cells[static_cast<size_t>(column.second - 1)];
        const int width = widths.value(column.second, cell.size());
        if (cell.size() <= width)
            continue;
        ofLines.append({&findingKind("W-DATA-LENGTH"),
                        lineNumber,
                        column.second,
                        {exportColumn(column.second - 1), cell.toString(), QString::number(width),
                         isStrict ? Text::tr("the statement for the person fails: they are neither "
                                             "added nor updated")
                                  : Text::tr("the server cuts it")},
                        {}});
    }
}

ExportFindings DatabaseCheck::findings() const
{
    ExportFindings all = ofLines;
    for (auto it = withoutBranch.begin(); it != withoutBranch.end(); ++it)
        all.append(ofAll("W-DATA-BRANCH", *it, ExportCell::BranchNumber + 1,
                         {QString::number(it.key()), QString::number(it->size())}));
    for (auto it = withSeveralBranches.begin(); it != withSeveralBranches.end(); ++it)
        all.append(
            ofAll("W-DATA-BRANCHES", *it, ExportCell::BranchNumber + 1,
                  {QString::number(branchCounts.value(it.key())), QString::number(it.key())}));
    for (auto it = withoutGroup.begin(); it != withoutGroup.end(); ++it)
        all.append(ofAll("W-DATA-CALENDAR", *it, ExportCell::Calendar + 1,
                         {QString::number(it.key().first), QString::number(it.key().second),
                          QString::number(it->size())}));
    for (auto it = withoutAdmin.begin(); it != withoutAdmin.end(); ++it)
        all.append(ofAll("W-DATA-SUPERVISOR", *it, ExportCell::Supervisor + 1,
                         {QString::number(it.key()), QString::number(it->size())}));
    for (auto it = withSeveralAdmins.begin(); it != withSeveralAdmins.end(); ++it)
        all.append(
            ofAll("W-DATA-SUPERVISORS", *it, ExportCell::Supervisor + 1,
                  {QString::number(adminCounts.value(it.key())), QString::number(it.key())}));
    const int seen = people.same + people.updated;
    if (people.ended >= fewPeople && people.ended * 100 >= seen * mostEnded)
        all.append({&findingKind("W-DATA-ENDED"),
                    0,
                    ExportCell::End + 1,
                    {QString::number(people.ended), QString::number(seen)},
                    {}});
    return all;
}
