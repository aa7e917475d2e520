// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The tables, columns, keys and routines that the statements of a pass rely on.
#include "host/catalogue/neededschema.h"

#include "host/catalogue/statementforms.h"

#include <QHash>
#include <QRegularExpression>

#include <algorithm>

namespace {

/// Columns as "name:kind", the number of letters behind "letters", "?" where the plugin writes
/// NULL, "=" and the value of rows that know none. "+" in front of a column that is never read.
struct TableText
{
    const char *name;
    const char *columns;
    const char *uniqueKey;
};

const TableText tableTexts[] = {
    {"people",
     "uid:number pid:number pamId:letters21 title:letters name:letters surname:letters "
     "title2:letters phone:letters begin:moment end:moment? rsBegin:moment? rsEnd:moment? "
     "rsText:letters type:small=0 status:small=1 +did:number? bid:number? gid:number "
     "calendarID:number=0 lastCalc:moment=0 calc:moment=0 created:moment +edited:moment "
     "+editor:number",
     "pid"},
    {"people_pam", "uid:number id:small", "uid"},
    {"branches", "bid:number number:number mgid:number", ""},
    {"mastergroups", "mgid:number", ""},
    {"groups", "gid:number parent:number calendarID:number=0", ""},
    {"brape", "bid:number uid:number +since:moment=0", "bid uid"},
    {"admins", "aid:number personalNumber:number", ""},
    {"bradm", "bid:number aid:number", ""},
    {"admins_people", "aid:number uid:number +request:small=0", "aid uid"},
    {"term", "tid:number bid:number status:small=1 flags:small=0 syn:small=0", ""},
    {"people_term", "tid:number uid:number", "tid uid"},
    {"term_sync",
     "+tid:number +type:letters1 +ref:letters11 +ref_col:letters3 +ref_id:number "
     "+created:moment=0 +flags:small",
     ""},
    {"atten", "uid:number date:moment lock:small=0 man:small=0 ok:mark=0", ""},
    {"groups_plan", "uid:number since:month gid:number", "uid since"},
    {"groups_month", "uid:number month:month gid:number", "uid month"},
    {"funds", "fid:number iid:number unit:small=1", ""},
    {"funds_move", "uid:number fid:number day:moment type:small +month:month value:amount",
     "uid fid day type"},
    {"vars", "name:letters23 value:letters", "name"},
};

Holds holdsOf(const QString &kind)
{
    static const QHash<QString, Holds> kinds {
        {QStringLiteral("number"), Holds::Number},   {QStringLiteral("moment"), Holds::Moment},
        {QStringLiteral("amount"), Holds::Amount},   {QStringLiteral("month"), Holds::Month},
        {QStringLiteral("small"), Holds::Small},     {QStringLiteral("mark"), Holds::Mark},
        {QStringLiteral("letters"), Holds::Letters},
    };
    return kinds.value(kind);
}

NeededColumn columnFrom(const QString &text)
{
    static const QRegularExpression form(
        QStringLiteral("^(\\+?)(\\w+):([a-z]+)(\\d*)([?]?)(?:=(\\w+))?$"));
    const QRegularExpressionMatch match = form.match(text);
    NeededColumn column;
    column.isRead = match.captured(1).isEmpty();
    column.name = match.captured(2);
    column.holds = holdsOf(match.captured(3));
    column.letters = match.captured(4).toInt();
    column.becomesNull = !match.captured(5).isEmpty();
    column.fallback = match.captured(6);
    return column;
}

QStringList words(const QString &text, const QString &separator)
{
    QStringList found = text.split(separator, QString::SkipEmptyParts);
    for (QString &word : found)
        word = word.remove(QLatin1Char('`')).trimmed();
    return found;
}

/// The columns on the left side of "a = 1, b = VALUES(b)".
QStringList assigned(const QString &assignments)
{
    static const QRegularExpression left(QStringLiteral("(?:^|,)\\s*`?(\\w+)`?\\s*="));
    QStringList columns;
    auto found = left.globalMatch(assignments);
    while (found.hasNext())
        columns.append(found.next().captured(1));
    return columns;
}

/// What a form writes to which columns of its table.
struct Writing
{
    QString table;
    QStringList inserted;
    QStringList updated;
};

Writing writingOf(const QString &form)
{
    static const QRegularExpression insert(
        QStringLiteral("^INSERT INTO `?(\\w+)`?\\s+\\(([^)]*)\\)"));
    static const QRegularExpression upsert(QStringLiteral("ON DUPLICATE KEY UPDATE (.*)$"));
    static const QRegularExpression update(QStringLiteral("^UPDATE `?(\\w+)`? SET (.*?) WHERE"),
                                           QRegularExpression::CaseInsensitiveOption);
    if (const QRegularExpressionMatch match = insert.match(form); match.hasMatch()) {
        Writing writing {match.captured(1), words(match.captured(2), QStringLiteral(",")), {}};
        if (const QRegularExpressionMatch tail = upsert.match(form); tail.hasMatch())
            writing.updated = writing.inserted + assigned(tail.captured(1));
        return writing;
    }
    if (const QRegularExpressionMatch match = update.match(form); match.hasMatch())
        return {match.captured(1), {}, assigned(match.captured(2))};
    return {};
}

void markWritten(QVector<NeededTable> *tables)
{
    for (const StatementForm &row : statementForms()) {
        const Writing writing = writingOf(QString::fromLatin1(row.form));
        for (NeededTable &table : *tables) {
            if (table.name != writing.table)
                continue;
            for (NeededColumn &column : table.columns) {
                column.isInserted |= writing.inserted.contains(column.name);
                column.isUpdated |= writing.updated.contains(column.name);
            }
        }
    }
}

QVector<NeededTable> makeTables()
{
    QVector<NeededTable> tables;
    for (const TableText &text : tableTexts) {
        NeededTable table;
        table.name = QString::fromLatin1(text.name);
        const QStringList columns = words(QString::fromLatin1(text.columns), QStringLiteral(" "));
        for (const QString &column : columns)
            table.columns.append(columnFrom(column));
        table.uniqueKey = words(QString::fromLatin1(text.uniqueKey), QStringLiteral(" "));
        table.isReadByColumn = table.name == QLatin1String("admins");
        tables.append(table);
    }
    markWritten(&tables);
    return tables;
}

bool isNeeded(const NeededColumn &column, const QString &right)
{
    if (right == QLatin1String("INSERT"))
        return column.isInserted;
    return right == QLatin1String("UPDATE") ? column.isUpdated : column.isRead;
}

NeededRight rightOnTable(const NeededTable &table, const QString &right)
{
    NeededRight needed {right, table.name, {}, false};
    for (const NeededColumn &column : table.columns) {
        if (isNeeded(column, right))
            needed.columns.append(column.name);
    }
    needed.byColumn = right == QLatin1String("UPDATE")
        ? needed.columns.size() < table.columns.size()
        : table.isReadByColumn;
    return needed;
}

/// Whether a statement needs the right there.
bool isNeeded(const QString &object, const QString &right)
{
    const auto &statements = allStatements();
    return std::any_of(statements.begin(), statements.end(), [&](const StatementFacts &facts) {
        return std::any_of(facts.needs.begin(), facts.needs.end(), [&](const StatementNeed &need) {
            return need.object == object && need.rights.contains(right);
        });
    });
}

QVector<NeededRight> makeRights()
{
    const QStringList rights {QStringLiteral("SELECT"), QStringLiteral("INSERT"),
                              QStringLiteral("UPDATE")};
    QVector<NeededRight> needed;
    for (const NeededTable &table : neededTables()) {
        for (const QString &right : rights) {
            if (isNeeded(table.name, right))
                needed.append(rightOnTable(table, right));
        }
    }
    for (const NeededRoutine &routine : neededRoutines())
        needed.append({QStringLiteral("EXECUTE"), routine.name, {}, false});
    return needed;
}

} // namespace

