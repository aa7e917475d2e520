// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The rights of a login, as the server tells them.
#include "host/doctor/grantedrights.h"

#include "host/database/errortext.h"
#include "host/doctor/sqlwords.h"

#include <QRegularExpression>
#include <QSqlQuery>

#include <algorithm>

namespace {

/// A name in backquotes, with doubled ones for its own.
const char nameForm[] = "`((?:[^`]|``)*)`";

QString unquoted(QString name)
{
    return name.replace(QLatin1String("``"), QLatin1String("`"));
}

/// The line with its names in backquotes: under ANSI_QUOTES the server has others.
QString withBackquotes(const QString &line)
{
    static const QRegularExpression name(
        QStringLiteral("%1|\"((?:[^\"]|\"\")*)\"").arg(QString::fromLatin1(nameForm)));
    QString text;
    int end = 0;
    auto found = name.globalMatch(line);
    while (found.hasNext()) {
        const QRegularExpressionMatch match = found.next();
        text += line.midRef(end, match.capturedStart() - end);
        text += match.captured().startsWith(QLatin1Char('`'))
            ? match.captured()
            : quotedName(match.captured(2).replace(QLatin1String("\"\""), QLatin1String("\"")));
        end = match.capturedEnd();
    }
    return text + line.midRef(end);
}

/// The end of the parenthesis that opens at the position.
int closing(const QString &text, int open)
{
    const int close = text.indexOf(QLatin1Char(')'), open);
    return close < 0 ? text.size() : close;
}

/// "SELECT, UPDATE (`a`, `b`)" to its parts.
void readRights(const QString &text, Grant *grant)
{
    static const QRegularExpression name(QString::fromLatin1(nameForm));
    int start = 0;
    while (start < text.size()) {
        int end = start;
        while (end < text.size() && text.at(end) != QLatin1Char(','))
            end = text.at(end) == QLatin1Char('(') ? closing(text, end) : end + 1;
        const QString right = text.mid(start, end - start).trimmed();
        const int parenthesis = right.indexOf(QLatin1Char('('));
        if (parenthesis < 0) {
            grant->rights.insert(right);
        } else {
            QSet<QString> &columns = grant->columns[right.left(parenthesis).trimmed()];
            auto found = name.globalMatch(right.mid(parenthesis));
            while (found.hasNext())
                columns.insert(unquoted(found.next().captured(1)).toLower());
        }
        start = end + 1;
    }
}

/// "*.*", "`a`.*", "`a`.`b`", "FUNCTION `a`.`b`".
bool readPlace(const QString &text, Grant *grant)
{
    static const QRegularExpression form(
        QStringLiteral("^(?:(TABLE|FUNCTION|PROCEDURE|PACKAGE|PACKAGE BODY) )?"
                       "(?:\\*|%1)\\.(?:\\*|%1)$")
            .arg(QString::fromLatin1(nameForm)));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return false;
    grant->place = text;
    grant->schema = unquoted(match.captured(2));
    grant->object = unquoted(match.captured(3));
    const QString kind = match.captured(1);
    if (kind == QLatin1String("FUNCTION"))
        grant->level = Grant::Function;
    else if (kind.startsWith(QLatin1String("P")))
        grant->level = Grant::Procedure;
    else if (match.captured(2).isNull() || text.startsWith(QLatin1String("*")))
        grant->level = Grant::Server;
    else
        grant->level = text.endsWith(QLatin1Char('*')) ? Grant::Schema : Grant::Table;
    if (grant->level == Grant::Function || grant->level == Grant::Procedure)
        grant->object = grant->object.toLower();
    return true;
}

/// Whether the pattern of a grant fits: % and _ are wild, a backslash takes their meaning away.
bool fits(const QString &pattern, const QString &schema)
{
    QString expression;
    for (int i = 0; i < pattern.size(); ++i) {
        const QChar letter = pattern.at(i);
        if (letter == QLatin1Char('\\') && i + 1 < pattern.size())
            expression += QRegularExpression::escape(pattern.at(++i));
        else if (letter == QLatin1Char('%'))
            expression += QLatin1String(".*");
        else if (letter == QLatin1Char('_'))
            expression += QLatin1Char('.');
        else
            expression += QRegularExpression::escape(letter);
    }
    return QRegularExpression(QRegularExpression::anchoredPattern(expression))
        .match(schema)
        .hasMatch();
}

/// How many letters stand in front of the first wild one: of several grants on schemas the server
/// takes only the one that is the most exact, for each account or role.
int exactness(const QString &pattern)
{
    for (int i = 0; i < pattern.size(); ++i) {
        if (pattern.at(i) == QLatin1Char('\\'))
            ++i;
        else if (pattern.at(i) == QLatin1Char('%') || pattern.at(i) == QLatin1Char('_'))
            return i;
    }
    return 1000;
}

bool isOvershadowed(const Grant &grant, const GrantedRights &all)
{
    return grant.level == Grant::Schema
        && std::any_of(all.grants.begin(), all.grants.end(), [&](const Grant &other) {
               return other.level == Grant::Schema && other.grantee == grant.grantee
                   && other.reaches(all.schema)
                   && exactness(other.schema) > exactness(grant.schema);
           });
}

bool isForTable(const Grant &grant, const GrantedRights &all, const QString &table)
{
    switch (grant.level) {
    case Grant::Server:
        return true;
    case Grant::Schema:
        return grant.reaches(all.schema) && !isOvershadowed(grant, all);
    case Grant::Table:
        return grant.schema == all.schema && grant.object == table;
    default:
        return false;
    }
}

} // namespace

