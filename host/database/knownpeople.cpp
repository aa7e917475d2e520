// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Who stands in `people`, and the keys by which the plugin knows them.
#include "host/database/knownpeople.h"

#include "export/employeerecord.h"
#include "export/exportcells.h"
#include "host/database/errortext.h"

#include <QCoreApplication>
#include <QSqlQuery>
#include <QVariant>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(KnownPeople)
};

} // namespace

uint keyOfPamId(const QString &pamId)
{
    const int dot = pamId.indexOf(QLatin1Char('.'));
    EmployeeRecord record;
    record.osobniCislo = numberFromCell(pamId.leftRef(dot));
    record.poradoveCisloPP = dot < 0
        ? 0
        : numberFromCell(pamId.midRef(pamId.lastIndexOf(QLatin1Char('.')) + 1));
    return record.pid();
}

bool isNumberOf(const QString &word, const QString &pamId)
{
    return !word.isEmpty() && word == pamId.section(QLatin1Char('.'), 0, 0);
}

Failure readKnownPeople(const QSqlDatabase &database, QVector<KnownPerson> *people)
{
    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!query.exec(QStringLiteral("SELECT uid, pid, pamId, CONCAT_WS(' ', name, surname), status, "
                                   "end FROM people ORDER BY uid")))
        return {ExitDatabase,
                Text::tr("the people cannot be read: %1").arg(errorText(query.lastError()))};
    while (query.next()) {
        KnownPerson person;
        person.uid = query.value(0).toLongLong();
        person.pid = query.value(1).toUInt();
        person.pamId = query.value(2).toString();
        person.key = keyOfPamId(person.pamId);
        person.name = query.value(3).toString();
        person.isActive = query.value(4).toBool();
        person.end = query.value(5).toLongLong();
        people->append(person);
    }
    return {};
}