const NeededColumn *NeededTable::find(const QString &column) const
{
    const auto found = std::find_if(columns.begin(), columns.end(),
                                    [&](const NeededColumn &one) { return one.name == column; });
    return found == columns.end() ? nullptr : &*found;
}

bool NeededTable::isWritten() const
{
    return std::any_of(columns.begin(), columns.end(), [](const NeededColumn &column) {
        return column.isInserted || column.isUpdated;
    });
}

const QVector<NeededTable> &neededTables()
{
    static const QVector<NeededTable> tables = makeTables();
    return tables;
}

const NeededTable *neededTable(const QString &name)
{
    const QVector<NeededTable> &tables = neededTables();
    const auto found = std::find_if(tables.begin(), tables.end(),
                                    [&](const NeededTable &table) { return table.name == name; });
    return found == tables.end() ? nullptr : &*found;
}

const QVector<NeededRoutine> &neededRoutines()
{
    static const QVector<NeededRoutine> routines {
        {QStringLiteral("midnightFromTs"), false},
        {QStringLiteral("monthFromTimestamp"), false},
        {QStringLiteral("getCurrentGid"), false},
        {QStringLiteral("updateTermsSync"), true},
    };
    return routines;
}

const QVector<NeededRight> &neededRights()
{
    static const QVector<NeededRight> rights = makeRights();
    return rights;
}

