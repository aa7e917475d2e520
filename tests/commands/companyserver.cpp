// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A made-up company, its exports, and the server that keeps it in line.
#include "companyserver.h"

#include "host/company/companyrows.h"
#include "host/company/exportwriter.h"
#include "host/database/errortext.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QSqlQuery>

namespace {

const int days = 5;
const char lostBranch[] = "99001"; // no branch has the number until somebody makes one
const int surnameCell = 4;
const int phoneCell = 6;
const int branchCell = 9;

const char *const oddTexts[] = {
    "O'Neil",
    "x', title2='Graf",
    "50%5 %12",
    "<b onclick=\"a\">&amp;",
    "\xd7\xa9\xd7\x9c\xe2\x80\xae\xd7\x95\xd7\x9d",
    "back\\",
};

/// The company of a sandbox.
CompanyPlan planOf(int people, quint32 seed)
{
    CompanyPlan plan;
    plan.people = people;
    plan.seed = seed;
    plan.day = QDate::currentDate().addDays(1 - days);
    return plan;
}

/// Livelier than a company is, for there are five days only.
LifeRates livelyRates()
{
    LifeRates rates;
    rates.hired *= 4;
    rates.endAnnounced *= 4;
    rates.renamed *= 4;
    rates.moved *= 4;
    rates.newCalendar *= 4;
    rates.newSupervisor *= 4;
    return rates;
}

} // namespace

CompanyServer::CompanyServer(int people, quint32 seed) :
    plan(planOf(people, seed)),
    life(generatedCompany(plan), seed, livelyRates()),
    draw(seed),
    database(site.path(QStringLiteral("company/db")))
{
    oddLine = 1 + draw.bounded(people);
    lostLine = 1 + draw.bounded(people);
}

Failure CompanyServer::make()
{
    site.set({QStringLiteral("importFile=") + site.exportFile(), QStringLiteral("[MES]\n21=m")});
    TalvenhrProcess sandbox({QStringLiteral("sandbox"), site.path(QStringLiteral("company")),
                             QStringLiteral("--people"), QString::number(plan.people),
                             QStringLiteral("--seed"), QString::number(plan.seed),
                             QStringLiteral("--days"), QString::number(days)});
    if (sandbox.finish() != 0)
        return {ExitDatabase, sandbox.lastLine()};
    if (const Failure failure = database.start())
        return failure;
    if (const Failure failure = connection.open(database.administratorParameters()))
        return failure;
    for (const char *statement :
         {"CREATE TRIGGER people_written BEFORE UPDATE ON people FOR EACH ROW "
          "SET NEW.gid = IFNULL(NEW.bid, 0) + 1",
          "CREATE TRIGGER brape_joined AFTER INSERT ON brape FOR EACH ROW "
          "INSERT IGNORE INTO people_term (tid, uid) SELECT MIN(tid), NEW.uid FROM term",
          "UPDATE atten SET `lock` = 1 WHERE uid % 3 = 0"}) {
        if (const Failure failure = execute(QLatin1String(statement)))
            return failure;
    }
    return {};
}

Failure CompanyServer::execute(const QString &statement) const
{
    QSqlQuery query(connection.handle());
    return query.exec(statement) ? Failure() : Failure {ExitDatabase, errorText(query.lastError())};
}

QString CompanyServer::nextDay()
{
    if (day++ > 0)
        life.nextDay();
    if (happen())
        return QString();
    today = site.path(QStringLiteral("day%1.data").arg(day));
    QFile file(today);
    return file.open(QIODevice::WriteOnly) && file.write(exportOfToday()) > 0 ? today : QString();
}

/// The moments lie so that the plugin's rests are over by now, and were not at the last pass.
Failure CompanyServer::happen() const
{
    const int one = day % 7;
    QStringList statements {
        QStringLiteral("UPDATE people SET phone = 'by hand' WHERE uid % 31 = %1").arg(one)};
    if (day == 3)
        statements << QStringLiteral("UPDATE atten SET ok = 1 WHERE ok < 0 AND uid % 29 = 1")
                   << QStringLiteral("UPDATE people SET calc = UNIX_TIMESTAMP() - 900 "
                                     "WHERE uid % 29 = 1");
    if (day == 4)
        statements << QStringLiteral("INSERT INTO branches (number, name) VALUES (%1, 'late')")
                          .arg(QLatin1String(lostBranch));
    for (const QString &statement : qAsConst(statements)) {
        if (const Failure failure = execute(statement))
            return failure;
    }
    return {};
}