bool Grant::has(const QString &right) const
{
    return rights.contains(right)
        || (rights.contains(QStringLiteral("ALL PRIVILEGES"))
            && right != QLatin1String("GRANT OPTION"));
}

bool Grant::reaches(const QString &schemaName) const
{
    if (level == Server)
        return true;
    return level == Schema ? fits(schema, schemaName) : schema == schemaName;
}

bool GrantedRights::onTable(const QString &right, const QString &table,
                            const QStringList &columns) const
{
    QSet<QString> missing;
    for (const QString &column : columns)
        missing.insert(column.toLower());
    for (const Grant &grant : grants) {
        if (!isForTable(grant, *this, table))
            continue;
        if (grant.has(right))
            return true;
        missing -= grant.columns.value(right);
    }
    return !columns.isEmpty() && missing.isEmpty();
}

bool GrantedRights::onRoutine(const QString &routine) const
{
    const QString execute = QStringLiteral("EXECUTE");
    return std::any_of(grants.begin(), grants.end(), [&](const Grant &grant) {
        const bool isRoutine = grant.level == Grant::Function || grant.level == Grant::Procedure;
        return grant.has(execute)
            && (isRoutine ? grant.schema == schema && grant.object == routine.toLower()
                          : isForTable(grant, *this, QString()));
    });
}

bool GrantedRights::canWrite() const
{
    const QStringList writing {QStringLiteral("INSERT"), QStringLiteral("UPDATE")};
    return std::any_of(grants.begin(), grants.end(), [&](const Grant &grant) {
        return grant.reaches(schema)
            && std::any_of(writing.begin(), writing.end(), [&](const QString &right) {
                   return grant.has(right) || grant.columns.contains(right);
               });
    });
}

bool parseGrant(const QString &line, Grant *grant)
{
    static const QRegularExpression form(
        QStringLiteral("^GRANT (.+) ON (\\S.*?) TO (%1@%1|%1|PUBLIC|"
                       "'[^']*'@'[^']*')(.*)$")
            .arg(QString::fromLatin1(nameForm)));
    const QRegularExpressionMatch match = form.match(line);
    if (!match.hasMatch() || match.captured(1) == QLatin1String("PROXY"))
        return false;
    readRights(match.captured(1), grant);
    if (!readPlace(match.captured(2), grant))
        return false;
    grant->grantee = match.captured(3);
    if (line.endsWith(QLatin1String(" WITH GRANT OPTION"))
        || match.captured(match.lastCapturedIndex()).contains(QLatin1String("GRANT OPTION")))
        grant->rights.insert(QStringLiteral("GRANT OPTION"));
    grant->rights.remove(QStringLiteral("USAGE"));
    return true;
}

Failure readGrantedRights(const QSqlDatabase &database, GrantedRights *rights)
{
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral("SELECT CURRENT_USER(), DATABASE()")) || !query.next())
        return {ExitDatabase, errorText(query.lastError())};
    rights->account = quotedAccount(query.value(0).toString());
    rights->schema = query.value(1).toString();

    static const QRegularExpression role(
        QStringLiteral("^GRANT (%1) TO ").arg(QString::fromLatin1(nameForm)));
    static const QRegularExpression idle(QStringLiteral("^(SET DEFAULT ROLE|GRANT PROXY) "));
    if (!query.exec(QStringLiteral("SHOW GRANTS")))
        return {ExitDatabase, errorText(query.lastError())};
    while (query.next()) {
        const QString line = withBackquotes(query.value(0).toString());
        Grant grant;
        if (parseGrant(line, &grant))
            rights->grants.append(grant);
        else if (const QRegularExpressionMatch match = role.match(line); match.hasMatch())
            rights->sleepingRoles.append(match.captured(1));
        else if (!idle.match(line).hasMatch())
            rights->unreadable.append(line.section(QStringLiteral(" IDENTIFIED"), 0, 0));
    }
    // A role that is in force has lines of its own.
    for (const Grant &grant : qAsConst(rights->grants))
        rights->sleepingRoles.removeAll(grant.grantee);
    return {};
}
