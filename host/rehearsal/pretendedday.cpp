// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Another day than that of the clock, for one process and one server.
#include "host/rehearsal/pretendedday.h"

#include "host/database/connection.h"
#include "host/database/errortext.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QSqlQuery>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(PretendedDay)
};

QDateTime momentOf(const QDate &day)
{
    return QDateTime(day, QTime::currentTime());
}

/// Debian keeps it in a folder of the architecture; empty if it is not there.
QString clockLibrary()
{
    const QString name = QStringLiteral("/faketime/libfaketime.so.1");
    QStringList folders {QStringLiteral("/usr/lib")};
    const QStringList architectures = QDir(folders.constFirst())
                                          .entryList({QStringLiteral("*-linux-*")}, QDir::Dirs);
    for (const QString &architecture : architectures)
        folders.append(QStringLiteral("/usr/lib/") + architecture);
    for (const QString &folder : qAsConst(folders)) {
        if (QFile::exists(folder + name))
            return folder + name;
    }
    return QString();
}

} // namespace

QDate firstPretendedDay()
{
    return {1970, 1, 3};
}

QDate lastPretendedDay()
{
    return {2038, 1, 17};
}

bool canBePretended(const QDate &day)
{
    return day >= firstPretendedDay() && day <= lastPretendedDay();
}

Failure pretendDay(const ConnectionParameters &administrator, const QDate &day)
{
    if (clockLibrary().isEmpty())
        return {ExitUsage, Text::tr("--today needs libfaketime, which is not installed")};
    Connection connection(QStringLiteral("talvenhr.day"));
    if (const Failure failure = connection.open(administrator))
        return failure;
    QSqlQuery query(connection.handle());
    // What is there already are the settings of the source's login.
    const QString statement = QStringLiteral("SET GLOBAL init_connect = CONCAT_WS('; ', "
                                             "NULLIF(@@GLOBAL.init_connect, ''), "
                                             "'SET timestamp = %1')")
                                  .arg(momentOf(day).toSecsSinceEpoch());
    if (!query.exec(statement))
        return {ExitDatabase,
                Text::tr("the copy takes no other day: %1").arg(errorText(query.lastError()))};
    return {};
}

QProcessEnvironment environmentOfDay(const QDate &day)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QStringList names = environment.keys();
    for (const QString &name : names) {
        if (name.startsWith(QLatin1String("TALVENHR_")))
            environment.remove(name);
    }
    if (!day.isValid())
        return environment;
    environment.insert(QStringLiteral("LD_PRELOAD"), clockLibrary());
    environment.insert(QStringLiteral("FAKETIME"),
                       momentOf(day).toString(QStringLiteral("'@'yyyy-MM-dd hh:mm:ss")));
    environment.insert(QStringLiteral("FAKETIME_DONT_FAKE_MONOTONIC"), QStringLiteral("1"));
    return environment;
}
