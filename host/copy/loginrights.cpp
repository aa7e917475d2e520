// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whether a login has a right on a table: what it may not see, the server hides in silence.
#include "host/copy/loginrights.h"

#include "host/database/errortext.h"

#include <QSqlQuery>
#include <QVariant>

#include <algorithm>

namespace {

QString unquoted(QString name)
{
    if (name == QLatin1String("*"))
        return QString();
    return name.mid(1, name.size() - 2).replace(QLatin1String("``"), QLatin1String("`"));
}

/// A schema that is granted as a whole is a pattern: % and _ are wild unless a backslash stands in
/// front of them.
QRegularExpression schemaForm(const QString &pattern)
{
    QString form;
    for (int at = 0; at < pattern.size(); ++at) {
        const bool escaped = pattern[at] == QLatin1Char('\\') && at + 1 < pattern.size();
        if (escaped)
            ++at;
        if (!escaped && pattern[at] == QLatin1Char('%'))
            form += QLatin1String(".*");
        else if (!escaped && pattern[at] == QLatin1Char('_'))
            form += QLatin1Char('.');
        else
            form += QRegularExpression::escape(pattern.mid(at, 1));
    }
    return QRegularExpression(QRegularExpression::anchoredPattern(form));
}

} // namespace

Failure LoginRights::read(const QSqlDatabase &database)
{
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral("SHOW GRANTS")))
        return {ExitDatabase, errorText(query.lastError())};
    while (query.next())
        add(query.value(0).toString());
    return {};
}

void LoginRights::add(const QString &line)
{
    static const QRegularExpression form(
        QStringLiteral("^GRANT (.+?) ON (\\*|`(?:[^`]|``)+`)\\.(\\*|`(?:[^`]|``)+`) TO "));
    static const QRegularExpression columns(QStringLiteral("\\w[\\w ]* \\([^)]*\\)(?:, )?"));
    const QRegularExpressionMatch match = form.match(line);
    if (!match.hasMatch())
        return;
    const QString schema = unquoted(match.captured(2));
    const QString table = unquoted(match.captured(3));
    Grant grant;
    grant.rights = match.captured(1).remove(columns).split(QStringLiteral(", "));
    if (schema.isEmpty())
        grant.schema.setPattern(QStringLiteral(".*"));
    else if (table.isEmpty())
        grant.schema = schemaForm(schema);
    else
        grant.schema.setPattern(
            QRegularExpression::anchoredPattern(QRegularExpression::escape(schema)));
    grant.table = table;
    grants.append(grant);
}

bool LoginRights::has(const QString &right, const QString &schema, const QString &table) const
{
    return std::any_of(grants.begin(), grants.end(), [&](const Grant &grant) {
        return (grant.rights.contains(right)
                || grant.rights.contains(QStringLiteral("ALL PRIVILEGES")))
            && grant.schema.match(schema).hasMatch()
            && (grant.table.isEmpty() || grant.table == table);
    });
}