Failure CompanyServer::passNight() const
{
    for (const QString &taken : takenExports) {
        QFile file(taken);
        const QDateTime yesterday = QFileInfo(taken).lastModified().addDays(-1);
        if (!file.open(QIODevice::Append)
            || !file.setFileTime(yesterday, QFileDevice::FileModificationTime))
            return {ExitUsage, file.errorString()};
    }
    // In this order, no move meets another one on its new day.
    QStringList statements {
        QStringLiteral("UPDATE funds_move SET day = day - 86400 WHERE type = 3 ORDER BY day"),
        QStringLiteral("UPDATE people SET created = created - 86400")};
    statements += nightStatements(QStringLiteral("midnightFromTs(UNIX_TIMESTAMP())"));
    for (const QString &statement : qAsConst(statements)) {
        if (const Failure failure = execute(statement))
            return failure;
    }
    return {};
}

QByteArray CompanyServer::exportOfToday()
{
    QList<QByteArray> lines = exportText(life.company()).split('\n');
    for (int line = 1; line < lines.size(); ++line) {
        QList<QByteArray> cells = lines.at(line).split('|');
        if (cells.size() != 18)
            continue;
        damage(&cells, line);
        if (draw.bounded(40) == 0)
            cells[phoneCell] = QByteArray::number(draw.bounded(100000, 999999));
        lines[line] = cells.join('|');
    }
    return lines.join('\n');
}

void CompanyServer::damage(QList<QByteArray> *cells, int line) const
{
    if (line == oddLine || line % 50 == 7)
        (*cells)[surnameCell] = oddTexts[line % int(sizeof(oddTexts) / sizeof(oddTexts[0]))];
    if (line == lostLine && day > 1)
        (*cells)[branchCell] = lostBranch;
}

Failure CompanyServer::runPass(bool forced, QVector<Change> *changes)
{
    QFile::remove(site.exportFile());
    if (!QFile::copy(today, site.exportFile()))
        return {ExitUsage, QStringLiteral("no export")};
    if (forced) {
        const Failure failure = execute(QStringLiteral(
            "REPLACE INTO vars (name, value) VALUES ('OQS.THRWorker.forceSync', '1')"));
        if (failure)
            return failure;
    }
    Snapshot before;
    if (const Failure failure = readSnapshot(connection.handle(), SnapshotRows::Touchable, &before))
        return failure;
    if (server) {
        server->send("\n");
    } else {
        const ConnectionParameters parameters = database.parameters();
        server.reset(new TalvenhrProcess(
            {QStringLiteral("run"), QStringLiteral("--hold"), QStringLiteral("--data-dir"),
             site.dataDir(), QStringLiteral("--socket"), parameters.socket,
             QStringLiteral("--database"), parameters.database, QStringLiteral("--user"),
             parameters.user, QStringLiteral("--log-level"), QStringLiteral("0")}));
        server->start();
        passes = 0;
    }
    if (!server->waitForOutput(QStringLiteral("pass %1 is over").arg(++passes)))
        return {ExitTimeout, server->lastLine()};
    Snapshot after;
    if (const Failure failure = readSnapshot(connection.handle(), SnapshotRows::Touchable, &after))
        return failure;
    *changes = difference(before, after);
    takenExports.append(today);
    return {};
}

void CompanyServer::restart()
{
    if (server) {
        server->endInput();
        server->finish();
    }
    server.reset();
    takenExports.clear();
}

QStringList CompanyServer::options() const
{
    return {QStringLiteral("--private-db"), site.path(QStringLiteral("company/db")),
            QStringLiteral("--data-dir"), site.dataDir()};
}
