// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A made-up company, its exports, and the server that keeps it in line.
#pragma once

#include "host/company/life.h"
#include "host/database/connection.h"
#include "host/database/difference.h"
#include "host/server/privatedatabase.h"
#include "support/commands/site.h"
#include "support/commands/talvenhrprocess.h"

#include <QRandomGenerator>

/// Lives day by day: people come, move and go, and beside that happens what an HR system and people
/// at the attendance system do. All of it is drawn from the seed.
class CompanyServer
{
public:
    CompanyServer(int people, quint32 seed);

    /// The database, with triggers and locked days.
    Failure make();
    /// The next day: its export, and what others do to the database. The export's path.
    QString nextDay();
    /// All that there is becomes a day older, and attendance is calculated.
    Failure passNight() const;
    /// What the server does with that export.
    Failure runPass(bool forced, QVector<Change> *changes);
    void restart();

    /// The exports that the server has taken since its start, the oldest first.
    QStringList taken() const { return takenExports; }
    /// The options that lead to the database, and to the settings.
    QStringList options() const;
    Failure execute(const QString &statement) const;
    QString readFile(const QString &name) const { return site.readFile(name); }
    QString path(const QString &name) const { return site.path(name); }

private:
    QByteArray exportOfToday();
    void damage(QList<QByteArray> *cells, int line) const;
    Failure happen() const;

    Site site;
    const CompanyPlan plan;
    Life life;
    QRandomGenerator draw;
    PrivateDatabase database;
    Connection connection {QStringLiteral("company")};
    QScopedPointer<TalvenhrProcess> server;
    QStringList takenExports;
    QString today; ///< path of the export
    int day = 0;
    int oddLine = 0; ///< whose texts are odd
    int lostLine = 0; ///< whose branch is missing for some days
    int passes = 0; ///< of the server
};
