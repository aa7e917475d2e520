// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Questions to a database server, and its variables.
#include "host/doctor/serverquestions.h"

#include "host/database/errortext.h"

#include <QCoreApplication>
#include <QSqlQuery>
#include <QSqlRecord>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ServerQuestions)
};

QHash<QString, QString> readPairs(const QSqlDatabase &database, const QString &question,
                                  QString *error)
{
    QHash<QString, QString> pairs;
    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!query.exec(question)) {
        *error = errorText(query.lastError());
        return pairs;
    }
    while (query.next())
        pairs.insert(query.value(0).toString(), query.value(1).toString());
    return pairs;
}

QString sessionQuestion()
{
    return QStringLiteral("SELECT CONNECTION_ID()");
}

/// Told by the client library, and by a server that is just ending.
bool tellsOfLoss(const QString &errorCode)
{
    static const QStringList codes {QStringLiteral("2006"), QStringLiteral("2013"),
                                    QStringLiteral("2055"), QStringLiteral("1053"),
                                    QStringLiteral("1927")};
    return codes.contains(errorCode);
}

} // namespace

ServerAnswer askServer(const QSqlDatabase &database, const QString &question)
{
    ServerAnswer answer;
    QSqlQuery query(database);
    if (!query.exec(question)) {
        answer.error = errorText(query.lastError());
        answer.errorCode = query.lastError().nativeErrorCode();
        return answer;
    }
    if (!query.next()) {
        answer.error = Text::tr("there is no answer to '%1'").arg(question);
        return answer;
    }
    for (int i = 0; i < query.record().count(); ++i)
        answer.values.append(query.value(i));
    return answer;
}

SessionWatch::SessionWatch(const QSqlDatabase &handle) :
    database(handle),
    begin(askServer(handle, sessionQuestion()))
{ }

bool SessionWatch::isLost(QString *error) const
{
    *error = begin.error;
    // Servers of other kinds have no such question.
    if (!begin.isValid())
        return tellsOfLoss(begin.errorCode);
    const ServerAnswer end = askServer(database, sessionQuestion());
    *error = end.isValid() ? Text::tr("the connection broke and was made again") : end.error;
    return end.values != begin.values;
}

ServerVariables::ServerVariables(const QHash<QString, QString> &values) :
    ofSession(values),
    ofServer(values),
    ofCluster(values)
{ }

ServerVariables ServerVariables::read(const QSqlDatabase &database, QString *error)
{
    ServerVariables variables;
    // A limit for answers would cut those to come, here and in all later looks.
    const QString limit = QStringLiteral("sql_select_limit");
    const QString rows = askServer(database, QStringLiteral("SELECT @@session.%1").arg(limit))
                             .text();
    if (!rows.isEmpty())
        askServer(database, QStringLiteral("SET SESSION %1 = 18446744073709551615").arg(limit));
    variables.ofSession = readPairs(database, QStringLiteral("SHOW SESSION VARIABLES"), error);
    variables.ofServer = readPairs(database, QStringLiteral("SHOW GLOBAL VARIABLES"), error);
    variables.ofCluster = readPairs(database, QStringLiteral("SHOW GLOBAL STATUS LIKE 'wsrep%'"),
                                    error);
    if (!rows.isEmpty())
        variables.ofSession.insert(limit, rows);
    return variables;
}

bool ServerVariables::isOn(const char *name) const
{
    const QString value = session(name);
    return value == QLatin1String("ON") || value == QLatin1String("1");
}