const std::vector<Lookup> &lookups()
{
    using S = PassStatement;
    static const std::vector<Lookup> all {
        {S::ForceFlag, "vars", "name", ""},
        {S::PamBlocks, "vars", "name", ""},
        {S::PamList, "vars", "name", "name"},
        {S::People, "branches", "bid", ""},
        {S::LeaveFund, "funds", "iid unit", ""},
        {S::CorrectionsOfToday, "funds_move", "uid fid day type", "fid pid"},
        {S::CorrectionsOfToday, "people", "pid", "fid pid"},
        {S::Calculated, "people", "pid", "pid"},
        {S::Calculated, "atten", "uid ok lock", "pid"},
        {S::OpenDays, "atten", "uid ok lock", "uid"},
        {S::Balance, "funds_move", "uid fid day type", "moment fid pid"},
        {S::Balance, "people", "pid", "moment fid pid"},
        {S::Corrections, "funds_move", "uid fid day type", "moment fid pid"},
        {S::UidByPid, "people", "pid", "pid"},
        {S::QueueNews, "people_term", "uid", "uid uid"},
        {S::QueueNews, "term", "tid", "uid uid"},
        {S::ReopenDays, "atten", "uid date", "moment uid"},
        {S::MoveMark, "people", "uid", "moment moment uid"},
        {S::AdminByNumber, "admins", "personalNumber", "number"},
        {S::TakeSupervisorMarks, "admins_people", "uid", "uid number"},
        {S::InBranch, "brape", "bid uid", "bid pid"},
        {S::InBranch, "people", "pid", "bid pid"},
        {S::GroupByCalendar, "branches", "bid", "bid calendar"},
        {S::GroupByCalendar, "mastergroups", "mgid", "bid calendar"},
        {S::GroupByCalendar, "groups", "parent calendarID", "bid calendar"},
        {S::InGroupsPlan, "groups_plan", "uid since", "number uid month"},
        {S::UpdateMonths, "atten", "uid date", "uid month"},
        {S::UpdateMonths, "people", "uid", "uid month"},
        {S::AddToBranch, "people", "uid", "bid list"},
        {S::TermsOfBranch, "term", "bid", "bid"},
        {S::NoticeToTerm, "people", "uid", "number list"},
        {S::MarkTerm, "term", "tid", "number"},
        {S::AdminsOfBranch, "bradm", "bid aid", "bid"},
    };
    return all;
}

QString tableOfAlias(const QString &alias)
{
    static const QHash<QString, QString> tables {
        {QStringLiteral("p"), QStringLiteral("people")},
        {QStringLiteral("b"), QStringLiteral("branches")},
        {QStringLiteral("a"), QStringLiteral("atten")},
        {QStringLiteral("fm"), QStringLiteral("funds_move")},
        {QStringLiteral("mg"), QStringLiteral("mastergroups")},
        {QStringLiteral("g"), QStringLiteral("groups")},
    };
    return tables.value(alias, alias);
}
