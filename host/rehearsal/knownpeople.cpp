// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The people whom a database has before a pass.
#include "host/rehearsal/knownpeople.h"

#include "host/database/connection.h"
#include "host/database/errortext.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QSet>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(KnownPeople)
};

} // namespace

Failure readKnownPeople(const ConnectionParameters &parameters, const QDate &today,
                        QVector<KnownPerson> *people)
{
    Connection connection(QStringLiteral("talvenhr.known"));
    if (const Failure failure = connection.open(parameters))
        return failure;
    const QString statement = QStringLiteral(
                                  "SELECT pid, pamId, CONCAT_WS(' ', name, surname), "
                                  "status <> 0 AND (end IS NULL OR end = 0 OR end >= %1) "
                                  "FROM people")
                                  .arg(QDateTime(today, QTime()).toSecsSinceEpoch());
    QSqlQuery query(connection.handle());
    query.setForwardOnly(true);
    if (!query.exec(statement))
        return {ExitDatabase,
                Text::tr("the people of the copy cannot be read: %1")
                    .arg(errorText(query.lastError()))};
    while (query.next())
        people->append({query.value(0).toLongLong(), query.value(1).toString(),
                        query.value(2).toString(), query.value(3).toBool()});
    return {};
}

int missingPeople(const QVector<KnownPerson> &people, const ExportDigest &lines)
{
    QSet<qlonglong> pids;
    for (const DigestLine &line : lines)
        pids.insert(line.pid);
    return static_cast<int>(
        std::count_if(people.cbegin(), people.cend(), [&pids](const KnownPerson &person) {
            return person.isActive && person.pid != 0 && !pids.contains(person.pid);
        }));
}

bool isMeant(const QString &text, const QString &pamId, qlonglong pid)
{
    if (text.isEmpty())
        return false;
    return text == pamId || text == pamId.section(QLatin1Char('.'), 0, 0)
        || (pid != 0 && text == QString::number(pid));
}
